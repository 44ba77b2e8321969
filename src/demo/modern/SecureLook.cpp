#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView entryTemplate =
    uR"(<section class="{{firma}}"><h3><a href="biz/{{slug}}">{{name}}</a></h3><div class="{{daten}}">{{street}}<br>{{code}} {{city}}</div>
<div class="{{daten}}">T: <a href="{{tel}}">{{phone}}</a></div><div class="{{branche}}">Branche: {{category}}</div>{{site}}</section>
)";

/// Served over https; its links are relative, its addresses have two lines.
class SecureLook : public ModernDirectory {
public:
    SecureLook()
        : ModernDirectory(
              {u"demo-secure", u"Sicher verbunden", u"Firmenkompass", u"AT", u"de-AT", 10, 3, false, true}) {}

protected:
    QString Body(const Page& page) const override {
        QString entries;
        for (const ModernBusiness& b : page.Businesses)
            entries += Fill(entryTemplate, {{u"firma", C(u"firma")},
                                            {u"daten", C(u"firma-daten")},
                                            {u"branche", C(u"branche")},
                                            {u"slug", b.Slug},
                                            {u"name", b.Name},
                                            {u"street", b.Street},
                                            {u"code", b.PostalCode},
                                            {u"city", b.City},
                                            {u"tel", TelLink(b.Phone)},
                                            {u"phone", b.Phone},
                                            {u"category", b.Category},
                                            {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                                                  : u"<div><a href=\"" + b.Website +
                                                                                        u"\">Homepage</a></div>"}}});
        return u"<body><header><b>Firmenkompass</b></header><main><h1>Firmen von A bis Z</h1>\n"_s + entries +
               u"<p class=\"" + C(u"seiten") + u"\">" +
               Pager(page.Number, page.Last, u"Nächste Seite", u"rel=\"next\"") +
               u"</p></main><footer>Firmenkompass, Kompassgasse 1, 1010 Wien, Impressum</footer></body>";
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeSecureLook() {
    return std::make_unique<SecureLook>();
}

} // namespace Brindle::Demo
