#include "recipes/LearnRecipe.h"

#include "PrintTo.h"
#include "core/Errors.h"
#include "recipes/RecipeFile.h"
#include "recipes/RecipeReader.h"
#include "recipes/SturdySelectors.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString url = u"https://www.dir.example/pizza?page=2"_s;

// A page of ten businesses, each made of a form: %1 a letter, %2 a digit.
QString PageOf(const QString& form, const QString& before = {}, const QString& behind = {}, int count = 10) {
    QString html = before;
    for (int i = 0; i < count; ++i)
        html += QString(form).replace(u"%1"_s, QChar(u'A' + i % 26)).replace(u"%2"_s, QString::number(i));
    return html + behind;
}

TEST(LearnRecipe, OneBusinessTellsHowAllAreRead) {
    struct Example {
        Field Column;
        QString Text;
        int Business = 0;
    };
    const struct {
        const char* What;
        QString Html;
        std::vector<Example> Examples;
        int Records;
        Lead Expected; // the fourth record
    } cases[] = {
        {"cards with names that a build made",
         PageOf(u"<div class='css-1x2y%2z card'><h3 class='sc-bdVaJa'><a href='/biz/%2'>Joe %1</a></h3><p "
                u"class='e1d2'>%2 Main "
                u"St<br>Ulm</p><a href='tel:+49731555%2'>call</a></div>"_s),
         {{Field::BusinessName, u"Joe C"_s},
          {Field::Phone, u"+497315552"_s},
          {Field::FullAddress, u"2 Main St, Ulm"_s}},
         10,
         {.Name = u"Joe D"_s,
          .FullAddress = u"3 Main St, Ulm"_s,
          .Phone = u"+497315553"_s,
          .DetailsLink = u"https://www.dir.example/biz/3"_s}},
        {"nothing but names that a build made",
         PageOf(u"<div class='css-1x7k2p%2'><div class=sc-gKsewC><a href='/biz/%2'>Joe %1</a></div><div "
                u"class=css-9dk2m1><a "
                u"href='tel:555-01%2'>555-01%2</a></div></div>"_s,
                u"<div id=__root><header><a href='/'>Home</a></header><main><div class=css-k008qs>"_s,
                u"</div></main><footer><div><a href='/a'>About</a></div></footer></div>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::Phone, u"555-011"_s}},
         10,
         {.Name = u"Joe D"_s, .Phone = u"555-013"_s, .DetailsLink = u"https://www.dir.example/biz/3"_s}},
        {"a list beside it of the same make",
         PageOf(u"<div class=item><b><a href='/biz/%2'>Joe %1</a></b><i>555-01%2</i></div>"_s, u"<main><section>"_s,
                u"</section></main>"_s) +
             PageOf(u"<div class=item><b><a href='/biz/x%2'>Bob %1</a></b></div>"_s, u"<div>"_s, u"</div>"_s, 4),
         {{Field::BusinessName, u"Joe B"_s}, {Field::Phone, u"555-011"_s}},
         10,
         {.Name = u"Joe D"_s, .Phone = u"555-013"_s, .DetailsLink = u"https://www.dir.example/biz/3"_s}},
        {"articles, one of which holds two branches",
         PageOf(
             u"<article><div class='row vcard'><h3 class=n><a href='/biz/%2'>Joe %1</a></h3><i class=tel>555-01%2</i></div></article>"_s)
             .replace(u"<article><div class='row vcard'><h3 class=n><a href='/biz/6"_s,
                      u"<article class=bulk><h2>Joe G</h2><div class='row vcard'><h3 class=n><a href='/biz/6"_s)
             .replace(u"<i class=tel>555-016</i></div></article><article>"_s, u"<i class=tel>555-016</i></div>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::Phone, u"555-011"_s}},
         10,
         {.Name = u"Joe D"_s, .Phone = u"555-013"_s, .DetailsLink = u"https://www.dir.example/biz/3"_s}},
        {"a table with a head",
         PageOf(u"<tr><td>%2</td><td>Joe %1</td><td>Tel. 0731-5550%2</td></tr>"_s,
                u"<table><tr><th>No</th><th>Name</th><th>Phone</th></tr>"_s, u"</table>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::Phone, u"0731-55501"_s}},
         10,
         {.Name = u"Joe D"_s, .Phone = u"0731-55503"_s}},
        {"labels before values, which are not always there",
         PageOf(u"<li class=hit><b>Joe %1</b><dl><dt>Town</dt><dd>Ulm</dd><dt>Phone</dt><dd>0731 555 %2</dd></dl></li>"
                u"<li class=hit><b>Ann %1</b><dl><dt>Phone</dt><dd>0731 556 %2</dd></dl></li>"_s),
         {{Field::BusinessName, u"Joe A"_s}, {Field::Phone, u"0731 555 0"_s}},
         20,
         {.Name = u"Ann B"_s, .Phone = u"0731 556 1"_s}},
        {"paid and free ones, of which an example is given each",
         PageOf(u"<div class='item paid'><h2>Joe %1</h2><i class=tel>555-01%2</i></div><div class='item'><h2>Ann "
                u"%1</h2><i class=tel>555-02%2</i></div>"_s,
                u"<div class=list>"_s, u"</div>"_s),
         {{Field::BusinessName, u"Joe A"_s}, {Field::BusinessName, u"Ann B"_s, 1}},
         20,
         {.Name = u"Ann B"_s}},
        {"a side list of the same make",
         PageOf(u"<li class=card><h2>Joe %1</h2><i>555-01%2</i></li>"_s, u"<ul class=results>"_s, u"</ul>"_s) +
             PageOf(u"<li class=card><h2>Bob %1</h2></li>"_s, u"<div class=sidebar><ul class=seen>"_s, u"</ul></div>"_s,
                    4),
         {{Field::BusinessName, u"Joe A"_s}, {Field::Phone, u"555-010"_s}},
         10,
         {.Name = u"Joe D"_s, .Phone = u"555-013"_s}},
        {"a number before the name, a part of an address, a website by its text",
         PageOf(u"<article><h4>%2. Joe %1</h4><p>%2 Main St, Ulm, Bavaria</p><a "
                u"href='http://joe%2.example/'>joe%2.example</a>"
                u"</article>"_s),
         {{Field::BusinessName, u"Joe C"_s}, {Field::City, u"Ulm"_s}, {Field::Website, u"www.joe2.example"_s}},
         10,
         {.Name = u"Joe D"_s, .City = u"Ulm"_s, .Website = u"http://joe3.example/"_s}},
        {"a definition list that nothing holds together",
         PageOf(u"<dt><a href='/biz/%2'>Joe %1</a></dt><dd class=trade>Pizza</dd><dd>Tel. 0731 55 1%2</dd>"_s,
                u"<dl>"_s, u"</dl>"_s),
         {{Field::BusinessName, u"Joe B"_s}, {Field::Category, u"Pizza"_s}, {Field::Phone, u"0731 55 11"_s}},
         10,
         {.Category = u"Pizza"_s,
          .Name = u"Joe D"_s,
          .Phone = u"0731 55 13"_s,
          .DetailsLink = u"https://www.dir.example/biz/3"_s}},
        {"what stands in structured data alone",
         PageOf(u"{\"@type\":\"Hotel\",\"name\":\"Joe %1\",\"telephone\":\"555-01%2\"},"_s,
                u"<script type='application/ld+json'>["_s, u"]</script><div id=app></div>"_s),
         {{Field::BusinessName, u"Joe A"_s}, {Field::Phone, u"555-010"_s}},
         10,
         {.Category = u"Hotel"_s, .Name = u"Joe D"_s, .Phone = u"555-013"_s}},
    };
    for (const auto& row : cases) {
        std::vector<RecipeExample> examples;
        for (const Example& example : row.Examples)
            examples.push_back({.Column = example.Column, .Text = example.Text, .Business = example.Business});
        const PageTree page(row.Html);
        try {
            const Recipe recipe = LearnRecipe(page, url, examples).What;
            EXPECT_EQ(ReadRecipe(RecipeText(recipe), u"learned"_s), recipe) << row.What;
            const RecipeReading reading = RecipeReader(recipe).Read(page, url);
            ASSERT_EQ(reading.Records.size(), size_t(row.Records)) << row.What << RecipeText(recipe).constData();
            Lead lead = reading.Records[3].Fields;
            // Parts are another's work.
            if (!recipe.Fields.empty() && !row.Expected.FullAddress.isEmpty())
                lead.Street = lead.City = lead.PostalCode = lead.Country = lead.State = QString();
            EXPECT_EQ(lead, row.Expected) << row.What << "\n" << RecipeText(recipe).constData();
            EXPECT_EQ(recipe.Taught, reading.Counts);
            EXPECT_FALSE(RecipeText(recipe).contains("css-") || RecipeText(recipe).contains("bdVaJa"));
        } catch (const Failure& failure) {
            ADD_FAILURE() << row.What << ": " << failure.what();
        }
    }
}

TEST(LearnRecipe, PointingGivesWhatTheTextGives) {
    const PageTree page(PageOf(u"<li class=hit><b>Joe %1</b> <i class=tel>555-01%2</i></li>"_s));
    const auto nodeOf = [&page](const char* selector) {
        return Selector::Parse(QString::fromLatin1(selector)).SelectAll(page)[0];
    };
    const Recipe byText = LearnRecipe(page, url,
                                      {{.Column = Field::BusinessName, .Text = u"Joe A"_s},
                                       {.Column = Field::Phone, .Text = u"555-010"_s}})
                              .What;
    const Recipe byNode = LearnRecipe(page, url,
                                      {{.Column = Field::BusinessName, .Node = nodeOf("b")},
                                       {.Column = Field::Phone, .Node = nodeOf("i")}})
                              .What;
    EXPECT_EQ(byNode, byText);
}

TEST(LearnRecipe, WhatCannotBeLearnedIsOneLine) {
    const QString cards = PageOf(u"<li><b>Joe %1</b></li>"_s);
    const struct {
        QString Html;
        std::vector<RecipeExample> Examples;
        QString Expected;
    } cases[] = {
        {cards,
         {{.Column = Field::BusinessName, .Text = u"Nobody"_s}},
         u"Business Name=Nobody: not found on the page"_s},
        {cards, {{.Column = Field::Phone, .Text = u"416-555-0100"_s}}, u"Phone=416-555-0100: not found on the page"_s},
        {u"<h1>Joe A</h1><p>alone</p>"_s,
         {{.Column = Field::BusinessName, .Text = u"Joe A"_s}},
         u"Business Name=Joe A: nothing else on the page is made like it"_s},
        {cards, {{.Column = Field::Category, .Text = u"Joe A"_s}}, u"an example of Business Name is missing"_s},
    };
    for (const auto& row : cases) {
        try {
            LearnRecipe(PageTree(row.Html), url, row.Examples);
            ADD_FAILURE() << row.Expected.toStdString();
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Message(), row.Expected);
        }
    }
}

TEST(LearnRecipe, ALargePageTakesNoLongTime) {
    const QString html = PageOf(
        u"<li class='hit card'><div class=body><h2 class=name><a href='/b/%2'>Joe %2</a></h2><i class=tel>555-01%2</i>"
        u"<p>Joe %1 x</p></div></li>"_s,
        u"<ul class=list>"_s, u"</ul>"_s, 1500);
    QElapsedTimer timer;
    timer.start();
    const PageTree page(html);
    const Recipe recipe = LearnRecipe(page, url,
                                      {{.Column = Field::BusinessName, .Text = u"Joe 77"_s},
                                       {.Column = Field::Phone, .Text = u"555-0177"_s}})
                              .What;
    EXPECT_EQ(recipe.Taught.Records, 1500);
    // A text that stands everywhere.
    try {
        LearnRecipe(page, url,
                    {{.Column = Field::BusinessName, .Text = u"x"_s}, {.Column = Field::City, .Text = u"o"_s}});
    } catch (const Failure&) {
    }
    EXPECT_LT(timer.elapsed(), 20'000);
}

TEST(SturdySelectors, NamesThatABuildMadeAreNotTrusted) {
    for (const QString& name : {u"card"_s, u"result-item"_s, u"searchResults"_s, u"hitrecord__title"_s, u"vcard"_s,
                                u"p-name"_s, u"tel"_s, u"Card_title"_s, u"FAQList"_s, u"Straße"_s})
        EXPECT_TRUE(IsSturdyName(name)) << name.toStdString();
    for (const QString& name :
         {u"css-1x2y3z"_s, u"sc-abcd"_s, u"bdVaJa"_s, u"Card_root__x7Yz2"_s, u"kKzQpL"_s, u"item-12"_s, u"jss123"_s,
          u"odd"_s, u"is-active"_s, u"x1lliihq"_s, u"a"_s, u"hzkfq"_s, u"row:2"_s})
        EXPECT_FALSE(IsSturdyName(name)) << name.toStdString();
}

} // namespace
} // namespace Brindle
