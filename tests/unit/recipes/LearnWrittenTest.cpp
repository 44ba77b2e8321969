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
            Lead fourth = reading.Records[3].Fields;
            fourth.Country = QString();
            EXPECT_EQ(fourth, row.Fourth) << row.What << "\n" << RecipeText(recipe).constData();
        } catch (const Failure& failure) {
            ADD_FAILURE() << row.What << ": " << failure.what();
        }
    }
}

} // namespace
} // namespace Brindle
