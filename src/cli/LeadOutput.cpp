#include "cli/LeadOutput.h"

#include "core/QtMessageLoop.h"
#include "platform/StandardStreams.h"

#include <QDir>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype pieceSize = qsizetype{128} * 1024;

} // namespace

LeadOutput::LeadOutput(LeadList& leads, const QString& fileName, LeadFormat format, const Settings& settings,
                       const ExtraColumns& extra)
    : leads_(leads),
      file_(fileName),
      shownName_(fileName.isEmpty() ? u"standard output"_s : QDir::toNativeSeparators(fileName)),
      format_(format),
      automatic_(settings.cExportAutomatic) {
    const ExportShape shape{.Options = settings, .Captions = leads.Captions, .Extra = extra};
    if (format == LeadFormat::Workbook) {
        if (fileName.isEmpty())
            throw Failure(u"a workbook cannot go to standard output: --out FILE names its file"_s);
        workbook_ = std::make_unique<Workbook>(fileName, shape);
    } else {
        constexpr auto mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
        // The descriptor, because the stream of that name would keep the last leads to itself until the end.
        const bool opened =
            fileName.isEmpty() ? file_.open(StandardOutputDescriptor(), mode) : file_.open(mode | QIODevice::Truncate);
        if (!opened)
            throw Failure(u"%1: %2"_s.arg(shownName_, file_.errorString()));
        lines_ = MakeLeadLines(format, shape);
    }
    leads_.AddObserver(this);
}

LeadOutput::~LeadOutput() {
    Flush();
    if (loop_)
        loop_->BeforeTurn = {};
    leads_.RemoveObserver(this);
}

void LeadOutput::Begin() {
    if (!automatic_ && !begun_ && lines_) {
        lines_->AppendHeader(buffer_);
        Flush();
    }
    begun_ = true;
}

void LeadOutput::LeadAppended(qsizetype row) {
    Add(leads_.At(row));
    if (!loop_)
        Flush();
}

void LeadOutput::Add(const Lead& lead) {
    const bool first = added_++ == 0;
    if (workbook_)
        return workbook_->Add(lead);
    if (automatic_ && first) // a lead that could not be saved where it belongs
        lines_->AppendHeader(buffer_);
    lines_->AppendLead(buffer_, lead);
    if (buffer_.size() >= pieceSize)
        Flush();
}

QString LeadOutput::Finish() {
    Flush();
    if (!workbook_)
        return lines_->Losses().Text();
    try {
        if (!automatic_ || added_ > 0)
            workbook_->Finish();
    } catch (const SaveError& error) {
        error_ = error.Message();
    }
    QString losses = workbook_->Losses().Text();
    workbook_.reset();
    return losses;
}

void LeadOutput::GatherBetweenTurns(QtMessageLoop& loop) {
    loop_ = &loop;
    buffer_.reserve(pieceSize + pieceSize / 8);
    loop.BeforeTurn = [this] { Flush(); };
}

void LeadOutput::Flush() {
    if (!buffer_.isEmpty() && error_.isEmpty() && file_.write(buffer_) != buffer_.size())
        error_ = u"%1: %2"_s.arg(shownName_, file_.errorString());
    buffer_.resize(0); // its memory is used again
}

} // namespace Brindle
