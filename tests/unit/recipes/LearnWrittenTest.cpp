#include "PrintTo.h"
#include "core/Errors.h"
#include "recipes/LearnRecipe.h"
#include "recipes/RecipeFile.h"
#include "recipes/RecipeReader.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString url = u"https://www.dir.example/pizza"_s;

// Eight businesses, each made of a form: %1 a letter, %2 a digit.
QString PageOf(const QString& form, const QString& before = {}, const QString& behind = {}) {
    QString html;
    for (int i = 0; i < 8; ++i)
        html += QString(form).replace(u"%1"_s, QChar(u'A' + i)).replace(u"%2"_s, QString::number(i));
    return before + html + behind;
}

struct Said {
    Field Column;
    QString Text;
};

LearnedRecipe Learn(const PageTree& page, const std::vector<Said>& said) {
    std::vector<RecipeExample> examples;
    examples.reserve(said.size());
    for (const Said& one : said)
        examples.push_back({.Column = one.Column, .Text = one.Text});
    return LearnRecipe(page, url, examples);
}

TEST(LearnRecipe, ExamplesAreFoundHoweverTheyAreWritten) {
    const QString card = u"<li class=hit><h3>Joe's Pizza %1</h3><p class=adr>%2 Main St<br>Springfield, IL 6270%2</p>"
                         u"<a href='tel:+1212555010%2'>(212) 555-010%2</a> <a class=w "
                         u"href='/out?url=https://www.joe%2.example/'>Website</a> <span class=m>info [at] "
                         u"joe%2 [dot] example</span></li>"_s;
    const struct {
        Said Example;
        Field Column;
        QString Fourth;
    } cases[] = {
        {{Field::BusinessName, u"JOES PIZZA B"_s}, Field::BusinessName, u"Joe's Pizza D"_s},
        {{Field::FullAddress, u"1 main st springfield il 62701"_s}, Field::City, u"Springfield"_s},
        {{Field::FullAddress, u"1 main st springfield il 62701"_s}, Field::State, u"IL"_s},
        {{Field::Phone, u"212.555.0101"_s}, Field::Phone, u"(212) 555-0103"_s},
        {{Field::Phone, u"212.555.0101"_s}, Field::DetailsLink, QString()},
        {{Field::Phone, u"+1 212 555 0101"_s}, Field::Phone, u"+12125550103"_s},
        {{Field::Website, u"joe1.example"_s}, Field::Website, u"https://www.joe3.example/"_s},
        {{Field::Website, u"http://joe1.example/?utm_source=dir"_s}, Field::Website, u"https://www.joe3.example/"_s},
        {{Field::Email, u"INFO@joe1.example"_s}, Field::Email, u"info@joe3.example"_s},
    };
    const PageTree page(PageOf(card));
    for (const auto& row : cases) {
        std::vector<Said> said{row.Example};
        if (row.Column != Field::BusinessName)
            said.push_back({Field::BusinessName, u"Joe's Pizza B"_s});
        try {
            const Recipe recipe = Learn(page, said).What;
            const RecipeReading reading = RecipeReader(recipe).Read(page, url);
            ASSERT_EQ(reading.Records.size(), 8U) << RecipeText(recipe).constData();
            EXPECT_EQ(reading.Records[3].Fields.At(int(row.Column)), row.Fourth) << RecipeText(recipe).constData();
        } catch (const Failure& failure) {
            ADD_FAILURE() << row.Example.Text.toStdString() << ": " << failure.what();
        }
    }
}

TEST(LearnRecipe, AnAddressIsReadFromItsParts) {
    const struct {
        const char* What;
        QString Html;
        std::vector<Said> Examples;
        Lead Fourth;
    } cases[] = {
        {"lines beside each other that nothing holds alone",
         PageOf(u"<div class=shop><b>Joe %1</b><span class=street>%2 Main St</span><span>Springfield, IL 6270%2</span>"
                u"<span class=tel>416-555-010%2</span></div>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::FullAddress, u"1 Main St, Springfield, IL 62701"_s}},
         {.Name = u"Joe D"_s,
          .FullAddress = u"3 Main St, Springfield, IL 62703"_s,
          .Street = u"3 Main St"_s,
          .City = u"Springfield"_s,
          .State = u"IL"_s,
          .PostalCode = u"62703"_s}},
        {"a line that is made of elements, and number where there is no address",
         PageOf(u"<div class=shop><b>Joe %1</b><div class=street>%2 Main St</div><div class=place><i>Springfield,</i> "
                u"<i>IL</i> <i>6270%2</i></div><div class=tel>416-555-010%2</div><div>open</div></div>"_s,
                u"<html lang=en-US>"_s)
             .replace(
                 u"<div class=street>6 Main St</div><div class=place><i>Springfield,</i> <i>IL</i> <i>62706</i></div>"_s,
                 QString()),
         {{Field::BusinessName, u"Joe B"_s}, {Field::FullAddress, u"1 Main St, Springfield, IL 62701"_s}},
         {.Name = u"Joe D"_s,
          .FullAddress = u"3 Main St, Springfield, IL 62703"_s,
          .Street = u"3 Main St"_s,
          .City = u"Springfield"_s,
          .State = u"IL"_s,
          .PostalCode = u"62703"_s}},
        {"a name that an address of the web repeats",
         PageOf(u"<h4>Joe and Sons %1</h4><p>Since 1984.</p><ul><li>%2 Main St, Springfield, IL 6270%2</li><li><a "
                u"href='http://joe-and-sons-%1.example'>joe-and-sons-%1.example</a></li></ul>"_s,
                u"<div class=list>"_s, u"</div>"_s),
         {{Field::BusinessName, u"Joe and Sons B"_s}, {Field::FullAddress, u"1 Main St, Springfield, IL 62701"_s}},
         {.Name = u"Joe and Sons D"_s,
          .FullAddress = u"3 Main St, Springfield, IL 62703"_s,
          .Street = u"3 Main St"_s,
          .City = u"Springfield"_s,
          .State = u"IL"_s,
          .PostalCode = u"62703"_s}},
        {"a label before each",
         PageOf(u"<div class=shop><b>Joe %1</b><p><i>Street:</i><u>Hauptstr. %2</u></p><p><i>Code:</i><u>8907%2</u></p>"
                u"<p><i>Town:</i><u>Ulm</u></p></div>"_s,
                u"<html lang=de-DE>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::FullAddress, u"Hauptstr. 1, 89071 Ulm"_s}},
         {.Name = u"Joe D"_s,
          .FullAddress = u"Hauptstr. 3, 89073 Ulm"_s,
          .Street = u"Hauptstr. 3"_s,
          .City = u"Ulm"_s,
          .PostalCode = u"89073"_s}},
        {"named part by part, in one text",
         PageOf(u"<div class=shop><b>Joe %1</b><p>%2 Main St, Springfield, IL 6270%2</p></div>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::Address, u"1 Main St"_s}, {Field::City, u"Springfield"_s}},
         {.Name = u"Joe D"_s,
          .FullAddress = u"3 Main St, Springfield, IL 62703"_s,
          .Street = u"3 Main St"_s,
          .City = u"Springfield"_s,
          .State = u"IL"_s,
          .PostalCode = u"62703"_s}},
        {"branches of one name",
         PageOf(u"<div class=shop><b>Joe's</b><p>%2 Main St, Springfield, IL 6270%2</p></div>"_s),
         {{Field::BusinessName, u"Joe's"_s}, {Field::FullAddress, u"1 Main St, Springfield, IL 62701"_s}},
         {.Name = u"Joe's"_s,
          .FullAddress = u"3 Main St, Springfield, IL 62703"_s,
          .Street = u"3 Main St"_s,
          .City = u"Springfield"_s,
          .State = u"IL"_s,
          .PostalCode = u"62703"_s}},
    };
    for (const auto& row : cases) {
        const PageTree page(row.Html);
        try {
            const Recipe recipe = Learn(page, row.Examples).What;
            EXPECT_EQ(ReadRecipe(RecipeText(recipe), u"learned"_s), recipe) << row.What;
            const RecipeReading reading = RecipeReader(recipe).Read(page, url);
            ASSERT_EQ(reading.Records.size(), 8U) << row.What << RecipeText(recipe).constData();
            for (const PageRecord& record : reading.Records)
                EXPECT_FALSE(record.Fields.FullAddress.contains(u"416-"_s)) << row.What;
            Lead fourth = reading.Records[3].Fields;
            fourth.Country = QString();
            EXPECT_EQ(fourth, row.Fourth) << row.What << "\n" << RecipeText(recipe).constData();
        } catch (const Failure& failure) {
            ADD_FAILURE() << row.What << ": " << failure.what();
        }
    }
}

TEST(LearnRecipe, BusinessesAloneAreRead) {
    const QString row =
        u"<tr><td>Joe %1</td><td>%2 Main St, Springfield, IL 6270%2</td><td>(212) 555-010%2</td></tr>"_s;
    const QString card = u"<li class=item><h3><a href='/b/%2'>Joe %1</a></h3><p>%2 Main St, Springfield, IL 6270%2</p>"
                         u"<p>(212) 555-010%2</p></li>"_s;
    const std::vector<Said> usual{{Field::BusinessName, u"Joe B"_s},
                                  {Field::FullAddress, u"1 Main St, Springfield, IL 62701"_s},
                                  {Field::Phone, u"(212) 555-0101"_s}};
    const struct {
        const char* What;
        QString Html;
        std::vector<Said> Examples;
    } cases[] = {
        {"a table whose head is a row like others",
         PageOf(row, u"<table><tr bgcolor=blue><td>Company</td><td>Address</td><td>Phone</td></tr>"_s, u"</table>"_s),
         usual},
        {"what a site says between its entries",
         PageOf(card, u"<ul class=list>"_s,
                u"<li class='item item-blog'><h3><a href='/blog/1'>7 tips for eating well</a></h3><p>Read it.</p></li>"
                u"<li class=item><h3>Sign up for our letter</h3></li></ul>"_s),
         usual},
        {"a bar of page numbers made like an entry",
         PageOf(u"<div><a href='b%2.html'>Joe %1</a><br>%2 Main St, Springfield, IL 6270%2<br>(212) 555-010%2</div>"_s,
                u"<main class=content>"_s,
                u"<div class=nav>1 <a href='p2.html'>2</a> <a href='p3.html'>3</a></div></main>"_s),
         usual},
        {"names of which some are no links",
         PageOf(card, u"<ul class=list>"_s, u"</ul>"_s)
             .replace(u"<a href='/b/4'>Joe E</a>"_s, u"Joe E"_s)
             .replace(u"<a href='/b/5'>Joe F</a>"_s, u"Joe F"_s),
         usual},
        {"towns beside several rows",
         PageOf(
             u"<tr><td rowspan=2 class=town>Town %1</td><td>Joe %1</td><td>%2 Main St</td><td>(212) 555-010%2</td></tr>"
             u"<tr><td>Ann %1</td><td>%2 Elm St</td><td>(212) 555-020%2</td></tr>"_s,
             u"<table>"_s, u"</table>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::Address, u"1 Main St"_s}, {Field::Phone, u"(212) 555-0101"_s}}},
    };
    for (const auto& each : cases) {
        const PageTree page(each.Html);
        try {
            const Recipe recipe = Learn(page, each.Examples).What;
            const RecipeReading reading = RecipeReader(recipe).Read(page, url);
            for (const PageRecord& record : reading.Records) {
                const Lead& lead = record.Fields;
                EXPECT_TRUE(lead.Name.startsWith(u"Joe "_s) || lead.Name.startsWith(u"Ann "_s)) << each.What;
                EXPECT_TRUE(lead.Street.contains(u"Main St"_s) || lead.Street.contains(u"Elm St"_s)) << each.What;
                EXPECT_TRUE(lead.Phone.startsWith(u"(212)"_s)) << each.What;
            }
            EXPECT_GE(reading.Records.size(), 8U) << each.What << RecipeText(recipe).constData();
        } catch (const Failure& failure) {
            ADD_FAILURE() << each.What << ": " << failure.what();
        }
    }
}

TEST(LearnRecipe, PaidEntriesOfAnotherMakeAreLearnedFromASecondExample) {
    const QString free =
        PageOf(u"<li class=hit><h3>Joe %1</h3><i class=tel>(212) 555-010%2</i></li>"_s, u"<ul>"_s, u"</ul>"_s);
    const QString paid = PageOf(u"<section class=top><h2>Ann %1</h2><p class=call>(212) 555-020%2</p></section>"_s);
    const PageTree page(paid + free);
    const auto example = [](Field column, const QString& text, int business) {
        return RecipeExample{.Column = column, .Text = text, .Business = business};
    };
    const LearnedRecipe learned =
        LearnRecipe(page, url,
                    {example(Field::BusinessName, u"Joe B"_s, 0), example(Field::Phone, u"(212) 555-0101"_s, 0),
                     example(Field::BusinessName, u"Ann C"_s, 1), example(Field::Phone, u"(212) 555-0202"_s, 1)});
    EXPECT_EQ(learned.What.Taught.Records, 16) << RecipeText(learned.What).constData();
    EXPECT_EQ(learned.What.Taught.Filled[int(Field::Phone)], 16);
}

TEST(LearnRecipe, WhatStandsElsewhereIsRefusedByName) {
    const QString card = u"<div class=shop><b>Joe %1</b><p>%2 Main St</p><i>(212) 555-010%2</i></div>"_s;
    const QString groups = PageOf(u"<section><h2>Trade %1</h2><div class=shop><b>Joe %1</b><i>(212) 555-010%2</i></div>"
                                  u"<div class=shop><b>Ann %1</b><i>(212) 555-020%2</i></div></section>"_s);
    const struct {
        QString Html;
        std::vector<Said> Examples;
        QString Reason;
    } cases[] = {
        {PageOf(card, u"<h3>Springfield</h3>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::FullAddress, u"1 Main St, Springfield"_s}},
         u"Full Address=1 Main St, Springfield: its parts stand on the page, but not one after the other in the record of a business"_s},
        {groups,
         {{Field::BusinessName, u"Joe B"_s}, {Field::Phone, u"(212) 555-0101"_s}, {Field::Category, u"Trade B"_s}},
         u"Category=Trade B: does not stand with the other examples in the record of one business"_s},
        {u"<pre>"_s +
             PageOf(u"Joe %1\n%2 Main St, Springfield, IL 6270%2, which is in the north\nTel: (212) 555-010%2\n\n"_s) +
             u"</pre>"_s,
         {{Field::BusinessName, u"Joe B"_s}, {Field::Phone, u"(212) 555-0101"_s}},
         u"Business Name=Joe B: stands in one text with much else, which nothing takes apart"_s},
    };
    for (const auto& row : cases) {
        try {
            const Recipe recipe = Learn(PageTree(row.Html), row.Examples).What;
            ADD_FAILURE() << row.Reason.toStdString() << RecipeText(recipe).constData();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Message(), row.Reason);
        }
    }
}

} // namespace
} // namespace Brindle
