#include "adapters/YellowPagesCanada.h"

#include "AdapterSample.h"
#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView base = u"http://kvpn002001.test";

QString Title(const QString& link, const QString& name) {
    return u"<H3 class=listingTitleLine><A href=\""_s + link + u"\">x<SPAN class=listingTitle>" + name +
           u"</SPAN></A></H3>";
}

QString Listing(const QString& fields, const QString& link = u"/a"_s, const QString& name = u"Finch"_s) {
    return u"<DIV class=listingDetail>"_s + Title(link, name) + fields + u"</DIV>";
}

Lead Only(HarvestBench& bench, const QString& page) {
    GetYPCADataResults1(bench.Job, page);
    const std::vector<Lead> leads = bench.AllLeads();
    EXPECT_EQ(leads.size(), 1U) << page.toStdString();
    return leads.empty() ? Lead{} : leads.front();
}

} // namespace

AdapterSample SampleOfYellowPagesCanada1() {
    AdapterSample sample;
    sample.Title = u"YellowPagesCanada1"_s;
    sample.Site = SiteCode::YellowPagesCanada;
    sample.Layout = 1;
    sample.Head = u"<BODY><DIV class=\"ypgResultsTop\"><INPUT id=ypgHeaderWhat maxLength=150 value=Plumbers "
                  u"name=what></DIV>\n"_s;
    sample.Listings = {
        Listing(u"<DIV class=phoneNumber>519 555-0101</DIV><DIV class=address>1 Elm St, Guelph, ON N1H 3A1</DIV>"
                u"<A class=urlLink href=\"/gourl/http%3A%2F%2Ffinch.test\">Web</A>"_s,
                u"/bus/1%2C2?a=1&amp;b=2"_s, u"Finch &amp; Co"_s),
        Listing(
            u"<DIV class=address>Guelph, ON</DIV><DIV class=phoneNumber>519 555-0102</DIV><A class=emailLink href=\"mailto:a%40b.test?subject=x\">Mail</A>"_s,
            u"/bus/2"_s, u"Wren"_s),
        Listing(u"<DIV class=\"phoneNumber tollFree\">800 555-0103</DIV>"_s, u"/bus/3"_s, u"Rook"_s),
    };
    sample.Tail = u"<DIV class=ypgFooterLegal>x</DIV></BODY>"_s;
    sample.ListingMarker = u"listingDetail"_s;
    sample.CountsExtracted = true;
    sample.SkipsListedAtOnce = false;
    const auto map = [](const QString& query) -> QString { return u"http://maps.test/maps?q="_s + query; };
    sample.Leads = {
        {.Category = u"Plumbers"_s,
         .Name = u"Finch & Co"_s,
         .FullAddress = u"1 Elm St, Guelph, ON N1H 3A1"_s,
         .Street = u"1 Elm St"_s,
         .City = u" Guelph"_s,
         .State = u"ON"_s,
         .PostalCode = u"N1H 3A1"_s,
         .Country = u"Canada"_s,
         .Phone = u"519 555-0101"_s,
         .Website = u"http://finch.test"_s,
         .MapLink = map(u"1+Elm+St,+Guelph,+ON+N1H+3A1,Canada"_s),
         .DetailsLink = base + u"/bus/1,2?a=1&b=2"},
        {.Category = u"Plumbers"_s,
         .Name = u"Wren"_s,
         .FullAddress = u"Guelph, ON"_s,
         .Street = u"Guelph"_s,
         .State = u"ON"_s,
         .Country = u"Canada"_s,
         .Phone = u"519 555-0102"_s,
         .Email = u"a@b.test"_s,
         .MapLink = map(u"Guelph,+ON,Canada"_s),
         .DetailsLink = base + u"/bus/2"},
        {.Category = u"Plumbers"_s,
         .Name = u"Rook"_s,
         .Country = u"Canada"_s,
         .Phone = u"800 555-0103"_s,
         .DetailsLink = base + u"/bus/3"},
    };
    return sample;
}

AdapterSample SampleOfYellowPagesCanada2() {
    AdapterSample sample;
    sample.Title = u"YellowPagesCanada2"_s;
    sample.Site = SiteCode::YellowPagesCanada;
    sample.Layout = 2;
    sample.Head = u"<BODY><DIV id=main>\n"_s;
    sample.Listings = {
        u"<DIV class=listing_info><A class=n href=\"/res/1?a=1&amp;b=2\">Finch &amp; <B>Co</B></A></DIV>\n"_s,
        u"<DIV class=listing_info><A href=\"http://own.test/2\">Wren</A></DIV>\n"_s,
        u"<DIV class=listing_info><A href=\"/res/3\">Rook</A></DIV>\n"_s,
    };
    sample.Tail = u"</DIV><DIV id=footer></DIV></BODY>"_s;
    sample.ListingMarker = u"listing_info"_s;
    const QString details = u"http://details.test"_s;
    sample.Details = {
        {details + u"/res/1?a=1&b=2",
         u"<h1 class=\"fn n listing_name\">Finch and <i>Co</i></h1><b class=\"single_result_phone\">Home 519 "
         u"555-0101</b>"
         u"<div class=\"address adr\"><p>1 Elm St</p><span class=\"locality\">Guelph</span>"
         u"<span class=\"region\">ON</span><span class=\"postal-code\">N1H 3A1</span></div><a href=\"mailto:no@b.test\">"_s},
        {u"http://own.test/2"_s, u"<p>nothing but an address</p><a href=\"mailto:a@b.test\">Mail</a>"_s},
    };
    sample.Leads = {
        {.Name = u"Finch and Co"_s,
         .FullAddress = u"1 Elm St, Guelph, ON N1H 3A1"_s,
         .Street = u"1 Elm St"_s,
         .City = u"Guelph"_s,
         .State = u"ON"_s,
         .PostalCode = u"N1H 3A1"_s,
         .Country = u"Canada"_s,
         .Phone = u" 519 555-0101"_s, // the label goes, the blank behind it stays
         .MapLink = u"http://maps.test/maps?q=1+Elm+St,+Guelph,+ON+N1H+3A1,Canada"_s,
         .DetailsLink = details + u"/res/1?a=1&b=2"},
        {.Name = u"Wren"_s, .Country = u"Canada"_s, .Email = u"a@b.test"_s, .DetailsLink = u"http://own.test/2"_s},
        {.Name = u"Rook"_s, .Country = u"Canada"_s, .DetailsLink = details + u"/res/3"},
    };
    return sample;
}

namespace {

struct Shape {
    QStringView Fields;
    Lead Expected; // street to phone, website, e-mail
};

TEST(YellowPagesCanada1, ReadsTheShapesOfAListing) {
    const auto address = [](QStringView text) -> QString {
        return QString(u"<DIV class=address>"_s + text + u"</DIV>");
    };
    struct Address {
        QStringView Text;
        Lead Expected;
    };
    const Address addresses[] = {
        {u"12 Main St, Toronto, ON M5V 2T6",
         {.Street = u"12 Main St"_s, .City = u" Toronto"_s, .State = u"ON"_s, .PostalCode = u"M5V 2T6"_s}},
        {u"Toronto, ON", {.Street = u"Toronto"_s, .State = u"ON"_s}},
        {u"Unit 4, 12 Main St, Toronto, ON",
         {.Street = u"Unit 4, 12 Main St"_s, .City = u" Toronto"_s, .State = u"ON"_s}},
        {u"12 Main St, Toronto, M5V2T6", {.Street = u"12 Main St"_s, .City = u" Toronto"_s, .PostalCode = u"M5V2T6"_s}},
        {u"12 Main St, Toronto, ON M5V 2T6 Canada",
         {.Street = u"12 Main St"_s, .City = u" Toronto"_s, .PostalCode = u"ON M5V 2T6 Canada"_s}},
        {u"Toronto", {.Street = u"Toronto"_s}}, // a postal code without street or city is the street
        {u"ON", {.State = u"ON"_s}},
        {u"ON M5V 2T6", {.Street = u"M5V 2T6"_s, .State = u"ON"_s}},
        {u"12 Main St, , ON M5V 2T6",
         {.Street = u"12 Main St"_s, .City = u" "_s, .State = u"ON"_s, .PostalCode = u"M5V 2T6"_s}},
        {u",ON", {.State = u"ON"_s}},
        {u"a,", {.Street = u"a"_s}},
        {u", , ON", {.Street = u" "_s, .State = u"ON"_s}},
        {u"<BR>", {}},
    };
    for (const Address& c : addresses) {
        HarvestBench bench(SiteCode::YellowPagesCanada);
        const Lead lead = Only(bench, Listing(address(c.Text)));
        EXPECT_EQ(lead.Street, c.Expected.Street) << c.Text.toUtf8().data();
        EXPECT_EQ(lead.City, c.Expected.City) << c.Text.toUtf8().data();
        EXPECT_EQ(lead.State, c.Expected.State) << c.Text.toUtf8().data();
        EXPECT_EQ(lead.PostalCode, c.Expected.PostalCode) << c.Text.toUtf8().data();
    }

    const Shape shapes[] = {
        {u"<DIV class=phoneNumber>1</DIV><DIV class=\"phoneNumber x\">2</DIV>", {.Phone = u"1"_s}},
        {u"<DIV class=\"phoneNumber x\">2</DIV>", {.Phone = u"2"_s}},
        {u"<DIV class=address>a b</DIV><DIV class=phoneNumber>1</DIV>", {.Street = u"a b"_s, .Phone = u"1"_s}},
        {u"<div class=phoneNumber>1</div>", {}}, // the presence test minds the letter case
        {u"<A class=urlLink href=\"/gourl/ftp%3A%2F%2Fa.test\">", {}},
        {u"<A class=urlLink href=\"/gourl/HTTPS%3A%2F%2Fa.test\">", {.Website = u"HTTPS://a.test"_s}},
        {u"<A class=urlLink href=\"http://a.test\">", {}},
        {u"<A class=emailLink href=\"mailto:a%40b.test?subject=x\">", {.Email = u"a@b.test"_s}},
        {u"<A class=emailLink href=\"mailto:a@b.test\">", {}}, // without a subject the cut has no end
    };
    for (const Shape& c : shapes) {
        HarvestBench bench(SiteCode::YellowPagesCanada);
        const Lead lead = Only(bench, Listing(c.Fields.toString()));
        EXPECT_EQ(lead.Street, c.Expected.Street) << c.Fields.toUtf8().data();
        EXPECT_EQ(lead.Phone, c.Expected.Phone) << c.Fields.toUtf8().data();
        EXPECT_EQ(lead.Website, c.Expected.Website) << c.Fields.toUtf8().data();
        EXPECT_EQ(lead.Email, c.Expected.Email) << c.Fields.toUtf8().data();
    }
}

TEST(YellowPagesCanada1, AFieldOfTheNextListingIsNotThisOnes) {
    HarvestBench bench(SiteCode::YellowPagesCanada);
    GetYPCADataResults1(bench.Job, Listing({}, u"/1"_s, u"Bare"_s) +
                                       Listing(u"<DIV class=address>a b c, ON</DIV><DIV class=phoneNumber>1</DIV>"
                                               u"<A class=urlLink href=\"/gourl/http://a.test\">"
                                               u"<A class=emailLink href=\"mailto:a?subject=\">"_s,
                                               u"/2"_s, u"Full"_s));
    const std::vector<Lead> leads = bench.AllLeads();
    ASSERT_EQ(leads.size(), 2U);
    EXPECT_EQ(leads[0], (Lead{.Name = u"Bare"_s, .Country = u"Canada"_s, .DetailsLink = base + u"/1"}));
    EXPECT_EQ(leads[1].Phone, u"1"_s);
    EXPECT_EQ(leads[1].Email, u"a"_s);
}

TEST(YellowPagesCanada1, TheCategoryComesFromTheSearchForm) {
    struct Case {
        QStringView Form;
        QStringView Remembered;
        QStringView Category;
        QStringView RememberedAfter;
    };
    const Case cases[] = {
        {u"<INPUT id=ypgHeaderWhat value=Plumbers name=what>", u"", u"Plumbers", u"Plumbers"},
        {u"<INPUT id=YPGHEADERWHAT value=\"Auto &amp; Tires\" name=what>", u"", u"Auto & Tires", u"Auto & Tires"},
        {u"<INPUT id=ypgHeaderWhat value=Cafes autocomplete=\"off\" name=what>", u"", u"Cafes",
         u"Cafes autocomplete=off"},
        {u"<INPUT id=ypgHeaderWhat value=Plumbers maxLength=150 name=what>", u"", u"Plumbers",
         u"Plumbers maxLength=150"},
        {u"<INPUT id=ypgHeaderWhat value=Plumbers name=what>", u"Cafes", u"Plumbers", u"Cafes"},
        {u"", u"Cafes", u"Cafes", u"Cafes"},
        {u"<INPUT id=ypgHeaderWhat value= name=what>", u"Cafes", u"Cafes", u"Cafes"},
        {u"", u"", u"", u""},
    };
    for (const Case& c : cases) {
        HarvestBench bench(SiteCode::YellowPagesCanada);
        bench.State.MainCategory = c.Remembered.toString();
        EXPECT_EQ(Only(bench, c.Form + Listing({})).Category, c.Category.toString()) << c.Form.toUtf8().data();
        EXPECT_EQ(bench.State.MainCategory, c.RememberedAfter.toString()) << c.Form.toUtf8().data();
    }
}

TEST(YellowPagesCanada2, ResolvesRedirectingLinks) {
    HarvestBench bench(SiteCode::YellowPagesCanada, 2);
    bench.Pages.Redirects = {{u"http://clicks.test/own.test?1"_s, u"http://own.test/1"_s}};
    GetYPCADataResults2(bench.Job, u"listing_info <a href=\"http://clicks.test/own.test?1\">One</A>"
                                   u"listing_info <a href=\"/own.test/clicks.test?2\">Two</A>"_s);
    const std::vector<Lead> leads = bench.AllLeads();
    ASSERT_EQ(leads.size(), 1U); // the second is not redirected, so the last target stands, which is listed
    EXPECT_EQ(leads[0].DetailsLink, u"http://own.test/1"_s);

    HarvestBench lost(SiteCode::YellowPagesCanada, 2);
    GetYPCADataResults2(lost.Job, u"listing_info <a href=\"http://clicks.test/own.test\">One</A>"_s.repeated(2));
    ASSERT_EQ(lost.Leads.Count(), 2); // kept without a link, and so without a key
    EXPECT_EQ(lost.Leads.At(1), (Lead{.Name = u"One"_s, .Country = u"Canada"_s}));
}

TEST(YellowPagesCanada2, ReadsTheShapesOfADetailsPage) {
    const QString block = u"<div class=\"address adr\">%1</div>"_s;
    struct Case {
        QString Page;
        QStringView FullAddress;
        QStringView City;
    };
    const Case cases[] = {
        {block.arg(u"<p>1 <b>Elm</b> St</p>"_s), u"1 Elm St", u""},
        {block.arg(u"<span class=\"locality\"> Guelph </span>"_s), u" Guelph ", u" Guelph "},
        {block.arg(u"<span class=\"region\">ON</span><span class=\"locality\">Guelph</span>"_s), u"Guelph", u"Guelph"},
        {block.arg(u"<p></p><span class=\"postal-code\">N1H</span>"_s), u" N1H", u""},
        {block.arg(u"<p>()</p>"_s), u"", u""},
        {u"<p>1 Elm St</p><span class=\"locality\">Guelph</span>"_s, u"", u""}, // outside of a block
        {u"<div class=\"address adr\"><p>never closed</p>"_s, u"", u""},
    };
    for (const Case& c : cases) {
        HarvestBench bench(SiteCode::YellowPagesCanada, 2);
        bench.Pages.EveryPage = c.Page;
        GetYPCADataResults2(bench.Job, u"listing_info <a href=\"/1\">One</A>"_s);
        ASSERT_EQ(bench.Leads.Count(), 1);
        EXPECT_EQ(bench.Leads.At(0).FullAddress, c.FullAddress.toString()) << c.Page.toStdString();
        EXPECT_EQ(bench.Leads.At(0).City, c.City.toString()) << c.Page.toStdString();
    }
}

} // namespace

} // namespace Brindle::Test
