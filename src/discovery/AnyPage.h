#pragma once

#include "core/Lead.h"
#include "discovery/NextPage.h"
#include "page/PageTree.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace Brindle {

/// A business that a page lists, and where it stands: the nodes [Begin, End) of the page. `Begin` is `noNode` for one
/// that stands in the page's structured data alone.
struct PageRecord {
    Lead Fields;
    NodeIndex Begin = noNode;
    NodeIndex End = noNode;
};

/// How a field was read.
struct FieldReading {
    Field Column = Field::Category;
    QString Selector; ///< of the elements within the record, as CSS; empty when they have nothing in common
    int Filled = 0;   ///< records in which it has a value
    QString Why;
};

/// A list that was considered.
struct ListCandidate {
    QString Selector;
    int Records = 0;
    double Score = 0;
    QString Verdict; ///< "taken", or why not
};

/// What a page of any directory was read as.
struct AnyPageReading {
    std::vector<PageRecord> Records; ///< in the page's order; empty where nothing was sure enough
    QString Source;         ///< "json-ld", "microdata", "rdfa", "microformats" or "shape"; empty for no records
    QString RecordSelector; ///< CSS of the records' elements; empty when they are in structured data alone
    std::vector<FieldReading> Fields;
    NextPageLink Next;
    std::vector<ListCandidate> Candidates; ///< the best first
    QStringList Looks; ///< of the records' elements: the list is known again by them on its next page
};

/// Whether a reading says with which selectors its records and fields are found; they take longer than the rest.
enum class Selectors : quint8 { Left, Made };

/// Reads the businesses that a page lists, whoever made it, and where the list goes on: by what the page says of itself
/// and by the shape of its lists. `url` is the page's address; a page that was opened from disk is read as the one on
/// the web that it says it is. The same page gives the same reading. Linear in the page; never throws for what a page
/// holds. Where nothing is sure enough there are no records. `before`: the looks of the records on the page before, if
/// there was one; the last page of a list may have too few of them to be sure of by itself.
AnyPageReading ReadAnyPage(const PageTree& page, const QString& url, Selectors selectors = Selectors::Left,
                           const QStringList& before = {});

} // namespace Brindle
