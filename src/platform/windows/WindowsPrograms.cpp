#include "core/Errors.h"
#include "platform/Programs.h"

#include <QCoreApplication>
#include <QProcess>

namespace Brindle {

using namespace Qt::StringLiterals;

QString ProgramBeside(const QString& name) {
    return QCoreApplication::applicationDirPath() + u'/' + name + u".exe";
}

QString WhyNoSandbox() {
    return {};
}

int BecomeProgram(const QString& program, const QStringList& arguments) {
    const int status = QProcess::execute(program, arguments);
    if (status < 0)
        throw Failure(u"%1: cannot be started"_s.arg(program));
    return status;
}

bool HasDisplay() {
    return true;
}

} // namespace Brindle
