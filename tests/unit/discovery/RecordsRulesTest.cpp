#include "discovery/AnyPage.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString site = u"https://www.guide.example.de"_s;

std::vector<PageRecord> Read(const QString& entry, const QString& title, int count, const QString& after = {},
                             const QString& from = site + u"/x"_s, const QString& language = u"de"_s) {
    QString list;
    for (int i = 1; i <= count; ++i)
        list += QString(entry).replace(u"{i}"_s, QString::number(i)).replace(u"{c}"_s, QChar(u'A' + i));
    const PageTree page(u"<!DOCTYPE html><html lang=%1><title>%2</title><body><h1>%2</h1><div>%3%4</div>"_s.arg(
        language, title, list, after));
    return ReadAnyPage(page, from).Records;
}

// What an entry says in one place, and what a field of the third entry must then be; "{i}" is its number.
struct Rule {
    const char* Name;
    QString Part; // behind the name's heading
    Field Column;
    QString Value;
};

void PrintTo(const Rule& rule, std::ostream* out) {
    *out << rule.Name;
}

class EntryPart : public testing::TestWithParam<Rule> {};

TEST_P(EntryPart, GivesTheField) {
    const QString head = u"<section><h3><a href='/b/{i}'>Haus {c}</a></h3>"_s;
    const auto records = Read(head + GetParam().Part + u"</section>"_s, u"Elektriker in Köln"_s, 6);
    ASSERT_EQ(records.size(), 6U);
    EXPECT_EQ(records[2].Fields.At(static_cast<int>(GetParam().Column)).toStdString(),
              QString(GetParam().Value).replace(u"{i}"_s, u"3"_s).toStdString());
}

const QString place = u"<div>Ringweg {i}, 50667 Köln</div>"_s;
const QString call = u"<div>0221 55512{i}</div>"_s;

INSTANTIATE_TEST_SUITE_P(
    Parts, EntryPart,
    testing::Values(
        Rule{"NumberOfAButton", place + u"<button data-phone='0221 55512{i}'>Nummer anzeigen</button>"_s, Field::Phone,
             u"0221 55512{i}"_s},
        Rule{"NumberOfAButtonThatIsAFax", call + place + u"<button data-fax='0221 77712{i}'>Fax</button>"_s,
             Field::Phone, u"0221 55512{i}"_s},
        Rule{"MailOfAButton", call + place + u"<button data-email='a{i}@b.example'>Schreiben</button>"_s, Field::Email,
             u"a{i}@b.example"_s},
        Rule{"NameOfAPicture", u"<p><i class=material-icons>place</i> Ringweg {i}, 50667 Köln</p>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"HiddenDigits", place + u"<span data-phone='0221 55512{i}'>0221 55X XX</span>"_s, Field::Phone,
             u"0221 55512{i}"_s},
        Rule{"ALabelledFaxAmongNumbers",
             place + u"<dl class=phones><dt>Büro<dd>0221 55512{i}<dt>Fax<dd>0221 55599{i}</dl>"_s, Field::Phone,
             u"0221 55512{i}"_s},
        Rule{"ANumberOfARegister", place + call + u"<dl><dt>Handelsregister<dd>0221 44412{i}</dl>"_s, Field::Phone,
             u"0221 55512{i}"_s},
        Rule{"ManyNumbersBehindTheAddress",
             u"<div><b>Adresse:</b> Ringweg {i}, 50667 Köln <b>Tel:</b> 0221 55512{i} <b>Fax:</b> 0221 55599{i} "
             u"<b>Mobil:</b> 0151 2345678{i}</div>"_s,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"AnOpenSignBeforeAndATimeBehind",
             u"<p>Jetzt geöffnet</p><p>Ringweg {i}, 50667 Köln</p><p>Schließt um 18:30</p>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"WithinADescription", u"<div class=blurb_description><p>Ringweg {i}<br>50667 Köln</p></div>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"AButtonBehindTheTown", u"<p>Ringweg {i}, 50667 Köln <a href='tel:+4922155512{i}'>Jetzt anrufen</a></p>"_s,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"AnIconOfAFaxAmongPhones",
             place + u"<p class=phone><i class=fa-phone></i> 0221 55512{i}<br><i class=fa-fax></i> 0221 55599{i}</p>"_s,
             Field::Phone, u"0221 55512{i}"_s},
        Rule{"LinesByStyleAlone",
             u"<p><span>Elektriker</span><span>Ringweg {i}, 50667 Köln</span><span>1,2 km</span></p>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"MailWithoutItsSignBehind",
             u"<p><span>Ringweg {i}, 50667 Köln</span><span>info(at)b{i}.example</span></p>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"ALinkBehindTheStreet", u"<p>Ringweg {i}<br><a href='/b/{i}'>Anschauen</a></p>"_s + call,
             Field::FullAddress, u"Ringweg {i}"_s},
        Rule{
            "WebAddressInALongLine",
            call +
                u"<p><span>Ringweg {i}, 50667 Köln (Innenstadt), im Hof der alten Ziegelei hinter dem Markt</span> "
                u"<span>Eingang durch das zweite Tor, Klingel im Erdgeschoss</span> <span>Web:www.h{i}.example</span></p>"_s,
            Field::Website, u"http://www.h{i}.example"_s},
        Rule{"AnOpenSign", u"<p>Ringweg {i}<br>50667 Köln<br>Jetzt geöffnet</p>"_s + call, Field::FullAddress,
             u"Ringweg {i}, 50667 Köln"_s},
        Rule{"ALabelledTradeOfAll", call + place + u"<p><b>Branche:</b> <a href='/x'>Sanitär</a></p>"_s,
             Field::Category, u"Sanitär"_s},
        Rule{"ATagIsNoTrade", call + place + u"<span class=tag>Aktiv</span>"_s, Field::Category, {}},
        Rule{"ASentenceIsNoTrade", call + place + u"<p>Sehr gute Elektriker in der Nähe.</p>"_s, Field::Category, {}},
        Rule{"ADateIsNoNumber", place + u"<div>Tel. 0221 55512{i} <i>06.02.2005</i></div>"_s, Field::Phone,
             u"0221 55512{i}"_s},
        Rule{"AnotherCellIsNoNumber", call + place + u"<div>06.02.201{i}</div>"_s, Field::Phone, u"0221 55512{i}"_s},
        Rule{"ACounterOfThisSite", call + place + u"<a href='/out?to=https%3A%2F%2Fwww.h{i}.example'>Webseite</a>"_s,
             Field::Website, u"https://www.h{i}.example"_s},
        Rule{"ACounterElsewhere",
             call + place + u"<a href='https://t.example/c?d=https%3A%2F%2Fwww.h{i}.example'>Web</a>"_s, Field::Website,
             u"https://www.h{i}.example"_s},
        Rule{"ALabelInAnElement", call + u"<div><span>Adresse</span> <span>Ringweg {i}, 50667 Köln</span></div>"_s,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"TheTradeBeforeTheAddress", u"<div>Elektriker</div>"_s + place + call, Field::FullAddress,
             u"Ringweg {i}, 50667 Köln"_s},
        Rule{"APersonBeforeTheAddress", u"<p>Anna Berg</p><p>Postfach {i} · 50667 Köln</p>"_s + call,
             Field::FullAddress, u"Postfach {i} · 50667 Köln"_s},
        Rule{"AStreetOfItsOwnLine", u"<p>Ringweg {i}</p><p>50667 Köln</p>"_s + call, Field::FullAddress,
             u"Ringweg {i}, 50667 Köln"_s},
        Rule{"AStreetWithoutItsWord", u"<p>Unter Sachsen {i}<br>50667 Köln</p>"_s + call, Field::Address,
             u"Unter Sachsen {i}"_s},
        Rule{"TheTownWithItsCode", call + u"<div class=street>Ringweg {i}</div><div class=city>50667 Köln</div>"_s,
             Field::City, u"Köln"_s},
        Rule{"ClassesOfAStyleSheet", u"<p class='text-sm mt-2'>Ringweg {i}, 50667 Köln</p>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"ClassesOfCells", u"<p class=table-cell>Ringweg {i}, 50667 Köln</p>"_s + call, Field::FullAddress,
             u"Ringweg {i}, 50667 Köln"_s},
        Rule{"BlockAndElement", u"<p class=teaser__line>Ringweg {i}, 50667 Köln</p>"_s + call, Field::FullAddress,
             u"Ringweg {i}, 50667 Köln"_s},
        Rule{"TheTradeOfAFirm", u"<p class=firma-branche>Lampen {i}</p>"_s + place + call, Field::Category,
             u"Lampen {i}"_s},
        Rule{"ClassesOfTheFramework", u"<p class=ng-star-inserted>Ringweg {i}, 50667 Köln</p>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"APersonInTheSameElement", u"<p>Anna Berg<br>Unter Sachsen {i}, 50667 Köln</p>"_s + call,
             Field::FullAddress, u"Unter Sachsen {i}, 50667 Köln"_s},
        Rule{"AMarkInAnElement",
             u"<div><span>Lampen</span><span> · </span><span>Ringweg {i}, 50667 Köln</span></div>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"TheBodyOfACard", u"<div class=card-body><p class=card-text>Ringweg {i}, 50667 Köln</p></div>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"TheTownALevelOff",
             u"<div><p><a href=/m><b>Ringweg {i}</b></a></p><p><i>50667 Köln</i></p></div>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"TheTradeInTheAddress", u"<p>Elektriker · Ringweg {i}, 50667 Köln · 1,{i} km</p>"_s + call,
             Field::Category, u"Elektriker"_s},
        Rule{"TheAddressAlone", u"<p>Elektriker · Ringweg {i}, 50667 Köln · 1,{i} km</p>"_s + call, Field::FullAddress,
             u"Ringweg {i}, 50667 Köln"_s},
        Rule{"AMapBesideTheAddress",
             u"<p>Ringweg {i}, 50667 Köln <a href='/plan/{i}'>Auf Karte anzeigen</a></p>"_s + call, Field::FullAddress,
             u"Ringweg {i}, 50667 Köln"_s},
        Rule{"SeveralTrades",
             u"<div><a class=chip href=/k/1>Elektriker</a><a class=chip href=/k/2>Lampen</a></div>"_s + place + call,
             Field::Category, u"Elektriker, Lampen"_s},
        Rule{"TheTradeBesideThePriceRange", u"<p>€€ | Feine Dinge | Altstadt {i}</p>"_s + place + call, Field::Category,
             u"Feine Dinge"_s},
        Rule{"AnAmountIsNoRange", u"<p>€5{i} | Feine Dinge | Altstadt</p>"_s + place + call, Field::Category, {}},
        Rule{"AHallIsNoTrade", u"<p>€€ | Halle {i} | Altstadt</p>"_s + place + call, Field::Category, {}},
        Rule{"APriceIsNoRange", u"<p>€ | 12 Stück | Altstadt {i}</p>"_s + place + call, Field::Category, {}},
        Rule{"HoursAreNoStreet", u"<p>Ringweg {i}, 50667 Köln</p><p>Mo - Fr 9:00 - 17:{i}0</p>"_s + call,
             Field::FullAddress, u"Ringweg {i}, 50667 Köln"_s},
        Rule{"ARatingIsNoNumber", u"<p><span>3.1 (21{i})</span><span>135 Ringweg, 50667 Köln</span></p>"_s + call,
             Field::Phone, u"0221 55512{i}"_s},
        Rule{"TheNameIsNoTrade", u"<p class=firma-branche>Lampen {i}</p>"_s + place + call, Field::BusinessName,
             u"Haus D"_s},
        Rule{"TheDirectorysOwnNumber", call + u"<p>0221 999888</p>"_s + place, Field::Phone, u"0221 55512{i}"_s},
        Rule{"OneSiteForAllIsNobodysWebsite",
             place + call + u"<a href='https://partner.example/r/{i}'>Webseite</a>"_s,
             Field::Website,
             {}},
        Rule{"OneCounterForAllWithTheirWebsitesAsTexts",
             place + call + u"<a href='https://partner.example/r/{i}'>www.h{i}.example</a>"_s, Field::Website,
             u"http://www.h{i}.example"_s},
        Rule{"ANumberInADescription",
             u"<p>Wir sind seit vielen Jahren in der Stadt und ihrer Umgebung für unsere Kunden da, auch nachts und an "
             "Sonntagen. Unser Vorgänger im Ringweg war unter 0221 88812{i} zu erreichen.</p>"_s +
                 place + call,
             Field::Phone, u"0221 55512{i}"_s},
        Rule{"DirectionsAreNotDetails",
             u"<a href='/weg?id={i}'>Route</a>"_s + place + call + u"<a href='/f/{i}'>Bild</a>"_s, Field::DetailsLink,
             site + u"/b/{i}"_s}),
    [](const auto& info) { return std::string(info.param.Name); });

TEST(Rules, LinksThatLeadElsewhereAreNotDetails) {
    const QString entry = u"<section><h3>Haus {c}</h3>"_s + place + call;
    for (const QString& link : {u"<a href='/weg?id={i}'>Route</a>"_s, u"<a class=category href='/c{i}'>Strom</a>"_s,
                                u"<a href='/out?to=https%3A%2F%2Fwww.h{i}.example'>Webseite</a>"_s}) {
        const auto records = Read(entry + link + u"</section>"_s, u"Elektriker"_s, 6);
        ASSERT_EQ(records.size(), 6U) << link.toStdString();
        EXPECT_EQ(records[0].Fields.DetailsLink, QString()) << link.toStdString();
    }
    EXPECT_EQ(Read(entry + u"<a href='/f/{i}'>Mehr</a></section>"_s, u"Elektriker"_s, 6)[0].Fields.DetailsLink,
              site + u"/f/1"_s);
}

TEST(Rules, DatesAndAuthorsOfReviewsStandBesideAddressesToo) {
    const QString entry = u"<section><h3><a href='/b/{i}'>Haus {c}</a></h3>"_s + place +
                          u"<p><b class=author>Tom</b> <time>12.03.2021</time> „Sehr gut“</p></section>"_s;
    EXPECT_EQ(Read(entry, u"Restaurants in Köln"_s, 8).size(), 8U);
    EXPECT_EQ(Read(entry, u"Konzerte in Köln"_s, 8).size(), 0U);
    EXPECT_EQ(Read(entry, u"Termine"_s, 8).size(), 0U);
}

TEST(Rules, WhatNamesShareBehindThemIsNoPartOfThem) {
    // Every other entry has the badge, in the heading beside the link or within the link.
    for (const QString& name :
         {u"<h3><a href='/b/{i}'>Haus {c}</a>%1</h3>"_s, u"<a href='/b/{i}'><h3>Haus {c}%1</h3></a>"_s,
          u"<h3><i>Haus</i> <i>{c}</i></h3>%1"_s}) {
        QString list;
        for (int i = 1; i <= 8; ++i)
            list += QString(u"<section>"_s + name + place + call + u"</section>"_s)
                        .arg(i % 2 == 0 ? u" <span class=b>Geprüft</span>"_s : QString())
                        .replace(u"{i}"_s, QString::number(i))
                        .replace(u"{c}"_s, QChar(u'A' + i));
        const auto records = Read(list, u"Elektriker in Köln"_s, 1);
        ASSERT_EQ(records.size(), 8U);
        EXPECT_EQ(records[1].Fields.Name.toStdString(), "Haus C");
    }
}

TEST(Rules, RowsAndParagraphsThatOnlyTheirBeginningsTellApart) {
    for (const QString& entry :
         {u"<tr><td><font size=2><b>Haus {c}</b></font></td></tr><tr><td><font size=1>Ringweg {i}, 50667 Köln<br>"
          "Telefon. 0221 55512{i}</font></td></tr><tr><td height=6></td></tr>"_s,
          u"<p><b>Haus {c}</b></p><p>Ringweg {i}, 50667 Köln</p><p>Telefon: 0221 55512{i}</p>"_s}) {
        const QString list = entry.startsWith(u"<tr") ? u"<table>"_s : QString();
        QString all;
        for (int i = 1; i <= 8; ++i)
            all += QString(entry).replace(u"{i}"_s, QString::number(i)).replace(u"{c}"_s, QChar(u'A' + i));
        const auto records =
            Read(list + all + (list.isEmpty() ? QString() : u"</table>"_s), u"Elektriker in Köln"_s, 1);
        ASSERT_EQ(records.size(), 8U) << entry.toStdString();
        EXPECT_EQ(records[2].Fields.Name.toStdString(), "Haus D");
        EXPECT_EQ(records[2].Fields.FullAddress.toStdString(), "Ringweg 3, 50667 Köln");
        EXPECT_EQ(records[2].Fields.Phone.toStdString(), "0221 555123");
    }
}

TEST(Rules, ATableOfCardsMayEndWithinARow) {
    QString rows;
    for (int i = 1; i <= 7; ++i)
        rows += (i % 3 == 1 ? u"<tr>"_s : QString()) +
                u"<td><b>Haus %1</b><br>Ringweg %2, 50667 Köln<br>0221 55512%2</td>"_s.arg(QChar(u'A' + i)).arg(i);
    const auto records = Read(u"<table>"_s + rows + u"</table>"_s, u"Elektriker in Köln"_s, 1);
    ASSERT_EQ(records.size(), 7U);
    EXPECT_EQ(records[6].Fields.Name.toStdString(), "Haus H");
}

TEST(Rules, NamesOfAWallOfLogos) {
    const auto records = Read(u"<div class=p><a href='/b/{i}'><img src='l{i}.png' alt='Haus {c}'></a><p>Ringweg {i}, "
                              "50667 Köln<br>0221 55512{i}</p></div>"_s,
                              u"Elektriker in Köln"_s, 6);
    ASSERT_EQ(records.size(), 6U);
    EXPECT_EQ(records[2].Fields.Name.toStdString(), "Haus D");
    EXPECT_EQ(records[2].Fields.DetailsLink.toStdString(), QString(site + u"/b/3"_s).toStdString());
}

TEST(Rules, NumbersOfEntriesAreNoStreetNumbers) {
    // "Plaza" is a street's word, and the trades differ from entry to entry as well as the names.
    const QString entry = u"<li><h3>{i}. <a href='/b/{i}'>Casa La Plaza {c}</a></h3><a href='/c/{i}'>Dentistas {c}</a>"
                          "<p>Calle Mayor {i}, 28013 Madrid</p><p>+34 912 345 67{i}</p></li>"_s;
    const auto records = Read(entry, u"Dentistas en Madrid"_s, 5, {}, u"https://www.guia.example.es/x"_s, u"es"_s);
    ASSERT_EQ(records.size(), 5U);
    EXPECT_EQ(records[1].Fields.Name.toStdString(), "Casa La Plaza C");
    EXPECT_EQ(records[1].Fields.FullAddress.toStdString(), "Calle Mayor 2, 28013 Madrid");
}

TEST(Rules, CardsWithoutLinesTellTheCountryToo) {
    // All of it is one line of text for who does not know the style; neither the site nor a "+1" says whose numbers
    // these are.
    const auto records =
        Read(u"<a class=c href='/b/{i}'><span>Haus {c}</span><span>{i}9 Maple St, Salem, OR 97301</span>"
             "<span>(217) 523-411{i}</span></a>"_s,
             u"Plumbers"_s, 8, {}, u"https://www.guide.example/x"_s, u"en"_s);
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[2].Fields.Phone.toStdString(), "(217) 523-4113");
}

TEST(Rules, TownsBeforeTheStreetInRussia) {
    const auto address = [](const QString& before) {
        const QString entry = u"<ul><li class=n>Дом {c}</li><li>"_s + before +
                              u"</li><li>ул. Ленина, {i}</li><li>+7 495 123-45-6{i}</li></ul>"_s;
        const auto records = Read(entry, u"Кафе"_s, 6, {}, u"https://www.gid.example.ru/x"_s, u"ru"_s);
        return records.size() == 6 ? records[2].Fields.FullAddress.toStdString() : std::string();
    };
    EXPECT_EQ(address(u"Москва"_s), "Москва, ул. Ленина, 3");
    EXPECT_EQ(address(u"Рестораны"_s), "ул. Ленина, 3");
}

TEST(Rules, NamesThatAreCutOffStandInTheirTitles) {
    const QString entry = u"<section><h3><a href='/b/{i}' title='Haus {c} am Ring'>Haus {c} …</a></h3>"_s + place +
                          call + u"</section>"_s;
    const auto records = Read(entry, u"Elektriker"_s, 6);
    ASSERT_EQ(records.size(), 6U);
    EXPECT_EQ(records[2].Fields.Name.toStdString(), "Haus D am Ring");
}

TEST(Rules, StarsBeforeANameWithoutAnyMark) {
    const auto records = Read(u"<a href='/b/{i}'><div><img> <span>★ 4.{i} (1{i})</span></div><div>Haus {c}</div>"
                              u"<div>Ringweg {i}, 50667 Köln</div><div>0221 55512{i}</div></a>"_s,
                              u"Elektriker in Köln"_s, 8);
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[2].Fields.Name, u"Haus D"_s);
    EXPECT_EQ(records[2].Fields.DetailsLink, site + u"/b/3"_s);
}

TEST(Rules, AMenuBuiltAsTheEntriesAreIsNone) {
    QString list = u"<table><tr><td><a href='/'>Start</a> <a href='/h'>Hilfe</a></td></tr></table>"_s;
    for (int i = 1; i <= 8; ++i)
        list += u"<table><tr><td><a href='/b/%1'><b>Haus %2</b></a><br>Ringweg %1, 50667 Köln<br>0221 55512%1</td>"
                u"<td><a href='karte?%1'><img alt=Karte></a></td></tr></table>"_s.arg(i)
                    .arg(QChar(u'A' + i));
    const PageTree page(u"<html lang=de><title>Elektriker</title><body>"_s + list);
    const auto records = ReadAnyPage(page, site).Records;
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[0].Fields.Name, u"Haus B"_s);
}

TEST(Rules, PricesTellOffersFromBusinesses) {
    const QString entry =
        u"<section><h3><a href='/b/{i}'>Haus {c}</a></h3>"_s + place + u"<p>Seit 1998 %1</p></section>"_s;
    EXPECT_EQ(Read(entry.arg(u"€€"_s), u"Friseure in Köln"_s, 8).size(), 8U);
    EXPECT_EQ(Read(entry.arg(u"€"_s), u"Friseure in Köln"_s, 8).size(), 8U);
    EXPECT_EQ(Read(entry.arg(u"€"_s), u"Hotels in Köln"_s, 8).size(), 8U);
    EXPECT_EQ(Read(entry.arg(u"€"_s), u"Wohnungen in Köln"_s, 8).size(), 0U);
    EXPECT_EQ(Read(entry.arg(u"€"_s), u"Fahrzeuge in Köln"_s, 8).size(), 0U);
    EXPECT_EQ(Read(entry.arg(u"€"_s) + call, u"Gebrauchtwagen in Köln"_s, 8).size(), 0U);
    const QString firm = u"<section><h3><a href='/b/{i}'>Haus {c}</a></h3><p role=img aria-label='4,5 von 5'></p>"
                         u"<p>150 € je Stunde</p><p>Berlin</p></section>"_s;
    EXPECT_EQ(Read(firm, u"Werbeagenturen in Berlin"_s, 8).size(), 8U);
}

TEST(Rules, FewBusinessesNeedAPageAboutThem) {
    const QString entry = u"<section><h3>Haus {c}</h3>"_s + place + call + u"</section>"_s;
    EXPECT_EQ(Read(entry, u"Elektriker in Köln"_s, 2).size(), 2U);
    EXPECT_EQ(Read(entry, u"Willkommen"_s, 2).size(), 0U);
    EXPECT_EQ(Read(entry, u"Elektro Müller: Kontakt"_s, 2).size(), 0U);
    EXPECT_EQ(Read(entry, u"Elektro Müller: Standorte"_s, 3).size(), 0U);
}

TEST(Rules, TheColumnsOfAPageAreNoRecords) {
    QString list;
    for (int i = 1; i <= 9; ++i)
        list += u"<p><b><a href='/b/%1'>Haus %2</a></b> Ringweg %1, 50667 Köln, Tel. 0221 55512%1</p>"_s.arg(i).arg(
            QChar(u'A' + i));
    const PageTree page(u"<html lang=de><title>Restaurants in Köln</title><div><div><h1>Restaurants</h1>"_s + list +
                        u"</div><div><b>Verlag</b><p>Marktplatz 1, 10115 Berlin</p>Tel. 030 2345678 "
                        u"<a href=/i>Impressum</a></div></div>"_s);
    EXPECT_EQ(ReadAnyPage(page, site).Records.size(), 9U);
}

TEST(Rules, ThePagerIsNotOfTheLastRecord) {
    const auto records = Read(
        u"<details><summary>Haus {c}</summary><p>Ringweg {i}, 50667 Köln</p><p>Tel. 0221 55512{i}</p></details>\n"_s,
        u"Elektriker in Köln"_s, 3,
        u"<div><a href='?p=2'>2</a> <a href='?p=3'>3</a> <a href='?p=2'>Weiter</a></div>"_s);
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[2].Fields.FullAddress, u"Ringweg 3, 50667 Köln"_s);
    EXPECT_EQ(records[2].Fields.DetailsLink, QString());
}

TEST(Rules, WhatFollowsAFlatListIsNotOfItsLastRecord) {
    const auto records =
        Read(u"<h3><a href='/b/{i}'>Haus {c}</a></h3><p>Ringweg {i}, 50667 Köln</p><p>Tel. 0221 55512{i}</p>"_s,
             u"Elektriker in Köln"_s, 6,
             u"<h3><a href='/b/9'>Haus Z</a></h3><p>Ringweg 9, 50667 Köln</p>"
             u"<div class=x>Fragen? 0221 999888 <a href='?p=2'>2</a> <a href='?p=3'>3</a></div>"_s);
    ASSERT_EQ(records.size(), 7U);
    EXPECT_EQ(records[6].Fields.FullAddress, u"Ringweg 9, 50667 Köln"_s);
    EXPECT_EQ(records[6].Fields.Phone, QString());
}

TEST(Rules, TownsAndTradesThatThePageNames) {
    const QString entry = u"<section><h3><a href='/b/{i}'>Haus {c}</a></h3><p>Zahnärzte</p><p>Graz</p></section>"_s;
    const auto records = Read(entry, u"Zahnärzte in Graz"_s, 8, {}, u"https://www.guide.example.at/"_s);
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[1].Fields.City, u"Graz"_s);
    EXPECT_EQ(records[1].Fields.Category, u"Zahnärzte"_s);
}

TEST(Rules, ListsThatOnlyLookLikeBusinesses) {
    // Trades with their parts; firms under vacancies; people of one house; years with what happened in them.
    EXPECT_EQ(
        Read(u"<section><h3><a href='/c/{i}'>Elektriker {c}</a></h3><ul class=category><li><a href='/d/{i}'>Bäcker "
             u"{c}</a></ul></section>"_s,
             u"Branchenbuch"_s, 12)
            .size(),
        0U);
    EXPECT_EQ(
        Read(
            u"<section><h3><a href='/s/{i}'>Leitung {c}</a></h3><p>Müller {c} Elektriker</p><p>50667 Köln</p></section>"_s,
            u"Angebote"_s, 12)
            .size(),
        0U);
    EXPECT_EQ(
        Read(
            u"<section><h3>Anna {c}.</h3><p>0221 5551{i}</p><a href='mailto:p{i}@guide.example.de'>Mail</a></section>"_s,
            u"Übersicht"_s, 12)
            .size(),
        0U);
    // The same address in every section; candidates of a party; stops of a line.
    EXPECT_EQ(
        Read(
            u"<section><h2>{i}. Absatz {c}</h2><p>Muster GmbH, Ringweg 1, 50667 Köln, Tel. 0221 555120</p></section>"_s,
            u"Bedingungen"_s, 8)
            .size(),
        0U);
    EXPECT_EQ(
        Read(
            u"<div><h3>Anna {c}</h3><p>Tischlerin</p><p>50667 Köln</p><a href='mailto:a{i}@partei.example'>Mail</a></div>"_s,
            u"Kandidaten"_s, 12)
            .size(),
        0U);
    EXPECT_EQ(Read(u"<li><a href='/h/{i}'>Ringstraße {i}</a> <span>50667 Köln</span> <span>5:0{i}</span></li>"_s,
                   u"Linie 52"_s, 9)
                  .size(),
              0U);
    // Staff with numbers of their own; what readers wrote.
    EXPECT_EQ(
        Read(u"<section><h3>Anna {c}</h3><p>0221 5551{i}</p><a href='mailto:p{i}@uni.example'>Mail</a></section>"_s,
             u"Ärzte der Klinik"_s, 12)
            .size(),
        0U);
    EXPECT_EQ(Read(u"<li class=comment><b class='comment-author fn'><a href='https://b{i}.example/'>Anna "
                   u"{c}</a></b><p>Wir wohnen am "
                   u"Ringweg {i}, 50667 Köln, und kennen Elektriker.</p></li>"_s,
                   u"Elektriker in Köln"_s, 12)
                  .size(),
              0U);
    EXPECT_EQ(Read(u"<li><a href='/w/{i}'>Haus {c}</a>, 192{i}, Theater und Museum</li>"_s, u"Restaurants"_s, 9, {},
                   u"https://www.wiki.example.at/"_s)
                  .size(),
              0U);
}

TEST(Rules, StoresOfAChainBearOneName) {
    const auto records = Read(u"<section><h3>Blumen Weiß</h3><p>Ringweg {i}<br>50667 Köln</p><p>0221 55512{i}</p>"
                              u"<a href='/f/{i}'>Details</a></section>"_s,
                              u"Unsere Geschäfte"_s, 6);
    ASSERT_EQ(records.size(), 6U);
    EXPECT_EQ(records[4].Fields.Name, u"Blumen Weiß"_s);
    EXPECT_EQ(records[4].Fields.Street, u"Ringweg 5"_s);
}

TEST(Rules, NamesThatLinesBeginWithNeedNoElement) {
    const QString linked =
        u"<li><a href='http://www.h{i}.example/'>Haus {c}</a>, Ringweg {i}, 50667 Köln, Tel. 0221 55512{i}</li>"_s;
    const QString bare = u"<li>Garten {c}, Ringweg {i}, 50667 Köln, Tel. 0221 44412{i}</li>"_s;
    const auto records = Read(linked + bare, u"Elektriker in Köln"_s, 5);
    ASSERT_EQ(records.size(), 10U);
    EXPECT_EQ(records[3].Fields.Name, u"Garten C"_s);
    EXPECT_EQ(records[3].Fields.FullAddress, u"Ringweg 2, 50667 Köln"_s);
}

TEST(Rules, PaidEntriesOfAnotherMakeAreEntriesToo) {
    const auto records = Read(
        u"<div class=entry><a href='/b/{i}'>Haus {c}</a><p>Ringweg {i}, 50667 Köln</p><p>0221 55512{i}</p></div>"_s,
        u"Elektriker in Köln"_s, 6,
        u"<section class=premium><span>Anzeige</span><h2><a href='/b/90'>Goldhaus</a></h2><ul><li>Ringweg 90<li>50667 "
        u"Köln</ul><a href='tel:+49221777888'>0221 777888</a></section><aside><h2><a href='/b/91'>Silber</a></h2>"
        u"Ringweg 91, 50667 Köln, 0221 777999</aside>"_s);
    ASSERT_EQ(records.size(), 7U);
    EXPECT_EQ(records[6].Fields.Name, u"Goldhaus"_s);
}

TEST(Rules, PaidEntriesAboveOthersThatDescribeThemselves) {
    const QString paid = u"<section class=premium><h2><a href='/b/90'>Goldhaus</a></h2><ul><li>Ringweg 90<li>50667 "
                         u"Köln</ul><a href='tel:+49221777888'>0221 777888</a></section>"_s;
    const QString own = u"<div class=entry itemscope itemtype='https://schema.org/Electrician'><a itemprop=name "
                        u"href='/b/{i}'>Haus {c}</a><p>Ringweg {i}, 50667 Köln</p><p>0221 55512{i}</p><meta "
                        u"itemprop=email content='haus{i}@b.example'></div>"_s;
    const auto records = Read(own, u"Elektriker in Köln"_s, 6, paid + QString(own).replace(u"{i}"_s, u"7"_s));
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[6].Fields.Name, u"Goldhaus"_s);
    EXPECT_EQ(records[6].Fields.Email, QString());
    EXPECT_EQ(records[7].Fields.Email, u"haus7@b.example"_s);
}

// Lists that are made in ways of their own: what the third record must say.
TEST(Rules, ListsOfOtherMakes) {
    const struct {
        const char* What;
        QString Html; // "{i}" and "{c}" in the part between "[" and "]" are filled six times
        size_t Records;
        Lead Expected; // what is not empty counts
    } cases[] = {
        {"a register with a list for each letter",
         u"[<h3>{c}</h3><dl><dt>Haus {c}<dd>Ringweg {i}, 50667 Köln<dd>0221 55512{i}<dt>Hof {c}<dd>Ringweg 9{i}, 50667 "
         u"Köln<dd>0221 "
         u"55599{i}</dl>]"_s,
         12,
         {.Name = u"Haus C"_s, .Street = u"Ringweg 2"_s, .Phone = u"0221 555122"_s}},
        {"cards that are one link",
         u"[<a class=row href='/b/{i}'>Haus {c}<br>Ringweg {i}, 50667 Köln<br>Telefon: 0221 55512{i}</a>]"_s,
         6,
         {.Name = u"Haus D"_s, .Street = u"Ringweg 3"_s, .Phone = u"0221 555123"_s}},
        {"rows and cells that only their style makes a table",
         u"<div class=t><div class=r><p>Firma</p><p>Adresse</p><p>Ort</p><p>Telefon</p></div>[<div class=r><p><a "
         u"href='/b/{i}'>Haus "
         u"{c}</a></p><p>Ringweg {i}</p><p>50667 Köln</p><p>55 12 1{i}</p></div>]</div>"_s,
         6,
         {.Name = u"Haus D"_s, .Street = u"Ringweg 3"_s, .City = u"Köln"_s, .Phone = u"55 12 13"_s}},
        {"a town for several rows",
         u"<table><tr><th>Ort<th>Firma<th>Adresse<th>Telefon</tr><tr><td rowspan=7>Köln<td>Hof<td>Ringweg 90<td>0221 "
         u"555900</tr>[<tr><td>Haus {c}<td>Ringweg {i}<td>0221 55512{i}</tr>]</table>"_s,
         7,
         {.Name = u"Haus C"_s, .Street = u"Ringweg 2"_s, .City = u"Köln"_s}},
        {"cards that keep the address for a map",
         u"[<div data-street='Ringweg {i}' data-zip=50667 data-city=Köln data-phone='0221 55512{i}'><h3>Haus "
         u"{c}</h3><a href='/b/{i}'>Mehr</a>"
         u"</div>]"_s,
         6,
         {.Name = u"Haus D"_s, .Street = u"Ringweg 3"_s, .City = u"Köln"_s, .PostalCode = u"50667"_s}},
        {"a name in several elements behind its rank",
         u"[<div><h3><i>{i}.</i> <a href='/b/{i}'><span>Haus</span> <span>&amp;</span> <span>Hof</span> "
         u"<span>{c}</span></a></h3><p>Ringweg "
         u"{i}, 50667 Köln</p><p>0221 55512{i}</p></div>]"_s,
         6,
         {.Name = u"Haus & Hof D"_s}},
        {"a post box, a fax behind its number",
         u"[<div><h3>Haus {c}</h3><p>Postfach 12{i}<br>50667 Köln</p><p>0221 55512{i} (Telefon)<br>0221 55599{i} (Fax)</p></div>]"_s,
         6,
         {.Name = u"Haus D"_s, .Street = u"Postfach 123"_s, .Phone = u"0221 555123"_s, .Fax = u"0221 555993"_s}},
        {"a trade below the name within one heading",
         u"[<div><h3><a href='/b/{i}'>Haus {c}</a><ul class=category><li>Elektriker</ul></h3><p>Ringweg {i}, 50667 Köln</p></div>]"_s,
         6,
         {.Category = u"Elektriker"_s, .Name = u"Haus D"_s}},
        {"a town with its district and no street",
         u"[<div><h3><a href='/b/{i}'>Haus {c}</a></h3><p class=loc>Köln, Deutschland</p><p>0221 55512{i}</p></div>]"_s,
         6,
         {.Name = u"Haus D"_s, .City = u"Köln"_s}},
    };
    for (const auto& one : cases) {
        const qsizetype begin = one.Html.indexOf(u'[');
        const qsizetype end = one.Html.indexOf(u']');
        QString html = one.Html.first(begin);
        for (int i = 1; i <= 6; ++i)
            html += one.Html.sliced(begin + 1, end - begin - 1)
                        .replace(u"{i}"_s, QString::number(i))
                        .replace(u"{c}"_s, QChar(u'A' + i));
        const PageTree page(
            u"<html lang=de><title>Elektriker in Köln</title><body><h1>Elektriker in Köln</h1><main>"_s + html +
            one.Html.sliced(end + 1));
        const auto records = ReadAnyPage(page, site + u"/x"_s).Records;
        ASSERT_EQ(records.size(), one.Records) << one.What;
        for (int column = 0; column < FieldCount; ++column) {
            if (const QString& wanted = one.Expected.At(column); !wanted.isEmpty()) {
                EXPECT_EQ(records[2].Fields.At(column).toStdString(), wanted.toStdString()) << one.What;
            }
        }
    }
}

TEST(Rules, TheLastPageOfAListMayHaveOneEntry) {
    const auto pageOf = [](int first, int count, const QString& look) -> QString {
        QString list;
        for (int i = first; i < first + count; ++i)
            list += u"<div class='%3 odd'><b>Haus %1</b><br>Ringweg %2, 50667 Köln<br>0221 5551%2</div>"_s
                        .arg(QChar(u'A' + i))
                        .arg(20 + i)
                        .arg(look);
        return u"<html lang=de><title>Treffer</title><body><h1>Treffer</h1><div class=list>"_s + list;
    };
    const AnyPageReading first = ReadAnyPage(PageTree(pageOf(0, 10, u"hit"_s)), site + u"/x"_s);
    ASSERT_EQ(first.Records.size(), 10U);
    for (const int count : {1, 2, 4}) {
        const PageTree last(pageOf(10, count, u"hit"_s));
        EXPECT_TRUE(count > 2 || ReadAnyPage(last, site + u"/x?p=2"_s).Records.empty());
        const auto records = ReadAnyPage(last, site + u"/x?p=2"_s, Selectors::Left, first.Looks).Records;
        ASSERT_EQ(records.size(), static_cast<size_t>(count));
        EXPECT_EQ(records[0].Fields.Name, u"Haus K"_s);
        EXPECT_EQ(records[0].Fields.Street, u"Ringweg 30"_s);
    }
    const PageTree other(pageOf(10, 2, u"advice"_s));
    EXPECT_EQ(ReadAnyPage(other, site + u"/x?p=2"_s, Selectors::Left, first.Looks).Records.size(), 0U);
}

TEST(Rules, ExhibitorsHaveTownAndCountry) {
    const auto records =
        Read(u"<div class=item><a class=exhibitor-name href='/e/{i}'>Haus {c}</a><div>Porto, Portugal</div><div>"
             u"<span>Halle 4</span> <span>Stand B{i}</span></div></div>"_s,
             u"Aussteller 2026"_s, 8);
    ASSERT_EQ(records.size(), 8U);
    EXPECT_EQ(records[2].Fields.City, u"Porto"_s);
    EXPECT_EQ(records[2].Fields.Country, u"Portugal"_s);
}

} // namespace
} // namespace Brindle
