#include "discovery/SavedPage.h"

#include "discovery/AnyPage.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString onDisk = u"file:///home/me/page.html"_s;

TEST(SavedPage, ItsAddressIsWhatItSaysOfItself) {
    struct Case {
        QString Html;
        QString Address;
    };
    const QString canonical = u"<link rel=Canonical href=' https://town.example/list?p=2 '>"_s;
    const QString relative = u"<a href=/a>a</a><a href=b>b</a>"_s;
    const QString absolute = u"<a href=http://town.example/c>c</a>"_s;
    const Case cases[]{
        {canonical, u"https://town.example/list?p=2"_s},
        {u"<meta property=og:url content=https://town.example/og><base href=https://town.example/b/>"_s,
         u"https://town.example/og"_s},
        {u"<base href=https://town.example/b/>"_s, u"https://town.example/b/"_s},
        {u"<link rel=canonical href=/list>"_s + relative + absolute, UnknownWebsite.toString()},
        {relative + absolute + absolute + absolute, u"http://town.example/"_s},
        {u"<a href=#top>top</a><a href=mailto:a@b.example>write</a>"_s + absolute, u"http://town.example/"_s},
        {QString(), UnknownWebsite.toString()},
    };
    for (const Case& one : cases) {
        EXPECT_EQ(WebAddressOfPage(PageTree(one.Html), onDisk), one.Address) << one.Html.toStdString();
        EXPECT_EQ(WebAddressOfPage(PageTree(one.Html), u"http://shown.example/"_s), u"http://shown.example/"_s);
    }
}

// What leads nowhere helps to see the list, but is no link of a lead.
TEST(SavedPage, IsReadWithoutTheLinksOfWhichNobodyKnowsWhereTheyLead) {
    QString html = u"<html lang=en><body><ul>"_s;
    for (int i = 0; i < 8; ++i)
        html += u"<li class=hit><h3><a href=\"/biz/%1\">Plumber Number %1</a></h3><p>%1 Main Street, Toronto, ON M5V "
                "2T6</p><p>416-555-01%2</p></li>"_s.arg(i)
                    .arg(i + 10);
    html += u"</ul></body></html>"_s;
    const AnyPageReading unknown = ReadAnyPage(PageTree(html), onDisk);
    ASSERT_EQ(unknown.Records.size(), 8U);
    EXPECT_EQ(unknown.Records[3].Fields.Phone, u"416-555-0113"_s);
    EXPECT_EQ(unknown.Records[3].Fields.DetailsLink, QString());
    for (const FieldReading& field : unknown.Fields)
        EXPECT_NE(field.Column, Field::DetailsLink);
    html.replace(u"<body>"_s, u"<link rel=canonical href=https://town.example/list><body>"_s);
    const AnyPageReading known = ReadAnyPage(PageTree(html), onDisk);
    ASSERT_EQ(known.Records.size(), 8U);
    EXPECT_EQ(known.Records[3].Fields.DetailsLink, u"https://town.example/biz/3"_s);
}

} // namespace
} // namespace Brindle
