#pragma once

#include "core/Lead.h"
#include "discovery/StructuredItems.h"

namespace Brindle {

/// What part a record plays on its page.
enum class RecordRole : quint8 {
    Plain,  ///< stands for itself
    Listed, ///< an entry of a list
    Owner,  ///< stands behind the page or an item of it: a publisher, an author, a seller, the directory itself
    Nested  ///< belongs to another item in another way: an event's place, a company's department
};

enum class RecordKind : quint8 {
    Business,
    Person, ///< with a phone, an address or an e-mail address
    Link    ///< an entry of a list of which nothing more is said than a link, and perhaps a name
};

/// A business, person or link of a page's structured data.
struct StructuredRecord {
    Lead Fields;
    NodeIndex Node = noNode; ///< the element that holds it; `noNode` where it stands in a script
    Notation In = Notation::JsonLd;
    RecordKind Kind = RecordKind::Business;
    RecordRole Role = RecordRole::Plain;
    int List = -1;                 ///< number of the list of which it is an entry; -1 for none
    int Position = 0;              ///< its place in that list, from 1; 0 for none
    QStringList Types;             ///< without their vocabulary: "Restaurant"
    bool CategoryIsOfType = false; ///< the category is only what the type says
};

/// The businesses of a page in the page's order, whatever the notation: the same business gives the same lead in all
/// of them, and is repeated where the page says it again. Several phones or addresses of one kind are joined by ";". A
/// link to the page's own site is the details link, one to elsewhere the website; only links of http and https are
/// kept. `url` is the page's address. Linear in the page.
std::vector<StructuredRecord> StructuredRecords(const PageTree& page, const QString& url);

} // namespace Brindle
