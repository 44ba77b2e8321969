#include "DemoFixture.h"

#include <QDir>

#include <algorithm>
#include <httplib.h>
#include <thread>

namespace Brindle::Test {
namespace {

const DemoSite canada{QStringLiteral("KVPN002001"), 1};

class HarvestOptionsTest : public DemoFixture {};

// Without --format the suffix of the file decides, and without a suffix it is csv.
TEST_F(HarvestOptionsTest, WritesTheFormatThatTheFileNameAsksFor) {
    const std::vector<Lead> planted = Planted(canada);
    QStringList arguments = Harvest(canada);
    arguments.remove(arguments.indexOf(QStringLiteral("--format")), 2);
    const auto runTo = [&](const QString& file) {
        const Outcome outcome = RunCli(arguments + QStringList{QStringLiteral("--out"), file});
        EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        EXPECT_TRUE(outcome.Out.isEmpty());
        return FileContent(file);
    };
    EXPECT_EQ(runTo(Path(QStringLiteral("leads.csv"))), CsvOf(planted));
    ExpectSameLeads(LeadsOfJsonl(runTo(Path(QStringLiteral("leads.jsonl")))), planted);
    EXPECT_EQ(runTo(Path(QStringLiteral("leads"))), CsvOf(planted));
    EXPECT_EQ(RunCli(arguments).Out, CsvOf(planted));
}

TEST_F(HarvestOptionsTest, ReplacesAnOlderFile) {
    const QString file = Write(QStringLiteral("old.csv"), QByteArray(1 << 20, 'x'));
    QStringList arguments = Harvest(canada, {QStringLiteral("--out"), file});
    arguments.remove(arguments.indexOf(QStringLiteral("--format")), 2);
    ASSERT_EQ(RunCli(arguments).Status, 0);
    EXPECT_EQ(FileContent(file), CsvOf(Planted(canada)));
}

TEST_F(HarvestOptionsTest, ColumnsAndDelimiterAreThoseOfTheSettings) {
    QStringList arguments = Harvest(canada, {QStringLiteral("--set"), QStringLiteral("eDelimiter=;"),
                                             QStringLiteral("--set"), QStringLiteral("eExportFields=8,5")});
    arguments[arguments.indexOf(QStringLiteral("jsonl"))] = QStringLiteral("csv");
    QString expected = QStringLiteral("\"State\";\"Phone\"\r\n");
    for (const Lead& lead : Planted(canada))
        expected += u'"' + lead.State + u"\";\"" + lead.Phone + u"\"\r\n";
    EXPECT_EQ(RunCli(arguments).Out, expected.toUtf8());
}

TEST_F(HarvestOptionsTest, EndsAfterTheNumberOfPagesThatWasAskedFor) {
    const Outcome outcome = RunCli(Harvest(canada, {QStringLiteral("--max-pages"), QStringLiteral("2")}));
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    // Two on top of every page and 22 of its own.
    std::vector<Lead> planted = Planted(canada);
    planted.resize(46);
    ExpectSameLeads(LeadsOfJsonl(outcome.Out), planted);
}

// What is saved as it is found stands in the folder, and only there. No duplicates are sorted out on this way.
TEST_F(HarvestOptionsTest, AutomaticSavingWritesItsOwnFile) {
    ASSERT_TRUE(QDir().mkpath(Path(QStringLiteral("auto"))));
    const Outcome outcome =
        RunCli(Harvest(canada, {QStringLiteral("--set"), QStringLiteral("cExportAutomatic=-1"), QStringLiteral("--set"),
                                QStringLiteral("cExportManually=0"), QStringLiteral("--set"),
                                u"eExportFolder=" + Path(QStringLiteral("auto")), QStringLiteral("--out"),
                                Path(QStringLiteral("out.csv"))}));
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    const QStringList files = QDir(Path(QStringLiteral("auto"))).entryList(QDir::Files);
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(files.first().startsWith(QStringLiteral("Results ")) && files.first().endsWith(QStringLiteral(".csv")))
        << files.first().toStdString();
    QList<QByteArray> lines = FileContent(Path(u"auto/" + files.first())).split('\n');
    EXPECT_GT(lines.size(), static_cast<qsizetype>(Planted(canada).size()) + 2);
    // Repeated businesses aside, of which two have their links written in capitals, it is the whole list.
    QList<QByteArray> once;
    QList<QByteArray> keys;
    for (const QByteArray& line : lines)
        if (!keys.contains(line.toUpper())) {
            keys.append(line.toUpper());
            once.append(line);
        }
    EXPECT_EQ(once, CsvOf(Planted(canada)).split('\n'));
    const QString out = Path(QStringLiteral("out.csv"));
    EXPECT_TRUE(!QFile::exists(out) || FileContent(out).isEmpty());
}

// On a terminal or not, progress goes to standard error, with the addresses of the pages and how often a field is
// filled at the end.
TEST_F(HarvestOptionsTest, TellsOnStandardErrorHowItGoes) {
    const Outcome outcome = RunCli(Harvest(canada));
    EXPECT_TRUE(outcome.Err.contains(Server().FirstResultPage(canada.Code).toUtf8())) << outcome.Err.toStdString();
    for (const QString& caption : EnglishCaptions())
        EXPECT_TRUE(outcome.Err.contains(caption.toUtf8())) << caption.toStdString();
    EXPECT_TRUE(RunCli(Harvest(canada, {QStringLiteral("--quiet")})).Err.isEmpty());
}

// The page announces a next one but has no link to it, and its lead has no link that would hold it back when the page
// is read again.
TEST_F(DemoFixture, EndsWhenAPageComesAgainWithLeadsThatHaveNoLink) {
    httplib::Server server;
    server.Get("/", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("<body class=listing-top><h2 class=\"org fn\"><a>Bar</a></h2><p id=footer>Successivo",
                             "text/html");
    });
    const QString base = QStringLiteral("http://127.0.0.1:%1").arg(server.bind_to_any_port("127.0.0.1"));
    std::thread serving([&] { server.listen_after_bind(); });
    const QString sites =
        Write(QStringLiteral("own.ini"),
              QStringLiteral("[map]\nbase=http://maps.test\n[KVPE001001]\nbase=%1\nlabel=Italy\n").arg(base).toUtf8());
    const Outcome outcome =
        RunCli({QStringLiteral("harvest"), QStringLiteral("--sites"), sites, QStringLiteral("--site"),
                QStringLiteral("KVPE001001"), QStringLiteral("--start"), base + u'/', QStringLiteral("--pace"),
                QStringLiteral("0"), QStringLiteral("--format"), QStringLiteral("jsonl")},
               10'000);
    server.stop();
    serving.join();
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.right(300).toStdString();
    Lead lead;
    lead.Name = QStringLiteral("Bar");
    lead.Country = QStringLiteral("Italy");
    ExpectSameLeads(LeadsOfJsonl(outcome.Out), {lead, lead});
}

} // namespace
} // namespace Brindle::Test
