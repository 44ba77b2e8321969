#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/RunCli.h"

namespace Brindle {

class Session;

// One function per command; each returns the exit status and throws `Failure` for what ends it.

int RunSites(const CommandLine& line, Console& console);
int RunHarvest(const CommandLine& line, Console& console, const WebBrowserFactory& webBrowser);
int RunParse(const CommandLine& line, Console& console);
int RunEmails(const CommandLine& line, Console& console);
int RunFetch(const CommandLine& line, Console& console);
int RunSettings(const CommandLine& line);
/// `teach`: a recipe from examples on a saved page.
int RunTeach(const CommandLine& line, Console& console);
int RunLeads(const CommandLine& line, Console& console);
int RunRun(const CommandLine& line, Console& console);
int RunWork(const CommandLine& line, Console& console);
int RunSearches(const CommandLine& line, Console& console);
int RunStatus(const CommandLine& line, Console& console);
int RunLanguage(const CommandLine& line, Console& console);
int RunMerge(const CommandLine& line, Console& console);
/// `diagnose`: the state of the installation, for a report.
int RunDiagnose(const CommandLine& line);

/// One harvest after the other, from each of the start addresses, into one output.
int HarvestFrom(const CommandLine& line, Session& session, const QStringList& starts,
                const WebBrowserFactory& webBrowser);
/// Makes the directory of the command line the current one.
void SelectDirectory(const CommandLine& line, Session& session);

/// Writes bytes to standard output as they are. Throws `Failure`.
void WriteToStandardOutput(const QByteArray& bytes);

} // namespace Brindle
