#include "demo/DemoPage.h"
#include "demo/modern/Looks.h"
#include "demo/modern/ModernParts.h"

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView rowTemplate =
    uR"(<tr class="{{row}}"><td><a href="{{link}}">{{name}}</a></td><td>{{category}}</td><td>{{street}}</td><td>{{code}}</td><td>{{city}}</td><td>{{phone}}</td><td>{{site}}</td></tr>
)";

/// A table with one column a field, in Polish.
class TableLook : public ModernDirectory {
public:
    TableLook() : ModernDirectory({u"demo-table", u"Tabela", u"Spis Firm", u"PL", u"pl", 15, 3}) {}

protected:
    QString Body(const Page& page) const override {
        QString rows;
        for (const ModernBusiness& b : page.Businesses)
            rows +=
                Fill(rowTemplate,
                     {{u"row", C(b.Number % 2 == 0 ? u"wiersz" : u"wiersz odd")},
                      {u"link", DetailsPath(b)},
                      {u"name", b.Name},
                      {u"category", b.Category},
                      {u"street", b.Street},
                      {u"code", b.PostalCode},
                      {u"city", b.City},
                      {u"phone", b.Phone},
                      {u"site", RawHtml{b.Website.isEmpty() ? u"—"_s : u"<a href=\"" + b.Website + u"\">www</a>"}}});
        return u"<body><header><b>Spis Firm</b> <a href=\"/\">Strona główna</a></header><main><h1>Firmy</h1>\n"
               "<table class=\""_s +
               C(u"firmy") +
               u"\"><thead><tr><th>Nazwa</th><th>Branża</th><th>Ulica</th><th>Kod</th><th>Miasto</th><th>Telefon</th>"
               "<th>WWW</th></tr></thead><tbody>\n" +
               rows + u"</tbody></table>\n<p>" + Pager(page.Number, page.Last, u"Następna »") +
               u"</p></main><footer>Spis Firm Sp. z o.o., ul. Spisowa 7, 00-950 Warszawa, NIP 525-000-00-00, "
               "tel. 22 555 99 99</footer></body>";
    }

    Lead ListedLead(const DemoContext& context, const ModernBusiness& b) const override {
        Lead lead = ModernDirectory::ListedLead(context, b);
        lead.FullAddress = b.Street + u", " + b.PostalCode + u' ' + b.City; // put together from its columns
        return lead;
    }
};

} // namespace

std::unique_ptr<ModernDirectory> MakeTableLook() {
    return std::make_unique<TableLook>();
}

} // namespace Brindle::Demo
