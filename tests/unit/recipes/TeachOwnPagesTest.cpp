#include "PrintTo.h"
#include "recipes/RecipeFile.h"
#include "recipes/SearchAddressOf.h"
#include "recipes/TeachSession.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString address = u"https://towns.example/find?q=plumber&near=Toronto&page=2"_s;

std::shared_ptr<const PageTree> Tree(const QString& html) {
    return std::make_shared<const PageTree>(html);
}

QString List() {
    QString html = u"<html lang=en><body><form action=/find><input name=q value=plumber><input name=near value=Toronto>"
                   "</form><ul>"_s;
    for (int i = 0; i < 6; ++i)
        html +=
            u"<li class=hit><h3><a href=\"/biz/%1\">Plumber Number %1</a></h3><p class=ring>416-555-011%1</p>"_s.arg(i);
    return html + u"</ul></body></html>"_s;
}

QString OwnHtml(int i) {
    return u"<html lang=en><body><header><span class=phone>416-555-0000</span></header><h1>Plumber Number %1</h1>"
           "<script type='application/ld+json'>{\"@type\":\"Plumber\",\"name\":\"Plumber Number %1\",\"email\":"
           "\"p%1@plumber.example\"}</script><dl><dt>Fax<dd>416-555-021%1<dt>Trade<dd>Pipes of kind %1</dl>"
           "<div id=place>%1 Main Street, Toronto, ON M5V 2T6</div></body></html>"_s.arg(i);
}

QString Url(int i) {
    return u"https://towns.example/biz/%1"_s.arg(i);
}

NodeIndex Showing(const PageTree& page, QStringView text) {
    for (NodeIndex node = 0; node < page.Count(); ++node)
        if (page.IsText(node) && page.Text(node).contains(text) && !page.Is(page.Parent(node), u"script"))
            return page.Parent(node);
    ADD_FAILURE() << "not on the page: " << text.toString().toStdString();
    return noNode;
}

TeachSession OnOwnPage() {
    TeachSession session(Tree(List()), address);
    EXPECT_EQ(session.OwnPages(3), QStringList({Url(0), Url(1), Url(2)}));
    // The browser shows more than a harvest gets: a script has added a line.
    const QString shown = OwnHtml(0).replace(u"</dl>"_s, u"<dt>Mail<dd>only@scripts.example</dl>"_s);
    session.OpenOwnPage({Tree(shown), Url(0)},
                        {{Tree(OwnHtml(0)), Url(0)}, {Tree(OwnHtml(1)), Url(1)}, {Tree(OwnHtml(2)), Url(2)}});
    return session;
}

TEST(TeachOwnPages, WhatIsPointedAtThereIsReadOnThePagesOfAll) {
    TeachSession session = OnOwnPage();
    EXPECT_TRUE(session.OnOwnPage());
    EXPECT_EQ(session.Leads()[1].Email, u"p1@plumber.example"_s) << "which the page says of itself";
    struct Case {
        Field Column;
        QStringView Text;
        QString OfSecond;
    };
    for (const Case& one : {Case{Field::Fax, u"416-555-0210", u"416-555-0211"_s},
                            Case{Field::Category, u"Pipes of kind", u"Pipes of kind 1"_s},
                            Case{Field::FullAddress, u"Main Street", u"1 Main Street, Toronto, ON M5V 2T6"_s}}) {
        const NodeIndex element = Showing(session.Page(), one.Text);
        ASSERT_TRUE(session.Say(one.Column, element)) << one.Text.toString().toStdString();
        EXPECT_EQ(session.Leads()[1].At(static_cast<int>(one.Column)), one.OfSecond);
        EXPECT_FALSE(session.IsProposed(one.Column));
        EXPECT_EQ(session.ElementsOf(one.Column), std::vector<NodeIndex>{element});
        EXPECT_EQ(session.LikelyFields(element).front(), one.Column) << "what it is taken for comes first";
    }
    EXPECT_EQ(session.Leads()[1].City, u"Toronto"_s) << "the address is taken apart";
    EXPECT_EQ(session.Leads()[1].Phone, u"416-555-0111"_s) << "the list's own stays";
    EXPECT_EQ(session.Leads()[4].Fax, QString()) << "whose page was not read yet";
    // What only a script adds is not there for a harvest.
    EXPECT_FALSE(session.Say(Field::Email, Showing(session.Page(), u"only@scripts")));
    EXPECT_EQ(session.Problem(), TeachProblem::NotFetched);
    EXPECT_FALSE(session.SayNext(Showing(session.Page(), u"Pipes")));
    session.Forget(Field::Category);
    EXPECT_EQ(session.Leads()[1].Category, u"Plumber"_s) << "which the page says of itself";

    session.CloseOwnPage(Tree(List()));
    EXPECT_FALSE(session.OnOwnPage());
    EXPECT_EQ(session.Leads()[2].Fax, u"416-555-0212"_s);
    ASSERT_TRUE(session.Say(Field::Phone, Showing(session.Page(), u"416-555-0113")));
    EXPECT_EQ(session.What().DetailsFields.size(), 2U) << "they outlast what is said of the list";
    // Its file reads the same, and mending keeps it.
    const Recipe again = ReadRecipe(RecipeText(session.What()), u"taught.toml"_s);
    EXPECT_EQ(again.DetailsFields, session.What().DetailsFields);
    Lead lead{.Name = u"Plumber Number 5"_s};
    QStringList problems;
    RecipeReader(again).ReadDetails(PageTree(OwnHtml(5)), Url(5), lead, problems);
    EXPECT_EQ(lead.Fax + lead.Email, u"416-555-0215p5@plumber.example"_s);
    const TeachSession mended(Tree(List().replace(u"class=ring"_s, u"class=call"_s)), address, again);
    EXPECT_EQ(mended.What().DetailsFields, again.DetailsFields);
    EXPECT_EQ(mended.What().Search, again.Search);
}

TEST(TeachOwnPages, TheSearchAddressIsMadeOfTheAddressOfTheResults) {
    const QString form = u"<form><input name=query value='Pizza Oven'><input id=place name=x value=%1></form>"_s;
    const struct {
        QString Html;
        QString Url;
        QString Search;
    } cases[] = {
        {List(), address, u"https://towns.example/find?q={what}&near={where}"_s},
        // Named as such things are, without a form; what is no word of the search stays.
        {u"<p>x"_s, u"https://d.example/s?what=a&sort=name&where=b#x"_s,
         u"https://d.example/s?what={what}&sort=name&where={where}"_s},
        // In the path.
        {form.arg(u"'New York'"_s), u"https://d.example/in/new-york/Pizza%20Oven/"_s,
         u"https://d.example/in/{where}/{what}/"_s},
        {form.arg(u"Ulm"_s), u"https://d.example/best-of"_s, u""_s},
        {u"<p>x"_s, u"https://d.example/?id=7"_s, u""_s},
        {u"<p>x"_s, u"file:///tmp/page.html?what=a"_s, u""_s},
    };
    for (const auto& one : cases)
        EXPECT_EQ(SearchAddressOf(PageTree(one.Html), one.Url), one.Search) << one.Url.toStdString();
    const QString typed = u"https://d.example/san-francisco?k=caf%C3%A9+bar&from=20"_s;
    EXPECT_EQ(SearchAddressOf(typed, u"Caf\u00E9 Bar"_s, u"San Francisco"_s), u"https://d.example/{where}?k={what}"_s);
    EXPECT_EQ(SearchAddressOf(typed, u"pizza"_s, QString()), QString());
    for (const QString& wrong : {u"d.example/{what}"_s, u"https://d.example/"_s, u"https://{what}.example/"_s,
                                 u"https://d.example/{what}{who}"_s})
        EXPECT_NE(WhyNoSearchAddress(wrong), QString()) << wrong.toStdString();
    TeachSession session(Tree(List()), address);
    EXPECT_EQ(session.What().Search, u"https://towns.example/find?q={what}&near={where}"_s);
    session.SetAbout(u"CA"_s, QString());
    EXPECT_EQ(session.What().Country + session.What().Search, u"CA"_s);
}

} // namespace
} // namespace Brindle
