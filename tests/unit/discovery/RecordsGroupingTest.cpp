#include "core/Errors.h"
#include "discovery/AnyPage.h"

#include <ctime>
#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString site = u"https://www.guide.example.de"_s;

// An entry's text with its number and a letter of its own for each "{i}" and "{c}".
QString Entry(QString text, int number) {
    return text.replace(u"{i}"_s, QString::number(number)).replace(u"{c}"_s, QChar(u'A' + number));
}

QString Entries(const QString& text, int from, int to) {
    QString all;
    for (int i = from; i <= to; ++i)
        all += Entry(text, i);
    return all;
}

AnyPageReading ReadBody(const QString& body, const QString& title = u"Elektriker in Köln"_s) {
    return ReadAnyPage(
        PageTree(u"<!DOCTYPE html><html lang=de><title>%1</title><body><h1>%1</h1>%2"_s.arg(title, body)),
        site + u"/x"_s);
}

QString NamesOf(const AnyPageReading& reading) {
    QStringList names;
    for (const PageRecord& record : reading.Records)
        names << record.Fields.Name.section(u' ', -1);
    return names.join(u' ');
}

const QString place = u"<p>Ringweg {i}, 50667 Köln</p>"_s;
const QString call = u"<p>0221 55512{i}</p>"_s;
const QString inside = u"<h3><a href='/b/{i}'>Haus {c}</a></h3>"_s + place + call;

TEST(Grouping, RecordsAreFoundHoweverTheirElementsStand) {
    const QString card = u"<div class=card>"_s + inside + u"</div>"_s;
    const QString bare = u"<div class=card><h3><a href='/b/{i}'>Haus {c}</a></h3><a href='mailto:a{i}@b.example'>"
                         u"a{i}@b.example</a></div>"_s;
    const struct {
        const char* What;
        QString Body;
        QString Names = u"B C D E F G"_s;
    } cases[] = {
        {"each in two wrappers", Entries(u"<div class=row><div class=col>"_s + inside + u"</div></div>"_s, 1, 6)},
        {"under the letters of the alphabet", u"<h2>A-C</h2><div>"_s + Entries(card, 1, 3) +
                                                  u"</div><h2>D-F</h2><div>"_s + Entries(card, 4, 6) + u"</div>"_s},
        {"classes that a build made, other ones for each",
         Entries(u"<div class='c-{i}f9a css-1x{i}'>"_s + inside + u"</div>"_s, 1, 6)},
        {"in rows, each with a class of its own beside those of all",
         Entries(u"<section class='row row-x{c}'>"_s + u"<div class='col col-a{c}q'>"_s + inside + u"</div>"_s, 1, 1) +
             Entries(u"<div class='col col-b{c}q'>"_s + inside + u"</div>"_s, 2, 3) + u"</section>"_s +
             Entries(u"<section class='row row-y{c}'><div class='col col-c{c}q'>"_s + inside + u"</div>"_s, 4, 4) +
             Entries(u"<div class='col col-d{c}q'>"_s + inside + u"</div>"_s, 5, 6) + u"</section>"_s},
        {"in rows of three, some without a number", u"<div class=row>"_s + Entries(card, 1, 1) + Entries(bare, 2, 3) +
                                                        u"</div><div class=row>"_s + Entries(bare, 4, 5) +
                                                        Entries(card, 6, 6) + u"</div>"_s},
        {"odd and even ones", Entries(u"<div class='row odd'>"_s + inside + u"</div>"_s, 1, 3) +
                                  Entries(u"<div class='row even'>"_s + inside + u"</div>"_s, 4, 6)},
        {"paid ones of another class between",
         Entries(card, 1, 2) + Entries(u"<div class='card-gold'>"_s + inside + u"<b>Anzeige</b></div>"_s, 3, 3) +
             Entries(card, 4, 6)},
        {"an advertisement of another kind between",
         Entries(card, 1, 3) + u"<div class=promo><a href='/jetzt'>Jetzt eintragen</a></div>"_s + Entries(card, 4, 6)},
        {"parted by rules", Entries(inside + u"<hr>"_s, 1, 6)},
        {"in an ordered list of lists",
         u"<ol>"_s + Entries(u"<li><ul><li>"_s + inside + u"</ul>"_s, 1, 6) + u"</ol>"_s},
        {"the whole entry is a link",
         Entries(u"<a href='/b/{i}'><h3>Haus {c}</h3><p>Ringweg {i}, 50667 Köln</p><p>0221 55512{i}</p></a>"_s, 1, 6)},
        {"with opening hours of their own as lists",
         Entries(u"<div class=card>"_s + inside +
                     u"<ul><li>Mo 9:00 - 17:00<li>Di 9:00 - 17:00<li>Mi 9:00 - 17:00</ul></div>"_s,
                 1, 6)},
        {"with reviews of their own", Entries(u"<div class=card>"_s + inside +
                                                  u"<div class=review><b>Tom</b><p>Sehr gut</p></div><div "
                                                  u"class=review><b>Eva</b><p>Prompt</p></div></div>"_s,
                                              1, 6)},
        {"rows of a table with a head",
         u"<table><tr><th>Name<th>Adresse<th>Telefon</tr>"_s +
             Entries(u"<tr><td><a href='/b/{i}'>Haus {c}</a><td>Ringweg {i}, 50667 Köln<td>0221 55512{i}</tr>"_s, 1,
                     6) +
             u"</table>"_s},
        {"beside a column of most read articles",
         u"<aside>"_s + Entries(u"<li><a href='/news/{i}'>Zehn Fragen an {c}</a></li>"_s, 1, 9) + u"</aside><main>"_s +
             Entries(card, 1, 6) + u"</main>"_s},
        {"under a list of districts", u"<ul>"_s +
                                          Entries(u"<li><a href='/stadtteil/{i}'>Bezirk {c}</a> (1{i})"_s, 1, 9) +
                                          u"</ul>"_s + Entries(card, 1, 6)},
        {"a list of those seen last is another one",
         Entries(card, 1, 6) + u"<section class=recently-viewed><h2>Zuletzt angesehen</h2>"_s +
             Entries(u"<a href='/b/{i}'>Haus {c}</a>"_s, 1, 3) + u"</section>"_s},
    };
    for (const auto& one : cases)
        EXPECT_EQ(NamesOf(ReadBody(one.Body)).toStdString(), one.Names.toStdString()) << one.What;
}

TEST(Grouping, ColumnsThatSayMoreThanTheListInOneOfThemAreNotIt) {
    // The publisher's offices beside the list say more about themselves than its entries do.
    const QString office =
        u"<div><h2><a href='/v/{i}'>Verlag {c}</a></h2><p>Marktplatz {i}, 10115 Berlin</p><p>Tel. 030 "
        "234567{i}</p><a href='https://www.v{i}.example'>Webseite</a> <a "
        "href='mailto:a@v{i}.example'>Mail</a></div>"_s;
    const auto columns = [&](const QString& first) {
        return NamesOf(ReadBody(u"<div><div><h2><a href='/v'>Elektriker</a></h2>"_s + first + u"</div>"_s +
                                Entries(office, 1, 3) + u"</div>"_s));
    };
    EXPECT_EQ(columns(Entries(u"<p><b>Haus {c}</b> Ringweg {i}, 50667 Köln, 0221 55512{i}</p>"_s, 1, 20)).toStdString(),
              "B C D E F G H I J K L M N O P Q R S T U");
}

TEST(Grouping, LinesBeforeATownAreItsStreetOnlyWhereNoneStandsBesideIt) {
    const auto address = [](const QString& lines) {
        const AnyPageReading reading = ReadBody(
            Entries(u"<section><h3><a href='/b/{i}'>Haus {c}</a></h3>"_s + lines + call + u"</section>"_s, 1, 6));
        return reading.Records.size() == 6 ? reading.Records[2].Fields.FullAddress : QString();
    };
    // No word of it says that it is a street.
    EXPECT_EQ(address(u"<p>Anna Berg<br>Sieben Linden {i}, 50667 Köln</p>"_s), u"Sieben Linden 3, 50667 Köln"_s);
    EXPECT_EQ(address(u"<p>Seit 1998<br>Sieben Linden {i}, 50667 Köln</p>"_s), u"Sieben Linden 3, 50667 Köln"_s);
    EXPECT_EQ(address(u"<p>Seit 1998<br>50667 Köln, Sieben Linden {i}</p>"_s), u"50667 Köln, Sieben Linden 3"_s);
    EXPECT_EQ(address(u"<p>Anna Berg<br>50667 Köln, Sieben Linden {i}</p>"_s), u"50667 Köln, Sieben Linden 3"_s);
    EXPECT_EQ(address(u"<p>Sieben Linden {i}<br>50667 Köln</p>"_s), u"Sieben Linden 3, 50667 Köln"_s);
    EXPECT_EQ(address(u"<p>50667 Köln<br>Sieben Linden {i}</p>"_s), u"50667 Köln, Sieben Linden 3"_s);
}

TEST(Grouping, WholeRecordsGoBeforeTheManyPartsOfThem) {
    QString people;
    for (const QChar one : u"12345"_s)
        people += u"<li><b>Anna {c}"_s + one + u"</b> 0221 %1512{i}</li>"_s.arg(one);
    const QString office = u"<article><h2><a href='/b/{i}'>Haus {c}</a></h2><p>Ringweg {i}, 50667 Köln</p><a "
                           "href='https://www.h{i}.example'>Webseite</a><ul>"_s +
                           people + u"</ul></article>"_s;
    EXPECT_EQ(NamesOf(ReadBody(Entries(office, 1, 6))).toStdString(), "B C D E F G");
}

TEST(Grouping, AListThatThePageNamesItselfGoesBeforeALongerOne) {
    const QString named = u"<div class=card itemscope itemtype='https://schema.org/Electrician'><h3><a itemprop=url "
                          "href='/b/{i}'><b itemprop=name>Haus {c}</b></a></h3>"_s +
                          place + call + u"</div>"_s;
    const AnyPageReading reading =
        ReadBody(u"<ul>"_s +
                 Entries(u"<li><h3><a href='/n/{i}'>Notdienst {c}</a></h3><p>Am Ring {i}, 50667 Köln</p><p>0221 "
                         "77712{i}</p><a href='https://www.n{i}.example'>Webseite</a></li>"_s,
                         1, 9) +
                 u"</ul>"_s + Entries(named, 1, 8));
    EXPECT_EQ(NamesOf(reading).toStdString(), "B C D E F G H I");
    EXPECT_EQ(reading.Source, u"microdata"_s);
}

TEST(Grouping, AListThatPromisesLittleIsExplainedAndNeverTaken) {
    const QString body = u"<main>"_s + Entries(u"<div class=card>"_s + inside + u"</div>"_s, 1, 9) +
                         u"</main><section>"_s + Entries(u"<p class=x><b>Büro {c}</b> 030 23456{i}</p>"_s, 1, 3) +
                         u"</section>"_s;
    const PageTree page(u"<html lang=de><title>Elektriker</title><body><h1>Elektriker</h1>"_s + body);
    const AnyPageReading taken = ReadAnyPage(page, site);
    const AnyPageReading explained = ReadAnyPage(page, site, Selectors::Made);
    ASSERT_EQ(taken.Records.size(), 9U);
    ASSERT_EQ(explained.Records.size(), 9U);
    for (size_t i = 0; i < 9; ++i)
        EXPECT_EQ(taken.Records[i].Fields, explained.Records[i].Fields);
    EXPECT_GT(explained.Candidates.size(), taken.Candidates.size());
    EXPECT_TRUE(explained.Candidates.front().Verdict.startsWith(u"taken"));
}

// What strangers' pages may hold, by the piece that they repeat: reading ends soon, and finds nothing.
TEST(Hostile, PagesCostNoMoreThanTheirSize) {
    const struct {
        const char* What;
        QString Before;
        QString Piece;
        int Times;
    } cases[] = {
        {"tiny elements of one class", {}, u"<i class=a>x</i>"_s, 40000},
        {"elements that nobody closes", {}, u"<li class=a><b><a href=/x>Name 12 "_s, 8000},
        {"a huge attribute", u"<a href=/x class='"_s, u"a 1 "_s, 500000},
        {"digits and nothing else", {}, u"1"_s, 2000000},
        {"addresses without end in one line", {}, u"12 Main Street, 555 0100 - "_s, 50000},
        {"arrays in arrays", u"<script type='application/ld+json'>"_s, u"["_s, 2000000},
        {"objects in objects", u"<script type='application/ld+json'>"_s, u"{\"a\":"_s, 400000},
        {"next pages", {}, u"<a rel=next href='?page=2'>Next</a>"_s, 10000},
        {"numbers of pages", {}, u"<a href='?page=2'>2</a> "_s, 10000},
        {"empty cells", u"<table>"_s, u"<tr><td><td><td>"_s, 15000},
        {"items within items", {}, u"<p itemscope itemprop=a itemtype=http://schema.org/Place>"_s, 3000},
    };
    for (const auto& one : cases) {
        const QString html = u"<html><body>"_s + one.Before + one.Piece.repeated(one.Times);
        const std::clock_t begin = std::clock();
        try {
            EXPECT_EQ(ReadAnyPage(PageTree(html), site).Records.size(), 0U) << one.What;
        } catch (const Failure& failure) {
            EXPECT_TRUE(std::string_view(failure.what()).find("more than") != std::string_view::npos) << one.What;
        }
        // Twenty times what a release build takes on a busy machine.
        EXPECT_LT(double(std::clock() - begin) / CLOCKS_PER_SEC, 4.0) << one.What;
    }
}

} // namespace
} // namespace Brindle
