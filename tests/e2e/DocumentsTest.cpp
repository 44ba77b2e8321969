#include "DemoFixture.h"
#include "cli/CommandLine.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <set>
#include <utility>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

struct Written {
    QString Where; ///< file and line
    QString Text;  ///< from brindle-cli on
};

// The commands in the code blocks of a document, fenced or indented ones.
void Collect(const QString& fileName, std::vector<Written>& commands) {
    static const QRegularExpression command(u"^(    )?(?:build/bin/)?brindle-cli (.*)$"_s);
    const QStringList lines = QString::fromUtf8(FileContent(fileName)).split(u'\n');
    bool inBlock = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].startsWith(u"```"))
            inBlock = !inBlock;
        const auto match = command.match(lines[i]);
        if (!match.hasMatch() || !(inBlock || match.hasCaptured(1)))
            continue;
        Written found{QFileInfo(fileName).fileName() + u':' + QString::number(i + 1), match.captured(2)};
        while (found.Text.endsWith(u'\\') && i + 1 < lines.size()) {
            found.Text.chop(1);
            found.Text += lines[++i];
        }
        found.Text.remove(QRegularExpression(u"\\s+#\\s.*$"_s)); // what the command is for
        commands.push_back(found);
    }
}

std::vector<Written> CommandsOfDocuments() {
    const QDir root(QStringLiteral(PROJECT_DIR));
    std::vector<Written> commands;
    Collect(root.filePath(u"README.md"_s), commands);
    for (const QFileInfo& file : QDir(root.filePath(u"docs"_s)).entryInfoList({u"*.md"_s}, QDir::Files, QDir::Name))
        Collect(file.filePath(), commands);
    return commands;
}

// As a shell takes them apart: blanks, and quotes of both kinds.
QStringList ArgumentsOf(const QString& text) {
    QStringList arguments;
    QString argument;
    QChar quote;
    bool inside = false;
    for (const QChar c : QString(text + u' ')) {
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            else
                argument += c;
        } else if (c == u'"' || c == u'\'') {
            quote = c;
            inside = true;
        } else if (c != u' ') {
            argument += c;
            inside = true;
        } else if (inside) {
            arguments.append(std::exchange(argument, QString()));
            inside = false;
        }
    }
    return arguments;
}

// What stands for the reader's own addresses, takes a server of his or a table of his, or never ends by itself.
bool IsPattern(const Written& command) {
    static const QRegularExpression pattern(
        u"\u2026|postgresql://|\\b(?:CODE|URL|FILE)\\b|^(?:demo|work|run|searches)\\b"_s);
    return command.Text.contains(pattern);
}

class DocumentsTest : public DemoFixture {
protected:
    DocumentsTest() : before_(QDir::currentPath()) { QDir::setCurrent(Path({})); }
    ~DocumentsTest() override { QDir::setCurrent(before_); }

private:
    QString before_;
};

TEST_F(DocumentsTest, EveryCommandIsOneThatTheProgramTakes) {
    for (const Written& command : CommandsOfDocuments())
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

    std::set<QString> run;
    for (const Written& command : CommandsOfDocuments()) {
        if (IsPattern(command) || !run.insert(command.Text).second)
            continue;
        const Outcome outcome = RunCli(ArgumentsOf(command.Text));
        EXPECT_EQ(outcome.Status, 0) << command.Where.toStdString() << ": " << command.Text.toStdString() << "\n"
                                     << outcome.Err.toStdString();
    }
    EXPECT_GE(run.size(), 8U) << "the documents have commands to try";
}

} // namespace
} // namespace Brindle::Test
