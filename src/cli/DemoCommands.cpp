#include "cli/DemoCommands.h"

#include "adapters/Adapters.h"
#include "cli/Commands.h"
#include "cli/Session.h"
#include "demo/DemoServer.h"
#include "net/ServerTrust.h"
#include "workbench/AnyDirectories.h"
#include "workbench/SearchAddress.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

int ServeDemo(const CommandLine& line, Console& console) {
    Session session(line, console, {});
    Demo::DemoServer server;
    server.ServeManyLeads(line.DemoListings);
    server.Start();
    WriteToStandardOutput(server.SitesIni().toUtf8());
    for (const QString& code : server.SiteCodes())
        for (int layout = 1; layout <= server.LayoutCount(code); ++layout)
            console.Note(u"%1 layout %2: %3"_s.arg(code).arg(layout).arg(server.FirstResultPage(code, layout)));
    for (const Demo::ModernSite& site : server.ModernSites())
        console.Note(u"%1 (%2, %3%4): %5"_s.arg(site.Code, site.Label, site.Region,
                                                site.NeedsScripts ? u", needs --browser web"_s : QString(),
                                                site.Start));
    while (!session.CtrlC.Happened())
        session.Loop.WaitForMessage(std::nullopt);
    return ExitStatus::Interrupted;
}

int HarvestDemo(const CommandLine& line, Console& console, const WebBrowserFactory& webBrowser) {
    const bool browserRunsScripts = line.Browser == BrowserKind::Web;
    Demo::DemoServer server;
    server.Start();
    for (const Demo::ModernSite& site : server.ModernSites())
        if (site.Secure)
            TrustServer(site.Start, server.AuthorityFile());
    Session session(line, console, SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()));
    SelectDirectory(line, session);
    QStringList starts;
    if (!line.Start.isEmpty()) {
        starts.append(line.Start);
    } else if (!line.What.isEmpty() || !line.Place.isEmpty()) {
        starts.append(StartOf({0, session.State.CurrID, {}, line.What, line.Place}, session.Catalogue));
    } else if (line.Site == AnyWebsiteCode) {
        for (const Demo::ModernSite& site : server.ModernSites()) {
            if (!site.NeedsScripts || browserRunsScripts)
                starts.append(site.Start);
            else
                session.Out.Note(u"%1 is left out: it needs --browser web"_s.arg(site.Code));
        }
    } else if (const QString first = server.FirstResultPage(line.Site); !first.isEmpty()) {
        starts.append(first);
    }
    if (starts.isEmpty())
        throw Failure(u"there is no demo directory of %1"_s.arg(line.Site));
    return HarvestFrom(line, session, starts, webBrowser);
}

} // namespace

int RunOnDemo(const CommandLine& line, Console& console, const WebBrowserFactory& webBrowser) {
    return line.Name == Command::Demo ? ServeDemo(line, console) : HarvestDemo(line, console, webBrowser);
}

} // namespace Brindle
