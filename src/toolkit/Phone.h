#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

namespace Brindle {

/// How far a number keeps to the numbering plan of its country.
enum class PhoneVerdict {
    Possible, ///< its length occurs in the country
    Valid     ///< its first digits are in use, and with that length
};

struct PhoneNumber {
    QString E164;        ///< "+493012345": the form of ITU-T E.164
    int CountryCode = 0; ///< 49
    QString Region;      ///< ISO 3166 alpha-2: "DE"
    QString Extension;   ///< digits to dial behind it; mostly empty
    PhoneVerdict Verdict = PhoneVerdict::Possible;

    bool operator==(const PhoneNumber&) const = default;
};

/// Reads a text that is one phone number, with whatever writing people use: blanks, dots, slashes, brackets, the trunk
/// zero in brackets, digits of other scripts, letters on the keys of a phone, an extension, a label before it. `region`
/// (ISO 3166 alpha-2, upper case) is the country that a number without a country code belongs to; empty: unknown, such
/// numbers are then none. Nothing when it is no number that its country could have.
std::optional<PhoneNumber> ReadPhone(QStringView text, QStringView region);

/// A phone number and where it stands: [Begin, End) of the text.
struct FoundPhone {
    qsizetype Begin = 0;
    qsizetype End = 0;
    PhoneNumber Number;
};

/// The phone numbers in a running text, in order. Dates, times, prices, postal codes, coordinates and reference numbers
/// are none; where only the length speaks for a number it needs a label before it ("Tel."). Linear.
std::vector<FoundPhone> FindPhones(QStringView text, QStringView region);

/// Whether the text ends with a label of phone numbers, "Tel.:" or "Mobile"; `fax` is set when it is one of telefaxes.
bool EndsWithPhoneLabel(QStringView text, bool* fax = nullptr);

/// The country code of a region; 0 when it is unknown.
int CallingCodeOf(QStringView region);
/// The region of a country code; empty when several share it (1, 7) or it is unknown.
QString RegionOfCallingCode(int code);
/// Every region that is known, in alphabetical order.
std::vector<QStringView> PhoneRegions();

} // namespace Brindle
