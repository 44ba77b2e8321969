// Addresses of East Asia.
#include "discovery/PostalAddress.h"
#include "discovery/PostalAddressWords.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

void ReadKorean(QStringView rest, AddressParts& parts) {
    qsizetype blank = rest.indexOf(u' ');
    if (blank < 0)
        return;
    QStringView city = rest.first(blank);
    if (city.endsWith(u'도')) {
        parts.State = city.toString();
        rest = Stripped(rest.sliced(blank), u" ");
        blank = rest.indexOf(u' ');
        if (blank < 0)
            return;
        city = rest.first(blank);
    }
    parts.City = city.toString();
    parts.Street = Stripped(rest.sliced(blank), u" ").toString();
}

} // namespace

void ReadLargeToSmall(std::span<const QStringView> segments, QStringView region, AddressParts& parts) {
    QString body;
    for (const QStringView segment : segments) {
        QStringView rest = segment;
        if (parts.PostalCode.isEmpty())
            if (const auto codes = PostalCodesIn(rest, region);
                !codes.empty() && (codes.front().Begin <= 1 || codes.front().End == rest.size())) {
                const TextSpan code = codes.front();
                parts.PostalCode = rest.sliced(code.Begin, code.End - code.Begin).toString();
                rest = code.Begin <= 1 ? rest.sliced(code.End) : rest.first(code.Begin);
                rest = Stripped(rest, u" ,;|•·\n、，-–—/〒");
            }
        if (rest.isEmpty())
            continue;
        if (!body.isEmpty())
            body += u' ';
        body += rest;
    }
    QStringView rest = body;
    rest = Stripped(rest, u" 〒");
    if (region == u"KR") {
        ReadKorean(rest, parts);
        return;
    }
    for (qsizetype size = qMin<qsizetype>(8, rest.size()); size > 1; --size)
        if (IsStateOf(region, rest.first(size))) {
            parts.State = rest.first(size).toString();
            rest = Stripped(rest.sliced(size), u" ");
            break;
        }
    const qsizetype city = EndOfEastAsianCity(rest);
    if (city <= 0) {
        parts.State.clear();
        return;
    }
    parts.City = rest.first(city).toString();
    parts.Street = Stripped(rest.sliced(city), u" ").toString();
}

} // namespace Brindle
