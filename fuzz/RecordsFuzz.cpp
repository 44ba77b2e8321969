#include "Input.h"
#include "core/Errors.h"
#include "discovery/Explain.h"
#include "toolkit/PageAddress.h"

#include <QJsonDocument>

// Pages of any directory, put together from what lists are made of, whole or broken: reading ends, says the same twice,
// and gives no lead without a name and no link that is none of the web.

namespace {

constexpr const char* pieces[] = {"<div class=card>",
                                  "</div>",
                                  "<ul>",
                                  "<li>",
                                  "</li>",
                                  "</ul>",
                                  "<table>",
                                  "<tr>",
                                  "<td>",
                                  "</td>",
                                  "</tr>",
                                  "</table>",
                                  "<dl>",
                                  "<dt>",
                                  "<dd>",
                                  "</dl>",
                                  "<h3>",
                                  "</h3>",
                                  "<p>",
                                  "</p>",
                                  "<br>",
                                  "<span>",
                                  "</span>",
                                  "<b>",
                                  "</b>",
                                  "<a href='/f/1'>",
                                  "<a href='/f/2'>",
                                  "<a href='https://joes.example/'>",
                                  "<a href='tel:+493012345678'>",
                                  "<a href='mailto:a@joes.example'>",
                                  "<a href='?page=2'>",
                                  "<a href='javascript:x()'>",
                                  "</a>",
                                  "Joe's Pizza",
                                  "Müller GmbH",
                                  "レストラン",
                                  "Gartenstraße 5",
                                  "50667 Köln",
                                  "12 High Street",
                                  "LS1 4AP",
                                  "〒150-0041",
                                  "0221 4711000",
                                  "(212) 555-1234",
                                  "Tel.:",
                                  "Fax:",
                                  "Next",
                                  "1",
                                  "2",
                                  "3",
                                  "12,99 €",
                                  "24.12.2023",
                                  ", ",
                                  " | ",
                                  "<nav>",
                                  "</nav>",
                                  "<footer>",
                                  "<script>",
                                  "</script>",
                                  "<!-- ",
                                  " -->",
                                  "<div itemscope itemtype=https://schema.org/Store>",
                                  "<i itemprop=name>",
                                  "<article class='hit gold'>",
                                  "</article>"};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Brindle;
    QString html;
    for (std::size_t i = 0; i < size && html.size() < 200'000; ++i) {
        if (data[i] >= 250 && i + 2 < size) {
            // What went before, again and again, as lists do.
            const qsizetype length = std::min<qsizetype>(html.size(), data[i + 1]);
            html += html.last(length).repeated(data[i + 2] % 20);
            i += 2;
        } else if (data[i] >= 245 && i + 1 < size) {
            html += QChar(static_cast<char16_t>(data[++i]));
        } else {
            html += QString::fromUtf8(pieces[data[i] % std::size(pieces)]);
        }
    }
    const QString url = QStringLiteral("https://www.guide.example/pizza");
    try {
        const PageTree page(html);
        const AnyPageReading reading = ReadAnyPage(page, url, Selectors::Made);
        const QByteArray explained = ExplainReading(reading);
        Fuzz::Require(explained == ExplainReading(ReadAnyPage(page, url, Selectors::Made)), "the same reading twice");
        Fuzz::Require(QJsonDocument::fromJson(explained).isObject(), "the explanation is JSON");
        for (const PageRecord& record : reading.Records) {
            Fuzz::Require(!record.Fields.Name.isEmpty(), "a record has a name");
            Fuzz::Require(record.Begin == noNode || (record.Begin < record.End && record.End <= page.Count()),
                          "a record stands on the page");
            for (const QString& link : {record.Fields.DetailsLink, record.Fields.Website})
                Fuzz::Require(link.isEmpty() || !SiteOf(link).isEmpty(), "links are of the web");
        }
        const QString& next = reading.Next.Address;
        Fuzz::Require(next.isEmpty() || (next != url && SiteOf(next) == SiteOf(url)),
                      "the next page is another of the site");
    } catch (const Failure&) {
        // Beyond the bounds of what is parsed.
    }
    return 0;
}
