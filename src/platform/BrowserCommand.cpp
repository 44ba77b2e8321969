#include "platform/BrowserCommand.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

QString BrowserProgram(const QString& command) {
    const QString lowered = command.toLower();
    const qsizetype end = lowered.indexOf(u".exe");
    QString program = (end < 0 ? QString() : lowered.first(end)) + u".exe";
    program.remove(u'"');
    return program;
}

QString EngineExecutable(const QString& command) {
    const QString name = u"iexplore.exe"_s;
    const QString path = command.sliced(std::min<qsizetype>(1, command.size()));
    const qsizetype end = path.indexOf(name);
    return end < 0 ? QString() : path.first(end) + name;
}

} // namespace Brindle
