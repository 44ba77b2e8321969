#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView cardTemplate =
    uR"(<div class="{{card}}"><div class="{{box}}"><div class="{{title}}"><a href="{{link}}"><span>{{name}}</span></a></div>
<div class="{{tag}}">{{category}}</div><div class="{{line}}"><svg width="12" height="12"><circle cx="6" cy="6" r="5"/></svg><span>{{address}}</span></div>
<div class="{{line}}"><a href="{{tel}}"><span>{{phone}}</span></a></div>{{site}}</div></div>
)";

/// Cards whose classes a build tool has made, in Spanish: nothing but their shape tells what they are.
class HashedLook : public ModernDirectory {
public:
    HashedLook() : ModernDirectory({u"demo-hashed", u"Clases sin nombre", u"Guía Cercana", u"ES", u"es", 12, 3}) {}

protected:
    QString Body(const Page& page) const override {
        QString cards;
        for (const ModernBusiness& b : page.Businesses)
            cards +=
                Fill(cardTemplate, {{u"card", C(b.Number % 2 == 0 ? u"css-1x7k2p9" : u"css-1x7k2p9 css-odd0q1")},
                                    {u"box", C(u"sc-gKsewC")},
                                    {u"title", C(u"sc-iBPRYJ kXzTqe")},
                                    {u"tag", C(u"Tag_root__3fZ1a")},
                                    {u"line", C(u"css-9dk2m1")},
                                    {u"link", DetailsPath(b)},
                                    {u"name", b.Name},
                                    {u"category", b.Category},
                                    {u"address", b.FullAddress},
                                    {u"tel", TelLink(b.Phone)},
                                    {u"phone", b.Phone},
                                    {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                                          : u"<div class=\"" + C(u"css-9dk2m1") +
                                                                                u"\"><a target=\"_blank\" href=\"" +
                                                                                b.Website + u"\">Web</a></div>"}}});
        return u"<body><div id=\"__root\"><header><b>Guía Cercana</b></header><main><h1>Empresas</h1><div class=\""_s +
               C(u"css-k008qs") + u"\">\n" + cards + u"</div><div class=\"" + C(u"css-pgr77a") + u"\">" +
               Pager(page.Number, page.Last, u"Siguiente", u"aria-label=\"Página siguiente\"") +
               u"</div></main><footer>Guía Cercana S.L., Calle del Directorio, 1, 28004 Madrid · 910 55 99 99</footer>"
               "</div></body>";
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeHashedLook() {
    return std::make_unique<HashedLook>();
}

} // namespace Brindle::Demo
