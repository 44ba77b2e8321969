#pragma once

#include "export/CsvReader.h"

#include <QByteArray>

namespace Brindle {

/// The cells of a workbook's sheets as texts: the first row of the first sheet is the header, a first row like it in
/// further sheets is left out. Throws `Failure` with the reason when the bytes are no workbook.
CsvTable ReadWorkbook(const QByteArray& bytes);

} // namespace Brindle
