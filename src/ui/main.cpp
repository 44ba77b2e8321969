#include "adapters/Adapters.h"
#include "core/QtMessageLoop.h"
#include "platform/CreatePlatform.h"
#include "platform/Programs.h"
#include "platform/StandardStreams.h"
#include "platform/TickCount.h"
#include "ui/ProgramOptions.h"
#include "ui/TfrmMain.h"
#include "workbench/Diagnose.h"
#include "workbench/Product.h"
#include "workbench/ProgramFiles.h"

#ifdef BRINDLE_HAS_DEMO
#include "demo/DemoServer.h"
#include "net/ServerTrust.h"
#endif
#ifdef BRINDLE_HAS_WEBENGINE
#include "browser/webengine/WebEngineStart.h"

#include <QtWebEngineCore/qtwebenginecoreglobal.h>
#endif

#include <QApplication>
#include <QMessageBox>
#include <QScreen>
#include <QTemporaryFile>

#include <algorithm>
#include <exception>
#include <optional>

using namespace Brindle;
using namespace Qt::StringLiterals;

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

// One line about why the program ends; in a box of its own where nobody would see the line.
void Report(const QString& reason) {
    WriteTo(StandardStream::Error, u"brindle: %1\n"_s.arg(reason));
    if (HasStandardError() || !HasDisplay())
        return;
    int count = 0;
    std::optional<QApplication> app;
    if (QApplication::instance() == nullptr)
        app.emplace(count, nullptr);
    QMessageBox::critical(nullptr, ProductTitle(), reason);
}

// For what must be known before the application object takes the arguments.
bool Asks(int argc, char** argv, QByteArrayView argument) {
    return std::find(argv + 1, argv + argc, argument) != argv + argc;
}

BrowserFactory BrowserOf(ProgramOptions::Engine engine) {
#if defined(BRINDLE_HAS_WEBENGINE)
    if (engine != ProgramOptions::Engine::Static)
        return CreateWebEngineBrowser;
#elif defined(BRINDLE_HAS_IE)
    if (engine == ProgramOptions::Engine::Web || (engine == ProgramOptions::Engine::Best && SystemHasPageEngine()))
        return CreateIeBrowser;
#else
    if (engine == ProgramOptions::Engine::Web)
        throw OptionError(u"--browser web: this program was built without the Chromium engine"_s);
#endif
    return CreateStaticBrowser;
}

#ifdef BRINDLE_HAS_DEMO
using DemoServers = std::unique_ptr<Demo::DemoServer>;

SitesFile StartDemo(DemoServers& servers, QTemporaryFile& sites) {
    servers = std::make_unique<Demo::DemoServer>();
    servers->Start();
    for (const Demo::ModernSite& site : servers->ModernSites())
        if (site.Secure)
            TrustServer(site.Start, servers->AuthorityFile());
    const QByteArray ini = servers->SitesIni().toUtf8();
    if (!sites.open() || sites.write(ini) != ini.size() || !sites.flush())
        throw Failure(u"%1: %2"_s.arg(sites.fileName(), sites.errorString()));
    return SitesFile::Parse(ini, u"demo"_s, SiteAdapters());
}
#else
using DemoServers = int;

SitesFile StartDemo(DemoServers&, QTemporaryFile&) {
    throw OptionError(u"--demo: this program was built without the demo directories"_s);
}
#endif

// The state of this installation; no window and no engine is needed for it.
QString Diagnosis(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const ProgramOptions options = ParseProgramOptions(QCoreApplication::arguments().mid(1));
    std::optional<QString> whyNoSandbox;
#if defined(BRINDLE_HAS_WEBENGINE)
    const QString engine = u"Chromium "_s + QString::fromLatin1(qWebEngineChromiumVersion());
    whyNoSandbox = WhyNoSandbox();
#elif defined(BRINDLE_HAS_IE)
    const QString engine = SystemHasPageEngine() ? u"Windows' web browser control"_s : u"none: static pages only"_s;
#else
    const QString engine = u"none: static pages only"_s;
#endif
    const std::unique_ptr<Platform> system = CreatePlatform();
    return Diagnose({.System = *system,
                     .SitesFileName = options.SitesFileName,
                     .SettingsFileName = options.SettingsFileName,
                     .Store = {},
                     .Engine = engine,
                     .WhyNoSandbox = whyNoSandbox,
                     .Directories = SiteAdapters()});
}

int Run(const ProgramOptions& options) {
    const std::unique_ptr<Platform> system = CreatePlatform();
    DemoServers demo{};
    QTemporaryFile demoSites; // for the processes that make searches
    SitesFile sites = options.OnDemo ? StartDemo(demo, demoSites)
                                     : ProgramFiles::LoadSites(*system, options.SitesFileName, SiteAdapters());
    for (const SitesProblem& problem : sites.Problems)
        WriteTo(StandardStream::Error, problem.Text + u'\n');
    QtMessageLoop loop(SystemTickCount);
    loop.SetPace(options.Pace);
    QGuiApplication::setDesktopFileName(u"brindle"_s);
    TfrmMain window({.Loop = loop,
                     .System = *system,
                     .Sites = std::move(sites),
                     .SettingsFolder = system->SettingsFolder(),
                     .SettingsFileName = ProgramFiles::Settings(*system, options.SettingsFileName),
                     .SitesFileName = options.OnDemo ? demoSites.fileName() : options.SitesFileName,
                     .Pace = options.Pace,
                     .CreateBrowser = BrowserOf(options.Browser)});
    // A screen that is smaller than the window: all of it can be reached, its frame too.
    const QSize frame(8, 36);
    window.resize(window.size().boundedTo(window.screen()->availableSize() - frame));
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    TakeParentConsole();
    try {
        // These need no window, so they must work where there is no display.
        if (Asks(argc, argv, "--help") || Asks(argc, argv, "-h"))
            return WriteTo(StandardStream::Output, ProgramHelp()), 0;
        if (Asks(argc, argv, "--version"))
            return WriteTo(StandardStream::Output, ProductTitle() + u' ' + ProductVersion() + u'\n'), 0;
        if (Asks(argc, argv, "--diagnose"))
            return WriteTo(StandardStream::Output, Diagnosis(argc, argv)), 0;
        if (!HasDisplay() && !Asks(argc, argv, "-platform"))
            throw Failure(u"there is no display for the window; brindle-cli works without one"_s);
#ifdef BRINDLE_HAS_WEBENGINE
        if (!Asks(argc, argv, "static"))
            PrepareWebEngine();
#endif

        QApplication app(argc, argv); // takes the toolkit's own options out of the arguments
        return Run(ParseProgramOptions(QCoreApplication::arguments().mid(1)));
    } catch (const OptionError& error) {
        Report(error.Message());
        return wrongUsage;
    } catch (const Failure& failure) {
        Report(failure.Message());
        return failed;
    } catch (const std::exception& error) {
        Report(QString::fromLocal8Bit(error.what()));
        return failed;
    }
}
