#include "core/Errors.h"
#include "platform/Programs.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool UserNamespacesWork() {
    const pid_t child = fork();
    if (child < 0)
        return false;
    if (child == 0)
        _exit(unshare(CLONE_NEWUSER) == 0 ? 0 : 1);
    int status = 1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

QString ProgramBeside(const QString& name) {
    const QString folder = QCoreApplication::applicationDirPath();
    // Where it is installed, what nobody starts by hand is not among the commands.
    const QString installed = QDir::cleanPath(folder + u"/../libexec/brindle/" + name);
    const QString beside = folder + u'/' + name;
    return !QFileInfo::exists(beside) && QFileInfo::exists(installed) ? installed : beside;
}

QString WhyNoSandbox() {
    if (geteuid() == 0)
        return u"it runs as root"_s;
    return UserNamespacesWork() ? QString() : u"the system allows no user namespaces"_s;
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
