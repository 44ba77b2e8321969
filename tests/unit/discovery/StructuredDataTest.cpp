#include "discovery/StructuredData.h"

#include "PrintTo.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString listUrl = u"https://www.dir.example/pizza/toronto?page=2"_s;

std::vector<StructuredRecord> Records(const QString& html) {
    return StructuredRecords(PageTree(html), listUrl);
}

QString Script(const QString& json) {
    return u"<head><script type='application/ld+json'>"_s + json + u"</script></head>"_s;
}

// A lead as one line, to compare it with a row of a table.
QString Line(const Lead& lead) {
    QStringList fields;
    for (int column = 0; column < FieldCount; ++column)
        fields.append(lead.At(column));
    return fields.join(u'|');
}

TEST(StructuredData, ABusinessIsTheSameInEveryNotation) {
    const QString expected = u"Pizza, Italian|Joe's Pizza & Sons|1 Main St, Suite 4, Toronto, ON M5V 1A1|1 Main St, "
                             u"Suite 4|Toronto|ON|M5V 1A1|"
                             u"Canada|416-555-0100;416-555-0101|416-555-0199|https://joes.example/|joe@joes.example|"
                             u"https://maps.example/joes|https://www.dir.example/biz/joes"_s;
    const struct {
        Notation In;
        QString Html;
    } cases[] = {
        {Notation::JsonLd,
         Script(uR"({"@context": "https://schema.org", "@type": "Restaurant", "name": "Joe&#39;s Pizza &amp; Sons",
            "servesCuisine": ["Pizza", "Italian"], "telephone": ["416-555-0100", "tel:416-555-0101"],
            "faxNumber": "416-555-0199", "email": "mailto:joe@joes.example?subject=Hi", "url": "/biz/joes",
            "sameAs": ["https://www.facebook.com/joes", "https://joes.example/"], "hasMap": "https://maps.example/joes",
            "address": {"@type": "PostalAddress", "streetAddress": "1 Main St,\n Suite 4", "addressLocality": "Toronto",
            "addressRegion": "ON", "postalCode": "M5V 1A1", "addressCountry": {"@type": "Country", "name": "Canada"}}})"_s)},
        {Notation::Microdata, uR"(<div itemscope itemtype="http://schema.org/Restaurant"><h2 itemprop="name"><a
            href="/biz/joes">Joe's Pizza &amp; Sons</a></h2> <span itemprop=servesCuisine>Pizza</span>, <span
            itemprop=servesCuisine>Italian</span> <a itemprop=telephone href="tel:+14165550100">416-555-0100</a>
            <span itemprop=telephone>Tel.: 416-555-0101</span> <meta itemprop=faxNumber content="416-555-0199">
            <a itemprop=email href="mailto:joe@joes.example">write</a> <a itemprop=url href="https://joes.example/">web</a>
            <link itemprop=hasMap href="https://maps.example/joes">
            <p itemprop=address itemscope itemtype="http://schema.org/PostalAddress"><span itemprop=streetAddress>1 Main St,<br>Suite
            4</span><span itemprop=addressLocality>Toronto</span><span itemprop=addressRegion>ON</span><span
            itemprop=postalCode>M5V&nbsp;1A1</span><span itemprop=addressCountry itemscope><b itemprop=name>Canada</b></span></div>)"_s},
        {Notation::Rdfa,
         uR"(<div vocab="https://schema.org/" typeof="Restaurant"><h2 property=name>Joe's Pizza &amp; Sons</h2>
            <a property=url href="/biz/joes">more</a> <span property=servesCuisine>Pizza</span> <span
            property="servesCuisine" content="Italian"></span> <i property=telephone>416-555-0100</i><i
            property="schema:telephone">416-555-0101</i><i property=faxNumber>416-555-0199</i><a property=email
            href="mailto:joe@joes.example">mail</a><a property=url href="https://joes.example/">web</a><a property=hasMap
            href="https://maps.example/joes">map</a><div property=address typeof=PostalAddress><b property=streetAddress>1 Main St,
            Suite 4</b><b property=addressLocality>Toronto</b><b property=addressRegion>ON</b><b property=postalCode>M5V 1A1</b><b
            property=addressCountry typeof=Country><i property=name>Canada</i></b></div></div>)"_s},
        {Notation::Microformats,
         uR"(<div class="card h-card"><a class="p-name u-url" href="/biz/joes">Joe's Pizza &amp; Sons</a>
            <i class=p-category>Pizza</i><i class=p-category>Italian</i><b class=p-tel>416-555-0100</b><b class=p-tel>416-555-0101</b>
            <b class=p-fax>416-555-0199</b><a class=u-email href="mailto:joe@joes.example">mail</a><a class=u-url
            href="https://joes.example/">web</a><a class=u-map href="https://maps.example/joes">map</a><p class="p-adr h-adr"><span
            class=p-street-address>1 Main St</span>, <span class=p-extended-address>Suite 4</span> <span class=p-locality>Toronto</span>
            <abbr class=p-region title=ON>Ontario</abbr> <span class=p-postal-code>M5V 1A1</span> <span
            class=p-country-name>Canada</span></div>)"_s},
        {Notation::Microformats,
         uR"(<li class="vcard"><a class="fn org url" href="/biz/joes">Joe's Pizza &amp; Sons</a> <i
            class=category>Pizza</i><i class=category>Italian</i><b class=tel><i class=type>Work</i> <i class=value>416-555-0100</i></b>
            <b class=tel>416-555-0101</b><b class=tel><i class=type>Fax</i>: <i class=value>416-555-0199</i></b><a class=email
            href="mailto:joe@joes.example">mail</a><a class=url href="https://joes.example/">web</a> <p class=adr><span
            class=street-address>1 Main St</span>, <span class=extended-address>Suite 4</span> <span class=locality>Toronto</span>
            <span class=region>ON</span> <span class=postal-code>M5V 1A1</span> <span class=country-name>Canada</span></p></li>)"_s},
    };
    for (const auto& row : cases) {
        const std::vector<StructuredRecord> records = Records(row.Html);
        ASSERT_EQ(records.size(), 1U) << NotationName(row.In).toStdString();
        EXPECT_EQ(records[0].In, row.In);
        Lead lead = records[0].Fields;
        if (row.Html.contains(u"\"vcard\""))
            lead.MapLink = u"https://maps.example/joes"_s; // the classic form knows no map
        EXPECT_EQ(Line(lead), expected) << NotationName(row.In).toStdString();
        EXPECT_EQ(records[0].Node == noNode, row.In == Notation::JsonLd);
    }
}

TEST(StructuredData, JsonIsReadAsPagesHaveIt) {
    const struct {
        const char* What;
        QString Json;
        QString Names;
    } cases[] = {
        {"comments and commas", u"/* x */ {\"@type\": \"Hotel\", // y\n \"name\": \"A\",,}"_s, u"A"_s},
        {"a line end in a text", u"{\"@type\":\"Hotel\",\"name\":\"A\nB\"}"_s, u"A B"_s},
        {"several values", u"{\"@type\":\"Hotel\",\"name\":\"A\"}\n{\"@type\":\"Hotel\",\"name\":\"B\"}"_s, u"A,B"_s},
        {"an array", u"[{\"@type\":\"Hotel\",\"name\":\"A\"},[{\"@type\":\"Hotel\",\"name\":\"B\"}]]"_s, u"A,B"_s},
        {"a graph",
         u"{\"@graph\":[{\"@type\":\"Hotel\",\"name\":\"A\"},{\"@type\":[\"Thing\",\"Hotel\"],\"name\":\"B\"}]}"_s,
         u"A,B"_s},
        {"a comment of HTML", u"<!--\n{\"@type\":\"Hotel\",\"name\":\"A\"}\n-->"_s, u"A"_s},
        {"CDATA", u"//<![CDATA[\n{\"@type\":\"Hotel\",\"name\":\"A\"}\n//]]>"_s, u"A"_s},
        {"quotation marks as entities", u"{&quot;@type&quot;:&quot;Hotel&quot;,&quot;name&quot;:&quot;A&quot;}"_s,
         u"A"_s},
        {"single ones, bare names", u"{'@type':'Hotel',name:'Joe\\'s'}"_s, u"Joe's"_s},
        {"one too many in a text", u"{\"@type\":\"Hotel\",\"name\":\"The \"Old\" Inn\",\"telephone\":\"1\"}"_s,
         u"The \"Old\" Inn"_s},
        {"escapes", u"{\"@type\":\"Hotel\",\"name\":\"Caf\\u00e9 \\x26 \\/ \\q\"}"_s, u"Café & / q"_s},
        {"markup in a text", u"{\"@type\":\"Hotel\",\"name\":\"A<br>B &eacute;\"}"_s, u"A B é"_s},
        {"no end", u"{\"@type\":\"Hotel\",\"name\":\"A\",\"address\":{\"streetAddress\":\"1 Ma"_s, u"A"_s},
        {"a bracket too many", u"{\"@type\":\"Hotel\",\"name\":\"A\"}]},{\"@type\":\"Hotel\",\"name\":\"B\"}"_s,
         u"A,B"_s},
        {"another bracket",
         u"{\"@graph\":[{\"@type\":\"Hotel\",\"name\":\"A\"},{\"@type\":\"Hotel\",\"name\":\"B\"}}"_s, u"A,B"_s},
        {"another bracket within", u"{\"@type\":\"Hotel\",\"address\":{\"streetAddress\":\"1 Ma\"],\"name\":\"A\"}"_s,
         u"A"_s},
        {"values of other kinds",
         u"{\"@type\":\"Hotel\",\"name\":{\"@value\":\"A\"},\"x\":null,\"y\":-1e5,\"z\":tru}"_s, u"A"_s},
        {"no JSON", u"var x = function() { return 1; }"_s, u""_s},
    };
    for (const auto& row : cases) {
        QStringList names;
        for (const StructuredRecord& record : Records(Script(row.Json)))
            names.append(record.Fields.Name);
        EXPECT_EQ(names.join(u','), row.Names) << row.What;
    }
}

TEST(StructuredData, ARecordTellsWhatPartItPlays) {
    const struct {
        const char* What;
        QString Html;
        QString Expected; // name, role, kind, list and position of each record
    } cases[] = {
        {"entries, with their places",
         Script(
             uR"({"@type":"ItemList","itemListElement":[{"@type":"ListItem","position":11,"item":{"@type":"CafeOrCoffeeShop",
             "@id":"/biz/a","name":"x"}},{"@type":"ListItem","position":12,"url":"/biz/b","item":{"@type":"Bakery","name":"B"}},
             {"@type":"Hotel","name":"C"},{"@type":"ListItem","url":"/biz/d","name":"D"}]})"_s),
         u"x listed business 0:11 /biz/a; B listed business 0:12 /biz/b; C listed business 0:3 ; D listed link 0:4 /biz/d"_s},
        {"mere addresses", Script(uR"({"@type":"ItemList","itemListElement":["/biz/a","https://a.example/"]})"_s),
         u" listed link 0:1 /biz/a"_s},
        {"by reference",
         Script(
             uR"([{"@id":"#1","@type":"Hotel","name":"A","url":"/biz/a"},{"@id":"#p","@type":"Organization","name":"Us"},
             {"@type":"WebSite","publisher":{"@id":"#p"}},{"@type":"ItemList","itemListElement":[{"@id":"#1"}]}])"_s),
         u"A listed business 0:1 /biz/a; Us owner business -1:0 "_s},
        {"who stands behind the page",
         Script(uR"([{"@type":"Organization","name":"Dir","url":"https://dir.example"},{"@type":"Article","author":
             {"@type":"Person","name":"Ann","telephone":"1234567"},"publisher":{"@type":"Organization","name":"P"}}])"_s),
         u"Dir owner business -1:0 ; Ann owner person -1:0 ; P owner business -1:0 "_s},
        {"an event's place", Script(uR"({"@type":"Event","name":"Jazz","location":{"@type":"Place","name":"Hall"}})"_s),
         u"Hall nested business -1:0 "_s},
        {"the path from the home page is no list",
         Script(
             uR"({"@type":"BreadcrumbList","itemListElement":[{"@type":"ListItem","position":1,"item":{"@type":"Organization",
             "name":"Pizza","@id":"/pizza"}},{"@type":"ListItem","position":2,"name":"Toronto","item":"/toronto"}]})"_s),
         u""_s},
        {"people count when they can be reached",
         u"<p class=vcard><b class=fn>Ann</b></p><p class='h-card'><b class=p-name>Bob</b></p><div itemscope "
         u"itemtype='http://schema.org/Person'><b itemprop=name>Cy</b></div><div itemscope "
         u"itemtype='http://schema.org/Person'><b itemprop=name>Di</b><b itemprop=telephone>555-0100</b></div>"_s,
         u"Ann plain business -1:0 ; Bob plain business -1:0 ; Di plain person -1:0 "_s},
        {"other things are none",
         Script(
             uR"([{"@type":"Product","name":"Shoe"},{"@type":"Recipe","name":"Soup"},{"@type":"Hotel","telephone":"123"}])"_s),
         u""_s},
        {"in the page's order, whatever the notation",
         u"<i class=h-card>A</i><script "
         u"type='application/ld+json;charset=utf-8'>{\"@type\":\"https://schema.org/Hotel\","
         u"\"name\":\"B\"}</script><div itemscope itemtype='http://schema.org/Plumber'><b itemprop=name>C</b></div>"_s,
         u"A plain business -1:0 ; B plain business -1:0 ; C plain business -1:0 "_s},
    };
    static constexpr const char* roles[] = {"plain", "listed", "owner", "nested"};
    static constexpr const char* kinds[] = {"business", "person", "link"};
    for (const auto& row : cases) {
        QStringList lines;
        for (const StructuredRecord& record : Records(row.Html))
            lines.append(u"%1 %2 %3 %4:%5 %6"_s
                             .arg(record.Fields.Name, QLatin1String(roles[int(record.Role)]),
                                  QLatin1String(kinds[int(record.Kind)]))
                             .arg(record.List)
                             .arg(record.Position)
                             .arg(QString(record.Fields.DetailsLink)
                                      .remove(u"https://www.dir.example"_s)
                                      .remove(u"https://dir.example"_s)));
        EXPECT_EQ(lines.join(u"; "_s).toStdString(), row.Expected.toStdString()) << row.What;
    }
}

TEST(StructuredData, LinksAreThoseOfTheWebAndOnTheirSideOfTheSite) {
    const struct {
        QString Url;
        QString Website;
        QString Details;
    } cases[] = {
        {u"/biz/a"_s, u""_s, u"https://www.dir.example/biz/a"_s},
        {u"http://m.dir.example/biz/a"_s, u""_s, u"http://m.dir.example/biz/a"_s},
        {u"https://a.example/"_s, u"https://a.example/"_s, u""_s},
        {u"www.a.example"_s, u"http://www.a.example"_s, u""_s},
        {u"?page=2#a"_s, u""_s, u""_s}, // the list itself
        {u"javascript:alert(1)"_s, u""_s, u""_s},
        {u"file:///etc/passwd"_s, u""_s, u""_s},
        {u"data:text/html,x"_s, u""_s, u""_s},
    };
    for (const auto& row : cases) {
        const auto records =
            Records(Script(uR"({"@type":"Hotel","name":"A","url":"%1","hasMap":"%1"})"_s.arg(row.Url)));
        ASSERT_EQ(records.size(), 1U);
        EXPECT_EQ(records[0].Fields.Website, row.Website) << row.Url.toStdString();
        EXPECT_EQ(records[0].Fields.DetailsLink, row.Details) << row.Url.toStdString();
    }
}

TEST(StructuredData, ItemrefAddsWhatStandsElsewhereAndEndsWhereItTurnsInACircle) {
    const auto records = Records(
        u"<base href='https://www.dir.example/x/'><div id=tel><b itemprop=telephone>555-0100</b></div>"
        u"<div itemscope itemtype='http://schema.org/Hotel' itemref='tel missing tel where'><i itemprop=name>A</i>"
        u"<a itemprop=url href=biz/a></a></div><p id=where itemprop=address itemscope itemref=where><i "
        u"itemprop=addressLocality>Rome</i></p>"
        u"<div id=o itemscope itemtype='http://schema.org/Hotel' itemref=i><i itemprop=name>B</i></div>"
        u"<div id=i itemprop=location itemscope itemref=o></div><p itemprop=location itemscope id=u itemref=u>"_s);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(Line(records[0].Fields), u"Hotel|A|Rome||Rome||||555-0100|||||https://www.dir.example/x/biz/a"_s);
    EXPECT_EQ(records[1].Fields.Name, u"B");
}

TEST(StructuredData, HostilePagesCostNoMoreThanOthers) {
    const int n = 20'000;
    QString references; // everybody names the same long part
    QString chain;
    QString nested;
    QString named;
    QString json = u"["_s.repeated(n);
    for (int i = 0; i < n; ++i) {
        references += u"<p itemscope itemref=long itemtype='http://schema.org/Hotel'>"_s;
        chain += u"<p id=i%1 itemscope itemprop=x itemref=i%2></p>"_s.arg(i).arg((i + 1) % n);
        named += u"<i itemprop=name>x</i>"_s;
        if (i < 1900)
            nested += u"<div itemscope itemprop=name class='vcard fn p-name' typeof=v:Organization property=v:name "
                      u"itemtype='http://schema.org/Hotel'><b itemprop=name>"_s;
    }
    const QString cases[] = {references + u"<div id=long>"_s + named, chain,
                             nested + u"text "_s.repeated(n),         Script(json),
                             Script(u"{\"a\":"_s.repeated(n)),        Script(u"\"&&quot;<!--/*'"_s.repeated(n))};
    for (const QString& html : cases) {
        const PageTree tree(html);
        QElapsedTimer timer;
        timer.start();
        StructuredRecords(tree, listUrl);
        EXPECT_LT(timer.elapsed(), 3000) << html.left(60).toStdString();
    }
}

} // namespace
} // namespace Brindle
