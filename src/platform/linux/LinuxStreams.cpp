#include "platform/StandardStreams.h"

#include <QFile>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace Brindle {

void WriteTo(StandardStream stream, const QString& text) {
    std::FILE* const file = stream == StandardStream::Output ? stdout : stderr;
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), file);
    std::fflush(file);
}

int StandardOutputDescriptor() {
    return STDOUT_FILENO;
}

bool ErrorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

void TakeParentConsole() {}

// A program that is started from a menu has a standard error too: none at all, /dev/null, the system's journal or the
// log of the session, where nobody looks.
bool HasStandardError() {
    struct stat about {};
    if (fstat(STDERR_FILENO, &about) != 0 || S_ISSOCK(about.st_mode))
        return false;
    if (S_ISCHR(about.st_mode))
        return ErrorIsTerminal();
    const QString file = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(STDERR_FILENO));
    return !file.endsWith(u"/.xsession-errors") && !file.endsWith(u"-session.log");
}

} // namespace Brindle
