#include "core/BusinessKey.h"

#include <gtest/gtest.h>

using namespace Brindle;
using namespace Qt::StringLiterals;

namespace {

Lead LeadOf(const QString& name, const QString& phone, const QString& address, const QString& link = {}) {
    Lead lead;
    lead.Name = name;
    lead.Phone = phone;
    lead.FullAddress = address;
    lead.DetailsLink = link;
    return lead;
}

} // namespace

TEST(BusinessKey, SameBusinessWrittenDifferently) {
    const std::pair<Lead, Lead> same[] = {
        {LeadOf({}, {}, {}, u"https://www.Dir.test/Entry-7/"_s), LeadOf({}, {}, {}, u" http://dir.test/entry-7#map"_s)},
        {LeadOf(u"Caffè D'Oro S.r.l."_s, u"+39 02 1234567"_s, {}), LeadOf(u"CAFFE D’ORO SRL"_s, u"02/1234567"_s, {})},
        {LeadOf(u"Straße & Söhne"_s, u"(604) 555-0100 ext. 12"_s, {}),
         LeadOf(u"strasse söhne"_s, u"1-604-555-0100; 604-555-0199"_s, {})},
        {LeadOf(u"Ａｃｍｅ"_s, {}, u"1 Main St., Vancouver, BC"_s), LeadOf(u"Acme"_s, {}, u"1 main st Vancouver BC"_s)},
    };
    for (const auto& [a, b] : same) {
        EXPECT_FALSE(BusinessKey(a).isEmpty());
        EXPECT_EQ(BusinessKey(a), BusinessKey(b));
    }
}

TEST(BusinessKey, DifferentBusinessesStayApart) {
    const std::pair<Lead, Lead> different[] = {
        {LeadOf(u"A"_s, {}, {}, u"http://dir.test/?id=1"_s), LeadOf(u"A"_s, {}, {}, u"http://dir.test/?id=2"_s)},
        {LeadOf(u"Pizza"_s, u"604-555-0100"_s, {}), LeadOf(u"Pizza"_s, u"604-555-0101"_s, {})},
        {LeadOf(u"Pizza"_s, u"604-555-0100"_s, {}), LeadOf(u"Pasta"_s, u"604-555-0100"_s, {})},
        {LeadOf(u"Pizza"_s, {}, u"1 Main St"_s), LeadOf(u"Pizza"_s, {}, u"2 Main St"_s)},
        // A phone never meets an address of the same characters.
        {LeadOf(u"A"_s, u"12345678"_s, {}), LeadOf(u"A"_s, {}, u"12345678"_s)},
    };
    for (const auto& [a, b] : different)
        EXPECT_NE(BusinessKey(a), BusinessKey(b)) << BusinessKey(a).toStdString();
    // Nothing to go by.
    EXPECT_EQ(BusinessKey(LeadOf(u"Pizza"_s, u"n/a"_s, u" - "_s)), QString());
    EXPECT_EQ(BusinessKey(LeadOf(u"!!"_s, u"604-555-0100"_s, u"1 Main St"_s)), QString());
}

TEST(BusinessKey, EveryKeyStrongestFirst) {
    const Lead lead = LeadOf(u"Acme"_s, u"604-555-0100"_s, u"1 Main St"_s, u"http://dir.test/e/1"_s);
    const QStringList keys = BusinessKeys(lead);
    ASSERT_EQ(keys.size(), 3);
    EXPECT_EQ(keys[0], BusinessKey(lead));
    Lead elsewhere = lead;
    elsewhere.DetailsLink = u"http://other.test/9"_s;
    EXPECT_EQ(BusinessKeys(elsewhere).sliced(1), keys.sliced(1));
    // Where the entries of a directory share one link, the name tells them apart.
    Lead neighbour = LeadOf(u"Bolt"_s, {}, {}, lead.DetailsLink);
    EXPECT_NE(BusinessKeys(neighbour, false), BusinessKeys(lead, false).first(1));
    EXPECT_EQ(BusinessKeys(neighbour).first(1), keys.first(1));
}
