#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace Brindle {

/// What sort of thing an item is, as far as leads are concerned.
enum class SchemaKind : quint8 {
    Other,
    Business,  ///< a local business, an organisation or a place that is one
    Person,    ///< somebody; in directories of people
    List,      ///< a list of items
    ListEntry, ///< an entry of a list that holds the item or links to it
    Trail      ///< the path from the home page to this one
};

/// The sort of an item of these types (schema.org and what went before it, vCard, GoodRelations, microformats); the
/// vocabulary's address and letter case do not matter. `Business` wins over others.
SchemaKind KindOf(const QStringList& types);

/// A type or property without the address or prefix of its vocabulary: "http://schema.org/Hotel" is "Hotel".
QStringView LocalName(QStringView name);

/// The trade that types tell: "AutoRepair" is "Auto Repair"; empty for types like LocalBusiness that tell none.
QString TradeOf(const QStringList& types);

/// What types say. Of the items of a page most have the types of another one, so it is remembered.
class KnownTypes {
public:
    struct Meaning {
        QStringList Types;
        QStringList LocalNames;
        SchemaKind Kind = SchemaKind::Other;
        QString Trade;
    };
    /// Good until the next call.
    const Meaning& Of(const QStringList& types);

private:
    std::vector<Meaning> known_;
    size_t oldest_ = 0;
};

/// What a property says of a business.
enum class SchemaProperty : quint8 {
    None,
    Name,
    OtherName, ///< good where there is no name
    WholeText, ///< of an item that has no properties
    Telephone,
    Fax,
    Email,
    Url,
    SameAs,
    Address,
    Street,
    StreetMore, ///< a suite, a floor
    PostOfficeBox,
    City,
    State,
    PostalCode,
    Country,
    Category,
    Map,
    ContactPoint,
    Location,
    Entry, ///< of a list
    EntryItem,
    Position,
    PageSubject, ///< what a page is about or made of
    Owner        ///< who stands behind the item: a publisher, an author, a seller
};

/// What a property's name means; letter case, vocabulary, hyphens and underlines do not matter.
SchemaProperty MeaningOf(QStringView name);

} // namespace Brindle
