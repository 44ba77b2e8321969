#include "adapters/PagineBianche.h"

#include "AdapterSample.h"
#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView details = u"http://details.test";

QString Head(const QString& link, const QString& name) {
    return u"<h2 class=\"org fn\"><a class=\"x\" href=\""_s + link + u"\" title=\"t\">" + name + u"</a></h2>\n";
}

} // namespace

AdapterSample SampleOfPagineBianche1() {
    AdapterSample sample;
    sample.Title = u"PagineBianche1"_s;
    sample.Site = SiteCode::PagineBianche;
    sample.Layout = 1;
    sample.Head = u"<body><input id=\"input_cosa\" name=\"qs\" value=\"Caff&#39;\"><div class=\"listing-top\">\n"_s;
    sample.Listings = {Head(u"/a?x=1&amp;y=2"_s, u"<b>Bar</b> Uno"_s), Head(u"http://own.test/2"_s, u"Due"_s),
                       Head(u"3"_s, u"Tre"_s)};
    sample.Tail = u"<div id=\"footer\"></div></body>"_s;
    sample.ListingMarker = u"org fn"_s;
    sample.CountsExtracted = true;
    sample.Details = {
        {details + u"//a?x=1&y=2",
         u"<h1 itemprop=\"name\">Bar Uno &amp; C.</h1><p itemprop=\"streetAddress\">Via dell'Orso 1</span> - "
         u"<b itemprop=\"postalCode\"> 20121 </b><b itemprop=\"addressLocality\">Milano (MI)</b>"
         u"tel: 02 1 </span>fax: 02 2 </span><a class=\"site-tooltip\" href=\"http://uno.test\">"_s},
        {u"http://own.test/2"_s,
         u"<p class=\"web-contatti\"><a href=\"/form?1\">scrivi</a></p><b itemprop=\"postalCode\">20121</b>"_s},
        {details + u"/form?1", u"<input name=\"dest_em\" value=\" due@b.test \">"_s},
    };
    sample.Leads = {
        {.Category = u"Caff'"_s,
         .Name = u"Bar Uno &amp; C."_s, // as the details page has it
         .FullAddress = u"Via dell'Orso 1 - 20121 Milano  (MI)"_s,
         .Street = u"Via dell'Orso 1"_s,
         .City = u"Milano "_s,
         .State = u"MI"_s,
         .PostalCode = u"20121"_s,
         .Country = u"Italy"_s,
         .Phone = u"02 1"_s,
         .Fax = u" 02 2 "_s,
         .Website = u"http://uno.test"_s,
         .MapLink = u"http://maps.test/maps?q=Via+dell'Orso+1+-+20121+Milano++(MI),Italy"_s,
         .DetailsLink = details + u"//a?x=1&y=2"},
        {.Category = u"Caff'"_s,
         .Name = u"Due"_s,
         .FullAddress = u" - 20121  ()"_s, // the hyphen of "web-contatti" is one too
         .PostalCode = u"20121"_s,
         .Country = u"Italy"_s,
         .Email = u"due@b.test"_s,
         .MapLink = u"http://maps.test/maps?q=+-+20121++(),Italy"_s,
         .DetailsLink = u"http://own.test/2"_s},
        {.Category = u"Caff'"_s, .Name = u"Tre"_s, .Country = u"Italy"_s, .DetailsLink = details + u"/3"},
    };
    return sample;
}

AdapterSample SampleOfPagineBianche2() {
    AdapterSample sample;
    sample.Title = u"PagineBianche2"_s;
    sample.Site = SiteCode::PagineBianche;
    sample.Layout = 2;
    sample.Head = u"<body><INPUT id=input_cosa value=Idraulici name=qs><div class=\"listing-top\">\n"_s;
    sample.Listings = {
        Head(u"/1&amp;2"_s, u"Uno"_s) +
            u"<span class=\"street-address\" itemprop=\"x\">Via Po 1</span>"
            u"<span class=\"locality\" itemprop=\"y\"> 10121 Torino (TO)</span> tel: 011 1</span> fax: 011 2</span>"
            u"<a class=\"site-tooltip\" rel=\"x\" href=\"http://uno.test\">sito</a>\n",
        Head(u"/2"_s, u"Due"_s) +
            u"<span class=\"street-address\">Via Po 2</span><span class=\"locality\"> 10122 Torino</span>"
            u" tel: 011 3</span> fax: 011 4</span><a href=\"mailto:due@b.test\">scrivi</a>\n",
        Head(u"/3"_s, u"Tre"_s),
    };
    sample.Tail = u"<div id=\"footer\"></div></body>"_s;
    sample.ListingMarker = u"org fn"_s;
    sample.CountsExtracted = true;
    const auto map = [](const QString& query) -> QString { return u"http://maps.test/maps?q="_s + query; };
    sample.Leads = {
        {.Category = u"Idraulici"_s,
         .Name = u"Uno"_s,
         .FullAddress = u"Via Po 1 - 10121 Torino (TO)"_s,
         .Street = u"Via Po 1"_s,
         .City = u"Torino (TO)"_s, // the province stays with the town
         .PostalCode = u"10121"_s,
         .Country = u"Italy"_s,
         .Phone = u" 011 1"_s,
         .Fax = u" 011 2"_s,
         .Website = u"http://uno.test"_s,
         .MapLink = map(u"Via+Po+1+-+10121+Torino+(TO),Italy"_s),
         .DetailsLink = details + u"//1&amp;2"},
        {.Category = u"Idraulici"_s,
         .Name = u"Due"_s,
         .FullAddress = u"Via Po 2 - 10122 Torino"_s,
         .Street = u"Via Po 2"_s,
         .City = u"Torino"_s,
         .PostalCode = u"10122"_s,
         .Country = u"Italy"_s,
         .Phone = u" 011 3"_s,
         .Fax = u" 011 4"_s,
         .Email = u"due@b.test"_s,
         .MapLink = map(u"Via+Po+2+-+10122+Torino,Italy"_s),
         .DetailsLink = details + u"//2"},
        {.Category = u"Idraulici"_s,
         .Name = u"Tre"_s,
         .FullAddress = u" -  "_s,
         .Country = u"Italy"_s,
         .MapLink = map(u"+-++,Italy"_s),
         .DetailsLink = details + u"//3"},
    };
    return sample;
}

namespace {

TEST(PagineBianche1, WaitsBeforeEachFetchWithoutHandlingMessages) {
    const AdapterSample sample = SampleOfPagineBianche1();
    HarvestBench bench(sample.Site, 1);
    bench.Pages.Pages = sample.Details;
    const QString many = Head(u"/x%1"_s, u"N%1"_s);
    QString page;
    for (int i = 0; i < 40; ++i)
        page += QString(many).replace(u"%1"_s, QString::number(i));
    GetYPPagBianchDataResults1(bench.Job, page + Head(u""_s, u"No link"_s));
    EXPECT_GT(bench.Loop.Blocked, 0);
    EXPECT_LT(bench.Loop.Blocked, 41 * 2000);
    EXPECT_EQ(bench.Leads.Count(), 41);
    EXPECT_EQ(bench.Pages.Fetched.last(), details + u"/"); // an empty link is made absolute, and then fetched
}

TEST(PagineBianche1, ReadsTheShapesOfADetailsPage) {
    struct Case {
        QString Page;
        Lead Expected;
    };
    const Case cases[] = {
        {u"<b itemprop=\"postalCode\">20121</b>"_s,
         {.Name = u"N"_s, .FullAddress = u" -   ()"_s}}, // no hyphen, no code
        {u"- <b>x</b>"_s, {.Name = u"N"_s, .FullAddress = u" -   ()"_s}},
        {u"- <b itemprop=\"addressLocality\">Roma</b><b itemprop=\"postalCode\">1<"_s,
         {.Name = u"N"_s, .FullAddress = u" - 1  ()"_s, .PostalCode = u"1"_s}}, // the code's cut runs past the town
        {u"<a href=\"mailto:a@b.test?x\"><b>"_s,
         {.Name = u"N"_s, .FullAddress = u" -   ()"_s, .Email = u"a@b.test?x"_s}},
    };
    for (const Case& c : cases) {
        HarvestBench bench(SiteCode::PagineBianche, 1);
        bench.Pages.EveryPage = c.Page;
        Lead lead{.Name = u"N"_s, .DetailsLink = u"http://x.test"_s};
        GetPagBianchDetails(bench.Job, lead);
        lead.DetailsLink.clear();
        EXPECT_EQ(lead, c.Expected) << c.Page.toStdString();
    }
}

TEST(PagineBianche, FindsListingsInAnyLetterCase) {
    HarvestBench bench(SiteCode::PagineBianche, 2);
    GetYPPagBianchDataResults(bench.Job, u"<h2 class=\"ORG FN\"><a href=\"http://a.test\">Uno</a>"_s);
    EXPECT_EQ(bench.Leads.Count(), 1);
}

} // namespace

} // namespace Brindle::Test
