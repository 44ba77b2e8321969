#pragma once

#include "core/Dialogs.h"
#include "core/LeadList.h"
#include "core/MessageLoop.h"
#include "core/MessageTexts.h"
#include "core/Settings.h"
#include "core/StatusView.h"

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

/// What the Export button needs.
struct ExportCommand {
    const LeadList& Leads;
    const Settings& Options;
    const MessageTexts& Texts;
    Dialogs& Notices;
    StatusView& Status;
    MessageLoop& Loop;
    QString DocumentsFolder; ///< where the save dialog opens
};

/// The Export button: refuses an empty list, an empty selection and no columns with a notice, asks for a file, writes
/// the selected rows. A write error is told with file and reason. True when a file was written.
bool ExportSelected(const ExportCommand& command, std::span<const qsizetype> selectedRows,
                    const ExportProgress& progress = {});

} // namespace Brindle
