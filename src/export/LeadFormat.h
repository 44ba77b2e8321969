#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace Brindle {

/// The forms in which leads leave the program.
enum class LeadFormat {
    Csv,       ///< the classic one: 8-bit, quotes as they are
    CsvSheet,  ///< for spreadsheets: UTF-8 with byte-order mark, quotes doubled, no formulas
    JsonLines, ///< one object per line
    Workbook,  ///< Office Open XML (.xlsx)
    VCard      ///< vCard 4.0, one card a lead
};

/// Their names on the command line, in the order of the enumeration.
const QStringList& LeadFormatNames();
/// The format of a name; nothing for another text.
std::optional<LeadFormat> LeadFormatNamed(const QString& name);
/// The format that a file name's suffix asks for; `Csv` where it asks for none.
LeadFormat LeadFormatOf(const QString& fileName);

} // namespace Brindle
