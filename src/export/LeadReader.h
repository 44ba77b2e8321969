#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringList>

#include <span>
#include <vector>

namespace Brindle {

/// What a file of leads gave.
struct LeadFile {
    std::vector<Lead> Leads;
    QStringList Problems; ///< one line each: what could not be read, with the number of its line
};

/// Reads a file of leads in any of the formats that the program writes; what it holds tells which. CSV may have any
/// delimiter, and the quotes within its fields may stand doubled or as they are; its bytes are UTF-8 or those of the
/// Western 8-bit code page. `captions`: the column captions in further languages, fourteen each. Columns that are none
/// of the fourteen are left out. Throws `Failure` with file and reason when the file cannot be read or is no such list.
LeadFile ReadLeadFile(const QString& fileName, std::span<const QStringList> captions = {});

/// Which of the fourteen each column of a table is, by its caption in any of the languages; -1 for others. Fourteen
/// columns with unknown captions are taken in order.
std::vector<int> FieldsOfColumns(const QStringList& header, std::span<const QStringList> captions);

/// Puts a row of a table into a lead; an apostrophe that was put before a formula goes.
Lead LeadOfRow(const QStringList& row, const std::vector<int>& fields, bool harmless);

} // namespace Brindle
