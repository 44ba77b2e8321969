#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/LeadReport.h"
#include "core/Platform.h"
#include "core/QtMessageLoop.h"
#include "platform/Interrupt.h"
#include "workbench/Workbench.h"

#include <memory>

namespace Brindle {

/// The exit statuses of the command line.
namespace ExitStatus {
inline constexpr int Done = 0;
inline constexpr int Failed = 1;
inline constexpr int WrongUsage = 2;
inline constexpr int Interrupted = 130;
} // namespace ExitStatus

/// The settings in force: the file, then the overrides of the command line. Throws `Failure`, and `UsageError` for an
/// override that is none.
Settings LoadSettingsInForce(const CommandLine& line, Platform& platform);

/// The options beyond them: `options.toml` beside the settings file, then the overrides with a dot in their key. What
/// is wrong with the file is said on the console and stops nothing. Throws `UsageError` for an override that is none.
MoreOptions LoadOptionsInForce(const CommandLine& line, Platform& platform, Console& console);

/// The deployment file in force. Throws `Failure` when it cannot be read.
SitesFile LoadSites(const CommandLine& line);

/// Everything that a command which fetches or harvests needs, on the same workbench as the window.
class Session {
public:
    /// `sites`: what the directories' addresses are taken from. Throws `Failure`.
    Session(const CommandLine& line, Console& console, SitesFile sites);

    /// Makes a site the current one, as the site selector does. Throws `UsageError` for an unknown code and `Failure`
    /// for a site whose entry in the deployment file is incomplete.
    void SelectSite(const QString& siteCode);

    /// To be called when a harvest has ended: puts the copies of its automatic file in place and says which. False when
    /// one could not be made.
    bool EndCopies();

    Console& Out;
    std::unique_ptr<Platform> System;
    QtMessageLoop Loop;
    SilentStatus Status;
    ConsoleDialogs Notices;
    Workbench Bench;

    // What is on the workbench, for those who need but a part of it.
    const SitesFile& Sites = Bench.Sites;
    const SiteCatalogue& Catalogue = Bench.Catalogue;
    Settings& Options = Bench.Options;
    MoreOptions& More = Bench.More;
    MessageTexts& Texts = Bench.Texts;
    LeadList& Leads = Bench.Leads;
    HarvestState& State = Bench.State;
    PageFetcher& Fetcher = Bench.Fetcher;
    EmailHarvester& Emails = Bench.Emails;
    AutomaticSaver& Saver = Bench.Saver;
    Harvest& Job = Bench.Job;
    LeadReport Report;
    Interrupt CtrlC;

    /// `status`, or that of a program stopped by Ctrl-C.
    int StatusOrInterrupted(int status) const { return CtrlC.Happened() ? ExitStatus::Interrupted : status; }
};

} // namespace Brindle
