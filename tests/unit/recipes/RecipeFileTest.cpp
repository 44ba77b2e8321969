#include "recipes/RecipeFile.h"

#include "PrintTo.h"
#include "core/Errors.h"
#include "recipes/RecipeFolders.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

// The recipe that the documentation shows.
QByteArray DocumentedRecipe() {
    QFile file(QStringLiteral(PROJECT_DIR "/docs/recipes.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    const qsizetype begin = text.indexOf("```toml\n") + 8;
    return text.mid(begin, text.indexOf("```", begin) - begin);
}

TEST(RecipeFile, TheDocumentedRecipeHasEveryKeyAndComesBackAsItWas) {
    const Recipe recipe = ReadRecipe(DocumentedRecipe(), u"docs/recipes.md"_s);
    EXPECT_EQ(recipe.Name, u"Dir of Pizza");
    EXPECT_EQ(recipe.Records, u"ul.results > li.listing");
    EXPECT_EQ(recipe.Fields.size(), 6U);
    EXPECT_EQ(recipe.Next, u".pager a.next");
    EXPECT_TRUE(recipe.Details);
    EXPECT_EQ(recipe.DetailsFields.size(), 2U);
    EXPECT_EQ(recipe.Taught.Records, 25);
    EXPECT_EQ(recipe.Taught.Filled[size_t(Field::Phone)], 24);
    // Every key: what is read from the text of a recipe with all of them is never its default.
    for (const QString& text : {recipe.Country, recipe.Home, recipe.Search, recipe.NextAttribute, recipe.DetailsLink})
        EXPECT_FALSE(text.isEmpty());
    const auto address = std::find_if(recipe.Fields.begin(), recipe.Fields.end(),
                                      [](const RecipeField& field) { return field.Column == Field::FullAddress; });
    ASSERT_NE(address, recipe.Fields.end());
    EXPECT_TRUE(address->Join && address->SplitAddress);
    EXPECT_EQ(ReadRecipe(RecipeText(recipe), u"again"_s), recipe);
}

TEST(RecipeFile, WhatIsWrittenIsReadAgain) {
    Recipe recipe;
    recipe.Name = u"\"Größe\" \\ 'x'"_s;
    recipe.Home = u"https://dir.example"_s;
    recipe.Records = uR"(li[data-x="\"a'"])"_s;
    recipe.Fields = {{.Column = Field::BusinessName, .Selector = u":scope"_s, .Pattern = u"^\\d+\\.\\s*'(.+)\"$"_s},
                     {.Column = Field::DetailsLink, .Selector = u"a"_s, .Attribute = u"data-url"_s}};
    recipe.Next = u"auto"_s;
    recipe.Flat = true;
    recipe.Details = true;
    EXPECT_EQ(ReadRecipe(RecipeText(recipe, {u"two\nlines"_s}), u"x"_s), recipe);
    recipe.Records = structuredRecords.toString();
    recipe.Fields.clear();
    recipe.Flat = false;
    recipe.Next = u"a.next"_s;
    recipe.NextAttribute = u"data-href"_s;
    recipe.Taught = {.Records = 3, .Filled = {3, 2, 1}};
    EXPECT_EQ(ReadRecipe(RecipeText(recipe), u"x"_s), recipe);
}

TEST(RecipeFile, AMistakeIsOneLineThatNamesItsPlace) {
    const QByteArray good = DocumentedRecipe();
    const struct {
        QByteArray Before;
        QByteArray After;
        QString Expected;
    } cases[] = {
        {"name = \"Dir", "nmae = \"Dir", u"line 1: name is missing"_s},
        {"country = ", "colour = ", u"line 2: colour is no key of a recipe"_s},
        {"\"CA\"", "7", u"line 2: country is no text"_s},
        {"\"CA\"", "\" \"", u"line 2: country is empty"_s},
        {"\"CA\"", "\"CA", u"line 2: "_s},
        {"https://dir.example/\"", "ftp://dir.example/\"", u"line 3: home is no address of http or https"_s},
        {"q={what}", "q={who}", u"line 4: search takes {what} and {where}, and no other braces"_s},
        {"https://dir.example/find", "https://{what}.example/find",
         u"line 4: search has {what} or {where} in its host"_s},
        {"> li.listing", "> > li", u"line 7: list.records: "_s},
        {"[list]\nrecords", "[list]\nrecord", u"line 6: list.records is missing"_s},
        {"flat = false", "flat = 1", u"line 8: list.flat is neither true nor false"_s},
        {"\"Business Name\" = \"h2 a\"", "Name = \"h2 a\"", u"line 10: fields.Business Name is missing"_s},
        {"Website = ", "Web = ", u"fields.Web: there is no field of that name"_s},
        {"attribute = \"data-number\"", "atribute = \"data-number\"", u"line 14: fields.Phone.atribute is no key"_s},
        {"\"data-number\"", "\"data number\"", u"line 14: fields.Phone.attribute: "_s},
        {"(.+)$'", "(.+$'", u"line 12: fields.Category.pattern: missing closing parenthesis"_s},
        {"attribute = \"data-number\"", "join = 1", u"line 14: fields.Phone.join is neither true nor false"_s},
        {"attribute = \"data-number\"", "split_address = true",
         u"line 14: fields.Phone.split_address: only Full Address can be taken apart"_s},
        {"'a[rel~=\"external\"]'", "'a[rel~='", u"line 15: fields.Website: "_s},
        {"records = 25", "records = -1", u"line 30: taught.records is no number from 0 to 1000000"_s},
        {"Phone = 24", "Phone = 26", u"line 35: taught.filled.Phone is no number from 0 to 25"_s},
    };
    EXPECT_NO_THROW(ReadRecipe(good, u"good"_s));
    for (const auto& row : cases) {
        QByteArray bad = good;
        ASSERT_TRUE(bad.contains(row.Before)) << row.Before.constData();
        bad.replace(bad.indexOf(row.Before), row.Before.size(), row.After);
        try {
            ReadRecipe(bad, u"dir/pizza.toml"_s);
            ADD_FAILURE() << row.After.constData();
        } catch (const Failure& failure) {
            const QString& message = failure.Message();
            EXPECT_TRUE(QDir::fromNativeSeparators(message).startsWith(u"dir/pizza.toml: line ") &&
                        message.contains(row.Expected) && !message.contains(u'\n'))
                << message.toStdString() << "\n  " << row.Expected.toStdString();
        }
    }
}

void Write(const QString& fileName, const QByteArray& bytes) {
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(RecipeFolders, TheUsersRecipesWinAndABadOneHindersNoOther) {
    QTemporaryDir program;
    QTemporaryDir user;
    QByteArray other = DocumentedRecipe();
    other.replace("Dir of Pizza", "Mine");
    Write(program.filePath(u"pizza.toml"_s), DocumentedRecipe());
    Write(program.filePath(u"b.dir.toml"_s), DocumentedRecipe());
    Write(program.filePath(u"broken.toml"_s), "name = ");
    Write(program.filePath(u"note.txt"_s), "no recipe");
    Write(user.filePath(u"Pizza.toml"_s), other);
    Write(user.filePath(u"auto.toml"_s), other);
    Write(user.filePath(u"kvpn001001.toml"_s), other);
    Write(user.filePath(u"large.toml"_s), QByteArray(longestRecipe + 1, '#'));
    QStringList problems;
    const std::vector<RecipeEntry> recipes = LoadRecipes(program.path(), user.path(), problems);
    ASSERT_EQ(recipes.size(), 2U);
    EXPECT_EQ(recipes[0].Code, u"b.dir");
    EXPECT_FALSE(recipes[0].OfUser);
    EXPECT_EQ(recipes[1].What.Name, u"Mine");
    EXPECT_EQ(problems.size(), 4) << problems.join(u'\n').toStdString();
    EXPECT_EQ(FindRecipe(recipes, u"PIZZA"), &recipes[1]);
    EXPECT_EQ(FindRecipe(recipes, u"auto"), nullptr);
    EXPECT_EQ(HostsOfRecipe(recipes[1].What), QStringList{u"dir.example"_s});
    EXPECT_TRUE(LoadRecipes(program.filePath(u"none"_s), {}, problems).empty());
}

TEST(RecipeFolders, NamesThatNoRecipeMayHave) {
    for (const QString& code : {u""_s, u"a b"_s, u"../a"_s, u".a"_s, u"a."_s, u"AUTO"_s, u"KVPE001003"_s, u"nul"_s,
                                u"com1.x"_s, u"ä"_s, QString(65, u'a')})
        EXPECT_FALSE(RecipeCodeProblem(code).isEmpty()) << code.toStdString();
    for (const QString& code : {u"a"_s, u"dir.example"_s, u"Yellow-Pages_2"_s, u"computer"_s, u"automat"_s})
        EXPECT_TRUE(RecipeCodeProblem(code).isEmpty()) << code.toStdString();
}

} // namespace
} // namespace Brindle
