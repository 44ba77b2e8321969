#pragma once

#include "export/CsvExport.h"
#include "export/LeadLines.h"

#include <QString>

namespace Brindle {

/// Writes leads as a file of any format, as `SaveRecords` does: replaced as a whole, memory does not grow with the
/// rows. `losses`: what the format could not hold. False when cancelled; throws `SaveError` with file and reason.
bool SaveLeads(const QString& fileName, LeadFormat format, const ExportShape& shape, const LeadList& leads,
               ExportedRows rows, ExportLosses& losses, const ExportProgress& progress = {});

} // namespace Brindle
