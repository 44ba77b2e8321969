#include "recipes/TeachSession.h"

#include "PrintTo.h"
#include "recipes/RecipeFile.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString address = u"https://towns.example/search?page=1"_s;

QString Page(const QString& nameClass = u"who"_s, int businesses = 8) {
    QString html = u"<html lang=en><body><h1>Plumbers</h1><ul class=hits>"_s;
    for (int i = 0; i < businesses; ++i)
        html += u"<li class=hit><h3 class=%2><a href=\"/biz/%1\">Plumber Number %1</a></h3><p class=at>%1 Main Street, "
                "Toronto, ON M5V 2T6</p><p class=ring>416-555-01%3</p><p class=blurb>Pipes since 19%3</p>"
                "<a class=site href=\"https://plumber%1.example/\">Visit</a></li>"_s.arg(i)
                    .arg(nameClass)
                    .arg(i + 10);
    return html + u"</ul><a class=on href=\"/search?page=2\">More of them</a></body></html>";
}

std::shared_ptr<const PageTree> Tree(const QString& html) {
    return std::make_shared<const PageTree>(html);
}

// The element that shows a text.
NodeIndex Showing(const PageTree& page, QStringView text) {
    for (NodeIndex node = 0; node < page.Count(); ++node)
        if (page.IsText(node) && page.Text(node).contains(text))
            return page.Parent(node);
    ADD_FAILURE() << "not on the page: " << text.toString().toStdString();
    return noNode;
}

QString Value(const TeachSession& session, Field column, size_t record = 0) {
    return session.Reading().Records.at(record).Fields.At(static_cast<int>(column));
}

TEST(TeachSession, BeginsWithWhatTheProgramSees) {
    const TeachSession session(Tree(Page()), address);
    ASSERT_EQ(session.Reading().Records.size(), 8U);
    EXPECT_EQ(Value(session, Field::BusinessName, 7), u"Plumber Number 7"_s);
    EXPECT_EQ(Value(session, Field::Phone), u"416-555-0110"_s);
    EXPECT_EQ(Value(session, Field::DetailsLink), u"https://towns.example/biz/0"_s);
    EXPECT_TRUE(session.IsProposed(Field::Phone));
    EXPECT_EQ(session.What().Taught.Records, 8);
}

TEST(TeachSession, TakesWhatAPersonPointsAt) {
    TeachSession session(Tree(Page()), address);
    ASSERT_TRUE(session.Say(Field::Category, Showing(session.Page(), u"Pipes since 1910")));
    EXPECT_EQ(Value(session, Field::Category, 3), u"Pipes since 1913"_s);
    EXPECT_FALSE(session.IsProposed(Field::Category));
    EXPECT_EQ(Value(session, Field::Phone, 3), u"416-555-0113"_s) << "the others stay";
    EXPECT_EQ(session.ElementsOf(Field::Category).size(), 8U);

    session.Forget(Field::Category);
    EXPECT_EQ(Value(session, Field::Category, 3), QString());
    ASSERT_TRUE(session.Say(Field::Email, Showing(session.Page(), u"Visit")) ||
                session.Problem() != TeachProblem::None);

    EXPECT_FALSE(session.SayNext(Showing(session.Page(), u"Pipes since 1910")) && session.Reading().Next.isEmpty());
    ASSERT_TRUE(session.SayNext(Showing(session.Page(), u"More of them")));
    EXPECT_EQ(session.Reading().Next, u"https://towns.example/search?page=2"_s);
    session.ForgetNext();
    EXPECT_EQ(session.Reading().Next, QString());
    ASSERT_TRUE(session.SayDetails(Showing(session.Page(), u"Plumber Number 2")));
    EXPECT_TRUE(session.What().Details);

    // What was learned is a recipe that reads the same from its file.
    const Recipe again = ReadRecipe(RecipeText(session.What()), u"taught.toml"_s);
    EXPECT_EQ(RecipeReader(again).Read(session.Page(), address).Records.size(), 8U);
}

TEST(TeachSession, OffersTheLikelyFieldFirst) {
    const TeachSession session(Tree(Page()), address);
    struct Case {
        QStringView Text;
        Field Likely;
    };
    for (const Case& one : {Case{u"Plumber Number 5", Field::BusinessName}, Case{u"416-555-0114", Field::Phone},
                            Case{u"3 Main Street", Field::FullAddress}, Case{u"Visit", Field::Website}}) {
        const std::vector<Field> fields = session.LikelyFields(Showing(session.Page(), one.Text));
        EXPECT_EQ(fields.front(), one.Likely) << one.Text.toString().toStdString();
        EXPECT_EQ(fields.size(), static_cast<size_t>(FieldCount));
    }
    EXPECT_EQ(session.LikesOf(Showing(session.Page(), u"416-555-0114")).size(), 8U);
    const std::vector<ChoosableText> texts = session.Texts();
    ASSERT_GE(texts.size(), 4U);
    EXPECT_EQ(texts.front().Text, u"Plumber Number 0"_s);
}

TEST(TeachSession, KeepsWhatWasTaughtWhenThePageRebuildsItself) {
    TeachSession session(Tree(Page()), address);
    ASSERT_TRUE(session.Say(Field::Category, Showing(session.Page(), u"Pipes since 1910")));
    session.SetPage(Tree(Page(u"who"_s, 12)));
    EXPECT_EQ(session.Reading().Records.size(), 12U);
    EXPECT_EQ(Value(session, Field::Category, 11), u"Pipes since 1921"_s);
}

TEST(TeachSession, MendsARecipeKeepingWhatStillFits) {
    const TeachSession before(Tree(Page()), address);
    Recipe recipe = before.What();
    recipe.Name = u"Towns"_s;
    QString changed = Page();
    changed.replace(u"class=ring"_s, u"class=call"_s);
    TeachSession session(Tree(changed), address, recipe);
    EXPECT_EQ(session.What().Name, u"Towns"_s);
    EXPECT_EQ(Value(session, Field::BusinessName, 1), u"Plumber Number 1"_s);
    ASSERT_TRUE(session.Say(Field::Phone, Showing(session.Page(), u"416-555-0110")));
    EXPECT_EQ(Value(session, Field::Phone, 4), u"416-555-0114"_s);

    // Where nothing fits any more it begins anew, under the same name.
    const TeachSession anew(Tree(QString(Page()).replace(u"class="_s, u"class=x"_s)), address, recipe);
    EXPECT_EQ(anew.What().Name, u"Towns"_s);
    EXPECT_EQ(anew.Reading().Records.size(), 8U);
}

// Paid entries are made in another way: the second example holds beside the first one.
TEST(TeachSession, ASecondExampleMendsTheFirst) {
    QString html = u"<html lang=en><body><main>"_s;
    for (int i = 0; i < 9; ++i)
        html +=
            i % 3 == 0
                ? u"<div class=hit><strong>Paid Baker %1</strong><b class=tel>416-555-01%2</b></div>"_s.arg(i).arg(i +
                                                                                                                   10)
                : u"<div class=hit><h3>Free Baker %1</h3><i class=ring>416-555-01%2</i><em>x</em></div>"_s.arg(i).arg(
                      i + 10);
    TeachSession session(Tree(html + u"</main></body></html>"), address);
    ASSERT_TRUE(session.Say(Field::BusinessName, Showing(session.Page(), u"Free Baker 1")));
    ASSERT_TRUE(session.Say(Field::BusinessName, Showing(session.Page(), u"Paid Baker 3")));
    ASSERT_TRUE(session.Say(Field::Phone, Showing(session.Page(), u"416-555-0114")));
    ASSERT_TRUE(session.Say(Field::Phone, Showing(session.Page(), u"416-555-0116")));
    ASSERT_EQ(session.Reading().Records.size(), 9U);
    for (size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(Value(session, Field::BusinessName, i),
                  (i % 3 == 0 ? u"Paid Baker %1"_s : u"Free Baker %1"_s).arg(i));
        EXPECT_EQ(Value(session, Field::Phone, i), u"416-555-01%1"_s.arg(i + 10));
    }
    // The later word about the same business holds.
    ASSERT_TRUE(session.Say(Field::Category, Showing(session.Page(), u"Free Baker 4")));
    ASSERT_TRUE(session.Say(Field::Category, Showing(session.Page(), u"x")));
    EXPECT_EQ(Value(session, Field::Category, 4), u"x"_s);
}

// Nothing holds each business together, labels stand before the values, and advertisements between.
// Paid entries have a link to call; where somebody points at such a one, the phones of the others are not lost.
TEST(TeachSession, WhatIsReadRightAlreadyIsNotReadWorseForBeingPointedAt) {
    QString html = Page();
    for (const QString& phone : {u"416-555-0110"_s, u"416-555-0114"_s})
        html.replace(phone, u"<a href=\"tel:%1\">%1</a>"_s.arg(phone));
    TeachSession session(Tree(html), address);
    ASSERT_EQ(session.What().Taught.Filled[static_cast<size_t>(Field::Phone)], 8);
    ASSERT_TRUE(session.Say(Field::Phone, Showing(session.Page(), u"416-555-0110")));
    EXPECT_FALSE(session.IsProposed(Field::Phone));
    EXPECT_EQ(Value(session, Field::Phone, 1), u"416-555-0111"_s);
    EXPECT_EQ(Value(session, Field::Phone, 4), u"416-555-0114"_s);
    // The heading of one that has several offices repeats its name above it.
    html.replace(u"<li class=hit><h3 class=who><a href=\"/biz/2\">"_s,
                 u"<li class=of><h2>Plumber Number 2</h2></li><li class=hit><h3 class=who><a href=\"/biz/2\">"_s);
    TeachSession again(Tree(html), address);
    ASSERT_EQ(again.Reading().Records.size(), 8U);
    ASSERT_TRUE(again.Say(Field::BusinessName, Showing(again.Page(), u"Plumber Number 2")));
    EXPECT_EQ(again.Reading().Records.size(), 8U);
    // An address of several elements is pointed at by any of them.
    html.replace(u"Main Street, "_s, u"Main Street, <b>"_s).replace(u"2T6</p>"_s, u"2T6</b></p>"_s);
    TeachSession parts(Tree(html), address);
    ASSERT_EQ(Value(parts, Field::City, 4), u"Toronto"_s);
    ASSERT_TRUE(parts.Say(Field::FullAddress, Showing(parts.Page(), u"Toronto")));
    EXPECT_EQ(Value(parts, Field::FullAddress, 4), u"4 Main Street, Toronto, ON M5V 2T6"_s);
    // Another text than the one that was read is what holds, also where it fills fewer.
    ASSERT_TRUE(session.Say(Field::Category, Showing(session.Page(), u"Pipes since 1910")));
    EXPECT_EQ(Value(session, Field::Category, 3), u"Pipes since 1913"_s);
}

TEST(TeachSession, ListsWithoutAnElementAroundEachBusiness) {
    QString html = u"<html lang=de><body><dl>"_s;
    for (int i = 0; i < 6; ++i)
        html += u"<dt><a href=\"/f/%1\">Firma Nummer %1</a></dt><dd class=a>Branche: Dachdecker %1</dd>"
                "<dd class=b>Tel. 030 901820%1</dd>"_s.arg(i);
    TeachSession session(Tree(html + u"</dl><button class=more>Noch welche</button></body></html>"), address);
    ASSERT_TRUE(session.Say(Field::BusinessName, Showing(session.Page(), u"Firma Nummer 2")));
    ASSERT_TRUE(session.Say(Field::Phone, Showing(session.Page(), u"Tel. 030 9018202")));
    ASSERT_TRUE(session.Say(Field::Category, Showing(session.Page(), u"Dachdecker 2")));
    ASSERT_EQ(session.Reading().Records.size(), 6U);
    EXPECT_EQ(Value(session, Field::Category, 5), u"Dachdecker 5"_s);
    EXPECT_EQ(Value(session, Field::Phone, 5), u"030 9018205"_s);
    EXPECT_EQ(session.ElementsOf(Field::Phone).size(), 6U);
    EXPECT_EQ(session.LikesOf(Showing(session.Page(), u"Tel. 030 9018202")).size(), 6U);
    // A button that brings more is pointed at like a link.
    ASSERT_TRUE(session.SayNext(Showing(session.Page(), u"Noch welche")));
    EXPECT_EQ(session.Reading().LoadMore, session.What().Next);
    EXPECT_EQ(session.Links().front().Text, u"Noch welche"_s);
    EXPECT_FALSE(session.SayNext(Showing(session.Page(), u"Dachdecker 2")));
    EXPECT_EQ(session.Problem(), TeachProblem::NoLink);
    EXPECT_FALSE(session.Reading().LoadMore.isEmpty()) << "nothing was changed";
}

// An address in columns of its own is put together; what a relaunch has hidden is seen anew.
TEST(TeachSession, AddressesInColumnsAndMendingOfWhatIsLost) {
    const auto table = [](const QString& telephone) {
        QString html =
            u"<html lang=de><body><table><tr><th>Name</th><th>Stra\u00DFe</th><th>PLZ</th><th>Ort</th></tr>"_s;
        for (int i = 0; i < 7; ++i)
            html += u"<tr class=hit><td class=wer>Malerei Nummer %1</td><td>Hauptstra\u00DFe %1</td><td>1011%1</td>"
                    "<td>Berlin</td><td class=%2>030 901820%1</td></tr>"_s.arg(i)
                        .arg(telephone);
        return QString(html + u"</table></body></html>");
    };
    const TeachSession session(Tree(table(u"ruf"_s)), address);
    ASSERT_EQ(session.Reading().Records.size(), 7U);
    EXPECT_EQ(Value(session, Field::FullAddress, 3), u"Hauptstra\u00DFe 3, 10113 Berlin"_s);
    EXPECT_EQ(Value(session, Field::PostalCode, 3), u"10113"_s);
    Recipe recipe = session.What();
    for (RecipeField& row : recipe.Fields)
        if (row.Column == Field::Phone)
            row.Selector = u".ruf"_s;
    const TeachSession mended(Tree(table(u"anruf"_s)), address, recipe);
    EXPECT_EQ(Value(mended, Field::Phone, 6), u"030 9018206"_s);
}

TEST(TeachSession, APageWithoutAListTeachesNothing) {
    TeachSession session(Tree(u"<body><h1>One</h1><p>Some text</p></body>"_s), address);
    EXPECT_TRUE(session.Reading().Records.empty());
    EXPECT_FALSE(session.Say(Field::BusinessName, Showing(session.Page(), u"Some text")));
    EXPECT_EQ(session.Problem(), TeachProblem::NothingLike);
    EXPECT_FALSE(session.Say(Field::Phone, Showing(session.Page(), u"Some text")));
    EXPECT_EQ(session.Problem(), TeachProblem::NameFirst);
    EXPECT_FALSE(session.Texts().empty());
}

} // namespace
} // namespace Brindle
