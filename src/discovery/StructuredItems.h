#pragma once

#include "page/PageTree.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace Brindle {

/// The ways in which a page can say what it is about, beside its text.
enum class Notation : quint8 { JsonLd, Microdata, Rdfa, Microformats };

/// "json-ld", "microdata", "rdfa" or "microformats".
QString NotationName(Notation notation);

/// What a property says: a text, or another item.
struct StructuredProperty {
    QString Name{};          ///< as it is written; RDFa: in full
    QString Text{};          ///< blanks levelled where it is text of the page; addresses are absolute
    int Item = -1;           ///< number of the item that is the value; -1 for a text
    NodeIndex Node = noNode; ///< the element that says it
};

/// A thing of which a page says something.
struct StructuredItem {
    Notation In = Notation::JsonLd;
    QStringList Types;                          ///< as they are written; RDFa: in full; microformats: "h-card"
    QString Id;                                 ///< the address that names it; empty for none
    NodeIndex Node = noNode;                    ///< the element that holds it; of JSON-LD: the script
    int Parent = -1;                            ///< number of the item within which it is written; -1 for none
    std::vector<StructuredProperty> Properties; ///< in the page's order
};

/// All that a page says of things, in one list; items know each other by their numbers in it.
struct StructuredItems {
    std::vector<StructuredItem> Items;

    int Add(StructuredItem item) {
        Items.push_back(std::move(item));
        return static_cast<int>(Items.size()) - 1;
    }
    StructuredItem& At(int item) { return Items[static_cast<size_t>(item)]; }
    const StructuredItem& At(int item) const { return Items[static_cast<size_t>(item)]; }
};

/// What a page at `url` says in any notation: first JSON-LD, then microdata, RDFa, microformats. Linear in the page;
/// hostile repetition of one part of the page in many items is cut off.
StructuredItems StructuredItemsOf(const PageTree& page, const QString& url);

} // namespace Brindle
