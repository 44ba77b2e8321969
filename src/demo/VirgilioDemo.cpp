#include "core/SiteCatalogue.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/ItalianBusinesses.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView term = u"Bar e gelaterie";
constexpr QStringView placeholder = u"Cognome, Azienda o Parole chiave";
constexpr int pageWithoutTerm = 3; // its search box shows the placeholder

const Look look{u"Enea Locale"_s, u"#8c1d5b"_s, u"it"_s, u"li h6 { font-size: 1em; margin: .2em 0 }"_s};

constexpr QStringView frameTemplate = uR"(<body class="locale">
<div class="masthead"><span class="brand">Enea Locale</span> <a href="/">Home</a></div>
<div class="search"><form action="/cerca"><input name="qs" id="qs" value="{{term}}" autocomplete="off">
<button>Trova</button></form></div>
{{content}}
{{script}}<div class="vf_footer">Ogni voce qui &egrave; inventata.</div></body>)";

bool IsGone(int n) {
    return n % 13 == 8;
}
// The details page gives no more than this as the street; the result page has the whole one.
bool HasShortStreet(int n) {
    return n % 10 == 4;
}
bool HasTwoWordLocality(int n) {
    return n % 12 == 7; // postal code and town, no province
}
bool HasPhoneAsNumber(int n) {
    return n % 3 == 1;
}
bool HasAdvertLink(int n) {
    return n % 11 == 6;
}
// A details page that names a category of its own; it then stands for the rest of the result page too.
bool NamesCategory(int n) {
    return n % ListingsPerPage == 15;
}

QString DetailsAddress(const DemoContext& context, int n) {
    return context.Base + u"/scheda/" + PathNameOf(n);
}

QString AdvertUrl(const DemoContext& context) {
    return context.Base + u"/gratis";
}

QString Frame(const QString& title, const QString& content, int number, QStringView what = term) {
    return Document(look, title,
                    Fill(frameTemplate, {{u"term", what.toString()},
                                         {u"content", RawHtml{content}},
                                         {u"script", RawHtml{TrackingScript(number)}}}));
}

QString ListingOf(const QString& link, const QString& name, const QString& address) {
    return u"<li><h6> <a href=\"" + EscapeHtml(link) + u"\" title=\"Scheda\">" + EscapeHtml(name) +
           u"</a></h6><span class=\"address\">" + EscapeHtml(address) + u"</span></li>\n";
}

QString ResultPage(const DemoContext& context, int page) {
    QString html = u"<div class=\"page\"><div class=\"conteggi\">Pagina %1</div><div class=\"filtri-top\">Filtri"
                   "</div>\n<ul>\n"_s.arg(page);
    for (const int n : NumbersOnPage(page)) {
        const ItalianBusiness& b = ItalianBusinesses()[n];
        html += ListingOf(DetailsAddress(context, n), b.Name.toString(), b.Street + u", " + b.Town);
        // What lies between the businesses leads nowhere.
        if (n % 7 == 2)
            html += ListingOf(u"javascript:void(0)"_s, u"Mostra sulla mappa"_s, {});
        if (n % 7 == 4)
            html += ListingOf(DetailsAddress(context, n) + u"/social=view", u"Condividi"_s, {});
        if (n % 7 == 6)
            html += ListingOf(context.Businesses + u"/plain/fuori-elenco/", u"Fuori elenco"_s, {});
        if (n % 9 == 5)
            html += ListingOf(context.Base + u"/scheda?n=1", u"Con domanda"_s, {});
    }
    html += u"</ul>\n" + AdvertBox(context.Businesses, page);
    for (int i = 1; i <= ItalianPageCount(); ++i)
        html += u"<a href=\"/cerca?qs=bar&amp;pag=%1\">%1</a> "_s.arg(i);
    if (page < ItalianPageCount())
        html += u"<a href=\"/cerca?qs=bar&amp;pag=%1\">Avanti \u203A</a>"_s.arg(page + 1);
    return Frame(u"Bar e gelaterie"_s, html + u"</div>", page, page == pageWithoutTerm ? placeholder : term);
}

QString LocalityOf(int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    if (HasTwoWordLocality(n))
        return b.PostalCode + u" Milano"_s;
    return b.PostalCode + u' ' + b.Town + u" (" + b.Province + u')';
}

// The texts stand unescaped: an apostrophe is itself.
QString DetailsPage(const DemoContext& context, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    QString html = u"<div class=\"page\">"_s;
    if (NamesCategory(n))
        html += u"<p>In: <a class=\"lc_category\" href=\"/categorie\">Caff\u00E8 <b>storici</b></a></p>\n";
    html += u"<h1 class=\"v:name\"> " + b.Name + u" </h1>\n<h3 class=\"lc_address\"><strong>" +
            (HasShortStreet(n) ? u"SNC" : b.Street) + u"</strong> <strong>" + LocalityOf(n) + u"</strong></h3>\n";
    if (HasPhoneAsNumber(n))
        html += u"<p class=\"primoNumeroTel\"><strong> " + b.Phone + u" </strong></p>\n";
    else
        html += u"<p>tel: " + b.Phone + u"</p>\n";
    if (!b.Fax.isEmpty())
        html += u"<p>fax: " + b.Fax + u"</p>\n";
    if (!b.Email.isEmpty())
        html += u"<p><a href=\"mailto:" + b.Email + u"\">Posta</a></p>\n";
    const QString website = HasAdvertLink(n) ? AdvertUrl(context) : AddressOf(context, b.Site, b.Name);
    if (!website.isEmpty())
        html += u"<p><a href=\"/vai;url=" + website + u"\">Sito</a></p>\n";
    return Frame(b.Name.toString(), html + u"</div>", n);
}

PlantedLead PlantedOf(const DemoContext& context, int n, const QString& category) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    PlantedLead planted;
    Lead& lead = planted.Fields;
    lead.Category = category;
    lead.Name = b.Name.toString();
    lead.Country = u"Italy"_s;
    lead.DetailsLink = DetailsAddress(context, n);
    lead.Street = b.Street.toString();
    lead.PostalCode = b.PostalCode.toString();
    lead.FullAddress = lead.Street + u", " + LocalityOf(n);
    if (!HasTwoWordLocality(n)) {
        lead.City = u' ' + b.Town + u' '; // what remains when code and province are taken out
        lead.State = b.Province.toString();
    }
    if (HasShortStreet(n))
        lead.FullAddress = lead.Street + u", " + lead.PostalCode + u' ' + lead.City + u" (" + lead.State + u')';
    lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Italy");
    lead.Phone = b.Phone.toString();
    lead.Fax = b.Fax.toString();
    lead.Email = b.Email.toString();
    if (!HasAdvertLink(n)) {
        lead.Website = AddressOf(context, b.Site, b.Name);
        planted.FoundEmails = EmailsBehind(b.Site, b.Name);
    }
    return planted;
}

class VirgilioDemo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPE001004"; }
    std::vector<std::pair<QString, QString>> SiteKeys(const DemoContext& context) const override {
        return {{u"own_host"_s, HostOf(context.Base)}, {u"advert_url"_s, AdvertUrl(context)}};
    }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(look.Brand, u"<p>Che cosa cerchi?</p>"_s, 0, placeholder));
        });
        server.Get("/cerca", [context](const httplib::Request& request, httplib::Response& response) {
            SendPage(response,
                     ResultPage(context, std::clamp(Parameter(request, "pag").toInt(), 1, ItalianPageCount())));
        });
        server.Get("/scheda/[-a-z0-9]+-(\\d{1,3})",
                   [context](const httplib::Request& request, httplib::Response& response) {
                       const int n = PathGroup(request, 1).toInt();
                       if (n >= static_cast<int>(ItalianBusinesses().size()) || IsGone(n))
                           return SendPage(response, Frame(u"Non trovato"_s, u"<p>Non trovato</p>"_s, 0), 404);
                       SendPage(response, DetailsPage(context, n));
                   });
    }

    QString PathOfSearch() const override { return u"/cerca?qs={what}&dv={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int) const override { return context.Base + u"/cerca?qs=bar"; }

    // A business whose details page is not found has no name and is not kept.
    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int) const override {
        std::vector<PlantedLead> leads;
        QString category;
        for (int n = 0; n < static_cast<int>(ItalianBusinesses().size()); ++n) {
            if (n % ListingsPerPage == 0) // a new page
                category = term.toString();
            if (IsGone(n))
                continue;
            if (NamesCategory(n))
                category = u"Caff\u00E8 storici"_s;
            leads.push_back(PlantedOf(context, n, category));
        }
        return leads;
    }
};

} // namespace

std::unique_ptr<DemoDirectory> MakeVirgilioDemo() {
    return std::make_unique<VirgilioDemo>();
}

} // namespace Brindle::Demo
