#include "demo/modern/ModernBusinesses.h"

#include "demo/BusinessWebsites.h"
#include "demo/DemoLinks.h"

#include <QUrl>

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

struct Town {
    QStringView City;
    QStringView State;
    QStringView PostalCode; ///< "#" is a digit
    QStringView Phone;
};

struct Country {
    QStringView Region;
    std::array<QStringView, 8> Families;
    std::array<QStringView, 5> Trades;  ///< as part of a name
    std::array<QStringView, 5> Topics;  ///< as categories, in the same order
    QStringView Name;                   ///< of {family} and {trade}
    std::array<QStringView, 6> Streets; ///< with {n} for the number
    QStringView Address;                ///< of {street}, {code}, {city}, {state}
    std::array<Town, 4> Towns;
};

// clang-format off
constexpr Country countries[] = {
    {u"US", {u"Hartwell", u"Okafor", u"Bellamy", u"Castaneda", u"Lindqvist", u"Pruitt", u"Whitaker", u"O'Dell"},
     {u"Plumbing", u"Roofing Co.", u"Dental Care", u"Auto Repair", u"Bakery & Café"},
     {u"Plumbers", u"Roofers", u"Dentists", u"Car Repair", u"Bakeries"}, u"{family} {trade}",
     {u"{n} Main St", u"{n} Oak Ave, Suite 200", u"{n} N Harbor Blvd", u"{n} 5th Street", u"{n} Old Mill Rd", u"{n} Sunset Dr, #5"},
     u"{street}, {city}, {state} {code}",
     {{{u"Springfield", u"IL", u"627##", u"(217) 555-01##"}, {u"San Luis Obispo", u"CA", u"934##", u"(805) 555-01##"},
       {u"New Haven", u"CT", u"065##", u"(203) 555-01##"}, {u"Austin", u"TX", u"787##", u"(512) 555-01##"}}}},
    {u"DE", {u"Brandner", u"Öztürk", u"Hülsmann", u"Weißbach", u"Kowalke", u"Lindner", u"Straßer", u"Petersohn"},
     {u"Heizungsbau GmbH", u"Dachtechnik", u"Zahnarztpraxis", u"Kfz-Meisterbetrieb", u"Backstube"},
     {u"Heizung & Sanitär", u"Dachdecker", u"Zahnärzte", u"Autowerkstätten", u"Bäckereien"}, u"{family} {trade}",
     {u"Hauptstraße {n}", u"Am Alten Markt {n}", u"Goethestr. {n}a", u"Lindenallee {n}", u"Industriering {n}, Halle 3", u"Unter den Eichen {n}"},
     u"{street}, {code} {city}",
     {{{u"Berlin", u"", u"101##", u"030 23125 1##"}, {u"Frankfurt am Main", u"", u"603##", u"069 90009 2##"},
       {u"Hamburg", u"", u"203##", u"040 66969 3##"}, {u"München", u"", u"803##", u"089 99998 4##"}}}},
    {u"AT", {u"Aichinger", u"Brunngraber", u"Czerny", u"Doppelhofer", u"Edlinger", u"Fürst", u"Gschwandtner", u"Hölzl"},
     {u"Elektrotechnik e.U.", u"Spenglerei", u"Ordination", u"Autohaus GmbH", u"Konditorei"},
     {u"Elektriker", u"Spengler", u"Ärzte", u"Autohäuser", u"Konditoreien"}, u"{family} {trade}",
     {u"Mariahilfer Straße {n}/2/3", u"Lange Gasse {n}", u"Hauptplatz {n}", u"Grazer Straße {n}", u"Am Tabor {n}", u"Ringstraße {n}, Top 12"},
     u"{street}, {code} {city}",
     {{{u"Wien", u"", u"11#0", u"01 5550 1##"}, {u"St. Pölten", u"", u"310#", u"02742 5550##"},
       {u"Graz", u"", u"801#", u"0316 5550##"}, {u"Seefeld in Tirol", u"", u"610#", u"05212 55##"}}}},
    {u"FR", {u"Delacourt", u"Lefèvre", u"Bonnefoy", u"Marchandeau", u"Saint-Aubin", u"Thébault", u"Garnier", u"L'Hénaff"},
     {u"Plomberie", u"Couverture", u"Cabinet dentaire", u"Garage", u"Boulangerie"},
     {u"Plombiers", u"Couvreurs", u"Dentistes", u"Garagistes", u"Boulangeries"}, u"{trade} {family}",
     {u"{n} rue de la Paix", u"{n} bis, avenue des Tilleuls", u"{n} place du Marché", u"{n} bd Victor-Hugo", u"{n} chemin du Moulin", u"{n} quai de la Rivière"},
     u"{street}, {code} {city}",
     {{{u"Paris", u"", u"750##", u"01 99 00 12 ##"}, {u"Saint-Étienne", u"", u"420##", u"04 65 71 23 ##"},
       {u"La Roche-sur-Yon", u"", u"850##", u"02 61 91 34 ##"}, {u"Lyon", u"", u"690##", u"04 65 71 45 ##"}}}},
    {u"ES", {u"Aguilera", u"Benavides", u"Cárdenas", u"Echevarría", u"Fuentes", u"Ibáñez", u"Olmedo", u"Zurita"},
     {u"Fontanería", u"Tejados", u"Clínica Dental", u"Talleres", u"Panadería"},
     {u"Fontaneros", u"Tejados", u"Dentistas", u"Talleres mecánicos", u"Panaderías"}, u"{trade} {family}",
     {u"Calle Mayor, {n}", u"Avda. de la Constitución, {n}, 2º B", u"Plaza de España, {n}", u"C/ Alcalá, {n}", u"Paseo del Parque, {n}", u"Ronda de Toledo, {n}"},
     u"{street}, {code} {city}",
     {{{u"Madrid", u"", u"280##", u"910 55 01 ##"}, {u"Sevilla", u"", u"410##", u"955 55 02 ##"},
       {u"San Sebastián de los Reyes", u"", u"287##", u"911 55 03 ##"}, {u"Valencia", u"", u"460##", u"960 55 04 ##"}}}},
    {u"PL", {u"Andrzejczak", u"Błaszczyk", u"Cieślak", u"Dąbek", u"Gołębiewska", u"Jóźwiak", u"Krzyżanowski", u"Świątek"},
     {u"Hydraulika", u"Dachy", u"Stomatologia", u"Auto-Serwis", u"Piekarnia"},
     {u"Hydraulicy", u"Dekarze", u"Stomatolodzy", u"Warsztaty", u"Piekarnie"}, u"{trade} {family}",
     {u"ul. Marszałkowska {n}", u"al. Jerozolimskie {n} lok. 5", u"ul. 3 Maja {n}", u"pl. Wolności {n}", u"ul. Jana Pawła II {n}", u"os. Słoneczne {n}"},
     u"{street}, {code} {city}",
     {{{u"Warszawa", u"", u"00-5##", u"22 555 01 ##"}, {u"Bielsko-Biała", u"", u"43-3##", u"33 555 02 ##"},
       {u"Kraków", u"", u"31-0##", u"12 555 03 ##"}, {u"Nowy Sącz", u"", u"33-3##", u"18 555 04 ##"}}}},
    {u"JP", {u"青空", u"小鳥", u"桜井", u"朝日", u"緑川", u"白雪", u"海野", u"星川"},
     {u"設備工業", u"瓦店", u"歯科クリニック", u"自動車", u"ベーカリー"},
     {u"水道工事", u"屋根工事", u"歯科", u"自動車整備", u"パン屋"}, u"{family}{trade}",
     {u"丸の内{n}丁目2番3号", u"本町{n}-4-5", u"中央{n}-6-7 青空ビル3階", u"栄町{n}丁目8-9", u"緑{n}-10-1", u"東{n}-2-12"},
     u"〒{code} {state}{city}{street}",
     {{{u"千代田区", u"東京都", u"100-00##", u"03-5550-01##"}, {u"大阪市北区", u"大阪府", u"530-00##", u"06-5550-02##"},
       {u"横浜市西区", u"神奈川県", u"220-00##", u"045-555-03##"}, {u"札幌市中央区", u"北海道", u"060-00##", u"011-555-04##"}}}},
    {u"CA", {u"Abernathy", u"Beaulieu", u"Chaudhry", u"Deschênes", u"Eng", u"Fontaine", u"Galloway", u"Hrynchuk"},
     {u"Plumbing Ltd.", u"Roofing Inc.", u"Dental Group", u"Motors", u"Bake Shop"},
     {u"Plumbers", u"Roofers", u"Dentists", u"Garages", u"Bakeries"}, u"{family} {trade}",
     {u"{n} King St W", u"{n} Jasper Ave", u"{n} rue Sainte-Catherine", u"{n} Water St, Unit 5", u"{n} Lakeshore Rd E", u"{n} Portage Ave"},
     u"{street}, {city}, {state} {code}",
     {{{u"Toronto", u"ON", u"M5H #T#", u"(416) 555-01##"}, {u"Montréal", u"QC", u"H2X #Y#", u"(514) 555-01##"},
       {u"St. John's", u"NL", u"A1C #K#", u"(709) 555-01##"}, {u"Salt Spring Island", u"BC", u"V8K #L#", u"(250) 555-01##"}}}},
    {u"AU", {u"Ashcroft", u"Barnaby", u"Cavanagh", u"Dimitriou", u"Everingham", u"Fazio", u"Gallagher", u"Nguyen"},
     {u"Plumbing", u"Roof Restorations", u"Dental", u"Mechanical", u"Patisserie"},
     {u"Plumbers", u"Roofing", u"Dentists", u"Mechanics", u"Cakes & Pastries"}, u"{family} {trade}",
     {u"{n} George St", u"Shop 5, {n} Pacific Highway", u"{n} Collins Street", u"{n} Beach Road", u"{n} Wattle Grove", u"{n} Station Parade"},
     u"{street}, {city} {state} {code}",
     {{{u"Sydney", u"NSW", u"20##", u"(02) 5550 01##"}, {u"Surfers Paradise", u"QLD", u"42##", u"(07) 7010 02##"},
       {u"Melbourne", u"VIC", u"30##", u"(03) 7010 03##"}, {u"Alice Springs", u"NT", u"08##", u"(08) 7010 04##"}}}},
    {u"GB", {u"Ainsworth", u"Blackwood", u"Chaudhary", u"Dunstable", u"Eccles", u"Farthing", u"Greengrass", u"Hollis"},
     {u"Heating Ltd", u"Roofing Services", u"Dental Practice", u"Motor Works", u"Tea Rooms"},
     {u"Plumbers", u"Roofers", u"Dentists", u"Garages", u"Tea Rooms"}, u"{family} & Sons {trade}",
     {u"{n} High Street", u"Unit 4, {n} Station Road", u"{n} Church Lane", u"Mill House, {n} The Green", u"{n} Kings Parade", u"{n} Market Square"},
     u"{street}, {city} {code}",
     {{{u"London", u"", u"SW1A #AA", u"020 7946 01##"}, {u"Stoke-on-Trent", u"", u"ST4 #BD", u"01632 9601##"},
       {u"Newcastle upon Tyne", u"", u"NE1 #EF", u"0191 498 01##"}, {u"Bury St Edmunds", u"", u"IP33 #GH", u"01632 9602##"}}}},
};
// clang-format on

QString WithDigits(QStringView pattern, int number) {
    QString text = pattern.toString();
    for (qsizetype at = text.size(); at-- > 0;)
        if (text[at] == u'#') {
            text[at] = QChar(u'0' + number % 10);
            number /= 10;
        }
    return text;
}

QString With(QStringView pattern, std::initializer_list<std::pair<QStringView, QString>> values) {
    QString text = pattern.toString();
    for (const auto& [name, value] : values)
        text.replace(u'{' + name + u'}', value);
    return text;
}

ModernBusiness Make(const Country& country, int n, const DemoContext& context) {
    const auto at = [n](const auto& list, int step) -> const auto& {
        return list[static_cast<std::size_t>(n * step + n / 8) % list.size()];
    };
    const std::size_t trade = static_cast<std::size_t>(n) % country.Trades.size();
    const Town& town = at(country.Towns, 1);
    const int lap = n / 40; // names begin to repeat
    ModernBusiness business;
    business.Number = n;
    business.Name = With(country.Name, {{u"family", country.Families[static_cast<std::size_t>(n) % 8].toString()},
                                        {u"trade", country.Trades[trade].toString()}});
    if (lap > 0)
        business.Name += u' ' + QString::number(lap + 1);
    business.Category = country.Topics[trade].toString();
    business.Street = With(at(country.Streets, 5), {{u"n", QString::number(1 + (n * 17) % 97)}});
    business.City = town.City.toString();
    business.State = town.State.toString();
    business.PostalCode = WithDigits(town.PostalCode, 11 + (n * 7) % 80);
    business.Phone = WithDigits(town.Phone, n % 100);
    business.FullAddress = With(country.Address, {{u"street", business.Street},
                                                  {u"code", business.PostalCode},
                                                  {u"city", business.City},
                                                  {u"state", business.State}});
    const QString slug = SlugOf(business.Name);
    business.Slug = (slug.isEmpty() ? country.Region.toString().toLower() : slug) + u'-' + QString::number(n + 101);
    if (n % 3 != 2) {
        const WebsiteKind kind = n % 2 == 0 ? WebsiteKind::Start : WebsiteKind::Plain;
        business.Website =
            WebsiteOf(context, kind, business.Slug).replace(u"//127.0.0.1"_s, u"//" + business.Slug + u".localhost");
    }
    if (n % 4 == 1)
        business.Email = u"info@" + business.Slug + u".example";
    return business;
}

} // namespace

std::vector<ModernBusiness> ModernBusinessesOf(QStringView region, int count, const DemoContext& context) {
    const auto country = std::find_if(std::begin(countries), std::end(countries),
                                      [region](const Country& c) { return c.Region == region; });
    if (country == std::end(countries))
        throw std::logic_error("no invented businesses of " + region.toString().toStdString());
    std::vector<ModernBusiness> businesses;
    for (int n = 0; n < count; ++n)
        businesses.push_back(Make(*country, n, context));
    return businesses;
}

Lead LeadOf(const ModernBusiness& business, const QString& detailsLink) {
    Lead lead;
    lead.Category = business.Category;
    lead.Name = business.Name;
    lead.FullAddress = business.FullAddress;
    lead.Street = business.Street;
    lead.City = business.City;
    lead.State = business.State;
    lead.PostalCode = business.PostalCode;
    lead.Phone = business.Phone;
    lead.Website = business.Website;
    lead.DetailsLink = detailsLink;
    return lead;
}

} // namespace Brindle::Demo
