#include "adapters/Trovanumeri.h"

#include "AdapterSample.h"
#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

namespace {

QString Listing(const QString& link, const QString& name, const QStringList& cells) {
    QString text =
        u"<tr><td class=\"name\"><a style=\"font-size: 20px;\" href=\""_s + link + u"\">" + name + u"</a></td>";
    for (const QString& cell : cells)
        text += u"<td>" + cell + u"</td>";
    return text + u"</tr>\n";
}

QString Mail(const QString& text) {
    return u"<td class=\"mail\">"_s + text + u"</td>";
}

} // namespace

AdapterSample SampleOfTrovanumeri() {
    AdapterSample sample;
    sample.Title = u"Trovanumeri"_s;
    sample.Site = SiteCode::Trovanumeri;
    sample.Head = u"<body><p>Risultati <b>Ricerca Bar <b>Milano</b></p>\n"_s;
    const QString base = u"http://details.test"_s;
    sample.Listings = {
        Listing(u"/dettagli?a=1&amp;b= 2"_s, u"Bar&nbsp;<b>Uno</b>"_s,
                {u"20097 San Donato (MI)"_s, u"Tel: 02 1"_s, u"Via Po 1"_s}) +
            Mail(u"uno@b.test"_s),
        Listing(u"/dettagli/2"_s, u"Due"_s, {u"Roma (RM)"_s, u"Tel:06 1"_s, u"Via Po 2"_s}) + Mail(u"nessuna"_s),
        Listing(u"/dettagli/3"_s, u"Tre"_s, {u"00100"_s, {}, {}}) + Mail({}),
    };
    sample.Tail = u"Copyright</body>"_s;
    sample.ListingMarker = u"font-size: 20px;"_s;
    sample.CountsExtracted = true;
    const auto map = [](const QString& query) -> QString { return u"http://maps.test/maps?q="_s + query; };
    sample.Leads = {
        {.Category = u"Bar Milano"_s,
         .Name = u"BarUno"_s,
         .FullAddress = u"Via Po 1 20097 San Donato (MI)"_s,
         .Street = u"Via Po 1"_s,
         .City = u"San Donato"_s,
         .State = u"MI"_s,
         .PostalCode = u"20097"_s,
         .Country = u"Italy"_s,
         .Phone = u" 02 1"_s,
         .Email = u"uno@b.test"_s,
         .MapLink = map(u"Via+Po+1+20097+San+Donato+(MI),Italy"_s),
         .DetailsLink = base + u"/dettagli?a=1&b=2"},
        {.Category = u"Bar Milano"_s,
         .Name = u"Due"_s,
         .FullAddress = u"Via Po 2 (RM)"_s, // a first word that is no postal code is lost
         .Street = u"Via Po 2"_s,
         .State = u"RM"_s,
         .Country = u"Italy"_s,
         .Phone = u"06 1"_s,
         .MapLink = map(u"Via+Po+2+(RM),Italy"_s),
         .DetailsLink = base + u"/dettagli/2"},
        {.Category = u"Bar Milano"_s,
         .Name = u"Tre"_s,
         .FullAddress = u"00100"_s,
         .PostalCode = u"00100"_s,
         .Country = u"Italy"_s,
         .MapLink = map(u"00100,Italy"_s),
         .DetailsLink = base + u"/dettagli/3"},
    };
    return sample;
}

namespace {

TEST(Trovanumeri, TellsASecondPhoneFromTheStreet) {
    struct Case {
        QString Cells;
        QString Phone;
        QString Street;
    };
    const QString two = u"<td>1</td><td>Tel: 1</td>"_s;
    const Case cases[] = {
        {two + u"<td>S</td><td x>m</td><td height=1>"_s,
         u" 1,S"_s,
         {}}, // no plain cell follows: that counts as in front
        {two + u"<td>2</td><td>S</td><td x>m</td>"_s, u" 1"_s, u"2"_s}, // no cell with a height: the test fails
        {two + u"<td>Tel:</td><td>S</td><td x>m</td><td height=1>"_s, u" 1"_s, u"S"_s},
        {two + u"<td>2</td><td height=1></td><td>S</td>"_s, u" 1"_s, u"2"_s},
    };
    for (const Case& c : cases) {
        HarvestBench bench(SiteCode::Trovanumeri);
        GetYPTrovanumeriDataResults(bench.Job, u"font-size: 20px; href=\"/dettagli\">N</a>"_s + c.Cells);
        ASSERT_EQ(bench.Leads.Count(), 1);
        EXPECT_EQ(bench.Leads.At(0).Phone, c.Phone) << c.Cells.toStdString();
        EXPECT_EQ(bench.Leads.At(0).Street, c.Street) << c.Cells.toStdString();
    }
}

TEST(Trovanumeri, PassesOverLinksWithoutDetails) {
    HarvestBench bench(SiteCode::Trovanumeri);
    GetYPTrovanumeriDataResults(bench.Job, Listing(u"/altro"_s, u"A"_s, {u"1"_s, u"2"_s, u"3"_s}) +
                                               Listing(u"/DETTAGLI"_s, u"B"_s, {u"1"_s, u"2"_s, u"3"_s}));
    EXPECT_EQ(bench.Leads.Count(), 0);
    EXPECT_TRUE(bench.Status.TextsOf(1).isEmpty());
}

} // namespace

} // namespace Brindle::Test
