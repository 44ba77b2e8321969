#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView entryTemplate = uR"({"@type":"ListItem","position":{{position}},"item":{"@type":"LocalBusiness",
"@id":"{{link}}","url":"{{link}}","name":"{{name}}","telephone":"{{phone}}","additionalType":"{{category}}"{{sameAs}},
"address":{"@type":"PostalAddress","streetAddress":"{{street}}","addressLocality":"{{city}}","addressRegion":"{{state}}",
"postalCode":"{{code}}"}}})";

constexpr QStringView cardTemplate = uR"(<article class="{{card}}"><h2><a href="{{link}}">{{name}}</a></h2>
<p class="{{topic}}">{{category}}</p><p class="{{place}}">{{address}}</p>
<div class="{{actions}}"><a class="{{call}}" href="{{tel}}">{{phone}}</a>{{site}}</div></article>
)";

/// The head says it all for search engines; the cards show the same to people.
class JsonLdLook : public ModernDirectory {
public:
    JsonLdLook() : ModernDirectory({u"demo-json-ld", u"JSON-LD in the head", u"FindNear", u"US", u"en", 12, 3}) {}

protected:
    QString Head(const Page& page) const override {
        QString entries;
        for (const ModernBusiness& b : page.Businesses) {
            const QString link = page.Context.Base + DetailsPath(b);
            entries += entries.isEmpty() ? u""_s : u",\n"_s;
            entries +=
                Fill(entryTemplate,
                     {{u"position", b.Number + 1},
                      {u"link", RawHtml{link}},
                      {u"name", RawHtml{JsonValue(b.Name)}},
                      {u"phone", RawHtml{JsonValue(b.Phone)}},
                      {u"category", RawHtml{JsonValue(b.Category)}},
                      {u"sameAs", RawHtml{b.Website.isEmpty() ? QString() : u",\"sameAs\":[\"" + b.Website + u"\"]"}},
                      {u"street", RawHtml{JsonValue(b.Street)}},
                      {u"city", RawHtml{JsonValue(b.City)}},
                      {u"state", RawHtml{b.State}},
                      {u"code", RawHtml{b.PostalCode}}});
        }
        QString head = u"<script type=\"application/ld+json\">{\"@context\":\"https://schema.org\",\"@graph\":["
                       "{\"@type\":\"WebSite\",\"name\":\"FindNear\",\"url\":\""_s +
                       page.Context.Base + u"/\"},{\"@type\":\"ItemList\",\"itemListElement\":[\n" + entries +
                       u"]}]}</script>\n";
        if (page.Number < page.Last)
            head += u"<link rel=\"next\" href=\"%1\">\n"_s.arg(PagePath(page.Number + 1));
        return head;
    }

    QString Body(const Page& page) const override {
        QString cards;
        for (const ModernBusiness& b : page.Businesses)
            cards += Fill(cardTemplate, {{u"card", C(u"result-card")},
                                         {u"topic", C(u"result-topic")},
                                         {u"place", C(u"result-place")},
                                         {u"actions", C(u"result-actions")},
                                         {u"call", C(u"call")},
                                         {u"link", DetailsPath(b)},
                                         {u"name", b.Name},
                                         {u"category", b.Category},
                                         {u"address", b.FullAddress},
                                         {u"tel", TelLink(b.Phone)},
                                         {u"phone", b.Phone},
                                         {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                                               : u" <a rel=\"nofollow\" href=\"" +
                                                                                     b.Website + u"\">Website</a>"}}});
        return u"<body><header><b>FindNear</b> <a href=\"/\">Home</a> <a href=\"/about\">About</a></header><main>\n"
               "<h1>Local businesses</h1>\n<p>36 results</p>\n"_s +
               cards + u"<nav aria-label=\"Pagination\">" + Pager(page.Number, page.Last, u"Next", u"rel=\"next\"") +
               u"</nav></main>\n<footer>FindNear Inc., 1 Directory Plaza, Denver, CO 80202 · (303) 555-0199 · "
               "help@findnear.example</footer></body>";
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeJsonLdLook() {
    return std::make_unique<JsonLdLook>();
}

} // namespace Brindle::Demo
