#include "LeadOutput.h"

#include "JsonLine.h"

#include <QDir>

#include <cstdio>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#endif

namespace Brindle {

LeadOutput::LeadOutput(LeadList& leads, const QString& fileName, LeadFormat format, const Settings& settings)
    : leads_(leads),
      file_(fileName),
      shownName_(fileName.isEmpty() ? QStringLiteral("standard output") : QDir::toNativeSeparators(fileName)),
      format_(format),
      automatic_(settings.cExportAutomatic),
      csv_(settings) {
    constexpr auto mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
#ifdef Q_OS_WIN
    if (fileName.isEmpty())
        _setmode(_fileno(stdout), _O_BINARY);
#endif
    const bool opened = fileName.isEmpty() ? file_.open(stdout, mode) : file_.open(mode | QIODevice::Truncate);
    if (!opened)
        throw Failure(QStringLiteral("%1: %2").arg(shownName_, file_.errorString()));
    leads_.AddObserver(this);
}

LeadOutput::~LeadOutput() {
    leads_.RemoveObserver(this);
}

void LeadOutput::Begin() {
    if (!automatic_ && !begun_ && format_ == LeadFormat::Csv) {
        buffer_.resize(0);
        csv_.AppendHeader(buffer_, leads_.Captions);
        Write(buffer_);
    }
    begun_ = true;
}

void LeadOutput::LeadAppended(qsizetype row) {
    const Lead lead = leads_.At(row);
    if (format_ == LeadFormat::JsonLines)
        return Write(JsonLine(lead));
    buffer_.resize(0);
    if (automatic_ && row == 0) // a lead that could not be saved where it belongs
        csv_.AppendHeader(buffer_, leads_.Captions);
    csv_.AppendLead(buffer_, lead);
    Write(buffer_);
}

void LeadOutput::Write(const QByteArray& bytes) {
    if (!error_.isEmpty())
        return;
    if (file_.write(bytes) != bytes.size())
        error_ = QStringLiteral("%1: %2").arg(shownName_, file_.errorString());
}

} // namespace Brindle
