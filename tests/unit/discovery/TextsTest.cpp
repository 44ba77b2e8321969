#include "discovery/PostalAddress.h"
#include "discovery/PostalAddressWords.h"
#include "discovery/RecordsAddress.h"
#include "discovery/RecordsContacts.h"
#include "discovery/StructuredLead.h"
#include "discovery/WordTable.h"

#include <gtest/gtest.h>

// What single texts of a page are taken for.

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(WordTable, FindsItsWordsAndNoOthers) {
    QStringList words;
    for (int i = 0; i < 500; ++i)
        words << u"word%1"_s.arg(i * i);
    WordTable<int> table;
    EXPECT_FALSE(table.Contains(u"word0"));
    for (int i = 0; i < 500; ++i)
        table[words[i]] = i;
    table[u"word4"] += 100;
    for (int i = 0; i < 500; ++i)
        EXPECT_EQ(table.ValueOf(words[i]), i == 2 ? 102 : i) << words[i].toStdString();
    for (const QStringView other : {u"", u"word", u"word2", u"Word4", u"word44", u"word249002", u"4"})
        EXPECT_FALSE(table.Contains(other)) << other.toUtf8().constData();
}

TEST(Texts, AddressesOfTheWeb) {
    const struct {
        QString Text, Address;
    } cases[] = {
        {u"www.joes.example"_s, u"http://www.joes.example"_s},
        {u" https://joes.example/menu/ "_s, u"https://joes.example/menu"_s},
        {u"joes.info,"_s, u"http://joes.info"_s},
        {u"Co.Ltd"_s, {}},
        {u"Joes.info"_s, {}},
        {u"a@joes.example"_s, {}},
        {u"joes pizza.example"_s, {}},
        {u"3.5"_s, {}},
        {u"St.John"_s, {}},
        {u"e.V."_s, {}},
        {u"www."_s, {}},
        {u"www.jöes-and.co.uk"_s, u"http://www.jöes-and.co.uk"_s},
        {u"www.a&b.example"_s, {}},
    };
    for (const auto& row : cases)
        EXPECT_EQ(WebAddressIn(row.Text).toStdString(), row.Address.toStdString()) << row.Text.toStdString();
}

TEST(Texts, WhereCountersPassOnTo) {
    const struct {
        QString Link, Target;
    } cases[] = {
        {u"https://d.example/out?u=https%3A%2F%2Fjoes.example%2Fa%3Fb&id=3"_s, u"https://joes.example/a?b"_s},
        {u"https://d.example/out?id=3&to=http://joes.example/"_s, u"http://joes.example/"_s},
        {u"https://d.example/out?to=httpd"_s, {}},
        {u"https://d.example/out?to=/http://joes.example"_s, {}},
        {u"https://d.example/http://joes.example"_s, {}},
    };
    for (const auto& row : cases)
        EXPECT_EQ(RedirectTarget(row.Link).toStdString(), row.Target.toStdString()) << row.Link.toStdString();
}

TEST(Texts, LinesThatHaveAPostalCodeOrAStreet) {
    const struct {
        QString Region, Line;
        bool Code, Street;
    } cases[] = {
        {u"DE"_s, u"10115 Berlin"_s, true, false},
        {u"DE"_s, u"D-10115 Berlin"_s, true, false},
        {u"DE"_s, u"Hauptstr. 5"_s, false, true},
        {u"DE"_s, u"Hauptstraße 5, 10115 Berlin"_s, true, true},
        {u"DE"_s, u"Artikel 10115"_s, false, false},
        {u"DE"_s, u"10115 €"_s, false, false},
        {u"DE"_s, u"10115,50 Euro"_s, false, false},
        {u"DE"_s, u"seit 1998"_s, false, false},
        {u"AT"_s, u"1998, Museum"_s, false, false},
        {u"AT"_s, u"1080 Wien"_s, true, false},
        {u"FR"_s, u"12 rue de la Paix"_s, false, true},
        {u"FR"_s, u"75002 PARIS"_s, true, false},
        {u"GB"_s, u"London SW1A 2AA"_s, true, false},
        {u"GB"_s, u"10 Downing Street"_s, false, true},
        {u"US"_s, u"Springfield, IL 62704"_s, true, false},
        {u"US"_s, u"Suite 62704"_s, false, false},
        {u"US"_s, u"12 reviews"_s, false, false},
        {u"US"_s, u"2. Main Street Diner"_s, false, false},
        {u"CA"_s, u"Guelph, ON N1H 2A3"_s, true, false},
        {u"NL"_s, u"1016 AZ Amsterdam"_s, true, false},
        {u"JP"_s, u"〒530-0001 大阪市北区梅田1丁目"_s, true, true},
        {u"PL"_s, u"ul. Długa 5"_s, false, true},
        {u"PL"_s, u"00-123 Warszawa"_s, true, false},
        {u""_s, u"00-123 Warszawa"_s, true, false},
        {u""_s, u"10115 Berlin"_s, false, false},
    };
    for (const auto& row : cases) {
        const AddressSigns signs = AddressSignsIn(row.Line, row.Region);
        EXPECT_EQ(signs.PostalCode, row.Code) << row.Region.toStdString() << ' ' << row.Line.toStdString();
        EXPECT_EQ(signs.Street, row.Street) << row.Region.toStdString() << ' ' << row.Line.toStdString();
    }
}

TEST(Texts, CodesAndWhatMayStandAroundThem) {
    const struct {
        QString Region, Text, Codes; // joined by "|"
    } cases[] = {
        {u"DE"_s, u"10115 und D-20095, DE 50667; 123456 1011"_s, u"10115|20095|50667"_s},
        {u"DE"_s, u"X-10115 a10115 10115a 10115-2 10115.5 #10115"_s, u""_s},
        {u"CH"_s, u"CH-8001 Zürich, 8002 Zürich"_s, u"8001|8002"_s},
        {u"CZ"_s, u"110 00 Praha, 11000 Praha"_s, u"110 00|11000"_s},
        {u"GB"_s, u"M1 1AE, W1A 0AX, EC1A1BB, cr2 6xh, M1 1Ae"_s, u"M1 1AE|W1A 0AX|EC1A1BB|cr2 6xh"_s},
        {u"US"_s, u"62704-1234 or 62704"_s, u"62704-1234|62704"_s},
        {u"PT"_s, u"1100-053 Lisboa, 1100 Lisboa"_s, u"1100-053|1100"_s},
        {u"LV"_s, u"LV-1010, 1011"_s, u"LV-1010|1011"_s},
        {u"AR"_s, u"C1425DKA, C1425, 1425"_s, u"C1425DKA|C1425|1425"_s},
        {u"IE"_s, u"D02 X285, D6W XY00"_s, u"D02 X285|D6W XY00"_s},
        {u""_s, u"K1A 0B1 SW1A 2AA 1016AZ 00-950 1100-053 01310-100 〒100-0001 100-0002 62704"_s,
         u"K1A 0B1|SW1A 2AA|1016AZ|00-950|1100-053|01310-100|100-0001"_s},
    };
    for (const auto& row : cases) {
        QStringList codes;
        for (const TextSpan& code : PostalCodesIn(row.Text, row.Region))
            codes << row.Text.sliced(code.Begin, code.End - code.Begin);
        EXPECT_EQ(codes.join(u'|').toStdString(), row.Codes.toStdString()) << row.Text.toStdString();
    }
}

TEST(Texts, NamesOfStatesAndCountriesAtTheEnd) {
    const struct {
        QString Region, Text;
        qsizetype Length;
    } states[] = {
        {u"US"_s, u"Springfield, IL"_s, 2},
        {u"US"_s, u"Springfield, Illinois"_s, 8},
        {u"US"_s, u"Raleigh NORTH CAROLINA"_s, 14},
        {u"US"_s, u"Springfield, il"_s, 0},
        {u"US"_s, u"Springfield"_s, 0},
        {u"CA"_s, u"Guelph ON"_s, 2},
        {u"IE"_s, u"Skerries, Co. Dublin"_s, 10},
        {u"IE"_s, u"Skerries, County Dublin"_s, 13},
        {u"DE"_s, u"Köln, NRW"_s, 0},
    };
    for (const auto& row : states)
        EXPECT_EQ(StateAtEnd(row.Region, row.Text), row.Length) << row.Text.toStdString();
    const struct {
        QString Text, Region;
    } countries[] = {
        {u"1000 Bruxelles, Belgique"_s, u"BE"_s},
        {u"Wien, ÖSTERREICH"_s, u"AT"_s},
        {u"San Diego, CA"_s, u""_s},
        {u"Leeds, UK"_s, u"GB"_s},
        {u"Leeds, United Kingdom"_s, u"GB"_s},
        {u"東京, 日本"_s, u"JP"_s},
        {u"Frankreichstraße"_s, u""_s},
    };
    for (const auto& row : countries) {
        QString region;
        CountryAtEnd(row.Text, region);
        EXPECT_EQ(region.toStdString(), row.Region.toStdString()) << row.Text.toStdString();
    }
    EXPECT_EQ(RegionOfCountryName(u"DE"), u"DE");
    EXPECT_EQ(RegionOfCountryName(u"de"), QString());
    EXPECT_EQ(RegionOfCountryName(u"ZZ"), QString());
}

TEST(Texts, PartsOfAnAddressInOneLine) {
    const struct {
        Lead Parts;
        QString Whole;
    } cases[] = {
        {{.Street = u"1 High St"_s, .City = u"London"_s, .PostalCode = u"SW9 9SL"_s}, u"1 High St, London SW9 9SL"_s},
        {{.Street = u"5 Quay"_s, .City = u"Dublin"_s, .PostalCode = u"D02 X285"_s}, u"5 Quay, Dublin D02 X285"_s},
        {{.Street = u"Ringweg 5"_s, .City = u"Köln"_s, .PostalCode = u"50667"_s}, u"Ringweg 5, 50667 Köln"_s},
        {{.Street = u"Iela 5"_s, .City = u"Rīga"_s, .PostalCode = u"LV-1010"_s}, u"Iela 5, LV-1010 Rīga"_s},
        {{.Street = u"1 Main St"_s, .City = u"Salem"_s, .State = u"OR"_s, .PostalCode = u"97301"_s},
         u"1 Main St, Salem, OR 97301"_s},
        {{.City = u"Salem"_s, .State = u"OR"_s}, u"Salem, OR"_s},
        {{.Street = u"1 Main St"_s}, u"1 Main St"_s},
        {{.PostalCode = u"50667"_s}, u"50667"_s},
    };
    for (const auto& row : cases)
        EXPECT_EQ(ComposedAddress(row.Parts).toStdString(), row.Whole.toStdString());
}

TEST(Texts, LinesAsAPageShowsThem) {
    const struct {
        QString Html, Lines;
    } cases[] = {
        {u"<p>a  b\n c<p>d"_s, u"a b c|d"_s},
        {u"<p><b>12345</b><b>Town</b>"_s, u"12345 Town"_s},
        {u"<p><b>Haupt</b>straße <b>(</b><i>x</i><b>)</b>"_s, u"Hauptstraße (x)"_s},
        {u"<p>a<br>b<script>c</script><i> d </i>e"_s, u"a|b d e"_s},
        {u"<p>a &nbsp; b\u200b"_s, u"a b"_s},
    };
    for (const auto& row : cases) {
        const PageTree page(row.Html);
        const PageLines lines(page);
        QStringList texts;
        for (const TextLine& line : lines.Lines)
            texts << lines.TextOf(line).toString();
        EXPECT_EQ(texts.join(u'|').toStdString(), row.Lines.toStdString()) << row.Html.toStdString();
    }
}

TEST(Texts, BlanksAreLevelledInCopiesAndInPlace) {
    const struct {
        QString Text, Level;
    } cases[] = {
        {u"a b"_s, u"a b"_s},
        {u" a  b\t\nc "_s, u"a b c"_s},
        {u"a "_s, u"a"_s},
        {u" "_s, u""_s},
        {u""_s, u""_s},
        {u"a\u00a0b"_s, u"a b"_s},
        {u"a\u200bb\u00adc"_s, u"abc"_s},
        {u"\u3000東 京\u3000"_s, u"東 京"_s},
        {u"a\u0001b"_s, u"a b"_s},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(WithLevelBlanks(row.Text), row.Level) << row.Text.toStdString();
        EXPECT_EQ(WithLevelBlanks(QStringView(row.Text)), row.Level) << row.Text.toStdString();
    }
}

} // namespace
} // namespace Brindle
