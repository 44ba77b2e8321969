#include "core/SiteCatalogue.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/ItalianBusinesses.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView term = u"Officine";
constexpr QStringView ownContact = u"assistenza@guida-italia.example";

const Look look{u"Guida Italia"_s, u"#0b6b3a"_s, u"it"_s, u".data { margin: .2em 0 } a[disabled] { color: #999 }"_s};

constexpr QStringView frameTemplate = uR"(<body class="guida">
<div class="masthead"><span class="brand">Guida Italia</span> <a href="/">Home</a></div>
{{content}}
{{script}}<div id="footer">Ogni voce qui &egrave; inventata.</div></body>)";

// Layout 1 has a search form with the term and a details link per listing, layout 2 has neither.
constexpr QStringView head1Template = uR"(<form action="/it/italy/officine"><input id="search-field" name="q"
 value="{{term}}"> <button>Cerca</button></form><h1 class="Pageh1">{{term}} in Italia</h1>
)";
constexpr QStringView head2Template = uR"(<form action="/it/italy/persone"><input id="search-field" name="q"
 value="{{term}}"></form><div class="span-4 people">Persone</div>
)";

constexpr QStringView name1Template = uR"(<h2><a href="{{link}}"><span class="fn org">{{name}}</span></a></h2>)";
constexpr QStringView name2Template = uR"(<h2><span class="fn">{{name}}</span></h2>)";

constexpr QStringView listingTemplate = uR"(<div class="result-item vcard">{{head}}
<p><span class="street-address">{{street}}</span><br>{{code}}<span class="locality">{{town}}</span></p>
{{phone}}{{email}}{{website}}</div>
)";

bool HasNoPostalCode(int n) {
    return n % 11 == 5;
}
bool HasNoPhone(int n) {
    return n % 14 == 12;
}
// The directory's own address stands in the place of the business's.
bool ShowsOwnContact(int n) {
    return n % 9 == 3;
}
bool IsLinkedAbsolutely(int n) {
    return n % 10 == 8;
}

QString Frame(const QString& title, const QString& content, int number) {
    return Document(
        look, title,
        Fill(frameTemplate, {{u"content", RawHtml{content}}, {u"script", RawHtml{TrackingScript(number)}}}));
}

QString NameOf(int n) {
    return ItalianBusinesses()[n].Name + QString::fromLatin1(n % 8 == 5 ? " & Figli" : "");
}

QString LinkOf(const DemoContext& context, int n) {
    const QString path = u"azienda/" + PathNameOf(n);
    return IsLinkedAbsolutely(n) ? context.Base + u'/' + path : path;
}

QString ListingOf(const DemoContext& context, int layout, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    const QString head = layout == 1 ? Fill(name1Template, {{u"link", LinkOf(context, n)}, {u"name", NameOf(n)}})
                                     : Fill(name2Template, {{u"name", NameOf(n)}});
    QString code;
    if (!HasNoPostalCode(n))
        code = u"<span class=\"postal-code\">" + b.PostalCode + u"</span> ";
    QString phone;
    if (!HasNoPhone(n))
        phone = u"<div class=\"data tel\"><b>" + b.Phone + u"</b></div>\n";
    QString email;
    if (ShowsOwnContact(n) || !b.Email.isEmpty())
        email = u"<a href=\"mailto:" + (ShowsOwnContact(n) ? ownContact : b.Email) + u"\">posta</a>\n";
    QString website = AddressOf(context, b.Site, b.Name);
    if (!website.isEmpty())
        website = u"<a class=\"website\" href=\"/vai?url=" + PercentEncoded(website) + u"\">sito</a>\n";
    return Fill(listingTemplate, {{u"head", RawHtml{head}},
                                  {u"street", b.Street.toString()},
                                  {u"code", RawHtml{code}},
                                  {u"town", b.Town.toString()},
                                  {u"phone", RawHtml{phone}},
                                  {u"email", RawHtml{email}},
                                  {u"website", RawHtml{website}}});
}

QString ResultPage(const DemoContext& context, int layout, int page) {
    QString html =
        u"<div class=\"page\">" + Fill(layout == 1 ? head1Template : head2Template, {{u"term", term.toString()}});
    for (const int n : NumbersOnPage(page))
        html += ListingOf(context, layout, n);
    const auto link = [layout](int to) -> QString {
        return (layout == 1 ? u"/it/italy/officine/" : u"/it/italy/persone/") + QString::number(to);
    };
    for (int i = 1; i <= ItalianPageCount(); ++i)
        html += u"<a href=\"" + link(i) + u"\">" + QString::number(i) + u"</a> ";
    // On the last page the link is there too, but disabled.
    html += page < ItalianPageCount() ? u"<a class=\"prec\" href=\"" + link(page + 1) + u"\">successivo</a>"
                                      : u"<a class=\"prec\" disabled>successivo</a>"_s;
    return Frame(u"Officine in Italia"_s, html + AdvertBox(context.Businesses, page) + u"</div>", page);
}

PlantedLead PlantedOf(const DemoContext& context, int layout, int n) {
    const ItalianBusiness& b = ItalianBusinesses()[n];
    PlantedLead planted;
    Lead& lead = planted.Fields;
    if (layout == 1)
        lead.Category = term.toString();
    lead.Name = NameOf(n);
    lead.Country = u"Italy"_s;
    lead.Street = b.Street.toString();
    lead.City = b.Town.toString();
    lead.FullAddress = lead.Street;
    if (!HasNoPostalCode(n)) {
        lead.PostalCode = b.PostalCode.toString();
        lead.FullAddress += u", " + lead.PostalCode;
    }
    lead.FullAddress += u' ' + lead.City;
    lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Italy");
    if (!HasNoPhone(n))
        lead.Phone = b.Phone.toString();
    if (!ShowsOwnContact(n))
        lead.Email = b.Email.toString();
    lead.Website = AddressOf(context, b.Site, b.Name);
    planted.FoundEmails = EmailsBehind(b.Site, b.Name);
    if (layout == 1)
        lead.DetailsLink = context.Base + u"/it/italy/" + LinkOf(context, n);
    else
        lead.DetailsLink = u"No Details URL (Unique Phone: " + lead.Phone + u')';
    return planted;
}

class InfobelItalyDemo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPE001003"; }
    int LayoutCount() const override { return 2; }
    std::vector<std::pair<QString, QString>> SiteKeys(const DemoContext&) const override {
        return {{u"contact_email"_s, ownContact.toString()}};
    }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(look.Brand,
                                     u"<form action=\"/it/italy/officine\"><input id=\"search-field\" "
                                     "name=\"q\" value=\"\"> <button>Cerca</button></form>"_s,
                                     0));
        });
        server.Get("/it/italy/(officine|persone)/?(\\d*)",
                   [context](const httplib::Request& request, httplib::Response& response) {
                       const int layout = PathGroup(request, 1) == u"officine" ? 1 : 2;
                       const int page = std::clamp(PathGroup(request, 2).toInt(), 1, ItalianPageCount());
                       SendPage(response, ResultPage(context, layout, page));
                   });
        server.Get("/it/italy/azienda/[-a-z0-9]+", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(u"Azienda"_s, u"<p>Scheda dell'azienda</p>"_s, 0));
        });
    }

    QString PathOfSearch() const override { return u"/it/italy/officine?q={what}&l={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int layout) const override {
        return context.Base + (layout == 1 ? u"/it/italy/officine" : u"/it/italy/persone/");
    }

    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int layout) const override {
        std::vector<PlantedLead> leads;
        bool withoutPhoneSeen = false;
        for (int n = 0; n < static_cast<int>(ItalianBusinesses().size()); ++n) {
            // Without a link the phone tells businesses apart, so all without one count as the same.
            if (layout == 2 && HasNoPhone(n) && std::exchange(withoutPhoneSeen, true))
                continue;
            leads.push_back(PlantedOf(context, layout, n));
        }
        return leads;
    }
};

} // namespace

std::unique_ptr<DemoDirectory> MakeInfobelItalyDemo() {
    return std::make_unique<InfobelItalyDemo>();
}

} // namespace Brindle::Demo
