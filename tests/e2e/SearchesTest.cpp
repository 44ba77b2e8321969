#include "DemoFixture.h"
#include "PostgresServer.h"
#include "httplib.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QThread>

#include <algorithm>
#include <csignal>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

using namespace Brindle;
using namespace Brindle::Test;
using namespace Qt::StringLiterals;

namespace {

// A number from the environment for longer runs by hand: BRINDLE_SEARCHES=400.
int SearchNumber() {
    const int given = qEnvironmentVariableIntValue("BRINDLE_SEARCHES");
    return given > 0 ? given : 60;
}

QString Text(const Lead& lead) {
    QString all;
    for (int column = 0; column < FieldCount; ++column)
        all += lead.At(column) + u'|';
    return all;
}

std::vector<Lead> Sorted(std::vector<Lead> leads) {
    std::sort(leads.begin(), leads.end(), [](const Lead& a, const Lead& b) { return Text(a) < Text(b); });
    return leads;
}

QStringList Texts(const std::vector<Lead>& leads) {
    QStringList texts;
    for (const Lead& lead : leads)
        texts += Text(lead);
    texts.sort();
    return texts;
}

class SearchesTest : public DemoFixture {
protected:
    /// A table of so many searches over all directories of the demo, and the leads that they must give together.
    QString Table(int searches) {
        const std::vector<DemoSite> sites = DemoSites();
        QByteArray text = "site,start\r\n";
        for (int i = 0; i < searches; ++i) {
            const DemoSite& site = sites[static_cast<size_t>(i) % sites.size()];
            text += site.Code.toUtf8() + ",\"" + Server().FirstResultPage(site.Code, site.Layout).toUtf8() + "\"\r\n";
            const std::vector<Lead> planted = Planted(site);
            Expected.insert(Expected.end(), planted.begin(), planted.end());
        }
        return Write(u"searches.csv"_s, text);
    }
    QStringList With(const QStringList& command, const QString& store) const {
        return command + QStringList{u"--sites"_s, SitesFileName(), u"--store"_s, store,
                                     u"--pace"_s,  u"0"_s,          u"--set"_s,   u"work.lease_seconds=3"_s};
    }
    std::unique_ptr<QProcess> Start(const QStringList& arguments) const {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(CliEnvironment());
        process->setProcessChannelMode(QProcess::MergedChannels);
        process->start(CliProgram(), arguments);
        return process;
    }
    static std::vector<QJsonObject> List(const QString& store) {
        std::vector<QJsonObject> searches;
        const Outcome outcome = RunCli({u"searches"_s, u"list"_s, u"--json"_s, u"--store"_s, store});
        for (const QByteArray& line : outcome.Out.split('\n'))
            if (!line.isEmpty())
                searches.push_back(QJsonDocument::fromJson(line).object());
        return searches;
    }
    static int Count(const QString& store, const QString& state) {
        const std::vector<QJsonObject> all = List(store);
        return static_cast<int>(std::count_if(
            all.begin(), all.end(), [&](const QJsonObject& search) { return search[u"state"].toString() == state; }));
    }
    void ExpectEveryLeadOnce(const QString& store) const {
        const std::vector<DemoSite> sites = DemoSites();
        for (const QJsonObject& search : List(store)) {
            const DemoSite& site = sites[static_cast<size_t>(search[u"id"].toInt() - 1) % sites.size()];
            EXPECT_EQ(search[u"leads"].toInt(), static_cast<int>(Planted(site).size()))
                << QJsonDocument(search).toJson().constData();
        }
        const Outcome outcome = RunCli({u"leads"_s, u"--store"_s, store, u"--format"_s, u"jsonl"_s});
        ASSERT_EQ(outcome.Status, 0) << outcome.Err.constData();
        const QStringList found = Texts(LeadsOfJsonl(outcome.Out));
        const QStringList expected = Texts(Expected);
        QStringList lost;
        QStringList doubled;
        std::set_difference(expected.begin(), expected.end(), found.begin(), found.end(), std::back_inserter(lost));
        std::set_difference(found.begin(), found.end(), expected.begin(), expected.end(), std::back_inserter(doubled));
        EXPECT_EQ(lost.join(u'\n').toStdString(), "");
        EXPECT_EQ(doubled.join(u'\n').toStdString(), "");
    }
    static bool NoServer() { return !PostgresServer::Installed(); }

    std::vector<Lead> Expected;
};

} // namespace

TEST_F(SearchesTest, ARunThatWasKilledGoesOnWhereItWas) {
    const QString table = Table(22);
    const QString store = Path(u"leads.db"_s);
    const QStringList run = With({u"run"_s, table, u"--jobs"_s, u"2"_s}, store);
    for (int i = 0; i < 3; ++i) {
        const auto process = Start(run);
        process->waitForFinished(400 + i * 300);
        process->kill();
        process->waitForFinished();
    }
    const Outcome outcome = RunCli(run);
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.constData();
    EXPECT_TRUE(outcome.Err.contains("22 done")) << outcome.Err.constData();
    EXPECT_EQ(Count(store, u"done"_s), 22);
    ExpectEveryLeadOnce(store);
}

// A listing names a trade that those behind it on its page leave out; the break comes between them.
TEST_F(SearchesTest, WhatAPageSaidHoldsAfterABreak) {
    const QString code = u"KVPE001004"_s;
    const std::vector<Lead> planted = Planted({code, 1});
    const auto named = [&](size_t i) { return planted[i].Category.startsWith(u"Caff"); };
    size_t onSecondPage = 30;
    while (onSecondPage + 1 < planted.size() && !(named(onSecondPage) && named(onSecondPage + 1)))
        ++onSecondPage;
    const QString table = Write(u"one.csv"_s, "site,start\n" + code.toUtf8() + ",\"" +
                                                  Server().FirstResultPage(code, 1).toUtf8() + "\"\n");
    const QString store = Path(u"leads.db"_s);
    const QStringList run = With({u"run"_s, table}, store);
    QStringList slow = run;
    slow[slow.indexOf(u"--pace"_s) + 1] = u"0.05"_s;
    const auto process = Start(slow);
    const auto leads = [&] {
        const std::vector<QJsonObject> all = List(store);
        return all.empty() ? 0 : all.front()[u"leads"].toInt();
    };
    QElapsedTimer timer;
    for (timer.start(); leads() <= static_cast<int>(onSecondPage) && timer.elapsed() < 60'000;)
        QThread::msleep(5);
    process->kill();
    process->waitForFinished();
    ASSERT_EQ(Count(store, u"done"_s), 0);
    EXPECT_EQ(RunCli(run).Status, 0);
    const Outcome outcome = RunCli({u"leads"_s, u"--store"_s, store, u"--format"_s, u"jsonl"_s});
    ExpectSameLeads(Sorted(LeadsOfJsonl(outcome.Out)), Sorted(planted));
}

// Each page has attempts of its own: the first answer of the first one breaks off, and four of the second.
TEST_F(SearchesTest, APageThatDoesNotComeIsAskedForAgain) {
    const QString code = u"KVPE001005"_s;
    const QUrl first(Server().FirstResultPage(code));
    std::map<std::string, int> failures{{"", 1}, {"2", 4}};
    httplib::Server server;
    server.Get("/cerca", [&](const httplib::Request& request, httplib::Response& response) {
        if (failures[request.get_param_value("pag")]-- > 0)
            return response.set_content_provider(100, "text/html",
                                                 [](size_t, size_t, httplib::DataSink&) { return false; });
        httplib::Client directory("127.0.0.1", first.port());
        response.set_content(directory.Get(request.target)->body, "text/html");
    });
    const QString base = u"http://127.0.0.1:%1"_s.arg(server.bind_to_any_port("127.0.0.1"));
    std::thread serving([&] { server.listen_after_bind(); });
    const QString sites =
        Write(u"own.ini"_s, u"[map]\nbase=http://maps.test\n[%1]\nbase=%2\nlabel=Italy\n"_s.arg(code, base).toUtf8());
    const QString table = Write(u"one.csv"_s, u"site,start\n%1,%2/cerca?chi=ottici\n"_s.arg(code, base).toUtf8());
    QStringList run = With({u"run"_s, table, u"--ignore-robots"_s}, Path(u"leads.db"_s));
    run[run.indexOf(u"--sites"_s) + 1] = sites;
    const Outcome outcome = RunCli(run);
    server.stop();
    serving.join();
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    const Outcome found = RunCli({u"leads"_s, u"--store"_s, Path(u"leads.db"_s), u"--format"_s, u"jsonl"_s});
    EXPECT_EQ(LeadsOfJsonl(found.Out).size(), Planted({code, 1}).size());
}

TEST_F(SearchesTest, WrongRowsAndFailedSearchesAreNamed) {
    const QString wrong = Write(u"wrong.csv"_s, "site;start\nKVPN002001;http://127.0.0.1:9/\nNOSUCH;http://a.test/\n"
                                                "KVPN002001;file:///etc/passwd\n\"KVPN002001;http://a.test/\n");
    const QString store = Path(u"leads.db"_s);
    Outcome outcome = RunCli(With({u"run"_s, wrong}, store));
    EXPECT_EQ(outcome.Status, 1);
    for (const char* const line : {"line 3:", "line 4:", "line 5:"})
        EXPECT_TRUE(outcome.Err.contains(line)) << line << outcome.Err.constData();
    EXPECT_FALSE(outcome.Err.contains("line 2:"));

    const QString failing = Write(u"failing.csv"_s, "site,start\nKVPN002001,http://127.0.0.1:9/none\n");
    outcome = RunCli(With({u"run"_s, failing}, store));
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_TRUE(outcome.Err.contains("1 failed")) << outcome.Err.constData();
    EXPECT_TRUE(outcome.Err.contains("line 2, KVPN002001")) << outcome.Err.constData();
    EXPECT_EQ(RunCli({u"searches"_s, u"retry"_s, u"--store"_s, store}).Status, 0);
    EXPECT_EQ(Count(store, u"waiting"_s), 1);
    EXPECT_EQ(RunCli({u"searches"_s, u"cancel"_s, u"1"_s, u"--store"_s, store}).Status, 0);
    EXPECT_EQ(Count(store, u"cancelled"_s), 1);
    outcome = RunCli({u"work"_s, u"--store"_s, store});
    EXPECT_EQ(outcome.Status, 2);
    EXPECT_TRUE(outcome.Err.contains("run")) << outcome.Err.constData();
}

// The signal goes to the first of several alone, as a manager of services sends it.
TEST_F(SearchesTest, BeingEndedFreesTheSearchesInHand) {
    struct Case {
        QStringList Command;
        int Signal;
        bool OnServer;
    };
    const QString table = Table(5);
    const Case cases[] = {{{u"run"_s, table}, SIGINT, false},
                          {{u"run"_s, table, u"--jobs"_s, u"2"_s}, SIGTERM, false},
                          {{u"work"_s}, SIGINT, true},
                          {{u"work"_s, u"--jobs"_s, u"3"_s}, SIGINT, true},
                          {{u"work"_s, u"--wait"_s}, SIGTERM, true}};
    std::unique_ptr<PostgresServer> server;
    int number = 0;
    for (const auto& [command, signal, onServer] : cases) {
        if (onServer && NoServer())
            continue;
        if (onServer && !server) {
            server = std::make_unique<PostgresServer>();
            ASSERT_EQ(server->Error(), QString());
            ASSERT_EQ(RunCli(With({u"searches"_s, u"add"_s, table}, server->Address()).mid(0, 7)).Status, 0);
        }
        SCOPED_TRACE(command.join(u' ').toStdString());
        const QString store = onServer ? server->Address() : Path(u"leads%1.db"_s.arg(++number));
        QStringList arguments = With(command, store);
        arguments[arguments.indexOf(u"--pace"_s) + 1] = u"1"_s; // a page takes seconds
        const int workers = command.contains(u"--jobs"_s) ? command.last().toInt() : 1;
        const auto process = Start(arguments);
        QElapsedTimer timer;
        for (timer.start(); Count(store, u"running"_s) < workers && timer.elapsed() < 60'000;)
            QThread::msleep(100);
        kill(static_cast<pid_t>(process->processId()), signal);
        timer.start();
        ASSERT_TRUE(process->waitForFinished(20'000));
        EXPECT_LT(timer.elapsed(), 5000);
        EXPECT_EQ(process->exitCode(), 130);
        EXPECT_EQ(Count(store, u"running"_s), 0);
        EXPECT_EQ(Count(store, u"waiting"_s), 5);
    }
}

TEST_F(SearchesTest, AHostHasOnlySoManySearchesAtOnce) {
    // Two hosts that take their time, and how many searches each had at once. A search asks for one page after another.
    constexpr int hostCount = 2;
    httplib::Server hosts[hostCount];
    std::mutex mutex;
    int now[hostCount] = {};
    int most[hostCount] = {};
    int mostTogether = 0;
    std::vector<std::thread> serving;
    QByteArray table = "site,start\n";
    for (int host = 0; host < hostCount; ++host) {
        hosts[host].Get(".*", [&, host](const httplib::Request&, httplib::Response& response) {
            {
                const std::lock_guard lock(mutex);
                most[host] = std::max(most[host], ++now[host]);
                mostTogether = std::max(mostTogether, now[0] + now[1]);
            }
            QThread::msleep(400);
            const std::lock_guard lock(mutex);
            --now[host];
            response.set_content("<html><body>no results</body></html>", "text/html");
        });
        const int port = hosts[host].bind_to_any_port("127.0.0.1");
        serving.emplace_back([&, host] { hosts[host].listen_after_bind(); });
        for (int i = 0; i < 4; ++i)
            table += "KVPN002001,http://127.0.0.1:" + QByteArray::number(port) + '/' + QByteArray::number(i) + '\n';
    }
    QStringList run = With({u"run"_s, Write(u"hosts.csv"_s, table)}, Path(u"leads.db"_s));
    run += {u"--jobs"_s, u"4"_s, u"--limit-per-host"_s, u"1"_s, u"--ignore-robots"_s};
    const Outcome outcome = RunCli(run);
    for (int host = 0; host < hostCount; ++host) {
        hosts[host].stop();
        serving[static_cast<size_t>(host)].join();
    }
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_TRUE(outcome.Err.contains("8 failed")) << outcome.Err.constData(); // none was left out
    EXPECT_EQ(most[0], 1);
    EXPECT_EQ(most[1], 1);
    EXPECT_EQ(mostTogether, 2) << "both hosts are asked at the same time";
}

// By words, by addresses of any website, by a recipe's code: one worker with a file, four with a server, the same
// leads.
TEST_F(SearchesTest, AFileAndAServerGiveTheSameLeads) {
    const QString folder = CliEnvironment().value(u"XDG_CONFIG_HOME"_s) + u"/Norvane Software/Brindle/recipes/";
    ASSERT_TRUE(QDir().mkpath(folder));
    QByteArray words = "site,what,where\n";
    for (const QString& code : Server().SiteCodes()) {
        words += code.toUtf8() + ",caf\u00E9 & bar,\"Reggio nell'Emilia, RE\"\n";
        const std::vector<Lead> planted = Planted({code, 1});
        Expected.insert(Expected.end(), planted.begin(), planted.end());
    }
    QByteArray addresses = "site,start\n";
    for (const Demo::ModernSite& site : Server().ModernSites()) {
        if (site.NeedsScripts || site.Secure)
            continue;
        const bool byRecipe = site.Code == u"demo-microdata";
        addresses += QByteArray(byRecipe ? "searched-demo" : "AUTO") + ",\"" + site.Start.toUtf8() + "\"\n";
        if (!byRecipe)
            continue;
        QFile recipe(folder + u"searched-demo.toml");
        ASSERT_TRUE(recipe.open(QIODevice::WriteOnly));
        recipe.write("name = \"Demo\"\nhome = \"" + site.Start.toUtf8() + "\"\nsearch = \"" +
                     site.SearchAddress.toUtf8() + "\"\nnext = \"auto\"\n[list]\nrecords = \"structured\"\n");
        words += "searched-demo,caf\u00E9,Lyon\n";
    }
    const QStringList tables{Write(u"words.csv"_s, words), Write(u"addresses.csv"_s, addresses)};
    const auto leadsOf = [](const QString& store) {
        const Outcome outcome = RunCli({u"leads"_s, u"--store"_s, store, u"--format"_s, u"jsonl"_s});
        EXPECT_EQ(outcome.Status, 0) << outcome.Err.constData();
        return Sorted(LeadsOfJsonl(outcome.Out));
    };

    const QString file = Path(u"leads.db"_s);
    Outcome outcome = RunCli(With({u"run"_s, tables[0]}, file));
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.constData();
    const std::vector<Lead> byWords = leadsOf(file);
    const qsizetype ofRecipe = static_cast<qsizetype>(byWords.size() - Expected.size());
    EXPECT_GT(ofRecipe, 0);
    outcome = RunCli(With({u"run"_s, tables[1]}, file));
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.constData();
    const std::vector<Lead> byFile = leadsOf(file);
    EXPECT_GT(byFile.size(), byWords.size() + 50);

    // What the words find is what the directories have.
    std::set<QString> names;
    for (const Lead& lead : byWords)
        names.insert(lead.Name + lead.Phone);
    for (const Lead& lead : Expected)
        EXPECT_TRUE(names.contains(lead.Name + lead.Phone)) << lead.Name.toStdString();

    if (NoServer())
        GTEST_SKIP() << "PostgreSQL is not installed here";
    PostgresServer server;
    ASSERT_EQ(server.Error(), QString());
    for (const QString& table : tables)
        ASSERT_EQ(RunCli(With({u"searches"_s, u"add"_s, table}, server.Address()).mid(0, 7)).Status, 0);
    outcome = RunCli(With({u"work"_s, u"--jobs"_s, u"4"_s}, server.Address()));
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.constData();
    EXPECT_EQ(Count(server.Address(), u"done"_s), static_cast<int>(words.count('\n') + addresses.count('\n')) - 2);
    ExpectSameLeads(leadsOf(server.Address()), byFile);
}

TEST_F(SearchesTest, WorkersMayDieAndTheServerMayBeStartedAnew) {
    if (NoServer())
        GTEST_SKIP() << "PostgreSQL is not installed here";
    PostgresServer server;
    ASSERT_EQ(server.Error(), QString());
    const QString store = server.Address();
    const int searches = SearchNumber();
    const Outcome added = RunCli(With({u"searches"_s, u"add"_s, Table(searches)}, store).mid(0, 7));
    ASSERT_EQ(added.Status, 0) << added.Err.constData();
    QRandomGenerator random(7);
    std::vector<std::unique_ptr<QProcess>> workers(8);
    int kills = 0;
    int restarts = 0;
    while (kills < 12) {
        for (auto& worker : workers)
            if (!worker)
                worker = Start(With({u"work"_s}, store));
        QThread::msleep(300);
        auto& victim = workers[random.bounded(static_cast<quint32>(workers.size()))];
        victim->kill();
        victim->waitForFinished();
        victim.reset();
        if (++kills % 4 == 0 && restarts < 2) {
            ++restarts;
            server.Stop();
            QThread::msleep(500);
            server.Start();
            ASSERT_EQ(server.Error(), QString());
        }
    }
    workers.push_back(Start(With({u"work"_s}, store))); // where all others have ended or were killed
    for (const auto& worker : workers) {
        if (!worker)
            continue;
        ASSERT_TRUE(worker->state() == QProcess::NotRunning || worker->waitForFinished(100'000)) << "a worker hangs";
        EXPECT_EQ(worker->exitCode(), 0) << worker->readAll().constData();
    }
    EXPECT_EQ(kills, 12);
    EXPECT_EQ(restarts, 2);
    EXPECT_EQ(Count(store, u"done"_s), searches);
    ExpectEveryLeadOnce(store);
}

TEST_F(SearchesTest, WorkersTakeTurnsAtAHost) {
    if (NoServer())
        GTEST_SKIP() << "PostgreSQL is not installed here";
    std::mutex mutex;
    std::vector<qint64> asked;
    QElapsedTimer clock;
    clock.start();
    httplib::Server host;
    host.Get(".*", [&](const httplib::Request& request, httplib::Response& response) {
        const std::lock_guard lock(mutex);
        asked.push_back(clock.elapsed());
        if (request.path == "/robots.txt")
            response.set_content("User-agent: *\nDisallow: /closed\n", "text/plain");
        else
            response.set_content("<html><body>no results</body></html>", "text/html");
    });
    const int port = host.bind_to_any_port("127.0.0.1");
    std::thread serving([&] { host.listen_after_bind(); });
    PostgresServer server;
    ASSERT_EQ(server.Error(), QString());
    QByteArray table = "site,start\n";
    for (int i = 0; i < 10; ++i)
        table += "KVPN002001,http://127.0.0.1:" + QByteArray::number(port) + (i == 9 ? "/closed/" : "/") +
                 QByteArray::number(i) + '\n';
    QStringList options{u"--sites"_s, SitesFileName(), u"--store"_s, server.Address()};
    ASSERT_EQ(RunCli(QStringList{u"searches"_s, u"add"_s, Write(u"s.csv"_s, table)} + options).Status, 0);
    options += {u"--set"_s, u"work.page_milliseconds=400"_s, u"--jobs"_s, u"2"_s};
    const Outcome outcome = RunCli(QStringList{u"work"_s} + options);
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.constData();
    host.stop();
    serving.join();
    // Nine pages and a robots.txt for each worker.
    EXPECT_GE(asked.size(), 10U);
    EXPECT_LE(asked.size(), 11U);
    for (size_t i = 1; i < asked.size(); ++i)
        EXPECT_GE(asked[i] - asked[i - 1], 300) << i; // what a busy machine takes from the pause is made up for later
    EXPECT_GE(asked.back() - asked.front(), 400 * (static_cast<qint64>(asked.size()) - 1) - 100);
    bool refused = false;
    for (const QJsonObject& search : List(server.Address()))
        refused = refused || search[u"error"].toString().contains(u"robots.txt");
    EXPECT_TRUE(refused);
}
