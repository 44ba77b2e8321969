#include "cli/RunCli.h"

#include "cli/AnyPageCommands.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "platform/Programs.h"
#include "workbench/Product.h"

#include <QFileInfo>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

int RunWithEngine(const QStringList& arguments) {
    const QString program = ProgramBeside(u"brindle-cli-web"_s);
    if (!QFileInfo::exists(program))
        throw Failure(u"--browser web: this installation has no browser engine"_s);
    return BecomeProgram(program, arguments);
}

int RunWithDemo(const QStringList& arguments) {
    const QString program = ProgramBeside(u"brindle-cli-demo"_s);
    if (!QFileInfo::exists(program))
        throw Failure(u"this installation has no demo directories"_s);
    return BecomeProgram(program, arguments);
}

int Run(const CommandLine& line, const QStringList& arguments, Console& console, const ProgramParts& parts) {
    switch (line.Name) {
    case Command::Sites:
        return RunSites(line, console);
    case Command::Harvest:
        if (line.Browser == BrowserKind::Web && !parts.WebBrowser)
            return RunWithEngine(arguments);
        if (line.OnDemo)
            return parts.Demo ? parts.Demo(line, console, parts.WebBrowser) : RunWithDemo(arguments);
        return RunHarvest(line, console, parts.WebBrowser);
    case Command::Parse:
        return ReadsDocuments(line) ? RunParseAnyPage(line, console) : RunParse(line, console);
    case Command::Emails:
        return RunEmails(line, console);
    case Command::Fetch:
        return RunFetch(line, console);
    case Command::Demo:
        return parts.Demo ? parts.Demo(line, console, parts.WebBrowser) : RunWithDemo(arguments);
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
    case Command::Run:
        return RunRun(line, console);
    case Command::Work:
        return RunWork(line, console);
    case Command::Searches:
        return RunSearches(line, console);
    case Command::Leads:
        return RunLeads(line, console);
    case Command::Status:
        return RunStatus(line, console);
    case Command::Help:
        WriteToStandardOutput(UsageText().toLocal8Bit());
        return ExitStatus::Done;
    case Command::Version:
        WriteToStandardOutput(QString(ProductTitle() + u' ' + ProductVersion() + u'\n').toLocal8Bit());
        return ExitStatus::Done;
    case Command::Diagnose:
        return RunDiagnose(line);
    }
    return ExitStatus::WrongUsage;
}

} // namespace

int RunCli(const QStringList& arguments, const ProgramParts& parts) {
    bool quiet = false;
    try {
        const CommandLine line = ParseCommandLine(arguments);
        quiet = line.Quiet;
        Console console(quiet);
        return Run(line, arguments, console, parts);
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
