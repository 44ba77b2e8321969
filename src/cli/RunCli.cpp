#include "cli/RunCli.h"

#include "cli/AnyPageCommands.h"
#include "cli/Commands.h"
#include "cli/Session.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#else
#include <QProcess>
#endif

namespace Brindle {

using namespace Qt::StringLiterals;

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
    throw Failure(u"%1: cannot be started"_s.arg(program));
}
#else
int BecomeProgram(const QString& program, const QStringList& arguments) {
    return QProcess::execute(program, arguments);
}
#endif

int RunWithEngine(const QStringList& arguments) {
    QString program = QCoreApplication::applicationDirPath() + u"/brindle-cli-web"_s;
#ifdef Q_OS_WIN
    program += u".exe"_s;
#endif
    if (!QFileInfo::exists(program))
        throw Failure(u"--browser web: this installation has no browser engine"_s);
    return BecomeProgram(program, arguments);
}

int Run(const CommandLine& line, const QStringList& arguments, Console& console, const WebBrowserFactory& webBrowser) {
    switch (line.Name) {
    case Command::Sites:
        return RunSites(line, console);
    case Command::Harvest:
        if (line.Browser == BrowserKind::Web && !webBrowser)
            return RunWithEngine(arguments);
        return RunHarvest(line, console, webBrowser);
    case Command::Parse:
        return line.Site == anyPageSite || !line.RecipeFileName.isEmpty() ? RunParseAnyPage(line, console)
                                                                          : RunParse(line, console);
    case Command::Emails:
        return RunEmails(line, console);
    case Command::Fetch:
        return RunFetch(line, console);
    case Command::Demo:
        return RunDemo(line, console);
    case Command::Settings:
        return RunSettings(line);
    case Command::Teach:
        return RunTeach(line, console);
    case Command::Language:
        return RunLanguage(line, console);
    case Command::Next:
        return RunNext(line, console);
    case Command::Explain:
        return RunExplain(line, console);
    case Command::Merge:
        return RunMerge(line, console);
    case Command::Help:
        WriteToStandardOutput(UsageText().toLocal8Bit());
        return ExitStatus::Done;
    case Command::Version:
        WriteToStandardOutput("Brindle " BRINDLE_VERSION "\n");
        return ExitStatus::Done;
    case Command::Run:
    case Command::Work:
    case Command::Searches:
    case Command::Leads:
    case Command::Status:
    case Command::Diagnose:
        break;
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
        Console(quiet).Error(error.Message() + u" (brindle-cli --help shows the usage)"_s);
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
