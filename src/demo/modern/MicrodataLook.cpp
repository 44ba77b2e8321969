#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView entryTemplate = uR"(<li class="{{entry}}" itemscope itemtype="https://schema.org/LocalBusiness">
<h3 itemprop="name"><a itemprop="url" href="{{link}}">{{name}}</a></h3>
<div class="{{topic}}">Branche: {{category}}</div>
<div itemprop="address" itemscope itemtype="https://schema.org/PostalAddress" class="{{address}}"><span
 itemprop="streetAddress">{{street}}</span>, <span itemprop="postalCode">{{code}}</span> <span itemprop="addressLocality">{{city}}</span></div>
<div>Tel.: <span itemprop="telephone">{{phone}}</span></div>
{{site}}<div class="{{hours}}">Geöffnet Mo–Fr 08:00–18:00, Sa 9.00–13.00</div>
</li>
)";

/// Microdata in the list itself, in German.
class MicrodataLook : public ModernDirectory {
public:
    MicrodataLook() : ModernDirectory({u"demo-microdata", u"Mikrodaten", u"Ortsverzeichnis", u"DE", u"de", 10, 3}) {}

protected:
    QString Body(const Page& page) const override {
        QString entries;
        for (const ModernBusiness& b : page.Businesses)
            entries += Fill(entryTemplate,
                            {{u"entry", C(u"eintrag")},
                             {u"topic", C(u"branche")},
                             {u"address", C(u"anschrift")},
                             {u"hours", C(u"zeiten")},
                             {u"link", DetailsPath(b)},
                             {u"name", b.Name},
                             {u"category", b.Category},
                             {u"street", b.Street},
                             {u"code", b.PostalCode},
                             {u"city", b.City},
                             {u"phone", b.Phone},
                             {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                                   : u"<div><a itemprop=\"sameAs\" href=\"" +
                                                                         b.Website + u"\">Zur Webseite</a></div>\n"}}});
        return u"<body><header><b>Ortsverzeichnis</b> <a href=\"/\">Startseite</a> <a "
               u"href=\"/hilfe\">Hilfe</a></header>"
               "<main><h1>Treffer in Ihrer Nähe</h1>\n<ul>\n"_s +
               entries + u"</ul>\n<div class=\"" + C(u"blaettern") + u"\">" +
               Pager(page.Number, page.Last, u"Weiter ›", u"title=\"Nächste Seite\"") +
               u"</div></main>\n<footer>Ortsverzeichnis GmbH, Verlagsstraße 1, 10115 Berlin · Tel. 030 23125 999 · "
               "Stand: 21.11.2026</footer></body>";
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeMicrodataLook() {
    return std::make_unique<MicrodataLook>();
}

} // namespace Brindle::Demo
