#include "page/Selector.h"
#include "recipes/PageAsides.h"
#include "recipes/RecipeFile.h"
#include "recipes/RecipeReader.h"
#include "recipes/RecordSpans.h"
#include "recipes/SturdySelectors.h"

#include <gtest/gtest.h>

// What recipes are made of, each by itself.

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString url = u"https://www.dir.example/pizza?page=2"_s;

Recipe RecipeOf(const QByteArray& rest) {
    return ReadRecipe("name = \"Dir\"\nhome = \"https://dir.example\"\n" + rest, u"test"_s);
}

TEST(RecipePattern, CutsOutAndBoundsWhatItCosts) {
    const struct {
        QString Pattern, Text, Value;
        RecipePattern::Outcome Outcome;
    } cases[] = {
        {{}, u"Tel. 5"_s, u"Tel. 5"_s, RecipePattern::Outcome::Matched},
        {u"\\d+"_s, u"Tel. 55, 66"_s, u"55"_s, RecipePattern::Outcome::Matched},
        {u"Tel\\. (\\d)(\\d)"_s, u"Tel. 55"_s, u"5"_s, RecipePattern::Outcome::Matched},
        {u"\\d+"_s, u"none"_s, {}, RecipePattern::Outcome::NotMatched},
        {u"^\\w+$"_s, u"Übergröße"_s, u"Übergröße"_s, RecipePattern::Outcome::Matched},
        {u"^(a+)+$"_s, u"a"_s.repeated(60) + u'!', {}, RecipePattern::Outcome::TooCostly},
        // Limits of its own may only be lower.
        {u"(*LIMIT_MATCH=4000000000)^(a+)+$"_s, u"a"_s.repeated(60) + u'!', {}, RecipePattern::Outcome::TooCostly},
        // Behind so much text there is no field.
        {u"\\d"_s, u"a"_s.repeated(5000) + u'1', {}, RecipePattern::Outcome::NotMatched},
    };
    for (const auto& row : cases) {
        QString text = row.Text;
        EXPECT_EQ(RecipePattern(row.Pattern).Apply(text), row.Outcome) << row.Pattern.toStdString();
        EXPECT_EQ(text, row.Value) << row.Pattern.toStdString();
    }
    EXPECT_EQ(RecipePattern::ProblemOf({}), QString());
    EXPECT_EQ(RecipePattern::ProblemOf(u"a(b)"_s), QString());
    EXPECT_TRUE(RecipePattern::ProblemOf(u"ab(c"_s).endsWith(u", at character 5"_s))
        << RecipePattern::ProblemOf(u"ab(c"_s).toStdString();
    EXPECT_FALSE(RecipePattern::ProblemOf(u"a"_s.repeated(501)).isEmpty());
}

TEST(RecordSpans, RecordsWithinOthersAreNone) {
    const PageTree page(u"<dl><dt>A<dd>1<dl><dt>in A<dd>2</dl><dt>B<dd>3</dl><dl><dt>C<dd>4</dl>"_s);
    const auto texts = [&](const QString& selector, bool flat) {
        const PageLines lines(page);
        QStringList all;
        for (const RecordSpan& span : RecordSpans(page, Selector::Parse(selector).SelectAll(page), flat))
            all << ShownText(lines, span.Begin, span.End, u" ");
        return all.join(u" | ").toStdString();
    };
    EXPECT_EQ(texts(u"dt"_s, true), "A 1 in A 2 | B 3 | C 4");
    EXPECT_EQ(texts(u"dt"_s, false), "A | in A | B | C");
    EXPECT_EQ(texts(u"dl"_s, false), "A 1 in A 2 B 3 | C 4");
    EXPECT_EQ(texts(u"b"_s, true), "");
}

TEST(PageAsides, WhatStandsBesideTheList) {
    const PageTree page(u"<nav><i>1</i></nav><div class='Side-Bar left'><p><i>1</i></p></div><main><i>0</i><div "
                        "class=related-items><i>1</i></div><i class=considered>0</i></main><aside><i>1</i></aside><i>0"
                        "</i><footer><i>1</i></footer>"_s);
    const std::vector<char> aside = NodesAside(page);
    int seen = 0;
    for (NodeIndex node = 0; node < page.Count(); ++node)
        if (page.Is(node, u"i")) {
            EXPECT_EQ(aside[static_cast<size_t>(node)] != 0, page.Text(node + 1) == u"1") << ++seen;
        }
}

TEST(RecipeReader, ALinkThatLeadsNowhereMayBeAButtonForMore) {
    const struct {
        QString Html;
        bool Button;
    } cases[] = {
        {u"<button class=n>More</button>"_s, true},
        {u"<a class=n href='#'>More</a>"_s, true},
        {u"<a class=n>More</a>"_s, true},
        {u"<div class=n role=button>More</div>"_s, true},
        {u"<input class=n type=button value=More>"_s, true},
        {u"<input class=n type=text>"_s, false},
        {u"<div class=n>More</div>"_s, false},
        {u"<a class=n href='?page=3'>More</a>"_s, false},
        {u"<a class=n href='?page=2'>This</a>"_s, false},
    };
    const RecipeReader reader(RecipeOf("next = '.n'\n[list]\nrecords = 'li'\n[fields]\n\"Business Name\" = 'b'\n"));
    for (const auto& row : cases)
        EXPECT_EQ(reader.Read(PageTree(row.Html), url).LoadMore, row.Button ? u".n"_s : QString())
            << row.Html.toStdString();
}

TEST(RecipeReader, CountsAreWhatWasFilledOnAllPages) {
    const RecipeReader reader(RecipeOf("[list]\nrecords = 'li'\n[fields]\n\"Business Name\" = 'b'\nPhone = 'i'\n"));
    const auto counts = [&](const QString& html) { return reader.Read(PageTree(html), url).Counts; };
    RecipeCounts sum = counts(u"<li><b>A</b><i>1</i><li><b>B</b><li><i>2</i>"_s);
    EXPECT_EQ(sum.Records, 2) << "what has no name is no record";
    EXPECT_EQ(sum.Filled[size_t(Field::Phone)], 1);
    AddCounts(sum, counts(u"<li><b>C</b><i>3</i>"_s));
    EXPECT_EQ(sum.Records, 3);
    EXPECT_EQ(sum.Filled[size_t(Field::BusinessName)], 3);
    EXPECT_EQ(sum.Filled[size_t(Field::Phone)], 2);
}

TEST(RecipeReader, RowsReadWhatTheyName) {
    // One list in three makes; each recipe reads the same businesses.
    const struct {
        QByteArray Rows;
        QString Html;
    } cases[] = {
        {"records = '.card'\n[fields]\n\"Business Name\" = 'h2'\nPhone = '[href^=\"tel:\"]'\n\"Full Address\" = "
         "{ selector = 'p', split_address = true }\nWebsite = 'a.w'\n",
         u"<div class=card><h2>Ann</h2><p>1 Elm St<br>Salem, OR 97301</p><a href='tel:503-555-0101'>503-555-0101</a> "
         "<a class=w href='https://ann.example/'>Web</a></div><div class=card><h2>Bob</h2><p>2 Elm St, Salem, OR "
         "97302</p></div>"_s},
        {"records = 'tr:has(td)'\n[fields]\n\"Business Name\" = 'td:nth-child(1)'\nPhone = 'td:nth-child(2)'\n\"Full "
         "Address\" = { selector = 'td:last-child', split_address = true }\nWebsite = 'td a'\n",
         u"<table><tr><th>Name<th>Phone<th>Address<tr><td><a href='https://ann.example/'>Ann</a><td>503-555-0101<td>1 "
         "Elm St, Salem, OR 97301<tr><td>Bob<td><td>2 Elm St, Salem, OR 97302</table>"_s},
        {"records = 'dt'\nflat = true\n[fields]\n\"Business Name\" = 'dt'\nPhone = { selector = 'dd', pattern = "
         "'^Tel\\. (.+)' }\n\"Full Address\" = { selector = 'dd:nth-of-type(1)', split_address = true }\nWebsite = 'dd "
         "a'\n",
         u"<dl><dt>Ann<dd>1 Elm St, Salem, OR 97301<dd>Tel. 503-555-0101<dd><a href='https://ann.example/'>Web</a></dl>"
         "<dl><dt>Bob<dd>2 Elm St, Salem, OR 97302</dl>"_s},
    };
    for (const auto& row : cases) {
        const RecipeReader reader(RecipeOf("country = 'US'\n[list]\n" + row.Rows));
        QStringList read;
        for (const PageRecord& record : reader.Read(PageTree(row.Html), url).Records) {
            const Lead& lead = record.Fields;
            read << QStringList{lead.Name,  lead.Phone,      lead.Street, lead.City,
                                lead.State, lead.PostalCode, lead.Website}
                        .join(u'/');
        }
        EXPECT_EQ(read.join(u" | ").toStdString(), "Ann/503-555-0101/1 Elm St/Salem/OR/97301/https://ann.example/ | "
                                                   "Bob//2 Elm St/Salem/OR/97302/")
            << row.Rows.constData();
    }
}

} // namespace
} // namespace Brindle
