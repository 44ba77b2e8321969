#pragma once

#include "Errors.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace Brindle {

/// The command line was wrong; the message says how.
class UsageError : public Failure {
    using Failure::Failure;
};

enum class Command { Sites, Harvest, Parse, Emails, Fetch, Demo, Settings, Language, Help, Version };

enum class LeadFormat { Csv, JsonLines };
enum class BrowserKind { Static, Web };
enum class MarkupSource { AsIs, Site };

/// What the command line asks for.
struct CommandLine {
    Command What = Command::Help;
    QStringList Arguments; ///< what stands beside the options: addresses, pages, a language file

    std::optional<QString> SitesFileName;
    std::optional<QString> SettingsFileName;
    QStringList Overrides; ///< KEY=VALUE each, in order
    bool Quiet = false;

    QString Site;
    QString Start;
    bool OnDemo = false;
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
};

/// Reads the arguments behind the program's name. Throws `UsageError`.
CommandLine ParseCommandLine(const QStringList& arguments);

/// The text of `--help`.
QString UsageText();

} // namespace Brindle
