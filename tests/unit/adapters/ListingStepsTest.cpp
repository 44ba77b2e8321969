#include "adapters/ListingSteps.h"

#include "HarvestBench.h"
#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle::Test {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr ListingRules rules{.Country = u"Italy", .MapCountry = u"Italy"};

TEST(ListingSteps, ALinkIsKnownWhateverItsCaseAndTheBlanksAroundIt) {
    HarvestBench bench(u"KVPE001002");
    Lead lead{.Name = u"A"_s, .DetailsLink = u" \thttp://a.test/\u00E9 \n"_s};
    EXPECT_FALSE(IsListed(bench.Job, lead.DetailsLink));
    EXPECT_TRUE(KeepLead(bench.Job, rules, lead));
    for (const QString& link : {u"http://a.test/\u00E9"_s, u"HTTP://A.TEST/\u00C9"_s, u"\r\n  http://a.test/\u00E9"_s,
                                u"http://A.test/\u00E9  "_s}) {
        EXPECT_TRUE(IsListed(bench.Job, link)) << link.toStdString();
        Lead again{.Name = u"B"_s, .DetailsLink = link};
        EXPECT_TRUE(KeepLead(bench.Job, rules, again));
    }
    EXPECT_EQ(bench.Leads.Count(), 1);
    EXPECT_FALSE(IsListed(bench.Job, u"http://a.test/\u00E9\u00A0"_s)); // no blank that trimming takes away
}

} // namespace

} // namespace Brindle::Test
