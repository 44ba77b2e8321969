#include "adapters/InfobelItaly.h"

#include "AdapterSample.h"
#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

namespace {

QString Address(const QString& street, const QString& code, const QString& city, const QString& phone) {
    return u"<SPAN class=street-address>"_s + street + u"</SPAN><SPAN class=postal-code>" + code +
           u"</SPAN><SPAN class=locality>" + city + u"</SPAN><DIV class=\"data tel\"><B>" + phone + u"</B></DIV>";
}

QString Listing(const QString& content) {
    return u"<DIV class=\"result-item odd\">"_s + content + u"</DIV>\n";
}

constexpr QStringView base = u"http://details.test/it/italy/";

} // namespace

AdapterSample SampleOfInfobelItaly1() {
    AdapterSample sample;
    sample.Title = u"InfobelItaly1"_s;
    sample.Site = SiteCode::InfobelItaly;
    sample.Layout = 1;
    sample.Head = u"<BODY><H1 class=Pageh1>x</H1><INPUT id=search-field name=q value=Bar>\n"_s;
    const auto head = [](const QString& link, const QString& name) -> QString {
        return u"<A href=\""_s + link + u"\"><SPAN class=\"fn org\">" + name + u"</SPAN></A>";
    };
    sample.Listings = {
        Listing(head(u"milano/uno"_s, u"Bar &amp; <B>Uno</B>"_s) +
                Address(u"Via Po 1"_s, u"20121"_s, u"Milano"_s, u"02 1"_s) +
                u"<A class=website href=\"/go?url=http%3A%2F%2Funo.test\">sito</A>"),
        Listing(head(u"http://x.test/2"_s, u"Due"_s) + Address(u"Via Po 2"_s, u"20122"_s, u"Milano"_s, u"02 2"_s) +
                u"<A href=\"mailto:due@b.test\">x</A>"),
        Listing(head(u"3"_s, u"Tre"_s) + u"<A href=\"mailto:info@directory.test\">x</A>"),
    };
    sample.Tail = u"<DIV id=footer></DIV></BODY>"_s;
    sample.ListingMarker = u"<DIV class=\"result-item"_s;
    sample.CountsExtracted = true;
    const auto map = [](const QString& query) -> QString { return u"http://maps.test/maps?q="_s + query; };
    sample.Leads = {
        {.Category = u"Bar"_s,
         .Name = u"Bar & Uno"_s,
         .FullAddress = u"Via Po 1, 20121 Milano"_s,
         .Street = u"Via Po 1"_s,
         .City = u"Milano"_s,
         .PostalCode = u"20121"_s,
         .Country = u"Italy"_s,
         .Phone = u"02 1"_s,
         .Website = u"http://uno.test"_s,
         .MapLink = map(u"Via+Po+1,+20121+Milano,Italy"_s),
         .DetailsLink = base + u"milano/uno"},
        {.Category = u"Bar"_s,
         .Name = u"Due"_s,
         .FullAddress = u"Via Po 2, 20122 Milano"_s,
         .Street = u"Via Po 2"_s,
         .City = u"Milano"_s,
         .PostalCode = u"20122"_s,
         .Country = u"Italy"_s,
         .Phone = u"02 2"_s,
         .Email = u"due@b.test"_s,
         .MapLink = map(u"Via+Po+2,+20122+Milano,Italy"_s),
         .DetailsLink = base + u"http://x.test/2"}, // prefixed in any case
        {.Category = u"Bar"_s, .Name = u"Tre"_s, .Country = u"Italy"_s, .DetailsLink = base + u"3"},
    };
    return sample;
}

AdapterSample SampleOfInfobelItaly2() {
    AdapterSample sample = SampleOfInfobelItaly1();
    sample.Title = u"InfobelItaly2"_s;
    sample.Layout = 2;
    const auto head = [](const QString& name) -> QString { return QString(u"<SPAN class=fn>"_s + name + u"</SPAN>"); };
    sample.Listings = {
        Listing(head(u"Uno"_s) + Address(u"Via Po 1"_s, u"20121"_s, u"Milano"_s, u"02 1"_s) +
                u"<A class=website href=\"/go?url=http%3A%2F%2Funo.test\">sito</A>"),
        Listing(head(u"Due"_s) + Address(u"Via Po 2"_s, u"20122"_s, u"Milano"_s, u"02 2"_s) +
                u"<A href=\"mailto:due@b.test\">x</A>"),
        Listing(head(u"Tre"_s)),
    };
    for (Lead& lead : sample.Leads) {
        lead.Category.clear(); // the search form is not read in this layout
        lead.DetailsLink = u"No Details URL (Unique Phone: "_s + lead.Phone + u')';
    }
    sample.Leads[0].Name = u"Uno"_s;
    return sample;
}

namespace {

TEST(InfobelItaly2, ThePhoneIsTheKey) {
    HarvestBench bench(SiteCode::InfobelItaly, 2);
    const auto listing = [](const QString& name, const QString& phone) -> QString {
        return Listing(u"<SPAN class=fn>"_s + name + u"</SPAN>" +
                       (phone.isEmpty() ? QString() : QString(u"<DIV class=\"data tel\">"_s + phone + u"</DIV>")));
    };
    GetYPInfobelDataResults2(bench.Job, listing(u"A"_s, u"1"_s) + listing(u"B"_s, u"1"_s) + listing(u"C"_s, {}) +
                                            listing(u"D"_s, {}));
    const std::vector<Lead> leads = bench.AllLeads();
    ASSERT_EQ(leads.size(), 2U);
    EXPECT_EQ(leads[0].Name, u"A"_s);
    EXPECT_EQ(leads[1].Name, u"C"_s); // the only one without a phone that is ever kept
    EXPECT_EQ(leads[1].DetailsLink, u"No Details URL (Unique Phone: )"_s);
}

TEST(InfobelItaly1, ReadsTheShapesOfAListing) {
    struct Case {
        QString Content;
        Lead Expected;
    };
    const Case cases[] = {
        {u"<SPAN class=postal-code>20121</SPAN>"_s, {.FullAddress = u", 20121"_s, .PostalCode = u"20121"_s}},
        {u"<SPAN class=locality>Roma</SPAN><SPAN class=postal-code>1</SPAN>"_s,
         {.FullAddress = u", 1"_s, .PostalCode = u"1"_s}}, // the town stands before the code: it is passed over
        {u"website"_s, {}},
        {u"url=http://a.test\""_s, {}}, // the word that announces the website is missing
        {u"website url=http://a.test\""_s, {.Website = u"http://a.test"_s}},
        {u"mailto:<b>a@b.test</b> \""_s, {.Email = u"a@b.test"_s}},
    };
    for (const Case& c : cases) {
        HarvestBench bench(SiteCode::InfobelItaly, 1);
        GetYPInfobelDataResults1(bench.Job, Listing(u"<A href=\"1\"><SPAN class=\"fn org\">N</SPAN>"_s + c.Content));
        ASSERT_EQ(bench.Leads.Count(), 1) << c.Content.toStdString();
        const Lead lead = bench.Leads.At(0);
        EXPECT_EQ(lead.FullAddress, c.Expected.FullAddress) << c.Content.toStdString();
        EXPECT_EQ(lead.PostalCode, c.Expected.PostalCode) << c.Content.toStdString();
        EXPECT_EQ(lead.Website, c.Expected.Website) << c.Content.toStdString();
        EXPECT_EQ(lead.Email, c.Expected.Email) << c.Content.toStdString();
    }
}

} // namespace

} // namespace Brindle::Test
