#include "RunCli.h"

#include "Commands.h"
#include "Session.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#else
#include <QProcess>
#endif

namespace Brindle {

namespace {

#ifdef Q_OS_UNIX
// Becomes the other program: same process, same standard streams, same Ctrl-C.
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
    throw Failure(QStringLiteral("%1: cannot be started").arg(program));
}
#else
int BecomeProgram(const QString& program, const QStringList& arguments) {
    return QProcess::execute(program, arguments);
}
#endif

int RunWithEngine(const QStringList& arguments) {
    QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/brindle-cli-web");
#ifdef Q_OS_WIN
    program += QStringLiteral(".exe");
#endif
    if (!QFileInfo::exists(program))
        throw Failure(QStringLiteral("--browser web: this installation has no browser engine"));
    return BecomeProgram(program, arguments);
}

int Run(const CommandLine& line, const QStringList& arguments, Console& console, const WebBrowserFactory& webBrowser) {
    switch (line.What) {
    case Command::Sites:
        return RunSites(line, console);
    case Command::Harvest:
        if (line.Browser == BrowserKind::Web && !webBrowser)
            return RunWithEngine(arguments);
        return RunHarvest(line, console, webBrowser);
    case Command::Parse:
        return RunParse(line, console);
    case Command::Emails:
        return RunEmails(line, console);
    case Command::Fetch:
        return RunFetch(line, console);
    case Command::Demo:
        return RunDemo(line, console);
    case Command::Settings:
        return RunSettings(line);
    case Command::Language:
        return RunLanguage(line, console);
    case Command::Help:
        WriteToStandardOutput(UsageText().toLocal8Bit());
        return ExitStatus::Done;
    case Command::Version:
        WriteToStandardOutput("Brindle " BRINDLE_VERSION "\n");
        return ExitStatus::Done;
    }
    return ExitStatus::WrongUsage;
}

} // namespace

int RunCli(const QStringList& arguments, const WebBrowserFactory& webBrowser) {
    bool quiet = false;
    try {
        const CommandLine line = ParseCommandLine(arguments);
        quiet = line.Quiet;
        Console console(quiet);
        return Run(line, arguments, console, webBrowser);
    } catch (const UsageError& error) {
        Console(quiet).Error(error.Message() + QStringLiteral(" (brindle-cli --help shows the usage)"));
        return ExitStatus::WrongUsage;
    } catch (const Failure& failure) {
        Console(quiet).Error(failure.Message());
        return ExitStatus::Failed;
    } catch (const std::exception& error) {
        Console(quiet).Error(QString::fromLocal8Bit(error.what()));
        return ExitStatus::Failed;
    }
}

} // namespace Brindle
