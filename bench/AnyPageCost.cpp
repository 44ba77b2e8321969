// What reading a page of any directory costs beside parsing it, in processor time taken in turn:
//
//   any_page_cost [--rounds N] [--most N] [--only KIND] [PAGE...]
//
// Without pages it reads lists that it makes: cards, a table, a definition list, JSON-LD, microdata, each with 1,000,
// 10,000 and 50,000 businesses (no more than --most), where the time per record must stay the same, and pages that mean
// harm. A file page.url beside a page holds its address. Each line: the milliseconds of parsing and of reading what was
// parsed (the least of the rounds), reading over parsing, records, microseconds of both per record.

#include "discovery/AnyPage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

double ProcessorTime() {
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

struct Cost {
    double Parsing = 1e9;
    double Reading = 1e9;
    size_t Records = 0;
};

Cost CostOf(const QString& html, const QString& url, int rounds) {
    Cost cost;
    for (int round = 0; round < rounds; ++round) {
        const double begin = ProcessorTime();
        const PageTree page{QString(html)};
        const double parsed = ProcessorTime();
        const AnyPageReading reading = ReadAnyPage(page, url);
        const double end = ProcessorTime();
        cost.Parsing = std::min(cost.Parsing, parsed - begin);
        cost.Reading = std::min(cost.Reading, end - parsed);
        cost.Records = reading.Records.size();
    }
    return cost;
}

void Print(const QString& name, const Cost& cost) {
    std::printf("%-44s parse %9.2f  read %9.2f  read/parse %5.2f  records %6zu", qPrintable(name.right(44)),
                cost.Parsing, cost.Reading, cost.Reading / std::max(cost.Parsing, 0.01), cost.Records);
    if (cost.Records > 0)
        std::printf("  us/record %7.2f", 1000 * (cost.Parsing + cost.Reading) / static_cast<double>(cost.Records));
    std::printf("\n");
    std::fflush(stdout);
}

// ------------------------------------------------------------------------------------------------- lists

struct Business {
    QString Name, Street, Code, Town, Phone, Host;
};

Business Numbered(int number) {
    constexpr QStringView first[] = {u"Finch", u"Harbour", u"Maple", u"Old Mill", u"Granite", u"Linden", u"Otter"};
    constexpr QStringView second[] = {u"Plumbing", u"Heating & Cooling", u"Drains", u"Pipe Works", u"Water Services"};
    constexpr QStringView streets[] = {u"Elm Street", u"King Road", u"Station Avenue", u"Mill Lane", u"Quay Street"};
    constexpr QStringView towns[] = {u"Guelph, ON", u"Kitchener, ON", u"Cambridge, ON"};
    Business one;
    one.Name = u"%1 %2 %3"_s.arg(first[number % 7]).arg(second[number % 5]).arg(number);
    one.Street = u"%1 %2"_s.arg(1 + number % 900).arg(streets[number % 5]);
    one.Code = u"N%1H %2A%3"_s.arg(number % 10).arg(number / 10 % 10).arg(number / 100 % 10);
    one.Town = towns[number % 3].toString();
    one.Phone = u"(519) 55%1-%2"_s.arg(number / 10000 % 10).arg(number % 10000, 4, 10, QChar(u'0'));
    one.Host = u"www.business-%1.example"_s.arg(number);
    return one;
}

QString Escaped(const QString& text) {
    return text.toHtmlEscaped();
}

QString Page(const QString& head, const QString& list) {
    return u"<!doctype html><html lang=en><head><title>Plumbers in Ontario</title>"_s + head +
           u"</head><body><header><nav><a href=/>Home</a> <a href=/about>About us</a></nav></header><main><h1>Plumbers "
           u"in "
           u"Ontario</h1>"_s +
           list +
           u"</main><nav class=pager><a href='?page=1'>1</a> <b>2</b> <a href='?page=3'>3</a> <a rel=next "
           u"href='?page=3'>Next</a></nav><footer>Directory Ltd, all rights reserved</footer></body></html>"_s;
}

QString Cards(int count) {
    QString list = u"<div class=results>"_s;
    for (int i = 0; i < count; ++i) {
        const Business b = Numbered(i);
        list +=
            u"<div class=\"card listing %1\"><div class=photo><img src=/i/%2.jpg alt=''></div><div class=info><h2><a "
            u"href=\"/biz/%2\">%3</a></h2><p class=categories>Plumbers, Drains</p><p class=address><span>%4</span>, "
            u"<span>%5</span> <span>%6</span></p><p class=phone><a href=\"tel:%7\">%7</a></p><p class=links><a "
            u"href=\"http://%8/\">Website</a> <a href=\"/biz/%2#reviews\">12 reviews</a></p></div></div>\n"_s
                .arg(i % 10 == 0 ? u"premium"_s : u"free"_s)
                .arg(i)
                .arg(Escaped(b.Name), b.Street, b.Town, b.Code, b.Phone, b.Host);
    }
    return Page({}, list + u"</div>"_s);
}

QString Table(int count) {
    QString list = u"<table><tr><th>Company<th>Address<th>Town<th>Telephone</tr>"_s;
    for (int i = 0; i < count; ++i) {
        const Business b = Numbered(i);
        list += u"<tr><td><a href=\"/biz/%1\">%2</a></td><td>%3</td><td>%4 %5</td><td>%6</td></tr>\n"_s.arg(i).arg(
            Escaped(b.Name), b.Street, b.Town, b.Code, b.Phone);
    }
    return Page({}, list + u"</table>"_s);
}

QString Flat(int count) {
    QString list = u"<dl>"_s;
    for (int i = 0; i < count; ++i) {
        const Business b = Numbered(i);
        list += u"<dt><a href=\"/biz/%1\">%2</a></dt><dd>%3, %4 %5</dd><dd>Tel. %6</dd>\n"_s.arg(i).arg(
            Escaped(b.Name), b.Street, b.Town, b.Code, b.Phone);
    }
    return Page({}, list + u"</dl>"_s);
}

QString JsonLd(int count) {
    QString head = u"<script type=\"application/ld+json\">["_s;
    QString list = u"<ul>"_s;
    for (int i = 0; i < count; ++i) {
        const Business b = Numbered(i);
        head += (i > 0 ? u",\n"_s : QString()) +
                u"{\"@context\":\"https://schema.org\",\"@type\":\"Plumber\",\"name\":\"%1\",\"url\":\"https://"
                u"www.guide.example/biz/%2\","
                u"\"telephone\":\"%3\",\"address\":{\"@type\":\"PostalAddress\",\"streetAddress\":\"%4\","
                u"\"addressLocality\":\"%5\",\"postalCode\":\"%6\",\"addressCountry\":\"CA\"}}"_s.arg(b.Name)
                    .arg(i)
                    .arg(b.Phone, b.Street, b.Town.section(u',', 0, 0), b.Code);
        list += u"<li><a href=\"/biz/%1\">%2</a></li>\n"_s.arg(i).arg(Escaped(b.Name));
    }
    return Page(head + u"]</script>"_s, list + u"</ul>"_s);
}

QString Microdata(int count) {
    QString list = u"<div>"_s;
    for (int i = 0; i < count; ++i) {
        const Business b = Numbered(i);
        list += u"<article itemscope itemtype=\"https://schema.org/Plumber\"><h3 itemprop=name>%2</h3><a itemprop=url "
                u"href=\"/biz/%1\">Details</a><div itemprop=address itemscope "
                u"itemtype=\"https://schema.org/PostalAddress\">"
                u"<span itemprop=streetAddress>%3</span>, <span itemprop=addressLocality>%4</span> <span "
                u"itemprop=postalCode>%5</span></div><span itemprop=telephone>%6</span></article>\n"_s.arg(i)
                    .arg(Escaped(b.Name), b.Street, b.Town.section(u',', 0, 0), b.Code, b.Phone);
    }
    return Page({}, list + u"</div>"_s);
}

// ------------------------------------------------------------------------------------------------- harm

QString Repeated(QStringView text, int times) {
    return text.toString().repeated(times);
}

QString ItemrefLoops() {
    QString list;
    for (int i = 0; i < 100000; ++i)
        list +=
            u"<p id=i%1 itemprop=a itemscope itemref='i%2 i%3'>"_s.arg(i).arg((i + 1) % 100000).arg((i + 7) % 100000);
    return Page({}, list);
}

void PrintHarm(int rounds) {
    const std::pair<const char*, QString> pages[] = {
        {"deep nesting", Page({}, Repeated(u"<div class=a>", 100000) + u"555-0100"_s)},
        {"100,000 tiny elements of one class", Page({}, Repeated(u"<i class=a>x</i>", 100000))},
        {"100,000 tiny elements in 100,000 others", Page({}, Repeated(u"<p class=a><i class=a>x</i>", 100000))},
        {"unclosed tags", Page({}, Repeated(u"<li class=a><b><a href=/x>Name 12 ", 20000))},
        {"an attribute of 10 MB", Page({}, u"<a class=\""_s + Repeated(u"a 1 ", 2500000) + u"\" href=/x>x</a>"_s)},
        {"a text of 10 MB", Page({}, u"<p>"_s + Repeated(u"12 Main Street, 555 0100 - ", 370000))},
        {"10 MB of digits", Page({}, u"<p>"_s + Repeated(u"1", 10000000))},
        {"JSON-LD of 10 MB, arrays in arrays",
         Page(u"<script type='application/ld+json'>"_s + Repeated(u"[", 10000000) + u"</script>"_s, {})},
        {"JSON-LD of 10 MB, objects in objects",
         Page(u"<script type='application/ld+json'>"_s + Repeated(u"{\"a\":", 2000000) + u"</script>"_s, {})},
        {"100,000 itemref in loops", ItemrefLoops()},
        {"50,000 links to the next page", Page({}, Repeated(u"<a rel=next href='?page=2'>Next</a>", 50000))},
    };
    for (const auto& [name, html] : pages) {
        try {
            Print(QString::fromLatin1(name), CostOf(html, u"https://www.guide.example/plumbers"_s, rounds));
        } catch (const std::exception& failure) {
            std::printf("%-44s %s\n", name, failure.what());
        }
    }
}

int Run(QStringList arguments) {
    int rounds = 0;
    int most = 50000;
    QString only;
    while (arguments.size() >= 2 && arguments[0].startsWith(u"--")) {
        if (arguments[0] == u"--only")
            only = arguments[1];
        else
            (arguments[0] == u"--rounds" ? rounds : most) = arguments[1].toInt();
        arguments = arguments.mid(2);
    }
    for (const QString& path : arguments) {
        QFile file(path);
        QFile address(QFileInfo(path).dir().filePath(u"page.url"_s));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(file.errorString()));
            return 1;
        }
        const QString url = address.open(QIODevice::ReadOnly) ? QString::fromUtf8(address.readAll()).trimmed()
                                                              : u"https://www.guide.example/plumbers"_s;
        Print(path, CostOf(QString::fromUtf8(file.readAll()), url, rounds > 0 ? rounds : 20));
    }
    if (!arguments.isEmpty())
        return 0;
    const std::pair<const char*, std::function<QString(int)>> kinds[] = {
        {"cards", Cards}, {"table", Table}, {"definition list", Flat}, {"JSON-LD", JsonLd}, {"microdata", Microdata}};
    for (const auto& [name, make] : kinds)
        for (const int count : {1000, 10000, 50000})
            if (count <= most && QString::fromLatin1(name).contains(only))
                Print(QString::fromLatin1(name) + u", "_s + QString::number(count),
                      CostOf(make(count), u"https://www.guide.example/plumbers?page=2"_s,
                             rounds > 0 ? rounds : std::max(2, 10000 / count)));
    if (only.isEmpty())
        PrintHarm(std::max(1, std::min(rounds, 2)));
    return 0;
}

} // namespace
} // namespace Brindle

int main(int count, char** arguments) {
    QStringList rest;
    for (int i = 1; i < count; ++i)
        rest.append(QString::fromLocal8Bit(arguments[i]));
    return Brindle::Run(rest);
}
