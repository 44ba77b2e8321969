#pragma once

#include "discovery/PostalAddress.h"
#include "discovery/PostalAddressTable.h"
#include "toolkit/Ascii.h"
#include "toolkit/Text.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <span>

namespace Brindle {

// What the words of addresses tell, for those who take addresses apart.

/// The row of a region; null when it is not in the table.
const AddressCountry* AddressCountryOf(QStringView region);

/// Behind the last word that ends a street in texts like "12 Main St Springfield", with a suite or floor behind it; -1
/// when there is none.
qsizetype EndOfStreetIn(QStringView text);

/// Behind the number that ends a street in texts like "Jalan Merdeka 215 Bandung"; -1 when none does.
qsizetype EndOfNumberIn(QStringView text);

/// Whether the text is a staircase, block, flat or office of a house: "sc. A", "Of. 501", "корп. 2".
bool IsPartOfHouse(QStringView text);

/// Whether the text says where in a street something is: "Btwn 3rd & 4th St", "near the station".
bool IsPlaceInStreet(QStringView text);

/// Whether the text is a name with the number of a house: "Singel 303-309".
bool EndsInHouseNumber(QStringView text);

/// The region whose state stands in capitals behind the last comma of several: "24 Old Mill Rd, Gresham, OR".
QString RegionByState(QStringView text);

/// Whether all words but short ones begin as names do.
bool AreNames(QStringView text);

/// The length of the name of a state at the end of the text, 0 when there is none there. What stands before it is a
/// blank, comma, slash, hyphen or bracket, or nothing.
qsizetype StateAtEnd(QStringView region, QStringView text);

/// The length of the name of a country at the end of the text and its region; 0 when there is none.
qsizetype CountryAtEnd(QStringView text, QString& region);

/// Behind the city at the beginning of an address of East Asia, 大阪市北区, 千代田区, 神埼郡吉野ヶ里町; -1 when there
/// is none.
qsizetype EndOfEastAsianCity(QStringView text);

/// Marks that part the pieces of an address.
inline constexpr QStringView addressMarks = u" ,;|•·\n、，،-–—/";

// Most texts begin and end with one: a letter or digit of ASCII.
inline bool IsPlainWord(QChar c) {
    return Ascii::IsLetterOrDigit(c);
}

/// A text without marks at its ends.
inline QStringView Stripped(QStringView text, QStringView marks = addressMarks) {
    const auto isMark = [marks](QChar c) { return !IsPlainWord(c) && IsAmong(c, marks); };
    while (!text.isEmpty() && isMark(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isMark(text.back()))
        text.chop(1);
    return text;
}

/// Takes apart what goes from the large to the small in a script without capitals: 〒530-0001
/// 大阪府大阪市北区梅田1-2-3. `segments`: the address at its marks; `region`: ISO 3166 alpha-2.
void ReadLargeToSmall(std::span<const QStringView> segments, QStringView region, AddressParts& parts);

/// The region of an address by what only its own have, the shape of a postal code or a state beside one; empty when
/// nothing tells.
QString RegionByCode(QStringView text);

bool HasDigit(QStringView text);

inline bool IsIdeograph(QChar c) {
    const char16_t u = c.unicode();
    return (u >= 0x2E80 && u < 0xA000) || (u >= 0xAC00 && u < 0xD7B0) || (u >= 0xF900 && u < 0xFB00);
}

} // namespace Brindle
