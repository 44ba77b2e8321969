#include "DemoFixture.h"
#include "core/SitesFile.h"

#include <QDeadlineTimer>
#include <QFile>

#include <signal.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

class InterruptTest : public DemoFixture {
protected:
    /// Starts the program and waits until it has written something that `enough` accepts.
    static bool RunUntil(QProcess& process, const QStringList& arguments, const std::function<bool()>& enough) {
        process.setProcessEnvironment(CliEnvironment());
        process.start(CliProgram(), arguments, QIODevice::ReadOnly);
        const QDeadlineTimer limit(60'000);
        while (!limit.hasExpired() && process.state() != QProcess::NotRunning) {
            process.waitForReadyRead(20);
            if (enough())
                return true;
        }
        return false;
    }

    static int Interrupted(QProcess& process) {
        ::kill(static_cast<pid_t>(process.processId()), SIGINT);
        if (!process.waitForFinished(20'000)) {
            process.kill();
            process.waitForFinished(5000);
        }
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
};

TEST_F(InterruptTest, HarvestKeepsTheLeadsSoFar) {
    const DemoSite canada{u"KVPN002001"_s, 1};
    const QString file = Path(u"leads.jsonl"_s);
    QStringList arguments = Harvest(canada, {u"--out"_s, file});
    // Slow enough not to end by itself, quick enough for a first page soon.
    arguments[arguments.indexOf(u"--pace"_s) + 1] = u"0.3"_s;
    QProcess process;
    ASSERT_TRUE(RunUntil(process, arguments, [&] { return QFile::exists(file) && FileContent(file).count('\n') >= 3; }))
        << process.readAllStandardError().toStdString();
    EXPECT_EQ(Interrupted(process), 130);
    const std::vector<Lead> found = LeadsOfJsonl(FileContent(file));
    std::vector<Lead> planted = Planted(canada);
    ASSERT_LT(found.size(), planted.size());
    planted.resize(found.size());
    ExpectSameLeads(found, planted);
}

// Killed, a program cannot write what it still holds.
TEST_F(InterruptTest, WritesEveryLeadAtOnceToStandardOutput) {
    QStringList arguments = Harvest({u"KVPN002001"_s, 1}, {u"--format"_s, u"jsonl"_s});
    arguments[arguments.indexOf(u"--pace"_s) + 1] = u"0.3"_s;
    QProcess process;
    QByteArray printed;
    ASSERT_TRUE(RunUntil(process, arguments, [&] {
        printed += process.readAllStandardOutput();
        return printed.count('\n') >= 3;
    })) << process.readAllStandardError().toStdString();
    process.kill();
    ASSERT_TRUE(process.waitForFinished(20'000));
    printed += process.readAllStandardOutput();
    EXPECT_TRUE(printed.endsWith("}\n")) << printed.right(60).toStdString();
}

// Leads are gathered while a page is read, but none is kept back while the next page is waited for.
TEST_F(InterruptTest, ParseWritesAPageBeforeTheNextIsRead) {
    const QString folder = QStringLiteral(PROJECT_DIR "/tests/data/pages/KVPN002001-layout1/");
    const QString late = Path(u"late.html"_s);
    ASSERT_EQ(::mkfifo(late.toLocal8Bit().constData(), 0600), 0);
    const QString file = Path(u"leads.jsonl"_s);
    const auto lines = FileContent(folder + u"leads.jsonl"_s).count('\n');
    QProcess process;
    EXPECT_TRUE(RunUntil(process,
                         {u"parse"_s, u"--site"_s, u"KVPN002001"_s, u"--sites"_s, folder + u"../sites.ini"_s,
                          u"--out"_s, file, folder + u"results.html"_s, late},
                         [&] { return QFile::exists(file) && FileContent(file).count('\n') == lines; }));
    process.kill();
    ASSERT_TRUE(process.waitForFinished(20'000));
}

TEST_F(InterruptTest, DemoServesUntilItIsEnded) {
    QProcess process;
    QByteArray printed;
    ASSERT_TRUE(RunUntil(process, {u"demo"_s},
                         [&] {
                             printed += process.readAllStandardOutput();
                             return printed.contains("[KVPE001005]") && printed.endsWith('\n') &&
                                    SitesFile::Parse(printed, u"demo"_s, SiteAdapters()).Problems.empty();
                         }))
        << printed.toStdString() << process.readAllStandardError().toStdString();
    const SitesFile sites = SitesFile::Parse(printed, u"demo"_s, SiteAdapters());
    for (const SiteEntry& site : sites.Sites)
        EXPECT_EQ(RunCli({u"fetch"_s, u"--pace"_s, u"0"_s, QString(site.Base + u'/')}).Status, 0)
            << site.Code.toStdString();
    EXPECT_EQ(Interrupted(process), 130);
}

} // namespace
} // namespace Brindle::Test
