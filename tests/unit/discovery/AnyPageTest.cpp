#include "discovery/AnyPage.h"

#include "discovery/Explain.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString site = u"https://www.guide.example.de"_s;
const QString url = site + u"/elektriker/koeln"_s;

// A business as a page is to show it.
struct Shown {
    QString Name;
    QString Street;
    QString Town;
    QString Phone;
    QString Website;
    QString Link;
};

std::vector<Shown> Businesses(int count) {
    const QStringList names{u"Müller"_s, u"Weber"_s, u"Koch"_s, u"Becker"_s, u"Schulz"_s, u"Wolf"_s, u"Lang"_s};
    const QStringList streets{u"Gartenstraße"_s, u"Hauptstr."_s, u"Lindenweg"_s};
    std::vector<Shown> list;
    for (int i = 0; i < count; ++i)
        list.push_back({names[i % names.size()] + u" Elektro "_s + QString::number(i),
                        streets[i % streets.size()] + u' ' + QString::number(i % 90 + 1), u"50667 Köln"_s,
                        u"0221 %1"_s.arg(4000000 + i * 37), u"https://www.elektro%1.example/"_s.arg(i),
                        u"/firma/%1"_s.arg(i)});
    return list;
}

QString Page(const QString& body, const QString& title = u"Elektriker in Köln"_s) {
    return u"<!DOCTYPE html><html lang=de><head><title>"_s + title +
           u"</title></head><body><nav><ul><li><a href=/a>Über uns</a><li>"
           u"<a href=/b>Kontakt</a><li><a href=/c>Preise</a></ul></nav><h1>"_s +
           title + u"</h1>"_s + body +
           u"<footer><p><b>Verlag</b><br>Marktplatz 1<br>10115 Berlin<br>Tel. 030 2345678</p><a "
           u"href=/i>Impressum</a></footer>"
           u"</body></html>"_s;
}

AnyPageReading Read(const QString& html, Selectors selectors = Selectors::Left, const QString& from = url) {
    const PageTree page(html);
    return ReadAnyPage(page, from, selectors);
}

// An address as pages hide it from robots.
QString Hidden(const QByteArray& mail) {
    QByteArray bytes(1, '\x2a');
    for (const char c : mail)
        bytes += static_cast<char>(c ^ '\x2a');
    return QString::fromLatin1(bytes.toHex());
}

// One way in which directories lay out their lists: the text of an entry, and what stands around all of them.
struct Layout {
    const char* Name;
    QString Entry; // {n}ame, {s}treet, {t}own, {p}hone, {w}ebsite, {l}ink
    QString Before = u"<div class=list>"_s;
    QString After = u"</div>"_s;
    bool HasWebsite = true;
    bool HasLink = true;
};

void PrintTo(const Layout& layout, std::ostream* out) {
    *out << layout.Name;
}

QString Filled(QString entry, const Shown& shown) {
    return entry.replace(u"{n}"_s, shown.Name)
        .replace(u"{s}"_s, shown.Street)
        .replace(u"{t}"_s, shown.Town)
        .replace(u"{p}"_s, shown.Phone)
        .replace(u"{w}"_s, shown.Website)
        .replace(u"{l}"_s, shown.Link);
}

QString ListOf(const Layout& layout, const std::vector<Shown>& businesses) {
    QString list = layout.Before;
    for (const Shown& shown : businesses)
        list += Filled(layout.Entry, shown);
    return list + layout.After;
}

class EveryLayout : public testing::TestWithParam<Layout> {};

TEST_P(EveryLayout, GivesEachBusinessWithItsFields) {
    const std::vector<Shown> businesses = Businesses(12);
    const AnyPageReading reading = Read(Page(ListOf(GetParam(), businesses)));
    ASSERT_EQ(reading.Records.size(), businesses.size());
    for (size_t i = 0; i < businesses.size(); ++i) {
        const Lead& lead = reading.Records[i].Fields;
        EXPECT_EQ(lead.Name, businesses[i].Name);
        EXPECT_EQ(lead.Phone, businesses[i].Phone);
        EXPECT_EQ(lead.Street, businesses[i].Street);
        EXPECT_EQ(lead.PostalCode + u' ' + lead.City, businesses[i].Town);
        EXPECT_EQ(lead.Website, GetParam().HasWebsite ? businesses[i].Website : QString());
        EXPECT_EQ(lead.DetailsLink, GetParam().HasLink ? site + businesses[i].Link : QString());
    }
    EXPECT_EQ(reading.Source, u"shape"_s);
}

INSTANTIATE_TEST_SUITE_P(
    Pages, EveryLayout,
    testing::Values(
        Layout{"Cards",
               u"<article class='card even'><a href='{l}'><img src=i.jpg></a><h3><a "
               u"href='{l}'>{n}</a></h3><p>{s}<br>{t}</p>"
               u"<p>Tel.: <a href='tel:{p}'>{p}</a></p><p><a href='{w}'>Webseite</a></p><span>4,5</span></article>"_s},
        Layout{
            "HashedClasses",
            u"<div class=css-1x9az><div class=qZk7b><a class=x1 href='{l}'>{n}</a></div><div class=p0Rt><span>{s}, {t}"
            u"</span></div><div class=aa9>{p}</div><div class=bb1><a href='{w}'>{w}</a></div></div>"_s},
        Layout{"CallNowButtons",
               u"<li><h2>{n}</h2><p>{s}, {t}</p><a href='tel:{p}'>Anrufen</a> <a href='{w}'>Homepage</a></li>"_s,
               u"<ul>"_s, u"</ul>"_s, true, false},
        Layout{"Table",
               u"<tr><td><a href='{l}'>{n}</a></td><td>{s}, {t}</td><td>{p}</td><td><a href='{w}'>Web</a></td></tr>"_s,
               u"<table><tr><th>Name</th><th>Adresse</th><th>Telefon</th><th>Web</th></tr>"_s, u"</table>"_s},
        Layout{"TwoRowsEach",
               u"<tr><td colspan=2><b><a href='{l}'>{n}</a></b></td></tr><tr><td>{s}<br>{t}</td><td>{p}</td></tr>"_s,
               u"<table>"_s, u"</table>"_s, false},
        Layout{"DefinitionList", u"<dt><a href='{l}'>{n}</a></dt><dd>{s}, {t}</dd><dd>Telefon: {p}</dd>"_s, u"<dl>"_s,
               u"</dl>"_s, false},
        Layout{"FlatHeadings", u"<h3>{n}</h3><p>{s}<br>{t}</p><p>Tel. {p}</p><p><a href='{w}'>{w}</a></p>"_s,
               u"<div>"_s, u"</div>"_s, true, false},
        Layout{"LinesInAParagraph", u"<p><b>{n}</b><br>{s}<br>{t}<br>Tel: {p}<br>Fax: 0221 999000</p>"_s, u"<div>"_s,
               u"</div>"_s, false, false},
        Layout{"OneLine", u"<li><a href='{l}'>{n}</a>, {s}, {t} | Tel. {p}</li>"_s, u"<ul>"_s, u"</ul>"_s, false},
        Layout{"LabelsAndValues",
               u"<div><h4>{n}</h4><dl><dt>Adresse<dd>{s}, {t}<dt>Telefon<dd>{p}<dt>Fax<dd>0221 888111</dl></div>"_s,
               u"<section>"_s, u"</section>"_s, false, false},
        Layout{"LinkAroundTheCard",
               u"<a class=c href='{l}'><span>{n}</span><span>{s}, {t}</span><span>{p}</span></a>"_s, u"<div>"_s,
               u"</div>"_s, false},
        Layout{"DeepWrappers",
               u"<div class=w><div><div><div class=l><h3><a href='{l}'>{n}</a></h3></div><div "
               u"class=r><div><span>{s}</span> "
               u"<span>{t}</span></div><div><i class=icon-phone></i>{p}</div></div></div></div></div>"_s,
               u"<div>"_s, u"</div>"_s, false}),
    [](const auto& info) { return std::string(info.param.Name); });

const QString card =
    u"<div class='hit{v}'><h3><a href='{l}'>{n}</a></h3><p class=adr>{s}, {t}</p><p class=tel>{p}</p></div>"_s;

QString Card(const Shown& shown, const QString& more = {}) {
    return Filled(QString(card).replace(u"{v}"_s, more), shown);
}

TEST(Records, PaidEntriesAndAdvertisementsBetween) {
    const std::vector<Shown> businesses = Businesses(9);
    QString list = u"<div id=hits>"_s;
    for (size_t i = 0; i < businesses.size(); ++i) {
        list += Card(businesses[i], i < 3 ? u"-gold big"_s : QString());
        if (i == 4)
            list += u"<div class=hit-ad><a href='https://ads.example/1'>Jetzt Strom wechseln!</a></div>"_s;
    }
    const AnyPageReading reading = Read(Page(list + u"</div>"_s));
    ASSERT_EQ(reading.Records.size(), businesses.size());
    EXPECT_EQ(reading.Records.front().Fields.Name, businesses.front().Name);
    EXPECT_EQ(reading.Records.back().Fields.Website, QString());
}

TEST(Records, ASideListOfTheSameClassIsLeftOut) {
    QString main;
    for (const Shown& shown : Businesses(8))
        main += Card(shown);
    QString side;
    for (int i = 0; i < 5; ++i)
        side += u"<div class=hit><h3><a href='/firma/top%1'>Beliebt %1</a></h3></div>"_s.arg(i);
    EXPECT_EQ(
        Read(Page(u"<div class=box>"_s + main + u"</div><aside class=box>"_s + side + u"</aside>"_s)).Records.size(),
        8U);
}

TEST(Records, CardsInRowsAreReadOneByOne) {
    QString rows;
    const std::vector<Shown> businesses = Businesses(12);
    for (size_t i = 0; i < businesses.size(); ++i)
        rows += (i % 3 == 0 ? u"<div class=row>"_s : QString()) + Card(businesses[i]) +
                (i % 3 == 2 ? u"</div>"_s : QString());
    EXPECT_EQ(Read(Page(rows)).Records.size(), 12U);
}

TEST(Records, FieldsThatEntriesHideOrRepeat) {
    QString list;
    for (int i = 1; i <= 8; ++i)
        list +=
            QString(u"<li><h3>#. <a href='/f/#'>Betrieb # GmbH</a></h3><p>Ringstraße #, 50667 Köln</p>"
                    u"<p>Tel. 0221 55512# / mobil 0171 55512#</p><p>Telefax: 0221 77712#</p>"
                    u"<a class='__cf_email__' data-cfemail='@'>[email protected]</a>"
                    u"<a href='/out?url=https%3A%2F%2Fbetrieb#.example%2F' class=website>Webseite</a>"
                    u"<a href='https://www.google.com/maps?q=#'>Karte</a><a href='https://www.facebook.com/b#'>f</a>"
                    u"<div class=branche>Elektriker</div></li>"_s)
                .replace(u'#', QString::number(i))
                .replace(u'@', Hidden("info@betrieb" + QByteArray::number(i) + ".example"));
    const AnyPageReading reading = Read(Page(u"<ul>"_s + list + u"</ul>"_s));
    ASSERT_EQ(reading.Records.size(), 8U);
    const Lead& lead = reading.Records[2].Fields;
    EXPECT_EQ(lead.Name, u"Betrieb 3 GmbH"_s);
    EXPECT_EQ(lead.Phone, u"0221 555123;0171 555123"_s);
    EXPECT_EQ(lead.Fax, u"0221 777123"_s);
    EXPECT_EQ(lead.Website, u"https://betrieb3.example/"_s);
    EXPECT_EQ(lead.Email, u"info@betrieb3.example"_s);
    EXPECT_EQ(lead.MapLink, u"https://www.google.com/maps?q=3"_s);
    EXPECT_EQ(lead.Category, u"Elektriker"_s);
}

TEST(Records, NamesAndTownsAreEnoughWhereThePageIsAboutBusinesses) {
    const auto list = [](const QString& title) {
        QString html;
        for (int i = 0; i < 10; ++i)
            html +=
                u"<li class=venue><h3><a href='/restaurants/place-%1'>Gasthof %1</a></h3><span class=city>Köln</span> "
                u"<span class=cuisine>Deutsch</span></li>"_s.arg(QChar(u'A' + i));
        return Read(Page(u"<ul>"_s + html + u"</ul>"_s, title), Selectors::Left, u"https://www.tage.example/2"_s);
    };
    const AnyPageReading found = list(u"Restaurants in Köln"_s);
    ASSERT_EQ(found.Records.size(), 10U);
    EXPECT_EQ(found.Records[1].Fields.City, u"Köln"_s);
    EXPECT_EQ(found.Records[1].Fields.Category, u"Deutsch"_s);
    EXPECT_TRUE(list(u"Meine schönsten Tage"_s).Records.empty());
}

TEST(Records, StructuredDataAndShapeAddToEachOther) {
    QString list;
    for (int i = 0; i < 6; ++i)
        list +=
            u"<div itemscope itemtype='https://schema.org/LocalBusiness'><h3 itemprop=name>Betrieb %1</h3>"
            u"<div itemprop=address itemscope itemtype='https://schema.org/PostalAddress'><meta itemprop=postalCode "
            u"content=50667>"
            u"<meta itemprop=addressLocality content=Köln></div><p>Tel. 0221 55512%1</p><a href='/b/%1'>Mehr</a></div>"_s
                .arg(i);
    const AnyPageReading reading = Read(Page(list));
    ASSERT_EQ(reading.Records.size(), 6U);
    EXPECT_EQ(reading.Source, u"microdata"_s);
    EXPECT_EQ(reading.Records[4].Fields.PostalCode, u"50667"_s);
    EXPECT_EQ(reading.Records[4].Fields.Phone, u"0221 555124"_s);
    EXPECT_EQ(reading.Records[4].Fields.DetailsLink, site + u"/b/4"_s);
}

// What is repeated on pages that list no businesses.
struct NoList {
    const char* Name;
    QString Title;
    QString Entry; // {i}: a number
};

void PrintTo(const NoList& one, std::ostream* out) {
    *out << one.Name;
}

class NoBusinesses : public testing::TestWithParam<NoList> {};

TEST_P(NoBusinesses, GiveNoLeads) {
    for (const int count : {2, 4, 12, 30}) {
        QString list;
        for (int i = 0; i < count; ++i)
            list += QString(GetParam().Entry).replace(u"{i}"_s, QString::number(i + 11));
        const AnyPageReading reading = Read(Page(u"<div class=list>"_s + list + u"</div>"_s, GetParam().Title));
        EXPECT_TRUE(reading.Records.empty()) << count << ' ' << reading.Records.front().Fields.Name.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Pages, NoBusinesses,
    testing::Values(
        NoList{
            "Shop", u"Schuhe"_s,
            u"<div class=product><a href='/p/{i}'><img><h3>Schuh {i}</h3></a><b>{i},99 €</b><button>Kaufen</button></div>"_s},
        NoList{"Forum", u"Forum"_s,
               u"<tr><td><a href='/t/{i}'>Frage {i} zum Thema</a><td>Anna<td>{i}<td>12.05.2022 14:30</tr>"_s},
        NoList{"Vacancies", u"Elektriker Jobs in Köln"_s,
               u"<div><h2><a href='/j/{i}'>Elektriker (m/w/d) {i}</a></h2><p>Weber GmbH</p>"
               u"<p>50667 Köln</p><p>Vollzeit</p></div>"_s},
        NoList{"News", u"Nachrichten"_s,
               u"<article><h3><a href='/2024/{i}'>Meldung {i}</a></h3><time>3. Mai 2024</time><p>Der Rat der "
               u"Stadt hat beschlossen, dass alles so bleibt.</p></article>"_s},
        NoList{"Events", u"Veranstaltungen"_s,
               u"<div class=event><h3><a href='/e/{i}'>Konzert {i}</a></h3><span>{i}.06.2024 20:00</span>"
               u"<span>Stadthalle, Marktstraße 5, 50667 Köln</span></div>"_s},
        NoList{
            "Flats", u"Wohnungen"_s,
            u"<div><h3><a href='/w/{i}'>Wohnung {i}</a></h3><p>Gartenstraße {i}, 50667 Köln</p><p>9{i} €</p></div>"_s},
        NoList{
            "Recipes", u"Rezepte"_s,
            u"<li class=recipe><h3><a href='/r/{i}'>Kuchen {i}</a></h3><span class=rating>4.5</span> {i} min</li>"_s},
        NoList{"Comments", u"Kommentare"_s,
               u"<li><b>Anna {i}</b> <i>vor {i} Stunden</i><p>Das sehe ich auch so, danke!</p></li>"_s},
        NoList{"Versions", u"Download"_s,
               u"<div><h4><a href='/s/{i}'>Programm {i}</a></h4>Version 2.10.{i}.4711 vom 2023-05-{i}</div>"_s},
        NoList{
            "Offices", u"Elektriker in Köln"_s,
            u"<div class=office><h4>Köln-{i}</h4><p>Hauptstr. {i}<br>506{i} Köln-{i}</p><p>0221 5551{i}0</p></div>"_s},
        NoList{"Questions", u"Restaurants in Köln: Fragen"_s,
               u"<details><summary>Was kostet das {i}?</summary><p>Rufen Sie an: 0221 5551{i}0</p></details>"_s},
        NoList{"Team", u"Unsere Zahnärzte"_s,
               u"<div class=p><h3>Dr. Anna Berg {i}</h3><p>Zahnarzt</p><p>0221 5551100</p></div>"_s},
        NoList{"LinksToSites", u"Suche"_s,
               u"<div><h3><a href='https://seite{i}.example/'>Treffer {i}</a></h3><p>Ein Text dazu.</p></div>"_s}),
    [](const auto& info) { return std::string(info.param.Name); });

TEST(Explain, SaysWhatWasFoundAndWhy) {
    QString list;
    for (const Shown& shown : Businesses(6))
        list += Card(shown);
    const QString html = Page(u"<div id=hits>"_s + list + u"</div><a rel=next href='?page=2'>Weiter</a>"_s);
    const QJsonObject json = QJsonDocument::fromJson(ExplainReading(Read(html, Selectors::Made))).object();
    EXPECT_EQ(json[u"records"_s].toInt(), 6);
    EXPECT_EQ(json[u"source"_s].toString(), u"shape"_s);
    EXPECT_EQ(json[u"record"_s].toString(), u"div.hit"_s);
    EXPECT_EQ(json[u"next"_s].toString(), url + u"?page=2"_s);
    const QJsonObject phone = json[u"fields"_s].toObject()[u"Phone"_s].toObject();
    EXPECT_EQ(phone[u"selector"_s].toString(), u"p.tel"_s);
    EXPECT_EQ(phone[u"filled"_s].toInt(), 6);
    EXPECT_FALSE(phone[u"why"_s].toString().isEmpty());
    ASSERT_FALSE(json[u"candidates"_s].toArray().isEmpty());
    const QJsonObject nothing = QJsonDocument::fromJson(ExplainReading(Read(Page(u"<p>Text"_s)))).object();
    EXPECT_EQ(nothing[u"records"_s].toInt(-1), 0);
    EXPECT_TRUE(nothing[u"source"_s].isNull() && nothing[u"record"_s].isNull() && nothing[u"next"_s].isNull());
}

TEST(Records, TheSamePageGivesTheSameReading) {
    QString list;
    for (const Shown& shown : Businesses(15))
        list += Card(shown);
    const QString html = Page(list);
    EXPECT_EQ(ExplainReading(Read(html, Selectors::Made)), ExplainReading(Read(html, Selectors::Made)));
}

double SecondsToRead(const QString& html) {
    const PageTree page(html);
    QElapsedTimer timer;
    timer.start();
    ReadAnyPage(page, url);
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

// Ten times the page may cost ten times as long, with room for a busy machine, but not a hundred times.
TEST(Records, CostGrowsWithThePage) {
    const std::vector<std::pair<const char*, QString>> pieces{
        {"cards", Card(Businesses(1).front())},
        {"unclosed", u"<div><a href=/x>a<b>"_s},
        {"siblings", u"<p>Name</p><span>0221 555123</span>"_s},
        {"one line", u"<a href=/f>Name</a> 0221 555123, "_s},
        {"digits", u"<i>12</i>"_s},
    };
    for (const auto& [name, piece] : pieces) {
        const bool deep = QByteArray(name) == "unclosed";
        const double small = SecondsToRead(Page(piece.repeated(deep ? 60 : 400)));
        const double large = SecondsToRead(Page(piece.repeated(deep ? 600 : 4000)));
        EXPECT_LT(large, 40 * small + 0.2) << name;
    }
}

} // namespace
} // namespace Brindle
