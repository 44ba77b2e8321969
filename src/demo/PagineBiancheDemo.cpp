#include "core/SiteCatalogue.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/ItalianBusinesses.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView term = u"Idraulici";

const Look look{u"Elenco Bianco"_s, u"#1d4f8c"_s, u"it"_s, u".vcard h2 { font-size: 1.1em }"_s};

constexpr QStringView frameTemplate = uR"(<body class="elenco">
<div class="masthead"><span class="brand">Elenco Bianco</span> <a href="/">Home</a></div>
<div class="search"><form action="/ricerca"><label for="input_cosa">Chi o che cosa</label>
<input id="input_cosa" name="qs" type="text" value="{{term}}" autocomplete="off"> <button>Trova</button></form></div>
{{content}}
{{script}}<div id="footer">Ogni voce qui &egrave; inventata.</div></body>)";

constexpr QStringView listingTemplate = uR"(<div class="vcard card" data-n="{{number}}">
<h2 class="org fn"><a class="name" href="{{link}}" title="Scheda">{{name}}</a></h2>
<p>{{town}} <a href="#mappa">Mappa</a></p></div>
)";

// What is particular about a business here.
bool IsGone(int n) {
    return n % 13 == 8; // its details page is not found
}
bool IsLinkedAbsolutely(int n) {
    return n % 9 == 4;
}
bool IsRenamed(int n) {
    return n % 6 == 1; // the details page has a longer name
}
bool HasContactForm(int n) {
    return !ItalianBusinesses()[n].Email.isEmpty();
}
bool HasEmailOnPage(int n) {
    return n % 17 == 7; // it counts for more than the contact form's
}

QString NameOnPage(int n) {
    return ItalianBusinesses()[n].Name + QString::fromLatin1(IsRenamed(n) ? " S.r.l." : "");
}

QString PathOf(int n) {
    return u"scheda/" + PathNameOf(n) + u"?da=elenco&lingua=it";
}

QString EmailOnPage(int n) {
    return u"info@" + SlugOf(ItalianBusinesses()[n].Name) + u".example";
}

QString Frame(const QString& title, const QString& content, int number) {
    return Document(look, title,
                    Fill(frameTemplate, {{u"term", term.toString()},
                                         {u"content", RawHtml{content}},
                                         {u"script", RawHtml{TrackingScript(number)}}}));
}

QString ResultPage(const DemoContext& context, int page) {
    QString html = u"<div class=\"page\"><div class=\"listing-top\">Pagina %1</div>\n"_s.arg(page);
    for (const int n : NumbersOnPage(page)) {
        const ItalianBusiness& business = ItalianBusinesses()[n];
        html += Fill(listingTemplate, {{u"number", n},
                                       {u"link", IsLinkedAbsolutely(n) ? context.Base + u'/' + PathOf(n) : PathOf(n)},
                                       {u"name", business.Name.toString()},
                                       {u"town", business.Town.toString()}});
    }
    html += AdvertBox(context.Businesses, page);
    for (int i = 1; i <= ItalianPageCount(); ++i)
        html += u"<a href=\"/ricerca?qs=Idraulici&amp;pag=%1\">%1</a> "_s.arg(i);
    if (page < ItalianPageCount())
        html += u"<a href=\"/ricerca?qs=Idraulici&amp;pag=%1\">Successivo</a>"_s.arg(page + 1);
    return Frame(term + u" in Italia"_s, html + u"</div>", page);
}

// The texts stand unescaped: an apostrophe is itself.
QString DetailsPage(const DemoContext& context, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    QString html = u"<div class=\"page\"><h1 itemprop=\"name\">" + NameOnPage(n) +
                   u"</h1>\n<p><span itemprop=\"streetAddress\">" + b.Street +
                   u"</span> - <span itemprop=\"postalCode\">" + b.PostalCode +
                   u"</span> <span itemprop=\"addressLocality\">" + b.Town + u" (" + b.Province +
                   u")</span></p>\n<p><span>tel: " + b.Phone + u"</span></p>\n";
    if (!b.Fax.isEmpty())
        html += u"<p><span>fax: " + b.Fax + u"</span></p>\n";
    if (const QString website = AddressOf(context, b.Site, b.Name); !website.isEmpty())
        html += u"<p><a class=\"site-tooltip\" href=\"" + website + u"\">Sito web</a></p>\n";
    if (HasContactForm(n))
        html += u"<p class=\"web-contatti\"><a href=\"/scrivi/%1\">Scrivi</a></p>\n"_s.arg(n);
    if (HasEmailOnPage(n))
        html += u"<p><a href=\"mailto:" + EmailOnPage(n) + u"\">Posta</a></p>\n";
    return Frame(NameOnPage(n), html + u"</div>", n);
}

QString ContactForm(int n) {
    const QString form = u"<form method=\"post\"><input type=\"hidden\" name=\"dest_em\" value=\"" +
                         ItalianBusinesses()[n].Email + u"\"><textarea name=\"testo\"></textarea></form>";
    return Frame(u"Scrivi"_s, form, n);
}

PlantedLead PlantedOf(const DemoContext& context, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    PlantedLead planted;
    Lead& lead = planted.Fields;
    lead.Category = term.toString();
    lead.Name = b.Name.toString();
    lead.Country = u"Italy"_s;
    lead.DetailsLink = context.Base + u'/' + PathOf(n);
    if (IsGone(n))
        return planted;
    lead.Name = NameOnPage(n);
    lead.Street = b.Street.toString();
    lead.City = b.Town + u" "_s; // the blank before the parenthesis stays
    lead.State = b.Province.toString();
    lead.PostalCode = b.PostalCode.toString();
    lead.Phone = b.Phone.toString();
    if (!b.Fax.isEmpty())
        lead.Fax = u' ' + b.Fax; // the fax is not trimmed
    lead.Website = AddressOf(context, b.Site, b.Name);
    lead.FullAddress = b.Street + u" - " + b.PostalCode + u' ' + b.Town + u"  ("_s + b.Province + u')';
    lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Italy");
    lead.Email = HasEmailOnPage(n) ? EmailOnPage(n) : b.Email.toString();
    planted.FoundEmails = EmailsBehind(b.Site, b.Name);
    return planted;
}

class PagineBiancheDemo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPE001001"; }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(look.Brand, u"<p>Che cosa cerchi?</p>"_s, 0));
        });
        server.Get("/ricerca", [context](const httplib::Request& request, httplib::Response& response) {
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
        server.Get("/scrivi/(\\d{1,3})", [](const httplib::Request& request, httplib::Response& response) {
            const int last = static_cast<int>(ItalianBusinesses().size()) - 1;
            SendPage(response, ContactForm(std::min(PathGroup(request, 1).toInt(), last)));
        });
    }

    QString PathOfSearch() const override { return u"/ricerca?qs={what}&dv={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int) const override {
        return context.Base + u"/ricerca?qs=" + PercentEncoded(term.toString());
    }

    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int) const override {
        std::vector<PlantedLead> leads;
        for (int n = 0; n < static_cast<int>(ItalianBusinesses().size()); ++n)
            leads.push_back(PlantedOf(context, n));
        return leads;
    }
};

} // namespace

std::unique_ptr<DemoDirectory> MakePagineBiancheDemo() {
    return std::make_unique<PagineBiancheDemo>();
}

} // namespace Brindle::Demo
