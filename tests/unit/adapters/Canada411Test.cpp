#include "adapters/Canada411.h"

#include "AdapterSample.h"
#include "PrintTo.h"

#include <gtest/gtest.h>
#include <optional>

namespace Brindle::Test {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString searchForm = u"<FORM class=search><INPUT id=what name=q class=field value=\"Pet Shops\" "
                           u"autocomplete=\"off\"></FORM><DIV class=total_result_found>3 found</DIV>"_s;
const QString base = u"http://details.test"_s;

QString Listing(const QString& link, const QString& name) {
    return u"<DIV class=listing><H2 class=ltitle><A title=x href=\""_s + link + u"\">" + name + u"</A></H2></DIV>\n";
}

QString BusinessPage(const QString& name, const QString& street, const QString& more) {
    return u"<html><body><h1 itemprop=\"name\">" + name + u"</h1><div itemprop=\"streetAddress\">" + street +
           u"</div><span itemprop=\"addressLocality\">Guelph</span> <span itemprop=\"addressRegion\">ON</span>" +
           u"<div itemprop=\"postalCode\">N1H 3A1</div>" + more + u"</body></html>";
}

} // namespace

AdapterSample SampleOfCanada411() {
    AdapterSample sample{.Title = u"Canada411"_s,
                         .Site = SiteCode::Canada411,
                         .Head = searchForm,
                         .Tail = u"<DIV class=global-footer>Add your business</DIV>"_s,
                         .ListingMarker = u"ltitle"_s};
    sample.Listings = {Listing(u"/business/1?a=b&amp;c=d"_s, u"Finch &amp; <B>Co</B>"_s),
                       Listing(u"http://elsewhere.test/person/2"_s, u"J. Q. Reed"_s),
                       Listing(u"/business/3"_s, u"Wren Ltd"_s)};
    sample.Details = {
        {base + u"/business/1?a=b&c=d",
         BusinessPage(u"Finch and Company"_s, u"1 Elm St"_s,
                      u"<span itemprop=\"telephone\"><b>519</b> 555-0101</span><a href=\"mailto:a@finch.test\">"
                      u"e-mail</a><a itemprop=\"url\" class=\"w\" href=\"http://finch.test/\">web</a>"_s)},
        {u"http://elsewhere.test/person/2"_s,
         u"<h1 itemprop=\"name\"><span itemprop=\"givenName\">Joan</span><span itemprop=\"additionalName\">Q</span>"
         u"<span itemprop=\"familyName\">Reed</span></h1><b itemprop=\"telephone\">519 555-0102</b>"
         u"<b itemprop=\"streetAddress\">2 Elm St</b><b itemprop=\"addressLocality\">Guelph</b>"
         u"<b itemprop=\"addressRegion\">ON</b><b itemprop=\"postalCode\">N1H 3A2</b>"_s},
        {base + u"/business/3",
         BusinessPage(u"Wren Ltd"_s, u"3 Elm St"_s, u"<p itemprop=\"url\"><a href=\"http://wren.test\">web</a></p>"_s)},
    };
    const auto mapOf = [](const QString& street, const QString& code) {
        return u"http://maps.test/maps?q=%1,+Guelph,+ON+%2,Canada"_s.arg(street, code);
    };
    sample.Leads = {{.Category = u"Pet Shops"_s,
                     .Name = u"Finch and Company"_s,
                     .FullAddress = u"1 Elm St, Guelph, ON N1H 3A1"_s,
                     .Street = u"1 Elm St"_s,
                     .City = u"Guelph"_s,
                     .State = u"ON"_s,
                     .PostalCode = u"N1H 3A1"_s,
                     .Country = u"Canada"_s,
                     .Phone = u"519 555-0101"_s,
                     .Website = u"http://finch.test/"_s,
                     .Email = u"a@finch.test"_s,
                     .MapLink = mapOf(u"1+Elm+St"_s, u"N1H+3A1"_s),
                     .DetailsLink = base + u"/business/1?a=b&c=d"},
                    {.Category = u"Pet Shops"_s,
                     .Name = u"Joan Q Reed"_s,
                     .FullAddress = u"2 Elm St, Guelph, ON N1H 3A2"_s,
                     .Street = u"2 Elm St"_s,
                     .City = u"Guelph"_s,
                     .State = u"ON"_s,
                     .PostalCode = u"N1H 3A2"_s,
                     .Country = u"Canada"_s,
                     .Phone = u"519 555-0102"_s,
                     .MapLink = mapOf(u"2+Elm+St"_s, u"N1H+3A2"_s),
                     .DetailsLink = u"http://elsewhere.test/person/2"_s},
                    {.Category = u"Pet Shops"_s,
                     .Name = u"Wren Ltd"_s,
                     .FullAddress = u"3 Elm St, Guelph, ON N1H 3A1"_s,
                     .Street = u"3 Elm St"_s,
                     .City = u"Guelph"_s,
                     .State = u"ON"_s,
                     .PostalCode = u"N1H 3A1"_s,
                     .Country = u"Canada"_s,
                     .Website = u"http://wren.test"_s,
                     .MapLink = mapOf(u"3+Elm+St"_s, u"N1H+3A1"_s),
                     .DetailsLink = base + u"/business/3"}};
    return sample;
}

namespace {

// The listings of a result page: what is fetched for each and what becomes of it. Every page fetched is the same, that
// of a business without an address.
TEST(Canada411, ReadsListingsOfAllShapes) {
    struct Case {
        QString Listing;
        QString Link; ///< of the lead and of the page fetched
        QString Name; ///< of the lead; empty: there is none
        bool Fetched = true;
        bool Counted = true; ///< the list count is shown
    };
    const Case cases[] = {
        {Listing(u"/b/1"_s, u"Finch"_s), base + u"/b/1", u"Finch"_s},
        {Listing(u"b/1"_s, u"Finch"_s), base + u"b/1", u"Finch"_s},
        {Listing(u"http://x.test/b"_s, u" Finch\n&amp; Co "_s), u"http://x.test/b"_s, u"Finch & Co"_s},
        // Only the plain scheme makes a link absolute.
        {Listing(u"https://x.test/b"_s, u"Finch"_s), base + u"https://x.test/b", u"Finch"_s},
        {Listing(u"HTTP://x.test/b"_s, u"Finch"_s), base + u"HTTP://x.test/b", u"Finch"_s},
        {Listing(u"/b?u=http://y.test"_s, u"Finch"_s), u"/b?u=http://y.test"_s, u"Finch"_s},
        {Listing(u""_s, u"Finch"_s), base, u"Finch"_s},
        {Listing(u"/b&amp;amp;c"_s, u"<SPAN class=\"hit\">Fin</SPAN>ch"_s), base + u"/b&amp;c", u"Finch"_s},
        // Invitations, wherever the words stand in the name and whatever stands around them.
        {Listing(u"/add"_s, u"Add your business"_s), {}, {}, false, false},
        {Listing(u"/add"_s, u"Please <B>Add&nbsp;</B>it"_s), {}, {}, false, false},
        {Listing(u"/add"_s, u"add your business"_s), base + u"/add", u"add your business"_s},
        {Listing(u"/add"_s, u"Addison"_s), base + u"/add", u"Addison"_s},
        // A listing without a name is looked up and then dropped.
        {Listing(u"/b/1"_s, u" <I></I> "_s), base + u"/b/1", {}, true, true},
        {u"<H2 class=ltitle>nothing more"_s, {}, {}, false, true},
        {u"<H2 class=ltitle>no link</H2><B>Finch</A>"_s, {}, u"no linkFinch"_s, false, true},
        {u"<h2 class=ltitle><a HREF=\"/b/1\">Finch</a>"_s, {}, u"Finch"_s, false, true},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.Listing.toStdString());
        HarvestBench bench(SiteCode::Canada411);
        bench.Pages.EveryPage = u"<html></html>"_s;
        Get411CADataResults(bench.Job, row.Listing);
        EXPECT_EQ(bench.Pages.Fetched, row.Fetched ? QStringList{row.Link} : QStringList());
        EXPECT_EQ(bench.Status.TextsOf(1).size(), row.Counted ? 1 : 0);
        ASSERT_EQ(bench.Leads.Count(), row.Name.isEmpty() ? 0 : 1);
        if (!row.Name.isEmpty()) {
            EXPECT_EQ(bench.Leads.At(0), (Lead{.Name = row.Name, .Country = u"Canada"_s, .DetailsLink = row.Link}));
        }
    }
}

TEST(Canada411, ReadsTheCategoryOrRemembersIt) {
    struct Case {
        QString Form;
        QString Remembered;
        QString Category;
        QString RememberedThen;
    };
    const Case cases[] = {
        {u"<INPUT name=q id=w value=\"Pet Shops\" autocomplete=\"off\">"_s, {}, u"Pet Shops"_s, u"Pet Shops"_s},
        {u"<INPUT name=q id=w value=Pets autocomplete=\"off\">"_s, u"Cafes"_s, u"Pets"_s, u"Cafes"_s},
        // The first marker takes the blank that the second one needs; the next "value=" on the page is far away.
        {u"<INPUT name=q value=\"Pets\" autocomplete=\"off\">"_s, {}, {}, {}},
        {u"<INPUT name=q value=\"Pets\" autocomplete=\"off\">"_s, u"Cafes"_s, u"Cafes"_s, u"Cafes"_s},
        // What is remembered is not cut.
        {u"<INPUT name=q id=w value=\"Pets\" name=q2 autocomplete=\"off\">"_s, {}, u"Pets"_s, u"Pets name=q2"_s},
        {u"<INPUT name=q id=w value=\"\" autocomplete=\"off\">"_s, u"Cafes name=x"_s, u"Cafes"_s, u"Cafes name=x"_s},
        {u"<INPUT name=q2 id=w value=\"Pets\" autocomplete=\"off\">"_s, {}, {}, {}},
        {u"<INPUT NAME=q id=w value=\"Pets\" autocomplete=\"off\">"_s, u"Cafes"_s, u"Cafes"_s, u"Cafes"_s},
        {u"<INPUT name=q id=w value=\"Pets\" autocomplete=off>"_s, {}, {}, {}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.Form.toStdString());
        HarvestBench bench(SiteCode::Canada411);
        bench.State.MainCategory = row.Remembered;
        Get411CADataResults(bench.Job, row.Form + Listing(u"/b/1"_s, u"Finch"_s));
        ASSERT_EQ(bench.Leads.Count(), 1) << "a failed fetch keeps the listing";
        EXPECT_EQ(bench.Leads.At(0).Category, row.Category);
        EXPECT_EQ(bench.State.MainCategory, row.RememberedThen);
    }
}

using DetailsReader = void (*)(Harvest&, Lead&);

Lead ReadDetails(DetailsReader reader, const QString& page) {
    HarvestBench bench(SiteCode::Canada411);
    bench.Pages.EveryPage = page;
    Lead lead{.Name = u"Listed"_s};
    reader(bench.Job, lead);
    return lead;
}

TEST(Canada411, ReadsDetailsOfBusinesses) {
    struct Case {
        QString Page;
        Lead Expected;
    };
    const Case cases[] = {
        {u"<html></html>"_s, {.Name = u"Listed"_s}},
        {u"<h1 itemprop=\"name\"> Finch &amp; <b>Co</b></h1>"_s, {.Name = u" Finch &amp; <b>Co</b>"_s}},
        {u"<h1 ITEMPROP=\"name\">Finch</h1>"_s, {.Name = u"Listed"_s}},
        {u"<h1 itemprop=\"name\">never closed"_s, {}},
        // The separators stand whether or not something is before them.
        {u"<span itemprop=\"addressLocality\">Guelph</span>"_s,
         {.Name = u"Listed"_s, .FullAddress = u", Guelph"_s, .City = u"Guelph"_s}},
        {u"<div itemprop=\"streetAddress\"></div><div itemprop=\"postalCode\">N1H</div>"_s,
         {.Name = u"Listed"_s, .FullAddress = u" N1H"_s, .PostalCode = u"N1H"_s}},
        // What stands in another order is not found.
        {u"<span itemprop=\"addressRegion\">ON</span><span itemprop=\"addressLocality\">Guelph</span>"_s,
         {.Name = u"Listed"_s, .FullAddress = u", Guelph"_s, .City = u"Guelph"_s}},
        {u"<a href=\"mailto:a@b.test\">x</a><span itemprop=\"telephone\">&nbsp;<b>555</b> </span>"_s,
         {.Name = u"Listed"_s, .Phone = u"555"_s}},
        {u"<a href=\"mailto:a@b.test&amp;\">x</a><a itemprop=\"url\" href=\"http://b.test/?a&amp;b\">y</a>"_s,
         {.Name = u"Listed"_s, .Website = u"http://b.test/?a&amp;b"_s, .Email = u"a@b.test&"_s}},
        // Which websites count.
        {u"<a itemprop=\"url\" href=\"https://b.test\">"_s, {.Name = u"Listed"_s}},
        {u"<a itemprop=\"url\" href=\"HTTP://b.test\">"_s, {.Name = u"Listed"_s}},
        {u"<a itemprop=\"url\" href=\"http://b.test/menu.pdf\">"_s, {.Name = u"Listed"_s}},
        {u"<a itemprop=\"url\" href=\"/go?http://b.test/menu.PDF\">"_s,
         {.Name = u"Listed"_s, .Website = u"/go?http://b.test/menu.PDF"_s}},
    };
    for (const Case& row : cases)
        EXPECT_EQ(ReadDetails(Get411CADetails1, row.Page), row.Expected) << row.Page.toStdString();
}

TEST(Canada411, ReadsDetailsOfPersons) {
    struct Case {
        QString Page;
        Lead Expected;
    };
    const auto named = [](const QString& name) -> QString { return u"<h1 itemprop=\"name\">"_s + name + u"</h1>"; };
    const Case cases[] = {
        {named(u"<span itemprop=\"givenName\">Joan</span><span itemprop=\"familyName\">Reed</span>"_s),
         {.Name = u"Joan Reed"_s}},
        // Two blanks vanish before the ends of the spans become blanks, and nothing is squeezed after that.
        {named(u"\n  <span itemprop=\"givenName\">Jo  an</span> <span itemprop=\"familyName\">Reed</span> "_s),
         {.Name = u"Joan  Reed"_s}},
        {named(u"<span itemprop=\"givenName\">Jo</span>   <b>x</b>"_s), {.Name = u"Jo  <b>x</b>"_s}},
        {named(u"<span itemprop=givenName>Joan</span>"_s), {.Name = u"<span itemprop=givenName>Joan"_s}},
        {u"<b itemprop=\"telephone\">&nbsp;555<i>-1</i></b><b itemprop=\"streetAddress\">2 Elm<br>St</b>"_s,
         {.Name = u"Listed"_s, .FullAddress = u"2 Elm"_s, .Street = u"2 Elm"_s, .Phone = u"555"_s}},
        // Without a street the city comes first, but the region has its separator all the same.
        {u"<b itemprop=\"addressLocality\">Guelph</b><b itemprop=\"addressRegion\">ON</b>"_s,
         {.Name = u"Listed"_s, .FullAddress = u"Guelph, ON"_s, .City = u"Guelph"_s, .State = u"ON"_s}},
        {u"<b itemprop=\"addressRegion\">ON</b><b itemprop=\"postalCode\">N1H</b>"_s,
         {.Name = u"Listed"_s, .FullAddress = u", ON N1H"_s, .State = u"ON"_s, .PostalCode = u"N1H"_s}},
        {u"<a href=\"mailto:j@reed.test\"></a><i itemprop=\"url\"></i><a href=\"http://reed.test\">"_s,
         {.Name = u"Listed"_s, .Website = u"http://reed.test"_s, .Email = u"j@reed.test"_s}},
    };
    for (const Case& row : cases)
        EXPECT_EQ(ReadDetails(Get411CADetails2, row.Page), row.Expected) << row.Page.toStdString();
}

TEST(Canada411, MendsPhoneAndAddressOfTheLead) {
    HarvestBench bench(SiteCode::Canada411);
    bench.Pages.EveryPage = u"<div itemprop=\"streetAddress\"> () </div>"
                            u"<span itemprop=\"telephone\">span class=phone_type 555 span class=phone_type</span>"_s;
    Get411CADataResults(bench.Job, Listing(u"/b/1"_s, u"Finch"_s));
    EXPECT_EQ(bench.AllLeads(), (std::vector<Lead>{{.Name = u"Finch"_s,
                                                    .Street = u" () "_s,
                                                    .Country = u"Canada"_s,
                                                    .Phone = u"555"_s,
                                                    .DetailsLink = base + u"/b/1"}}));
}

} // namespace

} // namespace Brindle::Test
