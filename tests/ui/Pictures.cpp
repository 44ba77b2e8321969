// Makes the pictures of the window for the documentation: scripts/make-pictures.
#include "WindowFixture.h"
#include "browser/webengine/WebEngineStart.h"
#include "core/QtMessageLoop.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

using namespace Brindle;
using namespace Brindle::Test;

namespace {

void Picture(WindowRun& run, const QString& fileName) {
    // The engine paints a little later.
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 700)
        run.Loop.WaitForMessage(700 - waited.elapsed());
    const QPixmap picture = run.Window->grab();
    if (!picture.save(fileName))
        throw std::runtime_error("cannot write " + fileName.toStdString());
    std::printf("%s %dx%d\n", qPrintable(fileName), picture.width(), picture.height());
}

void MakePictures(const QDir& folder, const QString& suffix, const QString& language) {
    Demo::DemoServer server;
    server.Start();
    QtMessageLoop loop;
    loop.SetPace(0.05);
    WindowRun run(loop, SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                  CreateWebEngineBrowser);
    run.Window->resize(1280, 800);
    run.Show();
    const auto name = [&](const char16_t* what) {
        return folder.filePath(QString::fromUtf16(what) + suffix + u".png"_s);
    };
    if (!language.isEmpty())
        run.Choose(u"cbxLanguage", language.toInt());
    const QString site = SiteCode::YellowPagesCanada.toString();
    run.ChooseSite(site, server);
    Picture(run, name(u"start"));
    run.GoTo(server.FirstResultPage(site));
    run.Window->Options().eRandom = u"1"_s;
    run.Loop.SetPace(1.0);
    run.Click(u"btnStart");
    run.Until([&] { return run.Window->Leads().Count() > 0 && !run.Panel(0).isEmpty(); });
    Picture(run, name(u"harvest"));
    run.Loop.SetPace(0.01);
    run.Until([&] { return !run.Window->Driver().Running() && !run.Window->State().Parsing; }, 120);
    run.Items().selectRow(3);
    Picture(run, name(u"finished"));
    run.Control<QTabWidget>(u"pgcMain")->setCurrentWidget(run.Control<QWidget>(u"tabHistory"));
    run.Until([&] { return run.Control<QTableView>(u"lvwHarvests")->model()->rowCount() > 0; });
    run.Control<QTableView>(u"lvwHarvests")->selectRow(0);
    run.Until([&] { return run.Control<QTableView>(u"lvwHLeads")->model()->rowCount() > 0; });
    Picture(run, name(u"history"));
    run.Window->close();
}

} // namespace

// Arguments: the folder, a suffix for the names of the files, the index of a language.
int main(int argc, char** argv) {
    PrepareWebEngine();
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        MakePictures(QDir(arguments.value(1, u"."_s)), arguments.value(2), arguments.value(3));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
