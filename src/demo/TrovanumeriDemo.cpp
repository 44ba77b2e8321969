#include "core/SiteCatalogue.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/ItalianBusinesses.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView term = u"Ottici in Italia";

const Look look{u"Numeri Subito"_s, u"#5b4a00"_s, u"it"_s,
                u"table.voce { border-collapse: collapse; margin: .6em 0 } table.voce td { padding: .2em .6em }"_s};

constexpr QStringView frameTemplate = uR"(<body class="numeri">
<div class="masthead"><span class="brand">Numeri Subito</span> <a href="/">Home</a></div>
<div class="search"><form action="/cerca"><input name="chi" placeholder="Chi?"> <button>Trova</button></form></div>
{{content}}
{{script}}<p class="end">Copyright: ogni voce qui &egrave; inventata.</p></body>)";

// Each business is a table: its name in a cell with a height, then the cells of its fields, the last one the e-mail's.
constexpr QStringView listingTemplate = uR"(<table class="voce"><tbody><tr><td height="24" colspan="5">
<a style="font-size: 20px;" href="{{link}}">{{name}}</a></td></tr>
<tr>{{cells}}<td class="mail">{{email}}</td></tr></tbody></table>
)";

bool IsLastOnPage(int n) {
    return n % ListingsPerPage == ListingsPerPage - 1;
}
// A second phone has a cell of its own before the street's. Only another business behind it tells the two apart.
bool HasSecondPhone(int n) {
    return !ItalianBusinesses()[n].Fax.isEmpty() && !IsLastOnPage(n);
}
bool HasNoPostalCode(int n) {
    return n % 12 == 5; // the first word of the town is then lost
}
bool HasNoStreet(int n) {
    return n % 16 == 9;
}

QString Frame(const QString& title, const QString& content, int number) {
    return Document(
        look, title,
        Fill(frameTemplate, {{u"content", RawHtml{content}}, {u"script", RawHtml{TrackingScript(number)}}}));
}

QString NameOf(int n) {
    return ItalianBusinesses()[n].Name + QString::fromLatin1(n % 8 == 5 ? " & Figli" : "");
}

QString PathOf(int n) {
    return u"/dettagli/" + PathNameOf(n) + u"?da=lista&n=" + QString::number(n);
}

QString Cell(const QString& text) {
    return u"<td>" + EscapeHtml(text) + u"</td>";
}

QString ListingOf(int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    const QString place = b.Town + u" (" + b.Province + u')';
    QString cells = Cell(HasNoPostalCode(n) ? place : b.PostalCode + u' ' + place) + Cell(u"Tel: " + b.Phone);
    if (HasSecondPhone(n))
        cells += Cell(u"Tel: " + b.Fax);
    cells += Cell(HasNoStreet(n) ? QString() : b.Street.toString());
    const QString email = b.Email.isEmpty() ? u"nessuna posta"_s : b.Email.toString();
    // The name's first blank never breaks a line; the link of some has a blank in it.
    QString link = PathOf(n);
    if (n % 10 == 6)
        link += u' ';
    const QString name = EscapeHtml(NameOf(n));
    return Fill(listingTemplate,
                {{u"link", link}, {u"name", RawHtml{name}}, {u"cells", RawHtml{cells}}, {u"email", email}});
}

QString ResultPage(const DemoContext& context, int page) {
    QString html =
        u"<div class=\"page\"><p>Risultati, pagina " + QString::number(page) + u": <b>Ricerca " + term + u"</b></p>\n";
    int shown = 0;
    for (const int n : NumbersOnPage(page)) {
        html += ListingOf(n);
        if (++shown == 8) // a paid entry, which has no details
            html += u"<table class=\"voce\"><tbody><tr><td height=\"24\"><a style=\"font-size: 20px;\" "
                    "href=\"/sponsor/1\">Offerta del giorno</a></td></tr></tbody></table>\n"_s;
    }
    html += AdvertBox(context.Businesses, page);
    for (int i = 1; i <= ItalianPageCount(); ++i)
        html += u"<a href=\"/cerca?chi=ottici&amp;pag=%1\">%1</a> "_s.arg(i);
    if (page < ItalianPageCount())
        html += u"<a href=\"/cerca?chi=ottici&amp;pag=%1\">Avanti &gt;&gt;</a>"_s.arg(page + 1);
    return Frame(term.toString(), html + u"</div>", page);
}

PlantedLead PlantedOf(const DemoContext& context, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    PlantedLead planted;
    Lead& lead = planted.Fields;
    lead.Category = term.toString();
    lead.Name = EscapeHtml(NameOf(n)); // names are taken as the markup has them
    lead.Country = u"Italy"_s;
    lead.DetailsLink = context.Base + PathOf(n);
    lead.Street = HasNoStreet(n) ? QString() : b.Street.toString();
    lead.State = b.Province.toString();
    lead.City = b.Town.toString();
    if (HasNoPostalCode(n)) {
        const qsizetype blank = lead.City.indexOf(u' ');
        lead.City = blank < 0 ? QString() : lead.City.sliced(blank + 1);
    } else {
        lead.PostalCode = b.PostalCode.toString();
    }
    lead.Phone = u' ' + b.Phone; // the label goes, the blank behind it stays
    if (HasSecondPhone(n))
        lead.Phone += u", " + b.Fax;
    QStringList parts;
    for (const QString& part : {lead.Street, lead.PostalCode, lead.City})
        if (!part.isEmpty())
            parts.append(part);
    parts.append(u'(' + lead.State + u')');
    lead.FullAddress = parts.join(u' ');
    lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Italy");
    lead.Email = b.Email.toString();
    return planted;
}

class TrovanumeriDemo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPE001005"; }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(look.Brand, u"<p>Chi cerchi?</p>"_s, 0));
        });
        server.Get("/cerca", [context](const httplib::Request& request, httplib::Response& response) {
            SendPage(response,
                     ResultPage(context, std::clamp(Parameter(request, "pag").toInt(), 1, ItalianPageCount())));
        });
        server.Get("/dettagli/[-a-z0-9]+", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(u"Dettagli"_s, u"<p>Dettagli</p>"_s, 0));
        });
    }

    QString PathOfSearch() const override { return u"/cerca?chi={what}&dove={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int) const override {
        return context.Base + u"/cerca?chi=ottici";
    }

    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int) const override {
        std::vector<PlantedLead> leads;
        for (int n = 0; n < static_cast<int>(ItalianBusinesses().size()); ++n)
            leads.push_back(PlantedOf(context, n));
        return leads;
    }
};

} // namespace

std::unique_ptr<DemoDirectory> MakeTrovanumeriDemo() {
    return std::make_unique<TrovanumeriDemo>();
}

} // namespace Brindle::Demo
