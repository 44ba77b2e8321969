#include "DemoFixture.h"

#include <QDir>

#include <algorithm>
#include <httplib.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

const DemoSite canada{u"KVPN002001"_s, 1};

class HarvestOptionsTest : public DemoFixture {};

// Without --format the suffix of the file decides, and without a suffix it is csv.
TEST_F(HarvestOptionsTest, WritesTheFormatThatTheFileNameAsksFor) {
    const std::vector<Lead> planted = Planted(canada);
    QStringList arguments = Harvest(canada);
    arguments.remove(arguments.indexOf(u"--format"_s), 2);
    const auto runTo = [&](const QString& file) {
        const Outcome outcome = RunCli(arguments + QStringList{u"--out"_s, file});
        EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        EXPECT_TRUE(outcome.Out.isEmpty());
        return FileContent(file);
    };
    EXPECT_EQ(runTo(Path(u"leads.csv"_s)), CsvOf(planted));
    ExpectSameLeads(LeadsOfJsonl(runTo(Path(u"leads.jsonl"_s))), planted);
    EXPECT_EQ(runTo(Path(u"leads"_s)), CsvOf(planted));
    EXPECT_EQ(RunCli(arguments).Out, CsvOf(planted));
}

TEST_F(HarvestOptionsTest, ReplacesAnOlderFile) {
    const QString file = Write(u"old.csv"_s, QByteArray(1 << 20, 'x'));
    QStringList arguments = Harvest(canada, {u"--out"_s, file});
    arguments.remove(arguments.indexOf(u"--format"_s), 2);
    ASSERT_EQ(RunCli(arguments).Status, 0);
    EXPECT_EQ(FileContent(file), CsvOf(Planted(canada)));
}

TEST_F(HarvestOptionsTest, ColumnsAndDelimiterAreThoseOfTheSettings) {
    QStringList arguments = Harvest(canada, {u"--set"_s, u"eDelimiter=;"_s, u"--set"_s, u"eExportFields=8,5"_s});
    arguments[arguments.indexOf(u"jsonl"_s)] = u"csv"_s;
    QString expected = u"\"State\";\"Phone\"\r\n"_s;
    for (const Lead& lead : Planted(canada))
        expected += u'"' + lead.State + u"\";\"" + lead.Phone + u"\"\r\n";
    EXPECT_EQ(RunCli(arguments).Out, expected.toUtf8());
}

TEST_F(HarvestOptionsTest, EndsAfterTheNumberOfPagesThatWasAskedFor) {
    const Outcome outcome = RunCli(Harvest(canada, {u"--max-pages"_s, u"2"_s}));
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    // Two on top of every page and 22 of its own.
    std::vector<Lead> planted = Planted(canada);
    planted.resize(46);
    ExpectSameLeads(LeadsOfJsonl(outcome.Out), planted);
}

// What is saved as it is found stands in the folder, and only there. No duplicates are sorted out on this way.
TEST_F(HarvestOptionsTest, AutomaticSavingWritesItsOwnFile) {
    ASSERT_TRUE(QDir().mkpath(Path(u"auto"_s)));
    const Outcome outcome =
        RunCli(Harvest(canada, {u"--set"_s, u"cExportAutomatic=-1"_s, u"--set"_s, u"cExportManually=0"_s, u"--set"_s,
                                u"eExportFolder=" + Path(u"auto"_s), u"--out"_s, Path(u"out.csv"_s)}));
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    const QStringList files = QDir(Path(u"auto"_s)).entryList(QDir::Files);
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(files.first().startsWith(u"Results "_s) && files.first().endsWith(u".csv"_s))
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
    const QString out = Path(u"out.csv"_s);
    EXPECT_TRUE(!QFile::exists(out) || FileContent(out).isEmpty());

    const QString book = Path(u"out.xlsx"_s);
    const Outcome again =
        RunCli(Harvest(canada, {u"--set"_s, u"cExportAutomatic=-1"_s, u"--set"_s, u"eExportFolder=" + Path(u"auto"_s),
                                u"--format"_s, u"xlsx"_s, u"--out"_s, book, u"--max-pages"_s, u"1"_s}));
    EXPECT_EQ(again.Status, 0) << again.Err.toStdString();
    EXPECT_FALSE(QFile::exists(book));
}

// On a terminal or not, progress goes to standard error, with the addresses of the pages and how often a field is
// filled at the end.
TEST_F(HarvestOptionsTest, TellsOnStandardErrorHowItGoes) {
    const Outcome outcome = RunCli(Harvest(canada));
    EXPECT_TRUE(outcome.Err.contains(Server().FirstResultPage(canada.Code).toUtf8())) << outcome.Err.toStdString();
    for (const QString& caption : EnglishCaptions())
        EXPECT_TRUE(outcome.Err.contains(caption.toUtf8())) << caption.toStdString();
    EXPECT_TRUE(RunCli(Harvest(canada, {u"--quiet"_s})).Err.isEmpty());
}

TEST_F(DemoFixture, APageThatCannotBeReadToItsEndIsSaidAndCounted) {
    httplib::Server server;
    server.Get("/", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("<body class=row-fluid><div><a class=\"link-wrapper clickstream-link\" href=\"/d\"></a><p "
                             "itemprop=\"name\">Bar</p></div><p id=footer-wrapper>",
                             "text/html");
    });
    server.Get("/d", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("<body><p class=address-location>Springfield</p>", "text/html");
    });
    const QString base = u"http://127.0.0.1:%1"_s.arg(server.bind_to_any_port("127.0.0.1"));
    std::thread serving([&] { server.listen_after_bind(); });
    const QString sites =
        Write(u"own.ini"_s, u"[map]\nbase=http://maps.test\n[KVPN001001]\nbase=%1\nlabel=USA\n"_s.arg(base).toUtf8());
    const Outcome outcome = RunCli({u"harvest"_s, u"--sites"_s, sites, u"--site"_s, u"KVPN001001"_s, u"--start"_s,
                                    base + u'/', u"--pace"_s, u"0"_s},
                                   10'000);
    server.stop();
    serving.join();
    EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    EXPECT_TRUE(outcome.ErrText().contains(base + u"/: not read to the end: the location of " + base + u"/d"))
        << outcome.Err.toStdString();
    EXPECT_TRUE(outcome.Err.contains("1 page not read to the end")) << outcome.Err.toStdString();
}

// The page announces a next one but has no link to it, and its lead has no link that would hold it back when the page
// is read again.
TEST_F(DemoFixture, EndsWhenAPageComesAgainWithLeadsThatHaveNoLink) {
    httplib::Server server;
    server.Get("/", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("<body class=listing-top><h2 class=\"org fn\"><a>Bar</a></h2><p id=footer>Successivo",
                             "text/html");
    });
    const QString base = u"http://127.0.0.1:%1"_s.arg(server.bind_to_any_port("127.0.0.1"));
    std::thread serving([&] { server.listen_after_bind(); });
    const QString sites =
        Write(u"own.ini"_s, u"[map]\nbase=http://maps.test\n[KVPE001001]\nbase=%1\nlabel=Italy\n"_s.arg(base).toUtf8());
    const Outcome outcome = RunCli({u"harvest"_s, u"--sites"_s, sites, u"--site"_s, u"KVPE001001"_s, u"--start"_s,
                                    base + u'/', u"--pace"_s, u"0"_s, u"--format"_s, u"jsonl"_s},
                                   10'000);
    server.stop();
    serving.join();
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.right(300).toStdString();
    Lead lead;
    lead.Name = u"Bar"_s;
    lead.Country = u"Italy"_s;
    ExpectSameLeads(LeadsOfJsonl(outcome.Out), {lead, lead});
}

} // namespace
} // namespace Brindle::Test
