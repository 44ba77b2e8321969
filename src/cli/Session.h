#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/Interrupt.h"
#include "cli/LeadReport.h"
#include "core/Harvest.h"
#include "core/MoreOptions.h"
#include "core/Platform.h"
#include "core/QtMessageLoop.h"
#include "core/SitesFile.h"
#include "export/AutomaticSaver.h"
#include "net/EmailHarvester.h"
#include "net/PageFetcher.h"

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

/// Everything that a command which fetches or harvests needs, built the way the window builds it.
class Session {
public:
    /// `sites`: what the directories' addresses are taken from. Throws `Failure`.
    Session(const CommandLine& line, Console& console, SitesFile sites);

    /// Makes a site the current one, as the site selector does. Throws `UsageError` for an unknown code and `Failure`
    /// for a site whose entry in the deployment file is incomplete.
    void SelectSite(const QString& siteCode);

    Console& Out;
    std::unique_ptr<Platform> System;
    SitesFile Sites;
    SiteCatalogue Catalogue;
    Settings Options;
    MoreOptions More;
    MessageTexts Texts;
    QtMessageLoop Loop;
    LeadList Leads;
    HarvestState State;
    SilentStatus Status;
    ConsoleDialogs Notices;
    PageFetcher Fetcher;
    EmailHarvester Emails;
    AutomaticSaver Saver;
    Harvest Job;
    LeadReport Report;
    Interrupt CtrlC;

    /// `status`, or that of a program stopped by Ctrl-C.
    int StatusOrInterrupted(int status) const { return CtrlC.Happened() ? ExitStatus::Interrupted : status; }
};

} // namespace Brindle
