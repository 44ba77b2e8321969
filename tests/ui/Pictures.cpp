// Makes the pictures of the window for the documentation: scripts/make-pictures.
#include "WindowFixture.h"
#include "browser/webengine/WebEngineStart.h"
#include "core/QtMessageLoop.h"
#include "ui/ExportDialog.h"

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QElapsedTimer>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

using namespace Brindle;
using namespace Brindle::Test;

namespace {

void Picture(WindowRun& run, const QString& fileName, QWidget* widget = nullptr) {
    // The engine paints a little later.
    QElapsedTimer waited;
    waited.start();
    while (waited.elapsed() < 700)
        run.Loop.WaitForMessage(700 - waited.elapsed());
    const QPixmap picture = (widget ? widget : run.Window.get())->grab();
    if (!picture.save(fileName))
        throw std::runtime_error("cannot write " + fileName.toStdString());
    std::printf("%s %dx%d\n", qPrintable(fileName), picture.width(), picture.height());
}

// The dialog in the middle of a few searches.
void Searches(WindowRun& run, const Demo::DemoServer& server) {
    QString table = u"site,what,where\n"_s;
    for (const QString& code : server.SiteCodes())
        table += code + u",garden,springfield\n"_s;
    run.Click(u"btnSearches");
    run.Control<QPlainTextEdit>(u"edtSTable")->setPlainText(table);
    run.Control<QSpinBox>(u"edtSJobs")->setValue(2);
    run.Click(u"btnSRun");
    run.Until([&] { return run.Window->Searches().Count(SearchState::Done) >= 3; });
}

// The dialog for the selected rows, with a further column.
void Export(WindowRun& run, const QString& fileName) {
    TfrmMain& window = *run.Window;
    const std::vector<qsizetype> rows{0, 1, 2, 3, 4, 5, 6, 7};
    WindowTexts texts;
    texts.Load(ReadLanguageText(LanguageFileName(window.Options().Language)));
    TfrmExport dialog(window.Leads(), rows, window.Options(), texts, {}, &window);
    dialog.cbxFormat->setCurrentIndex(1);
    dialog.Columns[0]->click();
    dialog.show();
    Picture(run, fileName, &dialog);
}

void MakePictures(const QDir& folder, const QString& suffix, const QString& language, const QSize& size) {
    Demo::DemoServer server;
    server.Start();
    QtMessageLoop loop;
    loop.SetPace(0.05);
    WindowRun run(loop, SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                  CreateWebEngineBrowser);
    QTemporaryFile sites;
    if (!sites.open() || sites.write(server.SitesIni().toUtf8()) < 0 || !sites.flush())
        throw std::runtime_error("cannot write the sites of the demo");
    run.SitesFileName = sites.fileName();
    run.Pace = 0.02;
    run.Again();
    run.Window->resize(size);
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
    Export(run, name(u"export"));
    Searches(run, server);
    Picture(run, name(u"searches"), run.Control<QWidget>(u"frmSearches"));
    // As after a crash: what was not exported is offered back.
    run.Again();
    run.Window->resize(size);
    run.Show();
    run.Until([&] { return !run.Control<NoticeBar>(u"Offer")->Said().isEmpty(); });
    Picture(run, name(u"offer"));
    run.Window->close();
}

// The window as a person sees it while a directory is taught, with the menu that is open and the mouse.
class TeachingShots {
public:
    TeachingShots(WindowRun& run, const QDir& folder) : run_(run), folder_(folder) {}

    void Shoot(std::optional<QPointF> mouse = {}, const QMenu* menu = nullptr) {
        QPixmap picture = run_.Window->grab();
        QPainter painter(&picture);
        if (menu)
            painter.drawPixmap(run_.Window->mapFromGlobal(menu->pos()), const_cast<QMenu*>(menu)->grab());
        if (mouse)
            DrawArrow(painter, *mouse);
        painter.end();
        const QString name = folder_.filePath(u"teaching-%1.png"_s.arg(++number_, 2, 10, QChar(u'0')));
        if (!picture.save(name))
            throw std::runtime_error("cannot write " + name.toStdString());
        std::printf("%s\n", qPrintable(name));
    }
    void Wait(int milliseconds) {
        QElapsedTimer waited;
        waited.start();
        while (waited.elapsed() < milliseconds)
            run_.Loop.WaitForMessage(milliseconds - waited.elapsed());
    }
    QPointF PlaceIn(const QWidget* widget, QPointF place) const { return widget->mapTo(run_.Window.get(), place); }

    // Points at the mark of a field that the program proposes, and chooses what it is from the menu.
    void PointAt(const QString& caption) {
        auto* const overlay = run_.Control<PageOverlay>(u"PageOverlay");
        QPointF place;
        run_.Until([&] {
            for (const PageOverlay::Mark& mark : overlay->Marks())
                if (mark.Caption == caption && overlay->rect().contains(mark.Place.toRect())) {
                    place = mark.Place.center();
                    return true;
                }
            return false;
        });
        QTest::mouseMove(overlay, place.toPoint());
        run_.Until([&] { return !overlay->Likes().empty(); }, 10);
        Wait(200);
        const QPointF mouse = PlaceIn(overlay, place);
        Shoot(mouse);
        QCursor::setPos(overlay->mapToGlobal(place.toPoint()));
        bool done = false;
        run_.When(
            [&] {
                const auto* menu = run_.Control<QMenu>(u"TeachMenu");
                return menu && menu->isVisible();
            },
            [&] {
                auto* const menu = run_.Control<QMenu>(u"TeachMenu");
                menu->move(overlay->mapToGlobal((place + QPointF(8, 8)).toPoint()));
                Shoot(mouse, menu);
                QTest::keyClick(menu, Qt::Key_Return);
                done = true;
            });
        QTest::mouseClick(overlay, Qt::LeftButton, {}, place.toPoint());
        run_.Until([&] { return done && !run_.Control<QMenu>(u"TeachMenu"); }, 10);
        Wait(300);
    }

private:
    static void DrawArrow(QPainter& painter, QPointF at) {
        QPolygonF arrow{QPointF(0, 0), {0, 17}, {4, 13}, {7, 20}, {10, 19}, {7, 12}, {12, 12}};
        arrow.translate(at);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::white, 1.5));
        painter.setBrush(Qt::black);
        painter.drawPolygon(arrow);
    }

    WindowRun& run_;
    QDir folder_;
    int number_ = 0;
};

// The pictures of the animation, and the one of the panel.
void MakeTeachingPictures(const QDir& folder) {
    Demo::DemoServer server;
    server.Start();
    QtMessageLoop loop;
    loop.SetPace(0.05);
    WindowRun run(loop, SitesFile::Parse(server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                  CreateWebEngineBrowser);
    run.Window->resize(1100, 760);
    run.Show();
    run.Until([&] { return !run.Window->ewbMain().Busy(); });
    TeachingShots shots(run, folder);
    run.Choose(u"cbxWebsites", run.Control<QComboBox>(u"cbxWebsites")->findText(u"Any website"_s));
    run.GoTo(server.ModernSites().front().Start);
    run.Until([&] { return run.Control<AnyPageBar>(u"AnyPageBar")->Said().contains(u"businesses"); });
    shots.Wait(700);
    shots.Shoot();
    run.Click(u"btnTeach");
    shots.Wait(700);
    shots.PointAt(u"Business Name"_s);
    shots.PointAt(u"Phone"_s);
    run.Control<QLineEdit>(u"edtTeachName")->setText(u"FindNear"_s);
    const auto* const save = run.Control<QPushButton>(u"btnTeachSave");
    Picture(run, folder.filePath(u"teach.png"_s));
    shots.Shoot(shots.PlaceIn(save, save->rect().center()));
    run.Click(u"btnTeachSave");
    shots.Wait(900);
    const auto* const start = run.Control<QPushButton>(u"btnStart");
    shots.Shoot(shots.PlaceIn(start, start->rect().center()));
    run.Click(u"btnStart");
    run.Until([&] { return !run.Window->Driver().Running() && !run.Window->State().Parsing; }, 120);
    shots.Wait(700);
    shots.Shoot();
    run.Window->close();
}

} // namespace

// Arguments: the folder, a suffix for the names of the files, the index of a language, the size of the window. With
// "--teaching" as the suffix: those of teaching.
int main(int argc, char** argv) {
    PrepareWebEngine();
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        const QStringList size = arguments.value(4, u"1280x800"_s).split(u'x');
        const QDir folder(arguments.value(1, u"."_s));
        if (arguments.value(2) == u"--teaching")
            MakeTeachingPictures(folder);
        else
            MakePictures(folder, arguments.value(2), arguments.value(3),
                         {size.value(0).toInt(), size.value(1).toInt()});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
