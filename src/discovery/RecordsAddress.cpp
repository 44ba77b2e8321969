#include "discovery/RecordsAddress.h"

#include "discovery/NextPage.h"
#include "toolkit/Phone.h"

#include <QHash>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestAddress = 300; // characters
constexpr int mostWitnesses = 50;
constexpr size_t mostSamples = 60;
constexpr qsizetype longestSample = 90;

QString MostOften(const QHash<QString, int>& counts) {
    QString most;
    int count = 0;
    for (auto entry = counts.cbegin(); entry != counts.cend(); ++entry)
        if (!entry.key().isEmpty() && (entry.value() > count || (entry.value() == count && entry.key() < most))) {
            most = entry.key();
            count = entry.value();
        }
    return most;
}

// The countries whose directories are written in a language, the largest first.
QStringList RegionsOfLanguage(const QString& language) {
    static const QHash<QString, QString> regions{{u"en"_s, u"US GB CA AU IE NZ IN ZA SG PH NG KE"_s},
                                                 {u"de"_s, u"DE AT CH LU"_s},
                                                 {u"fr"_s, u"FR BE CH CA LU MA TN"_s},
                                                 {u"es"_s, u"ES MX AR CO CL PE"_s},
                                                 {u"pt"_s, u"BR PT"_s},
                                                 {u"it"_s, u"IT CH"_s},
                                                 {u"nl"_s, u"NL BE"_s},
                                                 {u"zh"_s, u"CN TW HK SG"_s},
                                                 {u"ar"_s, u"AE SA EG MA"_s},
                                                 {u"ru"_s, u"RU BY KZ UA"_s},
                                                 {u"sv"_s, u"SE FI"_s}};
    return regions.value(language.left(2).toLower(), u"US GB DE FR ES IT NL PL CA AU BR JP"_s).split(u' ');
}

// A few lines with digits tell the country: its phones are valid there, its addresses look so.
QString RegionOfLines(const PageLines& lines, const std::vector<StructuredRecord>& structured, const QString& language,
                      const QString& guessed) {
    std::vector<QStringView> samples;
    const auto take = [&samples](QStringView text) {
        if (text.size() < 6 || text.size() > longestSample || samples.size() == mostSamples)
            return;
        if (std::count_if(text.begin(), text.end(), [](QChar c) { return c.isDigit(); }) >= 5)
            samples.push_back(text);
    };
    for (const TextLine& line : lines.Lines) {
        if (line.Length <= longestSample)
            take(lines.TextOf(line));
        else // cards that only their style puts into lines of their own
            for (int piece = line.FirstPiece; piece < line.FirstPiece + line.PieceCount; ++piece)
                take(lines.TextOf(lines.Pieces[static_cast<size_t>(piece)]));
        if (samples.size() == mostSamples)
            break;
    }
    for (const StructuredRecord& record : structured) {
        take(record.Fields.Phone);
        take(record.Fields.FullAddress);
    }
    QStringList regions = RegionsOfLanguage(language);
    if (!guessed.isEmpty()) {
        regions.removeAll(guessed);
        regions.prepend(guessed);
    }
    QString best;
    int most = 1; // a single line says nothing
    for (const QString& region : regions) {
        int count = 0;
        for (const QStringView text : samples) {
            for (const FoundPhone& phone : FindPhones(text, region))
                count += phone.Number.Region == region && phone.Number.Verdict == PhoneVerdict::Valid;
            count += LooksLikeAddress(text, region) && !PostalCodesIn(text, region).empty();
        }
        if (count > most) {
            most = count;
            best = region;
        }
    }
    return best;
}

// "2. Clínica La Plaza": the number counts the entries.
bool HasNumberOfEntryOnly(QStringView text) {
    qsizetype at = 0;
    while (at < text.size() && at < 4 && text[at].isDigit())
        ++at;
    return at > 0 && at + 1 < text.size() && (text[at] == u'.' || text[at] == u')') && text[at + 1].isSpace() &&
           std::none_of(text.begin() + at, text.end(), [](QChar c) { return c.isDigit(); });
}

// "St. Louis Park, MN 55426": the only number is the code's, and what sounds like a street is the town.
bool IsTownOnly(QStringView text, QStringView region, const std::vector<TextSpan>& codes) {
    if (codes.size() != 1 || std::count_if(text.begin(), text.end(), [](QChar c) { return c.isDigit(); }) >
                                 std::count_if(text.begin() + codes.front().Begin, text.begin() + codes.front().End,
                                               [](QChar c) { return c.isDigit(); }))
        return false;
    AddressHints hints;
    hints.Country = region.toString();
    const AddressParts parts = SplitAddress(text, hints);
    return parts.Street.isEmpty() && !parts.City.isEmpty() && !parts.State.isEmpty();
}

} // namespace

AddressSigns AddressSignsIn(QStringView text, QStringView region) {
    if (text.size() > longestAddress)
        return {};
    const bool digits = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    if (!digits || HasNumberOfEntryOnly(text))
        return {};
    const std::vector<TextSpan> codes = PostalCodesIn(text, region);
    const bool street = HasStreetWord(text) && !IsTownOnly(text, region, codes);
    const bool whole = LooksLikeAddress(text, region, street, codes);
    bool code = whole && !codes.empty();
    // A code that cannot be mistaken needs nothing beside it.
    if (!whole && text.size() <= 40)
        code = !PostalCodesIn(text, {}).empty();
    return {code, street || (whole && !code)};
}

AddressHints AddressHintsOf(const PageTree& page, const PageLines& lines, const QString& url,
                            const std::vector<StructuredRecord>& structured) {
    AddressHints hints;
    hints.Host = SiteOf(url);
    if (page.Root() != noNode)
        hints.Language = page.Attribute(page.Root(), u"lang").toString().left(20);
    QHash<QString, int> countries;
    for (const StructuredRecord& record : structured)
        ++countries[record.Fields.Country];
    hints.Country = MostOften(countries);
    QHash<QString, int> regions;
    int seen = 0;
    for (NodeIndex node = 0; node < page.Count() && seen < mostWitnesses; ++node) {
        const QStringView href = page.Is(node, u"a") ? page.Attribute(node, u"href") : QStringView();
        if (!href.startsWith(u"tel:+") && !href.startsWith(u"tel:00"))
            continue;
        ++seen;
        if (const std::optional<PhoneNumber> number = ReadPhone(href.sliced(4), {}))
            ++regions[number->Region];
    }
    for (const StructuredRecord& record : structured) {
        if (++seen > 2 * mostWitnesses)
            break;
        if (record.Fields.Phone.startsWith(u'+'))
            if (const std::optional<PhoneNumber> number = ReadPhone(record.Fields.Phone.section(u';', 0, 0), {}))
                ++regions[number->Region];
    }
    hints.PhoneRegion = MostOften(regions);
    if (const CountryGuess guess = GuessCountry(hints); !guess.Sure)
        if (const QString region = RegionOfLines(lines, structured, hints.Language, guess.Region); !region.isEmpty())
            hints.Country = region;
    return hints;
}

void SplitWholeAddresses(std::vector<StructuredRecord>& structured, const AddressHints& hints) {
    for (StructuredRecord& record : structured) {
        Lead& lead = record.Fields;
        if (lead.FullAddress.isEmpty() || !lead.Street.isEmpty() || !lead.City.isEmpty() || !lead.PostalCode.isEmpty())
            continue;
        AddressHints own = hints;
        if (!lead.Country.isEmpty())
            own.Country = lead.Country;
        const AddressParts parts = SplitAddress(lead.FullAddress, own);
        lead.Street = parts.Street;
        lead.City = parts.City;
        lead.PostalCode = parts.PostalCode;
        if (lead.State.isEmpty())
            lead.State = parts.State;
        if (lead.Country.isEmpty())
            lead.Country = parts.Country;
    }
}

} // namespace Brindle
