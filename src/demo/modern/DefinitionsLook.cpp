#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView rowsTemplate = uR"(<dt><a href="{{link}}">{{name}}</a></dt>
<dd class="{{topic}}">業種：{{category}}</dd>
<dd class="{{place}}">{{address}}</dd>
<dd class="{{call}}">電話 {{phone}}</dd>
{{site}})";

/// A definition list without an element around each business, in Japanese.
class DefinitionsLook : public ModernDirectory {
public:
    DefinitionsLook() : ModernDirectory({u"demo-definitions", u"定義リスト", u"まちの電話帳", u"JP", u"ja", 10, 3}) {}

protected:
    QString Body(const Page& page) const override {
        QString rows;
        for (const ModernBusiness& b : page.Businesses)
            rows += Fill(rowsTemplate, {{u"topic", C(u"gyoshu")},
                                        {u"place", C(u"jusho")},
                                        {u"call", C(u"denwa")},
                                        {u"link", DetailsPath(b)},
                                        {u"name", b.Name},
                                        {u"category", b.Category},
                                        {u"address", b.FullAddress},
                                        {u"phone", b.Phone},
                                        {u"site", RawHtml{b.Website.isEmpty() ? QString()
                                                                              : u"<dd><a href=\"" + b.Website +
                                                                                    u"\">ホームページ</a></dd>\n"}}});
        return u"<body><header><b>まちの電話帳</b> <a href=\"/\">トップ</a></header><main><h1>検索結果</h1>\n<dl class=\""_s +
               C(u"kekka") + u"\">\n" + rows + u"</dl>\n<div>" + Pager(page.Number, page.Last, u"次へ") +
               u"</div></main><footer>まちの電話帳株式会社 〒104-0061 東京都中央区銀座1-1-1 "
               u"03-5550-0199</footer></body>";
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeDefinitionsLook() {
    return std::make_unique<DefinitionsLook>();
}

} // namespace Brindle::Demo
