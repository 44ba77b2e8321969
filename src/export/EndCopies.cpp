#include "export/EndCopies.h"

#include "core/Errors.h"
#include "export/CsvFormat.h"

#include <QDir>

#include <utility>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype bufferSize = 1 << 18;

} // namespace

// A copy that failed is given up; its reason is said at the end.
template <typename Work>
void EndCopies::Try(bool& going, const Work& work) {
    if (!going)
        return;
    try {
        work();
    } catch (const Failure& failure) {
        going = false;
        ending_.Problems.append(failure.Message());
    }
}

void EndCopies::Begin(const QString& automaticFile) {
    automaticFile_ = automaticFile;
    QString base = automaticFile;
    if (base.endsWith(u".csv"))
        base.chop(4);
    ExportShape shape{.Options = settings_, .Captions = leads_.Captions, .Extra = {}};
    shape.Options.eExportFields = CountColumns(FieldCount); // as in the automatic file
    workbookGoing_ = more_.WorkbookAtEnd;
    workbookName_ = base + u".xlsx";
    Try(workbookGoing_, [&] { workbook_ = std::make_unique<Workbook>(workbookName_, shape); });
    sheetGoing_ = more_.SheetCsvAtEnd;
    sheetName_ = base + u"-sheet.csv";
    Try(sheetGoing_, [&] {
        sheet_ = std::make_unique<QSaveFile>(sheetName_);
        if (!sheet_->open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            throw SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(sheetName_), sheet_->errorString()));
        lines_ = MakeLeadLines(LeadFormat::CsvSheet, shape);
        buffer_.resize(0);
        lines_->AppendHeader(buffer_);
    });
}

void EndCopies::WriteSheet(bool all) {
    if (!all && buffer_.size() < bufferSize)
        return;
    if (sheet_->write(buffer_) != buffer_.size() || (all && !sheet_->commit()))
        throw SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(sheetName_), sheet_->errorString()));
    buffer_.resize(0);
}

void EndCopies::Add(const QString& automaticFile, const Lead& lead) {
    if (automaticFile != automaticFile_) {
        End();
        Begin(automaticFile);
    }
    Try(workbookGoing_, [&] { workbook_->Add(lead); });
    Try(sheetGoing_, [&] {
        lines_->AppendLead(buffer_, lead);
        WriteSheet(false);
    });
}

void EndCopies::End() {
    const auto count = [this](const ExportLosses& more) {
        losses_.Characters += more.Characters;
        losses_.Shortened += more.Shortened;
        losses_.PlainLinks += more.PlainLinks;
    };
    Try(workbookGoing_, [&] {
        workbook_->Finish();
        count(workbook_->Losses());
        ending_.Saved.append(workbookName_);
    });
    Try(sheetGoing_, [&] {
        WriteSheet(true);
        count(lines_->Losses());
        ending_.Saved.append(sheetName_);
    });
    automaticFile_.clear();
    workbookGoing_ = sheetGoing_ = false;
    workbook_.reset();
    lines_.reset();
    sheet_.reset();
}

EndCopies::Ending EndCopies::Finish() {
    End();
    ending_.Losses = std::exchange(losses_, {});
    return std::exchange(ending_, {});
}

} // namespace Brindle
