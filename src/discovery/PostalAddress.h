#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace Brindle {

/// What is known of the country of a page's addresses. Everything may be empty.
struct AddressHints {
    QString Country;     ///< as structured data or a recipe says: ISO 3166 alpha-2, or a name in any language
    QString Language;    ///< of the page: "de", "de-AT"
    QString Host;        ///< of the page's address: "www.example.co.uk"
    QString PhoneRegion; ///< ISO 3166 alpha-2 of the phones of the page
};

/// The country that the hints speak for.
struct CountryGuess {
    QString Region;    ///< ISO 3166 alpha-2; empty: unknown
    bool Sure = false; ///< false: only a language of several countries says so
};
CountryGuess GuessCountry(const AddressHints& hints);

struct AddressParts {
    QString Street; ///< with house number, suite, post box
    QString City;
    QString State;
    QString PostalCode;
    QString Country; ///< as the text names it; empty when it names none

    bool operator==(const AddressParts&) const = default;
};

/// Takes an address apart by the order that its country uses; lines may be apart by line breaks or commas. The country
/// that the text names goes before the hints. What is not sure stays empty. Linear.
AddressParts SplitAddress(QStringView text, const AddressHints& hints);

/// Whether the text has a word of street names next to a name or number: "Hauptstraße", "rue de", "Main St", "1丁目".
bool HasStreetWord(QStringView text);

/// Whether the text, a line or block of its own, reads as an address: a street with a number, or a postal code with a
/// place. `region` (ISO 3166 alpha-2) may be empty, only codes that are unmistakable are then recognised.
bool LooksLikeAddress(QStringView text, QStringView region);

struct TextSpan {
    qsizetype Begin = 0;
    qsizetype End = 0;

    bool operator==(const TextSpan&) const = default;
};

/// What could be postal codes of the region in the text, in order. With an empty region, codes whose shape is
/// unmistakable: those of Canada, the United Kingdom, the Netherlands, Poland, Portugal, Brazil and Japan.
std::vector<TextSpan> PostalCodesIn(QStringView text, QStringView region);

/// `LooksLikeAddress` of a text of which it is known whether it has a street's word and which codes it has.
bool LooksLikeAddress(QStringView text, QStringView region, bool hasStreetWord, const std::vector<TextSpan>& codes);

/// Whether the text is the name or abbreviation of a state, province or county that the region's addresses name.
bool IsStateOf(QStringView region, QStringView text);

/// The region of a country's name in one of several languages, or of its ISO code in capitals; empty for other texts.
QString RegionOfCountryName(QStringView name);

/// The English name of a region; empty when it is unknown.
QString CountryNameOf(QStringView region);

} // namespace Brindle
