// Guides and yellow pages as they have long been made.
#include "discovery/AnyPage.h"
#include "discovery/Labels.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

std::vector<PageRecord> Read(const QString& entries, const QString& title,
                             const QString& url = u"http://www.guide.example.com/x"_s) {
    const PageTree page(u"<html lang=en><title>%1</title><body><h1>%1</h1><div>%2</div>"_s.arg(title, entries));
    return ReadAnyPage(page, url).Records;
}

// "{i}" is the number of an entry, "{c}" a letter of its own, "{t}" one of two trades.
QString Entries(const QString& entry, int count) {
    QString all;
    for (int i = 1; i <= count; ++i)
        all += QString(entry)
                   .replace(u"{i}"_s, QString::number(i))
                   .replace(u"{c}"_s, QChar(u'A' + i))
                   .replace(u"{t}"_s, i % 2 ? u"Italian"_s : u"Seafood"_s);
    return all;
}

struct Rule {
    const char* Name;
    QString Entry;
    Field Column;
    QString Value; // of the third of eight entries
};

void PrintTo(const Rule& rule, std::ostream* out) {
    *out << rule.Name;
}

class GuideEntry : public testing::TestWithParam<Rule> {};

TEST_P(GuideEntry, GivesTheField) {
    const auto records = Read(Entries(GetParam().Entry + u"</section>"_s, 8), u"Restaurants in Austin, TX"_s);
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[2].Fields.At(static_cast<int>(GetParam().Column)).toStdString(), GetParam().Value.toStdString());
}

const QString head = u"<section><h3><a href='/b/{i}'>House {c}</a></h3>"_s;
const QString line = u"<p>{i}1 Main St, Austin, TX 7870{i}</p>"_s;
const QString plain = u"31 Main St, Austin, TX 78703"_s;
const QString call = u"<p>(512) 555-012{i}</p>"_s;

INSTANTIATE_TEST_SUITE_P(
    Guides, GuideEntry,
    testing::Values(
        Rule{"TradeBehindAnAddressWithItsState",
             head + u"<div class=address>{i}1 Main St, Austin, TX</div><div class=line>{t}</div>"_s + call,
             Field::FullAddress, u"31 Main St, Austin, TX"_s},
        Rule{"TradeInTheListOfTheAddress",
             head + u"<ul class=address><li>{i}1 Main St, Austin, TX 7870{i}</li><li>{t}</li></ul>"_s + call,
             Field::FullAddress, plain},
        Rule{"DistanceInTheElementOfTheAddress",
             head + u"<div class=addresses><address><div>{i}1 Main St</div><div>Austin, TX 7870{i}</div></address>"
                    u"<a href='/b/{i}#map'>0.{i} miles away</a></div>"_s,
             Field::FullAddress, plain},
        Rule{"CountsAndButtonsBehindTheAddress",
             head + u"<small>{i}1 Main St, Austin</small> <span class=fans>4{i} fans</span> "
                    u"<a class=btn href='/g/{i}'>Guestlist</a>"_s,
             Field::FullAddress, u"31 Main St, Austin"_s},
        Rule{"QuarterBeforeTheAddress", head + u"<span class=neighborhood-list>East End</span>"_s + line + call,
             Field::FullAddress, plain},
        Rule{"QuarterWithALabel", head + u"<div>Neighborhood: <a href='/n'>East End</a></div>"_s + line + call,
             Field::City, u"Austin"_s},
        Rule{"ListsOfTextsAreNoStreets", head + u"<span class=category-str-list>{t}</span>"_s + line + call,
             Field::FullAddress, plain},
        Rule{"NumberOfTheEntryInTheName",
             u"<section><a href='/b/{i}'><span class=rank>{i}</span>House {c}</a>"_s + line + call, Field::BusinessName,
             u"House D"_s},
        Rule{"TradeAmongParts", head + u"<p>Downtown | {t} | $$</p>"_s, Field::Category, u"Italian"_s},
        Rule{"TradeAmongPartsOfWhichOneSoundsLikeOne", head + u"<p>Left Bank | {t} | <i>$$</i></p>"_s, Field::Category,
             u"Italian"_s},
        Rule{"TradeBeforeButtons", head + line + u"<p class=type>{t} <a href='/m/{i}'>Map</a></p>"_s, Field::Category,
             u"Italian"_s},
        Rule{"CornerBehindAQuarter",
             head + u"<p class=district>East End</p><address>Main St & Elm Ave<br>Austin, TX 78703</address>"_s + call,
             Field::FullAddress, u"Main St & Elm Ave, Austin, TX 78703"_s},
        Rule{"TradeBeforeTheStreetWithoutItsCode", head + u"<p>{t} | {i}1 Main St | Austin</p>"_s + call,
             Field::FullAddress, u"31 Main St | Austin"_s},
        Rule{"TradeBeforeAPrice", head + u"<p class=cuisine>{t} <i>12-30 €</i></p>"_s + line, Field::Category,
             u"Italian"_s},
        Rule{"TradeBehindIn", head + u"<p class=categories>in <a href='/c'>{t}</a></p>"_s + line, Field::Category,
             u"Italian"_s},
        Rule{"TradeWithItsLabelBefore", head + u"<div>Categorized under <a href='/c'>{t}</a></div>"_s + line,
             Field::Category, u"Italian"_s},
        Rule{"TradeAmongLabelledLines",
             head + u"<p><b>Cuisine :</b> {t}<br><b>Address:</b> {i}1 Main St, Austin, TX 7870{i}<br><b>Prix :</b> "
                    u"20 €</p>"_s,
             Field::Category, u"Italian"_s},
        Rule{"DistanceInBrackets",
             head + u"<p>{i}1 Main St<br>Austin, TX 7870{i} <small>(1.{i} km)</small></p>"_s + call, Field::FullAddress,
             plain},
        Rule{"BasedInATown", head + u"<div class=loc>Based in Austin, TX</div><p class=cuisine>{t}</p>"_s, Field::City,
             u"Austin"_s},
        Rule{"DatesOfRatings", head + u"<p class=location>Austin, TX</p><p class=cuisine>{t}</p><p>5/1{i}/09</p>"_s,
             Field::State, u"TX"_s},
        Rule{"TownRegionAndCountry",
             head + u"<p class=city><a href='/a'>Alcudia</a>, <a href='/m'>Mallorca</a>, <a href='/s'>Spain</a></p>"
                    u"<p class=cuisine>{t}</p>"_s,
             Field::City, u"Alcudia"_s},
        Rule{"HoursAreNoTrade",
             u"<table><tr><td colspan=2><b><a href='/b/{i}'>House {c}</a></b><tr><td>Category:<td>{t}"
             u"<tr><td>Hours:<td>Mon-Fri 9:00 - 5:30<tr><td>Address:<td>{i}1 Main St, Austin, TX 7870{i}</table>"_s,
             Field::Category, u"Italian"_s}),
    [](const auto& info) { return std::string(info.param.Name); });

TEST(Guides, AnAddressWithoutSignsStandsWhereTheOthersDo) {
    QString entries = Entries(head + u"<div class=a>{i}1 Main St, Austin</div>"_s + call + u"</section>"_s, 7);
    entries +=
        u"<section><h3><a href='/b/9'>House Z</a></h3><div class=a>Rose Cottage, The Green, Austin</div><p>(512) "
        u"555-0199</p></section>"_s;
    entries += u"<section><h3><a href='/tips'>Tips</a></h3><div class=a>Read in our blog what matters before you call "
               u"anyone</div></section>"_s;
    const auto records = Read(entries, u"Shops"_s);
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[7].Fields.FullAddress, u"Rose Cottage, The Green, Austin"_s);
    EXPECT_EQ(records[7].Fields.City, u"Austin"_s);
}

TEST(Guides, OneStreetAmongManyTextsIsNone) {
    QString entries = Entries(head + u"<p class=cuisine>{t}</p></section>"_s, 14);
    entries += u"<section><h3><a href='/b/x'>House Z</a></h3><p>As featured in 2 Days on the Food Trail</p>"
               u"<p class=cuisine>Italian</p></section>"_s;
    const auto records = Read(entries, u"Restaurants"_s);
    ASSERT_EQ(records.size(), 15U);
    EXPECT_EQ(records[14].Fields.FullAddress, QString());
}

TEST(Guides, AFormBetweenTheEntriesIsNone) {
    const QString entries =
        Entries(u"<section><h3 class=t><a href='/b/{i}'>House {c}</a></h3>"_s + line + call + u"</section>"_s, 5);
    const auto records =
        Read(entries + u"<section class=news><h3 class=t>Sign up for our newsletter</h3><input></section>"_s + entries,
             u"Restaurants"_s);
    ASSERT_FALSE(records.empty());
    for (const PageRecord& record : records)
        EXPECT_TRUE(record.Fields.Name.startsWith(u"House"_s)) << record.Fields.Name.toStdString();
}

TEST(Guides, NamesPicturesAndTexts) {
    const QString entry =
        u"<div class=e><a href='/b/{i}'><img src='/{i}.jpg'></a><h3><a href='/b/{i}'>House {c}</a></h3>"
        u"<p>A quiet place that the people of the town like. <a href='/b/{i}'>More</a></p></div>"_s;
    EXPECT_EQ(Read(Entries(entry, 9), u"Restaurants in Austin"_s).size(), 9U);
    EXPECT_EQ(Read(Entries(entry, 15) + u"<div class=e><h3>Popular towns</h3><p>Salem</p></div>"_s,
                   u"Restaurants in Austin"_s)
                  .size(),
              15U);
    EXPECT_EQ(Read(Entries(entry, 9), u"Restaurants: the blog"_s).size(), 0U);
    EXPECT_EQ(Read(Entries(entry, 9), u"My days"_s).size(), 0U);
}

TEST(Guides, TownsBeforeCodesOfStates) {
    const QString entry = u"<div class=e><h3><a href='/b/{i}'>House {c}</a></h3><p>St. Louis Park, CA</p></div>"_s;
    const auto records = Read(Entries(entry, 9), u"Restaurants"_s);
    ASSERT_EQ(records.size(), 9U);
    EXPECT_EQ(records[1].Fields.City, u"St. Louis Park"_s);
    EXPECT_EQ(records[1].Fields.State, u"CA"_s);
}

TEST(Guides, BoldPrintThatNobodyEnded) {
    const QString entry =
        u"<div class=e><h3><a href='/b/{i}'>House {c}</a></h3><p class=cuisine>Italian</p><p>Austin, TX</p></div>"_s;
    const QString broken =
        u"<div class=e><h3><a href='/b/x'>House Y</a></h3><p class=cuisine>Italian</p><p><strong><em>Austin, "
        u"TX</p></div>"
        u"<div class=e><h3><a href='/b/y'>House Z</a></h3><p class=cuisine>Italian</p><p>Austin, TX</p></div>"_s;
    EXPECT_EQ(Read(Entries(entry, 7) + broken, u"Restaurants in Austin, TX"_s).size(), 9U);
}

TEST(Guides, NamesStandInElementsThatLookAlike) {
    QString entries =
        Entries(u"<section><div class=body><h3 class=t>House {c}</h3></div>"_s + line + call + u"</section>"_s, 9);
    entries += u"<section><div class='body small'><h3 class=t>House Z</h3></div><p>1 Main St, Austin, TX 78701</p>"
               u"<p>(512) 555-0199</p></section>"_s;
    const auto records = Read(entries, u"Restaurants"_s);
    ASSERT_EQ(records.size(), 10U);
    EXPECT_EQ(records[9].Fields.Name, u"House Z"_s);
}

TEST(Guides, PricesOfRoomsAndOfThingsForSale) {
    const QString inns = Entries(head + u"<span>Austin, TX</span> <span>$8{i}-$12{i} per night</span></section>"_s, 9);
    EXPECT_EQ(Read(inns, u"Bed and Breakfasts in Austin"_s).size(), 9U);
    const QString things =
        Entries(head + u"<p>Private, Austin, TX 7870{i}</p><p>${i}00.00</p>"_s + call + u"</section>"_s, 9);
    EXPECT_EQ(Read(things, u"Classifieds"_s).size(), 0U);
}

TEST(Trades, AreWholeTexts) {
    for (const char16_t* text : {u"Italian", u"Pizza, Seafood", u"Bars / Clubs", u"Zahnarzt", u"Cuisine française"})
        EXPECT_TRUE(IsTrade(text)) << QStringView(text).toUtf8().constData();
    for (const char16_t* text : {u"Italian night with friends", u"Austin", u"", u"Read full review"})
        EXPECT_FALSE(IsTrade(text)) << QStringView(text).toUtf8().constData();
}

} // namespace
} // namespace Brindle
