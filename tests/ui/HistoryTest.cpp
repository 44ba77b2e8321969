// Leads that last, as the window shows them.
#include "InventedLeads.h"
#include "PostgresServer.h"
#include "PrintTo.h"
#include "ScriptedBrowser.h"
#include "WindowFixture.h"
#include "adapters/Adapters.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

SitesFile TestSites() {
    QString ini = u"[map]\nbase=http://maps.test\n"_s;
    for (const QString& code : KnownSiteCodes())
        ini += u"[%1]\nbase=http://%2.test\nlabel=Test\n"_s.arg(code, code.toLower());
    return SitesFile::Parse(ini.toUtf8(), u"test"_s, SiteAdapters());
}

class HistoryTest : public testing::Test {
protected:
    VirtualLoop Loop;
    WindowRun Run{Loop, TestSites(), [](MessageLoop&, const QString&) {
                      return ShownBrowser{std::make_unique<ScriptedBrowser>(), new QWidget};
                  }};

    QString StoreFile() { return DefaultStoreFile(Run.System.SettingsFolder()); }
    // A harvest that lists so many leads, as the driver and an adapter would.
    void Harvest(qint64 from, qint64 count) {
        Workbench& bench = Run.Window->Bench();
        Run.Window->Desk().HarvestBegins(u"http://start.test/"_s);
        for (qint64 number = from; number < from + count; ++number) {
            const Lead lead = InventedLead(number);
            bench.Job.Store->Keep(lead);
            bench.Leads.Append(lead);
        }
        Run.Window->Desk().HarvestEnded();
        Run.Click(u"btnRSelectAll");
        Run.Click(u"btnRClearSelection");
    }
    void OpenHistory() { Run.Control<QTabWidget>(u"pgcMain")->setCurrentWidget(Run.Control<QWidget>(u"tabHistory")); }
    QAbstractItemModel& Model(const char16_t* table) { return *Run.Control<QTableView>(table)->model(); }
    QString Cell(const char16_t* table, int row, int column) {
        return Model(table).index(row, column).data().toString();
    }
    bool Shows(const char16_t* table, int rows) {
        return Run.Until([&] { return Model(table).rowCount() == rows; }, 20);
    }
    static void Write(const QString& fileName, const QByteArray& bytes) {
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    // Closes the window and takes away its store.
    void Forget() {
        Run.Window.reset();
        for (const QFileInfo& file : QDir(Run.System.SettingsFolder()).entryInfoList({u"leads*"_s}, QDir::Files))
            QFile::remove(file.filePath());
    }
    // Looks at the history again and again, as somebody would who waits for the store.
    bool ComesIntoHistory(int harvests, int leads) {
        return Run.Until(
            [&] {
                if (Model(u"lvwHarvests").rowCount() == harvests && Model(u"lvwHLeads").rowCount() == leads)
                    return true;
                Run.Control<QTabWidget>(u"pgcMain")->setCurrentIndex(0);
                OpenHistory();
                QTest::qWait(200);
                return false;
            },
            60);
    }
    QString Offer() { return Run.Control<NoticeBar>(u"Offer")->Said(); }
    qsizetype Listed() { return Run.Window->Leads().Count(); }
};

TEST_F(HistoryTest, LeadsThatWereNotExportedAreOfferedBack) {
    Run.Show();
    EXPECT_EQ(Offer(), QString());
    Harvest(0, 5);
    Run.Items().selectRow(2);
    Run.Click(u"btnRDelete"); // not wanted, so not offered either
    Run.Again();
    Run.Show();
    ASSERT_TRUE(Run.Until([&] { return !Offer().isEmpty(); }, 20));
    EXPECT_TRUE(Offer().endsWith(u": 4")) << Offer().toStdString();
    Run.Control<NoticeBar>(u"Offer")->findChild<QPushButton*>()->click();
    ASSERT_TRUE(Run.Until([&] { return Listed() == 4; }, 20));
    EXPECT_EQ(Run.Window->Leads().At(2), InventedLead(3));
    EXPECT_TRUE(Run.Until([&] { return Run.Panel(1) == u"4 items listed"; }, 20));

    // Exported, they are the user's own business.
    Run.Click(u"btnRSelectAll");
    Run.Notices.FileName = Run.System.GetDocumentsFolder() + u"/leads.csv";
    Run.Click(u"btnExportAll");
    Run.Window->Desk().Flush();
    bool settled = false;
    Run.Window->Desk().Post(0, [&](Database&) { return [&] { settled = true; }; });
    ASSERT_TRUE(Run.Until([&] { return settled; }, 20));
    Run.Again();
    Run.Show();
    OpenHistory();
    ASSERT_TRUE(Shows(u"lvwHarvests", 1));
    EXPECT_EQ(Offer(), QString());
}

TEST_F(HistoryTest, OffersWhatWasSavedInPartOrNotAtAll) {
    Run.Show();
    // A harvest of which a lead was left out.
    Harvest(0, 5);
    Run.Items().selectionModel()->select(
        QItemSelection(Run.Items().model()->index(0, 0), Run.Items().model()->index(3, FieldCount - 1)),
        QItemSelectionModel::ClearAndSelect);
    Run.Notices.FileName = Run.System.GetDocumentsFolder() + u"/leads.csv";
    Run.Click(u"btnExportAll");
    // One that was saved automatically, and one whose file could not be written.
    Run.Window->Options().cExportAutomatic = true;
    Harvest(10, 30);
    Run.Window->State().FailureMessage = u"no room"_s;
    Harvest(50, 200);
    Run.Again();
    Run.Show();
    ASSERT_TRUE(Run.Until([&] { return !Offer().isEmpty(); }, 20));
    EXPECT_TRUE(Offer().endsWith(u": 205")) << Offer().toStdString();
}

TEST_F(HistoryTest, FindsSortsOpensDeletesAndErases) {
    Run.Show();
    Harvest(0, 300);
    Harvest(290, 20); // ten of them are known
    Run.Notices.Answer = true;
    Run.Click(u"btnRDeleteAll");
    Harvest(0, 0);
    OpenHistory();
    ASSERT_TRUE(Shows(u"lvwHarvests", 3));
    // The user's deletions went into the store, newest harvest first.
    EXPECT_EQ(Cell(u"lvwHarvests", 0, StoredHarvestsModel::Leads), u"0"_s);
    Harvest(500, 300);
    ASSERT_TRUE(Shows(u"lvwHarvests", 4));
    ASSERT_TRUE(Shows(u"lvwHLeads", 300));
    EXPECT_EQ(Cell(u"lvwHarvests", 0, StoredHarvestsModel::New), u"300"_s);
    EXPECT_TRUE(Cell(u"lvwHarvests", 0, StoredHarvestsModel::Directory).contains(u"kvpn001001.test"));

    const Lead wanted = InventedLead(620);
    Run.Control<QLineEdit>(u"edtHFind")->setText(wanted.Phone);
    ASSERT_TRUE(Shows(u"lvwHLeads", 1));
    constexpr int name = StoredLeadsModel::FirstField + 1;
    ASSERT_TRUE(Run.Until([&] { return Cell(u"lvwHLeads", 0, name) == wanted.Name; }, 20));
    Run.Control<QLineEdit>(u"edtHFind")->clear();
    ASSERT_TRUE(Shows(u"lvwHLeads", 300));
    QStringList names;
    for (qint64 number = 500; number < 800; ++number)
        names.append(InventedLead(number).Name);
    Run.Control<QTableView>(u"lvwHLeads")->sortByColumn(name, Qt::AscendingOrder);
    ASSERT_TRUE(Run.Until([&] { return !Cell(u"lvwHLeads", 299, name).isEmpty(); }, 20));
    ASSERT_TRUE(Run.Until([&] { return !Cell(u"lvwHLeads", 0, name).isEmpty(); }, 20));
    EXPECT_LT(Cell(u"lvwHLeads", 0, name).toLower(), Cell(u"lvwHLeads", 299, name).toLower());
    EXPECT_TRUE(names.contains(Cell(u"lvwHLeads", 0, name)));

    // The list has them all already, so opening the harvest brings nothing twice.
    Run.Control<QTableView>(u"lvwHarvests")->selectRow(0);
    Run.Click(u"btnHOpen");
    ASSERT_TRUE(Run.Until([&] { return Listed() >= 300; }, 20));
    const QString erased = Cell(u"lvwHLeads", 0, name);
    Run.Notices.Said.clear();
    Run.Control<QTableView>(u"lvwHLeads")->selectRow(0);
    Run.Click(u"btnHErase");
    EXPECT_EQ(Run.Notices.Said.filter(erased).size(), 1);
    ASSERT_TRUE(Shows(u"lvwHLeads", 299));
    for (const Lead& lead : Run.ShownLeads())
        EXPECT_NE(lead.Name, erased);

    Run.Control<QTableView>(u"lvwHarvests")->selectRow(0);
    Run.Click(u"btnHDelete");
    ASSERT_TRUE(Shows(u"lvwHarvests", 3));
    ASSERT_TRUE(Shows(u"lvwHLeads", 0));
}

// Whatever is in the store's place: the window comes up, the harvest lists its leads, the history can be opened,
// nothing takes longer than a silent store may, one line says what is wrong, and the leads are there when it is put
// right.
TEST_F(HistoryTest, AStoreInTroubleHoldsNothingUp) {
    std::unique_ptr<Database> other;
    std::unique_ptr<WriteTransaction> hold;
    const auto made = [this] { return std::make_unique<Database>(StoreTarget::Parse(StoreFile())); };
    struct Case {
        const char* Name;
        std::function<void()> Break;
        std::function<void()> Mend;
        bool IsSaid = true;
    };
    const Case cases[]{
        {"damaged", [this] { Write(StoreFile(), QByteArray(100'000, 'x')); }, [this] { QFile::remove(StoreFile()); }},
        {"newer", [&] { made()->Execute(u"PRAGMA user_version=1000"_s); },
         [this] {
             for (const char* const end : {"", "-wal", "-shm"})
                 QFile::remove(StoreFile() + QLatin1StringView(end));
         }},
        {"locked",
         [&] {
             other = made();
             hold = std::make_unique<WriteTransaction>(*other);
         },
         [&] {
             hold.reset();
             other.reset();
         },
         false}, // for so short a time it is nothing to talk of
    };
    for (const Case& trouble : cases) {
        SCOPED_TRACE(trouble.Name);
        Forget();
        trouble.Break();
        Run.Again();
        Run.Show();
        QElapsedTimer taken;
        taken.start();
        Harvest(0, 5);
        EXPECT_EQ(Listed(), 5);
        OpenHistory();
        EXPECT_LT(taken.elapsed(), 4000);
        if (trouble.IsSaid) {
            EXPECT_TRUE(Run.Until([&] { return Offer().contains(u"leads.db"); }, 20)) << Offer().toStdString();
        }
        EXPECT_EQ(Model(u"lvwHarvests").rowCount(), 0);
        trouble.Mend();
        EXPECT_TRUE(ComesIntoHistory(1, 5));
    }
}

TEST_F(HistoryTest, IsKeptByAServerThatMayStop) {
    if (!PostgresServer::Installed() || !QSqlDatabase::isDriverAvailable(u"QPSQL"_s))
        GTEST_SKIP() << "PostgreSQL is not installed here";
    PostgresServer server;
    ASSERT_EQ(server.Error(), QString());
    Forget();
    Write(QDir(Run.System.SettingsFolder()).filePath(u"options.toml"_s),
          "[store]\ntarget = \"" + server.Address().toUtf8() + "\"\n");
    Run.Again();
    Run.Show();
    Harvest(0, 30);
    EXPECT_FALSE(QFile::exists(StoreFile()));
    EXPECT_TRUE(ComesIntoHistory(1, 30));
    Run.Control<QLineEdit>(u"edtHFind")->setText(InventedLead(7).Phone);
    EXPECT_TRUE(Shows(u"lvwHLeads", 1));
    Run.Control<QLineEdit>(u"edtHFind")->clear();
    server.Stop();
    QElapsedTimer taken;
    taken.start();
    Harvest(100, 5);
    EXPECT_EQ(Listed(), 35);
    EXPECT_LT(taken.elapsed(), 4000);
    EXPECT_TRUE(Run.Until([this] { return !Offer().isEmpty(); }, 30));
    EXPECT_FALSE(Offer().contains(u"password"));
    server.Start();
    EXPECT_TRUE(ComesIntoHistory(2, 35));
}

TEST_F(HistoryTest, WritesNothingWhenLeadsAreNotKept) {
    Forget();
    Write(QDir(Run.System.SettingsFolder()).filePath(u"options.toml"_s), "[store]\nkeep = false\n");
    Run.Again();
    Run.Show();
    EXPECT_EQ(Run.Window->Bench().Job.Store, nullptr);
    OpenHistory();
    Run.Click(u"btnStart");
    Run.Click(u"btnStop");
    Loop.RunUntil(Loop.Now() + 1000);
    EXPECT_FALSE(QFile::exists(StoreFile()));
}

TEST(StoredLeadsModel, AsksForWhatIsSeen) {
    StoredLeadsModel model;
    std::vector<qint64> asked;
    model.Ask = [&](qint64 offset, qint64) { asked.push_back(offset); };
    QTableView view;
    view.setModel(&model);
    view.resize(600, 400);
    view.show();
    model.Begin(1'000'000);
    QTest::qWait(1);
    EXPECT_EQ(asked, std::vector<qint64>{0});
    model.Take(0, std::vector<StoredLead>(StoredLeadsModel::PageSize));
    asked.clear();
    view.scrollTo(model.index(700'050, 0), QAbstractItemView::PositionAtCenter);
    QTest::qWait(1);
    EXPECT_EQ(asked, std::vector<qint64>{700'000});
    // An answer that was dropped is asked for again when another one comes.
    model.Take(0, std::vector<StoredLead>(StoredLeadsModel::PageSize));
    QTest::qWait(1);
    EXPECT_EQ(asked, (std::vector<qint64>{700'000, 700'000}));
    // Going through everything keeps some pages only.
    for (qint64 offset = 0; offset < 40'000; offset += StoredLeadsModel::PageSize)
        model.Take(offset, std::vector<StoredLead>(StoredLeadsModel::PageSize));
    EXPECT_EQ(model.At(0), nullptr);
    EXPECT_NE(model.At(39'999), nullptr);
}

} // namespace
} // namespace Brindle::Test
