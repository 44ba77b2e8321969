#include "core/SiteCatalogue.h"
#include "demo/BusinessWebsites.h"
#include "demo/DemoLinks.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/WhitePagesCanadaPeople.h"
#include "demo/YellowPagesCanadaListings.h"

#include <algorithm>
#include <httplib.h>
#include <span>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

const QString searchTerm = u"Plumbers & Heating"_s;
const QString peopleTerm = u"A to Z"_s;
const QString searchPlace = u"Toronto, ON"_s;

const Look look{u"Beaver Pages"_s, u"#8a1f2b"_s, u"en-CA"_s,
                u".listing { background: #fff; border: 1px solid #d9dce2; border-radius: 6px; "
                "padding: .7em 1em; margin: 0 0 .7em }\n"
                ".phoneNumber { float: right; font-weight: bold }\n"
                ".rank { float: left; margin-right: .5em }\n"
                ".pager { margin: .8em 0 } .pager a { margin-right: .8em }\n"_s};

// The first `featuredCount` businesses have paid to stand on top of every page.
constexpr int featuredCount = 2;
constexpr int businessesPerPage = 22;
constexpr int peoplePerPage = 20;

constexpr int PagesFor(std::size_t entries, int perPage) {
    return (static_cast<int>(entries) + perPage - 1) / perPage;
}

constexpr int businessPages = PagesFor(std::size(businesses) - featuredCount, businessesPerPage);
constexpr int peoplePages = PagesFor(std::size(people), peoplePerPage);

// A parameter "page" that is missing or nonsense is the first page; beyond the last one there is the last one.
int PageNumber(const httplib::Request& request, int pages) {
    return std::clamp(Parameter(request, "page").toInt(), 1, pages);
}

std::span<const Business> BusinessesOn(int page) {
    const std::span<const Business> all = std::span(businesses).subspan(featuredCount);
    const auto from = static_cast<std::size_t>(page - 1) * businessesPerPage;
    return all.subspan(from, std::min<std::size_t>(businessesPerPage, all.size() - from));
}

std::span<const Person> PeopleOn(int page) {
    const std::span<const Person> all(people);
    const auto from = static_cast<std::size_t>(page - 1) * peoplePerPage;
    return all.subspan(from, std::min<std::size_t>(peoplePerPage, all.size() - from));
}

QString Query(const QString& what, const QString& where, int page) {
    return u"what=%1&where=%2&page="_s.arg(PercentEncoded(what), PercentEncoded(where)) + QString::number(page);
}

// Pages before and behind, in the three ways in which a page can link to its own site.
QString Pager(const DemoContext& context, const QString& path, const QString& what, const QString& where, int page,
              int pages) {
    const auto link = [&](int target) {
        const QString own[] = {context.Base, u"."_s, QString()};
        return EscapeHtml(QString(own[target % 3] + path + u'?' + Query(what, where, target)));
    };
    QString html = u"<div class=\"pager\">"_s;
    if (page > 1)
        html += u"<a class=\"prev\" href=\"" + link(page - 1) + u"\">Previous</a> ";
    for (int other = 1; other <= pages; ++other) {
        const QString number = QString::number(other);
        html += other == page ? QString(u"<b>" + number + u"</b> ")
                              : QString(u"<a href=\"" + link(other) + u"\">" + number + u"</a> ");
    }
    if (page < pages)
        html += u"<a class=\"next\" rel=\"next\" href=\"" + link(page + 1) + u"\">Next</a>";
    return html + u"</div>\n";
}

constexpr QStringView mastheadTemplate = uR"(<div class="masthead"><span class="brand">Beaver Pages</span>
<a href="/">Home</a> &nbsp; <a href="/about.html">About</a> &nbsp; <a href="/fr/">Fran&ccedil;ais</a></div>
<div class="topics"><a href="/search?what=Roofers">Roofers</a><a href="/search?what=Caf%C3%A9s">Caf&eacute;s</a><a
 href="/search?what=Vets&amp;where=Halifax">Vets &amp; pet shops</a><a href="#">More &gt;&gt;</a></div>
)";

// ---- First layout: everything stands in the list ----

QString WebsiteAddress(const DemoContext& context, const Business& business) {
    const QString slug = business.Slug.toString();
    switch (business.Website) {
    case Site::Plain:
        return WebsiteOf(context, WebsiteKind::Plain, slug);
    case Site::Start:
        return WebsiteOf(context, WebsiteKind::Start, slug);
    case Site::Contact:
        return WebsiteOf(context, WebsiteKind::Contact, slug);
    case Site::Large:
        return WebsiteOf(context, WebsiteKind::Large, slug);
    case Site::Missing:
        return WebsiteOf(context, WebsiteKind::Missing, slug);
    case Site::NoScheme:
        return u"www." + slug + u".example";
    case Site::Secure:
        return u"https://127.0.0.1:9/" + slug + u'/'; // nobody answers there
    case Site::None:
        break;
    }
    return {};
}

QString EmailsOnWebsite(const Business& business) {
    const QString slug = business.Slug.toString();
    switch (business.Website) {
    case Site::Start:
        return EmailsOn(WebsiteKind::Start, slug);
    case Site::Contact:
        return EmailsOn(WebsiteKind::Contact, slug);
    case Site::Large:
        return EmailsOn(WebsiteKind::Large, slug);
    default:
        return {};
    }
}

QString BusinessLink(const Business& business) {
    return u"/bus/" + business.Slug.toString() + u".html?from=list&near=Toronto%2CON";
}

QString MarkupOf(QStringView text, QStringView html) {
    return html.isNull() ? EscapeHtml(text) : html.toString();
}

QString PhoneHtml(const Business& business) {
    if (business.PhoneForm == Phone::None)
        return {};
    return Fill(u"<div class=\"{{class}}\">{{phone}}</div>\n",
                {{u"class", business.PhoneForm == Phone::Bare ? u"phoneNumber"_s : u"phoneNumber tracked"_s},
                 {u"phone", business.PhoneNumber.toString()}});
}

QString BusinessHtml(const DemoContext& context, const Business& business, int number, bool upperLink) {
    const QString link = upperLink ? BusinessLink(business).toUpper() : BusinessLink(business);
    QString address;
    if (!business.FullAddress.isNull())
        address = u"<div class=\"address\">" + MarkupOf(business.FullAddress, business.AddressHtml) + u"</div>\n";
    QString links;
    if (business.Website != Site::None)
        links += Fill(u"<a class=\"urlLink\" rel=\"nofollow\" href=\"/gourl/{{website}}\">Website</a>\n",
                      {{u"website", PercentEncoded(WebsiteAddress(context, business))}});
    if (!business.Email.isEmpty()) {
        QString email = business.Email.toString();
        links += Fill(u"<a class=\"emailLink\" href=\"mailto:{{email}}?subject=Request%20from%20the%20directory\">"
                      u"E-mail</a>\n",
                      {{u"email", email.replace(u'@', u"%40"_s)}});
    }
    // The phone stands before the address or behind it.
    const bool phoneFirst = number % 4 != 3;
    return Fill(uR"(<div class="listing" id="l{{number}}"><div class="listingDetail">
<span class="rank">{{number}}.</span>
<h3 class="listingTitleLine"><a href="{{link}}" title="{{name}}"><span class="listingTitle">{{nameHtml}}</span></a></h3>
{{phoneBefore}}{{address}}<p>Licensed &amp; insured, free estimates.<br>Open until 6 p.m.</p>
{{phoneBehind}}<div class="links">{{links}}<a href="/map?l={{number}}&amp;z=14">Map</a></div>
</div></div>
)",
                {{u"number", number},
                 {u"link", link},
                 {u"name", business.Name.toString()},
                 {u"nameHtml", RawHtml{MarkupOf(business.Name, business.NameHtml)}},
                 {u"phoneBefore", RawHtml{phoneFirst ? PhoneHtml(business) : QString()}},
                 {u"phoneBehind", RawHtml{phoneFirst ? QString() : PhoneHtml(business)}},
                 {u"address", RawHtml{address}},
                 {u"links", RawHtml{links}}});
}

// The form of the second page has one attribute more; the fourth page comes without it.
QString SearchForm(const QString& what, const QString& where, int page) {
    if (page == 4)
        return {};
    return Fill(
        uR"(<form class="search" action="/search" method="get">
<input type="text" id="ypgHeaderWhat" class="what" value="{{what}}"{{more}} maxlength="150" name="what">
<input type="text" id="ypgHeaderWhere" class="where" value="{{where}}" name="where"> <button>Find</button></form>
)",
        {{u"what", what}, {u"where", where}, {u"more", RawHtml{page == 2 ? u" autocomplete=\"off\""_s : QString()}}});
}

QString BusinessPage(const DemoContext& context, const QString& what, const QString& where, int page) {
    QString listings;
    int number = (page - 1) * businessesPerPage;
    for (const Business& business : std::span(businesses).first(featuredCount))
        listings += BusinessHtml(context, business, ++number, false);
    for (const Business& business : BusinessesOn(page)) {
        listings += BusinessHtml(context, business, ++number, false);
        if (number % 8 == 0)
            listings += AdvertBox(context.Businesses, number) + TrackingScript(number);
    }
    // Some businesses stand on the last page once more, their links written otherwise.
    if (page == businessPages)
        for (const std::size_t again : {5, 17})
            listings += BusinessHtml(context, businesses[again], ++number, true);
    const QString pager = Pager(context, u"/search"_s, what, where, page, businessPages);
    const QString body = Fill(uR"(<body class="srp">
{{masthead}}{{form}}<!-- <a href="/old-search">Next page</a> -->
<div class="page"><div>
<div class="ypgResultsTop clearfix"><h1>{{what}} near {{where}}</h1>
<p>Page {{page}} of {{pages}}. Sort by: <a href="#distance">distance</a> | <a href="#name">name</a></p></div>
{{pager}}{{listings}}{{pager}}</div>
<div>{{advert1}}{{advert2}}</div></div>
<div class="ypgFooterLegal legal"><a href="/privacy.html">Privacy</a></div>
<div class="ypgFooterLegal"><p class="legal">&copy; Beaver Pages. All businesses are invented.</p></div>
{{script}}</body>)",
                              {{u"masthead", RawHtml{mastheadTemplate.toString()}},
                               {u"form", RawHtml{SearchForm(what, where, page)}},
                               {u"what", what},
                               {u"where", where},
                               {u"page", page},
                               {u"pages", businessPages},
                               {u"pager", RawHtml{pager}},
                               {u"listings", RawHtml{listings}},
                               {u"advert1", RawHtml{AdvertBox(context.Businesses, page)}},
                               {u"advert2", RawHtml{AdvertBox(context.Businesses, page + 1)}},
                               {u"script", RawHtml{TrackingScript(page)}}});
    return Document(look, what + u" - Beaver Pages", body);
}

// ---- Second layout: the list has names and links, the rest stands on details pages ----

QString PersonLink(const DemoContext& context, const Person& person) {
    return context.DetailsBase + u"/details/" + person.Slug;
}

QString ShownLink(const DemoContext& context, const Person& person) {
    switch (person.DetailsLink) {
    case Link::None:
        return {};
    case Link::Relative:
        return u"/details/" + person.Slug.toString();
    case Link::Absolute:
        return PersonLink(context, person);
    case Link::Click:
        break;
    }
    return ClickLink(context, PersonLink(context, person));
}

QString PersonHtml(const QString& link, const Person& person) {
    QString name = person.Name.toString();
    name.replace(u"&amp;"_s, u"&"_s); // the list writes the name as it is
    return Fill(uR"(<div class="card"><div class="listing_info"><h3><a href="{{link}}" class="fn">{{name}}</a></h3>
<p>Details, map &amp; directions</p></div></div>
)",
                {{u"link", link}, {u"name", RawHtml{MarkupOf(name, person.NameHtml)}}});
}

QString PeoplePage(const DemoContext& context, const QString& what, const QString& where, int page) {
    QString listings;
    // Each page begins with the last entry of the one before, by way of the click-redirect server.
    if (page > 1 && !PeopleOn(page - 1).back().Slug.isEmpty())
        listings +=
            PersonHtml(ClickLink(context, PersonLink(context, PeopleOn(page - 1).back())), PeopleOn(page - 1).back());
    for (const Person& person : PeopleOn(page))
        listings += PersonHtml(ShownLink(context, person), person);
    const QString pager = Pager(context, u"/residential"_s, what, where, page, peoplePages);
    const QString body = Fill(uR"(<body class="white">
{{masthead}}<form class="search" action="/residential" method="get"><input type="text" name="what" value="{{what}}">
<input type="text" name="where" value="{{where}}"> <button>Find</button></form>
<div class="page"><div id="main">
<h1>{{what}} in {{where}}</h1>
{{listings}}{{pager}}</div>
<div>{{advert}}</div></div>
<div id="footer" class="legal"><a href="/privacy.html">Privacy</a> All people are invented.</div>
{{script}}</body>)",
                              {{u"masthead", RawHtml{mastheadTemplate.toString()}},
                               {u"what", what},
                               {u"where", where},
                               {u"listings", RawHtml{listings}},
                               {u"pager", RawHtml{pager}},
                               {u"advert", RawHtml{AdvertBox(context.Businesses, page)}},
                               {u"script", RawHtml{TrackingScript(page)}}});
    return Document(look, what + u" - White Beaver Pages", body);
}

QString AddressBlock(const Person& person) {
    const auto span = [](QStringView name, QStringView value, QStringView behind) {
        return value.isEmpty() ? QString()
                               : QString(u"<span class=\"" + name + u"\">" + EscapeHtml(value) + u"</span>" + behind);
    };
    QString block = u"<div class=\"address adr\">"_s;
    if (!person.Street.isEmpty() || person.City.isEmpty())
        block += u"<p>" + MarkupOf(person.Street, person.StreetHtml) + u"</p>\n";
    block += span(u"locality", person.City, u", ");
    block += span(u"region", person.State, u" ");
    block += span(u"postal-code", person.PostalCode, u"\n");
    if (person.EmailPlace == Mail::Inside)
        block += u"<a href=\"mailto:" + person.Email + u"\">Write</a>";
    return block + u"</div>\n";
}

QString DetailsPage(const Person& person) {
    // Pages without an address have another heading, so that the name in the list is all there is.
    QStringView nameClass = u"listing_name";
    QString address;
    if (person.Address == Block::Yes) {
        nameClass = u"fn n listing_name";
        address = AddressBlock(person);
    }
    QString phone;
    if (person.PhoneForm != Number::None)
        phone = Fill(u"<ul><li class=\"single_result_phone\">{{home}}{{phone}}</li></ul>\n",
                     {{u"home", person.PhoneForm == Number::Home ? u"Home "_s : QString()},
                      {u"phone", person.PhoneNumber.toString()}});
    QString email;
    if (person.EmailPlace == Mail::Outside)
        email = Fill(u"<p><a href=\"mailto:{{email}}\">E-mail</a></p>\n", {{u"email", person.Email.toString()}});
    QString name = person.Name.toString();
    name.replace(u"&amp;"_s, u"&"_s);
    const QString body = Fill(uR"(<body class="white details"><div class="masthead">
<span class="brand">White Beaver Pages</span></div>
<div class="page"><div class="card vcard"><h1 class="{{nameClass}}">{{name}}</h1>
{{phone}}{{address}}{{email}}</div></div>
{{script}}</body>)",
                              {{u"nameClass", nameClass.toString()},
                               {u"name", name},
                               {u"phone", RawHtml{phone}},
                               {u"address", RawHtml{address}},
                               {u"email", RawHtml{email}},
                               {u"script", RawHtml{TrackingScript(1)}}});
    return Document(look, name, body);
}

class YellowPagesCanadaDemo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPN002001"; }
    int LayoutCount() const override { return 2; }
    bool HasDetailsServer() const override { return true; }

    std::vector<std::pair<QString, QString>> SiteKeys(const DemoContext& context) const override {
        return {{u"own_host"_s, HostOf(context.DetailsBase)}, {u"redirect_host"_s, HostOf(context.Clicks)}};
    }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override;
    void AddDetailsRoutes(httplib::Server& server, const DemoContext& context) const override;

    QString PathOfSearch() const override { return u"/search?what={what}&where={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int layout) const override {
        return layout == 1 ? QString(context.Base + u"/search?" + Query(searchTerm, searchPlace, 1))
                           : QString(context.Base + u"/residential?" + Query(peopleTerm, searchPlace, 1));
    }
    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int layout) const override {
        return layout == 1 ? PlantedBusinesses(context) : PlantedPeople(context);
    }

private:
    static std::vector<PlantedLead> PlantedBusinesses(const DemoContext& context);
    static std::vector<PlantedLead> PlantedPeople(const DemoContext& context);
};

void YellowPagesCanadaDemo::AddRoutes(httplib::Server& server, const DemoContext& context) const {
    server.Get("/", [](const httplib::Request&, httplib::Response& response) {
        const QString body = Fill(uR"(<body>{{masthead}}
<div class="search"><h1>Find a business</h1><form action="/search" method="get">
<input type="text" name="what" value="{{what}}"> <input type="text" name="where" value="{{where}}">
<button>Find</button></form></div>
<div class="search"><h2>Find a person</h2><form action="/residential" method="get">
<input type="text" name="what" value="{{who}}"> <input type="text" name="where" value="{{where}}">
<button>Find</button></form></div></body>)",
                                  {{u"masthead", RawHtml{mastheadTemplate.toString()}},
                                   {u"what", searchTerm},
                                   {u"who", peopleTerm},
                                   {u"where", searchPlace}});
        SendPage(response, Document(look, u"Beaver Pages"_s, body));
    });
    using MakePage = QString (*)(const DemoContext&, const QString&, const QString&, int);
    const auto addList = [&](const char* path, MakePage make, int pages) {
        server.Get(path, [context, make, pages](const httplib::Request& request, httplib::Response& response) {
            SendPage(response, make(context, Parameter(request, "what"), Parameter(request, "where"),
                                    PageNumber(request, pages)));
        });
    };
    addList("/search", BusinessPage, businessPages);
    addList("/residential", PeoplePage, peoplePages);

    server.Get("/gourl/(.+)", [](const httplib::Request& request, httplib::Response& response) {
        const QString target = PathGroup(request, 1);
        if (target.startsWith(u"http://127.0.0.1:"))
            SendRedirect(response, target);
        else
            response.status = 404;
    });
    server.Get(
        "/(?:bus|BUS)/([^/]+)\\.(?:html|HTML)", [](const httplib::Request& request, httplib::Response& response) {
            const QString slug = PathGroup(request, 1).toLower();
            for (const Business& business : businesses)
                if (business.Slug == slug)
                    return SendPage(response, Document(look, business.Name.toString(),
                                                       Fill(u"<body>{{masthead}}<div class=\"search\"><h1>{{name}}</h1>"
                                                            u"<p>{{address}}</p><p>{{phone}}</p></div></body>",
                                                            {{u"masthead", RawHtml{mastheadTemplate.toString()}},
                                                             {u"name", business.Name.toString()},
                                                             {u"address", business.FullAddress.toString()},
                                                             {u"phone", business.PhoneNumber.toString()}})));
            response.status = 404;
        });
}

void YellowPagesCanadaDemo::AddDetailsRoutes(httplib::Server& server, const DemoContext&) const {
    server.Get("/details/([^/]+)", [](const httplib::Request& request, httplib::Response& response) {
        const QString slug = PathGroup(request, 1);
        for (const Person& person : people)
            if (person.Slug == slug && person.Address != Block::Fails)
                return SendPage(response, DetailsPage(person));
        response.status = 404;
    });
}

std::vector<PlantedLead> YellowPagesCanadaDemo::PlantedBusinesses(const DemoContext& context) {
    std::vector<PlantedLead> leads;
    for (const Business& business : businesses) {
        if (business.Name.isEmpty())
            continue;
        PlantedLead& planted = leads.emplace_back();
        Lead& lead = planted.Fields;
        lead.Category = searchTerm;
        lead.Name = business.Name.toString();
        lead.FullAddress = business.FullAddress.toString();
        lead.Street = business.Street.toString();
        lead.City = business.City.toString();
        lead.State = business.State.toString();
        lead.PostalCode = business.PostalCode.toString();
        lead.Country = u"Canada"_s;
        lead.Phone = business.PhoneNumber.toString();
        if (business.Website != Site::NoScheme)
            lead.Website = WebsiteAddress(context, business);
        lead.Email = business.Email.toString();
        if (!lead.FullAddress.isEmpty())
            lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Canada");
        lead.DetailsLink = context.Base + u"/bus/" + business.Slug + u".html?from=list&near=Toronto,ON";
        planted.FoundEmails = EmailsOnWebsite(business);
    }
    return leads;
}

std::vector<PlantedLead> YellowPagesCanadaDemo::PlantedPeople(const DemoContext& context) {
    std::vector<PlantedLead> leads;
    for (const Person& person : people) {
        Lead& lead = leads.emplace_back().Fields;
        lead.Name = person.Name.toString();
        lead.FullAddress = person.FullAddress.toString();
        lead.Street = person.Street.toString();
        lead.City = person.City.toString();
        lead.State = person.State.toString();
        lead.PostalCode = person.PostalCode.toString();
        lead.Country = u"Canada"_s;
        // What remains of "Home 555..." is the blank.
        lead.Phone = (person.PhoneForm == Number::Home ? u" " : u"") + person.PhoneNumber.toString();
        // Beside an address, an e-mail is only seen inside its block.
        if (person.EmailPlace == Mail::Inside || person.Address == Block::No)
            lead.Email = person.Email.toString();
        if (!lead.FullAddress.isEmpty())
            lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Canada");
        if (person.DetailsLink != Link::None)
            lead.DetailsLink = PersonLink(context, person);
    }
    return leads;
}

} // namespace

std::unique_ptr<DemoDirectory> MakeYellowPagesCanadaDemo() {
    return std::make_unique<YellowPagesCanadaDemo>();
}

} // namespace Brindle::Demo
