#include "StoreFixture.h"
#include "store/LeadKeeper.h"
#include "store/Searches.h"

#include <QFile>
#include <QScopeGuard>
#include <QThread>

#include <future>
#include <thread>
#include <unistd.h>

using namespace Brindle;
using namespace Brindle::Test;
using namespace Qt::StringLiterals;

namespace {

Lead Named(const QString& name, const QString& phone = {}, const QString& link = {}) {
    Lead lead;
    lead.Name = name;
    lead.Phone = phone;
    lead.DetailsLink = link;
    return lead;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Engines, StoreTest,
                         testing::Values(StoreTarget::Engine::SQLite, StoreTarget::Engine::PostgreSQL),
                         [](const auto& info) {
                             return info.param == StoreTarget::Engine::SQLite ? "SQLite" : "PostgreSQL";
                         });

TEST_P(StoreTest, KeepsEveryFieldInOrderAndOnce) {
    std::vector<Lead> leads;
    for (int i = 0; i < 300; ++i)
        leads.push_back(InventedLead(i));
    leads[7] = {};
    leads[8].Name = u"'; DROP TABLE lead; -- ? $1 \\ \" % _"_s;
    leads[9].City = u"Zürich — 東京 \U0001F4DE"_s;
    leads[10].MapLink = u"http://other.test/map/10"_s;
    leads[11].FullAddress = u"a"_s; // occurs in the link of the map more than once
    std::vector<StoreEvent> events{Begun(u"h"_s, u"KVPN001001"_s)};
    for (size_t i = 0; i < leads.size(); ++i)
        events.push_back(Found(u"h"_s, static_cast<qint64>(i) + 1, leads[i]));
    // In two parts that overlap, as after a crash, and once more as a whole.
    Take({events.begin(), events.begin() + 200});
    Open();
    Take({events.begin() + 150, events.end()});
    Take(events);
    Take({HarvestEnd{u"h"_s, 2'000'000, HarvestEnding::Done, 12}});
    EXPECT_EQ(LeadsOf(u"h"_s), leads);
    const auto harvest = StoreQueries(*Store).HarvestOf(u"h"_s);
    ASSERT_TRUE(harvest);
    EXPECT_EQ(harvest->Leads, 300);
    EXPECT_EQ(harvest->Pages, 12);
    EXPECT_EQ(harvest->Ended, 2'000'000);
    EXPECT_EQ(harvest->Ending, HarvestEnding::Done);
    EXPECT_EQ(harvest->Info.Start, u"http://dir.test/?page=1");

    // What no engine can hold is replaced, and nothing else is lost with it.
    Lead odd = Named(u"A\0B"_s);
    odd.City = QString(QChar(0xD800)) + u"x"_s;
    Take({Begun(u"odd"_s, u"KVPN001001"_s), Found(u"odd"_s, 1, odd)});
    EXPECT_EQ(LeadsOf(u"odd"_s).at(0).Name, u"A\uFFFDB");
    EXPECT_EQ(LeadsOf(u"odd"_s).at(0).City, u"\uFFFDx");
}

TEST_P(StoreTest, RecognisesABusinessAndSaysWhatChanged) {
    Lead first = Named(u"Caffè D'Oro"_s, u"02/1234567"_s, u"http://a.test/1"_s);
    first.FullAddress = u"Via Roma 1, Milano"_s;
    Lead moved = first; // the same entry, another address
    moved.FullAddress = u"Via Verdi 2, Milano"_s;
    Lead elsewhere = Named(u"CAFFE D’ORO"_s, u"+39 02 1234567"_s, u"http://b.test/x"_s);
    Lead byAddress = Named(u"Caffe d'oro"_s);
    byAddress.FullAddress = u"via roma 1 MILANO"_s;
    const Lead stranger = Named(u"Caffè D'Oro"_s, u"02/7654321"_s, u"http://a.test/2"_s);
    Take({Begun(u"1"_s, u"A"_s, 1000), Found(u"1"_s, 1, first, 1001), Found(u"1"_s, 2, stranger, 1002)});
    Take({Begun(u"2"_s, u"A"_s, 2000), Found(u"2"_s, 1, moved, 2001)});
    Take({Begun(u"3"_s, u"B"_s, 3000), Found(u"3"_s, 1, elsewhere, 3001), Found(u"3"_s, 2, byAddress, 3002)});

    const std::vector<StoredLead> all = StoreQueries(*Store).LeadsAfter({}, 0, 100);
    ASSERT_EQ(all.size(), 5U);
    std::vector<bool> fresh;
    for (const StoredLead& lead : all)
        fresh.push_back(lead.IsNew());
    EXPECT_EQ(fresh, (std::vector<bool>{true, true, false, false, false}));
    EXPECT_EQ(all[2].Changed, 1 << static_cast<int>(Field::FullAddress));
    EXPECT_EQ(all[0].FirstSeen, 1001);
    EXPECT_EQ(all[0].LastSeen, 3002);
    EXPECT_EQ(all[1].LastSeen, 1002);
    EXPECT_EQ(StoreQueries(*Store).LeadsOfBusiness(all[0].Business).size(), 4U);
    EXPECT_EQ(StoreQueries(*Store).BusinessCount(), 2);
    EXPECT_EQ(StoreQueries(*Store).HarvestOf(u"3"_s)->NewLeads, 0);
}

TEST_P(StoreTest, AnswersEveryKindOfQuestion) {
    Lead a = Named(u"Äpfel & Co"_s, u"(604) 555-0100"_s, u"http://www.dir.test/e/apfel-100.html"_s);
    a.City = u"Vancouver"_s;
    Lead b = Named(u"Bolt Plumbing"_s, u"604.555.0199"_s);
    b.Email = u"info@bolt-plumbing.example"_s;
    b.City = u"burnaby"_s;
    const Lead c = Named(u"Çelik"_s, u"1"_s);
    Take({Begun(u"1"_s, u"A"_s, 1000), Found(u"1"_s, 1, a, 1000), Found(u"1"_s, 2, b, 1500),
          HarvestEnd{u"1"_s, 1'600'000, HarvestEnding::Done, 1}});
    Take({Begun(u"2"_s, u"B"_s, 2000), Found(u"2"_s, 1, b, 2000), Found(u"2"_s, 2, c, 2500)});

    const struct {
        LeadFilter Filter;
        QStringList Names;
    } cases[] = {
        {{}, {a.Name, b.Name, b.Name, c.Name}},
        {{.Text = u"apfel"_s}, {a.Name}},
        {{.Text = u"ÄPF"_s}, {a.Name}},
        {{.Text = u"6045550100"_s}, {a.Name}},
        {{.Text = u"555-01"_s}, {a.Name, b.Name, b.Name}},
        {{.Text = u"plumb info@bolt"_s}, {b.Name, b.Name}},
        {{.Text = u"celik"_s}, {c.Name}},
        {{.Text = u"umbing"_s}, {}}, // words are found by their beginnings
        {{.Text = u"bolt apfel"_s}, {}},
        {{.Text = u"\"'*&|!:( "_s}, {}},
        {{.Text = u"' OR \"\" bolt:*"_s}, {}},
        {{.Site = u"B"_s}, {b.Name, c.Name}},
        {{.Since = 1500}, {b.Name, b.Name, c.Name}},
        {{.Since = 2001}, {c.Name}},
        {{.Until = 1500}, {a.Name}},
        {{.Since = 1500, .Until = 2500}, {b.Name, b.Name}},
        {{.OnlyNew = true}, {a.Name, b.Name, c.Name}},
        {{.Text = u"bolt"_s, .Site = u"B"_s, .OnlyNew = true}, {}},
        {{.Text = u"bolt"_s, .Site = u"A"_s, .Since = 1001, .OnlyNew = true}, {b.Name}},
    };
    for (const auto& [filter, names] : cases)
        EXPECT_EQ(Find(filter), names) << filter.Text.toStdString() << ' ' << filter.Since << ' ' << filter.Until;

    EXPECT_EQ(Find({}, {static_cast<int>(Field::City), true}), (QStringList{a.Name, b.Name, b.Name, c.Name}));
    EXPECT_EQ(Find({}, {static_cast<int>(Field::City), false}), (QStringList{c.Name, b.Name, b.Name, a.Name}));
    const std::vector<StoredLead> page = StoreQueries(*Store).Leads({}, {LeadOrder::Found, true}, 1, 2);
    ASSERT_EQ(page.size(), 2U);
    EXPECT_EQ(page[0].Lead.Name, b.Name);
    EXPECT_EQ(page[0].Site, u"B");
    EXPECT_EQ(page[1].Site, u"A");
    // Page by page it is the same as at once, from whichever end a page is counted.
    constexpr int city = static_cast<int>(Field::City);
    for (const LeadOrder& order :
         {LeadOrder{}, LeadOrder{LeadOrder::Found, false}, LeadOrder{city, true}, LeadOrder{city, false}}) {
        StoreQueries queries(*Store);
        std::vector<qint64> atOnce;
        for (const StoredLead& lead : queries.Leads({}, order, 0, 1000))
            atOnce.push_back(lead.Id);
        EXPECT_EQ(queries.Numbers({}, order), atOnce);
        EXPECT_EQ(queries.LeadsOf(atOnce).size(), atOnce.size());
        EXPECT_EQ(queries.LeadsOf(std::vector{atOnce[3], atOnce[1], qint64{999}}).front().Id, atOnce[3]);
        for (const qint64 size : {1, 3}) {
            std::vector<qint64> paged;
            for (qint64 offset = 0; offset < 6; offset += size)
                for (const StoredLead& lead : queries.Leads({}, order, offset, size))
                    paged.push_back(lead.Id);
            EXPECT_EQ(paged, atOnce) << order.Column << ' ' << order.Descending << ' ' << size;
        }
    }
    EXPECT_EQ(StoreQueries(*Store).Sites(), (QStringList{u"A"_s, u"B"_s}));
    EXPECT_EQ(StoreQueries(*Store).Harvests(0, 10).at(0).Info.Uid, u"2");
}

TEST_P(StoreTest, LeadsAreFoundByTheirWordsWhoeverWroteThem) {
    Database second(Target());
    StoreWriter one(*Store);
    StoreWriter other(second);
    const auto named = [](const char16_t* name) { return Named(QString::fromUtf16(name), {}); };
    one.Take(std::vector{Begun(u"h"_s, u"A"_s), Found(u"h"_s, 1, named(u"aaa")), Found(u"h"_s, 2, named(u"bbb"))});
    one.IndexWords();
    one.Take(std::vector{Found(u"h"_s, 3, named(u"ccc")), Found(u"h"_s, 4, named(u"ddd"))});
    StoreEdits(second).DeleteLeads(u"h"_s, std::vector<qint64>{3}); // before its words were findable
    one.IndexWords();
    one.Take(std::vector{Found(u"h"_s, 5, named(u"eee"))});
    other.Take(std::vector{Begun(u"g"_s, u"A"_s), Found(u"g"_s, 1, named(u"fff"))});
    one.IndexWords();
    for (const char16_t* const name : {u"aaa", u"bbb", u"ddd", u"eee", u"fff"})
        EXPECT_EQ(Find({.Text = QString::fromUtf16(name)}), QStringList(QString::fromUtf16(name)));
    EXPECT_EQ(Find({.Text = u"ccc"_s}), QStringList());
}

TEST_P(StoreTest, WhatIsTakenBackIsGone) {
    std::vector<StoreEvent> events{Begun(u"h"_s, u"A"_s)};
    for (int i = 1; i <= 5; ++i)
        events.push_back(Found(u"h"_s, i, Named(u"Unmistakable%1"_s.arg(i), u"604555010%1"_s.arg(i))));
    Take(events);
    Take({Begun(u"again"_s, u"B"_s), Found(u"again"_s, 1, Named(u"Unmistakable4"_s, u"6045550104"_s))});
    StoreQueries queries(*Store);
    StoreEdits edits(*Store);
    EXPECT_EQ(Find({.Text = u"unmist"_s}).size(), 6);

    // Offered back until it was exported; what came later is offered again, what runs still is not.
    EXPECT_EQ(queries.UnsettledHarvests(u"me@here"_s, {}).size(), 2U);
    EXPECT_EQ(queries.UnsettledHarvests(u"me@here"_s, {u"session-h"_s}).size(), 1U);
    EXPECT_TRUE(queries.UnsettledHarvests(u"you@here"_s, {}).empty());
    edits.Settle(u"again"_s);
    edits.Settle(u"h"_s, 3);
    auto open = queries.UnsettledHarvests(u"me@here"_s, {});
    ASSERT_EQ(open.size(), 1U);
    EXPECT_EQ(open[0].Unsettled, 2);

    const qint64 places[] = {1, 5};
    edits.DeleteLeads(u"h"_s, places);
    EXPECT_EQ(queries.HarvestOf(u"h"_s)->Leads, 3);
    EXPECT_EQ(queries.HarvestOf(u"h"_s)->Unsettled, 1);
    EXPECT_EQ(Find({.Text = u"unmistakable1"_s}), QStringList());
    Take({Found(u"again"_s, 2, Named(u"Unmistakable1"_s, u"6045550101"_s))});
    EXPECT_EQ(queries.HarvestOf(u"again"_s)->NewLeads, 0); // deleted, yet known

    const qint64 business = queries.Leads({.Text = u"unmistakable4"_s}, {}, 0, 1).at(0).Business;
    EXPECT_EQ(edits.EraseBusiness(business), 2);
    EXPECT_EQ(Find({.Text = u"unmistakable4"_s}), QStringList());
    EXPECT_EQ(Find({.Text = u"unmist"_s}).size(), 3);
    Take({Found(u"again"_s, 3, Named(u"Unmistakable4"_s, u"6045550104"_s))});
    EXPECT_EQ(queries.HarvestOf(u"again"_s)->NewLeads, 1); // as if never seen
    edits.EraseBusiness(queries.Leads({.Text = u"unmistakable4"_s}, {}, 0, 1).at(0).Business);
    edits.DeleteHarvest(queries.HarvestOf(u"h"_s)->Id);
    EXPECT_FALSE(queries.HarvestOf(u"h"_s));
    EXPECT_EQ(Find({}), QStringList(u"Unmistakable1"_s));

    if (GetParam() != StoreTarget::Engine::SQLite)
        return;
    Store.reset();
    QFile file(Target().FileName);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll().toLower();
    EXPECT_TRUE(bytes.contains("unmistakable1"));
    EXPECT_FALSE(bytes.contains("unmistakable4"));
}

TEST_P(StoreTest, OpensOnlyWhatItKnows) {
    Take({Begun(u"h"_s, u"A"_s), Found(u"h"_s, 1, InventedLead(1))});
    Open();
    EXPECT_EQ(LeadsOf(u"h"_s).size(), 1U);
    if (Server)
        Store->Execute(u"INSERT INTO schema_version(version) VALUES(1000)"_s);
    else
        Store->Execute(u"PRAGMA user_version=1000"_s);
    try {
        Open();
        FAIL() << "a newer store was opened";
    } catch (const StoreError& error) {
        EXPECT_EQ(error.Reason, StoreError::Why::Newer);
        EXPECT_TRUE(error.Message().contains(u"newer version")) << error.Message().toStdString();
        EXPECT_TRUE(error.Message().contains(Target().Shown()));
    }
}

TEST_P(StoreTest, AnOlderStoreIsBroughtUpToDate) {
    Take({Begun(u"h"_s, u"A"_s), Found(u"h"_s, 1, InventedLead(1)), Found(u"h"_s, 2, InventedLead(2))});
    // As the first version of the schema left it.
    Store->Execute(u"DROP TABLE search"_s);
    Store->Execute(u"DROP TABLE host_turn"_s);
    if (!Server) {
        Store->Execute(u"INSERT INTO business_key SELECT * FROM business_key_new"_s);
        Store->Execute(u"DROP TABLE business_key_new"_s);
    }
    Store->Execute(Server ? u"DELETE FROM schema_version WHERE version>1"_s : u"PRAGMA user_version=1"_s);
    Open();
    EXPECT_EQ(LeadsOf(u"h"_s).size(), 2U);
    Searches searches(*Store);
    EXPECT_EQ(
        searches.Add(u"list"_s, {{2, u"A"_s, u"http://a.test/"_s, {}, {}}}, [](const SearchRow&) { return u""_s; }), 1);
    EXPECT_TRUE(searches.Claim(u"me"_s, {}, 0, 1000));
    EXPECT_EQ(Find({.Text = InventedLead(2).Phone}), QStringList(InventedLead(2).Name));
    Open(); // and only once
    EXPECT_EQ(Searches(*Store).All().size(), 1U);
    // Its businesses are known, and so are those that come now.
    Take({Begun(u"again"_s, u"A"_s), Found(u"again"_s, 1, InventedLead(2)), Found(u"again"_s, 2, InventedLead(3))});
    Take({Begun(u"third"_s, u"A"_s), Found(u"third"_s, 1, InventedLead(3))});
    EXPECT_EQ(StoreQueries(*Store).HarvestOf(u"again"_s)->NewLeads, 1);
    EXPECT_EQ(StoreQueries(*Store).BusinessCount(), 3);
}

// Long after its first leads a directory is harvested again, so the new ones are few and lie among others; some
// harvests were cut off, some go on at the moment that is asked for.
TEST_P(StoreTest, LeadsFarApartAreFoundAndCounted) {
    std::vector<StoreEvent> events;
    for (int harvest = 0; harvest < 40; ++harvest) {
        const QString uid = QString::number(harvest);
        const qint64 begun = 1000 + harvest * 100;
        events.push_back(Begun(uid, harvest % 13 == 0 ? u"RARE"_s : u"A"_s, begun));
        for (int i = 0; i < 30; ++i) // every tenth lead is a new one
            events.push_back(Found(uid, i + 1, InventedLead(i % 10 == 0 ? harvest * 30 + i : i), begun + i * 2));
        if (harvest % 7 != 0)
            events.push_back(HarvestEnd{uid, (begun + 60) * 1000, HarvestEnding::Done, 1});
    }
    Take(events);
    StoreQueries queries(*Store);
    const std::vector<StoredLead> all = queries.LeadsAfter({}, 0, 10'000);
    ASSERT_EQ(all.size(), 1200U);
    for (const QString& site : {u""_s, u"RARE"_s, u"A"_s, u"NONE"_s})
        for (const qint64 since : {0, 1000, 2020, 4930, 9000})
            for (const qint64 until : {0, 1010, 2250, 9000})
                for (const bool onlyNew : {false, true})
                    for (const QString& text : {u""_s, u"plumbers"_s}) {
                        std::vector<qint64> fitting;
                        for (const StoredLead& lead : all)
                            if ((site.isEmpty() || lead.Site == site) && lead.Found >= since &&
                                (until == 0 || lead.Found < until) && (!onlyNew || lead.IsNew()) &&
                                (text.isEmpty() || lead.Lead.Category == u"Plumbers"))
                                fitting.push_back(lead.Id);
                        const LeadFilter filter{
                            .Text = text, .Site = site, .Since = since, .Until = until, .OnlyNew = onlyNew};
                        SCOPED_TRACE(testing::Message() << site.toStdString() << ' ' << since << ' ' << until << ' '
                                                        << onlyNew << ' ' << text.toStdString());
                        EXPECT_EQ(queries.LeadCount(filter), static_cast<qint64>(fitting.size()));
                        EXPECT_EQ(queries.Numbers(filter, {LeadOrder::Found, false}), fitting);
                        std::reverse(fitting.begin(), fitting.end());
                        std::vector<qint64> page;
                        for (const StoredLead& lead : queries.Leads(filter, {}, 0, 20))
                            page.push_back(lead.Id);
                        fitting.resize(std::min<size_t>(fitting.size(), 20));
                        EXPECT_EQ(page, fitting);
                    }
}

// Two programs that make a file at the same moment: the other one is in the middle of its first writing.
TEST(StoreFile, WaitsForAnotherThatMakesIt) {
    const QTemporaryDir folder;
    const StoreTarget target = StoreTarget::Parse(folder.filePath(u"leads.db"_s));
    std::promise<void> writing;
    std::thread other([&] {
        QSqlDatabase connection = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        connection.setDatabaseName(target.FileName);
        EXPECT_TRUE(connection.open());
        connection.exec(u"BEGIN IMMEDIATE"_s);
        writing.set_value();
        QThread::msleep(300); // of a program that does not know of the first one, so no event can end it
        connection.exec(u"COMMIT"_s);
    });
    writing.get_future().wait();
    EXPECT_NO_THROW(Database{target});
    other.join();
}

// A store that somebody else keeps: its folder takes no file, or the file itself cannot be written.
TEST(StoreFile, IsReadWhereItCannotBeWritten) {
    const QTemporaryDir folder;
    const StoreTarget target = StoreTarget::Parse(folder.filePath(u"theirs/leads.db"_s));
    {
        Database database(target);
        HarvestInfo harvest;
        harvest.Uid = u"h"_s;
        StoreWriter(database).Take(std::vector<StoreEvent>{harvest, FoundLead{u"h"_s, 1, 1000, InventedLead(1)}});
        StoreWriter(database).IndexWords();
        database.Execute(u"DROP TABLE business_key_new"_s);
        database.Execute(u"PRAGMA user_version=3"_s); // as an older program left it
    }
    const auto allow = [&](QFile::Permissions ofFolder, QFile::Permissions ofFile) {
        QFile::setPermissions(folder.filePath(u"theirs"_s), ofFolder);
        QFile::setPermissions(target.FileName, ofFile);
    };
    constexpr QFile::Permissions read = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    constexpr QFile::Permissions enter = read | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther;
    QFile::setPermissions(folder.path(), enter | QFile::WriteOwner);
    const bool isRoot = geteuid() == 0; // whom no permission stops
    ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
    const auto back = qScopeGuard([&] {
        EXPECT_TRUE(!isRoot || seteuid(0) == 0);
        allow(enter | QFile::WriteOwner, read | QFile::WriteOwner);
    });
    for (const bool folderTakesFiles : {true, false}) {
        ASSERT_TRUE(!isRoot || seteuid(0) == 0);
        allow(folderTakesFiles ? enter | QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther : enter, read);
        ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
        Database database(target, Database::Access::ReadAtLeast);
        TakeInOrphans(database, folder.path());
        StoreQueries queries(database);
        EXPECT_EQ(queries.Leads({.Text = InventedLead(1).Phone}, {}, 0, 10).size(), 1U) << folderTakesFiles;
        EXPECT_THROW(StoreEdits(database).DeleteHarvest(1), StoreError);
    }
    EXPECT_THROW(Database{target}, StoreError);
}
