#pragma once

#include "core/Dialogs.h"
#include "core/MessageLoop.h"
#include "core/MessageTexts.h"
#include "core/StatusView.h"
#include "export/CsvExport.h"
#include "export/ExtraColumns.h"
#include "export/LeadFormat.h"
#include "export/LeadLines.h"

#include <functional>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace Brindle {

/// A format behind the classic one in the save dialog, and its type there, as "Name (*.suffix)".
struct OfferedFormat {
    LeadFormat Format;
    QString Type;
};

/// What the Export button needs.
struct ExportCommand {
    const LeadList& Leads;
    const Settings& Options;
    const MessageTexts& Texts;
    Dialogs& Notices;
    StatusView& Status;
    MessageLoop& Loop;
    QString DocumentsFolder;                                                      ///< where the save dialog opens
    std::vector<OfferedFormat> Further{};                                         ///< offered behind classic CSV
    std::function<QString(const ExportLosses&)> LossesText = &ExportLosses::Text; ///< one line, for the user
};

/// Why nothing can be exported: an empty list, an empty selection or no columns; nothing when it can.
std::optional<Message> ExportRefusal(const ExportCommand& command, std::span<const qsizetype> selectedRows);

/// The Export button: refuses with a notice, asks for a file, writes the selected rows in the format of the chosen
/// type, and says in the status bar what that could not hold. A write error is told with file and reason. True when a
/// file was written.
bool ExportSelected(const ExportCommand& command, std::span<const qsizetype> selectedRows,
                    const ExportProgress& progress = {});

/// The same where format and further columns are chosen already: the save dialog offers that one type.
bool ExportAs(const ExportCommand& command, const OfferedFormat& chosen, const ExtraColumns& extra,
              std::span<const qsizetype> selectedRows, const ExportProgress& progress = {});

/// Classic CSV and its type in the save dialog.
OfferedFormat ClassicCsv();

} // namespace Brindle
