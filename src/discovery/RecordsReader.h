#pragma once

#include "discovery/AnyPage.h"
#include "discovery/RecordsColumns.h"

#include <QVarLengthArray>

#include <vector>

namespace Brindle {

/// What a page is about, by its title, its first headings and its address.
struct PageSubject {
    bool Businesses = false; ///< it names a kind of business or a directory
    bool Hosts = false;      ///< it names houses that sleep or feed people, whose lists tell prices
    bool OtherThings = false;
    bool Jobs = false;
    bool OneFirm = false; ///< it is a firm's page about itself
    QString Words;        ///< of title and first headings, bare
};
PageSubject SubjectOf(const PageAnnotations& page);

/// The records of a list with their fields, and how sure it is that they are businesses.
struct RecordsReading {
    std::vector<PageRecord> Records;
    std::vector<FieldReading> Fields;
    QString Selector;
    double Score = 0;                             ///< to compare lists of one page
    double Witness = 0;                           ///< share of the records that structured data names
    std::vector<QVarLengthArray<size_t, 1>> Said; ///< by record: the numbers of what structured data says of it
    bool Sure = false;
    bool Late = false; ///< read for the sake of explaining alone
    QString Verdict;   ///< why it is not, or what speaks for it
};
RecordsReading ReadRecords(const PageAnnotations& page, const Signatures& signatures, const RecordList& list,
                           const PageSubject& subject, Selectors selectors);

} // namespace Brindle
