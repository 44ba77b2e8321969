#include "core/SiteCatalogue.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/ItalianBusinesses.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

const Look look{u"Pagine Aperte"_s, u"#7a3e12"_s, u"it"_s,
                u".itemBoxWrap { border-top: 1px solid #ccc } .pagination li { display: inline; margin: .3em }"_s};

constexpr QStringView frameTemplate = uR"(<body class="aperte">
<div class="masthead"><span class="brand">Pagine Aperte</span> <a href="/">Home</a></div>
<div class="search"><form action="/cerca"><input name="cosa" placeholder="Che cosa?"> <button>Cerca</button></form></div>
{{content}}
{{script}}<footer>Ogni voce qui &egrave; inventata.</footer></body>)";

constexpr QStringView listingTemplate =
    uR"(<div class="itemBoxWrap"><h2><a href="{{link}}" title="Scheda">{{name}}</a></h2>
<h3>{{category}}</h3><address>{{address}}<br>Italia</address>
<p>{{contacts}}<br>{{website}}{{email}}</p></div>
)";

constexpr QStringView categories[] = {u"Idraulici", u"Bar e caffè", u"Fiorai", u"Ottici"};

// Shapes of the address: one without a postal code, one in which another word of five digits comes first.
bool HasNoPostalCode(int n) {
    return n % 12 == 6;
}
bool HasTwoNumbers(int n) {
    return n % 12 == 9;
}
// A tracking link, longer than any website.
bool HasLongLink(int n) {
    return n % 17 == 3;
}
bool HasSecureLink(int n) {
    return n % 19 == 10;
}
bool HasNoPhone(int n) {
    return n % 14 == 12;
}

QString StreetOf(int n) {
    const QStringView street = ItalianBusinesses()[n].Street;
    return HasTwoNumbers(n) ? street + u" casella 10250"_s : street.toString();
}

QString AddressTextOf(int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    if (HasNoPostalCode(n))
        return b.Street + u' ' + b.Town;
    return StreetOf(n) + u' ' + b.PostalCode + u' ' + b.Town + u' ' + b.Province;
}

QString WebsiteLinkOf(const DemoContext& context, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    if (HasSecureLink(n))
        return AddressOf(context, Web::Secure, b.Name);
    const QString website = AddressOf(context, b.Site, b.Name);
    return HasLongLink(n) ? context.Businesses + u"/vai/" + QString(70, u'x') : website;
}

QString PathOf(int n) {
    return u"/azienda/" + PathNameOf(n) + u".html?da=lista&pos=" + QString::number(n);
}

QString Frame(const QString& title, const QString& content, int number) {
    return Document(
        look, title,
        Fill(frameTemplate, {{u"content", RawHtml{content}}, {u"script", RawHtml{TrackingScript(number)}}}));
}

// Every page number but the current one is a link; the bar ends with a link to the following page, on the last page to
// the first.
QString PaginationOf(int page) {
    const auto address = [](int to) { return u"/cerca?cosa=tutto&amp;pag=%1"_s.arg(to); };
    QString html = u"<ul class=\"pagination\">"_s;
    for (int i = 1; i <= ItalianPageCount(); ++i)
        html += i == page ? u"<li><strong>%1</strong></li>"_s.arg(i)
                          : u"<li><a title=\"Vai a pagina %1\" href=\"%2\">%1</a></li>"_s.arg(i).arg(address(i));
    const int next = page < ItalianPageCount() ? page + 1 : 1;
    return html + u"<li><a title=\"Vai a pagina %1\" href=\"%2\"><big>&raquo;</big></a></li></ul>"_s.arg(next).arg(
                      address(next));
}

QString ListingOf(const DemoContext& context, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    QString contacts = HasNoPhone(n) ? u"Telefono su richiesta"_s : u"Tel: " + b.Phone + u' ';
    if (!HasNoPhone(n) && !b.Fax.isEmpty())
        contacts += u"Fax: " + b.Fax;
    const QString website = WebsiteLinkOf(context, n);
    const bool hasEmail = !b.Email.isEmpty() && !website.isEmpty();
    const auto linkTo = [](const QString& address, QStringView text) -> RawHtml {
        return {u"<a href=\"" + EscapeHtml(address) + u"\">" + text + u"</a> "};
    };
    return Fill(listingTemplate, {{u"link", PathOf(n)},
                                  {u"name", b.Name.toString()},
                                  {u"category", categories[n % 4].toString()},
                                  {u"address", AddressTextOf(n)},
                                  {u"contacts", contacts},
                                  {u"website", website.isEmpty() ? RawHtml{} : linkTo(website, u"Sito")},
                                  {u"email", hasEmail ? linkTo(u"mailto:" + b.Email, u"Posta") : RawHtml{}}});
}

QString ResultPage(const DemoContext& context, int page) {
    QString html = u"<div class=\"page\"><div class=\"search-title\">Risultati, pagina %1</div>\n"_s.arg(page);
    for (const int n : NumbersOnPage(page))
        html += ListingOf(context, n);
    html += u"<table class=\"legend\"><tr><td>Voci in ordine di rilevanza</td></tr></table>\n"_s;
    return Frame(u"Risultati"_s, html + PaginationOf(page) + AdvertBox(context.Businesses, page) + u"</div>", page);
}

PlantedLead PlantedOf(const DemoContext& context, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    PlantedLead planted;
    Lead& lead = planted.Fields;
    lead.Category = categories[n % 4].toString();
    lead.Name = b.Name.toString();
    lead.Country = u"Italy"_s;
    lead.DetailsLink = context.Base + PathOf(n);
    lead.FullAddress = AddressTextOf(n);
    lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Italy");
    if (!HasNoPostalCode(n)) {
        lead.Street = StreetOf(n);
        lead.PostalCode = b.PostalCode.toString();
        lead.City = b.Town + u' ' + b.Province;
    }
    if (!HasNoPhone(n)) {
        lead.Phone = b.Phone.toString();
        lead.Fax = b.Fax.toString();
    }
    const QString website = WebsiteLinkOf(context, n);
    if (HasSecureLink(n))
        lead.Website = u"http://" + website; // only "http://" counts as a scheme
    else if (!HasLongLink(n))
        lead.Website = website;
    if (lead.Website.size() > 60)
        lead.Website.clear();
    if (!website.isEmpty())
        lead.Email = b.Email.toString();
    if (!lead.Website.isEmpty() && !HasSecureLink(n))
        planted.FoundEmails = EmailsBehind(b.Site, b.Name);
    return planted;
}

class PagineMailDemo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPE001002"; }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(look.Brand, u"<p>Cerca un'azienda.</p>"_s, 0));
        });
        server.Get("/cerca", [context](const httplib::Request& request, httplib::Response& response) {
            SendPage(response,
                     ResultPage(context, std::clamp(Parameter(request, "pag").toInt(), 1, ItalianPageCount())));
        });
        server.Get("/azienda/[-a-z0-9]+\\.html", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(u"Azienda"_s, u"<p>Scheda dell'azienda</p>"_s, 0));
        });
    }

    QString PathOfSearch() const override { return u"/cerca?cosa={what}&dove={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int) const override {
        return context.Base + u"/cerca?cosa=tutto";
    }

    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int) const override {
        std::vector<PlantedLead> leads;
        for (int n = 0; n < static_cast<int>(ItalianBusinesses().size()); ++n)
            leads.push_back(PlantedOf(context, n));
        return leads;
    }
};

} // namespace

std::unique_ptr<DemoDirectory> MakePagineMailDemo() {
    return std::make_unique<PagineMailDemo>();
}

} // namespace Brindle::Demo
