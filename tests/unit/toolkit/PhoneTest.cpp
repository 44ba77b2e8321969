#include "toolkit/Phone.h"

#include <QStringList>

#include <ctime>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle {
namespace {

struct Reading {
    QStringView Text;
    QStringView Region;
    const char* E164; ///< empty: no number
    const char* Extension = "";
};

TEST(ReadPhone, ReadsWhateverWritingPeopleUse) {
    const Reading cases[] = {
        {u"+49 (0)30 123456", u"", "+4930123456"},
        {u"0049 (0) 30 / 123456", u"DE", "+4930123456"},
        {u"0049 30 123456", u"", "+4930123456"},
        {u"030/12 34 56", u"DE", "+4930123456"},
        {u"030-123456 Durchwahl 17", u"DE", "+4930123456", "17"},
        {u"Tel.: 030.123456 (Mo-Fr 9-17 Uhr)", u"DE", "+4930123456"},
        {u"(416) 555-0100 ext 5", u"CA", "+14165550100", "5"},
        {u"416.555.0100 x204", u"US", "+14165550100", "204"},
        {u"1-800-FLOWERS", u"US", "+18003569377"},
        {u"1-800-555-0199", u"CA", "+18005550199"},
        {u"011 44 20 7946 0018", u"US", "+442079460018"},
        {u"+44\u00A0(0)20\u00A07946\u00A00018", u"", "+442079460018"},
        {u"０３－５５５５－０１２３", u"JP", "+81355550123"},
        {u"+39 06 698 1234", u"DE", "+39066981234"}, // the zero belongs to the number
        {u"06 698 1234", u"IT", "+39066981234"},
        {u"01 23 45 67 89", u"FR", "+33123456789"},
        {u"91 555 01 00", u"ES", "+34915550100"},
        {u"(22) 555 01 00", u"PL", "+48225550100"},
        {u"8 (495) 123-45-67", u"RU", "+74951234567"},
        {u"06 1 234 5678", u"HU", "+3612345678"},
        {u"011 15 1234-5678", u"AR", "+5491112345678"}, // a mobile, as dialled at home
        {u"0 21 11 2345 6789", u"BR", "+551123456789"}, // with a carrier's digits
        {u"44 20 7946 0018", u"GB", "+442079460018"},
        {u"+221 33 123 45 67", u"", "+221331234567"}, // a country whose plan is unknown
        {u"555-0199", u"BS", "+12425550199"},         // an island with one area code
        {u"1-359-3700", u"BS", "+12423593700"},
        {u"555-0199", u"SX", "+17215550199"},
        {u"455-0199", u"SX", ""}, // exchanges begin with 5 there
        {u"8 029 123 45 67", u"BY", "+375291234567"},
        {u"8 820 123 45 67", u"BY", "+3758201234567"}, // of a service
        {u"05 601 2345678", u"CO", "+576012345678"},   // with a carrier's digit
        {u"001 44 20 7946 0018", u"TH", "+442079460018"},
        {u"0046 821 8780", u"KR", "+820468218780"},  // no carrier for abroad has a 4
        {u"0062 21 8402913", u"ID", "+62218402913"}, // as the rest of the world dials it
        {u"+24 936000", u"", ""},                    // too short for the Sudan
        {u"+677 20111", u"", "+67720111"},
        {u"(416) 555-0100", u"", ""}, // whose?
        {u"555-0100", u"US", ""},     // no area code
        {u"+999 123 456 789", u"", ""},
        {u"80331 München", u"DE", ""},
        {u"030 123456, 030 123457", u"DE", ""},
        {u"call", u"US", ""},
        {u"", u"US", ""},
        {u"+", u"US", ""},
        {u"123456789012345678901234567890", u"DE", ""},
    };
    for (const Reading& c : cases) {
        const std::optional<PhoneNumber> number = ReadPhone(c.Text, c.Region);
        EXPECT_EQ(number ? number->E164.toStdString() : "", c.E164) << c.Text.toUtf8().constData();
        EXPECT_EQ(number ? number->Extension.toStdString() : "", c.Extension) << c.Text.toUtf8().constData();
    }
}

TEST(ReadPhone, SaysHowFarANumberKeepsToThePlanAndWhoseItIs) {
    const auto verdict = [](QStringView text, QStringView region) { return ReadPhone(text, region)->Verdict; };
    EXPECT_EQ(verdict(u"+1 416 555 0100", u""), PhoneVerdict::Valid);
    EXPECT_EQ(verdict(u"+1 116 555 0100", u""), PhoneVerdict::Possible);
    EXPECT_EQ(verdict(u"099 123 45 67", u"CH"), PhoneVerdict::Possible);
    EXPECT_EQ(verdict(u"242-359-3700", u"BS"), PhoneVerdict::Valid);
    EXPECT_EQ(verdict(u"242-222-3700", u"BS"), PhoneVerdict::Possible); // an exchange that is not there
    EXPECT_EQ(verdict(u"0661 12 34 56", u"MA"), PhoneVerdict::Valid);
    EXPECT_EQ(verdict(u"0501 12 34 56", u"MA"), PhoneVerdict::Possible); // not given out
    EXPECT_EQ(ReadPhone(u"+14165550100", u"US")->Region, u"CA");
    EXPECT_EQ(ReadPhone(u"+17875550100", u"")->Region, u"PR");
    EXPECT_EQ(ReadPhone(u"+77012345678", u"")->Region, u"KZ");
    EXPECT_EQ(ReadPhone(u"+4930123456", u"FR")->CountryCode, 49);
}

QString Found(QStringView text, QStringView region) {
    QStringList numbers;
    for (const FoundPhone& phone : FindPhones(text, region)) {
        EXPECT_LT(phone.Begin, phone.End);
        EXPECT_EQ(ReadPhone(text.sliced(phone.Begin, phone.End - phone.Begin), region), phone.Number)
            << text.toUtf8().constData();
        numbers.append(phone.Number.E164);
    }
    return numbers.join(u' ');
}

TEST(FindPhones, FindsEachOfSeveral) {
    const struct {
        QStringView Text;
        QStringView Region;
        QStringView Numbers;
    } cases[] = {
        {u"Tel. 030 123456 oder 0171 1234567", u"DE", u"+4930123456 +491711234567"},
        {u"030 123456; 030 123457, 030/123458", u"DE", u"+4930123456 +4930123457 +4930123458"},
        {u"030/123456 / 0171/1234567", u"DE", u"+4930123456 +491711234567"},
        {u"06 123 4567 - 06 765 4321", u"IT", u"+39061234567 +39067654321"},
        {u"416-555-0100/416-555-0101", u"CA", u"+14165550100 +14165550101"},
        {u"+43 1 2345678+49 30 123456", u"", u"+4312345678 +4930123456"},
        {u"Hauptstraße 12, 10115 Berlin, Tel 030 123456", u"DE", u"+4930123456"},
        {u"12 Main St, New York, NY 10001 (212) 555-0100", u"US", u"+12125550100"},
        {u"New York, NY 10001 212-555-0100", u"US", u"+12125550100"},
        {u"Call 1-800-FLOWERS today", u"US", u"+18003569377"},
        {u"(416) 555-0100 ext 5, fax (416) 555-0101", u"CA", u"+14165550100 +14165550101"},
        {u"ul. Prosta 5, 00-838 Warszawa, tel. 22 555 01 00", u"PL", u"+48225550100"},
        {u"〒100-0001 東京都千代田区1-2-3 電話03-5555-0123", u"JP", u"+81355550123"},
        {u"T: 091 123 45 67 F: 091 123 45 68", u"CH", u"+41911234567 +41911234568"},
        {u"915 55 01 00", u"ES", u"+34915550100"},
        {u"915550100", u"ES", u"+34915550100"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Found(c.Text, c.Region), c.Numbers) << c.Text.toUtf8().constData();
}

// What stands on the pages of directories besides phones.
TEST(FindPhones, TakesNothingElseForANumber) {
    const struct {
        QStringView Text;
        QStringView Region;
    } cases[] = {
        {u"21.11.2026", u"DE"},
        {u"2026-11-21 18:30", u"DE"},
        {u"Seit 1998 - 2005", u"DE"},
        {u"Mo-Fr 09:00-18:30, Sa 10.00-14.00", u"DE"},
        {u"08.00 - 12.00 14.00 - 18.00", u"IT"},
        {u"9-12 14-18", u"ES"},
        {u"0.99 EUR, 1.299,00 €, $1,250.00, 912 345 678 €", u"ES"},
        {u"43.653226, -79.383184", u"US"},
        {u"52.520008 13.404954", u"DE"},
        {u"Berlin 10115, 80331 München", u"DE"},
        {u"New York, NY 10001-2345", u"US"},
        {u"00-950 Warszawa, 12-345 Nowe", u"PL"},
        {u"ul. Prosta 12/14 00-838 Warszawa", u"PL"},
        {u"VAT 212 555 0100, HRB 030123456, ID: 4165550100", u"US"},
        {u"order number a2125550100", u"US"},
        {u"item 2125550100 of 9999", u"US"},
        {u"555-0100 and 4711", u"US"},
        {u"12,345 reviews, 4.5 of 5 (212)", u"US"},
        {u"/id/30123456789?page=0301234567", u"DE"},
        {u"030 123456", u""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Found(c.Text, c.Region), QString()) << c.Text.toUtf8().constData();
}

TEST(FindPhones, CostsTheSamePerCharacterInALongText) {
    const auto cost = [](const QString& part, int times) {
        const QString text = part.repeated(times);
        const std::clock_t start = std::clock();
        const std::size_t found = FindPhones(text, u"DE").size();
        return std::pair(found, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    };
    for (const QString& part : {u"1"_s, u"1 "_s, u"(030"_s, u"+"_s, u"/ 0"_s, u"Tel 030 123456 x "_s}) {
        const auto [few, base] = cost(part, 2000);
        const auto [many, spent] = cost(part, 40000);
        EXPECT_LE(few, many);
        EXPECT_LT(spent, 100 * base + 0.1) << part.toStdString();
    }
}

TEST(PhoneRegions, KnowTheirCodes) {
    EXPECT_GE(PhoneRegions().size(), 60u);
    for (const QStringView region : PhoneRegions()) {
        EXPECT_EQ(region.size(), 2);
        const int code = CallingCodeOf(region);
        EXPECT_GT(code, 0);
        EXPECT_EQ(RegionOfCallingCode(code), code == 1 || code == 7 ? QStringView() : region);
    }
    EXPECT_EQ(CallingCodeOf(u"SN"), 221);
    EXPECT_EQ(RegionOfCallingCode(999), QString());
}

} // namespace
} // namespace Brindle
