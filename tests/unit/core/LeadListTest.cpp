#include "HarvestBench.h"
#include "PrintTo.h"
#include "core/LeadListCommands.h"

#include <gtest/gtest.h>
#include <random>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::HarvestBench;

Lead SomeLead(int number) {
    Lead lead;
    lead.Name = u"Caffè %1"_s.arg(number);
    lead.DetailsLink = u"http://a.test/%1"_s.arg(number);
    return lead;
}

void List(LeadList& leads, const Lead& lead) {
    leads.DuplicatedItems.Add(DuplicateKeyOf(SiteCode::PagineMail, lead));
    leads.Append(lead);
}

TEST(LeadList, GivesBackWhatWasStored) {
    LeadList leads;
    std::mt19937 random(1);
    std::vector<Lead> expected;
    for (int row = 0; row < 300; ++row) {
        Lead lead;
        for (int column = 0; column < FieldCount; ++column) {
            const auto length = random() % (column == 3 ? 40'000 : 200);
            const char16_t top = u"\u007E\u00FF\uFFFF"[random() % 3];
            for (unsigned i = 0; i < length; ++i)
                lead.At(column).append(QChar(static_cast<char16_t>(random() % (top + 1U)))); // lone surrogates too
        }
        leads.Append(lead);
        expected.push_back(lead);
    }
    // Removing most of the rows makes the list move the others together.
    for (int round = 0; round < 4; ++round) {
        std::vector<qsizetype> removed;
        std::vector<Lead> kept;
        for (size_t row = 0; row < expected.size(); ++row) {
            if (random() % 2 == 0)
                removed.push_back(static_cast<qsizetype>(row));
            else
                kept.push_back(expected[row]);
        }
        leads.Remove(removed);
        expected = kept;
        ASSERT_EQ(leads.Count(), static_cast<qsizetype>(expected.size()));
        for (size_t row = 0; row < expected.size(); ++row) {
            ASSERT_EQ(leads.At(static_cast<qsizetype>(row)), expected[row]);
            ASSERT_EQ(leads.FieldAt(static_cast<qsizetype>(row), Field::MapLink), expected[row].MapLink);
        }
    }
    leads.Clear();
    EXPECT_EQ(leads.Count(), 0);
    EXPECT_EQ(leads.StoredBytes(), 0U);
}

TEST(DuplicateKey, IsUpperCasedAndTrimmed) {
    const Lead lead{.Name = u"Bar "_s, .DetailsLink = u" http://a.test/é "_s};
    EXPECT_EQ(DuplicateKeyOf(SiteCode::PagineMail, lead), u"HTTP://A.TEST/É"_s);
    EXPECT_EQ(DuplicateKeyOf(u"YPSE006001", lead), u"HTTP://A.TEST/É BAR"_s);
}

TEST(DeleteSelected, TakesTheRowsAndOneKeyEach) {
    HarvestBench bench(SiteCode::PagineMail);
    bench.Texts.Set(Message::ConfirmDeleteSelected, u"Really?"_s);
    for (const int number : {1, 2, 2, 3})
        List(bench.Leads, SomeLead(number));
    bench.Leads.Append(SomeLead(4)); // its key is not held
    const std::vector<qsizetype> rows{1, 4};

    bench.Notices.Answer = false;
    EXPECT_FALSE(
        DeleteSelected(bench.Leads, rows, bench.State.CurrID, bench.Texts, bench.Notices, bench.Loop, bench.Status));
    EXPECT_EQ(bench.Leads.Count(), 5);
    bench.Notices.Answer = true;
    EXPECT_TRUE(
        DeleteSelected(bench.Leads, rows, bench.State.CurrID, bench.Texts, bench.Notices, bench.Loop, bench.Status));
    EXPECT_EQ(bench.Leads.Count(), 3);
    EXPECT_EQ(bench.Leads.DuplicatedItems.Count(), 3);
    // The other lead with the same key keeps its entry, so the lead still counts as a duplicate.
    EXPECT_TRUE(bench.Leads.DuplicatedItems.Contains(DuplicateKeyOf(SiteCode::PagineMail, SomeLead(2))));
    EXPECT_EQ(bench.Status.Last(1), u"3 items listed"_s);
    EXPECT_EQ(bench.Notices.Said, (QStringList{u"Really?"_s, u"Really?"_s}));
}

TEST(DeleteAll, LeavesNoKeys) {
    HarvestBench bench(SiteCode::PagineMail);
    List(bench.Leads, SomeLead(1));
    bench.Notices.Answer = false;
    EXPECT_FALSE(DeleteAll(bench.Leads, bench.Texts, bench.Notices, bench.Loop, bench.Status));
    EXPECT_EQ(bench.Leads.Count(), 1);
    bench.Notices.Answer = true;
    EXPECT_TRUE(DeleteAll(bench.Leads, bench.Texts, bench.Notices, bench.Loop, bench.Status));
    EXPECT_EQ(bench.Leads.Count(), 0);
    EXPECT_FALSE(bench.Leads.DuplicatedItems.Contains(DuplicateKeyOf(SiteCode::PagineMail, SomeLead(1))));
    EXPECT_EQ(bench.Status.Last(1), u"0 items listed"_s);
}

} // namespace
} // namespace Brindle
