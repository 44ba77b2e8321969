#include "platform/StandardStreams.h"

#include <cstdio>
#include <unistd.h>

namespace Brindle {

void WriteTo(StandardStream stream, const QString& text) {
    std::FILE* const file = stream == StandardStream::Output ? stdout : stderr;
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), file);
    std::fflush(file);
}

bool ErrorIsTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

void TakeParentConsole() {}

bool HasStandardError() {
    return true;
}

} // namespace Brindle
