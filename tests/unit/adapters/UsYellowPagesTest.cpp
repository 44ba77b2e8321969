#include "adapters/UsYellowPages.h"

#include "AdapterSample.h"
#include "PrintTo.h"
#include "core/Errors.h"

#include <gtest/gtest.h>

namespace Brindle::Test {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString base = u"http://details.test"_s;

QString Listing1(const QString& link, const QString& name) {
    return u"<li class=\"serp-list-item organic\"><div class=\"link-wrapper\"><a class=\"n\" href=\""_s + link +
           u"\" rel=\"x\">" + name + u"</a></div></li>\n";
}

QString Listing2(const QString& link, const QString& name) {
    return u"<div class=\"link-wrapper clickstream-link\"><a href=\""_s + link +
           u"\"><p class=\"n\" itemprop=\"name\">" + name + u"</p></a></div>\n";
}

QString DetailsPage1(const QString& name, const QString& phone, const QString& street, const QString& more) {
    return u"<span class=\"name block\">"_s + name + u"</span><b class=\"phone_number\" id=\"p\">" + phone +
           u"</b><span class=\"street-address\">" + street +
           u"</span><span class=\"locality\">Ames</span><span class=\"region\">IA</span>" +
           u"<span class=\"postal-code\">50010</span>" + more;
}

QString DetailsPage2(const QString& name, const QString& phones, const QString& street, const QString& second,
                     const QString& location) {
    return u"<h1 class=\"name block\">"_s + name + u"</h1>" + phones +
           u"<div class=\"location-address\"><p class=\"address-primary\">" + street +
           u"</p><p class=\"address-secondary\">" + second + u"</p><p class=\"address-location\">" + location +
           u"</p></div>";
}

QString Tel(const QString& number) {
    return u"<a href=\"tel:"_s + number + u"\">call</a>";
}

} // namespace

AdapterSample SampleOfUsYellowPages1() {
    AdapterSample sample{.Title = u"UsYellowPages1"_s,
                         .Site = SiteCode::UsYellowPages,
                         .Layout = 1,
                         .Head = u"<body class=\"business-serp\"><label>Category or name</label><input "
                                 u"value=\"Pet Shops\" name=\"what\">\n"_s,
                         .Tail = u"<div class=\"footer-wrapper\"></div></body>"_s,
                         .ListingMarker = u"serp-list-item organic"_s};
    sample.Listings = {Listing1(u"/b/1"_s, u"Finch &amp; Co"_s), Listing1(u"http://clicks.test/2"_s, u"Reed"_s),
                       Listing1(u"http://elsewhere.test/3"_s, u"Wren"_s)};
    sample.Details = {
        {base + u"/b/1", DetailsPage1(u"Finch and Co"_s, u"515 555-0101"_s, u"1 Elm St"_s,
                                      u"<a class=\"website\" href=\"http://finch.test\">web</a>"_s)},
        // The stand-in redirects nothing, so the last redirect stays that of the test: none.
        {base, DetailsPage1(u"Reed"_s, u"515 555-0102"_s, u"2 Elm St"_s, u"<a href=\"mailto:r@reed.test\">x</a>"_s)},
        {u"http://clicks.test/2"_s, u"moved"_s},
        {u"http://elsewhere.test/3"_s, DetailsPage1(u"Wren"_s, u"515 555-0103"_s, u"3 Elm St"_s, {})},
    };
    const auto leadOf = [](int n, const QString& name, const QString& link) {
        return Lead{.Category = u"Pet Shops"_s,
                    .Name = name,
                    .FullAddress = u"%1 Elm St, Ames, IA 50010"_s.arg(n),
                    .Street = u"%1 Elm St"_s.arg(n),
                    .City = u"Ames"_s,
                    .State = u"IA"_s,
                    .PostalCode = u"50010"_s,
                    .Country = u"United States"_s,
                    .Phone = u"515 555-010%1"_s.arg(n),
                    .MapLink = u"http://maps.test/maps?q=%1+Elm+St,+Ames,+IA+50010,US"_s.arg(n),
                    .DetailsLink = link};
    };
    sample.Leads = {leadOf(1, u"Finch and Co"_s, base + u"/b/1"), leadOf(2, u"Reed"_s, base),
                    leadOf(3, u"Wren"_s, u"http://elsewhere.test/3"_s)};
    sample.Leads[0].Website = u"http://finch.test"_s;
    sample.Leads[1].Email = u"r@reed.test"_s;
    return sample;
}

AdapterSample SampleOfUsYellowPages2() {
    AdapterSample sample{.Title = u"UsYellowPages2"_s,
                         .Site = SiteCode::UsYellowPages,
                         .Layout = 2,
                         .Head = u"<body><div class=\"row-fluid\">Category or name <input value=\"Pets\">\n"_s,
                         .Tail = u"</div><div class=\"footer-wrapper\"></div></body>"_s,
                         .ListingMarker = u"link-wrapper clickstream-link"_s,
                         .SkipsListedAtOnce = false};
    sample.Listings = {Listing2(u"/b/1"_s, u"Finch &amp; Co"_s), Listing2(u"http://www.own.test/2"_s, u"Reed"_s),
                       Listing2(u"/b/3"_s, u"Wren"_s)};
    sample.Details = {
        {base + u"/b/1", DetailsPage2(u"Finch"_s, Tel(u"515 555-0101"_s), u"1 Elm St"_s, {}, u"Ames, IA 50010"_s)},
        {u"http://www.own.test/2"_s,
         DetailsPage2(u"Reed"_s, Tel(u"515 555-0102"_s), u"2 Elm"_s, u"St"_s, u"Ames, IA 50010"_s) +
             u"<a href=\"mailto:r@reed.test\">x</a>"},
        {base + u"/b/3", DetailsPage2(u"Wren"_s, Tel(u"515 555-0103"_s), u"3 Elm St"_s, {}, u"Ames, IA 50010"_s)},
    };
    sample.Leads = SampleOfUsYellowPages1().Leads;
    for (Lead& lead : sample.Leads) {
        lead.Category.clear();
        lead.Website.clear();
    }
    sample.Leads[0].Name = u"Finch"_s;
    sample.Leads[1].DetailsLink = u"http://www.own.test/2"_s;
    sample.Leads[2].DetailsLink = base + u"/b/3";
    for (Lead& lead : sample.Leads)
        lead.FullAddress.replace(u"Ames, IA"_s, u", Ames, IA"_s).replace(u", , "_s, u", "_s);
    return sample;
}

namespace {

TEST(UsYellowPages, ReadsListingsOfLayout1) {
    struct Case {
        QString Listing;
        QString Link;
        QString Name; ///< empty: there is no lead
        QStringList Fetched;
    };
    const QString clicks = u"http://www.clicks.test/a"_s;
    const QString target = u"http://target.test/a"_s;
    const Case cases[] = {
        {Listing1(u"/b?a&amp;b"_s, u"Finch"_s), base + u"/b?a&amp;b", u"Finch"_s, {base + u"/b?a&amp;b"}},
        {Listing1(u"https://x.test/b"_s, u"Finch"_s),
         base + u"https://x.test/b",
         u"Finch"_s,
         {base + u"https://x.test/b"}},
        {Listing1(u"http:/b"_s, u"Finch"_s), base + u"http:/b", u"Finch"_s, {base + u"http:/b"}},
        {Listing1(clicks, u" Fin<i>ch</i>"_s), target, u"Finch"_s, {clicks, target}},
        // What the redirect leads to is made absolute as well.
        {Listing1(u"http://clicks.test/b"_s, u"Finch"_s),
         base + u"/relative",
         u"Finch"_s,
         {u"http://clicks.test/b"_s, base + u"/relative"}},
        {Listing1(u""_s, u"Finch"_s), base, u"Finch"_s, {base}},
        {Listing1(u"/b"_s, u" "_s), base + u"/b", {}, {base + u"/b"}},
        // The name ends with the first element that ends.
        {Listing1(u"/b"_s, u"<em>Finch</em> &amp; Co"_s), base + u"/b", u"Finch"_s, {base + u"/b"}},
        {u"<li class=\"serp-list-item organic\"><div class=\"link-wrapper\">Finch</div>"_s, {}, u"Finch"_s, {}},
        {u"<li class=\"serp-list-item\"><a class=\"link-wrapper\" href=\"/b\">Finch</a>"_s, {}, {}, {}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.Listing.toStdString());
        HarvestBench bench(SiteCode::UsYellowPages, 1);
        bench.Pages.EveryPage = u"<html></html>"_s;
        bench.Pages.Redirects = {{clicks, target}, {u"http://clicks.test/b"_s, u"/relative"_s}};
        GetYPUSDataResults(bench.Job, row.Listing);
        EXPECT_EQ(bench.Pages.Fetched, row.Fetched);
        ASSERT_EQ(bench.Leads.Count(), row.Name.isEmpty() ? 0 : 1);
        if (!row.Name.isEmpty()) {
            EXPECT_EQ(bench.Leads.At(0),
                      (Lead{.Name = row.Name, .Country = u"United States"_s, .DetailsLink = row.Link}));
        }
    }
}

TEST(UsYellowPages, ReadsListingsOfLayout2) {
    struct Case {
        QString Listing;
        QString Link;
        QString Name; ///< empty: there is no lead
    };
    const Case cases[] = {
        {Listing2(u"/b/1"_s, u"<b>Finch</b> &amp; Co"_s), base + u"/b/1", u"Finch & Co"_s},
        {Listing2(u"//www.own.test/1"_s, u"Finch"_s), u"//www.own.test/1"_s, u"Finch"_s},
        {Listing2(u"http://else.test/1"_s, u"Finch"_s), base + u"http://else.test/1", u"Finch"_s},
        // Neither is a redirecting link resolved here.
        {Listing2(u"http://clicks.test/1"_s, u"Finch"_s), base + u"http://clicks.test/1", u"Finch"_s},
        {Listing2(u""_s, u"Finch"_s), u""_s, u"Finch"_s},
        {Listing2(u"/b/1"_s, u""_s), base + u"/b/1", {}},
        {u"<p class=\"link-wrapper\"><a href=\"/b/1\"><p itemprop=\"name\">Finch</p>"_s, {}, {}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.Listing.toStdString());
        HarvestBench bench(SiteCode::UsYellowPages, 2);
        bench.State.MainCategory = u"Pets"_s;
        bench.Pages.EveryPage = u"<html></html>"_s;
        GetYPUSDataResults(bench.Job, row.Listing);
        EXPECT_EQ(bench.Pages.Fetched, row.Link.isEmpty() ? QStringList() : QStringList{row.Link});
        ASSERT_EQ(bench.Leads.Count(), row.Name.isEmpty() ? 0 : 1);
        if (!row.Name.isEmpty()) {
            EXPECT_EQ(bench.Leads.At(0),
                      (Lead{.Name = row.Name, .Country = u"United States"_s, .DetailsLink = row.Link}));
        }
    }
}

TEST(UsYellowPages, ReadsTheCategoryOrRemembersIt) {
    struct Case {
        QString Form;
        QString Remembered;
        QString Category;
        QString RememberedThen;
    };
    const Case cases[] = {
        {u"Category or name <input value=\"Pet Shops\">"_s, {}, u"Pet Shops"_s, u"Pet Shops"_s},
        {u"Category or name <input value=\"Pets\">"_s, u"Cafes"_s, u"Pets"_s, u"Cafes"_s},
        {u"Category or name <input value=\"Pets\" autocomplete=\"off\" name=\"x\">"_s,
         {},
         u"Pets"_s,
         u"Pets autocomplete=off name=x"_s},
        {u"Category or name <input value=\"Pets\" name=\"x\" autocomplete=\"off\">"_s,
         {},
         u"Pets"_s,
         u"Pets name=x autocomplete=off"_s},
        // What is remembered is cut for this page too.
        {u"<input value=\"Pets\">"_s, u"Cafes name=x"_s, u"Cafes"_s, u"Cafes name=x"_s},
        {u"Category or name <input value=\"\">"_s, u"Cafes"_s, u"Cafes"_s, u"Cafes"_s},
        {u"category or name <input value=\"Pets\">"_s, {}, {}, {}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.Form.toStdString());
        HarvestBench bench(SiteCode::UsYellowPages, 1);
        bench.State.MainCategory = row.Remembered;
        GetYPUSDataResults(bench.Job, row.Form + Listing1(u"/b/1"_s, u"Finch"_s));
        ASSERT_EQ(bench.Leads.Count(), 1) << "a failed fetch keeps the listing";
        EXPECT_EQ(bench.Leads.At(0).Category, row.Category);
        EXPECT_EQ(bench.State.MainCategory, row.RememberedThen);
    }
}

using DetailsReader = void (*)(Harvest&, Lead&);

Lead ReadDetails(DetailsReader reader, const QString& page) {
    HarvestBench bench(SiteCode::UsYellowPages);
    bench.Pages.EveryPage = page;
    Lead lead{.Name = u"Listed"_s};
    reader(bench.Job, lead);
    return lead;
}

TEST(UsYellowPages, ReadsDetailsOfLayout1) {
    struct Case {
        QString Page;
        Lead Expected;
    };
    const Case cases[] = {
        {u"<html></html>"_s, {.Name = u"Listed"_s}},
        {u"<span class=\"name block\"> A &amp; B <i>"_s, {.Name = u" A &amp; B "_s}},
        {u"<SPAN class=\"name block\">A<"_s, {.Name = u"Listed"_s}},
        {u"<i class=phone_number>&nbsp;555 1<b>"_s, {.Name = u"Listed"_s, .Phone = u"555 1"_s}},
        {u"<i class=locality>Ames</i><i class=postal-code>50010</i>"_s,
         {.Name = u"Listed"_s, .FullAddress = u", Ames 50010"_s, .City = u"Ames"_s, .PostalCode = u"50010"_s}},
        {u"<i class=region>IA</i><i class=street-address>1 Elm</i><i class=locality>Ames</i>"_s,
         {.Name = u"Listed"_s, .FullAddress = u"1 Elm, Ames"_s, .Street = u"1 Elm"_s, .City = u"Ames"_s}},
        {u"<a id=\"website\" href=\"https://a.test/x.pdf?a&amp;b\">"_s,
         {.Name = u"Listed"_s, .Website = u"https://a.test/x.pdf?a&amp;b"_s}},
        {u"<a id=website href=\"http://a.test\">"_s, {.Name = u"Listed"_s}},
        // The e-mail may stand before everything else.
        {u"<a href=\"mailto:a@a.test&amp;\"><i class=street-address>1 Elm</i>"_s,
         {.Name = u"Listed"_s, .FullAddress = u"1 Elm"_s, .Street = u"1 Elm"_s, .Email = u"a@a.test&"_s}},
        {u"<i class=street-address"_s, {.Name = u"Listed"_s}},
    };
    for (const Case& row : cases)
        EXPECT_EQ(ReadDetails(GetUSDetails1, row.Page), row.Expected) << row.Page.toStdString();
}

TEST(UsYellowPages, ReadsDetailsOfLayout2) {
    struct Case {
        QString Page;
        Lead Expected;
    };
    const auto located = [](const QString& location) -> QString {
        return u"<p class=\"address-location\">"_s + location + u"</p>";
    };
    const auto addressed = [](const QString& street, const QString& second) -> QString {
        return u"<div class=\"location-address\"><p class=\"address-primary\">"_s + street +
               u"</p><p class=\"address-secondary\">" + second + u"</p>";
    };
    const Case cases[] = {
        {u"<html></html>"_s, {.Name = u"Listed"_s}},
        {u"<h1 class=\"name block\"> Finch &amp; Co </h1>"_s, {.Name = u"Finch &amp; Co"_s}},
        {u"<h1 class=\"name block\"></h1>"_s, {}},
        {Tel(u"1"_s) + Tel(u" 2&nbsp;3 "_s) + Tel(u"4"_s), {.Name = u"Listed"_s, .Phone = u"1, 2 3, 4"_s}},
        {u"<a href='tel:1'>"_s + Tel(u"2"_s) + u"<a href=\"tel:3", {.Name = u"Listed"_s, .Phone = u"2, "_s}},
        // Phones behind the name only, and what stands before the last of them is gone for the rest.
        {addressed(u"1 Elm"_s, {}) + Tel(u"1"_s), {.Name = u"Listed"_s, .Phone = u"1"_s}},
        {addressed(u" 1 Elm "_s, u" Suite 2 "_s),
         {.Name = u"Listed"_s, .FullAddress = u"1 Elm   Suite 2"_s, .Street = u"1 Elm   Suite 2"_s}},
        {addressed(u"1 Elm"_s, u""_s), {.Name = u"Listed"_s, .FullAddress = u"1 Elm"_s, .Street = u"1 Elm"_s}},
        {addressed(u""_s, u"Suite 2"_s), {.Name = u"Listed"_s, .FullAddress = u"Suite 2"_s, .Street = u"Suite 2"_s}},
        {u"<div class=\"location-address\"><p>1 Elm</p><p>Suite 2</p>"_s,
         {.Name = u"Listed"_s, .FullAddress = u"<p>1 Elm <p>Suite 2"_s, .Street = u"<p>1 Elm <p>Suite 2"_s}},
        {located(u"Ames, IA 50010"_s),
         {.Name = u"Listed"_s,
          .FullAddress = u", Ames, IA 50010"_s,
          .City = u"Ames"_s,
          .State = u"IA"_s,
          .PostalCode = u"50010"_s}},
        {located(u" Ames ,  IA 50010 4711 , USA"_s),
         {.Name = u"Listed"_s,
          .FullAddress = u",  Ames , IA 50010"_s,
          .City = u" Ames "_s,
          .State = u"IA"_s,
          .PostalCode = u"50010"_s}},
        {located(u"Ames, IA"_s),
         {.Name = u"Listed"_s, .FullAddress = u", Ames"_s, .City = u"Ames"_s, .State = u"IA"_s}},
        {located(u"Ames, IA  50010"_s),
         {.Name = u"Listed"_s, .FullAddress = u", Ames"_s, .City = u"Ames"_s, .State = u"IA"_s}},
        {located(u",IA 50010"_s),
         {.Name = u"Listed"_s, .FullAddress = u", IA 50010"_s, .State = u"IA"_s, .PostalCode = u"50010"_s}},
        {located(u"Ames,"_s), {.Name = u"Listed"_s, .FullAddress = u", Ames"_s, .City = u"Ames"_s}},
        {located(u"A, B"_s) + u"<a href=\"mailto:a@a.test\"><a class=\"website\" href=\"http://a.test\">",
         {.Name = u"Listed"_s, .FullAddress = u", A"_s, .City = u"A"_s, .State = u"B"_s, .Email = u"a@a.test"_s}},
        {u"<a href=\"mailto:a@a.test\">"_s + located(u"A, B"_s),
         {.Name = u"Listed"_s, .FullAddress = u", A"_s, .City = u"A"_s, .State = u"B"_s}},
    };
    for (const Case& row : cases)
        EXPECT_EQ(ReadDetails(GetUSDetails2, row.Page), row.Expected) << row.Page.toStdString();
}

TEST(UsYellowPages, EndsThePageAtALocationWithoutAComma) {
    EXPECT_THROW(ReadDetails(GetUSDetails2, u"<p class=\"address-location\">Ames IA</p>"_s), IndexError);
    EXPECT_THROW(ReadDetails(GetUSDetails2, u"<p class=\"address-location\""_s), IndexError);

    AdapterSample sample = SampleOfUsYellowPages2();
    HarvestBench bench(sample.Site, sample.Layout);
    sample.Details[sample.Leads[1].DetailsLink].replace(u"Ames,"_s, u"Ames"_s);
    bench.Pages.Pages = sample.Details;
    ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.AllLeads(), std::vector<Lead>{sample.Leads[0]});
    EXPECT_EQ(bench.Status.TextsOf(1), QStringList{u"1 items listed"_s});
}

TEST(UsYellowPages, FetchesListedListingsInLayout2Only) {
    for (const AdapterSample& sample : {SampleOfUsYellowPages1(), SampleOfUsYellowPages2()}) {
        HarvestBench bench(sample.Site, sample.Layout);
        bench.Pages.Pages = sample.Details;
        ReadAsDriver(bench, sample.Page());
        bench.Pages.Fetched.clear();
        ReadAsDriver(bench, sample.Page());
        // The redirecting link of layout 1 has to be resolved before it can be compared.
        EXPECT_EQ(bench.Pages.Fetched.size(), sample.Layout == 1 ? 1 : 3);
        EXPECT_EQ(bench.Leads.Count(), 3);
    }
}

TEST(UsYellowPages, MendsPhoneAndAddressOfTheLead) {
    HarvestBench bench(SiteCode::UsYellowPages, 1);
    bench.Pages.EveryPage = u"<b class=phone_number>span class=phone_type 555</b><b class=street-address>()</b>"_s;
    GetYPUSDataResults(bench.Job, Listing1(u"/b/1"_s, u"Finch"_s));
    EXPECT_EQ(bench.AllLeads(), (std::vector<Lead>{{.Name = u"Finch"_s,
                                                    .Street = u"()"_s,
                                                    .Country = u"United States"_s,
                                                    .Phone = u"555"_s,
                                                    .DetailsLink = base + u"/b/1"}}));
}

} // namespace

} // namespace Brindle::Test
