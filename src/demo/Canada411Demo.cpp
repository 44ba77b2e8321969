#include "core/SiteCatalogue.h"
#include "demo/DemoLinks.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

enum class Who { Business, Person };

// What is particular about an entry.
enum class Shape {
    Full,
    Absolute,      // linked by an absolute address
    Renamed,       // the details page has a longer name
    PlainName,     // a person's name in one piece
    NoDetailsName, // the details page has no name of its own
    NoListedName,  // the result page shows a picture instead of a name
    Nameless,      // neither page has a name: no lead
    NoStreet,
    StreetOnly,
    NoAddress,
    Withheld, // "()" stands for the street, and nothing else of the address
    NoPhone,
    EmailFirst, // the e-mail stands above the address, where it is not looked for
    Gone,       // the details page is not found
    Fails       // the details page is a server's error
};

struct Entry {
    Who Kind;
    Shape Form;
    QStringView Name;
    QStringView Street;
    QStringView City;
    QStringView Province;
    QStringView PostalCode;
    QStringView Phone;
    QStringView Email;
    Web Site;
};

// clang-format off
constexpr Entry entries[] = {
    {Who::Business, Shape::Full, u"Hickory Garden Centre", u"200 Bridge Street", u"Kelowna", u"BC", u"V1Y 4K8", u"(250) 555-0100", u"", Web::None},
    {Who::Business, Shape::Full, u"Walnut Tree Service", u"755 Harbour Lane", u"Guelph", u"ON", u"N1H 9W2", u"(519) 555-0101", u"info@walnut-tree-service.example", Web::Start},
    {Who::Person, Shape::Full, u"Joan Reed", u"895 Bridge Street", u"Kelowna", u"BC", u"V1Y 3B9", u"250 555-0170", u"", Web::None},
    {Who::Business, Shape::Full, u"Starling Tree Service", u"911 Station Road", u"St. John's", u"NL", u"A1C 9M6", u"(709) 555-0102", u"", Web::Plain},
    {Who::Business, Shape::Renamed, u"Martin Nurseries", u"253 Bridge Street", u"Guelph", u"ON", u"N1H 7X4", u"(519) 555-0103", u"", Web::Contact},
    {Who::Person, Shape::Full, u"Peter C Pond", u"449 Water Street", u"Trois-Rivières", u"QC", u"G9A 6H8", u"819 555-0171", u"peter@pond.example", Web::None},
    {Who::Business, Shape::Full, u"Alder & Grackle Lawn Care", u"697 Third Avenue", u"Kingston", u"ON", u"K7L 3Z5", u"(613) 555-0104", u"", Web::None},
    {Who::Business, Shape::Full, u"Thorne's Home Decor", u"364 Harbour Lane", u"Saskatoon", u"SK", u"S7K 5G8", u"(306) 555-0105", u"info@thorne-s-home-decor.example", Web::Large},
    {Who::Business, Shape::Full, u"Willow Lighting", u"Unit 22, 912 King Street West", u"Kingston", u"ON", u"K7L 3K2", u"(613) 555-0106", u"", Web::Secure},
    {Who::Person, Shape::NoStreet, u"Maude A Beck", u"42 Main Street", u"St. John's", u"NL", u"A1C 8Y2", u"709 555-0172", u"", Web::None},
    {Who::Business, Shape::NoStreet, u"Junco Garden Centre", u"722 Third Avenue", u"Trois-Rivières", u"QC", u"G9A 9K7", u"(819) 555-0107", u"", Web::Pdf},
    {Who::Business, Shape::Full, u"Cherry Plumbing", u"776 Mill Road", u"Charlottetown", u"PE", u"C1A 4B7", u"(902) 555-0108", u"", Web::Missing},
    {Who::Person, Shape::Full, u"Alec Lea", u"451 Lakeshore Drive", u"Kelowna", u"BC", u"V1Y 2Y5", u"250 555-0173", u"", Web::None},
    {Who::Business, Shape::Full, u"Tamarack Nurseries", u"940 King Street West", u"Québec", u"QC", u"G1R 2A4", u"(418) 555-0109", u"info@tamarack-nurseries.example", Web::Start},
    {Who::Business, Shape::Full, u"Birch Upholstery", u"987 Bridge Street", u"Brandon", u"MB", u"R7A 3X9", u"(204) 555-0110", u"", Web::None},
    {Who::Business, Shape::NoAddress, u"Swift Fencing", u"860 Queen Street", u"Halifax", u"NS", u"B3J 8Z4", u"(902) 555-0111", u"", Web::Start},
    {Who::Person, Shape::Full, u"Nadia D Fenn", u"208 Mill Road", u"Trois-Rivières", u"QC", u"G9A 2K1", u"819 555-0174", u"", Web::None},
    {Who::Business, Shape::Full, u"Vireo Stonework", u"369 Lakeshore Drive", u"Saskatoon", u"SK", u"S7K 8E3", u"(306) 555-0112", u"", Web::Plain},
    {Who::Business, Shape::Full, u"Alder & Osprey Patio Works", u"974 College Avenue", u"Québec", u"QC", u"G1R 8W8", u"(418) 555-0113", u"info@alder-osprey-patio-works.example", Web::Contact},
    {Who::Person, Shape::PlainName, u"Hugo H Thorne", u"71 Station Road", u"Red Deer", u"AB", u"T4N 1W5", u"403 555-0175", u"", Web::None},
    {Who::Business, Shape::NoDetailsName, u"Birch Greenhouses", u"Unit 35, 699 Mill Road", u"St. John's", u"NL", u"A1C 1S5", u"(709) 555-0114", u"", Web::None},
    {Who::Business, Shape::Full, u"Tanager Flooring", u"586 Lakeshore Drive", u"Moncton", u"NB", u"E1C 6K4", u"(506) 555-0115", u"", Web::Large},
    {Who::Business, Shape::Full, u"Poplar Pools & Spas", u"47 Lakeshore Drive", u"Red Deer", u"AB", u"T4N 4H7", u"(403) 555-0116", u"", Web::Secure},
    {Who::Person, Shape::Full, u"Iris Firth", u"326 King Street West", u"Guelph", u"ON", u"N1H 9P6", u"519 555-0176", u"iris@firth.example", Web::None},
    {Who::Business, Shape::EmailFirst, u"Swallow Stonework", u"536 Station Road", u"Guelph", u"ON", u"N1H 9P2", u"(519) 555-0117", u"info@swallow-stonework.example", Web::Contact},
    {Who::Business, Shape::Full, u"Pond's Greenhouses", u"615 Queen Street", u"Moncton", u"NB", u"E1C 7A3", u"(506) 555-0118", u"", Web::Missing},
    {Who::Person, Shape::Full, u"Owen B Quarry", u"704 King Street West", u"St. John's", u"NL", u"A1C 7M8", u"709 555-0177", u"", Web::None},
    {Who::Business, Shape::Full, u"Vireo Patio Works", u"254 College Avenue", u"Moncton", u"NB", u"E1C 7S3", u"(506) 555-0119", u"", Web::Start},
    {Who::Business, Shape::Withheld, u"Swallow Kitchens", u"468 Bridge Street", u"Trois-Rivières", u"QC", u"G9A 3T5", u"(819) 555-0120", u"", Web::None},
    {Who::Business, Shape::Full, u"Killdeer Greenhouses", u"49 Lakeshore Drive", u"Halifax", u"NS", u"B3J 1B6", u"(902) 555-0121", u"info@killdeer-greenhouses.example", Web::Start},
    {Who::Person, Shape::NoAddress, u"Pearl J Moss", u"286 Queen Street", u"Kingston", u"ON", u"K7L 5S5", u"613 555-0178", u"", Web::None},
    {Who::Business, Shape::Full, u"Poplar & Warbler Roofing", u"Unit 35, 752 Lakeshore Drive", u"Guelph", u"ON", u"N1H 5W9", u"(519) 555-0122", u"", Web::Plain},
    {Who::Business, Shape::Gone, u"Hemlock Stonework", u"314 College Avenue", u"Charlottetown", u"PE", u"C1A 5C2", u"(902) 555-0123", u"", Web::Contact},
    {Who::Person, Shape::Full, u"Silas Yarrow", u"26 Lakeshore Drive", u"Québec", u"QC", u"G1R 2M9", u"418 555-0179", u"", Web::None},
    {Who::Business, Shape::Full, u"Pipit Flooring", u"767 Station Road", u"Trois-Rivières", u"QC", u"G9A 3A3", u"(819) 555-0124", u"", Web::None},
    {Who::Business, Shape::Full, u"Waxwing Flooring", u"310 Main Street", u"Red Deer", u"AB", u"T4N 5L2", u"(403) 555-0125", u"info@waxwing-flooring.example", Web::Large},
    {Who::Business, Shape::Absolute, u"Rowan Greenhouses", u"875 Mill Road", u"Guelph", u"ON", u"N1H 9G7", u"(519) 555-0126", u"", Web::Secure},
    {Who::Person, Shape::Full, u"Tess B Knoll", u"201 Bridge Street", u"Kelowna", u"BC", u"V1Y 7Z3", u"250 555-0180", u"", Web::None},
    {Who::Business, Shape::Full, u"Kinglet Greenhouses", u"783 Church Street", u"Halifax", u"NS", u"B3J 9S1", u"(902) 555-0127", u"", Web::Pdf},
    {Who::Business, Shape::Full, u"Linden Paint & Paper", u"951 Bridge Street", u"Red Deer", u"AB", u"T4N 7C7", u"(403) 555-0128", u"", Web::Missing},
    {Who::Person, Shape::Gone, u"Victor C Brook", u"440 Lakeshore Drive", u"Québec", u"QC", u"G1R 1W7", u"418 555-0181", u"victor@brook.example", Web::None},
    {Who::Business, Shape::NoListedName, u"Willow Pools & Spas", u"691 Mill Road", u"Halifax", u"NS", u"B3J 1X6", u"(902) 555-0129", u"info@willow-pools-spas.example", Web::Start},
    {Who::Business, Shape::Full, u"Hemlock Landscaping", u"Unit 35, 789 Church Street", u"Guelph", u"ON", u"N1H 9R5", u"(519) 555-0130", u"", Web::None},
    {Who::Business, Shape::Full, u"Ridge's Stonework", u"988 Main Street", u"Red Deer", u"AB", u"T4N 3L6", u"(403) 555-0131", u"", Web::Start},
    {Who::Person, Shape::Full, u"Wanda Shaw", u"14 Bridge Street", u"Guelph", u"ON", u"N1H 7N6", u"519 555-0182", u"", Web::None},
    {Who::Business, Shape::Full, u"Junco Roofing", u"324 Harbour Lane", u"Charlottetown", u"PE", u"C1A 2J3", u"(902) 555-0132", u"", Web::Plain},
    {Who::Business, Shape::StreetOnly, u"Alder Roofing", u"768 Lakeshore Drive", u"St. John's", u"NL", u"A1C 7Z7", u"(709) 555-0133", u"info@alder-roofing.example", Web::Contact},
    {Who::Person, Shape::Full, u"Yves H Dale", u"296 Bridge Street", u"Charlottetown", u"PE", u"C1A 1T9", u"902 555-0183", u"", Web::Start},
    {Who::Business, Shape::Full, u"Tamarack Flooring", u"561 Water Street", u"Moncton", u"NB", u"E1C 4N3", u"(506) 555-0134", u"", Web::None},
    {Who::Business, Shape::Full, u"Alder Patio Works", u"71 Third Avenue", u"Red Deer", u"AB", u"T4N 9P3", u"(403) 555-0135", u"", Web::Large},
    {Who::Business, Shape::EmailFirst, u"Alder Tree Service", u"515 Third Avenue", u"Kelowna", u"BC", u"V1Y 6W4", u"(250) 555-0136", u"", Web::Contact},
    {Who::Person, Shape::PlainName, u"Zoé L Peck", u"866 Water Street", u"Halifax", u"NS", u"B3J 6V4", u"902 555-0184", u"", Web::None},
    {Who::Business, Shape::Full, u"Spruce Pools & Spas", u"852 Mill Road", u"Saskatoon", u"SK", u"S7K 8P5", u"(306) 555-0137", u"info@spruce-pools-spas.example", Web::Pdf},
    {Who::Business, Shape::Full, u"Aspen Lawn Care", u"Unit 30, 285 Harbour Lane", u"Brandon", u"MB", u"R7A 9P2", u"(204) 555-0138", u"", Web::Missing},
    {Who::Person, Shape::Full, u"Bruno Lund", u"238 Third Avenue", u"Kelowna", u"BC", u"V1Y 2E8", u"250 555-0185", u"", Web::None},
    {Who::Business, Shape::Full, u"Loon Roofing", u"88 Church Street", u"Saskatoon", u"SK", u"S7K 1H2", u"(306) 555-0139", u"", Web::Start},
    {Who::Business, Shape::Full, u"Linden & Sandpiper Flooring", u"721 Mill Road", u"Charlottetown", u"PE", u"C1A 1Z4", u"(902) 555-0140", u"", Web::None},
    {Who::Business, Shape::Fails, u"Finch Fencing", u"877 Church Street", u"St. John's", u"NL", u"A1C 7V7", u"(709) 555-0141", u"info@finch-fencing.example", Web::Start},
    {Who::Person, Shape::Full, u"Clara F Weir", u"169 Church Street", u"Brandon", u"MB", u"R7A 5S7", u"204 555-0186", u"clara@weir.example", Web::None},
    {Who::Business, Shape::Full, u"Poplar Plumbing", u"97 Water Street", u"St. John's", u"NL", u"A1C 1M7", u"(709) 555-0142", u"", Web::Plain},
    {Who::Business, Shape::Full, u"Chestnut Lawn Care", u"234 Station Road", u"Charlottetown", u"PE", u"C1A 4X2", u"(902) 555-0143", u"", Web::Contact},
    {Who::Person, Shape::NoStreet, u"Dennis C Heath", u"765 Mill Road", u"Saskatoon", u"SK", u"S7K 1E4", u"306 555-0187", u"", Web::None},
    {Who::Business, Shape::NoStreet, u"Lund's Stonework", u"203 Lakeshore Drive", u"Guelph", u"ON", u"N1H 1J3", u"(519) 555-0144", u"", Web::None},
    {Who::Business, Shape::Full, u"Hawthorn Stonework", u"559 Third Avenue", u"Kelowna", u"BC", u"V1Y 9Z2", u"(250) 555-0145", u"info@hawthorn-stonework.example", Web::Large},
    {Who::Business, Shape::Full, u"Hazel Lawn Care", u"Unit 33, 427 Third Avenue", u"Moncton", u"NB", u"E1C 6Y3", u"(506) 555-0146", u"", Web::Secure},
    {Who::Person, Shape::Full, u"Edith Marsh", u"287 Harbour Lane", u"St. John's", u"NL", u"A1C 3M9", u"709 555-0188", u"", Web::None},
    {Who::Business, Shape::NoPhone, u"Sandpiper Lighting", u"662 Mill Road", u"Red Deer", u"AB", u"T4N 8L8", u"(403) 555-0147", u"", Web::Pdf},
    {Who::Business, Shape::Full, u"Ash Patio Works", u"816 Station Road", u"Québec", u"QC", u"G1R 2V5", u"(418) 555-0148", u"", Web::Missing},
    {Who::Person, Shape::Full, u"Felix C Ridge", u"536 College Avenue", u"Kingston", u"ON", u"K7L 5T9", u"613 555-0189", u"", Web::None},
    {Who::Business, Shape::Full, u"Pine & Killdeer Lighting", u"285 Lakeshore Drive", u"Halifax", u"NS", u"B3J 9Y2", u"(902) 555-0149", u"info@pine-killdeer-lighting.example", Web::Start},
    {Who::Business, Shape::Full, u"Finch Lawn Care", u"917 College Avenue", u"Halifax", u"NS", u"B3J 2P2", u"(902) 555-0150", u"", Web::None},
    {Who::Business, Shape::Nameless, u"Juniper Kitchens", u"281 King Street West", u"Red Deer", u"AB", u"T4N 9J3", u"(403) 555-0151", u"", Web::Start},
    {Who::Person, Shape::NoPhone, u"Greta G Combe", u"825 College Avenue", u"Moncton", u"NB", u"E1C 1Y4", u"506 555-0190", u"", Web::None},
    {Who::Business, Shape::Full, u"Elm Windows", u"773 Queen Street", u"Saskatoon", u"SK", u"S7K 7M9", u"(306) 555-0152", u"", Web::Plain},
    {Who::Business, Shape::Full, u"Loon Garden Centre", u"828 Harbour Lane", u"Moncton", u"NB", u"E1C 1H4", u"(506) 555-0153", u"info@loon-garden-centre.example", Web::Contact},
    {Who::Person, Shape::Full, u"Harvey Moore", u"789 Lakeshore Drive", u"Guelph", u"ON", u"N1H 6H9", u"519 555-0191", u"harvey@moore.example", Web::None},
    {Who::Business, Shape::Full, u"Hazel Lighting", u"Unit 5, 215 Third Avenue", u"Brandon", u"MB", u"R7A 2C9", u"(204) 555-0154", u"", Web::None},
    {Who::Business, Shape::NoDetailsName, u"Killdeer Patio Works", u"342 Station Road", u"Kingston", u"ON", u"K7L 8N3", u"(613) 555-0155", u"", Web::Large},
    {Who::Business, Shape::Full, u"Juniper Tree Service", u"611 Bridge Street", u"Guelph", u"ON", u"N1H 9P3", u"(519) 555-0156", u"", Web::Secure},
    {Who::Person, Shape::Full, u"Ivo B Holt", u"752 Water Street", u"Trois-Rivières", u"QC", u"G9A 9X5", u"819 555-0192", u"", Web::None},
    {Who::Business, Shape::Full, u"Weir's Nurseries", u"112 Main Street", u"Saskatoon", u"SK", u"S7K 2E7", u"(306) 555-0157", u"info@weir-s-nurseries.example", Web::Pdf},
    {Who::Business, Shape::Absolute, u"Sumac & Junco Lighting", u"953 Queen Street", u"Charlottetown", u"PE", u"C1A 5P8", u"(902) 555-0158", u"", Web::Missing},
    {Who::Person, Shape::Full, u"Jules G Vale", u"440 Harbour Lane", u"Charlottetown", u"PE", u"C1A 5E3", u"902 555-0193", u"", Web::None},
    {Who::Business, Shape::Full, u"Poplar Stonework", u"421 Main Street", u"Charlottetown", u"PE", u"C1A 9J3", u"(902) 555-0159", u"", Web::Start},
    {Who::Person, Shape::Full, u"Karla Glenn", u"107 Bridge Street", u"Moncton", u"NB", u"E1C 2L3", u"506 555-0194", u"", Web::None},
};
// clang-format on

constexpr int entriesPerPage = 24;
constexpr int pageCount = (static_cast<int>(std::size(entries)) + entriesPerPage - 1) / entriesPerPage;
constexpr int pageWithoutTerm = 3; // its search form is another one
constexpr QStringView term = u"Garden & Home";

const Look look{u"Ring Canada"_s, u"#a3262a"_s, u"en"_s, uR"(
.ltitle a { font-size: 1.1em } .pager a, .pager b { margin-right: .8em } .listing p { margin: .2em 0 }
)"_s};

constexpr QStringView frameTemplate = uR"(<body class="ring">
<div class="masthead"><span class="brand">Ring Canada</span> <a href="/">Home</a></div>
<div class="topics"><a href="{{search}}">Garden &amp; Home</a> <a href="/search?q=Cafes">Cafes</a></div>
{{content}}
<div class="legal" id="global-footer"><a href="/">About us</a> <a href="/">Privacy</a> Every entry here is invented.</div>
{{script}}</body>)";

constexpr QStringView formTemplate =
    uR"(<div class="search"><form action="/search"><label for="what">Who or what</label>
<input name="q" id="what" class="field" placeholder="Name, trade or number" value="{{term}}" autocomplete="off">
<button>Search</button></form></div>)";

constexpr QStringView otherFormTemplate = uR"(<div class="search"><form action="/search">
<input id="again" name="query" placeholder="Search again"> <button>Search</button></form></div>)";

constexpr QStringView resultsTemplate = uR"({{form}}
<div class="search"><b class="total_result_found">{{count}}</b> entries, page {{page}}</div>
<div class="page"><div id="entries">
{{entries}}<div class="pager">{{pager}}</div>
</div><div>{{advert}}</div></div>)";

constexpr QStringView listingTemplate = uR"(<div class="card listing" data-entry="{{number}}">
<h2 class="ltitle"><a title="Show the entry" href="{{link}}">{{name}}</a></h2>
<p>{{city}} <a href="{{link}}#map">Map</a></p></div>
)";

constexpr QStringView invitationTemplate = uR"(<div class="card"><h2 class="ltitle"><a href="/add">Add your business</a>
</h2><p>It costs nothing and takes five minutes.</p></div>
)";

QString Frame(const QString& title, const QString& content, int number) {
    return Document(look, title,
                    Fill(frameTemplate, {{u"search", QString(u"/search?q=" + PercentEncoded(term.toString()))},
                                         {u"content", RawHtml{content}},
                                         {u"script", RawHtml{TrackingScript(number)}}}));
}

// What the entry's details page has of its fields.
Entry Printed(Entry entry) {
    switch (entry.Form) {
    case Shape::NoStreet:
        entry.Street = {};
        break;
    case Shape::Withheld:
    case Shape::NoAddress:
        entry.Street = entry.Form == Shape::Withheld ? u"()" : QStringView();
        [[fallthrough]];
    case Shape::StreetOnly:
        entry.City = entry.Province = entry.PostalCode = {};
        break;
    case Shape::NoPhone:
        entry.Phone = {};
        break;
    default:
        break;
    }
    return entry;
}

QString PathOf(int number) {
    const Entry& entry = entries[number];
    if (entry.Kind == Who::Person)
        return u"/person/%1-%2"_s.arg(SlugOf(entry.Name)).arg(number);
    return u"/business/profile/%1?from=list&lang=en"_s.arg(number);
}

QString ListingOf(const DemoContext& context, int number) {
    const Entry& entry = entries[number];
    const bool picture = entry.Form == Shape::NoListedName || entry.Form == Shape::Nameless;
    const QString name = picture ? u"<img src=\"/logo.png\" alt=\"\">"_s : EscapeHtml(entry.Name);
    return Fill(listingTemplate,
                {{u"number", number},
                 {u"link", entry.Form == Shape::Absolute ? context.Base + PathOf(number) : PathOf(number)},
                 {u"name", RawHtml{name}},
                 {u"city", entry.City.toString()}});
}

QString PagerOf(int page) {
    const auto link = [](int to) { return u"/search?q=Garden%20%26%20Home&amp;page=%1"_s.arg(to); };
    QString html;
    for (int i = 1; i <= pageCount; ++i)
        html += i == page ? u"<b>%1</b> "_s.arg(i) : u"<a href=\"%1\">%2</a> "_s.arg(link(i)).arg(i);
    return html + (page < pageCount ? u"<a href=\"%1\" class=\"button_next\">Next</a>"_s.arg(link(page + 1))
                                    : u"<span class=\"button_next disabled\">Next</span>"_s);
}

QString ResultPage(const DemoContext& context, int page) {
    QString listings = page > 1 ? ListingOf(context, 0) : QString(); // the first entry is promoted on every page
    const int first = (page - 1) * entriesPerPage;
    const int last = std::min(first + entriesPerPage, static_cast<int>(std::size(entries)));
    for (int number = first; number < last; ++number) {
        listings += ListingOf(context, number);
        if (number == first + 9)
            listings += invitationTemplate;
    }
    const QString form =
        page == pageWithoutTerm ? otherFormTemplate.toString() : Fill(formTemplate, {{u"term", term.toString()}});
    return Frame(term + u" in Canada"_s,
                 Fill(resultsTemplate, {{u"form", RawHtml{form}},
                                        {u"count", static_cast<int>(std::size(entries))},
                                        {u"page", page},
                                        {u"entries", RawHtml{listings}},
                                        {u"pager", RawHtml{PagerOf(page)}},
                                        {u"advert", RawHtml{AdvertBox(context.Businesses, page)}}}),
                 page);
}

// An element of a details page; nothing for an empty text. The texts stand unescaped: "&" before a blank is itself.
QString Element(QStringView elementTemplate, QStringView text) {
    return text.isEmpty() ? QString() : elementTemplate.toString().arg(text);
}

QString PersonNameOf(const Entry& entry) {
    if (entry.Form == Shape::PlainName)
        return entry.Name.toString();
    const QStringList parts = entry.Name.toString().split(u' ');
    QString html = u"<span itemprop=\"givenName\">" + parts.first() + u"</span>";
    if (parts.size() > 2)
        html += u"<span itemprop=\"additionalName\">" + parts[1] + u"</span>";
    return html + u"<span itemprop=\"familyName\">" + parts.last() + u"</span>";
}

QString PersonPage(const Entry& entry) {
    const QString card = Element(u"<h1 itemprop=\"name\">%1</h1>\n", PersonNameOf(entry)) +
                         Element(u"<p>Phone <b itemprop=\"telephone\">%1</b></p>\n", entry.Phone) +
                         Element(u"<p><span itemprop=\"streetAddress\">%1</span></p>\n", entry.Street) +
                         Element(u"<p><span itemprop=\"addressLocality\">%1</span>\n", entry.City) +
                         Element(u"<span itemprop=\"addressRegion\">%1</span>\n", entry.Province) +
                         Element(u"<span itemprop=\"postalCode\">%1</span></p>\n", entry.PostalCode) +
                         Element(u"<p><a href=\"mailto:%1\">Write an e-mail</a></p>\n", entry.Email);
    return u"<div class=\"page\"><div class=\"card\">" + card + u"</div></div>";
}

QString BusinessNameOf(const Entry& entry) {
    return entry.Form == Shape::Renamed ? entry.Name + u" Limited"_s : entry.Name.toString();
}

QString BusinessPage(const DemoContext& context, const Entry& entry) {
    const bool named = entry.Form != Shape::NoDetailsName && entry.Form != Shape::Nameless;
    const QString email = Element(u"<p><a href=\"mailto:%1\">Write an e-mail</a></p>\n", entry.Email);
    const QString above = entry.Form == Shape::EmailFirst ? email : QString();
    const QString below = entry.Form == Shape::EmailFirst ? QString() : email;
    const QString card =
        above + Element(u"<h1 itemprop=\"name\">%1</h1>\n", named ? BusinessNameOf(entry) : QString()) +
        Element(u"<div itemprop=\"streetAddress\">%1</div>\n", entry.Street) +
        Element(u"<span itemprop=\"addressLocality\">%1</span>,\n", entry.City) +
        Element(u"<span itemprop=\"addressRegion\">%1</span>\n", entry.Province) +
        Element(u"<div itemprop=\"postalCode\">%1</div>\n", entry.PostalCode) +
        Element(u"<p>Phone <span itemprop=\"telephone\"><i class=\"icon\"></i> %1</span></p>\n", entry.Phone) + below +
        Element(u"<p><a itemprop=\"url\" rel=\"nofollow\" href=\"%1\">Website</a></p>\n",
                AddressOf(context, entry.Site, entry.Name));
    return u"<div class=\"page\"><div class=\"card\">" + card + u"</div></div>";
}

PlantedLead PlantedOf(const DemoContext& context, int number) {
    const Entry entry = Printed(entries[number]);
    PlantedLead planted;
    Lead& lead = planted.Fields;
    lead.Category = term.toString();
    lead.Name = entry.Name.toString();
    lead.Country = u"Canada"_s;
    lead.DetailsLink = context.Base + PathOf(number);
    if (entry.Form == Shape::Gone || entry.Form == Shape::Fails)
        return planted;
    if (entry.Kind == Who::Business)
        lead.Name = BusinessNameOf(entry);
    lead.Street = entry.Street.toString();
    lead.City = entry.City.toString();
    lead.State = entry.Province.toString();
    lead.PostalCode = entry.PostalCode.toString();
    lead.Phone = entry.Phone.toString();
    if (!lead.City.isEmpty()) {
        const bool beginsWithCity = entry.Kind == Who::Person && lead.Street.isEmpty();
        lead.FullAddress =
            lead.Street + (beginsWithCity ? u"" : u", ") + lead.City + u", " + lead.State + u' ' + lead.PostalCode;
    } else if (entry.Form != Shape::Withheld) {
        lead.FullAddress = lead.Street;
    }
    if (!lead.FullAddress.isEmpty())
        lead.MapLink = MapLinkOf(context, lead.FullAddress, u"Canada");
    if (entry.Form != Shape::EmailFirst)
        lead.Email = entry.Email.toString();
    // Neither a secure address nor a document is taken for a website.
    if (entry.Kind == Who::Business && entry.Site != Web::Secure && entry.Site != Web::Pdf) {
        lead.Website = AddressOf(context, entry.Site, entry.Name);
        planted.FoundEmails = EmailsBehind(entry.Site, entry.Name);
    }
    return planted;
}

class Canada411Demo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPN002002"; }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(look.Brand, Fill(formTemplate, {{u"term", QString()}}), 0));
        });
        server.Get("/search", [context](const httplib::Request& request, httplib::Response& response) {
            SendPage(response, ResultPage(context, std::clamp(Parameter(request, "page").toInt(), 1, pageCount)));
        });
        const auto details = [context](const httplib::Request& request, httplib::Response& response) {
            const int number = PathGroup(request, 1).toInt();
            const int count = static_cast<int>(std::size(entries));
            if (number >= count || entries[number].Form == Shape::Gone)
                return SendPage(response, Frame(u"Not found"_s, u"<h1>Not found</h1>"_s, 0), 404);
            if (entries[number].Form == Shape::Fails)
                return SendPage(response, Frame(u"Error"_s, u"<h1>Try again</h1>"_s, 0), 500);
            const Entry entry = Printed(entries[number]);
            const QString content = entry.Kind == Who::Person ? PersonPage(entry) : BusinessPage(context, entry);
            SendPage(response, Frame(entry.Name.toString(), content, number));
        };
        server.Get("/business/profile/(\\d{1,4})", details);
        server.Get("/person/[-a-z]+-(\\d{1,4})", details);
        server.Get("/add", [](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(u"Add your business"_s, u"<h1>Add your business</h1>"_s, 0));
        });
    }

    QString PathOfSearch() const override { return u"/search?q={what}&l={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int) const override {
        return context.Base + u"/search?q=" + PercentEncoded(term.toString());
    }

    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int) const override {
        std::vector<PlantedLead> leads;
        for (int number = 0; number < static_cast<int>(std::size(entries)); ++number)
            if (entries[number].Form != Shape::Nameless)
                leads.push_back(PlantedOf(context, number));
        return leads;
    }
};

} // namespace

std::unique_ptr<DemoDirectory> MakeCanada411Demo() {
    return std::make_unique<Canada411Demo>();
}

} // namespace Brindle::Demo
