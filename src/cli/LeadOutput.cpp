#include "cli/LeadOutput.h"

#include "cli/JsonLine.h"

#include <QDir>

#include <cstdio>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The descriptor of standard output, which takes bytes as they are.
int StandardOutput() {
#ifdef Q_OS_WIN
    const int descriptor = _fileno(stdout);
    _setmode(descriptor, _O_BINARY);
    return descriptor;
#else
    return STDOUT_FILENO;
#endif
}

} // namespace

LeadOutput::LeadOutput(LeadList& leads, const QString& fileName, LeadFormat format, const Settings& settings)
    : leads_(leads),
      file_(fileName),
      shownName_(fileName.isEmpty() ? u"standard output"_s : QDir::toNativeSeparators(fileName)),
      format_(format),
      automatic_(settings.cExportAutomatic),
      csv_(settings) {
    constexpr auto mode = QIODevice::WriteOnly | QIODevice::Unbuffered;
    // The descriptor, because the stream of that name would keep the last leads to itself until the end.
    const bool opened =
        fileName.isEmpty() ? file_.open(StandardOutput(), mode) : file_.open(mode | QIODevice::Truncate);
    if (!opened)
        throw Failure(u"%1: %2"_s.arg(shownName_, file_.errorString()));
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
        error_ = u"%1: %2"_s.arg(shownName_, file_.errorString());
}

} // namespace Brindle
