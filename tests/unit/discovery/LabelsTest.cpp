#include "discovery/Labels.h"

#include "PrintTo.h"
#include "discovery/Annotations.h"
#include "discovery/NextPage.h"
#include "discovery/RecordsMerge.h"
#include "discovery/SchemaKinds.h"
#include "discovery/StructuredLinks.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

constexpr HintSet Of(Hint hint) {
    return static_cast<HintSet>(hint);
}

TEST(Labels, NamesOfElementsSayWhatTheyHold) {
    const struct {
        QStringView Name;
        HintSet Says;
        HintSet Not;
    } cases[] = {
        {u"listing-phoneNumber", Hint::Business | Hint::Phone, Of(Hint::Fax)},
        {u"addressLocality", Of(Hint::City), 0},
        {u"TEL2", Of(Hint::Phone), 0},
        {u"postal-code", Of(Hint::PostalCode), 0},
        {u"Company_Name", Of(Hint::Name), 0},
        {u"/phone/img", 0, Of(Hint::Phone)}, // an address
        {u"hotelier", 0, Of(Hint::Business)},
        {u"headphones", 0, Of(Hint::Phone)},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(HintsOfName(row.Name) & row.Says, row.Says) << row.Name.toString().toStdString();
        EXPECT_EQ(HintsOfName(row.Name) & row.Not, 0U) << row.Name.toString().toStdString();
    }
}

TEST(Labels, TextsAreLabelsInManyLanguagesAndWritings) {
    const struct {
        QStringView Text;
        HintSet Expected;
    } cases[] = {
        {u"Tel.:", Of(Hint::Phone)},
        {u"  TÉLÉPHONE : ", Of(Hint::Phone)},
        {u"電話番号", Of(Hint::Phone)},
        {u"Τηλέφωνο:", Of(Hint::Phone)},
        {u"E-Mail", Of(Hint::Mail)},
        {u"Web\u00A0 site", Of(Hint::Website)},
        {u"Öffnungszeiten", Of(Hint::Hours)},
        {u"telephones of the town", 0},
        {u"", 0},
        {u":-)", 0},
        {u"a text that is far too long to be a label of anything", 0},
    };
    for (const auto& row : cases)
        EXPECT_EQ(HintsOfLabel(row.Text), row.Expected) << row.Text.toString().toStdString();
}

TEST(Labels, TheLabelAtTheBeginningEndsWhereItsValueBegins) {
    const struct {
        QStringView Text;
        HintSet Hints;
        QStringView Value;
    } cases[] = {
        {u"Tel.: 030 123", Of(Hint::Phone), u"030 123"},
        {u"Fax 030 124", Of(Hint::Fax), u"030 124"},
        {u"電話：03-1234", Of(Hint::Phone), u"03-1234"},
        {u"Adresse – Hauptstr. 1", Of(Hint::Address), u"Hauptstr. 1"},
        {u"Open: 9-17 | Tel: 1", Of(Hint::Hours), u"9-17 | Tel: 1"},
        {u"Rooms: 12", 0, u"Rooms: 12"},
        {u"Hotel 66", 0, u"Hotel 66"},
        {u":", 0, u":"},
    };
    for (const auto& row : cases) {
        const LeadingLabel label = LabelAtBegin(row.Text);
        EXPECT_EQ(label.Hints, row.Hints) << row.Text.toString().toStdString();
        EXPECT_EQ(row.Text.sliced(label.Length), row.Value);
    }
}

TEST(Labels, BareWordsAreTheSameWithAndWithoutMemory) {
    const struct {
        QStringView Text;
        QStringView Expected;
    } cases[] = {
        {u"Next \u00BB", u"next"},
        {u"[ Mehr  Infos ]", u"mehr infos"},
        {u"\u00C9T\u00C9 \u00D7 \u00DFA", u"été × ßa"},
        {u"\u0130zmir", u"i\u0307zmir"},
        {u"A\tB\u00A0C", u"a b c"},
        {u"\u2014", u""},
        {u"詳細 »", u"詳細"},
        {u"", u""},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(BareWords(row.Text), row.Expected);
        EXPECT_EQ(BareView(row.Text).View(), row.Expected);
    }
    const QString longText = QString(60, u'A');
    EXPECT_EQ(BareView(longText).View(), longText.toLower());
}

TEST(Labels, WordsTellWhatAPageIsAbout) {
    EXPECT_TRUE(NamesBusinesses(u"restaurants in cork"));
    EXPECT_TRUE(NamesBusinesses(u"東京の歯科"));
    EXPECT_FALSE(NamesBusinesses(u"barbara's diary"));
    EXPECT_TRUE(NamesOtherThings(u"recipes of the week"));
    EXPECT_FALSE(NamesOtherThings(u"joe's plumbing"));
    EXPECT_TRUE(NamesJobs(u"electrician (m/f/d)"));
    EXPECT_FALSE(NamesJobs(u"jobst & sons"));
    EXPECT_TRUE(IsButtonText(u"read more"));
    EXPECT_FALSE(IsButtonText(u"read more books"));
}

TEST(Annotations, DatesAndPricesInALine) {
    const struct {
        QStringView Text;
        bool Date;
        bool Price;
    } cases[] = {
        {u"24.12.2023", true, false},
        {u"since 2023-12-24, 9:00", true, false},
        {u"2023年12月24日", true, false},
        {u"3 avril", true, false},
        {u"12/24/23", true, false},
        {u"Tel. 030/12/345678", false, false},
        {u"Version 1.2.3.4", false, false},
        {u"45.13.2023.1", false, false},
        {u"12 Marchmont Road", false, false},
        {u"from $ 12", false, true},
        {u"12,50 \u20AC", false, true},
        {u"from EUR 12", false, true},
        {u"12 Euro Street", false, false},
        {u"$$ cheap", false, false},
        {u"120 zł", false, true},
        {u"K9 Ftness 3", false, false},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(HasDate(row.Text), row.Date) << row.Text.toString().toStdString();
        EXPECT_EQ(HasPrice(row.Text), row.Price) << row.Text.toString().toStdString();
    }
}

TEST(Annotations, MailAddressesAsPagesWriteThem) {
    const struct {
        QStringView Text;
        QString Expected;
    } cases[] = {
        {u"write to joe@joes.example.", u"joe@joes.example"_s},
        {u"joe [at] joes [dot] example", u"joe@joes.example"_s},
        {u"joe(AT)joes.example", u"joe@joes.example"_s},
        {u"a@b.example, a@b.example; c@d.example", u"a@b.example c@d.example"_s},
        {u"logo@2x.png", u""_s},
        {u"bootstrap@5.3.0", u""_s},
        {u"@joe on the net", u""_s},
        {u"joe@localhost", u""_s},
    };
    for (const auto& row : cases)
        EXPECT_EQ(MailsIn(row.Text).join(u' '), row.Expected) << row.Text.toString().toStdString();
    EXPECT_EQ(DecodedMail(u"42282d2702282d27316c273a232f322e27"), u"joe@joes.example");
    EXPECT_EQ(DecodedMail(u"282d2702282d27316c273a232f322e27"), u""); // without its first byte
}

TEST(SchemaKinds, TypesTellTheSortOfAnItem) {
    EXPECT_EQ(KindOf({u"http://schema.org/Hotel"_s}), SchemaKind::Business);
    EXPECT_EQ(KindOf({u"schema:autorepair"_s}), SchemaKind::Business);
    EXPECT_EQ(KindOf({u"Person"_s}), SchemaKind::Person);
    EXPECT_EQ(KindOf({u"Person"_s, u"Dentist"_s}), SchemaKind::Business);
    EXPECT_EQ(KindOf({u"ItemList"_s}), SchemaKind::List);
    EXPECT_EQ(KindOf({u"ListItem"_s}), SchemaKind::ListEntry);
    EXPECT_EQ(KindOf({u"BreadcrumbList"_s}), SchemaKind::Trail);
    EXPECT_EQ(KindOf({u"NewsArticle"_s}), SchemaKind::Other);
    EXPECT_EQ(LocalName(u"http://schema.org/Hotel"), u"Hotel");
    EXPECT_EQ(TradeOf({u"LocalBusiness"_s}), u"");
    EXPECT_EQ(TradeOf({u"AutoRepair"_s}), u"Auto Repair");
    EXPECT_EQ(MeaningOf(u"fax_number"), SchemaProperty::Fax);
    EXPECT_EQ(MeaningOf(u"schema:streetAddress"), SchemaProperty::Street);
    EXPECT_EQ(MeaningOf(u"sameAs"), SchemaProperty::SameAs);
    EXPECT_EQ(MeaningOf(u"colour"), SchemaProperty::None);
}

TEST(Structured, AddressesOfOneSite) {
    const struct {
        QStringView One;
        QStringView Other;
        bool Same;
    } cases[] = {
        {u"https://www.dir.example/a", u"http://dir.example/b?c", true},
        {u"https://m.dir.co.uk", u"https://DIR.co.uk/", true},
        {u"https://dir.example", u"https://mydir.example", false},
        {u"https://a.co.uk", u"https://b.co.uk", false},
        {u"http://127.0.0.1:81/", u"http://127.0.0.1:82/", false},
        {u"http://127.0.0.1:81/", u"http://127.0.0.1:81/x", true},
        {u"mailto:a@dir.example", u"https://dir.example", false},
    };
    for (const auto& row : cases)
        EXPECT_EQ(IsSameSite(row.One, row.Other), row.Same) << row.Other.toString().toStdString();
}

TEST(Structured, PrefixesAndResourcesOfRdfa) {
    const PageTree page(
        u"<html prefix='s: https://schema.org/'><body><div typeof='s:Hotel' resource='/biz/1'><b "
        u"property='s:name'>Inn</b><i property='s:telephone'>416-555-0100</i></div><p vocab='http://other.example/' "
        u"typeof='Thing'><b property=name>None</b></p></body></html>"_s);
    const auto records = StructuredRecords(page, u"https://www.dir.example/"_s);
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].Fields.Name, u"Inn");
    EXPECT_EQ(records[0].Fields.Phone, u"416-555-0100");
}

TEST(RecordsMerge, StructuredDataCompletesTheRecordsItNames) {
    const PageTree page(u"<p>A</p><p>B</p><p>C</p>"_s);
    RecordsReading list;
    for (const QString& name : {u"Joe’s Pizza"_s, u"Anna Bakery"_s, u"Kim Diner"_s})
        list.Records.push_back({Lead{.Name = name}, 0, 0});
    std::vector<StructuredRecord> structured;
    for (const QString& name : {u"Anna Bakery"_s, u"Kim Diner"_s}) {
        StructuredRecord record;
        record.Fields.Name = name;
        record.Fields.Phone = u"416-555-0100"_s;
        structured.push_back(record);
    }
    const RecordsMerge merge(page, structured);
    EXPECT_NEAR(merge.WitnessFor(list), 2.0 / 3, .01);
    list.Records[2].Fields.Phone = u"416-555-0199"_s;
    merge.AddTo(list);
    ASSERT_EQ(list.Records.size(), 3U);
    EXPECT_EQ(list.Records[0].Fields.Phone, u"");
    EXPECT_EQ(list.Records[1].Fields.Phone, u"416-555-0100");
    EXPECT_EQ(RecordsMerge(page, {}).WitnessFor(list), 0);
}

TEST(RecordsMerge, SeveralBusinessesInOneRecordAreSeveralAndTheSameOneTwiceIsOne) {
    const PageTree page(u"<ul><li><p>A</p><p>B</p></li><li>C</li></ul>"_s);
    std::vector<NodeIndex> items;
    for (NodeIndex node = 0; node < page.Count(); ++node)
        if (page.Is(node, u"li") || page.Is(node, u"p"))
            items.push_back(node);
    const auto namesAfter = [&](const QString& second) {
        RecordsReading list;
        list.Records = {{Lead{.Category = u"Pizza"_s, .Name = u"Hall"_s}, items[0], page.End(items[0])},
                        {Lead{.Name = u"Kim"_s}, items[3], page.End(items[3])}};
        std::vector<StructuredRecord> structured(2);
        structured[0].Fields = Lead{.Name = u"Anna"_s, .Phone = u"416-555-0100"_s};
        structured[1].Fields = Lead{.Name = second, .Phone = u"416-555-0100"_s};
        structured[0].Node = items[1];
        structured[1].Node = items[2];
        const RecordsMerge merge(page, structured);
        merge.WitnessFor(list);
        merge.AddTo(list);
        QStringList names;
        for (const PageRecord& record : list.Records)
            names << record.Fields.Name + u'/' + record.Fields.Category;
        return names.join(u' ').toStdString();
    };
    EXPECT_EQ(namesAfter(u"Bert"_s), "Anna/Pizza Bert/Pizza Kim/");
    EXPECT_EQ(namesAfter(u"ANNA"_s), "ANNA/Pizza Kim/");
}

TEST(RecordsMerge, StructuredDataAloneMakesLeadsOfBusinessesThatCanBeReached) {
    const PageTree page(u"<p>A</p>"_s);
    const auto count = [&](int persons, int businesses, bool phones) {
        std::vector<StructuredRecord> structured(static_cast<size_t>(persons + businesses));
        for (size_t i = 0; i < structured.size(); ++i) {
            structured[i].Types = {i < static_cast<size_t>(persons) ? u"Person"_s : u"Plumber"_s};
            structured[i].Fields.Name = u"Name %1"_s.arg(i);
            structured[i].Fields.Phone = phones ? u"416-555-010%1"_s.arg(i) : QString();
        }
        return RecordsMerge(page, structured).Alone().size();
    };
    EXPECT_EQ(count(0, 3, true), 3U);
    EXPECT_EQ(count(1, 3, true), 4U);
    EXPECT_EQ(count(2, 2, true), 0U); // a team
    EXPECT_EQ(count(0, 3, false), 0U);
    EXPECT_EQ(count(0, 1, true), 0U); // who is behind the page
}

} // namespace
} // namespace Brindle
