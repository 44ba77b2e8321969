#pragma once

#include "core/LeadList.h"
#include "core/Settings.h"

#include <QString>

#include <functional>
#include <optional>
#include <span>

namespace Brindle {

/// The rows of an export, ascending; without a value every row.
using ExportedRows = std::optional<std::span<const qsizetype>>;

/// Told how many rows are written now and then; returns false to cancel the export.
using ExportProgress = std::function<bool(qsizetype rowsWritten, qsizetype rows)>;

/// Writes the file of a manual export: the header, then the rows with the columns and the delimiter of the settings.
/// The file is replaced as a whole; when it cannot be written, or the export is cancelled, what was there before stays.
/// Memory does not grow with the number of rows. False when cancelled; throws `SaveError` with file and reason.
bool SaveRecords(const QString& fileName, const LeadList& leads, ExportedRows rows, const Settings& settings,
                 const ExportProgress& progress = {});

} // namespace Brindle
