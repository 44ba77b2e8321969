#include "core/SiteCatalogue.h"
#include "demo/DemoLinks.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"

#include <algorithm>
#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

// What is particular about an entry. Layout 1 is a search for businesses, layout 2 one by name; their result pages
// and details pages differ.
enum class Shape {
    Full,
    Absolute,      // linked by an absolute address
    Clicked,       // linked over the click server
    NoDetailsName, // the details page has no name of its own
    NoListedName,  // the result page shows a picture instead of a name
    Nameless,      // neither page has a name: no lead
    NoStreet,
    NoAddress,
    Withheld,   // "()" stands for the street, and nothing else of the address
    SecondLine, // the address has a second line, in layout 2
    NoComma,    // in layout 2 the location is malformed: the reading of the result page ends there
    NoZip,
    NoPhone,
    ManyPhones,
    EmailFirst, // the e-mail stands above everything else
    Gone,       // the details page is not found
    Fails       // the details page is a server's error
};

struct Entry {
    Shape Form;
    QStringView Name;
    QStringView Street;
    QStringView City;
    QStringView State;
    QStringView Zip;
    QStringView Phone;
    QStringView Email;
    Web Site;
};

// clang-format off
constexpr Entry entries[] = {
    {Shape::Full, u"Thrush Florist", u"1505 Broadway", u"Duluth", u"MN", u"55808", u"(218) 555-0100", u"", Web::Start},
    {Shape::Full, u"Thrush Flower Shop", u"6145 College Dr", u"Peoria", u"IL", u"61608", u"(309) 555-0101", u"hello@thrush-flower-shop.example", Web::None},
    {Shape::Clicked, u"Tanager Plant Shop", u"9968 Main St", u"Duluth", u"MN", u"55802", u"(218) 555-0102", u"", Web::Contact},
    {Shape::Full, u"Swallow Wreaths", u"8089 Lincoln Way", u"St. Paul", u"MN", u"55110", u"(651) 555-0103", u"", Web::Plain},
    {Shape::Full, u"Linden & Towhee Plant Shop", u"321 College Dr", u"Dayton", u"OH", u"45403", u"(937) 555-0104", u"", Web::Large},
    {Shape::NoStreet, u"Lea's Flower Shop", u"4168 Sunset Blvd", u"Boise", u"ID", u"83711", u"(208) 555-0105", u"hello@lea-s-flower-shop.example", Web::None},
    {Shape::Full, u"Birch Wedding Flowers", u"6432 Elm St", u"Tulsa", u"OK", u"74107", u"(918) 555-0106", u"", Web::Secure},
    {Shape::Full, u"Spruce Flower Shop", u"591 Grand Ave", u"Peoria", u"IL", u"61603", u"(309) 555-0107", u"", Web::Pdf},
    {Shape::NoAddress, u"Nuthatch Floral Design", u"7105 College Dr", u"Ames", u"IA", u"50015", u"(515) 555-0108", u"", Web::Missing},
    {Shape::Full, u"Dennis Beck", u"9417 Main St", u"Duluth", u"MN", u"55802", u"(218) 555-0109", u"hello@dennis-beck.example", Web::None},
    {Shape::NoDetailsName, u"Sumac Garden Gate", u"1895 Lincoln Way", u"Dayton", u"OH", u"45407", u"(937) 555-0110", u"", Web::Start},
    {Shape::Full, u"Junco Floral Design", u"1471 2nd St NW", u"Ames", u"IA", u"50018", u"(515) 555-0111", u"", Web::None},
    {Shape::Full, u"Martin Bouquets", u"360 Lincoln Way", u"Salem", u"OR", u"97308", u"(503) 555-0112", u"", Web::Contact},
    {Shape::EmailFirst, u"Birch & Jay Flowers", u"7791 River Rd", u"St. Paul", u"MN", u"55105", u"(651) 555-0113", u"hello@birch-jay-flowers.example", Web::Contact},
    {Shape::Full, u"Linden Flowers", u"3683 Elm St", u"Ames", u"IA", u"50017", u"(515) 555-0114", u"", Web::Large},
    {Shape::Clicked, u"Hemlock Wedding Flowers", u"6100 Elm St", u"Tulsa", u"OK", u"74104", u"(918) 555-0115", u"", Web::None},
    {Shape::Full, u"Oriole Bouquets", u"5152 County Road 9", u"Tulsa", u"OK", u"74103", u"(918) 555-0116", u"", Web::Secure},
    {Shape::Withheld, u"Thrush Petals", u"5419 County Road 9", u"El Paso", u"TX", u"79907", u"(915) 555-0117", u"hello@thrush-petals.example", Web::Pdf},
    {Shape::Full, u"Firth's Bouquets", u"3577 Elm St", u"St. Paul", u"MN", u"55105", u"(651) 555-0118", u"", Web::Missing},
    {Shape::Gone, u"Elm Wedding Flowers", u"1208 2nd St NW", u"Dayton", u"OH", u"45406", u"(937) 555-0119", u"", Web::None},
    {Shape::Full, u"Kinglet Blooms", u"1833 Elm St", u"Boise", u"ID", u"83703", u"(208) 555-0120", u"", Web::Start},
    {Shape::Full, u"Wren Flowers", u"4072 River Rd", u"St. Paul", u"MN", u"55102", u"(651) 555-0121", u"hello@wren-flowers.example", Web::None},
    {Shape::Absolute, u"Juniper & Osprey Wedding Flowers", u"2014 County Road 9", u"Winston-Salem", u"NC", u"27101", u"(336) 555-0122", u"", Web::Contact},
    {Shape::Full, u"Hickory Bouquets", u"8213 Main St", u"Tulsa", u"OK", u"74104", u"(918) 555-0123", u"", Web::Plain},
    {Shape::Full, u"Birch Petals", u"3333 Lincoln Way", u"Duluth", u"MN", u"55809", u"(218) 555-0124", u"", Web::Large},
    {Shape::NoListedName, u"Fir Flower Shop", u"1038 Market St", u"Winston-Salem", u"NC", u"27105", u"(336) 555-0125", u"hello@fir-flower-shop.example", Web::None},
    {Shape::Full, u"Swallow Plant Shop", u"7350 River Rd", u"El Paso", u"TX", u"79902", u"(915) 555-0126", u"", Web::Secure},
    {Shape::Full, u"Chestnut Blooms", u"6746 Lincoln Way", u"El Paso", u"TX", u"79908", u"(915) 555-0127", u"", Web::Pdf},
    {Shape::SecondLine, u"Ash Flower Shop", u"2066 County Road 9", u"Peoria", u"IL", u"61610", u"(309) 555-0128", u"", Web::Missing},
    {Shape::Full, u"Maple Wreaths", u"1606 River Rd", u"Duluth", u"MN", u"55810", u"(218) 555-0129", u"hello@maple-wreaths.example", Web::None},
    {Shape::Full, u"Jules Firth", u"7916 County Road 9", u"Tulsa", u"OK", u"74105", u"(918) 555-0130", u"", Web::Start},
    {Shape::EmailFirst, u"Ridge's Florist", u"6404 Lincoln Way", u"El Paso", u"TX", u"79901", u"(915) 555-0131", u"hello@ridge-s-florist.example", Web::Contact},
    {Shape::Full, u"Chestnut Plant Shop", u"8928 County Road 9", u"San José", u"CA", u"95116", u"(408) 555-0132", u"", Web::Contact},
    {Shape::Full, u"Nuthatch Blooms", u"1326 Broadway", u"Fargo", u"ND", u"58102", u"(701) 555-0133", u"hello@nuthatch-blooms.example", Web::Plain},
    {Shape::Fails, u"Pine Wedding Flowers", u"7329 Grand Ave", u"St. Paul", u"MN", u"55107", u"(651) 555-0134", u"", Web::Large},
    {Shape::Full, u"Oak Plant Shop", u"3601 Main St", u"Dayton", u"OH", u"45410", u"(937) 555-0135", u"", Web::None},
    {Shape::Full, u"Swallow Garden Gate", u"7669 Elm St", u"Fargo", u"ND", u"58111", u"(701) 555-0136", u"", Web::Secure},
    {Shape::ManyPhones, u"Beech Plant Shop", u"3337 Sunset Blvd", u"Peoria", u"IL", u"61605", u"(309) 555-0137", u"hello@beech-plant-shop.example", Web::Pdf},
    {Shape::Full, u"Spruce Wreaths", u"1968 College Dr", u"Salem", u"OR", u"97304", u"(503) 555-0138", u"", Web::Missing},
    {Shape::NoComma, u"Walnut Wedding Flowers", u"9499 County Road 9", u"St. Paul", u"MN", u"55102", u"(651) 555-0139", u"", Web::None},
    {Shape::Full, u"Poplar & Heron Petals", u"2944 Main St", u"Boise", u"ID", u"83703", u"(208) 555-0140", u"", Web::Start},
    {Shape::Full, u"Spruce Florist", u"3032 Market St", u"Tulsa", u"OK", u"74106", u"(918) 555-0141", u"hello@spruce-florist.example", Web::None},
    {Shape::Full, u"Oriole Flowers", u"4935 College Dr", u"Tulsa", u"OK", u"74104", u"(918) 555-0142", u"", Web::Contact},
    {Shape::SecondLine, u"Aspen Flower Market", u"2990 Elm St", u"Dayton", u"OH", u"45409", u"(937) 555-0143", u"", Web::Plain},
    {Shape::Full, u"Lund's Wreaths", u"4872 College Dr", u"Fargo", u"ND", u"58103", u"(701) 555-0144", u"", Web::Large},
    {Shape::Full, u"Grackle Flower Market", u"4790 College Dr", u"Tulsa", u"OK", u"74109", u"(918) 555-0145", u"hello@grackle-flower-market.example", Web::None},
    {Shape::NoPhone, u"Tamarack Blooms", u"3310 River Rd", u"St. Paul", u"MN", u"55101", u"(651) 555-0146", u"", Web::Secure},
    {Shape::Full, u"Hazel Petals", u"8238 Elm St", u"Dayton", u"OH", u"45403", u"(937) 555-0147", u"", Web::Pdf},
    {Shape::NoZip, u"Swift Wreaths", u"8972 College Dr", u"Fargo", u"ND", u"58109", u"(701) 555-0148", u"", Web::Missing},
    {Shape::Full, u"Chestnut & Grackle Flower Market", u"9167 Elm St", u"San José", u"CA", u"95117", u"(408) 555-0149", u"hello@chestnut-grackle-flower-market.example", Web::None},
    {Shape::Full, u"Thrush Flowers", u"9489 County Road 9", u"Duluth", u"MN", u"55811", u"(218) 555-0150", u"", Web::Start},
    {Shape::Nameless, u"Felix Reed", u"5248 River Rd", u"Salem", u"OR", u"97307", u"(503) 555-0151", u"", Web::None},
    {Shape::Full, u"Alder Floral Design", u"8237 River Rd", u"Tulsa", u"OK", u"74106", u"(918) 555-0152", u"", Web::Contact},
    {Shape::Full, u"Hemlock Plant Shop", u"1753 Broadway", u"Salem", u"OR", u"97305", u"(503) 555-0153", u"hello@hemlock-plant-shop.example", Web::Plain},
    {Shape::Clicked, u"Hawthorn Wedding Flowers", u"2677 Elm St", u"El Paso", u"TX", u"79907", u"(915) 555-0154", u"", Web::Large},
    {Shape::Full, u"Towhee Wedding Flowers", u"4736 River Rd", u"Winston-Salem", u"NC", u"27103", u"(336) 555-0155", u"", Web::None},
    {Shape::Full, u"Spruce Blooms", u"827 Grand Ave", u"El Paso", u"TX", u"79905", u"(915) 555-0156", u"", Web::Secure},
    {Shape::ManyPhones, u"Reed's Flowers", u"6575 Elm St", u"St. Paul", u"MN", u"55104", u"(651) 555-0157", u"hello@reed-s-flowers.example", Web::Pdf},
    {Shape::Full, u"Larch & Towhee Petals", u"2042 Grand Ave", u"Boise", u"ID", u"83702", u"(208) 555-0158", u"", Web::Missing},
    {Shape::Full, u"Starling Flower Market", u"9656 River Rd", u"San José", u"CA", u"95119", u"(408) 555-0159", u"", Web::None},
    {Shape::Full, u"Walnut Petals", u"3765 River Rd", u"Tulsa", u"OK", u"74110", u"(918) 555-0160", u"", Web::Start},
    {Shape::SecondLine, u"Willow Wreaths", u"9729 Sunset Blvd", u"Ames", u"IA", u"50016", u"(515) 555-0161", u"hello@willow-wreaths.example", Web::None},
    {Shape::Full, u"Grackle Garden Gate", u"8095 Railroad Ave", u"Tulsa", u"OK", u"74106", u"(918) 555-0162", u"", Web::Contact},
    {Shape::Full, u"Tamarack Wedding Flowers", u"8676 River Rd", u"Ames", u"IA", u"50017", u"(515) 555-0163", u"", Web::Plain},
    {Shape::Absolute, u"Bunting Plant Shop", u"4219 Broadway", u"Fargo", u"ND", u"58102", u"(701) 555-0164", u"", Web::Large},
    {Shape::Full, u"Martin Wreaths", u"3170 Elm St", u"Dayton", u"OH", u"45404", u"(937) 555-0165", u"hello@martin-wreaths.example", Web::None},
    {Shape::Full, u"Juniper Wedding Flowers", u"95 County Road 9", u"El Paso", u"TX", u"79909", u"(915) 555-0166", u"", Web::Secure},
    {Shape::NoStreet, u"Walnut & Vireo Petals", u"5640 Elm St", u"Tulsa", u"OK", u"74105", u"(918) 555-0167", u"", Web::Pdf},
    {Shape::Full, u"Tamarack Bouquets", u"9063 College Dr", u"St. Paul", u"MN", u"55101", u"(651) 555-0168", u"", Web::Missing},
    {Shape::Full, u"Birch Flowers", u"1712 Railroad Ave", u"Dayton", u"OH", u"45404", u"(937) 555-0169", u"hello@birch-flowers.example", Web::None},
    {Shape::NoZip, u"Thorne's Plant Shop", u"7054 Grand Ave", u"El Paso", u"TX", u"79902", u"(915) 555-0170", u"", Web::Start},
    {Shape::Full, u"Vireo Blooms", u"337 Lincoln Way", u"Fargo", u"ND", u"58111", u"(701) 555-0171", u"", Web::None},
    {Shape::Full, u"Felix Lund", u"7236 Grand Ave", u"Salem", u"OR", u"97308", u"(503) 555-0172", u"", Web::Contact},
    {Shape::ManyPhones, u"Finch Plant Shop", u"9643 Grand Ave", u"Salem", u"OR", u"97309", u"(503) 555-0173", u"hello@finch-plant-shop.example", Web::Plain},
    {Shape::Full, u"Wren Floral Design", u"4025 Railroad Ave", u"Boise", u"ID", u"83706", u"(208) 555-0174", u"", Web::Large},
    {Shape::Full, u"Willow Flowers", u"3588 Grand Ave", u"Boise", u"ID", u"83707", u"(208) 555-0175", u"", Web::None},
    {Shape::EmailFirst, u"Elm & Killdeer Garden Gate", u"8935 College Dr", u"Boise", u"ID", u"83710", u"(208) 555-0176", u"hello@elm-killdeer-garden-gate.example", Web::Contact},
    {Shape::Full, u"Birch Wreaths", u"7989 Grand Ave", u"San José", u"CA", u"95120", u"(408) 555-0177", u"hello@birch-wreaths.example", Web::Pdf},
    {Shape::Full, u"Cherry Wreaths", u"5277 River Rd", u"Peoria", u"IL", u"61610", u"(309) 555-0178", u"", Web::Missing},
    {Shape::Full, u"Ash Plant Shop", u"8519 Grand Ave", u"Salem", u"OR", u"97310", u"(503) 555-0179", u"", Web::None},
    {Shape::Clicked, u"Alder Flower Market", u"7710 County Road 9", u"Dayton", u"OH", u"45409", u"(937) 555-0180", u"", Web::Start},
    {Shape::Full, u"Jay Garden Gate", u"8314 Sunset Blvd", u"Peoria", u"IL", u"61603", u"(309) 555-0181", u"hello@jay-garden-gate.example", Web::None},
    {Shape::Full, u"Walnut Blooms", u"1089 Elm St", u"Tulsa", u"OK", u"74111", u"(918) 555-0182", u"", Web::Contact},
    {Shape::Full, u"Moore's Flower Shop", u"9037 River Rd", u"St. Paul", u"MN", u"55103", u"(651) 555-0183", u"", Web::Plain},
};
// clang-format on

constexpr int entryCount = static_cast<int>(std::size(entries));
constexpr int entriesPerPage = 21;
constexpr int pageCount = (entryCount + entriesPerPage - 1) / entriesPerPage;
constexpr int pageWithoutForm = 3;
constexpr QStringView term = u"Florists";
constexpr QStringView secondLine = u"Suite 12";

const Look look{u"Blue Book USA"_s, u"#1d4f91"_s, u"en"_s, uR"(
.n { font-size: 1.1em } .n p { margin: 0 } .pager a, .pager b { margin-right: .8em } .serp-list-item.paid { opacity: .8 }
)"_s};

constexpr QStringView frameTemplate = uR"(<body class="{{kind}}">
<div class="masthead"><span class="brand">Blue Book USA</span> <a href="{{home}}/">Home</a></div>
<div class="topics"><a href="{{home}}/search?what=Florists">Businesses</a> <a href="{{home}}/people">By name</a></div>
{{content}}
<div class="footer-wrapper legal"><a href="{{home}}/">Help</a> <a href="{{home}}/">Terms</a> Every entry is invented.</div>
{{script}}</body>)";

constexpr QStringView formTemplate = uR"(<div class="search"><form action="/search">
<label>Category or name <input type="text" value="{{term}}" name="what" autocomplete="off"></label>
<button>Find</button></form></div>)";

constexpr QStringView results1Template = uR"({{form}}
<div class="page"><div class="serp">
<div class="serp-list-item paid"><div class="link-wrapper"><a href="{{advertiser}}">Your bouquet in an hour</a></div></div>
{{entries}}<div class="pager">{{pager}}</div>
</div><div>{{advert}}</div></div>)";

constexpr QStringView listing1Template = uR"(<div class="card serp-list-item organic" data-n="{{number}}">
<div class="link-wrapper"><a class="n" href="{{link}}" rel="nofollow">{{name}}</a></div>
<p>{{city}} &middot; <a href="/compare?add={{number}}">Compare</a></p></div>
)";

constexpr QStringView results2Template = uR"(<div class="search"><form action="/people">
<input name="name" value="{{term}}"> <button>Find by name</button></form></div>
<div class="page"><div class="row-fluid">
{{entries}}<div class="pager">{{pager}}</div>
</div><div>{{advert}}</div></div>)";

constexpr QStringView listing2Template =
    uR"(<div class="card"><div class="link-wrapper clickstream-link" data-n="{{number}}">
<a class="n" href="{{link}}"><p class="head" itemprop="name">{{name}}</p></a><p>{{city}}</p></div></div>
)";

QString Frame(const DemoContext& context, QStringView kind, const QString& title, const QString& content, int number) {
    return Document(look, title,
                    Fill(frameTemplate, {{u"kind", kind.toString()},
                                         {u"home", context.Base},
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
        entry.City = entry.State = entry.Zip = {};
        break;
    case Shape::NoZip:
        entry.Zip = {};
        break;
    case Shape::NoPhone:
        entry.Phone = {};
        break;
    default:
        break;
    }
    return entry;
}

QString PathOf(int layout, int number) {
    const QStringView folder = layout == 1 ? u"/biz/" : u"/who/";
    return folder + SlugOf(entries[number].Name) + u'-' + QString::number(number);
}

QString LinkOf(const DemoContext& context, int layout, int number) {
    QString path = PathOf(layout, number);
    switch (entries[number].Form) {
    case Shape::Absolute:
        return context.DetailsBase + path;
    case Shape::Clicked:
        return ClickLink(context, context.DetailsBase + path);
    default:
        return path;
    }
}

// What the harvest makes of the link: only layout 1 looks where the click server leads.
QString DetailsLinkOf(const DemoContext& context, int layout, int number) {
    if (layout == 2 && entries[number].Form == Shape::Clicked)
        return LinkOf(context, layout, number);
    return context.DetailsBase + PathOf(layout, number);
}

QString PagerOf(int layout, int page) {
    const QStringView address = layout == 1 ? u"/search?what=Florists&amp;page=" : u"/people?page=";
    const auto link = [address](int to, const QString& text) -> QString {
        return u"<a href=\"" + address + QString::number(to) + u"\">" + text + u"</a> ";
    };
    QString html;
    for (int i = 1; i <= pageCount; ++i)
        html += i == page ? u"<b>%1</b> "_s.arg(i) : link(i, QString::number(i));
    return html + (page < pageCount ? link(page + 1, u"Next"_s) : u"<i>No more pages</i>"_s);
}

QString ListingOf(const DemoContext& context, int layout, int number) {
    const Entry& entry = entries[number];
    const bool picture = entry.Form == Shape::NoListedName || entry.Form == Shape::Nameless;
    return Fill(layout == 1 ? listing1Template : listing2Template,
                {{u"number", number},
                 {u"link", LinkOf(context, layout, number)},
                 {u"name", RawHtml{picture ? u"<img src=\"/logo.png\" alt=\"\">"_s : EscapeHtml(entry.Name)}},
                 {u"city", entry.City.toString()}});
}

QString ResultPage(const DemoContext& context, int layout, int page) {
    QString listings =
        page > 1 ? ListingOf(context, layout, 0) : QString(); // the first entry is promoted on every page
    const int first = (page - 1) * entriesPerPage;
    for (int number = first; number < std::min(first + entriesPerPage, entryCount); ++number)
        listings += ListingOf(context, layout, number);
    const QString form = page == pageWithoutForm ? QString() : Fill(formTemplate, {{u"term", term.toString()}});
    const QString content = Fill(layout == 1 ? results1Template : results2Template,
                                 {{u"form", RawHtml{form}},
                                  {u"term", term.toString()},
                                  {u"advertiser", AddressOf(context, Web::Plain, u"hour-bouquet")},
                                  {u"entries", RawHtml{listings}},
                                  {u"pager", RawHtml{PagerOf(layout, page)}},
                                  {u"advert", RawHtml{AdvertBox(context.Businesses, page)}}});
    return Frame(context, layout == 1 ? u"business-serp" : u"people", term + u" in the USA"_s, content, page);
}

// An element of a details page; nothing for an empty text. The texts stand unescaped: "&" before a blank is itself.
QString Element(QStringView elementTemplate, QStringView text) {
    return text.isEmpty() ? QString() : elementTemplate.toString().arg(text);
}

QString NameOn(const Entry& entry) {
    const bool named = entry.Form != Shape::NoDetailsName && entry.Form != Shape::Nameless;
    return named ? entry.Name.toString() : QString();
}

QString InCard(const Entry& entry, const QString& fields, const QString& below) {
    const QString email = Element(u"<p><a href=\"mailto:%1\">Write to us</a></p>\n", entry.Email);
    const bool first = entry.Form == Shape::EmailFirst;
    return u"<div class=\"page\"><div class=\"card\">\n" + (first ? email : QString()) + fields +
           (first ? QString() : email) + below + u"</div></div>";
}

QString DetailsPage1(const DemoContext& context, const Entry& entry) {
    const QString fields =
        Element(u"<h1><span class=\"name block\">%1</span></h1>\n", NameOn(entry)) +
        Element(u"<p>Call <b class=\"phone_number\" id=\"first\">%1</b></p>\n", entry.Phone) +
        (entry.Form == Shape::ManyPhones ? u"<p>or <b class=\"more\">(800) 555-0199</b></p>\n" : u"") +
        Element(u"<p><span class=\"street-address\">%1</span>\n", entry.Street) +
        Element(u"<span class=\"locality\">%1</span>,\n", entry.City) +
        Element(u"<abbr class=\"region\" title=\"state\">%1</abbr>\n", entry.State) +
        Element(u"<span class=\"postal-code\">%1</span></p>\n", entry.Zip);
    return InCard(entry, fields,
                  Element(u"<p><a class=\"website\" rel=\"nofollow\" href=\"%1\">Our website</a></p>\n",
                          AddressOf(context, entry.Site, entry.Name)));
}

// "(515) 555-0100" as it stands in a link to a telephone.
QString Dialled(QStringView phone) {
    return phone.toString().remove(u'(').replace(u") "_s, u"-"_s);
}

QStringList PhonesOf(const Entry& entry) {
    if (entry.Phone.isEmpty())
        return {};
    const QString phone = Dialled(entry.Phone);
    return entry.Form == Shape::ManyPhones ? QStringList{phone, u"800-555-0199"_s, u"888-555-0123"_s}
                                           : QStringList{phone};
}

QString DetailsPage2(const DemoContext& context, const Entry& entry) {
    QString phones;
    for (const QString& phone : PhonesOf(entry))
        phones += u"<li><a href=\"tel:%1\">%1</a></li>\n"_s.arg(phone);
    QString location;
    if (!entry.City.isEmpty())
        location = entry.City + (entry.Form == Shape::NoComma ? u" " : u", ") + entry.State +
                   (entry.Zip.isEmpty() ? QString() : u' ' + entry.Zip);
    const bool addressed = !entry.Street.isEmpty() || !entry.City.isEmpty();
    const QString street = u"<div class=\"location-address\"><p class=\"address-primary\">" + entry.Street +
                           u"</p>\n<p class=\"address-secondary\">" +
                           (entry.Form == Shape::SecondLine ? secondLine : QStringView()) + u"</p></div>\n";
    const QString fields = Element(u"<h1 class=\"name block\">%1</h1>\n", NameOn(entry)) +
                           Element(u"<ul>\n%1</ul>\n", phones) + (addressed ? street : QString()) +
                           Element(u"<p class=\"address-location\">%1</p>\n", location);
    return InCard(entry, fields,
                  Element(u"<p><a href=\"%1\">More</a></p>\n", AddressOf(context, entry.Site, entry.Name)));
}

PlantedLead PlantedOf(const DemoContext& context, int layout, int number) {
    const Entry entry = Printed(entries[number]);
    PlantedLead planted;
    Lead& lead = planted.Fields;
    if (layout == 1)
        lead.Category = term.toString();
    lead.Name = entry.Name.toString();
    lead.Country = u"United States"_s;
    lead.DetailsLink = DetailsLinkOf(context, layout, number);
    if (entry.Form == Shape::Gone || entry.Form == Shape::Fails)
        return planted;
    lead.Street = entry.Street.toString();
    if (layout == 2 && entry.Form == Shape::SecondLine)
        lead.Street += u' ' + secondLine;
    lead.City = entry.City.toString();
    lead.State = entry.State.toString();
    lead.PostalCode = entry.Zip.toString();
    lead.Phone = layout == 1 ? entry.Phone.toString() : PhonesOf(entry).join(u", "_s);
    if (entry.Form != Shape::Withheld) {
        lead.FullAddress = lead.Street;
        if (!lead.City.isEmpty())
            lead.FullAddress += u", " + lead.City;
        // In layout 2 the state counts together with the postal code only.
        if (!lead.State.isEmpty() && (layout == 1 || !lead.PostalCode.isEmpty()))
            lead.FullAddress += u", " + lead.State + (lead.PostalCode.isEmpty() ? QString() : u' ' + lead.PostalCode);
    }
    if (!lead.FullAddress.isEmpty())
        lead.MapLink = MapLinkOf(context, lead.FullAddress, u"US");
    if (layout == 1 || entry.Form != Shape::EmailFirst)
        lead.Email = entry.Email.toString();
    if (layout == 1) {
        lead.Website = AddressOf(context, entry.Site, entry.Name);
        planted.FoundEmails = EmailsBehind(entry.Site, entry.Name);
    }
    return planted;
}

void AddDetails(httplib::Server& server, const DemoContext& context, int layout) {
    const char* const pattern = layout == 1 ? "/biz/[-a-z]+-(\\d{1,4})" : "/who/[-a-z]+-(\\d{1,4})";
    server.Get(pattern, [context, layout](const httplib::Request& request, httplib::Response& response) {
        const int number = PathGroup(request, 1).toInt();
        const auto fail = [&](const QString& message, int status) {
            SendPage(response, Frame(context, u"error", message, u"<h1>" + message + u"</h1>", 0), status);
        };
        if (number >= entryCount || entries[number].Form == Shape::Gone)
            return fail(u"Not found"_s, 404);
        if (entries[number].Form == Shape::Fails)
            return fail(u"Out of order"_s, 500);
        const Entry entry = Printed(entries[number]);
        SendPage(response, Frame(context, u"details", entry.Name.toString(),
                                 layout == 1 ? DetailsPage1(context, entry) : DetailsPage2(context, entry), number));
    });
}

class UsYellowPagesDemo : public DemoDirectory {
public:
    QStringView Code() const override { return u"KVPN001001"; }
    int LayoutCount() const override { return 2; }
    bool HasDetailsServer() const override { return true; }

    std::vector<std::pair<QString, QString>> SiteKeys(const DemoContext& context) const override {
        return {{u"own_host"_s, HostOf(context.DetailsBase)}, {u"redirect_host"_s, HostOf(context.Clicks)}};
    }

    void AddRoutes(httplib::Server& server, const DemoContext& context) const override {
        server.Get("/", [context](const httplib::Request&, httplib::Response& response) {
            SendPage(response, Frame(context, u"home", look.Brand, Fill(formTemplate, {{u"term", QString()}}), 0));
        });
        const auto results = [context](int layout) {
            return [context, layout](const httplib::Request& request, httplib::Response& response) {
                const int page = std::clamp(Parameter(request, "page").toInt(), 1, pageCount);
                SendPage(response, ResultPage(context, layout, page));
            };
        };
        server.Get("/search", results(1));
        server.Get("/people", results(2));
    }

    void AddDetailsRoutes(httplib::Server& server, const DemoContext& context) const override {
        AddDetails(server, context, 1);
        AddDetails(server, context, 2);
    }

    QString PathOfSearch() const override { return u"/search?what={what}&near={where}"_s; }
    QString FirstResultPage(const DemoContext& context, int layout) const override {
        return context.Base + (layout == 1 ? u"/search?what=" + term.toString() : u"/people"_s);
    }

    std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int layout) const override {
        std::vector<PlantedLead> leads;
        for (int number = 0; number < entryCount; ++number) {
            const Shape form = entries[number].Form;
            if (layout == 2 && form == Shape::NoComma)
                number += entriesPerPage - number % entriesPerPage - 1; // on with the next page
            else if (form != Shape::Nameless)
                leads.push_back(PlantedOf(context, layout, number));
        }
        return leads;
    }
};

} // namespace

std::unique_ptr<DemoDirectory> MakeUsYellowPagesDemo() {
    return std::make_unique<UsYellowPagesDemo>();
}

} // namespace Brindle::Demo
