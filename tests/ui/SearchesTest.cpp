// Many searches, as the window makes them: by processes of the command line on the demo directories.
#include "ScriptedBrowser.h"
#include "WindowFixture.h"
#include "adapters/Adapters.h"
#include "core/QtMessageLoop.h"
#include "platform/TickCount.h"
#include "ui/TfrmSearches.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

class SearchesWindowTest : public testing::Test {
protected:
    void SetUp() override {
        Server.Start();
        Loop.SetPace(0);
        Run = std::make_unique<WindowRun>(Loop, SitesFile::Parse(Server.SitesIni().toUtf8(), u"demo"_s, SiteAdapters()),
                                          [this](MessageLoop&, const QString&) {
                                              auto browser = std::make_unique<ScriptedBrowser>();
                                              Browser = browser.get();
                                              return ShownBrowser{std::move(browser), new QWidget};
                                          });
        Run->SitesFileName = Run->System.GetDocumentsFolder() + u"/sites.ini";
        Write(Run->SitesFileName, Server.SitesIni().toUtf8());
    }
    static void Write(const QString& fileName, const QByteArray& bytes) {
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    void Open() {
        Run->Again();
        Run->Show();
        Run->Click(u"btnSearches");
        ASSERT_TRUE(Run->Control<QDialog>(u"frmSearches")->isVisible());
    }
    void Type(const QString& text) const { Run->Control<QPlainTextEdit>(u"edtSTable")->setPlainText(text); }
    QString Verdict() const { return Run->Control<QLabel>(u"lblSVerdict")->text(); }
    bool CanRun() const { return Run->Control<QPushButton>(u"btnSRun")->isEnabled(); }
    SearchDesk& Desk() const { return Run->Window->Searches(); }
    QString Cell(int row, int column) const {
        return Run->Control<QTableView>(u"lvwSearches")->model()->index(row, column).data().toString();
    }
    // The first directories of the demo, and how many leads they have.
    QString Table(qint64& leads, qsizetype directories = 100) const {
        QString table = u"site\tstart\n"_s;
        leads = 0;
        for (const QString& code : Server.SiteCodes().first(std::min(directories, Server.SiteCodes().size()))) {
            table += code + u'\t' + Server.FirstResultPage(code) + u'\n';
            leads += std::ssize(Server.PlantedLeads(code));
        }
        return table;
    }

    Demo::DemoServer Server;
    QtMessageLoop Loop{SystemTickCount};
    ScriptedBrowser* Browser = nullptr;
    std::unique_ptr<WindowRun> Run;
};

TEST_F(SearchesWindowTest, WrongRowsAreNamedByTheirLine) {
    Open();
    EXPECT_FALSE(CanRun()); // there is nothing yet
    Type(u"site,what,where\nKVPN002001,plumber,vancouver\nNOSUCH,a,b\nKVPN002001,,\nKVPN002001,baker\n"_s);
    EXPECT_FALSE(CanRun());
    for (const char16_t* const line : {u"line 3:", u"line 4:", u"line 5:"})
        EXPECT_TRUE(Verdict().contains(QString::fromUtf16(line))) << Verdict().toStdString();
    EXPECT_FALSE(Verdict().contains(u"line 2:"));
    Type(u"KVPN002001\tplumber\tvancouver\nAUTO\tbaker\tvictoria\n"_s); // knows no search address
    EXPECT_TRUE(Verdict().startsWith(u"line 2:")) << Verdict().toStdString();

    // A directory is known by what the selector shows of it, too, and it is the same search then.
    const SiteCatalogue& catalogue = Run->Window->Bench().Catalogue;
    const SearchTable byCode = Desk().Read(u"KVPN002001\tplumber\tvancouver\n"_s);
    for (const QString& name :
         {catalogue.Find(u"KVPN002001"_s)->DisplayEntry(), catalogue.Find(u"KVPN002001"_s)->Base.toUpper()}) {
        Type(u"\"%1\"\tplumber\tvancouver\n"_s.arg(name));
        EXPECT_TRUE(CanRun()) << Verdict().toStdString();
        EXPECT_EQ(Desk().Read(Run->Control<QPlainTextEdit>(u"edtSTable")->toPlainText()).Digest(), byCode.Digest());
    }

    // What is added by hand goes on in the table's own form; a file takes its place.
    Type(u"site;what;where\nKVPN002001;plumber;vancouver"_s);
    EXPECT_TRUE(CanRun());
    Run->Choose(u"cbxSDirectory", 0);
    Run->Control<QLineEdit>(u"edtSWhat")->setText(u"bars; cafés"_s);
    QTest::keyClicks(Run->Control<QLineEdit>(u"edtSWhere"), u"oslo"_s);
    QTest::keyClick(Run->Control<QLineEdit>(u"edtSWhere"), Qt::Key_Return);
    EXPECT_TRUE(CanRun());
    EXPECT_TRUE(Run->Control<QPlainTextEdit>(u"edtSTable")->toPlainText().endsWith(u";\"bars; cafés\";oslo\n"));
    const QString file = Run->System.GetDocumentsFolder() + u"/searches.csv";
    Write(file, u"site,what,where\nKVPE001001,caffè,forlì\n"_s.toLatin1());
    static_cast<TfrmSearches*>(Run->Control<QDialog>(u"frmSearches"))->AskFile = [file] { return file; };
    Run->Click(u"btnSFile");
    EXPECT_EQ(Run->Control<QPlainTextEdit>(u"edtSTable")->toPlainText(),
              u"site,what,where\nKVPE001001,caffè,forlì\n"_s);
    EXPECT_TRUE(CanRun());

    // Where nothing is kept there is no place for searches.
    Run->Window->Bench().More.StoreKeep = false;
    Run->Window->Desk().Open();
    Type(u"KVPN002001\tplumber\tvancouver\n"_s);
    EXPECT_FALSE(CanRun());
    EXPECT_FALSE(Verdict().isEmpty());
}

TEST_F(SearchesWindowTest, ATableIsMadeBesideTheWindow) {
    Open();
    qint64 planted = 0;
    QString table = Table(planted);
    const auto searches = static_cast<int>(Server.SiteCodes().size());
    table += u"KVPN002001\t"_s + Server.Businesses() + u"/none\n";
    Type(table);
    Run->Control<QSpinBox>(u"edtSJobs")->setValue(3);
    ASSERT_TRUE(CanRun()) << Verdict().toStdString();
    Browser->Calls.clear();
    bool finished = false;
    QObject::connect(&Desk(), &SearchDesk::Ended, Run->Window.get(), [&] { finished = true; });
    Run->Click(u"btnSRun");
    ASSERT_TRUE(Run->Until([&] { return Desk().Running(); }));
    EXPECT_FALSE(CanRun());
    Run->Control<QDialog>(u"frmSearches")->close();
    ASSERT_TRUE(Run->Until([&] { return finished; }, 100));
    EXPECT_EQ(Desk().Count(SearchState::Done), searches);
    EXPECT_EQ(Desk().Count(SearchState::Failed), 1);
    EXPECT_EQ(Desk().Leads(), planted);
    // The window and its browser had no part in it, but the end is said.
    EXPECT_EQ(Browser->Calls, QStringList());
    EXPECT_EQ(Run->Window->Leads().Count(), 0);
    EXPECT_TRUE(Run->Notice().contains(QString::number(searches))) << Run->Notice().toStdString();

    Run->Click(u"btnSearches");
    EXPECT_EQ(Cell(0, SearchesModel::State), u"done"_s);
    EXPECT_EQ(Cell(0, SearchesModel::Leads), QString::number(Server.PlantedLeads(Server.SiteCodes().front()).size()));
    EXPECT_NE(Cell(0, SearchesModel::Pages), u"0"_s);
    EXPECT_EQ(Cell(searches, SearchesModel::State), u"failed"_s);
    EXPECT_NE(Cell(searches, SearchesModel::Trouble), QString());
    EXPECT_TRUE(Run->Control<QPushButton>(u"btnSRetry")->isEnabled());
    Run->Control<QTableView>(u"lvwSearches")->selectRow(0);
    Run->Click(u"btnSOpen");
    const auto first = std::ssize(Server.PlantedLeads(Server.SiteCodes().front()));
    EXPECT_TRUE(Run->Until([&] { return Run->Window->Leads().Count() == first; }, 20));
    Run->Control<QTableView>(u"lvwSearches")->clearSelection();
    Run->Click(u"btnSOpen");
    EXPECT_TRUE(Run->Until([&] { return Run->Window->Leads().Count() > first; }, 20));
}

TEST_F(SearchesWindowTest, WhatWasStoppedOrClosedGoesOn) {
    Write(Run->System.SettingsFolder() + u"/options.toml", "[work]\npage_milliseconds = 2000\n");
    Run->Pace = 0.05; // a tenth of a second a page
    Open();
    qint64 planted = 0;
    Type(Table(planted, 4));
    Run->Click(u"btnSRun");
    ASSERT_TRUE(Run->Until([&] { return Desk().Count(SearchState::Done) > 0; }));
    Run->Click(u"btnSStop");
    ASSERT_TRUE(Run->Until([&] { return !Desk().Running() && Desk().Count(SearchState::Running) == 0; }, 20));
    const qint64 done = Desk().Count(SearchState::Done);
    EXPECT_GT(Desk().Count(SearchState::Waiting), 0);

    Open(); // what was stopped waits for somebody to go on, and stands in the table again
    ASSERT_TRUE(Run->Until([&] { return !Desk().Rows().empty(); }, 20));
    EXPECT_FALSE(Desk().Running());
    EXPECT_EQ(Desk().Count(SearchState::Done), done);
    Run->Control<QDialog>(u"frmSearches")->close();
    Run->Click(u"btnSearches");
    Run->Click(u"btnSRun");
    ASSERT_TRUE(Run->Until([&] { return Desk().Count(SearchState::Done) > done; }));

    Open(); // what the window left in its middle goes on by itself
    EXPECT_TRUE(Desk().Running());
    EXPECT_FALSE(Run->Notice().isEmpty());
    ASSERT_TRUE(Run->Until(
        [&] {
            return !Desk().Running() && Desk().Count(SearchState::Waiting) + Desk().Count(SearchState::Running) == 0;
        },
        100));
    EXPECT_EQ(Desk().Count(SearchState::Done), std::ssize(Desk().Rows()));
    EXPECT_EQ(Desk().Leads(), planted); // every lead once
}

} // namespace
} // namespace Brindle::Test
