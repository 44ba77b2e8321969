// What the window costs beside the engine in it. Runs itself anew for each measurement:
//   bench_startup          time from start to the first painted window, the main window and a bare one in turn
//   bench_startup idle     processor time of this process while a harvest waits for a results page, in ms per second
#include "adapters/Adapters.h"
#include "browser/webengine/WebEngineStart.h"
#include "core/QtMessageLoop.h"
#include "demo/DemoServer.h"
#include "platform/CreatePlatform.h"
#include "ui/TfrmMain.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QWebEngineView>

#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace Qt::StringLiterals;

using namespace Brindle;

namespace {

// Reports the widget's first paint and ends the process.
class FirstPaint : public QObject {
public:
    explicit FirstPaint(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            QMetaObject::invokeMethod(this, &FirstPaint::Report, Qt::QueuedConnection);
        return false;
    }
    void Wait() const {
        for (;;)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    void Report() {
        std::puts("painted");
        std::fflush(stdout);
        std::_Exit(0);
    }
};

void ShowBare() {
    QWidget window;
    window.resize(1240, 760);
    QVBoxLayout column(&window);
    QWebEngineView view;
    column.addWidget(&view);
    const FirstPaint painted(window);
    window.show();
    painted.Wait();
}

struct Opened {
    QTemporaryDir Folder;
    std::unique_ptr<Platform> System = CreatePlatform();
    QtMessageLoop Loop;
    TfrmMain Window;

    explicit Opened(const SitesFile& sites)
        : Window({.Loop = Loop,
                  .System = *System,
                  .Sites = sites,
                  .SettingsFolder = Folder.path(),
                  .SettingsFileName = Folder.filePath(u"settings.dat"_s),
                  .SitesFileName = {},
                  .CreateBrowser = CreateWebEngineBrowser}) {}
};

void ShowMain() {
    Opened opened{SitesFile{}};
    const FirstPaint painted(opened.Window);
    opened.Window.show();
    painted.Wait();
}

void Idle() {
    Demo::DemoServer server;
    server.Start();
    Opened opened(SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()));
    opened.Window.show();
    const auto runFor = [&](int seconds) {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < seconds * 1000)
            opened.Loop.WaitForMessage(seconds * 1000 - waited.elapsed());
    };
    runFor(4);
    opened.Window.Driver().Start();
    runFor(3);
    constexpr int seconds = 20;
    const std::clock_t before = std::clock();
    runFor(seconds);
    std::printf("%.1f ms per second\n", 1000.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / seconds);
    opened.Window.close();
}

double MedianOf(const QString& mode) {
    std::vector<qint64> times;
    for (int i = 0; i < 9; ++i) {
        QProcess process;
        QElapsedTimer taken;
        taken.start();
        process.start(QCoreApplication::applicationFilePath(), {mode});
        if (!process.waitForReadyRead(30'000))
            return -1;
        times.push_back(taken.elapsed());
        process.waitForFinished();
    }
    std::nth_element(times.begin(), times.begin() + 4, times.end());
    return static_cast<double>(times[4]);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QByteArrayView mode(argc > 1 ? argv[1] : "");
    if (mode.isEmpty()) {
        const QCoreApplication app(argc, argv);
        MedianOf(u"bare"_s); // the libraries come into memory
        const double bare = MedianOf(u"bare"_s);
        const double window = MedianOf(u"main"_s);
        std::printf("bare window %.0f ms, main window %.0f ms, %.2f times\n", bare, window, window / bare);
        return 0;
    }
    PrepareWebEngine();
    const QApplication app(argc, argv);
    if (mode == "bare")
        ShowBare();
    else if (mode == "main")
        ShowMain();
    else
        Idle();
    return 0;
}
