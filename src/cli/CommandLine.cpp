#include "cli/CommandLine.h"

#include <array>
#include <cmath>
#include <functional>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned Of(Command command) {
    return 1U << static_cast<unsigned>(command);
}

constexpr unsigned everyCommand = ~0U;
constexpr unsigned leadCommands = Of(Command::Harvest) | Of(Command::Parse);
constexpr unsigned fetchCommands = leadCommands | Of(Command::Emails) | Of(Command::Fetch);
constexpr unsigned manySearchCommands = Of(Command::Run) | Of(Command::Work);
constexpr unsigned pacedCommands = fetchCommands | manySearchCommands;
constexpr unsigned exportCommands = leadCommands | Of(Command::Leads) | Of(Command::Merge);
constexpr unsigned pageCommands = Of(Command::Parse) | Of(Command::Next) | Of(Command::Explain) | Of(Command::Teach);
constexpr unsigned storeCommands = leadCommands | manySearchCommands | Of(Command::Searches) | Of(Command::Leads) |
                                   Of(Command::Status) | Of(Command::Diagnose);

struct CommandName {
    QStringView Name;
    Command What;
    int FewestArguments;
    int MostArguments; // -1: any number
};

constexpr std::array<CommandName, 18> commandNames{{
    {u"sites", Command::Sites, 0, 0},
    {u"harvest", Command::Harvest, 0, 0},
    {u"parse", Command::Parse, 1, -1},
    {u"emails", Command::Emails, 1, 1},
    {u"fetch", Command::Fetch, 1, 1},
    {u"demo", Command::Demo, 0, 0},
    {u"settings", Command::Settings, 0, 0},
    {u"language", Command::Language, 1, 1},
    {u"next", Command::Next, 1, 1},
    {u"explain", Command::Explain, 1, 1},
    {u"teach", Command::Teach, 1, 1},
    {u"run", Command::Run, 1, 1},
    {u"work", Command::Work, 0, 0},
    {u"searches", Command::Searches, 1, -1},
    {u"leads", Command::Leads, 0, 0},
    {u"status", Command::Status, 0, 0},
    {u"merge", Command::Merge, 1, -1},
    {u"diagnose", Command::Diagnose, 0, 0},
}};

double Number(const QString& option, const QString& text, double least, double most) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number) || number < least || number > most)
        throw UsageError(
            u"%1: \u201C%2\u201D is no number from %3 to %4"_s.arg(option, text).arg(least).arg(most, 0, 'g', 10));
    return number;
}

int WholeNumber(const QString& option, const QString& text, int least, int most) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < least || number > most)
        throw UsageError(
            u"%1: \u201C%2\u201D is no whole number from %3 to %4"_s.arg(option, text).arg(least).arg(most));
    return number;
}

LeadFormat FormatNamed(const QString& text) {
    if (const std::optional<LeadFormat> format = LeadFormatNamed(text))
        return *format;
    throw UsageError(u"--format: \u201C%1\u201D is none of %2"_s.arg(text, LeadFormatNames().join(u", "_s)));
}

// Which of two words an option was given.
bool IsSecond(const QString& option, const QString& text, QStringView first, QStringView second) {
    if (text == first)
        return false;
    if (text == second)
        return true;
    throw UsageError(u"%1: \u201C%2\u201D is neither %3 nor %4"_s.arg(option, text).arg(first).arg(second));
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
        {u"--site", leadCommands | Of(Command::Leads), true,
         [](CommandLine& line, const QString& v) { line.Site = v; }},
        {u"--start", Of(Command::Harvest), true, [](CommandLine& line, const QString& v) { line.Start = v; }},
        {u"--demo", Of(Command::Harvest), false, [](CommandLine& line, const QString&) { line.OnDemo = true; }},
        {u"--listings", Of(Command::Demo), true,
         [](CommandLine& line, const QString& v) {
             line.DemoListings = WholeNumber(u"--listings"_s, v, 1, 10'000'000);
         }},
        {u"--browser", Of(Command::Harvest), true,
         [](CommandLine& line, const QString& v) {
             line.Browser = IsSecond(u"--browser"_s, v, u"static", u"web") ? BrowserKind::Web : BrowserKind::Static;
         }},
        {u"--out", exportCommands | Of(Command::Teach), true,
         [](CommandLine& line, const QString& v) { line.OutFileName = v; }},
        {u"--format", exportCommands, true, [](CommandLine& line, const QString& v) { line.Format = FormatNamed(v); }},
        {u"--pace", pacedCommands, true,
         [](CommandLine& line, const QString& v) { line.Pace = Number(u"--pace"_s, v, 0, 1); }},
        {u"--max-pages", Of(Command::Harvest), true,
         [](CommandLine& line, const QString& v) {
             line.MaxPages = WholeNumber(u"--max-pages"_s, v, 1, 1'000'000'000);
         }},
        {u"--patience", fetchCommands, true,
         [](CommandLine& line, const QString& v) { line.PatienceSeconds = Number(u"--patience"_s, v, 0, 1'000'000); }},
        {u"--variant", Of(Command::Parse), true,
         [](CommandLine& line, const QString& v) { line.Variant = WholeNumber(u"--variant"_s, v, 1, 2); }},
        {u"--markup", Of(Command::Parse), true,
         [](CommandLine& line, const QString& v) {
             line.Markup = IsSecond(u"--markup"_s, v, u"as-is", u"site") ? MarkupSource::Site : MarkupSource::AsIs;
         }},
        {u"--direct", Of(Command::Fetch), false, [](CommandLine& line, const QString&) { line.Direct = true; }},
        {u"--utf8", Of(Command::Fetch), false, [](CommandLine& line, const QString&) { line.Utf8 = true; }},
        {u"--recipe", leadCommands, true, [](CommandLine& line, const QString& v) { line.RecipeFileName = v; }},
        {u"--url", pageCommands, true, [](CommandLine& line, const QString& v) { line.PageUrl = v; }},
        {u"--what", Of(Command::Harvest), true, [](CommandLine& line, const QString& v) { line.What = v; }},
        {u"--place", Of(Command::Harvest), true, [](CommandLine& line, const QString& v) { line.Place = v; }},
        {u"--details", leadCommands, false, [](CommandLine& line, const QString&) { line.Details = true; }},
        {u"--example", Of(Command::Teach), true, [](CommandLine& line, const QString& v) { line.Examples.append(v); }},
        {u"--columns", exportCommands, true,
         [](CommandLine& line, const QString& v) { line.Columns = v.split(u',', Qt::SkipEmptyParts); }},
        {u"--check-mx", exportCommands, false, [](CommandLine& line, const QString&) { line.CheckMx = true; }},
        {u"--store", storeCommands, true, [](CommandLine& line, const QString& v) { line.Store = v; }},
        {u"--since", Of(Command::Leads), true, [](CommandLine& line, const QString& v) { line.Since = v; }},
        {u"--new", Of(Command::Leads), false, [](CommandLine& line, const QString&) { line.OnlyNew = true; }},
        {u"--find", Of(Command::Leads), true, [](CommandLine& line, const QString& v) { line.Find = v; }},
        {u"--jobs", manySearchCommands, true,
         [](CommandLine& line, const QString& v) { line.Jobs = WholeNumber(u"--jobs"_s, v, 1, 1000); }},
        {u"--limit-per-host", manySearchCommands, true,
         [](CommandLine& line, const QString& v) {
             line.LimitPerHost = WholeNumber(u"--limit-per-host"_s, v, 1, 1000);
         }},
        {u"--ignore-robots", manySearchCommands, false,
         [](CommandLine& line, const QString&) { line.IgnoreRobots = true; }},
        {u"--wait", Of(Command::Work), false, [](CommandLine& line, const QString&) { line.Wait = true; }},
        {u"--member", manySearchCommands, true, [](CommandLine& line, const QString& v) { line.Member = v; }},
        {u"--json", Of(Command::Status) | Of(Command::Searches), false,
         [](CommandLine& line, const QString&) { line.Json = true; }},
    };
    return options;
}

void CheckArguments(const CommandLine& line, const CommandName& command) {
    const auto count = line.Arguments.size();
    if (count < command.FewestArguments)
        throw UsageError(u"%1: something is missing behind the command"_s.arg(command.Name));
    if (command.MostArguments >= 0 && count > command.MostArguments)
        throw UsageError(u"%1: \u201C%2\u201D is one argument too many"_s.arg(command.Name)
                             .arg(line.Arguments[command.MostArguments]));
    if ((Of(line.Name) & leadCommands) != 0) {
        if (line.Site.isEmpty() && line.RecipeFileName.isEmpty())
            throw UsageError(u"%1: --site CODE is missing"_s.arg(command.Name));
        if (!line.Site.isEmpty() && !line.RecipeFileName.isEmpty())
            throw UsageError(u"%1: --site and --recipe do not go together"_s.arg(command.Name));
    }
    const bool searched = !line.What.isEmpty() || !line.Place.isEmpty();
    if (line.Name == Command::Harvest && line.Start.isEmpty() && !line.OnDemo && !searched)
        throw UsageError(u"harvest: --start URL is missing"_s);
    if (searched && !line.Start.isEmpty())
        throw UsageError(u"harvest: --start and --what, --place do not go together"_s);
    if ((Of(line.Name) & (pageCommands & ~Of(Command::Parse))) != 0 && line.PageUrl.isEmpty())
        throw UsageError(u"%1: --url URL is missing"_s.arg(command.Name));
    if (line.Name == Command::Teach && line.Examples.isEmpty())
        throw UsageError(u"teach: --example CAPTION=TEXT is missing"_s);
    if (line.OnDemo && line.SitesFileName)
        throw UsageError(u"harvest: --demo brings its own sites file, --sites cannot go with it"_s);
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
                throw UsageError(u"unknown command \u201C%1\u201D"_s.arg(argument));
            line.Name = command->What;
            continue;
        }
        if (argument == u"--") {
            optionsEnded = true;
            continue;
        }
        if (argument == u"--help" || argument == u"-h") {
            line.Name = Command::Help;
            return line;
        }
        if (argument == u"--version") {
            line.Name = Command::Version;
            return line;
        }
        const qsizetype equals = argument.indexOf(u'=');
        const QString name = equals < 0 ? argument : argument.first(equals);
        const Option* option = nullptr;
        for (const Option& row : Options())
            if (row.Name == name)
                option = &row;
        if (!option)
            throw UsageError(u"unknown option \u201C%1\u201D"_s.arg(name));
        QString value;
        if (!option->HasValue) {
            if (equals >= 0)
                throw UsageError(u"%1 takes no value"_s.arg(name));
        } else if (equals >= 0) {
            value = argument.sliced(equals + 1);
        } else {
            if (++i == arguments.size())
                throw UsageError(u"%1: its value is missing"_s.arg(name));
            value = arguments[i];
        }
        formatGiven = formatGiven || name == u"--format";
        given.emplace_back(option, value);
    }
    if (!command)
        throw UsageError(u"no command"_s);
    for (const auto& [option, value] : given) {
        if ((option->Commands & Of(line.Name)) == 0)
            throw UsageError(u"%1 does not go with %2"_s.arg(option->Name).arg(command->Name));
        option->Apply(line, value);
    }
    if (!formatGiven)
        line.Format = LeadFormatOf(line.OutFileName);
    CheckArguments(line, *command);
    return line;
}

QStringList CommandNames() {
    QStringList names;
    for (const CommandName& command : commandNames)
        names.append(command.Name.toString());
    return names;
}

QStringList OptionNames() {
    QStringList names;
    for (const Option& option : Options())
        if (option.Name != u"--member")
            names.append(option.Name.toString());
    return names;
}

} // namespace Brindle
