#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView paidTemplate = uR"(<div class="{{listing}} {{paid}}"><span class="{{badge}}">Featured</span>
<img src="/logo/{{slug}}.svg" alt="" width="60" height="40">
<h2 class="{{name_}}"><a href="{{link}}">{{name}}</a></h2><p class="{{topic}}">{{category}}</p>
<p class="{{address_}}">{{address}}</p><p class="{{call}}"><a href="{{tel}}">{{phone}}</a></p>
<p class="{{pitch}}">Family owned since 1987. 15% off your first visit this month!</p>{{site}}
<div class="{{reviews}}"><span>4.8</span> <a href="{{link}}#reviews">(212 reviews)</a> “Turned up on time, fair price.” <time datetime="2026-03-12">12 March 2026</time></div></div>
)";
constexpr QStringView freeTemplate =
    uR"(<div class="{{listing}}"><h2 class="{{name_}}"><a href="{{link}}">{{name}}</a></h2>
<p class="{{topic}}">{{category}}</p><p class="{{address_}}">{{address}}</p><p class="{{call}}">{{phone}}</p>{{site}}</div>
)";

/// Paid and free entries in one list, beside it lists of the same class, reviews and advertisements.
class MixedLook : public ModernDirectory {
public:
    MixedLook() : ModernDirectory({u"demo-mixed", u"Paid and free", u"Town Pages", u"GB", u"en-GB", 12, 3}) {}

protected:
    QString Body(const Page& page) const override {
        QString list;
        for (const ModernBusiness& b : page.Businesses) {
            list +=
                Fill(b.Number % 5 == 0 ? paidTemplate : freeTemplate,
                     {{u"listing", C(u"listing")},
                      {u"paid", C(u"listing-paid")},
                      {u"badge", C(u"badge")},
                      {u"name_", C(u"listing-name")},
                      {u"topic", C(u"listing-topic")},
                      {u"address_", C(u"listing-address")},
                      {u"call", C(u"listing-phone")},
                      {u"pitch", C(u"listing-pitch")},
                      {u"reviews", C(u"listing-reviews")},
                      {u"slug", b.Slug},
                      {u"link", DetailsPath(b)},
                      {u"name", b.Name},
                      {u"category", b.Category},
                      {u"address", b.FullAddress},
                      {u"tel", TelLink(b.Phone)},
                      {u"phone", b.Phone},
                      {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                            : u"<p><a class=\"" + C(u"listing-site") + u"\" href=\"" +
                                                                  b.Website + u"\">Visit website</a></p>"}}});
            if (b.Number % 6 == 3)
                list += u"<div class=\"ad-slot\"><a href=\"/advertise\">Your business here? Call 020 7946 0999</a>"
                        "</div>\n"_s;
        }
        QString side;
        for (const QStringView town :
             {u"Plumbers in Leeds", u"Garages in York", u"Tea rooms in Bath", u"Dentists in Ely"})
            side += u"<div class=\"%1\"><h2 class=\"%2\"><a href=\"/search?what=%3\">%3</a></h2></div>\n"_s.arg(
                C(u"listing"), C(u"listing-name"), town);
        return u"<body><header><b>Town Pages</b> <a href=\"/\">Home</a> <a href=\"/add\">Add your business</a></header>"
               "<main><h1>Businesses near you</h1><section>\n"_s +
               list + u"</section>\n<nav class=\"" + C(u"pages") + u"\">" +
               Pager(page.Number, page.Last, u"Next page", u"class=\"next\"") +
               u"</nav></main>\n<aside><h3>Popular searches</h3>\n" + side +
               u"<h3>Latest reviews</h3><ul><li>Anna, 11 March 2026: great tea</li><li>Ben, 9 March 2026: quick "
               u"fix</li>"
               "<li>Cleo, 2 March 2026: would call again</li></ul></aside>\n<footer>Town Pages Ltd, 1 Directory House, "
               "Index Street, London EC1A 1AA · 020 7946 0998 · <a href=\"mailto:hello@townpages.example\">"
               "hello@townpages.example</a></footer></body>";
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeMixedLook() {
    return std::make_unique<MixedLook>();
}

} // namespace Brindle::Demo
