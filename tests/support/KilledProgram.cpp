#include "KilledProgram.h"

#include <QProcess>
#include <QThread>

namespace Brindle::Test {

QByteArray OutputUntilKilled(const QString& program, const QStringList& arguments, unsigned long microseconds) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForReadyRead())
        return {};
    QThread::usleep(microseconds);
    process.kill();
    process.waitForFinished();
    if (process.exitStatus() != QProcess::CrashExit)
        return {};
    return process.readAllStandardOutput();
}

} // namespace Brindle::Test
