#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView entryTemplate = uR"(<div class="vcard {{fiche}}">
<h2><a class="fn org url" href="{{link}}">{{name}}</a></h2>
<div class="category">{{category}}</div>
<div class="adr"><span class="street-address">{{street}}</span>, <span class="postal-code">{{code}}</span> <span
 class="locality">{{city}}</span></div>
<div class="tel">{{phone}}</div>
{{site}}<p class="{{note}}">« Très bon accueil » — avis du 12/03/2026, 4,5/5</p>
</div>
)";

/// hCard, in French; a link to the website carries no class of the format.
class HCardLook : public ModernDirectory {
public:
    HCardLook() : ModernDirectory({u"demo-hcard", u"hCard", u"Annuaire du Coin", u"FR", u"fr", 10, 3}) {}

protected:
    QString Body(const Page& page) const override {
        QString entries;
        for (const ModernBusiness& b : page.Businesses)
            entries += Fill(entryTemplate,
                            {{u"fiche", C(u"fiche")},
                             {u"note", C(u"avis")},
                             {u"link", DetailsPath(b)},
                             {u"name", b.Name},
                             {u"category", b.Category},
                             {u"street", b.Street},
                             {u"code", b.PostalCode},
                             {u"city", b.City},
                             {u"phone", b.Phone},
                             {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                                   : u"<a rel=\"nofollow\" href=\"" + b.Website +
                                                                         u"\">Site internet</a>\n"}}});
        return u"<body><header><b>Annuaire du Coin</b> <a href=\"/\">Accueil</a></header><main>"
               "<h1>Professionnels</h1>\n"_s +
               entries + u"<nav>" + Pager(page.Number, page.Last, u"Suivant", u"class=\"suivant\"") +
               u"</nav></main>\n<footer>Annuaire du Coin SARL, 9 place de l'Annuaire, 75009 Paris — 01 99 00 99 99 — "
               "<a href=\"/mentions\">Mentions légales</a></footer></body>";
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeHCardLook() {
    return std::make_unique<HCardLook>();
}

} // namespace Brindle::Demo
