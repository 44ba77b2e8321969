#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace Brindle {

/// The fields of a lead in the order of the columns of the results list and of exported files.
enum class Field {
    Category,
    BusinessName,
    FullAddress,
    Address,
    City,
    State,
    PostalCode,
    Country,
    Phone,
    Fax,
    Website,
    Email,
    MapLink,
    DetailsLink
};

inline constexpr int FieldCount = 14;

/// One business listing. An unknown field is the empty text.
struct Lead {
    QString Category;
    QString Name;
    QString FullAddress;
    QString Street;
    QString City;
    QString State;
    QString PostalCode;
    QString Country;
    QString Phone;
    QString Fax;
    QString Website;
    QString Email;
    QString MapLink;
    QString DetailsLink;

    /// The field of a column, 0 to 13.
    const QString& At(int column) const;
    QString& At(int column);

    bool operator==(const Lead&) const = default;
};

/// The built-in English captions of the fourteen columns.
const QStringList& EnglishCaptions();

} // namespace Brindle
