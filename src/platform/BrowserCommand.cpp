#include "BrowserCommand.h"

namespace Brindle {

QString BrowserProgram(const QString& command) {
    const QString lowered = command.toLower();
    const qsizetype end = lowered.indexOf(u".exe");
    QString program = (end < 0 ? QString() : lowered.first(end)) + u".exe";
    program.remove(u'"');
    return program;
}

} // namespace Brindle
