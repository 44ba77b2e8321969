#include "PostgresServer.h"

#include <QDir>
#include <QFile>

#include <csignal>
#include <unistd.h>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

namespace {

// The folder of the newest server that is installed; empty: none.
QString ProgramFolder() {
    const QStringList versions =
        QDir(u"/usr/lib/postgresql"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed);
    for (const QString& version : versions) {
        const QString folder = u"/usr/lib/postgresql/%1/bin/"_s.arg(version);
        if (QFile::exists(folder + u"initdb"_s) && QFile::exists(folder + u"pg_ctl"_s))
            return folder;
    }
    return {};
}

} // namespace

bool PostgresServer::Installed() {
    return !ProgramFolder().isEmpty();
}

PostgresServer::PostgresServer() : data_(folder_.filePath(u"data"_s)) {
    if (geteuid() == 0 && !Run({u"chown"_s, u"postgres"_s, folder_.path()}, 10'000))
        return;
    if (Run(AsOwner({ProgramFolder() + u"initdb"_s, u"-D"_s, data_, u"-U"_s, u"brindle"_s, u"-A"_s, u"trust"_s, u"-E"_s,
                     u"UTF8"_s, u"--locale=C"_s, u"--no-sync"_s}),
            100'000))
        Start();
}

PostgresServer::~PostgresServer() {
    if (running_)
        Run(AsOwner({ProgramFolder() + u"pg_ctl"_s, u"-D"_s, data_, u"-m"_s, u"immediate"_s, u"stop"_s}), 60'000);
    if (geteuid() == 0)
        Run({u"chown"_s, u"-R"_s, u"root"_s, folder_.path()}, 10'000);
}

QString PostgresServer::Address() const {
    return u"postgresql://brindle@/postgres?host="_s + folder_.path();
}

void PostgresServer::Start() {
    const QString options = u"-c listen_addresses= -c unix_socket_directories=%1 -c fsync=off -c max_connections=60"
                            " -c shared_buffers=32MB"_s.arg(folder_.path());
    running_ = Run(AsOwner({ProgramFolder() + u"pg_ctl"_s, u"-D"_s, data_, u"-w"_s, u"-o"_s, options, u"-l"_s,
                            folder_.filePath(u"data/log"_s), u"start"_s}),
                   60'000);
}

void PostgresServer::Stop() {
    if (Run(AsOwner({ProgramFolder() + u"pg_ctl"_s, u"-D"_s, data_, u"-m"_s, u"fast"_s, u"stop"_s}), 60'000))
        running_ = false;
}

// Every process of the server: the one in front and those that serve connections.
void PostgresServer::Signal(int signal) {
    QFile file(data_ + u"/postmaster.pid"_s);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray pid = file.readLine().trimmed();
    QFile children(u"/proc/%1/task/%1/children"_s.arg(QString::fromLatin1(pid)));
    QByteArrayList all{pid};
    if (children.open(QIODevice::ReadOnly))
        all += children.readAll().simplified().split(' ');
    for (const QByteArray& one : all)
        if (one.toInt() > 1)
            kill(one.toInt(), signal);
}

void PostgresServer::Freeze() {
    Signal(SIGSTOP);
}

void PostgresServer::Thaw() {
    Signal(SIGCONT);
}

QStringList PostgresServer::AsOwner(const QStringList& command) const {
    if (geteuid() != 0)
        return command;
    return QStringList{u"runuser"_s, u"-u"_s, u"postgres"_s, u"--"_s} + command;
}

bool PostgresServer::Run(const QStringList& command, int limitMs) {
    QProcess process;
    process.setWorkingDirectory(u"/"_s);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(folder_.filePath(u"messages"_s));
    process.start(command.first(), command.sliced(1));
    if (process.waitForFinished(limitMs) && process.exitCode() == 0)
        return true;
    QFile messages(folder_.filePath(u"messages"_s));
    error_ = command.join(u' ') + u": "_s;
    if (messages.open(QIODevice::ReadOnly))
        error_ += QString::fromUtf8(messages.readAll());
    return false;
}

} // namespace Brindle::Test
