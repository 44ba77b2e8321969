#include "store/LeadKeeper.h"

#include "FileSizeLimit.h"
#include "KilledProgram.h"
#include "StoreFixture.h"
#include "store/Journal.h"
#include "store/StoredRows.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

using namespace Brindle;
using namespace Brindle::Test;
using namespace Qt::StringLiterals;

namespace {

class LeadKeeperTest : public testing::Test {
protected:
    QString FileName() const { return Folder.filePath(File); }
    std::unique_ptr<LeadKeeper> Keeper(const QString& target) {
        return std::make_unique<LeadKeeper>(StoreTarget::Parse(target), Folder.filePath(u"spool"_s),
                                            [this](const QString& problem) { Problems += problem; });
    }
    std::unique_ptr<LeadKeeper> Keeper() { return Keeper(FileName()); }
    static void KeepLeads(LeadKeeper& keeper, int from, int to) {
        for (int i = from; i < to; ++i)
            keeper.Keep(InventedLead(i));
    }
    static bool WaitUntil(const std::function<bool()>& fits, int seconds = 60) {
        QElapsedTimer timer;
        for (timer.start(); timer.elapsed() < seconds * 1000;) {
            if (fits())
                return true;
            QCoreApplication::processEvents();
            QThread::msleep(5);
        }
        return false;
    }
    /// What the store has when it is opened next, journals of dead sessions taken in; the numbers of invented leads.
    std::vector<Lead> Stored(const QString& target) {
        Database database(StoreTarget::Parse(target));
        TakeInOrphans(database, Folder.filePath(u"spool"_s));
        std::vector<Lead> leads;
        for (const StoredLead& lead : StoreQueries(database).LeadsAfter({}, 0, 10'000'000))
            leads.push_back(lead.Lead);
        return leads;
    }
    static std::vector<Lead> Invented(int count) {
        std::vector<Lead> leads;
        for (int i = 0; i < count; ++i)
            leads.push_back(InventedLead(i));
        return leads;
    }

    QTemporaryDir Folder;
    QString File = u"leads.db"_s;
    QStringList Problems;
};

} // namespace

TEST_F(LeadKeeperTest, HarvestsFollowEachOther) {
    {
        const auto keeper = Keeper();
        HarvestInfo info;
        info.Site = u"KVPN001001"_s;
        info.Start = u"http://dir.test/1"_s;
        keeper->Begin(info);
        KeepLeads(*keeper, 0, 700);
        keeper->End(HarvestEnding::Done, 35);
        keeper->Begin(info);
        KeepLeads(*keeper, 700, 703);
        EXPECT_TRUE(keeper->Flush(60'000));
        EXPECT_FALSE(QFile(keeper->JournalFileName()).size() > 0);
    }
    EXPECT_EQ(Problems, QStringList());
    EXPECT_EQ(Stored(FileName()), Invented(703));
    Database database(StoreTarget::Parse(FileName()));
    const auto harvests = StoreQueries(database).Harvests(0, 10);
    ASSERT_EQ(harvests.size(), 2U);
    EXPECT_EQ(harvests[1].Ending, HarvestEnding::Done);
    EXPECT_EQ(harvests[1].Leads, 700);
    EXPECT_EQ(harvests[0].Ending, HarvestEnding::Stopped);
    EXPECT_TRUE(QDir(Folder.path()).entryList({u"*.pending*"_s}).isEmpty());
}

TEST_F(LeadKeeperTest, AKilledProgramLosesNothingThatItCounted) {
    for (const unsigned long microseconds : {0UL, 20'000UL, 150'000UL, 600'000UL}) {
        const QString target = Folder.filePath(u"killed-%1.db"_s.arg(microseconds));
        const QByteArray output =
            OutputUntilKilled(QStringLiteral(LEAD_KEEPER), {target, Folder.filePath(u"spool"_s)}, microseconds);
        const auto counted = output.count('\n');
        ASSERT_GT(counted, 0);
        const std::vector<Lead> stored = Stored(target);
        ASSERT_GE(static_cast<qsizetype>(stored.size()), counted);
        EXPECT_EQ(stored, Invented(static_cast<int>(stored.size())));
    }
}

TEST_F(LeadKeeperTest, TroubleNeverHoldsTheHarvestAndIsMadeUpFor) {
    // What is in the store's place, and how it is put right.
    struct Case {
        const char* Name;
        std::function<void()> Break;
        std::function<void()> Mend;
    };
    std::vector<Case> cases{
        {"a folder", [this] { QDir().mkpath(FileName()); }, [this] { QDir(FileName()).removeRecursively(); }},
        {"rubbish",
         [this] {
             QFile file(FileName());
             ASSERT_TRUE(file.open(QIODevice::WriteOnly));
             file.write(QByteArray(100'000, 'x'));
         },
         [this] { QFile::remove(FileName()); }},
    };
    const QString unwritable = u"/proc"_s; // for root too
    if (QFile::exists(unwritable))
        cases.push_back({"a folder that takes no file",
                         [&] {
                             File = u"closed/leads.db"_s;
                             ASSERT_TRUE(QFile::link(unwritable, Folder.filePath(u"closed"_s)));
                         },
                         [&] {
                             QFile::remove(Folder.filePath(u"closed"_s));
                             QDir(Folder.path()).mkdir(u"closed"_s);
                         }});
    for (const auto& [name, breakIt, mendIt] : cases) {
        Problems.clear();
        breakIt();
        const auto keeper = Keeper();
        keeper->Begin({});
        QElapsedTimer timer;
        timer.start();
        KeepLeads(*keeper, 0, 50);
        EXPECT_LT(timer.elapsed(), 1000) << name;
        ASSERT_TRUE(WaitUntil([this] { return !Problems.isEmpty(); })) << name;
        EXPECT_TRUE(Problems[0].contains(u"leads.db")) << Problems[0].toStdString();
        mendIt();
        EXPECT_TRUE(WaitUntil([&] { return keeper->Flush(10) && Problems.size() == 2; })) << name;
        EXPECT_EQ(Stored(FileName()), Invented(50)) << name;
        File = u"next-leads.db"_s;
    }
}

TEST_F(LeadKeeperTest, ALockedStoreIsWaitedFor) {
    Database other(StoreTarget::Parse(FileName()));
    auto keeper = Keeper();
    keeper->Begin({});
    {
        const WriteTransaction hold(other);
        QElapsedTimer timer;
        timer.start();
        KeepLeads(*keeper, 0, 100);
        EXPECT_LT(timer.elapsed(), 1000);
        timer.start();
        keeper.reset(); // the program ends while the store is locked
        EXPECT_LT(timer.elapsed(), 5000);
    }
    EXPECT_TRUE(WaitUntil([this] { return Stored(FileName()) == Invented(100); }));
}

TEST_F(LeadKeeperTest, TwoProgramsShareAStore) {
    const auto a = Keeper();
    const auto b = Keeper();
    a->Begin({});
    b->Begin({});
    for (int i = 0; i < 2000; ++i)
        (i % 2 == 0 ? a : b)->Keep(InventedLead(i));
    EXPECT_TRUE(a->Flush(60'000));
    EXPECT_TRUE(b->Flush(60'000));
    EXPECT_EQ(Problems, QStringList());
    Database database(StoreTarget::Parse(FileName()));
    for (const StoredHarvest& harvest : StoreQueries(database).Harvests(0, 10))
        EXPECT_EQ(harvest.Leads, 1000);
    // A session that is alive keeps its journal, and its harvests are not offered to others.
    EXPECT_EQ(Journal::LiveSessions(FileName() + u".pending"_s).size(), 2);
    EXPECT_TRUE(Journal::Orphans(FileName() + u".pending"_s).isEmpty());
}

TEST_F(LeadKeeperTest, AFullDiskIsSaidOnceAndLosesNothingOlder) {
    Stored(FileName());
    const auto keeper = Keeper();
    keeper->Begin({});
    KeepLeads(*keeper, 0, 100);
    ASSERT_TRUE(keeper->Flush(60'000));
    {
        const FileSizeLimit limit(200'000);
        KeepLeads(*keeper, 100, 3000);
        ASSERT_TRUE(WaitUntil([this] { return !Problems.isEmpty(); }));
    }
    EXPECT_TRUE(WaitUntil([&] { return keeper->Flush(10); }));
    EXPECT_EQ(Stored(FileName()), Invented(3000));
    EXPECT_LE(Problems.size(), 4) << Problems.join(u'\n').toStdString();
}

TEST_F(LeadKeeperTest, AServerMayStopFallSilentAndComeBack) {
    if (!PostgresServer::Installed() || !QSqlDatabase::isDriverAvailable(u"QPSQL"_s))
        GTEST_SKIP() << "PostgreSQL is not installed here";
    PostgresServer server;
    ASSERT_EQ(server.Error(), QString());
    auto keeper = Keeper(server.Address());
    keeper->Begin({});
    KeepLeads(*keeper, 0, 100);
    ASSERT_TRUE(keeper->Flush(60'000));
    server.Stop();
    KeepLeads(*keeper, 100, 200);
    ASSERT_TRUE(WaitUntil([this] { return !Problems.isEmpty(); }));
    EXPECT_TRUE(Problems[0].contains(u"postgresql://brindle@")) << Problems[0].toStdString();
    server.Start();
    ASSERT_TRUE(WaitUntil([&] { return keeper->Flush(10); }));
    server.Freeze();
    QElapsedTimer timer;
    timer.start();
    KeepLeads(*keeper, 200, 300);
    EXPECT_LT(timer.elapsed(), 1000);
    timer.start();
    keeper.reset();
    EXPECT_LT(timer.elapsed(), 2000);
    server.Thaw();
    // The thread that hung goes on in this process; in a program it had ended with it.
    EXPECT_TRUE(WaitUntil([&] { return Stored(server.Address()) == Invented(300); }));
}

TEST(StoredRows, FollowTheList) {
    const QTemporaryDir folder;
    LeadKeeper keeper(StoreTarget::Parse(folder.filePath(u"leads.db"_s)), folder.path(), [](const QString&) {});
    LeadList list;
    StoredRows rows(list, &keeper);
    keeper.Begin({});
    for (int i = 0; i < 5; ++i) {
        keeper.Keep(InventedLead(i));
        if (i != 1) // saved elsewhere, not listed
            list.Append(InventedLead(i));
    }
    list.Append(InventedLead(9)); // not kept
    rows.Expect({u"old"_s, 7});
    list.Append(InventedLead(10));
    const qsizetype toGo[] = {0, 2};
    rows.ToGo(toGo);
    list.Remove(toGo);
    ASSERT_EQ(list.Count(), 4);
    EXPECT_EQ(rows.At(0).Seq, 3);
    EXPECT_EQ(rows.At(1).Seq, 5);
    EXPECT_EQ(rows.At(2).HarvestUid, QString());
    EXPECT_EQ(rows.At(3).HarvestUid, u"old");
    EXPECT_EQ(rows.At(3).Seq, 7);
    list.Clear();
    keeper.Keep(InventedLead(20));
    list.Append(InventedLead(20));
    EXPECT_EQ(rows.At(0).Seq, 6);
}
