#include "PrintTo.h"
#include "discovery/AnyPage.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

// How a country's directories write where a business is and how to call it; "#" is a digit that differs.
struct Country {
    const char* Name;
    const char16_t* Host;
    const char16_t* Language;
    const char16_t* Title;
    const char16_t* Lines; // of the address, parted by "|"
    const char16_t* Phone;
    const char16_t* Parts; // street|city|state|postal code
};

void PrintTo(const Country& country, std::ostream* out) {
    *out << country.Name;
}

QString Text(const char16_t* text, int number) {
    return QString::fromUtf16(text).replace(u'#', QString::number(number));
}

// Five businesses, laid out in one of several ways.
QString PageOf(const Country& country, const QString& entry, const QString& between) {
    QString list;
    for (int i = 1; i <= 5; ++i)
        list += QString(entry)
                    .replace(u"{n}"_s, u"Alba %1"_s.arg(QChar(u'A' + i)))
                    .replace(u"{l}"_s, u"/b/%1"_s.arg(i))
                    .replace(u"{a}"_s, Text(country.Lines, i).replace(u"|"_s, between))
                    .replace(u"{p}"_s, Text(country.Phone, i));
    return u"<!DOCTYPE html><html lang=%1><title>%2</title><body><h1>%2</h1><ul>%3</ul><footer>%4<br>%5</footer>"_s.arg(
        country.Language, country.Title, list, Text(country.Lines, 9).replace(u"|"_s, u"<br>"_s),
        Text(country.Phone, 9));
}

class EveryCountry : public testing::TestWithParam<Country> {};

TEST_P(EveryCountry, IsReadInEachLayout) {
    const Country& country = GetParam();
    const std::pair<QString, QString> layouts[] = {
        {u"<li><h3><a href='{l}'>{n}</a></h3><p>{a}</p><p>{p}</p></li>"_s, u"<br>"_s},
        {u"<li class=css-1x><a class=q7 href='{l}'>{n}</a><div class=zz1>{a}</div><div class=zz2>{p}</div></li>"_s,
         u", "_s},
        {u"<li><b><a href='{l}'>{n}</a></b> <span><i>{a}</i></span> <span><a href='tel:{p}'>{p}</a></span></li>"_s,
         u"</i> <i>"_s},
        {u"<li><strong><a href='{l}'>{n}</a></strong><br>{a}<br>{p}</li>"_s, u"<br>"_s},
        {u"<li><a href='{l}'>{n}</a><script type='application/ld+json'>{\"@type\": \"LocalBusiness\", \"name\": "
         u"\"{n}\", "
         u"\"telephone\": \"{p}\", \"address\": \"{a}\"}</script></li>"_s,
         u", "_s},
    };
    for (const auto& [entry, between] : layouts) {
        const PageTree page(PageOf(country, entry, between));
        const auto records = ReadAnyPage(page, u"https://www.list."_s + country.Host + u"/x"_s).Records;
        ASSERT_EQ(records.size(), 5U) << entry.toStdString();
        const Lead& lead = records[2].Fields;
        EXPECT_EQ(lead.Name, u"Alba D"_s) << entry.toStdString();
        EXPECT_EQ(lead.Phone, Text(country.Phone, 3)) << entry.toStdString();
        const QStringList parts{lead.Street, lead.City, lead.State, lead.PostalCode};
        EXPECT_EQ(parts.join(u'|'), Text(country.Parts, 3))
            << entry.toStdString() << ' ' << lead.FullAddress.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Pages, EveryCountry,
    testing::Values(Country{"Germany", u"de", u"de", u"Friseure in Köln", u"Lindenweg 1#|50667 Köln", u"0221 400012#",
                            u"Lindenweg 1#|Köln||50667"},
                    Country{"Austria", u"at", u"de-AT", u"Zahnärzte in Graz", u"Ringstraße #/2/5|8010 Graz",
                            u"0316 72401#", u"Ringstraße #/2/5|Graz||8010"},
                    Country{"Switzerland", u"ch", u"fr-CH", u"Restaurants à Genève", u"Rue du Rhône 1#|1204 Genève",
                            u"022 310 45 6#", u"Rue du Rhône 1#|Genève||1204"},
                    Country{"France", u"fr", u"fr", u"Plombiers à Lyon", u"1# rue Victor Hugo|69002 Lyon",
                            u"04 78 37 12 0#", u"1# rue Victor Hugo|Lyon||69002"},
                    Country{"Belgium", u"be", u"nl-BE", u"Restaurants in Gent", u"Veldstraat 3#|9000 Gent",
                            u"09 225 31 2#", u"Veldstraat 3#|Gent||9000"},
                    Country{"Netherlands", u"nl", u"nl", u"Loodgieters in Utrecht", u"Oudegracht 10#|3511 AB Utrecht",
                            u"030 231 456#", u"Oudegracht 10#|Utrecht||3511 AB"},
                    Country{"Italy", u"it", u"it", u"Ristoranti a Milano", u"Via Dante, 1#|20121 Milano (MI)",
                            u"02 867512#", u"Via Dante, 1#|Milano|MI|20121"},
                    Country{"Spain", u"es", u"es", u"Fontaneros en Sevilla", u"Calle Sierpes, 1#|41004 Sevilla",
                            u"954 21 34 5#", u"Calle Sierpes, 1#|Sevilla||41004"},
                    Country{"Portugal", u"pt", u"pt", u"Dentistas em Lisboa", u"Rua Augusta, 2#|1100-048 Lisboa",
                            u"213 456 78#", u"Rua Augusta, 2#|Lisboa||1100-048"},
                    Country{"Brazil", u"com.br", u"pt-BR", u"Restaurantes em São Paulo",
                            u"Rua das Flores, 11#|São Paulo - SP|CEP 01310-100", u"(11) 3251-445#",
                            u"Rua das Flores, 11#|São Paulo|SP|01310-100"},
                    Country{"Argentina", u"com.ar", u"es-AR", u"Abogados en Mendoza", u"San Martín 4#|M5500 Mendoza",
                            u"0261 423-451#", u"San Martín 4#|Mendoza||M5500"},
                    Country{"Poland", u"pl", u"pl", u"Hydraulicy w Krakowie", u"ul. Długa 1#|31-147 Kraków",
                            u"12 422 31 2#", u"ul. Długa 1#|Kraków||31-147"},
                    Country{"Czechia", u"cz", u"cs", u"Restaurace v Brně", u"Husova 1#/5|602 00 Brno", u"542 211 34#",
                            u"Husova 1#/5|Brno||602 00"},
                    Country{"Slovakia", u"sk", u"sk", u"Zubári v Košiciach", u"Hlavná 1#|040 01 Košice",
                            u"055 623 45 6#", u"Hlavná 1#|Košice||040 01"},
                    Country{"Hungary", u"hu", u"hu", u"Éttermek Szegeden", u"6720 Szeged|Kárász utca 1#.",
                            u"62 423 45#", u"Kárász utca 1#.|Szeged||6720"},
                    Country{"Romania", u"ro", u"ro", u"Restaurante în Cluj", u"Str. Horea nr. 1#|Cluj-Napoca 400174",
                            u"0264 432 12#", u"Str. Horea nr. 1#|Cluj-Napoca||400174"},
                    Country{"Sweden", u"se", u"sv", u"Restauranger i Stockholm", u"Storgatan 1#|114 55 Stockholm",
                            u"08-661 23 4#", u"Storgatan 1#|Stockholm||114 55"},
                    Country{"Norway", u"no", u"nb", u"Tannleger i Oslo", u"Storgata 1#|0184 Oslo", u"22 17 34 5#",
                            u"Storgata 1#|Oslo||0184"},
                    Country{"Denmark", u"dk", u"da", u"Tandlæger i Aarhus", u"Vestergade 1#|8000 Aarhus C",
                            u"86 12 34 5#", u"Vestergade 1#|Aarhus C||8000"},
                    Country{"Finland", u"fi", u"fi", u"Ravintolat Helsinki", u"Mannerheimintie 1#|00100 Helsinki",
                            u"09 612345#", u"Mannerheimintie 1#|Helsinki||00100"},
                    Country{"Greece", u"gr", u"el", u"Εστιατόρια Αθήνα", u"Ερμού 1#|105 63 Αθήνα", u"21 0324 567#",
                            u"Ερμού 1#|Αθήνα||105 63"},
                    Country{"Turkey", u"com.tr", u"tr", u"Restoranlar İstanbul", u"Atatürk Cad. No:1#|34710 Kadıköy",
                            u"0216 336 12 3#", u"Atatürk Cad. No:1#|Kadıköy||34710"},
                    Country{"Russia", u"ru", u"ru", u"Рестораны Москва", u"101000, Москва|ул. Мясницкая, 1#",
                            u"8 (495) 621-12-3#", u"ул. Мясницкая, 1#|Москва||101000"},
                    Country{"Ukraine", u"ua", u"uk", u"Ресторани Львів", u"вул. Городоцька, 1#|Львів|79000",
                            u"032 261 23 4#", u"вул. Городоцька, 1#|Львів||79000"},
                    Country{"Israel", u"co.il", u"he", u"מסעדות בחיפה", u"הרצל 10#|חיפה 3392335", u"04-569242#",
                            u"הרצל 10#|חיפה||3392335"},
                    Country{"Thailand", u"co.th", u"th", u"บริษัท", u"6# หมู่ 1 ถนนศรีจันทร์|ขอนแก่น 40000", u"043 224 12#",
                            u"6# หมู่ 1 ถนนศรีจันทร์|ขอนแก่น||40000"},
                    Country{"UnitedStates", u"com", u"en-US", u"Plumbers in Denver", u"12# Maple St|Denver, CO 80203",
                            u"(303) 555-213#", u"12# Maple St|Denver|CO|80203"},
                    Country{"Canada", u"ca", u"en-CA", u"Dentists in Toronto", u"# King St W|Toronto, ON M5V 2T6",
                            u"416-961-213#", u"# King St W|Toronto|ON|M5V 2T6"},
                    Country{"UnitedKingdom", u"co.uk", u"en-GB", u"Solicitors in Leeds",
                            u"1# High Street|Leeds|LS1 4AP", u"0113 245 678#", u"1# High Street|Leeds||LS1 4AP"},
                    Country{"Ireland", u"ie", u"en-IE", u"Pubs in Cork", u"1# Patrick Street|Cork|T12 X4K8",
                            u"021 427 123#", u"1# Patrick Street|Cork||T12 X4K8"},
                    Country{"Australia", u"com.au", u"en-AU", u"Plumbers in Sydney", u"1# George St|Sydney NSW 2000",
                            u"(02) 9241 312#", u"1# George St|Sydney|NSW|2000"},
                    Country{"NewZealand", u"co.nz", u"en-NZ", u"Cafes in Wellington",
                            u"1# Lambton Quay|Wellington 6011", u"04 472 312#", u"1# Lambton Quay|Wellington||6011"},
                    Country{"SouthAfrica", u"co.za", u"en-ZA", u"Dentists in Cape Town",
                            u"1# Long Street|Cape Town 8001", u"021 423 456#", u"1# Long Street|Cape Town||8001"},
                    Country{"India", u"in", u"en-IN", u"Dentists in Bengaluru", u"1# MG Road|Bengaluru - 560001",
                            u"080 2558 123#", u"1# MG Road|Bengaluru||560001"},
                    Country{"Indonesia", u"co.id", u"id", u"Restoran di Bandung", u"Jl. Merdeka No. 1#|Bandung 40111",
                            u"022 420 312#", u"Jl. Merdeka No. 1#|Bandung||40111"}),
    [](const auto& info) { return std::string(info.param.Name); });

} // namespace
} // namespace Brindle
