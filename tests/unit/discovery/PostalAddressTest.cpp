#include "discovery/PostalAddress.h"

#include <QStringList>

#include <ctime>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle {
namespace {

struct Case {
    QStringView Region; ///< what the hints say; empty: nothing
    QStringView Text;
    QStringView Parts; ///< street | city | state | postal code | country
};

QString Joined(const AddressParts& parts) {
    return QStringList{parts.Street, parts.City, parts.State, parts.PostalCode, parts.Country}.join(u'|');
}

void Check(std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        AddressHints hints;
        hints.Country = c.Region.toString();
        EXPECT_EQ(Joined(SplitAddress(c.Text, hints)).toStdString(), c.Parts.toString().toStdString())
            << c.Text.toUtf8().constData();
        // The same on lines of its own.
        const QString lines = c.Text.toString().replace(u", "_s, u"\n"_s);
        EXPECT_EQ(Joined(SplitAddress(lines, hints)).toStdString(), c.Parts.toString().toStdString())
            << lines.toStdString();
    }
}

TEST(SplitAddress, WhatSoundsLikeAStreetOrACode) {
    Check({
        {u"US", u"Cedar Park, TX", u"|Cedar Park|TX||"},
        {u"US", u"St. Louis Park, MN 55426", u"|St. Louis Park|MN|55426|"},
        {u"US", u"12 Elm St, Oak Park, IL 60302", u"12 Elm St|Oak Park|IL|60302|"},
        {u"AU", u"Shop 2, 2530 Chapel Street, St Kilda", u"Shop 2, 2530 Chapel Street|St Kilda|||"},
        {u"AU", u"PO Box 5801, Fitzroy", u"PO Box 5801|Fitzroy|||"},
        {u"", u"Singel 303-309, Amsterdam", u"Singel 303-309|Amsterdam|||"},
        {u"", u"24 Old Mill Road (at Elm St), Gresham, OR", u"24 Old Mill Road (at Elm St)|Gresham|OR||"},
        {u"", u"33 Main St (at Oak Street), Jamaica Plain, MA", u"33 Main St (at Oak Street)|Jamaica Plain|MA||"},
        {u"IT", u"Via Roma 5 - 40026 Imola (BO) Emilia Romagna", u"Via Roma 5|Imola|BO|40026|"},
        {u"US", u"28 Oak Street, near the station", u"28 Oak Street, near the station||||"},
    });
}

TEST(SplitAddress, CodeBeforeTheCity) {
    Check({
        {u"DE", u"Hauptstraße 5, 10115 Berlin", u"Hauptstraße 5|Berlin||10115|"},
        {u"DE", u"Hauptstraße 5\n10115 Berlin\nDeutschland", u"Hauptstraße 5|Berlin||10115|Deutschland"},
        {u"DE", u"An der Hammerhalde 39 78050 Villingen Schwenningen",
         u"An der Hammerhalde 39|Villingen Schwenningen||78050|"},
        {u"DE", u"Gewerbepark Nord, Haus 3\nIndustriestr. 12a\nD-20095 Hamburg",
         u"Gewerbepark Nord, Haus 3, Industriestr. 12a|Hamburg||20095|"},
        {u"DE", u"Postfach 12 34, 80331 München", u"Postfach 12 34|München||80331|"},
        {u"DE", u"c/o Meier GmbH, Am Markt 3, 60311 Frankfurt am Main",
         u"c/o Meier GmbH, Am Markt 3|Frankfurt am Main||60311|"},
        {u"DE", u"Adresse: 50667 Köln, Hohe Straße 1", u"Hohe Straße 1|Köln||50667|"},
        {u"", u"Lange Gasse 7, 1080 Wien, Österreich", u"Lange Gasse 7|Wien||1080|Österreich"},
        {u"AT", u"Grellgasse 9/3/2 1210 Wien", u"Grellgasse 9/3/2|Wien||1210|"},
        {u"CH", u"Bahnhofstrasse 1, CH-8001 Zürich ZH", u"Bahnhofstrasse 1|Zürich|ZH|8001|"},
        {u"FR", u"12 bis, rue de la Paix, 75002 Paris Cedex 02", u"12 bis, rue de la Paix|Paris Cedex 02||75002|"},
        {u"FR", u"BP 40, ZA Les Vignes\n33000 Bordeaux\nFrance", u"BP 40, ZA Les Vignes|Bordeaux||33000|France"},
        {u"IT", u"Via Roma 5 - 00184 Roma (RM)", u"Via Roma 5|Roma|RM|00184|"},
        {u"IT", u"Corso Garibaldi, 12/B, 20121 Milano MI, Italia", u"Corso Garibaldi, 12/B|Milano|MI|20121|Italia"},
        {u"ES", u"C/ Mayor, 12, 2º B, 28013 Madrid", u"C/ Mayor, 12, 2º B|Madrid||28013|"},
        {u"ES", u"Avda. de la Constitución 4, 41001 Sevilla, Sevilla",
         u"Avda. de la Constitución 4|Sevilla|Sevilla|41001|"},
        {u"PT", u"Rua Augusta 10, 1100-053 Lisboa", u"Rua Augusta 10|Lisboa||1100-053|"},
        {u"NL", u"Herengracht 341, 1016 AZ Amsterdam", u"Herengracht 341|Amsterdam||1016 AZ|"},
        {u"BE", u"Rue Neuve 3 bte 2, 1000 Bruxelles", u"Rue Neuve 3 bte 2|Bruxelles||1000|"},
        {u"PL", u"ul. Marszałkowska 10/12 lok. 5, 00-590 Warszawa",
         u"ul. Marszałkowska 10/12 lok. 5|Warszawa||00-590|"},
        {u"PL", u"ul. Prosta 5, 00-838 Warszawa, woj. mazowieckie", u"ul. Prosta 5|Warszawa|mazowieckie|00-838|"},
        {u"GR", u"Ερμού 5, Τ.Κ. 105 63, Αθήνα", u"Ερμού 5|Αθήνα||105 63|"},
        {u"NG", u"12 Allen Avenue, Ikeja, Lagos", u"12 Allen Avenue|Ikeja|Lagos||"},
        {u"NG", u"12, Allen Avenue, Lagos", u"12, Allen Avenue|Lagos|||"},
        {u"NZ", u"PO Box 1239, Newtown, Wellington 6011", u"PO Box 1239, Newtown|Wellington||6011|"},
        {u"GB", u"66 High Street, First Floor", u"66 High Street, First Floor||||"},
        {u"PL", u"ul. Prosta 5, 00-838, Warszawa", u"ul. Prosta 5|Warszawa||00-838|"},
        {u"CZ", u"Václavské náměstí 1, 110 00 Praha 1", u"Václavské náměstí 1|Praha 1||110 00|"},
        {u"SE", u"Kungsgatan 12, SE-111 35 Stockholm", u"Kungsgatan 12|Stockholm||111 35|"},
        {u"NO", u"Karl Johans gate 5, 0154 Oslo", u"Karl Johans gate 5|Oslo||0154|"},
        {u"DK", u"Vestergade 3, 8000 Aarhus C", u"Vestergade 3|Aarhus C||8000|"},
        {u"FI", u"Mannerheimintie 10, 00100 Helsinki", u"Mannerheimintie 10|Helsinki||00100|"},
        {u"HU", u"1051 Budapest, Vécsey utca 4., 2. em.", u"Vécsey utca 4., 2. em.|Budapest||1051|"},
        {u"EE", u"Narva mnt 5, 10117 Tallinn", u"Narva mnt 5|Tallinn||10117|"},
        {u"LT", u"Gedimino pr. 9, LT-01103 Vilnius", u"Gedimino pr. 9|Vilnius||01103|"},
        {u"SK", u"Hlavná 12, 811 01 Bratislava", u"Hlavná 12|Bratislava||811 01|"},
        {u"SI", u"Slovenska cesta 1, 1000 Ljubljana", u"Slovenska cesta 1|Ljubljana||1000|"},
        {u"HR", u"Ilica 5, 10000 Zagreb, Hrvatska", u"Ilica 5|Zagreb||10000|Hrvatska"},
        {u"BG", u"бул. Витоша 10, 1000 София", u"бул. Витоша 10|София||1000|"},
        {u"RS", u"Knez Mihailova 6, 11000 Beograd", u"Knez Mihailova 6|Beograd||11000|"},
        {u"IS", u"Laugavegur 12, 101 Reykjavík", u"Laugavegur 12|Reykjavík||101|"},
        {u"CY", u"Makariou Avenue 12, 1065 Nicosia", u"Makariou Avenue 12|Nicosia||1065|"},
        {u"MY", u"12, Jalan Ampang, 50450 Kuala Lumpur", u"12, Jalan Ampang|Kuala Lumpur||50450|"},
        {u"GR", u"Ερμού 12, 105 63 Αθήνα", u"Ερμού 12|Αθήνα||105 63|"},
        {u"TR", u"Atatürk Caddesi No: 5, 34000 İstanbul", u"Atatürk Caddesi No: 5|İstanbul||34000|"},
        {u"MX", u"Av. Juárez 10, Col. Centro, 06000 Ciudad de México, CDMX",
         u"Av. Juárez 10, Col. Centro|Ciudad de México|CDMX|06000|"},
        {u"AR", u"Av. Corrientes 1234, C1043AAZ Buenos Aires, Argentina",
         u"Av. Corrientes 1234|Buenos Aires||C1043AAZ|Argentina"},
    });
}

TEST(SplitAddress, StateAndCodeBehindTheCity) {
    Check({
        {u"US", u"12 Main St, Springfield, IL 62701", u"12 Main St|Springfield|IL|62701|"},
        {u"US", u"12345 Ocean Blvd Suite 200, Long Beach, CA 90802-1234",
         u"12345 Ocean Blvd Suite 200|Long Beach|CA|90802-1234|"},
        {u"US", u"PO Box 40\nNew York, NY 10001\nUSA", u"PO Box 40|New York|NY|10001|USA"},
        {u"US", u"12 Main Street New York NY 10001", u"12 Main Street|New York|NY|10001|"},
        {u"US", u"500 5th Ave, Floor 3, New York, New York 10110", u"500 5th Ave, Floor 3|New York|New York|10110|"},
        {u"US", u"4000 E. Ontario Center Parkway, Los Angeles, California",
         u"4000 E. Ontario Center Parkway|Los Angeles|California||"},
        {u"US", u"9 Ocean Ave, Los Angeles, California (Ontario) United States",
         u"9 Ocean Ave|Los Angeles|California||United States"},
        {u"US", u"4801 N Lincoln Ave, Oak Park, Illinois 60302", u"4801 N Lincoln Ave|Oak Park|Illinois|60302|"},
        {u"US", u"350 5th Ave New York", u"350 5th Ave|New York|||"},
        {u"US", u"San Diego, CA", u"|San Diego|CA||"},
        {u"", u"1 Elm Ct, Salem, OR 97301", u"1 Elm Ct|Salem|OR|97301|"},
        {u"CA", u"200 King St W, Toronto, ON M5H 3T4", u"200 King St W|Toronto|ON|M5H 3T4|"},
        {u"CA", u"5 rue Sainte-Catherine, Montréal (Québec) H2X 1Y4",
         u"5 rue Sainte-Catherine|Montréal|Québec|H2X 1Y4|"},
        {u"", u"200 King St W\nToronto ON  M5H 3T4\nCanada", u"200 King St W|Toronto|ON|M5H 3T4|Canada"},
        {u"AU", u"Shop 5, 10 George St, Sydney NSW 2000", u"Shop 5, 10 George St|Sydney|NSW|2000|"},
        {u"BR", u"Av. Paulista, 1000 - Bela Vista, São Paulo - SP, 01310-100",
         u"Av. Paulista, 1000 - Bela Vista|São Paulo|SP|01310-100|"},
    });
}

TEST(SplitAddress, CodeBehindTheCityOrNone) {
    Check({
        {u"GB", u"10 Downing Street, London SW1A 2AA", u"10 Downing Street|London||SW1A 2AA|"},
        {u"GB", u"Unit 4, Mill House\n3 High Street\nGuildford\nSurrey\nGU1 3AA\nUnited Kingdom",
         u"Unit 4, Mill House, 3 High Street|Guildford|Surrey|GU1 3AA|United Kingdom"},
        {u"IE", u"22 St. Stephen’s Green, Dublin", u"22 St. Stephen’s Green|Dublin|||"},
        {u"IE", u"Skerries, Co. Dublin", u"|Skerries|Co. Dublin||"},
        {u"IE", u"5 Patrick Street, Cork, T12 X70A", u"5 Patrick Street|Cork||T12 X70A|"},
        {u"NZ", u"67B Victoria Street, Palmerston North, Manawatū 4410",
         u"67B Victoria Street|Palmerston North|Manawatū|4410|"},
        {u"NZ", u"29 Trafalgar Street, Nelson, Nelson 7010", u"29 Trafalgar Street|Nelson|Nelson|7010|"},
        {u"UA", u"просп. Свободи, буд. 37, 01559, м. Київ", u"просп. Свободи, буд. 37|Київ||01559|"},
        {u"AR", u"Av. Colón N° 338 (M5500) Mendoza, Mendoza", u"Av. Colón N° 338|Mendoza|Mendoza|M5500|"},
        {u"CO", u"Cra. 7 No. 17 - 16, Bogotá, Cundinamarca", u"Cra. 7 No. 17 - 16|Bogotá|Cundinamarca||"},
        {u"LU", u"12, place d'Armes, L-1136 Luxembourg", u"12, place d'Armes|Luxembourg||1136|"},
        {u"MX", u"Av. Juárez 5, 06050 Ciudad de México", u"Av. Juárez 5|Ciudad de México||06050|"},
        {u"NZ", u"12 Queen Street, Auckland 1010", u"12 Queen Street|Auckland||1010|"},
        {u"IN", u"5th Floor, Rose Towers, MG Road, Mumbai, Maharashtra 400069",
         u"5th Floor, Rose Towers, MG Road|Mumbai|Maharashtra|400069|"},
        {u"IN", u"12 MG Road, Bengaluru - 560001, Karnataka", u"12 MG Road|Bengaluru|Karnataka|560001|"},
        {u"ZA", u"4 Long Street, Cape Town, Western Cape, 8001", u"4 Long Street|Cape Town|Western Cape|8001|"},
        {u"SG", u"1 Raffles Place, #20-01, Singapore 048616", u"1 Raffles Place, #20-01|Singapore||048616|"},
        {u"RU", u"101000, г. Москва, ул. Тверская, д. 5", u"ул. Тверская, д. 5|Москва||101000|"},
        {u"UA", u"вул. Хрещатик, 1, Київ, 01001", u"вул. Хрещатик, 1|Київ||01001|"},
        {u"RU", u"г. Москва, ул. Тверская, д. 5", u"ул. Тверская, д. 5|Москва|||"},
        {u"GB", u"Flat 2, 10 Baker St, London, W1U 3BW, UK", u"Flat 2, 10 Baker St|London||W1U 3BW|UK"},
        {u"LV", u"Brīvības iela 5, Rīga, LV-1010, Latvija", u"Brīvības iela 5|Rīga||LV-1010|Latvija"},
        {u"RO", u"Str. Lipscani nr. 5, București 030031", u"Str. Lipscani nr. 5|București||030031|"},
        {u"NL", u"Herengracht 341, Amsterdam", u"Herengracht 341|Amsterdam|||"},
        {u"RO", u"Bd. Unirii 18, bl. 3, sc. A, București, 030167", u"Bd. Unirii 18, bl. 3, sc. A|București||030167|"},
        {u"AU", u"Shop 19, 12 Collins Street Geelong VIC 3220", u"Shop 19, 12 Collins Street|Geelong|VIC|3220|"},
        {u"US", u"9 Lincoln Ave St. Louis, MO 63101", u"9 Lincoln Ave|St. Louis|MO|63101|"},
        {u"ID", u"Jalan Merdeka 215 Bandung 40111", u"Jalan Merdeka 215|Bandung||40111|"},
        {u"BR", u"Rua das Flores, 11, Curitiba/PR, CEP 80010-000", u"Rua das Flores, 11|Curitiba|PR|80010-000|"},
        {u"AE", u"Shop 5, Al Wasl Road, Dubai", u"Shop 5, Al Wasl Road|Dubai|||"},
        {u"PH", u"5 Rizal Street, Makati 1200", u"5 Rizal Street|Makati||1200|"},
        {u"CL", u"Av. Providencia 1234, Santiago", u"Av. Providencia 1234|Santiago|||"},
        {u"PE", u"Av. Larco 345, Lima", u"Av. Larco 345|Lima|||"},
        {u"VN", u"12 Đường Lê Lợi, Hà Nội", u"12 Đường Lê Lợi|Hà Nội|||"},
        {u"TH", u"99 ถนนสุขุมวิท, กรุงเทพฯ 10110", u"99 ถนนสุขุมวิท|กรุงเทพฯ||10110|"},
        {u"MT", u"12 Triq ir-Repubblika, Valletta VLT 1117", u"12 Triq ir-Repubblika|Valletta||VLT 1117|"},
        {u"", u"Amsterdam, The Netherlands", u"|Amsterdam|||The Netherlands"},
    });
}

TEST(SplitAddress, LargeToSmall) {
    Check({
        {u"JP", u"〒100-0005 東京都千代田区丸の内1-2-3", u"丸の内1-2-3|千代田区|東京都|100-0005|"},
        {u"", u"〒530-0001 大阪府大阪市北区梅田1丁目2番3号 山田ビル5階",
         u"梅田1丁目2番3号 山田ビル5階|大阪市北区|大阪府|530-0001|"},
        {u"JP", u"1-2-3 Marunouchi, Chiyoda-ku, Tokyo 100-0005, Japan",
         u"1-2-3 Marunouchi|Chiyoda-ku|Tokyo|100-0005|Japan"},
        {u"CN", u"广东省深圳市南山区科技路1号 518000", u"科技路1号|深圳市南山区|广东省|518000|"},
        {u"KR", u"서울특별시 중구 세종대로 110 04524", u"중구 세종대로 110|서울특별시||04524|"},
        {u"TW", u"台北市信義區市府路1號", u"市府路1號|台北市信義區|||"},
    });
}

TEST(SplitAddress, StaysWholeWhereItIsUnsure) {
    Check({
        {u"", u"", u"||||"},
        {u"", u"some words without an address", u"||||"},
        {u"", u"Open 9-18, Sundays closed", u"||||"},
        {u"DE", u"über 500 Betriebe", u"||||"},
        {u"US", u"12 Main New York", u"||||"},
        {u"DE", u"4711", u"||||"},
    });
    EXPECT_EQ(SplitAddress(u"Hauptstraße 5, 10115 Berlin\n"_s.repeated(100), {}), AddressParts());
}

TEST(GuessCountry, WeighsTheHints) {
    const auto guess = [](const AddressHints& hints) -> QString {
        const CountryGuess found = GuessCountry(hints);
        return found.Region + (found.Sure ? u"!"_s : QString());
    };
    EXPECT_EQ(guess({u"Schweiz"_s, u"de"_s, u"example.de"_s, u"AT"_s}), u"CH!");
    EXPECT_EQ(guess({{}, u"de"_s, u"www.example.at"_s, {}}), u"AT!");
    EXPECT_EQ(guess({{}, u"en"_s, u"www.example.co.uk"_s, {}}), u"GB!");
    EXPECT_EQ(guess({{}, u"de-CH"_s, u"example.com"_s, {}}), u"CH!");
    EXPECT_EQ(guess({{}, u"es"_s, u"example.com"_s, u"MX"_s}), u"MX!");
    EXPECT_EQ(guess({{}, u"ja"_s, u"example.com"_s, {}}), u"JP!");
    EXPECT_EQ(guess({{}, u"es"_s, u"example.com"_s, {}}), u"ES");
    EXPECT_EQ(guess({{}, u"en"_s, u"example.com"_s, {}}), u"");
    EXPECT_EQ(guess({}), u"");
}

TEST(HasStreetWord, KnowsTheWordsOfManyLanguages) {
    for (const QStringView text :
         {u"Hauptstraße 5",    u"Berliner Str. 12", u"Am Tabor 1-3",       u"12 Main St.",        u"5th Avenue",
          u"rue de la Paix",   u"Via Roma 5",       u"C/ Mayor, 12",       u"ul. Prosta 5",       u"Kungsgatan 12",
          u"Keizersgracht 10", u"Váci utca 4",      u"ул. Тверская",       u"Rua Augusta",        u"Atatürk Cad. 5",
          u"梅田1丁目2番",     u"科技路1号",        u"Jl. Sudirman 5",     u"Mannerheimintie 10", u"Ermou Street",
          u"Piazza del Duomo", u"Strada Lipscani",  u"Václavské náměstí 1"})
        EXPECT_TRUE(HasStreetWord(text)) << text.toUtf8().constData();
    for (const QStringView text :
         {u"contact us via e-mail", u"the best way", u"Opening hours", u"Restaurants", u"read more", u"call now",
          u"place your order", u"12 reviews", u"", u"im Verein", u"a great place"})
        EXPECT_FALSE(HasStreetWord(text)) << text.toUtf8().constData();
}

TEST(LooksLikeAddress, TellsAddressesFromOtherLines) {
    const struct {
        QStringView Text;
        QStringView Region;
        bool Address;
    } cases[] = {
        {u"Hauptstraße 5, 10115 Berlin", u"DE", true},
        {u"10115 Berlin", u"DE", true},
        {u"London SW1A 2AA", u"", true},
        {u"Springfield, IL 62701", u"US", true},
        {u"12 Main St", u"US", true},
        {u"〒100-0005 千代田区", u"JP", true},
        {u"00-590 Warszawa", u"PL", true},
        {u"12345 reviews", u"US", false},
        {u"Founded 1998 in Berlin", u"AT", false},
        {u"Open 9:00-18:00", u"DE", false},
        {u"(416) 555-0100", u"CA", false},
        {u"Plumbers", u"US", false},
        {u"Price: 10000", u"DE", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(LooksLikeAddress(c.Text, c.Region), c.Address) << c.Text.toUtf8().constData();
}

TEST(PostalCodes, StandApartFromOtherNumbers) {
    const auto found = [](QStringView text, QStringView region) {
        QStringList codes;
        for (const TextSpan& span : PostalCodesIn(text, region))
            codes.append(text.sliced(span.Begin, span.End - span.Begin).toString());
        return codes.join(u'|');
    };
    EXPECT_EQ(found(u"D-10115 Berlin, 80331 München", u"DE"), u"10115|80331");
    EXPECT_EQ(found(u"10115.50 €, 1/10115, 101156, A10115, 10115-2", u"DE"), u"");
    EXPECT_EQ(found(u"M5H 3T4 and SW1A 2AA and 1016 AZ", u""), u"M5H 3T4|SW1A 2AA|1016 AZ");
    EXPECT_EQ(found(u"90802-1234", u"US"), u"90802-1234");
    EXPECT_EQ(found(u"〒100-0005東京", u"JP"), u"100-0005");
    EXPECT_EQ(RegionOfCountryName(u"deutschland"), u"DE");
    EXPECT_EQ(RegionOfCountryName(u"in"), u"");
    EXPECT_EQ(CountryNameOf(u"DE"), u"Germany");
    EXPECT_TRUE(IsStateOf(u"US", u"new york") && IsStateOf(u"US", u"NY") && !IsStateOf(u"US", u"ny"));
    EXPECT_TRUE(IsStateOf(u"IE", u"County Cork"));
}

TEST(HasStreetWord, CostsTheSamePerCharacterInALongText) {
    for (const QString& part : {u"a "_s, u"x"_s, u"Str. "_s, u"街"_s, u"-."_s}) {
        const auto cost = [&part](int times) {
            const QString text = part.repeated(times) + u" 1";
            const std::clock_t start = std::clock();
            HasStreetWord(text);
            PostalCodesIn(text, u"DE");
            return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        };
        const double base = cost(5000);
        EXPECT_LT(cost(100000), 100 * base + 0.1) << part.toStdString();
    }
}

} // namespace
} // namespace Brindle
