#include "export/MergeLeads.h"

#include "PrintTo.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

Lead Business(const QString& name, const QString& phone, const QString& address, const QString& link,
              const QString& email = {}) {
    Lead lead;
    lead.Name = name;
    lead.Phone = phone;
    lead.FullAddress = address;
    lead.DetailsLink = link;
    lead.Email = email;
    return lead;
}

TEST(LeadMerger, TheNewestLeadOfABusinessWins) {
    const QString one = u"http://one.test/a"_s;
    struct Case {
        const char* What;
        Lead First;
        Lead Second;
        bool Same;
    };
    const Case cases[]{
        {"same link", Business(u"A"_s, u"1"_s, {}, one), Business(u"B"_s, u"2"_s, {}, one), true},
        {"same link, written otherwise", Business(u"A"_s, {}, {}, one),
         Business(u"A"_s, {}, {}, u"https://www.one.test/a/#top"_s), true},
        {"another directory, same name and phone", Business(u"Café  Ünal"_s, u"030 123456"_s, {}, one),
         Business(u"CAFE UNAL"_s, u"030/123456"_s, {}, u"http://two.test/9"_s), true},
        {"another directory, same name and address", Business(u"A"_s, {}, u"Main St. 1, X"_s, one),
         Business(u"a"_s, u"030 123456"_s, u"main st 1 x"_s, u"http://two.test/9"_s), true},
        {"two pages of one directory are two businesses", Business(u"A"_s, u"030 123456"_s, {}, one),
         Business(u"A"_s, u"030 123456"_s, {}, u"http://one.test/b"_s), false},
        {"a name alone says nothing", Business(u"A"_s, {}, {}, {}), Business(u"A"_s, {}, {}, {}), false},
        {"other phone", Business(u"A"_s, u"030 123456"_s, {}, {}), Business(u"A"_s, u"030 123457"_s, {}, {}), false},
    };
    for (const Case& each : cases) {
        LeadMerger merger;
        const Lead other = Business(u"Other"_s, u"040 999999"_s, {}, u"http://one.test/other"_s);
        merger.Add(each.First);
        merger.Add(other);
        merger.Add(each.Second);
        const std::vector<Lead> expected =
            each.Same ? std::vector{each.Second, other} : std::vector{each.First, other, each.Second};
        EXPECT_EQ(merger.Leads(), expected) << each.What;
        EXPECT_EQ(merger.Duplicates(), each.Same ? 1 : 0) << each.What;
    }
}

} // namespace
} // namespace Brindle
