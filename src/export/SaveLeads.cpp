#include "export/SaveLeads.h"

#include "core/Errors.h"
#include "core/OutputFile.h"
#include "export/Workbook.h"

#include <QDir>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype bufferSize = 1 << 20;
constexpr qsizetype rowsPerReport = 1000;

// Hands the rows to `add` one by one; false when cancelled.
template <typename Add>
bool EachRow(const LeadList& leads, ExportedRows rows, const ExportProgress& progress, bool slow, const Add& add) {
    const qsizetype count = rows ? static_cast<qsizetype>(rows->size()) : leads.Count();
    for (qsizetype i = 0; i < count; ++i) {
        // Messages are handled while progress is shown, and the list may have become shorter by that.
        const qsizetype row = rows ? (*rows)[static_cast<size_t>(i)] : i;
        if (row >= leads.Count())
            break;
        add(leads.At(row));
        if (progress && (slow || (i + 1) % rowsPerReport == 0) && !progress(i + 1, count))
            return false;
    }
    return true;
}

} // namespace

bool SaveLeads(const QString& fileName, LeadFormat format, const ExportShape& shape, const LeadList& leads,
               ExportedRows rows, ExportLosses& losses, const ExportProgress& progress) {
    const bool slow = shape.Extra.Asks();
    if (format == LeadFormat::Workbook) {
        Workbook workbook(fileName, shape);
        const bool whole = EachRow(leads, rows, progress, slow, [&](const Lead& lead) { workbook.Add(lead); });
        losses = workbook.Losses();
        if (whole)
            workbook.Finish();
        return whole;
    }
    if (format == LeadFormat::Csv && shape.Extra.IsEmpty())
        return SaveRecords(fileName, leads, rows, shape.Options, progress);
    OutputFile file(fileName);
    const auto failed = [&] {
        return SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.ErrorString()));
    };
    if (!file.Open())
        throw failed();
    QByteArray buffer;
    const auto writeOut = [&] {
        if (!file.Write(buffer))
            throw failed();
        buffer.resize(0); // keeps its memory
    };
    const std::unique_ptr<LeadLines> lines = MakeLeadLines(format, shape);
    lines->AppendHeader(buffer);
    const bool whole = EachRow(leads, rows, progress, slow, [&](const Lead& lead) {
        lines->AppendLead(buffer, lead);
        if (buffer.size() >= bufferSize)
            writeOut();
    });
    losses = lines->Losses();
    if (!whole)
        return false;
    writeOut();
    if (!file.Commit())
        throw failed();
    return true;
}

} // namespace Brindle
