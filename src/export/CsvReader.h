#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace Brindle {

/// A table as it was read.
struct CsvTable {
    QStringList Header;
    std::vector<QStringList> Rows;
    QStringList Problems;         ///< "line N: reason" for each record that is not of the header's shape
    bool ForSpreadsheets = false; ///< cells may have an apostrophe before a formula
};

/// Reads CSV. `byRule`: by RFC 4180, with the delimiter that the header shows. Otherwise a file that keeps to that RFC
/// is read by it, and another one as the classic export writes it: every field in quotes, the quotes within as they
/// are. There, a record ends at the line end behind which the next one begins, once it has all its fields; a record
/// whose fields cannot be told apart is left out and named. Linear in the text.
CsvTable ReadCsv(const QString& text, bool byRule);

} // namespace Brindle
