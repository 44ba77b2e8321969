#include "PrintTo.h"
#include "ScriptedBrowser.h"
#include "WindowFixture.h"
#include "core/Errors.h"
#include "core/QtMessageLoop.h"
#include "ui/ExportDialog.h"
#include "ui/TfrmSettings.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QHeaderView>
#include <QProgressDialog>
#include <QTcpServer>
#include <QTest>
#include <QTimer>
#include <QUdpSocket>
#include <QWheelEvent>

#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string_view>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

const QString first = u"http://kvpn001001.test"_s;
const QString second = u"http://kvpn002001.test"_s;

SitesFile TestSites() {
    QString ini = u"[map]\nbase=http://maps.test\n"_s;
    for (const QString& code : KnownSiteCodes())
        ini += u"[%1]\nbase=http://%2.test\nlabel=Test\n"_s.arg(code, code.toLower());
    return SitesFile::Parse(ini.toUtf8(), u"test"_s, SiteAdapters());
}

// The window with pages that the test writes, on a clock of its own.
class WindowTest : public testing::Test {
protected:
    VirtualLoop Loop;
    ScriptedBrowser* Browser = nullptr;
    std::unique_ptr<WindowRun> Run;

    void Create(const SitesFile& sites = TestSites()) {
        Run = std::make_unique<WindowRun>(Loop, sites, [this](MessageLoop&, const QString&) {
            auto browser = std::make_unique<ScriptedBrowser>();
            Browser = browser.get();
            return ShownBrowser{std::move(browser), new QWidget};
        });
    }
    void Open() {
        Create();
        Run->Show();
        Browser->Calls.clear();
    }
    void AddLeads(int count) const {
        for (int i = 0; i < count; ++i) {
            const QString n = QString::number(i);
            Lead lead;
            lead.Name = u"Name " + n;
            lead.City = u"Città\tdi\nCastello"_s;
            lead.Website = u"http://web.test/" + n;
            lead.MapLink = u"http://map.test/" + n;
            lead.DetailsLink = u"http://details.test/" + n;
            Run->Window->Leads().DuplicatedItems.Add(QString(lead.DetailsLink.toUpper()));
            Run->Window->Leads().Append(lead);
        }
        // A command that needs the rows in the list shows them by itself.
        Run->Click(u"btnRSelectAll");
        Run->Click(u"btnRClearSelection");
    }
    void SelectRows(int from, int to) const {
        Run->Items().selectionModel()->select(
            QItemSelection(Run->Items().model()->index(from, 0), Run->Items().model()->index(to, FieldCount - 1)),
            QItemSelectionModel::ClearAndSelect);
    }
    QString Caption(const char16_t* button) const { return Run->Control<QAbstractButton>(button)->text(); }
};

TEST_F(WindowTest, StartsInItsOrder) {
    Create();
    EXPECT_EQ(Run->Window->windowTitle(), u"Brindle 3.16"_s);
    ASSERT_EQ(Run->System.Written.size(), 2);
    EXPECT_TRUE(Run->System.Written[0].startsWith(u"FEATURE_BROWSER_EMULATION|"));
    EXPECT_TRUE(Run->System.Written[0].endsWith(u"|11001"));
    EXPECT_EQ(Run->System.Written[1], u"3|1609|0"_s);
    EXPECT_TRUE(QDir(Run->System.SettingsFolder()).exists());
    const auto* const sites = Run->Control<QComboBox>(u"cbxWebsites");
    EXPECT_EQ(sites->count(), 1);
    EXPECT_EQ(sites->currentText(), u"Loading Websites...."_s);
    EXPECT_FALSE(sites->isEnabled());
    EXPECT_FALSE(Run->Control<QWidget>(u"btnStart")->isEnabled());
    EXPECT_EQ(Run->Panel(0), QString());
    EXPECT_EQ(Run->Panel(1), u"0 items listed"_s);
    EXPECT_EQ(Run->Panel(2), u"0 items exported"_s);
    EXPECT_EQ(Run->Panel(3), u"Progress:"_s);
    EXPECT_FALSE(Browser->Calls.filter(u"proxy"_s).isEmpty());
    EXPECT_TRUE(Browser->Calls.filter(u"navigate"_s).isEmpty());

    Run->Show();
    EXPECT_EQ(Browser->Calls.filter(u"navigate"_s), (QStringList{u"navigate about:blank"_s, u"navigate " + first}));
    EXPECT_EQ(sites->count(), KnownSiteCodes().size() + 1); // behind them any website
    EXPECT_TRUE(sites->isEnabled());
    EXPECT_TRUE(Run->Control<QWidget>(u"btnStart")->isEnabled());
    EXPECT_EQ(Run->Window->State().CurrID, SiteCode::UsYellowPages);
    EXPECT_EQ(Run->Control<QTabWidget>(u"pgcMain")->currentIndex(), 0);
    EXPECT_EQ(Run->Control<QWidget>(u"MainGauge")->geometry(), Run->Control<StatusBarView>(u"StatusBar")->PanelRect(4));
    // Nothing is configured to be asked for updates.
    EXPECT_FALSE(Run->Control<QWidget>(u"btnUpdates")->isEnabled());
    EXPECT_FALSE(Run->Control<QWidget>(u"btnUpdates")->toolTip().isEmpty());
}

TEST_F(WindowTest, SaysInFullWhatIsWrongWithTheSitesFile) {
    const QByteArray ini = "[map]\nbase=http://maps.test\n[KVPN002001]\nbase=nowhere\nlabel=Test\n";
    Create(SitesFile::Parse(ini, u"/a/folder/sites.ini"_s, SiteAdapters()));
    Run->Show();
    const QString said = Run->Control<NoticeBar>(u"Offer")->Said();
    EXPECT_TRUE(said.contains(u"/a/folder/sites.ini: group [KVPN001001], key base: missing"_s)) << said.toStdString();
    EXPECT_TRUE(said.contains(u"key base: \u201Cnowhere\u201D is no http or https address"_s)) << said.toStdString();
    EXPECT_TRUE(said.endsWith(u"\u2026 (8)"_s)) << said.toStdString(); // the rest is as the first one
}

TEST_F(WindowTest, BrowserBarDrivesTheBrowser) {
    Open();
    auto* const address = Run->Control<QLineEdit>(u"edtAddress");
    EXPECT_EQ(address->text(), first);
    address->setText(u"http://a.test"_s);
    Run->Click(u"btnGo");
    address->setText(u"http://b.test"_s);
    QTest::keyClick(address, Qt::Key_Return);
    for (const char16_t* button : {u"imgStop", u"imgRefresh", u"imgHome"})
        Run->Click(button);
    Browser->IsBusy = true;
    Run->Click(u"imgBack");
    Browser->IsBusy = false;
    Run->Click(u"imgForward");
    EXPECT_EQ(Browser->Calls, (QStringList{u"navigate http://a.test"_s, u"navigate http://b.test"_s, u"stop"_s,
                                           u"refresh"_s, u"navigate " + first, u"stop"_s, u"back"_s, u"forward"_s}));
    EXPECT_EQ(address->text(), first);
}

TEST_F(WindowTest, ChangeOfSiteClearsTheBrowserAndOpensTheNewSite) {
    Open();
    const qint64 begin = Loop.Now();
    Run->Choose(u"cbxWebsites", 1);
    EXPECT_EQ(Browser->Calls, (QStringList{u"navigate about:blank"_s, u"clear cache"_s, u"navigate " + second}));
    EXPECT_EQ(Loop.Now() - begin, 1000);
    EXPECT_EQ(Run->System.CachesCleared, 1);
    EXPECT_EQ(Run->Window->State().CurrID, SiteCode::YellowPagesCanada);

    // Another choice while the first one waits: that one is opened, once.
    Browser->Calls.clear();
    Loop.Post(Loop.Now() + 700, [this] { Run->Choose(u"cbxWebsites", 0); });
    Run->Choose(u"cbxWebsites", 2);
    EXPECT_EQ(Browser->Calls.filter(u"http"_s), QStringList{u"navigate " + first});
    EXPECT_EQ(Run->Window->State().CurrID, SiteCode::UsYellowPages);
}

TEST_F(WindowTest, ChangeOfSiteStopsTheHarvest) {
    Open();
    Run->Click(u"btnStart");
    EXPECT_TRUE(Run->Window->State().Parsing);
    Run->Choose(u"cbxWebsites", 1);
    EXPECT_FALSE(Run->Window->Driver().Running());
    EXPECT_FALSE(Run->Window->State().Parsing);
    EXPECT_EQ(Browser->Calls.count(u"stop"_s), 2);
    EXPECT_EQ(Run->Window->State().CurrID, SiteCode::YellowPagesCanada);
}

// Turns the wheel over a control, as one does who scrolls past it.
void Wheel(QWidget* control) {
    const QPointF middle = control->rect().center();
    QWheelEvent turn(middle, control->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(control, &turn);
}

TEST_F(WindowTest, OnlyAnotherEntryChosenOnPurposeIsAChoice) {
    Open();
    const QString settings = QDir(Run->System.SettingsFolder()).filePath(u"settings.dat"_s);
    Run->Click(u"btnStart");
    Run->Choose(u"cbxWebsites", 0);
    Run->Choose(u"cbxLanguage", 0);
    for (const char16_t* selector : {u"cbxWebsites", u"cbxLanguage"})
        Wheel(Run->Control<QComboBox>(selector));
    EXPECT_TRUE(Run->Window->Driver().Running());
    EXPECT_EQ(Browser->Calls, QStringList());
    EXPECT_EQ(Run->Window->Options().Language, u"en"_s);
    EXPECT_FALSE(QFile::exists(settings));
    // A language that is not offered is in force; the entry that is shown meanwhile can be chosen.
    Run->Window->Options().Language = u"xx"_s;
    Run->Choose(u"cbxLanguage", 0);
    EXPECT_EQ(Run->Window->Options().Language, u"en"_s);
    EXPECT_TRUE(QFile::exists(settings));
}

TEST_F(WindowTest, SaysWhatTheBrowserCannotDo) {
    Open();
    auto* const address = Run->Control<QLineEdit>(u"edtAddress");
    const auto enter = [&](const QString& text) {
        address->setText(text);
        Run->Click(u"btnGo");
    };
    for (const QString& typed : {u"pizza in milano"_s, u""_s, u"http://"_s}) {
        enter(typed);
        EXPECT_TRUE(Run->Notice().contains(u'\u201C' + typed + u'\u201D')) << typed.toStdString();
        EXPECT_EQ(address->text(), typed);
    }
    EXPECT_EQ(Browser->Calls, QStringList());
    enter(u"www.a.test/x y"_s);
    EXPECT_EQ(Run->Notice(), QString());

    const QString bad = u"http://bad.test"_s;
    Browser->Errors.insert(bad, u"http://bad.test: refused"_s);
    enter(bad);
    EXPECT_EQ(Run->Notice(), u"http://bad.test: refused"_s);
    auto* const reload = Run->Control<NoticeBar>(u"Notice")->findChild<QPushButton*>();
    EXPECT_FALSE(reload->isHidden());
    Browser->Errors.clear();
    Browser->Calls.clear();
    reload->click();
    EXPECT_EQ(Browser->Calls, QStringList{u"refresh"_s});
    Q_EMIT Browser->NavigateComplete(bad);
    EXPECT_EQ(Run->Notice(), QString());

    // The page that offered a download stays, and so does the notice, until another page comes.
    Q_EMIT Browser->DownloadRefused(u"http://a.test/setup.exe"_s);
    Q_EMIT Browser->NavigateComplete(bad);
    EXPECT_TRUE(Run->Notice().contains(u"http://a.test/setup.exe"));
    EXPECT_TRUE(reload->isHidden());
    // A failure goes as soon as the same address comes up.
    Browser->Errors.insert(bad, u"http://bad.test: refused"_s);
    Q_EMIT Browser->NavigateComplete(bad);
    EXPECT_EQ(Run->Notice(), u"http://bad.test: refused"_s);
    Browser->Errors.clear();
    Q_EMIT Browser->NavigateComplete(bad);
    EXPECT_EQ(Run->Notice(), QString());
    Q_EMIT Browser->DownloadRefused(u"http://a.test/setup.exe"_s);
    enter(u"http://a.test"_s);
    EXPECT_EQ(Run->Notice(), QString());
}

TEST_F(WindowTest, ShowsThatAHarvestRuns) {
    Open();
    const auto activity = [this] { return Run->Control<StatusBarView>(u"StatusBar")->Activity(); };
    const auto prominent = [this] {
        QStringList bold;
        for (const char16_t* button : {u"btnStart", u"btnStop"})
            if (Run->Control<QWidget>(button)->font().bold())
                bold.append(QString::fromUtf16(button));
        return bold.join(u' ');
    };
    EXPECT_EQ(activity(), QString());
    EXPECT_EQ(prominent(), u"btnStart"_s);
    Browser->Pages.insert(first, u"<body>a search form</body>"_s);
    Run->Click(u"btnStart");
    EXPECT_EQ(prominent(), u"btnStop"_s);
    Loop.RunUntil(Loop.Now() + 65'000);
    EXPECT_TRUE(activity().startsWith(u"1:05   pages: 0   leads: 0   waiting for a results page: missing list marker"))
        << activity().toStdString();
    // What proxies of the list cannot do is said meanwhile.
    Run->Window->IdHTTP1().AttemptFailed(u"http://a.test/: HTTP status 404"_s);
    EXPECT_TRUE(activity().endsWith(u"http://a.test/: HTTP status 404")) << activity().toStdString();
    Run->Window->IdHTTP1().GaveUp(u"http://a.test/: given up"_s);
    EXPECT_EQ(Run->Notice(), u"http://a.test/: given up"_s);
    Browser->Pages.insert(first, u"<body>business-serp <a href=\"/next\">Next</a> footer-wrapper Next<"_s);
    Loop.RunUntil(Loop.Now() + 3000);
    EXPECT_TRUE(activity().endsWith(u"   pages: 1   leads: 0   waiting for the next page")) << activity().toStdString();
    for (const char16_t* button : {u"btnStart", u"btnStop"})
        EXPECT_TRUE(Run->Control<QWidget>(button)->isEnabled());
    Run->Click(u"btnStop");
    Loop.RunUntil(Loop.Now() + 20'000);
    EXPECT_EQ(activity(), QString());
    EXPECT_EQ(prominent(), u"btnStart"_s);

    // The next harvest counts anew.
    Run->Click(u"btnStart");
    Loop.RunUntil(Loop.Now() + 500);
    EXPECT_TRUE(activity().startsWith(u"0:00   pages: 0   leads: 0")) << activity().toStdString();
}

TEST_F(WindowTest, SaysThatAPageCouldNotBeReadToItsEnd) {
    Open();
    SiteAdapter changed;
    changed.Code = u"CHANGED"_s;
    changed.Layouts = {
        {.InitList = u"list"_s, .EndList = u"end"_s, .NextPageText = u"next<"_s, .Read = [](Harvest&, const QString&) {
             throw IndexError(u"no such item"_s);
         }}};
    Run->Window->Bench().Catalogue.Add({.Code = u"CHANGED"_s, .Base = first, .Label = u"Test"_s}, changed);
    Run->Window->State().CurrID = u"CHANGED"_s;
    Browser->Pages.insert(first, u"<body>list <a href=\"/2\">next</a> end"_s);
    Run->Click(u"btnStart");
    Loop.RunUntil(Loop.Now() + 2500);
    EXPECT_NE(Browser->LocationAddress(), first); // the next page has come
    EXPECT_EQ(Run->Control<NoticeBar>(u"Offer")->Said(), first + u" could not be read to its end: no such item");
    const QString activity = Run->Control<StatusBarView>(u"StatusBar")->Activity();
    EXPECT_TRUE(activity.contains(u"given up: 1")) << activity.toStdString();
    Run->Click(u"btnStop");
}

TEST_F(WindowTest, AStalledUpdateServerHoldsNothingUp) {
    QTcpServer silent; // takes connections and says nothing
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    SitesFile sites = TestSites();
    sites.PublisherUpdates = u"http://127.0.0.1:%1/"_s.arg(silent.serverPort());
    QtMessageLoop real;
    WindowRun run(real, sites, [this](MessageLoop&, const QString&) {
        auto browser = std::make_unique<ScriptedBrowser>();
        Browser = browser.get();
        return ShownBrowser{std::move(browser), new QWidget};
    });
    bool asked = false;
    bool askedFirst = false; // before the directories are offered
    QObject::connect(&silent, &QTcpServer::newConnection, run.Window.get(),
                     [&] { askedFirst = !run.Control<QWidget>(u"cbxWebsites")->isEnabled(); });
    run.When([&] { return silent.hasPendingConnections() && run.Control<QWidget>(u"cbxWebsites")->isEnabled(); },
             [&] {
                 asked = Browser->Calls.contains(QString(u"navigate http://kvpn001001.test"_s));
                 run.Window->close();
             });
    run.Window->show();
    EXPECT_TRUE(run.Until([&] { return real.Quitting(); }));
    EXPECT_TRUE(askedFirst);
    EXPECT_TRUE(asked) << "the sites were not there while the server was waited for";
}

TEST_F(WindowTest, TheNewsGoTheWayOfTheSettingsAtOnce) {
    SitesFile sites = TestSites();
    sites.PublisherNews = u"http://news.test"_s;
    std::vector<ScriptedBrowser*> browsers;
    WindowRun run(Loop, sites, [&browsers](MessageLoop&, const QString&) {
        auto browser = std::make_unique<ScriptedBrowser>();
        browsers.push_back(browser.get());
        return ShownBrowser{std::move(browser), new QWidget};
    });
    run.Show();
    ASSERT_EQ(browsers.size(), 2U);
    const auto wayOf = [&browsers](size_t which) { return browsers[which]->Calls.filter(u"proxy"_s).last(); };
    EXPECT_EQ(wayOf(1), u"proxy :80  "_s);
    const auto save = [&run](const Settings& settings) {
        run.Window->Options() = settings;
        QTimer::singleShot(0, run.Window.get(), [&run] {
            run.Window->findChild<TfrmSettings*>()->findChild<QAbstractButton*>(u"btnOk"_s)->click();
        });
        run.Click(u"btnSettings");
    };
    Settings settings = run.Window->Options();
    settings.rNoProxy = false;
    settings.rUseProxy = settings.rAuthentification = true;
    settings.eHost = u"gate.test"_s;
    settings.ePort = u"8080"_s;
    settings.eUserName = u"me"_s;
    settings.ePassword = u"secret"_s;
    save(settings);
    EXPECT_EQ(wayOf(1), u"proxy gate.test:8080 me secret"_s);

    // One of many: the same for both.
    settings.rUseProxy = settings.rAuthentification = false;
    settings.rRandomProxy = true;
    for (int i = 1; i <= 20; ++i)
        settings.eRandomProxies.append(u"gate%1.test:80"_s.arg(i));
    save(settings);
    EXPECT_TRUE(wayOf(1).startsWith(u"proxy gate")) << wayOf(1).toStdString();
    EXPECT_EQ(wayOf(1), wayOf(0));

    settings.rRandomProxy = false;
    settings.rNoProxy = true;
    save(settings);
    EXPECT_EQ(wayOf(1), u"proxy :80  "_s);
}

TEST_F(WindowTest, AnExportOfManyRowsCanBeCancelled) {
    Open();
    for (int i = 0; i < 100'000; ++i)
        Run->Window->Leads().Append({.Name = u"x"_s});
    Run->Click(u"btnRSelectAll");
    Run->Notices.FileName = Run->System.GetDocumentsFolder() + u"/leads.csv";
    int boxes = 0;
    Run->When([&] { return Run->Window->findChild<QProgressDialog*>() != nullptr; },
              [&] {
                  ++boxes;
                  Run->Window->findChild<QProgressDialog*>()->findChild<QPushButton*>()->click();
              });
    // The looks are taken while the export handles messages; a quick one may be over between two of them.
    for (int attempt = 0; attempt < 100 && boxes == 0; ++attempt) {
        QFile::remove(Run->Notices.FileName);
        Run->Click(u"btnExportAll");
    }
    EXPECT_EQ(boxes, 1);
    EXPECT_FALSE(QFile::exists(Run->Notices.FileName));
    EXPECT_EQ(Run->Panel(0), QString());
    EXPECT_TRUE(Run->Control<QWidget>(u"btnExportAll")->isEnabled());
}

TEST_F(WindowTest, SelectsAndDeletes) {
    Open();
    AddLeads(6);
    LeadList& leads = Run->Window->Leads();
    Run->Click(u"btnRSelectAll");
    EXPECT_EQ(Run->Items().SelectedRows().size(), 6U);
    SelectRows(1, 2);
    Run->Notices.Answer = false;
    Run->Click(u"btnRDelete");
    EXPECT_EQ(leads.Count(), 6);
    Run->Notices.Answer = true;
    QTest::keyClick(&Run->Items(), Qt::Key_Delete);
    EXPECT_EQ(Run->Notices.Said.count(u"Do you really want to delete the selected results?"_s), 2);
    ASSERT_EQ(Run->ShownLeads().size(), 4U);
    EXPECT_EQ(Run->ShownLeads()[1].Name, u"Name 3"_s);
    EXPECT_EQ(Run->Panel(1), u"4 items listed"_s);
    EXPECT_FALSE(leads.DuplicatedItems.Contains(u"HTTP://DETAILS.TEST/1"));
    EXPECT_TRUE(leads.DuplicatedItems.Contains(u"HTTP://DETAILS.TEST/3"));
    EXPECT_TRUE(Run->Items().SelectedRows().empty());
    Run->Click(u"btnRDeleteAll");
    EXPECT_EQ(leads.Count(), 0);
    EXPECT_EQ(leads.DuplicatedItems.Count(), 0);
    EXPECT_EQ(Run->Items().model()->rowCount(), 0);
    EXPECT_EQ(Run->Panel(1), u"0 items listed"_s);
}

TEST_F(WindowTest, OpensTheLinksOfTheSelectedRow) {
    Open();
    AddLeads(4);
    for (const char16_t* button : {u"btnOpenWebsite", u"btnOpenMaps", u"btnOpenDetails"})
        Run->Click(button);
    EXPECT_TRUE(Run->System.Opened.isEmpty());
    EXPECT_TRUE(Run->Notices.Said.isEmpty());
    SelectRows(2, 3);
    for (const char16_t* button : {u"btnOpenWebsite", u"btnOpenMaps", u"btnOpenDetails"})
        Run->Click(button);
    EXPECT_EQ(Run->System.Opened,
              (QStringList{u"http://web.test/2"_s, u"http://map.test/2"_s, u"http://details.test/2"_s}));

    const auto open = [this](const QString& website) {
        Lead lead;
        lead.Website = website;
        Run->Window->Leads().Append(lead);
        Run->Click(u"btnRSelectAll");
        Run->Click(u"btnRClearSelection");
        const int row = static_cast<int>(Run->Window->Leads().Count()) - 1;
        SelectRows(row, row);
        Run->System.Opened.clear();
        Run->Notices.Said.clear();
        Run->Click(u"btnOpenWebsite");
    };
    open(u"www.web.it"_s);
    EXPECT_EQ(Run->System.Opened, QStringList{u"http://www.web.it"_s});
    EXPECT_TRUE(Run->Notices.Said.isEmpty());
    for (const QString& website : {u"file:///bin/sh"_s, u"on request"_s, QString()}) {
        open(website);
        EXPECT_TRUE(Run->System.Opened.isEmpty());
        EXPECT_EQ(Run->Notices.Said.filter(u'\u201C' + website + u'\u201D').size(), 1) << website.toStdString();
    }
    Run->System.HasBrowser = false;
    open(u"www.web.it"_s);
    EXPECT_EQ(Run->Notices.Said.size(), 1);
}

TEST_F(WindowTest, CopiesAndExportsTheSelectedRows) {
    Open();
    Run->Click(u"btnExportAll");
    AddLeads(3);
    Run->Click(u"btnExportAll");
    EXPECT_EQ(Run->Notices.Said.size(), 2);
    SelectRows(1, 2);
    Run->Notices.FileName = Run->System.GetDocumentsFolder() + u"/leads.csv";
    Run->Click(u"btnExportAll");
    QFile file(Run->Notices.FileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count("\"Name "), 2);
    EXPECT_EQ(Run->Panel(0), u"The selected rows have been exported."_s);
    EXPECT_TRUE(Run->Control<QWidget>(u"btnRDelete")->isEnabled());

    QTest::keyClick(&Run->Items(), Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].count(u'\t'), FieldCount - 1);
    EXPECT_TRUE(lines[1].startsWith(u"\tName 2\t"));
    EXPECT_TRUE(lines[0].contains(u"Città di Castello"));
}

TEST_F(WindowTest, ExportsInTheFormatThatIsChosen) {
    Open();
    AddLeads(3);
    SelectRows(1, 2);
    const QString folder = Run->System.GetDocumentsFolder();
    const auto bytes = [&](const QString& name) {
        QFile file(folder + u'/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    // The save dialog of the Export button: what begins each file tells its format.
    const std::tuple<QString, QByteArray, int> ofButton[]{{u"0.csv"_s, "\"Category", 0},
                                                          {u"1.xlsx"_s, "PK\x03\x04", 1},
                                                          {u"2.csv"_s, "\xEF\xBB\xBF\"Category", 2},
                                                          {u"3.vcf"_s, "BEGIN:VCARD\r\n", 3}};
    for (const auto& [name, start, type] : ofButton) {
        Run->Notices.FileName = folder + u'/' + name;
        Run->Notices.FileType = type;
        Run->Click(u"btnExportAll");
        EXPECT_TRUE(bytes(name).startsWith(start)) << name.toStdString();
    }
    EXPECT_EQ(Run->Notices.FileTypes.size(), 4);
    EXPECT_EQ(Run->Notices.FileTypes.first(), u"CSV files (*.csv)"_s);
    EXPECT_EQ(bytes(u"3.vcf"_s).count("BEGIN:VCARD"), 2);

    for (const qsizetype row : {1, 2}) {
        Lead lead = Run->Window->Leads().At(row);
        lead.Email = u"logo@2x.png;shop@firm%1.com"_s.arg(row);
        Run->Window->Leads().Append(lead);
    }
    AddLeads(0); // shows them
    SelectRows(3, 4);
    // The dialog: what it shows is what is written.
    const auto dialog = [this] { return Run->Window->findChild<TfrmExport*>(); };
    QString shown;
    QTimer::singleShot(0, Run->Window.get(), [&] {
        ASSERT_TRUE(dialog());
        dialog()->cbxFormat->setCurrentIndex(3);
        EXPECT_FALSE(dialog()->Columns[2]->isEnabled());
        dialog()->cbxFormat->setCurrentIndex(2);
        dialog()->Columns[2]->click();
        EXPECT_EQ(dialog()->lvwPreview->rowCount(), 2);
        EXPECT_EQ(dialog()->lvwPreview->columnCount(), FieldCount + 1);
        // It stands behind the others and is shown.
        const QRect place = dialog()->lvwPreview->visualItemRect(dialog()->lvwPreview->item(0, FieldCount));
        EXPECT_LT(place.left(), dialog()->lvwPreview->viewport()->width());
        shown = dialog()->lvwPreview->item(1, FieldCount)->text();
        dialog()->Buttons->button(QDialogButtonBox::Ok)->click();
    });
    Run->Notices.FileName = folder + u"/as.csv";
    Run->Notices.FileType = 0;
    Run->Click(u"btnExportAs");
    EXPECT_EQ(shown, u"shop@firm2.com"_s);
    EXPECT_EQ(Run->Notices.FileTypes, QStringList(u"CSV for spreadsheets (*.csv)"_s));
    EXPECT_TRUE(bytes(u"as.csv"_s).split('\n').value(0).endsWith(",\"Email (checked)\"\r"));
    EXPECT_TRUE(bytes(u"as.csv"_s).endsWith(",\"shop@firm2.com\"\r\n"));

    // Cancelled, nothing is asked and nothing written; an empty selection is refused before.
    Run->Notices.FileName = folder + u"/never.csv";
    QTimer::singleShot(0, Run->Window.get(), [&] { dialog()->reject(); });
    Run->Click(u"btnExportAs");
    Run->Click(u"btnRClearSelection");
    Run->Notices.Said.clear();
    Run->Click(u"btnExportAs");
    EXPECT_EQ(Run->Notices.Said.size(), 1);
    EXPECT_FALSE(QFile::exists(Run->Notices.FileName));
}

TEST_F(WindowTest, AnExportThatWaitsForANameServerCanBeCancelled) {
    Create();
    QUdpSocket silent; // takes questions and answers none
    ASSERT_TRUE(silent.bind(QHostAddress::LocalHost));
    Run->Window->Bench().More.MailNameServer = u"127.0.0.1:%1"_s.arg(silent.localPort());
    Run->Show();
    for (int i = 0; i < 20; ++i)
        Run->Window->Leads().Append({.Name = QString(40'000, u'x'), .Email = u"a@firm%1.com"_s.arg(i)});
    AddLeads(0);
    Run->Click(u"btnRSelectAll");
    const auto exportWith = [this](bool asks, int format, const QString& name) {
        Run->Notices.FileName = Run->System.GetDocumentsFolder() + u'/' + name;
        QTimer::singleShot(0, Run->Window.get(), [=, this] {
            auto* const dialog = Run->Window->findChild<TfrmExport*>();
            dialog->cbxFormat->setCurrentIndex(format);
            if (asks)
                dialog->chkMailDomains->click();
            EXPECT_EQ(dialog->Columns.back()->isChecked(), asks);
            dialog->Buttons->button(QDialogButtonBox::Ok)->click();
        });
        Run->Click(u"btnExportAs");
        return QFile::exists(Run->Notices.FileName);
    };
    Run->When([&] { return Run->Window->findChild<QProgressDialog*>() != nullptr; },
              [&] { Run->Window->findChild<QProgressDialog*>()->findChild<QPushButton*>()->click(); });
    QElapsedTimer taken;
    taken.start();
    EXPECT_FALSE(exportWith(true, 2, u"asked.csv"_s));
    EXPECT_TRUE(silent.hasPendingDatagrams());
    EXPECT_LT(taken.elapsed(), 20'000); // and not five seconds for each of twenty domains

    // What a format cannot hold is said in the language of the window.
    Run->Choose(u"cbxLanguage", 3);
    EXPECT_TRUE(exportWith(false, 1, u"book.xlsx"_s));
    EXPECT_TRUE(Run->Panel(0).endsWith(u"Testi abbreviati: 20")) << Run->Panel(0).toStdString();

    // So are the captions of the further columns; a file keeps those that programs know.
    QString caption;
    QTimer::singleShot(0, Run->Window.get(), [&] {
        auto* const dialog = Run->Window->findChild<TfrmExport*>();
        dialog->Columns[0]->click();
        caption = dialog->lvwPreview->horizontalHeaderItem(FieldCount)->text();
        dialog->reject();
    });
    Run->Click(u"btnExportAs");
    EXPECT_EQ(caption, u"Telefono (internazionale)"_s);
}

TEST_F(WindowTest, HeaderClickDoesNothing) {
    Open();
    AddLeads(3);
    QHeaderView* const header = Run->Items().horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(header->sectionPosition(1) + 20, 8));
    EXPECT_EQ(Run->ShownLeads()[0].Name, u"Name 0"_s);
    EXPECT_TRUE(Run->Items().SelectedRows().empty());
}

TEST_F(WindowTest, LanguageChangesEveryCaptionAtOnce) {
    Open();
    const auto texts = [this] {
        QStringList all;
        for (const QAbstractButton* button : Run->Window->findChildren<QPushButton*>())
            if (!button->objectName().isEmpty())
                all.append(button->text());
        for (const QToolButton* button : Run->Window->findChildren<QToolButton*>())
            if (button->objectName().startsWith(u"img"))
                all.append(button->accessibleName());
        for (const char16_t* label : {u"lblWebsite", u"lblCurrentLanguage", u"panResultsHeader"})
            all.append(Run->Control<QLabel>(label)->text());
        for (int page = 0; page < 2; ++page)
            all.append(Run->Control<QTabWidget>(u"pgcMain")->tabText(page));
        for (int panel = 1; panel < 4; ++panel)
            all.append(Run->Panel(panel));
        for (int column = 0; column < FieldCount; ++column)
            all.append(Run->Items().model()->headerData(column, Qt::Horizontal).toString());
        return all;
    };
    const QStringList english = texts();
    for (const int language : {1, 2, 3}) {
        Run->Choose(u"cbxLanguage", language);
        const QStringList translated = texts();
        ASSERT_EQ(translated.size(), english.size());
        EXPECT_FALSE(translated.contains(QString()));
        // Some words are the same in both languages, most are not.
        int same = 0;
        for (qsizetype i = 0; i < english.size(); ++i)
            same += english[i] == translated[i] ? 1 : 0;
        EXPECT_LE(same, 6) << language;
        EXPECT_LE(Run->Window->minimumSizeHint().width(), 1024); // captions differ in length, screens stay as they are
        // Qt's own texts, and why there is nothing to ask for updates.
        const QDialogButtonBox box(QDialogButtonBox::Cancel);
        EXPECT_EQ(box.button(QDialogButtonBox::Cancel)->text().remove(u'&'),
                  QStringList({u"Annuler"_s, u"Cancelar"_s, u"Annulla"_s}).value(language - 1));
        EXPECT_TRUE(Run->Control<QWidget>(u"btnUpdates")->toolTip().contains(u"[publisher] updates"));
        EXPECT_FALSE(Run->Control<QWidget>(u"btnUpdates")->toolTip().contains(u"configured"));
    }
    EXPECT_EQ(Caption(u"btnRDeleteAll"), LanguageFile(ReadLanguageText(LanguageFileName(u"it"_s))).Main(38));
    QFile settings(QDir(Run->System.SettingsFolder()).filePath(u"settings.dat"_s));
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    EXPECT_TRUE(settings.readAll().contains("<%%Language%%>it<%%/Language%%>"));
    Run->Choose(u"cbxLanguage", 0);
    EXPECT_EQ(texts(), english);
}

TEST_F(WindowTest, EveryControlHasANameAndItsOwnAccessKey) {
    Open();
    // What is there while a page is read or taught is reached by Tab; there are not enough letters for all.
    const auto ofReading = [](const QObject* object) {
        for (; object; object = object->parent())
            if (object->objectName() == u"TeachPanel" || object->objectName() == u"AnyPageBar")
                return true;
        return false;
    };
    for (const int language : {0, 1, 2, 3}) {
        Run->Choose(u"cbxLanguage", language);
        QStringList keys;
        for (const QWidget* control : Run->Window->findChildren<QWidget*>()) {
            if (control->objectName().isEmpty() || control->objectName().startsWith(u"qt_") ||
                control->objectName().startsWith(u"Scroll") || control->focusPolicy() == Qt::NoFocus)
                continue;
            const auto* const button = qobject_cast<const QAbstractButton*>(control);
            EXPECT_FALSE(control->accessibleName().isEmpty() && (!button || button->text().isEmpty()))
                << control->objectName().toStdString();
            if (!button || ofReading(control))
                continue;
            EXPECT_FALSE(button->shortcut().isEmpty()) << control->objectName().toStdString();
            keys.append(button->shortcut().toString());
        }
        for (const QShortcut* shortcut : Run->Window->findChildren<QShortcut*>())
            if (!ofReading(shortcut))
                keys.append(shortcut->key().toString());
        EXPECT_EQ(keys.removeDuplicates(), 0) << language;
    }
}

TEST_F(WindowTest, TabOrderFollowsTheLayout) {
    Open();
    QStringList order;
    for (const QWidget* at = Run->Control<QWidget>(u"cbxLanguage"); order.size() < 200; at = at->nextInFocusChain()) {
        if (!order.isEmpty() && at->objectName() == order.first())
            break;
        if ((at->focusPolicy() & Qt::TabFocus) != 0 && !at->objectName().isEmpty() &&
            !at->objectName().startsWith(u"qt_"))
            order.append(at->objectName());
    }
    const QStringList wanted{u"cbxLanguage"_s,    u"cbxWebsites"_s,   u"btnStart"_s,       u"btnStop"_s,
                             u"btnSettings"_s,    u"btnUpdates"_s,    u"imgBack"_s,        u"imgForward"_s,
                             u"imgStop"_s,        u"imgRefresh"_s,    u"imgHome"_s,        u"edtAddress"_s,
                             u"btnGo"_s,          u"lvwItems"_s,      u"btnRSelectAll"_s,  u"btnRClearSelection"_s,
                             u"btnRDelete"_s,     u"btnRDeleteAll"_s, u"btnOpenWebsite"_s, u"btnOpenMaps"_s,
                             u"btnOpenDetails"_s, u"btnExportAll"_s,  u"btnExportAs"_s};
    QStringList found;
    for (const QString& name : order)
        if (wanted.contains(name))
            found.append(name);
    EXPECT_EQ(found, wanted);
}

TEST_F(WindowTest, RemembersItsSplitterAndColumns) {
    Open();
    Run->Control<QSplitter>(u"splMain")->setSizes({300, 400});
    Run->Items().setColumnWidth(4, 177);
    const QList<int> sizes = Run->Control<QSplitter>(u"splMain")->sizes();
    Run->Window->close();
    const QString file = QDir(Run->System.SettingsFolder()).filePath(u"window.ini"_s);
    QSplitter splitter(Qt::Vertical);
    splitter.setHandleWidth(Run->Control<QSplitter>(u"splMain")->handleWidth());
    splitter.addWidget(new QWidget);
    splitter.addWidget(new QWidget);
    splitter.resize(400, sizes[0] + sizes[1] + splitter.handleWidth());
    QMainWindow window;
    LeadList leads;
    LeadTableModel model(leads);
    LeadTableView list;
    list.ShowLeads(model);
    WindowPlace(file).Restore(window, splitter, list);
    EXPECT_EQ(list.columnWidth(4), 177);
    EXPECT_EQ(splitter.sizes(), sizes);
}

// What a crash, a full disk or another program can leave in the place of a file: the window comes up, says what it has
// to say, and works.
TEST_F(WindowTest, ComesUpWhateverIsDamaged) {
    Open();
    const QDir folder(Run->System.SettingsFolder());
    WindowPlace(folder.filePath(u"window.ini"_s))
        .Save(*Run->Window, *Run->Control<QSplitter>(u"splMain"), Run->Items());
    SettingsStore(folder.filePath(u"settings.dat"_s), folder.path()).SaveSettings(Run->Window->Options());
    Run->Click(u"btnStart"); // the store is made
    Run->Click(u"btnStop");
    Run->Window.reset();
    ASSERT_TRUE(folder.mkpath(u"recipes"_s));
    const QStringList names{u"window.ini"_s, u"options.toml"_s,        u"settings.dat"_s,
                            u"leads.db"_s,   u"recipes/broken.toml"_s, u"sites.ini"_s};
    const auto write = [](const QString& name, const QByteArray& bytes) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    };
    // What is there where all is well.
    std::map<QString, QByteArray> good;
    for (const QString& name : names)
        if (QFile file(folder.filePath(name)); file.open(QIODevice::ReadOnly))
            good[name] = file.readAll();
    ASSERT_GE(good.size(), 3U) << "window, settings, store";
    std::mt19937 random(7);
    const std::pair<const char*, std::function<void(const QString&)>> kinds[]{
        {"half a file",
         [&](const QString& name) {
             write(name, "[Window]\nGeometry=@ByteArray(\\x1\xD9\xFF\nSplitter=@Variant(\0\0\xFF\n[store\nkeep = = " +
                             QByteArray(5000, '\xFE'));
         }},
        {"empty", [&](const QString& name) { write(name, {}); }},
        {"cut off",
         [&](const QString& name) {
             QFile file(name);
             ASSERT_TRUE(!file.exists() || file.resize(file.size() / 2));
         }},
        {"random bytes",
         [&](const QString& name) {
             QByteArray bytes(20'000, '\0');
             for (char& byte : bytes)
                 byte = static_cast<char>(random());
             write(name, bytes);
         }},
        {"a folder", [](const QString& name) { ASSERT_TRUE(QDir().mkpath(name + u"/within")); }},
        // Nobody can read it, not even the superuser.
        {"a link to itself", [](const QString& name) { ASSERT_TRUE(QFile::link(name, name)); }}};
    const auto clear = [&] {
        for (const QString& name : names)
            if (QDir inside(folder.filePath(name)); !QFileInfo(folder.filePath(name)).isSymLink() && inside.exists())
                inside.removeRecursively();
            else
                QFile::remove(folder.filePath(name));
    };
    const auto makeGood = [&] {
        clear();
        for (const auto& [name, bytes] : good)
            write(folder.filePath(name), bytes);
    };
    const auto comesUp = [this] {
        Run->Again();
        Run->Show();
        EXPECT_TRUE(Run->Window->Ready() && Run->Window->isVisible());
        EXPECT_GT(Run->Window->width(), 300);
        Run->Click(u"btnStart"); // and works
        EXPECT_FALSE(Run->Window->State().ShouldStop);
        Run->Click(u"btnStop");
        Run->Window.reset();
    };
    for (const auto& [kind, damage] : kinds) {
        for (const QString& name : names) { // each alone, in a folder that is well otherwise
            SCOPED_TRACE(std::string(kind) + " in the place of " + name.toStdString());
            makeGood();
            if (kind != std::string_view("cut off"))
                QFile::remove(folder.filePath(name));
            damage(folder.filePath(name));
            comesUp();
        }
        SCOPED_TRACE(std::string(kind) + " in the place of all");
        makeGood();
        for (const QString& name : names) {
            if (kind != std::string_view("cut off"))
                QFile::remove(folder.filePath(name));
            damage(folder.filePath(name));
        }
        comesUp();
    }
    clear();
    // The whole folder is a file.
    QDir(folder).removeRecursively();
    write(folder.path(), "x");
    comesUp();
}

// The window is closed while a tick waits, at a moment when the user could do it.
class CloseTest : public WindowTest, public testing::WithParamInterface<int> {};

TEST_P(CloseTest, EndsEveryWaitAtOnce) {
    Open();
    Browser->Pages.insert(first, u"<body>business-serp <a href=\"/next\">Next</a> footer-wrapper Next<"_s);
    Run->Click(u"btnStart");
    qint64 closedAt = -1;
    Loop.Post(Loop.Now() + GetParam(), [&] {
        closedAt = Loop.Now();
        Run->Window->close();
    });
    Loop.RunUntil(Loop.Now() + GetParam());
    ASSERT_GE(closedAt, 0);
    EXPECT_EQ(Loop.Now(), closedAt);
    EXPECT_TRUE(Run->Window->State().ShouldStop);
    EXPECT_FALSE(Run->Window->isVisible());
    Run->Window.reset();
    const qint64 pumps = Loop.Pumps;
    Loop.RunToIdle();
    EXPECT_EQ(Loop.Now(), closedAt); // no timer is left
    EXPECT_EQ(Loop.Pumps, pumps + 1);
}

// Before the first tick, in the wait before the page is read, before and after the next page is loaded.
INSTANTIATE_TEST_SUITE_P(Moments, CloseTest, testing::Values(500, 1500, 3000, 5500));

TEST_F(WindowTest, CanBeClosedWhileItStartsAndWhileTheSiteChanges) {
    Create();
    Loop.Post(200, [this] { Run->Window->close(); });
    Run->Window->show();
    Loop.RunUntil(1000);
    EXPECT_FALSE(Run->Window->isVisible());
    EXPECT_FALSE(Run->Window->Ready());
    Run.reset();

    VirtualLoop other;
    WindowRun run(other, TestSites(), [this](MessageLoop&, const QString&) {
        auto browser = std::make_unique<ScriptedBrowser>();
        Browser = browser.get();
        return ShownBrowser{std::move(browser), new QWidget};
    });
    run.Show();
    other.Post(other.Now() + 600, [&run] { run.Window->close(); });
    run.Choose(u"cbxWebsites", 1);
    EXPECT_FALSE(run.Window->isVisible());
    EXPECT_FALSE(Browser->Calls.contains(QString(u"navigate " + second)));
}

} // namespace
} // namespace Brindle::Test
