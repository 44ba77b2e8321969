#pragma once

#include "core/Lead.h"
#include "page/PageTree.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace Brindle {

/// The ways in which a page can say what it is about, beside its text.
enum class Notation : quint8 { JsonLd, Microdata, Rdfa, Microformats };

/// "json-ld", "microdata", "rdfa" or "microformats".
QString NotationName(Notation notation);

/// What part an item plays on its page.
enum class RecordRole : quint8 {
    Plain,   ///< stands for itself
    Listed,  ///< an entry of a list
    Context, ///< what the page or something on it belongs to: a publisher, an author, a seller, a parent organisation
    Nested   ///< belongs to another item in another way
};

/// A business, organisation, place or person of a page's structured data.
struct StructuredRecord {
    Lead Fields;
    NodeIndex Node = noNode; ///< the element that holds it; `noNode` where it stands in a script
    Notation In = Notation::JsonLd;
    RecordRole Role = RecordRole::Plain;
    int List = -1;     ///< number of the list of which it is an entry; -1 for none
    int Position = 0;  ///< what the list says of its place, from 1; 0 for nothing
    QStringList Types; ///< without their vocabulary: "Restaurant"
};

/// The businesses of a page in the page's order, whatever the notation; a business is repeated where the page says it
/// again. `url` is the page's address: links are resolved with it, and a link to its own site is one to details. Linear
/// in the page; what is beyond the bounds is left out.
std::vector<StructuredRecord> StructuredRecords(const PageTree& page, const QString& url);

} // namespace Brindle
