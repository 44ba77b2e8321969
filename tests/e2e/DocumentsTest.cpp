#include "Documents.h"

#include "DemoFixture.h"
#include "PostgresServer.h"
#include "cli/CommandLine.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <memory>
#include <set>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

// Those of brindle-cli, from its name on.
std::vector<Written> CommandsOf(const std::vector<Written>& code) {
    static const QRegularExpression command(u"^(?:build/bin/)?brindle-cli (.*)$"_s);
    std::vector<Written> commands;
    for (const Written& line : code)
        if (const auto match = command.match(line.Text); match.hasMatch())
            commands.push_back({line.Where, match.captured(1)});
    return commands;
}

std::vector<Written> CommandsOfDocuments() {
    return CommandsOf(LinesOfCodeBlocks());
}

// Serves until it is ended, so it is tried elsewhere.
bool NeverEnds(const Written& command) {
    return command.Text == u"demo" || command.Text.startsWith(u"demo ");
}

class DocumentsTest : public DemoFixture {
protected:
    DocumentsTest() : before_(QDir::currentPath()) { QDir::setCurrent(Path({})); }
    ~DocumentsTest() override { QDir::setCurrent(before_); }

    /// The arguments with something of the test's own for what stands for the reader's: addresses, a directory, a
    /// server.
    QStringList Prepared(const Written& command, const QString& postgres) const {
        QString text = command.Text;
        const QString start = Server().FirstResultPage(u"KVPE001004"_s, 1);
        const bool own = text.contains(u'\u2026') || text.contains(QRegularExpression(u"\\b(?:CODE|URL)\\b"_s));
        text.replace(u"postgresql://brindle@db/leads"_s, postgres);
        text.replace(u"emails http://\u2026"_s, u"emails "_s + Server().Businesses() + u"/plain/two-movers/");
        text.replace(u"KVPN002001 --start 'http://\u2026/search?\u2026'"_s, u"KVPE001004 --start "_s + start);
        text.replace(u"--site CODE page.html"_s, u"--site KVPN002001 result-page.html"_s);
        text.replace(u"--site CODE"_s, u"--site KVPE001004"_s).replace(u"--start URL"_s, u"--start "_s + start);
        QStringList arguments = ArgumentsOf(text);
        if (own && arguments.first() == u"harvest")
            arguments += {u"--sites"_s, SitesFileName(), u"--pace"_s, u"0"_s};
        return arguments;
    }

private:
    QString before_;
};

TEST_F(DocumentsTest, EveryCommandIsOneThatTheProgramTakes) {
    std::vector<Written> commands = CommandsOfDocuments();
    for (const Written& command : CommandsOf(InlineCode()))
        if (command.Text.contains(u' ')) // else the command is only named
            commands.push_back(command);
    for (const Written& command : commands)
        EXPECT_NO_THROW(ParseCommandLine(ArgumentsOf(command.Text)))
            << command.Where.toStdString() << ": " << command.Text.toStdString();
}

// In a folder with the files that the documents speak of.
TEST_F(DocumentsTest, EveryCommandThatCanBeRunWorks) {
    QByteArray list = "<html><head><title>Bakeries</title></head><body><ul class=results>"
                      "<li class=hit><h2><a href='/biz/joes'>Joe's Pizza</a></h2><p class=tel>416-555-0100</p></li>";
    int number = 1;
    for (const char* const name :
         {"Blue Door Bakery", "Crumb and Crust", "Old Mill Bread", "Rye Corner", "Sunrise Ovens"}) {
        const QByteArray id = QByteArray::number(++number);
        list += QByteArray("<li class=hit><h2><a href='/biz/") + id + "'>" + name +
                "</a></h2><p class=tel>416-555-010" + id + "</p></li>";
    }
    list += "</ul><a rel=next href='?page=2'>Next</a></body></html>";
    for (const QString& name : {u"saved-page.html"_s, u"page.html"_s, u"page1.html"_s, u"page2.html"_s})
        Write(name, list);
    const Outcome fetched = RunCli({u"fetch"_s, u"--pace"_s, u"0"_s, Server().FirstResultPage(u"KVPN002001"_s, 1)});
    Write(u"result-page.html"_s, fetched.Out);
    for (const QString& file : {u"january.csv"_s, u"february.xlsx"_s, u"cards.vcf"_s})
        RunCli({u"harvest"_s, u"--demo"_s, u"--site"_s, u"KVPE001004"_s, u"--pace"_s, u"0"_s, u"--out"_s, file,
                u"--store"_s, u"leads.db"_s});
    ASSERT_TRUE(QDir().mkdir(u"languages"_s));
    ASSERT_TRUE(QFile::copy(QStringLiteral(PROJECT_DIR) + u"/languages/fr.dat", u"languages/fr.dat"_s));

    const QByteArray start = Server().ModernSites().front().Start.toUtf8();
    Write(u"searches.csv"_s, "site,start\nAUTO," + start + "\n");

    std::unique_ptr<PostgresServer> postgres;
    std::set<QString> run;
    for (const Written& command : CommandsOfDocuments()) {
        const bool onServer = command.Text.contains(u"postgresql:");
        if (NeverEnds(command) || (onServer && !PostgresServer::Installed()) || !run.insert(command.Text).second)
            continue;
        if (onServer && !postgres)
            postgres = std::make_unique<PostgresServer>();
        const Outcome outcome = RunCli(Prepared(command, postgres ? postgres->Address() : QString()));
        EXPECT_EQ(outcome.Status, 0) << command.Where.toStdString() << ": " << command.Text.toStdString() << "\n"
                                     << outcome.Err.toStdString();
    }
    EXPECT_GE(run.size(), 25U) << "the documents have commands to try";
}

// "./test -R PATTERN" stands behind many a claim: each pattern chooses tests.
TEST_F(DocumentsTest, EveryPatternOfTestsChoosesSome) {
    QProcess ctest;
    ctest.setWorkingDirectory(QFileInfo(CliProgram()).path() + u"/..");
    ctest.start(u"ctest"_s, {u"-N"_s}, QIODevice::ReadOnly);
    if (!ctest.waitForFinished(60'000))
        GTEST_SKIP() << "there is no ctest here";
    QStringList tests;
    static const QRegularExpression line(u"^ *Test +#\\d+: (.*)$"_s, QRegularExpression::MultilineOption);
    for (auto match = line.globalMatch(QString::fromUtf8(ctest.readAllStandardOutput())); match.hasNext();)
        tests.append(match.next().captured(1));
    if (tests.size() < 100)
        GTEST_SKIP() << "these tests were not built by CMake";
    static const QRegularExpression asked(u"\\./test -R (?:\"([^\"]+)\"|([\\w.-]+))"_s);
    int count = 0;
    for (const QString& file : Documents()) {
        const QString text = QString::fromUtf8(FileContent(file));
        for (auto match = asked.globalMatch(text); match.hasNext();) {
            const auto found = match.next();
            QString pattern = found.captured(1) + found.captured(2);
            pattern.replace(u"\\|"_s, u"|"_s); // as a table has to have it
            ++count;
            EXPECT_FALSE(tests.filter(QRegularExpression(pattern)).isEmpty())
                << QFileInfo(file).fileName().toStdString() << ": " << pattern.toStdString();
        }
    }
    EXPECT_GE(count, 4);
}

// Scripts, folders and files of the tree, wherever a document names them.
TEST_F(DocumentsTest, WhatIsNamedIsThere) {
    const QDir root(QStringLiteral(PROJECT_DIR));
    static const QRegularExpression named(
        u"(?:^|[\\s`(])(?:\\./)?((?:\\.ci|bench|config|docs|fuzz|languages|packaging|scripts|src|tests)/[\\w.@/-]*\\w|\\./(?:run|test))\\b"_s);
    int count = 0;
    for (const QString& file : Documents()) {
        const QString text = QString::fromUtf8(FileContent(file));
        for (auto match = named.globalMatch(text); match.hasNext();) {
            const QString path = match.next().captured(1);
            ++count;
            EXPECT_TRUE(root.exists(path)) << QFileInfo(file).fileName().toStdString() << ": " << path.toStdString();
        }
    }
    EXPECT_GT(count, 40);
}

} // namespace
} // namespace Brindle::Test
