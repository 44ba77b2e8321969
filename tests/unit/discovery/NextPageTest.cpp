#include "discovery/NextPage.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

QString NextOf(const QString& url, const QString& body, const QString& head = {}) {
    const PageTree page(u"<!DOCTYPE html><html><head>"_s + head + u"</head><body>"_s + body + u"</body></html>"_s);
    return FindNextPage(page, PageLines(page), url).Address;
}

struct Case {
    const char* Name;
    QString Body;
    QString Expected; // "" for none
    QString Head = {};
    QString Url = u"https://www.guide.example/search?what=pizza&page=2"_s;
};

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.Name;
}

class NextPage : public testing::TestWithParam<Case> {};

TEST_P(NextPage, IsFound) {
    EXPECT_EQ(NextOf(GetParam().Url, GetParam().Body, GetParam().Head), GetParam().Expected);
}

const QString third = u"https://www.guide.example/search?what=pizza&page=3"_s;
const QString list = u"https://www.guide.example/pizza"_s;

INSTANTIATE_TEST_SUITE_P(
    Pages, NextPage,
    testing::Values(
        Case{"RangesOfEntries",
             u"<p>1-20 | <a href='/l?first=20'>21-40</a> | <a href='/l?first=40'>41-60</a></p>"_s,
             u"https://www.guide.example/l?first=20"_s,
             {},
             u"https://www.guide.example/l"_s},
        Case{"NumbersOfAnotherFolder",
             u"<div>1 <a href='/dir/list-2.html'>2</a> <a href='/dir/list-3.html'>3</a></div>"_s,
             u"https://www.guide.example/dir/list-2.html"_s,
             {},
             u"https://www.guide.example/portal/index.php?id=7"_s},
        Case{"RelInTheHead", u"<p>Pizza"_s, third, u"<link rel='prefetch Next' href='?what=pizza&amp;page=3'>"_s},
        Case{"RelOfTheNextArticleIsNone", u"<p>Pizza"_s, u""_s,
             u"<link rel='next' title='Ten pizzas' href='/2021/ten'>"_s, u"https://www.guide.example/2021/nine"_s},
        Case{
            "RelOnALinkWithAnArticlesName", u"<a rel=next href='/ten-pizzas'>Ten pizzas &rarr;</a>"_s, u""_s, {}, list},
        Case{"AnotherSite", u"<a href='https://other.example/?page=3'>Next</a>"_s, u""_s},
        Case{"ASubdomainIsTheSameSite", u"<a href='https://m.guide.example/search?page=3'>Next</a>"_s,
             u"https://m.guide.example/search?page=3"_s},
        Case{"ThePageItself", u"<a href='?what=pizza&amp;page=2#top'>Next</a>"_s, u""_s},
        Case{"NoWebAddress", u"<a href='javascript:next()'>Next</a><a href='#'>Next page</a>"_s, u""_s},
        Case{"ABaseElement", u"<a href='p3.html'>Next</a>"_s, u"https://www.guide.example/lists/p3.html"_s,
             u"<base href='/lists/'>"_s},
        Case{"DotSegments",
             u"<a href='./../pizza?page=3'>next</a>"_s,
             u"https://www.guide.example/pizza?page=3"_s,
             {},
             u"https://www.guide.example/lists/"_s},
        Case{"TitleOfAPicture", u"<a href='?page=3' title='Next Page'><img src=n.gif></a>"_s,
             u"https://www.guide.example/search?page=3"_s},
        Case{"AltOfAPicture", u"<a href='?page=3'><img src=n.gif alt='Next'></a>"_s,
             u"https://www.guide.example/search?page=3"_s},
        Case{"AriaLabel", u"<a href='/search?what=pizza&amp;page=3' aria-label='Go to next page'><i></i></a>"_s, third},
        Case{"Disabled", u"<li class='next disabled'><a href='?page=3'>Next</a></li>"_s, u""_s},
        Case{"DisabledByAria", u"<a aria-disabled=true href='?page=3'>Next</a>"_s, u""_s},
        Case{"CountedWords", u"<a href='?page=3'>Next 20 results</a>"_s, u"https://www.guide.example/search?page=3"_s},
        Case{
            "TheNextArticle", u"<a href='/a/7'>Next article</a><a href='/2024/06'>Next month »</a>"_s, u""_s, {}, list},
        Case{"APictureShow",
             u"<div class='carousel'><a href='/top/2' class='carousel-next'>Next</a></div>"_s,
             u""_s,
             {},
             list},
        Case{
            "NumberBehindTheCurrentOne",
            u"<div class=pages><a href='?what=pizza&amp;page=1'>1</a> <b>2</b> <a href='?what=pizza&amp;page=3'>3</a></div>"_s,
            third},
        Case{
            "CurrentOneIsALink",
            u"<ul class=pagination><li><a href='?page=1'>1</a><li class=active><a href='#'>2</a><li><a href='?page=3'>3</a></ul>"_s,
            u"https://www.guide.example/search?page=3"_s},
        Case{"TheRowEndsHere", u"<div class=pages><a href='?page=1'>1</a> <b>2</b></div><a href='/more'>More</a>"_s,
             u""_s},
        Case{
            "ArrowBesideARow",
            u"<div class=pager><a href='?page=1'>1</a><span>2</span><a href='?page=3'>&gt;</a><a href='?page=9'>&gt;&gt;</a></div>"_s,
            u"https://www.guide.example/search?page=3"_s},
        Case{"ArrowAlone", u"<a href='/offers'>»</a>"_s, u""_s, {}, list},
        Case{"PathWithANumber",
             u"<a href='/pizza/page/2'>2</a><a class=next href='/pizza/page/2'>&rsaquo;</a>"_s,
             u"https://www.guide.example/pizza/page/2"_s,
             {},
             list},
        Case{"BackwardsIsNotNext", u"<a href='?what=pizza&amp;page=1'>»</a>"_s, u""_s},
        Case{"AWordThatLeadsBack", u"<a href='?what=pizza&amp;page=1'>Next page</a>"_s, u""_s},
        Case{"MoreOfSomethingElse", u"<a href='/about'>more</a><a href='/news'>Read more</a>"_s, u""_s, {}, list},
        Case{"MoreByThePagesNumber",
             u"<a href='?page=2' class=load-next>Load more</a>"_s,
             u"https://www.guide.example/pizza?page=2"_s,
             {},
             list},
        Case{"MoreBehindWhatWasSkipped",
             u"<div><a href='?start=60'>Show more results</a></div>"_s,
             u"https://www.guide.example/pizza?start=60"_s,
             {},
             list + u"?start=40"_s},
        Case{"MoreOfAPageFarAway", u"<div><a href='?page=9'>more</a></div>"_s, u""_s, {}, list + u"?page=5"_s},
        Case{"NumbersThatAreNoPages", u"<table><tr><td>1<td><a href='/team/7'>2</a><td>3</table>"_s, u""_s, {}, list}),
    [](const auto& info) { return std::string(info.param.Name); });

// Words in the languages of the directories that people harvest.
TEST(NextPageWords, OfManyLanguages) {
    for (const QString& word :
         {u"Next »"_s,         u"Weiter"_s,    u"Nächste Seite"_s, u"Suivant ›"_s, u"Siguiente"_s,     u"Següent"_s,
          u"Próxima página"_s, u"Avanti"_s,    u"Successiva"_s,    u"Volgende"_s,  u"Następna &gt;"_s, u"Další"_s,
          u"Ďalšia"_s,         u"Következő"_s, u"Următoarea"_s,    u"Nästa"_s,     u"Næste"_s,         u"Neste"_s,
          u"Seuraava"_s,       u"Järgmine"_s,  u"Nākamā"_s,        u"Kitas"_s,     u"Sonraki"_s,       u"Επόμενη"_s,
          u"Следующая"_s,      u"Наступна"_s,  u"Следваща"_s,      u"Sljedeća"_s,  u"Naslednja"_s,     u"次へ"_s,
          u"次の20件"_s,       u"下一页"_s,    u"다음"_s,          u"التالي"_s,    u"הבא"_s,           u"بعدی"_s,
          u"ถัดไป"_s,           u"Trang sau"_s, u"Berikutnya"_s,    u"अगला"_s})
        EXPECT_EQ(NextOf(list, u"<p><a href='?page=2'>"_s + word + u"</a>"_s), list + u"?page=2"_s)
            << word.toStdString();
}

TEST(StepBetween, TellsPagesOfOneListFromOthers) {
    struct Step {
        QString Own;
        QString Other;
        bool Same;
        int Number;
    };
    const QString site = u"https://g.example"_s;
    for (const Step& step :
         {Step{u"/list"_s, u"/list?page=2"_s, true, 2}, Step{u"/list?p=3&q=a"_s, u"/list?q=a&p=4"_s, true, 4},
          Step{u"/list?q=a"_s, u"/list?q=b&page=2"_s, false, 2}, Step{u"/list"_s, u"/list/page/2/"_s, true, 2},
          Step{u"/list.html"_s, u"/list-2.html"_s, true, 2}, Step{u"/list/3"_s, u"/list/4"_s, true, 4},
          Step{u"/list/3"_s, u"/list/400000"_s, false, 400000}, // a record's number, no page's
          Step{u"/2023/05"_s, u"/2023/06"_s, false, 6}, Step{u"/list"_s, u"/other?page=2"_s, false, -1}}) {
        const PageStep found = StepBetween(site + step.Own, site + step.Other);
        EXPECT_EQ(found.SameList, step.Same) << step.Other.toStdString();
        EXPECT_EQ(found.Number, step.Number) << step.Other.toStdString();
    }
}

TEST(SiteOf, IsTheHostHoweverItIsWritten) {
    for (const QStringView address :
         {u"http://www.G.example/", u"https://user@g.example:8080?q", u"http://g.example.#top", u"http://G.example\\x"})
        EXPECT_EQ(SiteOf(address), u"g.example"_s) << address.toString().toStdString();
    EXPECT_EQ(SiteOf(u"mailto:a@g.example"), QString());
    EXPECT_EQ(SiteOf(u"http:g.example"), QString());
}

} // namespace
} // namespace Brindle
