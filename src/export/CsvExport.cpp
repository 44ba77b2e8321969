#include "export/CsvExport.h"

#include "core/Errors.h"
#include "core/OutputFile.h"
#include "export/CsvFormat.h"

#include <QDir>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype bufferSize = 1 << 18; // stays in the processor's cache
constexpr qsizetype rowsPerReport = 5000;

void WriteOut(OutputFile& file, const QString& fileName, QByteArray& buffer) {
    if (!file.Write(buffer))
        throw SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.ErrorString()));
    buffer.resize(0); // keeps its memory
}

} // namespace

bool SaveRecords(const QString& fileName, const LeadList& leads, ExportedRows rows, const Settings& settings,
                 const ExportProgress& progress) {
    OutputFile file(fileName);
    const auto failed = [&] {
        return SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.ErrorString()));
    };
    if (!file.Open())
        throw failed();
    CsvFormat format(settings);
    QByteArray buffer;
    buffer.reserve(bufferSize + bufferSize / 4);
    format.AppendHeader(buffer, leads.Captions);
    const qsizetype count = rows ? static_cast<qsizetype>(rows->size()) : leads.Count();
    for (qsizetype i = 0; i < count; ++i) {
        // Messages are handled while progress is shown, and the list may have become shorter by that.
        const qsizetype row = rows ? (*rows)[static_cast<size_t>(i)] : i;
        if (row >= leads.Count())
            break;
        format.AppendLead(buffer, leads.StoredAt(row));
        if (buffer.size() >= bufferSize)
            WriteOut(file, fileName, buffer);
        if (progress && (i + 1) % rowsPerReport == 0 && !progress(i + 1, count))
            return false;
    }
    WriteOut(file, fileName, buffer);
    if (!file.Commit())
        throw failed();
    return true;
}

} // namespace Brindle
