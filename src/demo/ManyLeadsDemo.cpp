#include "core/SiteCatalogue.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/ItalianBusinesses.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr int perPage = 25;

const Look look{u"Numeri Subito"_s, u"#5b4a00"_s, u"it"_s, {}};

constexpr QStringView listingTemplate = uR"(<table class="voce"><tbody><tr><td height="24" colspan="5">
<a style="font-size: 20px;" href="{{link}}">{{name}}</a></td></tr>
<tr><td>{{place}}</td><td>Tel: {{phone}}</td><td>{{street}}</td><td class="mail">nessuna posta</td></tr></tbody></table>
)";

/// A directory in the layout of Trovanumeri with as many businesses as are wanted, each page made when it is asked for:
/// for measuring how a long harvest grows.
class ManyLeadsDemo : public DemoDirectory {
public:
    explicit ManyLeadsDemo(int leads) : leads_(leads) {}

    QStringView Code() const override { return u"KVPE001005"; }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Document(look, look.Brand, u"<body><p>Chi cerchi?</p></body>"_s));
        });
        server.Get("/cerca", [this](const httplib::Request& request, httplib::Response& response) {
            SendPage(response, ResultPage(std::clamp(Parameter(request, "pag").toInt(), 1, PageCount())));
        });
        Q_UNUSED(context);
    }

    QString PathOfSearch() const override { return u"/cerca?chi={what}&dove={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int) const override {
        return context.Base + u"/cerca?chi=tutti";
    }

    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int) const override {
        std::vector<PlantedLead> leads;
        for (int n = 0; n < leads_; ++n) {
            const ItalianBusiness& b = BusinessLike(n);
            Lead& lead = leads.emplace_back().Fields;
            lead.Category = u"Tutti"_s;
            lead.Name = NameOf(n);
            lead.Street = b.Street.toString();
            lead.City = b.Town.toString();
            lead.State = b.Province.toString();
            lead.PostalCode = b.PostalCode.toString();
            lead.FullAddress = lead.Street + u' ' + lead.PostalCode + u' ' + lead.City + u" (" + lead.State + u')';
            lead.Country = u"Italy"_s;
            lead.Phone = u' ' + PhoneOf(n);
            lead.DetailsLink = context.Base + PathOf(n);
            lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Italy");
        }
        return leads;
    }

private:
    int PageCount() const { return (leads_ + perPage - 1) / perPage; }

    static const ItalianBusiness& BusinessLike(int n) {
        const auto all = ItalianBusinesses();
        return all[static_cast<std::size_t>(n) % all.size()];
    }
    static QString NameOf(int n) {
        const ItalianBusiness& b = BusinessLike(n);
        return EscapeHtml(b.Name.toString()) + u' ' + QString::number(n + 1);
    }
    static QString PhoneOf(int n) { return u"0%1 555%2"_s.arg(10 + n % 80).arg(n, 6, 10, QChar(u'0')); }
    static QString PathOf(int n) { return u"/dettagli/n-%1"_s.arg(n + 1); }

    QString ResultPage(int page) const {
        QString html = u"<div class=\"page\"><p>Risultati, pagina %1: <b>Ricerca Tutti</b></p>\n"_s.arg(page);
        for (int n = (page - 1) * perPage; n < qMin(page * perPage, leads_); ++n) {
            const ItalianBusiness& b = BusinessLike(n);
            html += Fill(listingTemplate, {{u"link", PathOf(n)},
                                           {u"name", RawHtml{NameOf(n)}},
                                           {u"place", b.PostalCode + u' ' + b.Town + u" (" + b.Province + u')'},
                                           {u"phone", PhoneOf(n)},
                                           {u"street", b.Street.toString()}});
        }
        for (int i = qMax(1, page - 5); i <= qMin(PageCount(), page + 5); ++i)
            html += u"<a href=\"/cerca?chi=tutti&amp;pag=%1\">%1</a> "_s.arg(i);
        if (page < PageCount())
            html += u"<a href=\"/cerca?chi=tutti&amp;pag=%1\">Avanti &gt;&gt;</a>"_s.arg(page + 1);
        return Document(
            look, u"Tutti"_s,
            u"<body class=\"numeri\"><div class=\"masthead\"><span class=\"brand\">Numeri Subito</span></div>\n" +
                html + u"</div>\n<p class=\"end\">Copyright: ogni voce qui &egrave; inventata.</p></body>");
    }

    int leads_;
};

} // namespace

std::unique_ptr<DemoDirectory> MakeManyLeadsDemo(int leads) {
    return std::make_unique<ManyLeadsDemo>(leads);
}

} // namespace Brindle::Demo
