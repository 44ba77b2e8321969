#include "core/Errors.h"
#include "platform/Programs.h"

#include <QCoreApplication>

#include <unistd.h>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

QString ProgramBeside(const QString& name) {
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

int BecomeProgram(const QString& program, const QStringList& arguments) {
    std::vector<QByteArray> texts{program.toLocal8Bit()};
    for (const QString& argument : arguments)
        texts.push_back(argument.toLocal8Bit());
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (QByteArray& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    execv(pointers[0], pointers.data());
    throw Failure(u"%1: cannot be started"_s.arg(program));
}

bool HasDisplay() {
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    return false;
}

} // namespace Brindle
