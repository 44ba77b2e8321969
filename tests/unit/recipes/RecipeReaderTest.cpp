#include "recipes/RecipeReader.h"

#include "PrintTo.h"
#include "recipes/RecipeFile.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString url = u"https://www.dir.example/pizza?page=2"_s;

Recipe RecipeOf(const QByteArray& rest) {
    return ReadRecipe("name = \"Dir\"\nhome = \"https://dir.example\"\n" + rest, u"test"_s);
}

TEST(RecipeReader, FieldsAreReadAsTheRecipeSays) {
    const struct {
        QByteArray Says;
        Field Column;
        QString Record;
        QString Expected;
    } cases[] = {
        {"Phone = 'b'", Field::Phone, u"<b> </b><b>416\n&nbsp;555 <i>0100</i><script>x</script></b>"_s,
         u"416 555 0100"_s},
        {"Phone = { selector = 'a', attribute = 'href' }", Field::Phone, u"<a href='tel:+1%20416'>call</a>"_s,
         u"+1 416"_s},
        {"Phone = { selector = ':scope', attribute = 'data-p', pattern = '^p(\\d+)' }", Field::Phone, u"<b>1</b>"_s,
         u"77"_s},
        {"Phone = { selector = 'b', pattern = '\\d{4,}' }", Field::Phone, u"<b>none</b><b>Tel. 5550100, 2</b>"_s,
         u"5550100"_s},
        {"Website = 'p'", Field::Website, u"<p><a href='//joes.example/#x'>web</a></p>"_s,
         u"https://joes.example/#x"_s},
        {"Website = 'a'", Field::Website, u"<a href='/out?u=https%3A%2F%2Fjoes.example%2Fx'>web</a>"_s,
         u"https://joes.example/x"_s},
        {"Website = 'a'", Field::Website, u"<a href='javascript:go()'>web</a><a href='ftp://x.example'>f</a>"_s, u""_s},
        {"\"Details Link\" = 'a'", Field::DetailsLink, u"<a href='/biz/1'>web</a>"_s,
         u"https://www.dir.example/biz/1"_s},
        {"Phone = 'b'", Field::Phone, u"<b>416 555 0100<br>416 555 0101</b>"_s, u"416 555 0100;416 555 0101"_s},
        {"Phone = 'b'", Field::Phone, u"<b>416 555 0100<br>day and night</b>"_s, u"416 555 0100 day and night"_s},
        {"\"Full Address\" = 'p'", Field::FullAddress, u"<p>Ringweg 5,<br>10115<br> Berlin</p>"_s,
         u"Ringweg 5, 10115 Berlin"_s},
        {"Email = { selector = 'a', attribute = 'href' }", Field::Email, u"<a href='mailto:a@b.example?x'>m</a>"_s,
         u"a@b.example"_s},
        {"Email = 'a'", Field::Email, u"<a href='mailto:a@b.example'>write</a>"_s, u"a@b.example"_s},
        {"Email = 'p'", Field::Email, u"<p>Mail: <i>a<i style='display: none'>nospam</i>@b.example</i></p>"_s,
         u"a@b.example"_s},
        {"Email = 'p'", Field::Email, u"<p>write</p><p>a [at] b [dot] example</p>"_s, u"a@b.example"_s},
        {"Website = 'p'", Field::Website, u"<p>Web: www.joes.example</p>"_s, u"http://www.joes.example"_s},
        {"Website = 'a'", Field::Website,
         u"<a href='https://maps.google.com/?q=1'>way</a><a href='/out/1'>www.joes.example</a>"_s,
         u"http://www.joes.example"_s},
        {"\"Full Address\" = 'p'", Field::FullAddress, u"<p>1 Main St,<br>Toronto<br> ON M5V 1A1</p>"_s,
         u"1 Main St, Toronto, ON M5V 1A1"_s},
        {"\"Full Address\" = { selector = 'i, u', join = true }", Field::FullAddress,
         u"<i>Ringweg 5</i> or <u>10115</u><u>Berlin</u>"_s, u"Ringweg 5, 10115 Berlin"_s},
        {"City = 'dt:has-text(\"Town\") + dd'", Field::City, u"<dl><dt>Town<dd>Ulm<dt>x<dd>y</dl>"_s, u"Ulm"_s},
    };
    for (const auto& row : cases) {
        const RecipeReader reader(
            RecipeOf("[list]\nrecords = 'li'\n[fields]\n\"Business Name\" = 'h2'\n" + row.Says + "\n"));
        const RecipeReading reading =
            reader.Read(PageTree(u"<ul><li data-p='p77'><h2>Joe</h2>"_s + row.Record + u"<li>no name</ul>"_s), url);
        ASSERT_EQ(reading.Records.size(), 1U) << row.Says.constData();
        EXPECT_EQ(reading.Records[0].Fields.At(int(row.Column)), row.Expected) << row.Says.constData();
    }
}

TEST(RecipeReader, AFullAddressIsTakenApartWhereTheRecipeSaysSo) {
    const struct {
        QByteArray Country;
        QString Address;
        QString Expected; // street, postal code, city
    } cases[] = {
        {"DE", u"Hauptstr. 1<br>50667 Köln"_s, u"Hauptstr. 1/50667/Köln"_s},
        {"Canada", u"1 Main St, Toronto, ON M5V 1A1"_s, u"1 Main St/M5V 1A1/Toronto"_s},
        {"DE", u"in the old town"_s, u"//"_s},
    };
    for (const auto& row : cases)
        for (const bool split : {false, true}) {
            const RecipeReader reader(RecipeOf("country = \"" + row.Country +
                                               "\"\n[list]\nrecords = 'li'\n[fields]\n\"Business Name\" = "
                                               "'b'\n\"Full Address\" = { selector = 'p'" +
                                               (split ? ", split_address = true" : "") + " }\n"));
            const RecipeReading reading = reader.Read(PageTree(u"<li><b>A</b><p>"_s + row.Address + u"</p>"_s), url);
            ASSERT_EQ(reading.Records.size(), 1U);
            const Lead& lead = reading.Records[0].Fields;
            EXPECT_EQ(QStringList({lead.Street, lead.PostalCode, lead.City}).join(u'/'),
                      split ? row.Expected : u"//"_s);
        }
}

TEST(RecipeReader, RecordsWithinRecordsAreOneAndThoseOfStructuredDataAreAddedTo) {
    const RecipeReader outer(RecipeOf("[list]\nrecords = 'div'\n[fields]\n\"Business Name\" = 'b'\n"));
    EXPECT_EQ(outer.Read(PageTree(u"<div><b>A</b><div><b>B</b></div></div><div><b>C</b></div>"_s), url).Records.size(),
              2U);

    const RecipeReader flat(RecipeOf(
        "[list]\nrecords = 'dt'\nflat = true\n[fields]\n\"Business Name\" = 'dt'\nPhone = 'dd.tel'\nCity = 'dd i'\n"));
    const RecipeReading rows =
        flat.Read(PageTree(u"<dl><dt>A<dd>x<dd class=tel>1<dt>B<dd><i>Ulm</i><dl><dt>in B</dl><dt>C<dd "
                           u"class=tel>3</dl><p class=tel>4</p><dl><dt>D</dl>"_s),
                  url);
    QStringList read;
    for (const PageRecord& record : rows.Records)
        read.append(record.Fields.Name + u'/' + record.Fields.Phone + u'/' + record.Fields.City);
    EXPECT_EQ(read.join(u' '), u"A/1/ B//Ulm C/3/ D//"_s);

    const RecipeReader structured(RecipeOf("[list]\nrecords = 'structured'\n[fields]\nPhone = 'i'\n"));
    const RecipeReading reading = structured.Read(
        PageTree(
            u"<script type='application/ld+json'>{\"@type\":\"Organization\",\"name\":\"Dir\",\"url\":\"/\"}</script>"
            u"<p itemscope itemtype='http://schema.org/Hotel'><b itemprop=name>A</b><i>555-0100</i></p>"
            u"<p itemscope itemtype='http://schema.org/Hotel'><b itemprop=name>B</b></p>"_s),
        url);
    ASSERT_EQ(reading.Records.size(), 2U);
    EXPECT_EQ(reading.Records[0].Fields.Phone, u"555-0100");
    EXPECT_EQ(reading.Counts.Filled[size_t(Field::BusinessName)], 2);
}

TEST(RecipeReader, TheNextPageIsOnTheSameSiteAndAnotherOne) {
    const struct {
        QByteArray Next;
        QString Html;
        QString Expected;
    } cases[] = {
        {"next = 'a.n'", u"<a class=n href='?page=2#x'>x</a><a class=n href='?page=3'>next</a>"_s,
         u"https://www.dir.example/pizza?page=3"_s},
        {"next = 'a.n'", u"<a class=n href='https://other.example/?page=3'>next</a>"_s, u""_s},
        {"next = { selector = 'button', attribute = 'data-to' }", u"<button data-to='/p3'>more</button>"_s,
         u"https://www.dir.example/p3"_s},
        {"next = 'auto'", u"<a href='?page=1'>1</a> <b>2</b> <a rel=next href='?page=3'>Next</a>"_s,
         u"https://www.dir.example/pizza?page=3"_s},
        {"", u"<a rel=next href='?page=3'>Next</a>"_s, u""_s},
    };
    for (const auto& row : cases) {
        const RecipeReader reader(RecipeOf(row.Next + "\n[list]\nrecords = 'li'\n[fields]\n\"Business Name\" = 'b'\n"));
        EXPECT_EQ(reader.Read(PageTree(row.Html), url).Next, row.Expected) << row.Html.toStdString();
    }
}

TEST(RecipeReader, DetailsComeFromRowsOrFromStructuredData) {
    const PageTree page(
        u"<h1>Joe</h1><p class=fax>555-0199</p><script type='application/ld+json'>[{\"@type\":\"Hotel\","
        u"\"name\":\"Joe\",\"url\":\"/"
        u"other\",\"telephone\":\"555-0100\",\"email\":\"j@x.example\"},{\"@type\":\"Hotel\",\"name\":"
        u"\"Other\",\"telephone\":\"1\"}]</script>"_s);
    const QByteArray list = "[list]\nrecords = 'li'\n[fields]\n\"Business Name\" = 'b'\n[details]\nlink = 'a'\n";
    Lead lead{.Name = u"JOE"_s, .Phone = u"555-0111"_s};
    QStringList problems;
    RecipeReader(RecipeOf(list)).ReadDetails(page, url, lead, problems);
    EXPECT_EQ(lead.Email, u"j@x.example");
    EXPECT_EQ(lead.DetailsLink, QString()) << "that is the list's to say";
    EXPECT_EQ(lead.Phone, u"555-0111");
    RecipeReader(RecipeOf(list + "[details.fields]\nFax = '.fax'\nPhone = '.none'\n"))
        .ReadDetails(page, url, lead, problems);
    EXPECT_EQ(lead.Fax, u"555-0199");
    EXPECT_EQ(lead.Phone, u"555-0111");
    Lead stranger{.Name = u"Ann"_s}; // the page is about others
    RecipeReader(RecipeOf(list)).ReadDetails(page, url, stranger, problems);
    EXPECT_EQ(stranger.Email, QString());
    EXPECT_TRUE(problems.isEmpty());
}

TEST(RecipeReader, APatternThatTakesTooLongLeavesItsFieldEmptyAndSaysSo) {
    const RecipeReader reader(
        RecipeOf("[list]\nrecords = 'li'\n[fields]\n\"Business Name\" = 'b'\nPhone = { selector = 'i', "
                 "pattern = '^(?:(?:1+)+)+$' }\n"));
    const PageTree page(u"<li><b>A</b><i>"_s + QString(1000, u'1') + u"x</i><li><b>B</b><i>111</i>"_s);
    QElapsedTimer timer;
    timer.start();
    const RecipeReading reading = reader.Read(page, url);
    EXPECT_LT(timer.elapsed(), 2000);
    ASSERT_EQ(reading.Records.size(), 2U);
    EXPECT_EQ(reading.Records[0].Fields.Phone, u"");
    EXPECT_EQ(reading.Records[1].Fields.Phone, u"111");
    EXPECT_EQ(reading.Problems.size(), 1);
}

TEST(RecipeReader, DriftIsWhatChanceDoesNotExplain) {
    const auto counts = [](int records, int names, int phones) {
        RecipeCounts made{.Records = records};
        made.Filled[size_t(Field::BusinessName)] = names;
        made.Filled[size_t(Field::Phone)] = phones;
        return made;
    };
    const struct {
        RecipeCounts Taught;
        RecipeCounts Seen;
        QString Expected;
    } cases[] = {
        {counts(25, 25, 24), counts(25, 25, 2), u"phone: filled in 2 of 25, was 24 of 25"_s},
        {counts(25, 25, 24), counts(100, 100, 60), u""_s},
        {counts(25, 25, 24), counts(1, 1, 0), u""_s},
        {counts(25, 25, 1), counts(25, 25, 0), u""_s},
        {counts(25, 25, 24), counts(25, 25, 23), u""_s},
        {counts(25, 25, 24), counts(250, 250, 20), u"phone: filled in 20 of 250, was 24 of 25"_s},
        {counts(25, 25, 12), counts(25, 25, 25), u""_s},
        {counts(2, 2, 2), counts(25, 25, 0), u"phone: filled in 0 of 25, was 2 of 2"_s},
        {counts(25, 25, 24), counts(25, 3, 3),
         u"business name: filled in 3 of 25, was 25 of 25; phone: filled in 3 of 25, was 24 of 25"_s},
        {counts(25, 25, 24), counts(0, 0, 0), u"no records, was 25"_s},
        {counts(0, 0, 0), counts(25, 25, 0), u""_s},
    };
    for (const auto& row : cases)
        EXPECT_EQ(DriftOf(row.Taught, row.Seen).join(u"; "_s), row.Expected);
}

} // namespace
} // namespace Brindle
