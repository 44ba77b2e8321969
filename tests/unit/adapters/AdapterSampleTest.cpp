#include "AdapterSample.h"

#include "PrintTo.h"
#include "adapters/Adapters.h"
#include "core/Errors.h"
#include "core/HarvestDriver.h"
#include "toolkit/Text.h"

#include <algorithm>
#include <gtest/gtest.h>

// What every adapter must do alike, on a small page of each.

namespace Brindle::Test {

using namespace Qt::Literals::StringLiterals;

void ReadAsDriver(HarvestBench& bench, const QString& page) {
    try {
        GetDataResults(bench.Job, page);
    } catch (const PageError&) {
        // The leads read so far stay.
    }
}

namespace {

class EveryAdapter : public testing::TestWithParam<AdapterSample> {
protected:
    const AdapterSample& sample = GetParam();
    HarvestBench bench{sample.Site, sample.Layout};

    void SetUp() override { bench.Pages.Pages = sample.Details; }

    // The leads of a page that is damaged from `damage` on: those of the listings before it must be whole.
    void ExpectWholeBefore(qsizetype damage, const QString& page) {
        HarvestBench damaged(sample.Site, sample.Layout);
        damaged.Pages.Pages = sample.Details;
        ReadAsDriver(damaged, page);
        for (qsizetype i = 0; i < sample.Listings.size() && sample.EndOf(i) <= damage; ++i) {
            ASSERT_GT(damaged.Leads.Count(), i) << "damaged at " << damage;
            ASSERT_EQ(damaged.Leads.At(i).Name, sample.Leads[i].Name) << "damaged at " << damage;
            ASSERT_EQ(damaged.Leads.At(i).FullAddress, sample.Leads[i].FullAddress) << "damaged at " << damage;
            ASSERT_EQ(damaged.Leads.At(i).Phone, sample.Leads[i].Phone) << "damaged at " << damage;
            ASSERT_EQ(damaged.Leads.At(i).DetailsLink, sample.Leads[i].DetailsLink) << "damaged at " << damage;
        }
    }
};

QStringList CountTexts(qsizetype from, qsizetype to) {
    QStringList texts;
    for (qsizetype n = from; n <= to; ++n)
        texts.append(u"%1 items listed"_s.arg(n));
    return texts;
}

TEST_P(EveryAdapter, ReadsItsListingsOnce) {
    ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.AllLeads(), sample.Leads);
    const auto count = static_cast<qsizetype>(sample.Leads.size());
    EXPECT_EQ(bench.Status.TextsOf(1), CountTexts(1, count));
    EXPECT_EQ(bench.State.ExtractedNum, sample.CountsExtracted ? count : 0);

    // The same listings on a later page: all of them are held already, whatever the case of their links.
    bench.Status.Panels.clear();
    ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.AllLeads(), sample.Leads);
    EXPECT_EQ(bench.State.ExtractedNum, sample.CountsExtracted ? count : 0);
    const QStringList repeated(sample.SkipsListedAtOnce ? 0 : count, u"%1 items listed"_s.arg(count));
    EXPECT_EQ(bench.Status.TextsOf(1), repeated);
}

TEST_P(EveryAdapter, ReadsNothingWithoutListings) {
    for (const QString& page : QStringList{QString(), sample.Head + sample.Tail, u"<BODY>no such page</BODY>"_s})
        ReadAsDriver(bench, page);
    bench.State.CurrSite = 3;
    const bool hasLayouts = MarkersOfVariant(SiteOfCode(sample.Site), 2).has_value();
    if (hasLayouts)
        ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.Leads.Count(), 0);
    EXPECT_TRUE(bench.Status.TextsOf(1).isEmpty());
}

TEST_P(EveryAdapter, StopsBetweenListings) {
    // The request comes in while messages are handled after the first listing was read: that one is kept.
    bench.Loop.Post(0, [this] { bench.State.ShouldStop = true; });
    ReadAsDriver(bench, sample.Page());
    ASSERT_EQ(bench.Leads.Count(), 1);
    EXPECT_EQ(bench.Leads.At(0), sample.Leads[0]);
}

TEST_P(EveryAdapter, DropsTheListingInHandWhenStoppedInAFetch) {
    if (sample.Details.isEmpty())
        GTEST_SKIP() << "fetches nothing";
    bench.Pages.OnFetch = [this] { bench.State.ShouldStop = bench.Pages.Fetched.size() >= 2; };
    ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.Leads.Count(), 1);
    EXPECT_EQ(bench.Status.TextsOf(1), CountTexts(1, 1));
}

TEST_P(EveryAdapter, SearchesWebsitesForMissingEmails) {
    ReadAsDriver(bench, sample.Page());
    EXPECT_TRUE(bench.Emails.Asked.isEmpty()) << "the option is off";

    HarvestBench searching(sample.Site, sample.Layout);
    searching.Pages.Pages = sample.Details;
    searching.Options.cExtractEmails = true;
    QStringList wanted;
    std::vector<Lead> leads = sample.Leads;
    for (Lead& lead : leads)
        if (lead.Email.isEmpty() && !lead.Website.isEmpty()) {
            wanted.append(lead.Website);
            lead.Email = u"found@"_s + QString::number(wanted.size());
            searching.Emails.Found.insert(lead.Website, lead.Email);
        }
    ReadAsDriver(searching, sample.Page());
    EXPECT_EQ(searching.Emails.Asked, wanted);
    EXPECT_EQ(searching.AllLeads(), leads);
}

TEST_P(EveryAdapter, TellsAPageThatItReadBeforeByItsRecords) {
    ReadAsDriver(bench, sample.Page());
    const PageRecords first = std::exchange(bench.Job.Records, {});
    EXPECT_EQ(first.Count(), sample.Listings.size());
    ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.Job.Records.Text(), first.Text());
    bench.Job.Records = {};
    ReadAsDriver(bench, sample.Head + sample.Listings.last() + sample.Tail);
    EXPECT_NE(bench.Job.Records.Text(), first.Text());
}

TEST_P(EveryAdapter, SavesAutomatically) {
    bench.Options.cExportAutomatic = true;
    bench.Options.eExportFolder = u"/out"_s;
    ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.Saver.Leads, sample.Leads);
    EXPECT_EQ(bench.Saver.Targets.value(0), u"/out|Results"_s);
    EXPECT_EQ(bench.Leads.Count(), 0);
    EXPECT_EQ(bench.Leads.DuplicatedItems.Count(), 0);

    // Nothing was remembered, so the same page is saved again.
    ReadAsDriver(bench, sample.Page());
    std::vector<Lead> twice = sample.Leads;
    twice.insert(twice.end(), sample.Leads.begin(), sample.Leads.end());
    EXPECT_EQ(bench.Saver.Leads, twice);

    // What the list holds is not saved.
    bench.Leads.DuplicatedItems.Add(UpperTrimmed(sample.Leads[0].DetailsLink));
    bench.Saver.Leads.clear();
    ReadAsDriver(bench, sample.Page());
    EXPECT_EQ(bench.Saver.Leads, std::vector<Lead>(sample.Leads.begin() + 1, sample.Leads.end()));
}

TEST_P(EveryAdapter, KeepsTheLeadThatCannotBeSaved) {
    bench.Options.cExportAutomatic = true;
    bench.Saver.Error = u"/out/Results.csv: disk full"_s;
    ReadAsDriver(bench, sample.Page());
    ASSERT_EQ(bench.Leads.Count(), 1);
    EXPECT_EQ(bench.Leads.At(0), sample.Leads[0]);
    EXPECT_TRUE(bench.State.ShouldStop);
    EXPECT_EQ(bench.Notices.Said, QStringList{bench.Saver.Error});
}

TEST_P(EveryAdapter, SurvivesAPageThatIsCutOff) {
    const QString page = sample.Page();
    for (qsizetype length = 0; length < page.size(); length += 97)
        ExpectWholeBefore(length, page.first(length));
    for (const qsizetype listing : {qsizetype(0), sample.Listings.size() - 1}) // and everywhere in these two
        for (qsizetype length = sample.EndOf(listing) - sample.Listings[listing].size(); length < sample.EndOf(listing);
             ++length)
            ExpectWholeBefore(length, page.first(length));
}

TEST_P(EveryAdapter, SurvivesDetailsPagesThatAreCutOff) {
    for (auto details = sample.Details.cbegin(); details != sample.Details.cend(); ++details)
        for (qsizetype length = 0; length < details->size(); length += 7) {
            HarvestBench damaged(sample.Site, sample.Layout);
            damaged.Pages.Pages = sample.Details;
            damaged.Pages.Pages[details.key()].truncate(length);
            ReadAsDriver(damaged, sample.Page());
            // The listings before it are not touched by it. (A page that is no listing's own belongs to one of them.)
            const bool isOwn = std::any_of(sample.Leads.begin(), sample.Leads.end(),
                                           [&](const Lead& lead) { return lead.DetailsLink == details.key(); });
            for (size_t i = 0; isOwn && i < sample.Leads.size() && sample.Leads[i].DetailsLink != details.key(); ++i)
                ASSERT_EQ(damaged.Leads.At(static_cast<qsizetype>(i)), sample.Leads[i]) << "cut off at " << length;
        }
}

TEST_P(EveryAdapter, SurvivesMissingTagsAndStrayMarkers) {
    const QString page = sample.Page();
    const QString stray = u"<DIV "_s + sample.ListingMarker + u'>';
    for (qsizetype at = page.indexOf(u'<'); at >= 0; at = page.indexOf(u'<', at + 1)) {
        const qsizetype end = page.indexOf(u'>', at);
        if (end > 0)
            ExpectWholeBefore(at, QString(page).remove(at, end - at + 1));
        ExpectWholeBefore(at, QString(page).insert(at, sample.ListingMarker));
        ExpectWholeBefore(at, QString(page).insert(at, stray));
    }
    for (const QString& noise : {sample.ListingMarker, stray, u"<"_s, u">"_s, u"\""_s, u"href=\""_s})
        ReadAsDriver(bench, noise.repeated(2000));
}

INSTANTIATE_TEST_SUITE_P(Directories, EveryAdapter,
                         testing::Values(SampleOfYellowPagesCanada1(), SampleOfYellowPagesCanada2(),
                                         SampleOfUsYellowPages1(), SampleOfUsYellowPages2(), SampleOfCanada411(),
                                         SampleOfPagineBianche1(), SampleOfPagineBianche2(), SampleOfPagineMail(),
                                         SampleOfInfobelItaly1(), SampleOfInfobelItaly2(), SampleOfVirgilio(),
                                         SampleOfTrovanumeri()),
                         [](const auto& info) { return info.param.Title.toStdString(); });

} // namespace

} // namespace Brindle::Test
