#include "adapters/FieldTable.h"

#include "PrintTo.h"
#include "toolkit/Markup.h"

#include <gtest/gtest.h>

namespace Brindle::Test {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr Marker street(u"street>");
constexpr Marker town(u"town>");
constexpr Marker region(u"region>");
constexpr Marker paren(u"(");
constexpr Marker parenEnd(u")");
constexpr Marker tagBegin(u"<");
constexpr Marker hyphen(u"-");
constexpr Marker code(u"code>");
constexpr Marker next(u"next>");

constexpr FieldRow rows[] = {
    {.From = street, .To = tagBegin, .Target = &Lead::Street, .Treatment = CleanMarkup, .Separator = u""},
    {.From = town,
     .To = paren,
     .Target = &Lead::City,
     .Treatment = CleanMarkup,
     .Separator = u" / ",
     .OnlyBetween = true},
    {.From = paren, .To = parenEnd, .Target = &Lead::State, .AsAbove = true},
    {.From = code, .To = tagBegin, .Target = &Lead::PostalCode, .Separator = u" - ", .Test = hyphen, .FromStart = true},
    {.From = region, .To = tagBegin},
    {.From = tagBegin, .To = hyphen, .Target = &Lead::Fax, .Treatment = StripAndClean, .AsAbove = true},
};

TEST(FieldTable, ReadsRowByRow) {
    struct Case {
        QString Page;
        Lead Expected;
    };
    const Case cases[] = {
        {u"nothing"_s, {.Fax = u"kept"_s}},
        {u"street> A&amp;B <town> T (PR)"_s,
         {.FullAddress = u"A&B / T"_s, .Street = u"A&B"_s, .City = u"T"_s, .State = u"PR"_s, .Fax = u"kept"_s}},
        // The separator is left out where nothing stands before it; the row below goes with the row above.
        {u"town>T(PR)"_s, {.FullAddress = u"T"_s, .City = u"T"_s, .State = u"PR"_s, .Fax = u"kept"_s}},
        {u"(PR)"_s, {.Fax = u"kept"_s}},
        // A row can ask for another marker than its own, and is then empty without its own.
        {u"- street>A<"_s, {.FullAddress = u"A - "_s, .Street = u"A"_s, .Fax = u"kept"_s}},
        // It can look on the whole page again; what follows goes on from there.
        {u"code>12-3<street>A<"_s,
         {.FullAddress = u"A - 12-3"_s, .Street = u"A"_s, .PostalCode = u"12-3"_s, .Fax = u"kept"_s}},
        // A row without a target moves the cursor.
        {u"region>x<&nbsp;1<b></b> 2-"_s, {.FullAddress = u" - "_s, .Fax = u"1 2"_s}},
        // Tests are case-sensitive, cuts are not.
        {u"TOWN>T(PR)"_s, {.Fax = u"kept"_s}},
        {u"TOWN>S(QR) town>T(PR)"_s, {.FullAddress = u"S"_s, .City = u"S"_s, .State = u"QR"_s, .Fax = u"kept"_s}},
    };
    for (const Case& row : cases) {
        WorkingText text(row.Page);
        Lead lead{.Fax = u"kept"_s};
        ReadFields(text, rows, lead);
        EXPECT_EQ(lead, row.Expected) << row.Page.toStdString();
    }
}

TEST(FieldTable, LeavesTheFieldsOfTheNextListing) {
    const QString page = u"street>A<next>street>B<town>T(PR)"_s;
    WorkingText text(page);
    Lead first;
    ReadFields(text, rows, first, &next);
    EXPECT_EQ(first, (Lead{.FullAddress = u"A"_s, .Street = u"A"_s}));
    text.TakeBetween(next, street);
    Lead second;
    ReadFields(text, rows, second, &next);
    EXPECT_EQ(second.FullAddress, u"B / T"_s);
}

} // namespace
} // namespace Brindle::Test
