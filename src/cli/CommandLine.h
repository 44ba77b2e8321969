#pragma once

#include "core/Errors.h"
#include "export/LeadFormat.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace Brindle {

/// The command line was wrong; the message says how.
class UsageError : public Failure {
    using Failure::Failure;
};

enum class Command {
    Sites,
    Harvest,
    Parse,
    Emails,
    Fetch,
    Demo,
    Settings,
    Language,
    Next,
    Explain,
    Teach,
    Run,
    Work,
    Searches,
    Leads,
    Status,
    Merge,
    Diagnose,
    Help,
    Version
};

enum class BrowserKind { Static, Web };
enum class MarkupSource { AsIs, Site };

/// What the command line asks for.
struct CommandLine {
    Command Name = Command::Help;
    QStringList Arguments; ///< what stands beside the options: addresses, pages, a language file

    std::optional<QString> SitesFileName;
    std::optional<QString> SettingsFileName;
    QStringList Overrides; ///< KEY=VALUE each, in order
    bool Quiet = false;

    QString Site;
    QString Start;
    bool OnDemo = false;
    int DemoListings = 0; ///< of the directory that grows; 0: the usual ones
    BrowserKind Browser = BrowserKind::Static;
    QString OutFileName; ///< empty: standard output
    LeadFormat Format = LeadFormat::Csv;
    double Pace = 1.0;
    int MaxPages = 0; ///< 0: no limit
    double PatienceSeconds = 60;
    int Variant = 0; ///< 0: by the list markers
    MarkupSource Markup = MarkupSource::Site;
    bool Direct = false;
    bool Utf8 = false;

    QString RecipeFileName;
    QString PageUrl; ///< the address under which the pages were saved
    QString What;    ///< of a search instead of a start address
    QString Place;
    bool Details = false; ///< read each record's own page too
    QStringList Examples; ///< CAPTION=TEXT each, in order
    QStringList Columns;  ///< further columns by name, in order
    bool CheckMx = false;
    QString Store; ///< a file or a postgresql address; empty: none was given
    QString Since; ///< a date
    bool OnlyNew = false;
    QString Find;
    int Jobs = 1;
    int LimitPerHost = 0; ///< 0: no limit of its own
    bool IgnoreRobots = false;
    bool Wait = false;
    std::optional<QString> Member; ///< started by another process, which put this list of searches into the store
    bool Json = false;             ///< status and searches: JSON lines, for monitoring
};

/// Reads the arguments behind the program's name. Throws `UsageError`.
CommandLine ParseCommandLine(const QStringList& arguments);

/// All commands, and all options that are for people.
QStringList CommandNames();
QStringList OptionNames();

/// The text of `--help`. The manual page and the completions of shells are made from it: an indented line that begins
/// with a command or an option describes that, further lines that are indented deeper go on with it.
QString UsageText();

} // namespace Brindle
