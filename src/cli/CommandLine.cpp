#include "CommandLine.h"

#include <array>
#include <cmath>
#include <functional>

namespace Brindle {

namespace {

constexpr unsigned Of(Command command) {
    return 1U << static_cast<unsigned>(command);
}

constexpr unsigned everyCommand = ~0U;
constexpr unsigned leadCommands = Of(Command::Harvest) | Of(Command::Parse);
constexpr unsigned pacedCommands = leadCommands | Of(Command::Emails) | Of(Command::Fetch);

struct CommandName {
    QStringView Name;
    Command What;
    int FewestArguments;
    int MostArguments; // -1: any number
};

constexpr std::array<CommandName, 8> commandNames{{
    {u"sites", Command::Sites, 0, 0},
    {u"harvest", Command::Harvest, 0, 0},
    {u"parse", Command::Parse, 1, -1},
    {u"emails", Command::Emails, 1, 1},
    {u"fetch", Command::Fetch, 1, 1},
    {u"demo", Command::Demo, 0, 0},
    {u"settings", Command::Settings, 0, 0},
    {u"language", Command::Language, 1, 1},
}};

double Number(const QString& option, const QString& text, double least, double most) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number) || number < least || number > most)
        throw UsageError(QStringLiteral("%1: \u201C%2\u201D is no number from %3 to %4")
                             .arg(option, text)
                             .arg(least)
                             .arg(most, 0, 'g', 10));
    return number;
}

int WholeNumber(const QString& option, const QString& text, int least, int most) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        throw UsageError(QStringLiteral("%1: \u201C%2\u201D is no whole number from %3 to %4")
                             .arg(option, text)
                             .arg(least)
                             .arg(most));
    return number;
}

// Which of two words an option was given.
bool IsSecond(const QString& option, const QString& text, QStringView first, QStringView second) {
    if (text == first)
        return false;
    if (text == second)
        return true;
    throw UsageError(
        QStringLiteral("%1: \u201C%2\u201D is neither %3 nor %4").arg(option, text).arg(first).arg(second));
}

struct Option {
    QStringView Name;
    unsigned Commands;
    bool HasValue;
    std::function<void(CommandLine&, const QString& value)> Apply;
};

const std::vector<Option>& Options() {
    static const std::vector<Option> options{
        {u"--sites", everyCommand, true, [](CommandLine& line, const QString& v) { line.SitesFileName = v; }},
        {u"--settings", everyCommand, true, [](CommandLine& line, const QString& v) { line.SettingsFileName = v; }},
        {u"--set", everyCommand, true, [](CommandLine& line, const QString& v) { line.Overrides.append(v); }},
        {u"--quiet", everyCommand, false, [](CommandLine& line, const QString&) { line.Quiet = true; }},
        {u"--site", leadCommands, true, [](CommandLine& line, const QString& v) { line.Site = v; }},
        {u"--start", Of(Command::Harvest), true, [](CommandLine& line, const QString& v) { line.Start = v; }},
        {u"--demo", Of(Command::Harvest), false, [](CommandLine& line, const QString&) { line.OnDemo = true; }},
        {u"--browser", Of(Command::Harvest), true,
         [](CommandLine& line, const QString& v) {
             line.Browser =
                 IsSecond(QStringLiteral("--browser"), v, u"static", u"web") ? BrowserKind::Web : BrowserKind::Static;
         }},
        {u"--out", leadCommands, true, [](CommandLine& line, const QString& v) { line.OutFileName = v; }},
        {u"--format", leadCommands, true,
         [](CommandLine& line, const QString& v) {
             line.Format =
                 IsSecond(QStringLiteral("--format"), v, u"csv", u"jsonl") ? LeadFormat::JsonLines : LeadFormat::Csv;
         }},
        {u"--pace", pacedCommands, true,
         [](CommandLine& line, const QString& v) { line.Pace = Number(QStringLiteral("--pace"), v, 0, 1); }},
        {u"--max-pages", Of(Command::Harvest), true,
         [](CommandLine& line, const QString& v) {
             line.MaxPages = WholeNumber(QStringLiteral("--max-pages"), v, 1, 1'000'000'000);
         }},
        {u"--patience", Of(Command::Harvest), true,
         [](CommandLine& line, const QString& v) {
             line.PatienceSeconds = Number(QStringLiteral("--patience"), v, 0, 1'000'000);
         }},
        {u"--variant", Of(Command::Parse), true,
         [](CommandLine& line, const QString& v) { line.Variant = WholeNumber(QStringLiteral("--variant"), v, 1, 2); }},
        {u"--markup", Of(Command::Parse), true,
         [](CommandLine& line, const QString& v) {
             line.Markup =
                 IsSecond(QStringLiteral("--markup"), v, u"as-is", u"site") ? MarkupSource::Site : MarkupSource::AsIs;
         }},
        {u"--direct", Of(Command::Fetch), false, [](CommandLine& line, const QString&) { line.Direct = true; }},
        {u"--utf8", Of(Command::Fetch), false, [](CommandLine& line, const QString&) { line.Utf8 = true; }},
    };
    return options;
}

void CheckArguments(const CommandLine& line, const CommandName& command) {
    const auto count = line.Arguments.size();
    if (count < command.FewestArguments)
        throw UsageError(QStringLiteral("%1: something is missing behind the command").arg(command.Name));
    if (command.MostArguments >= 0 && count > command.MostArguments)
        throw UsageError(QStringLiteral("%1: \u201C%2\u201D is one argument too many")
                             .arg(command.Name)
                             .arg(line.Arguments[command.MostArguments]));
    if ((Of(line.What) & leadCommands) != 0 && line.Site.isEmpty())
        throw UsageError(QStringLiteral("%1: --site CODE is missing").arg(command.Name));
    if (line.What == Command::Harvest && line.Start.isEmpty() && !line.OnDemo)
        throw UsageError(QStringLiteral("harvest: --start URL is missing"));
    if (line.OnDemo && line.SitesFileName)
        throw UsageError(QStringLiteral("harvest: --demo brings its own sites file, --sites cannot go with it"));
}

} // namespace

CommandLine ParseCommandLine(const QStringList& arguments) {
    CommandLine line;
    const CommandName* command = nullptr;
    std::vector<std::pair<const Option*, QString>> given;
    bool optionsEnded = false;
    bool formatGiven = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (optionsEnded || argument == u"-" || !argument.startsWith(u'-')) {
            if (command) {
                line.Arguments.append(argument);
                continue;
            }
            for (const CommandName& row : commandNames)
                if (row.Name == argument)
                    command = &row;
            if (!command)
                throw UsageError(QStringLiteral("unknown command \u201C%1\u201D").arg(argument));
            line.What = command->What;
            continue;
        }
        if (argument == u"--") {
            optionsEnded = true;
            continue;
        }
        if (argument == u"--help" || argument == u"-h") {
            line.What = Command::Help;
            return line;
        }
        if (argument == u"--version") {
            line.What = Command::Version;
            return line;
        }
        const qsizetype equals = argument.indexOf(u'=');
        const QString name = equals < 0 ? argument : argument.first(equals);
        const Option* option = nullptr;
        for (const Option& row : Options())
            if (row.Name == name)
                option = &row;
        if (!option)
            throw UsageError(QStringLiteral("unknown option \u201C%1\u201D").arg(name));
        QString value;
        if (!option->HasValue) {
            if (equals >= 0)
                throw UsageError(QStringLiteral("%1 takes no value").arg(name));
        } else if (equals >= 0) {
            value = argument.sliced(equals + 1);
        } else {
            if (++i == arguments.size())
                throw UsageError(QStringLiteral("%1: its value is missing").arg(name));
            value = arguments[i];
        }
        formatGiven = formatGiven || name == u"--format";
        given.emplace_back(option, value);
    }
    if (!command)
        throw UsageError(QStringLiteral("no command"));
    for (const auto& [option, value] : given) {
        if ((option->Commands & Of(line.What)) == 0)
            throw UsageError(QStringLiteral("%1 does not go with %2").arg(option->Name).arg(command->Name));
        option->Apply(line, value);
    }
    if (!formatGiven && line.OutFileName.endsWith(u".jsonl", Qt::CaseInsensitive))
        line.Format = LeadFormat::JsonLines;
    CheckArguments(line, *command);
    return line;
}

QString UsageText() {
    return QStringLiteral(
               "Brindle %1: turns online business directories into sales leads\n"
               "\n"
               "brindle-cli sites                             the directories: code, base address, label\n"
               "brindle-cli harvest --site CODE --start URL   walk the result pages from URL on, write the leads\n"
               "brindle-cli parse   --site CODE PAGE...       read saved result pages, in the order given, as one "
               "harvest\n"
               "brindle-cli emails  URL                       the addresses of one business website, joined by \";\"\n"
               "brindle-cli fetch   URL                       one page through the page fetcher, to standard output\n"
               "brindle-cli demo                              serve the demo directories until Ctrl-C; prints their "
               "sites file\n"
               "brindle-cli settings                          the settings in force, in the format of the settings "
               "file\n"
               "brindle-cli language FILE                     what each tag of a language file reads as\n"
               "\n"
               "all commands\n"
               "  --sites FILE         deployment file instead of the installed one\n"
               "  --settings FILE      settings file instead of the user's; it is read, never written\n"
               "  --set KEY=VALUE      override one setting by its key in the settings file; repeatable\n"
               "  --quiet              no progress on standard error\n"
               "harvest\n"
               "  --demo               harvest from demo directories in this process; --start may be left out\n"
               "  --browser static|web fetch and parse (default), or the Chromium engine\n"
               "  --max-pages N        stop after N result pages\n"
               "  --patience S         give up when no results page came up for S seconds (60)\n"
               "harvest, parse\n"
               "  --out FILE           where the leads go (standard output)\n"
               "  --format csv|jsonl   by the suffix of FILE, else csv\n"
               "parse\n"
               "  --variant 1|2        read the pages in this layout, without asking for the list markers\n"
               "  --markup as-is|site  the text as it stands, or a whole document delivered as the browser would "
               "(site)\n"
               "fetch\n"
               "  --direct             a single attempt without delay or choice of a proxy\n"
               "  --utf8               decode the body once more as UTF-8\n"
               "harvest, parse, emails, fetch\n"
               "  --pace N             every wait times N, 0 to 1 (1)\n"
               "\n"
               "exit status: 0 done, 1 the work failed, 2 wrong usage, 130 stopped by Ctrl-C\n")
        .arg(QStringLiteral(BRINDLE_VERSION));
}

} // namespace Brindle
