#include "discovery/PostalAddress.h"
#include "discovery/PostalAddressWords.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace Brindle {

namespace {

QString LanguageRegion(QStringView language) {
    language = language.first(qMin<qsizetype>(language.size(), 3));
    while (!language.isEmpty() && !language.back().isLetter())
        language.chop(1);
    for (const AddressCountry& country : addressCountries)
        for (const QStringView own : country.Languages.split(u'|'))
            if (!own.isEmpty() && own.compare(language, Qt::CaseInsensitive) == 0)
                return country.Region.toString();
    return {};
}

QString HostRegion(QStringView host) {
    const QStringView top = host.sliced(host.lastIndexOf(u'.') + 1);
    if (top.size() != 2)
        return {};
    const QString region = top.toString().toUpper();
    return region == u"UK" ? u"GB"_s : AddressCountryOf(region) ? region : QString();
}

} // namespace

QString RegionByCode(QStringView text) {
    for (const QStringView region : {u"JP", u"CA", u"GB", u"NL", u"PL", u"BR", u"PT"}) {
        const auto codes = PostalCodesIn(text, region);
        for (const TextSpan& code : codes) {
            const QStringView shape = text.sliced(code.Begin, code.End - code.Begin);
            const bool hyphen = shape.contains(u'-');
            if ((region == u"JP" && (code.Begin == 0 || text[code.Begin - 1] != u'〒')) ||
                ((region == u"PT" || region == u"BR") && !hyphen))
                continue;
            return region.toString();
        }
    }
    for (const TextSpan& code : PostalCodesIn(text, u"US"))
        if (const QStringView before = text.first(code.Begin).trimmed(); StateAtEnd(u"US", before) > 0)
            return u"US"_s;
    return {};
}

qsizetype EndOfEastAsianCity(QStringView text) {
    constexpr qsizetype reach = 8;
    const auto endOf = [text](QStringView marks, qsizetype from) {
        for (qsizetype at = from + 1; at < qMin(text.size(), from + reach); ++at)
            if (marks.contains(text[at]))
                return at + 1;
        return qsizetype(-1);
    };
    const qsizetype town = endOf(u"市區区郡縣县", 0);
    if (town < 0)
        return endOf(u"町村", 0);
    if (text[town - 1] == u'郡')
        return endOf(u"町村", town);
    if (text[town - 1] == u'市')
        if (const qsizetype ward = endOf(u"区區", town);
            ward > 0 && std::none_of(text.begin() + town, text.begin() + ward, [](QChar c) {
                return c.isDigit() || c == u'路' || c == u'街' || c == u'町' || c == u' ';
            }))
            return ward;
    return town;
}

CountryGuess GuessCountry(const AddressHints& hints) {
    if (const QString named = RegionOfCountryName(hints.Country); !named.isEmpty())
        return {named, true};
    const qsizetype hyphen = hints.Language.lastIndexOf(u'-');
    if (const QString region = hyphen > 0 ? hints.Language.sliced(hyphen + 1).toUpper() : QString();
        region.size() == 2 && AddressCountryOf(region) && hints.PhoneRegion.isEmpty() &&
        HostRegion(hints.Host).isEmpty())
        return {region, true};
    if (const QString region = HostRegion(hints.Host); !region.isEmpty())
        return {region, true};
    if (!hints.PhoneRegion.isEmpty())
        return {hints.PhoneRegion, true};
    // Some languages have one country, others several.
    static const QStringView several[] = {u"de", u"fr", u"it", u"es", u"pt", u"nl", u"zh", u"ru",
                                          u"ar", u"sr", u"sv", u"ms", u"ro", u"el", u"ca", u"rm"};
    const QStringView language = QStringView(hints.Language).first(qMin<qsizetype>(2, hints.Language.size()));
    const QString region = LanguageRegion(hints.Language);
    const bool sure = std::none_of(std::begin(several), std::end(several), [language](QStringView other) {
        return language.compare(other, Qt::CaseInsensitive) == 0;
    });
    return {region, sure && !region.isEmpty()};
}

} // namespace Brindle
