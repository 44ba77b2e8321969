#include "adapters/Virgilio.h"

#include "AdapterSample.h"
#include "PrintTo.h"
#include "ScriptedBrowser.h"

#include <gtest/gtest.h>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

AdapterSample SampleOfVirgilio() {
    AdapterSample sample;
    sample.Title = u"Virgilio"_s;
    sample.Site = SiteCode::Virgilio;
    sample.Head =
        u"<body><input name=\"qs\" value=\"Bar\"><div class=\"conteggi\"></div><h6> <a href=\"http://own.test/0\">"
        u"</a></h6><div class=\"filtri-top\">\n"_s;
    const auto listing = [](const QString& link, const QString& rest) -> QString {
        return u"<li><h6> <a class=\"x\" href=\""_s + link + u"\">n</a></h6>" + rest + u"</li>\n";
    };
    sample.Listings = {
        listing(u"http://own.test/1"_s, u"<span class=\"address\">Viale Verdi, 1</span>"_s),
        listing(u"http://own.test/2"_s, u"<span class=\"address\">Via Po, 2</span>"_s),
        listing(u"http://own.test/3"_s, {}),
    };
    sample.Tail = u"<div class=\"vf_footer\"></div></body>"_s;
    sample.ListingMarker = u"<h6>"_s;
    sample.CountsExtracted = true;
    const auto page = [](const QString& name, const QString& street, const QString& locality,
                         const QString& rest) -> QString {
        return u"<h1 property=\"v:name\"> "_s + name + u" </h1><h3 class=\"lc_address\"><strong>" + street +
               u"</strong><strong>" + locality + u"</strong></h3>" + rest;
    };
    sample.Details = {
        {u"http://own.test/1"_s, page(u"<b>Bar</b> Uno"_s, u"SNC"_s, u"20097 San Donato (MI)"_s,
                                      u"tel: 02 1 <a href=\"/go;url=http://uno.test\">sito</a>fax: 02 2<"_s)},
        {u"http://own.test/2"_s,
         page(u"Due"_s, u"Via Po 2"_s, u"20121 Milano"_s,
              u"<p id=\"primoNumeroTel\"><strong> 02 3 </strong></p><a href=\"mailto: d@b.test \">"
              u"<a href=\"/go;url=http://adverts.test/free\">"_s)},
        {u"http://own.test/3"_s,
         u"<p class=\"lc_category\">Bar e <b>Caff\u00E8</b></a><h1 class=\"v:name\">Tre</h1>"_s},
    };
    sample.Details[u"http://own.test/3"_s].prepend(u"<a "_s);
    const auto map = [](const QString& query) -> QString { return u"http://maps.test/maps?q="_s + query; };
    sample.Leads = {
        {.Category = u"Bar"_s,
         .Name = u"Bar Uno"_s,
         .FullAddress = u"Viale Verdi, 20097  San Donato  (MI)"_s, // the short street is replaced
         .Street = u"Viale Verdi"_s,
         .City = u" San Donato "_s,
         .State = u"MI"_s,
         .PostalCode = u"20097"_s,
         .Country = u"Italy"_s,
         .Phone = u"02 1"_s,
         .Fax = u"02 2"_s,
         .Website = u"http://uno.test"_s,
         .MapLink = map(u"Viale+Verdi,+20097++San+Donato++(MI),Italy"_s),
         .DetailsLink = u"http://own.test/1"_s},
        {.Category = u"Bar"_s,
         .Name = u"Due"_s,
         .FullAddress = u"Via Po 2, 20121 Milano"_s,
         .Street = u"Via Po 2"_s,
         .PostalCode = u"20121"_s, // two words: neither town nor province
         .Country = u"Italy"_s,
         .Phone = u"02 3"_s,
         .Email = u"d@b.test"_s,
         .MapLink = map(u"Via+Po+2,+20121+Milano,Italy"_s),
         .DetailsLink = u"http://own.test/2"_s},
        {.Category = u"Bar e Caff\u00E8"_s,
         .Name = u"Tre"_s,
         .Country = u"Italy"_s,
         .DetailsLink = u"http://own.test/3"_s},
    };
    return sample;
}

namespace {

TEST(Virgilio, PassesOverLinksThatLeadNowhere) {
    HarvestBench bench(SiteCode::Virgilio);
    bench.Pages.EveryPage = u"<h1 class=\"v:name\">N</h1>"_s;
    QString page;
    for (const QString& link : {u"javascript:void(0)"_s, u"http://own.test/x?social=view"_s, u"http://own.test/?a=1"_s,
                                u"/own.test/1"_s, u"https://own.test/1"_s, u""_s, u"http://own.test/avoid"_s,
                                u"http://elsewhere.test/1"_s, u"http://own.test/1"_s})
        page += u"<h6> <a href=\""_s + link + u"\">x</a></h6>";
    GetYPVirgilioDataResults(bench.Job, page);
    EXPECT_EQ(bench.Pages.Fetched, QStringList{u"http://own.test/1"_s});
    EXPECT_EQ(bench.Leads.Count(), 1);
    // The website elsewhere has no name and is not kept; like the lead it refreshes the count, the others do not.
    EXPECT_EQ(bench.Status.TextsOf(1), (QStringList{u"0 items listed"_s, u"1 items listed"_s}));
}

TEST(Virgilio, ACategoryOfADetailsPageHoldsForTheListingsBehindIt) {
    HarvestBench bench(SiteCode::Virgilio);
    bench.Pages.Pages = {{u"http://own.test/1"_s, u"lc_category>Fiori</a v:name>A</h1>"_s},
                         {u"http://own.test/2"_s, u"v:name>B</h1>"_s}};
    GetYPVirgilioDataResults(bench.Job,
                             u"qs value=Bar><h6> href=\"http://own.test/1\"<h6> href=\"http://own.test/2\""_s);
    ASSERT_EQ(bench.Leads.Count(), 2);
    EXPECT_EQ(bench.Leads.At(1).Category, u"Fiori"_s);
    EXPECT_EQ(bench.State.MainCategory, u"Bar"_s);
}

TEST(Virgilio, TheCategoryComesFromTheSearchBox) {
    struct Case {
        QStringView Box;
        QStringView Category;
    };
    const Case cases[] = {
        {u"qs value=\"Bar  &amp; Caff\">", u"Bar & Caff"},
        {u"qs value=\"Bar    Caff\">", u"BarCaff"}, // four blanks are halved, and the pair that is left removed
        {u"qs value=\"Bar\" autocomplete=\"off\">", u"Bar"},
        {u"qs value=\"Cognome, Azienda o Parole chiave\">", u"Remembered"},
        {u"qs value=\"\">", u"Remembered"},
        {u"", u"Remembered"},
    };
    for (const Case& c : cases) {
        HarvestBench bench(SiteCode::Virgilio);
        bench.State.MainCategory = u"Remembered"_s;
        bench.Pages.EveryPage = u"v:name>A</h1>"_s;
        GetYPVirgilioDataResults(bench.Job, c.Box + u"<h6> href=\"http://own.test/1\""_s);
        ASSERT_EQ(bench.Leads.Count(), 1);
        EXPECT_EQ(bench.Leads.At(0).Category, c.Category.toString()) << c.Box.toUtf8().data();
    }
}

TEST(Virgilio, EndsWhenAListingDoesNotMoveOn) {
    HarvestBench bench(SiteCode::Virgilio);
    GetYPVirgilioDataResults(bench.Job, u"<h6><b>no blank, no link</b></h6>"_s);
    EXPECT_EQ(bench.Leads.Count(), 0);
}

TEST(Virgilio, ClicksTheFirstLinkThatGoesOn) {
    for (const bool found : {true, false}) {
        HarvestBench bench(SiteCode::Virgilio);
        ScriptedBrowser browser;
        browser.LinksOf = {
            {QString(), {{u"avanti"_s, {}}, {found ? u"x Avanti \u203A"_s : u"x"_s, {}}, {u"Avanti"_s, {}}}}};
        if (!found)
            browser.LinksOf[QString()].removeLast();
        PageTurn turn{bench.Job, browser};
        const TurnedPage turned = GetVirgilioNextURL(turn);
        EXPECT_EQ(turned.Clicked, found);
        EXPECT_EQ(turned.GoesOn, found);
        EXPECT_EQ(browser.Calls, found ? QStringList{u"click 1"_s} : QStringList());
        EXPECT_EQ(bench.Loop.Now(), found ? 3000 : 0);
    }
}

} // namespace

} // namespace Brindle::Test
