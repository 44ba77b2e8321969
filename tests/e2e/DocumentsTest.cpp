#include "DemoFixture.h"
#include "cli/CommandLine.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <set>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

struct Written {
    QString Where; ///< file and line
    QString Text;  ///< from brindle-cli on
};

// The commands in the code blocks of a document.
void Collect(const QString& fileName, std::vector<Written>& commands) {
    static const QRegularExpression command(u"^(?:build/bin/)?brindle-cli (.*)$"_s);
    const QStringList lines = QString::fromUtf8(FileContent(fileName)).split(u'\n');
    bool inBlock = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines[i].startsWith(u"```"))
            inBlock = !inBlock;
        const auto match = command.match(lines[i]);
        if (!inBlock || !match.hasMatch())
            continue;
        Written found{QFileInfo(fileName).fileName() + u':' + QString::number(i + 1), match.captured(1)};
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

QStringList ArgumentsOf(QString text) {
    return QProcess::splitCommand(text.replace(u'\'', u'"'));
}

// What stands for the reader's own addresses, takes a server of his, or never ends by itself.
bool IsPattern(const Written& command) {
    return command.Text.contains(u'\u2026') || command.Text.contains(u"postgresql://") ||
           command.Text.startsWith(u"demo") || command.Text.startsWith(u"work");
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
    QByteArray page = "<html><head><title>Bakeries</title></head><body><ul class=results>";
    for (const QByteArray name :
         {"Blue Door Bakery", "Crumb and Crust", "Old Mill Bread", "Rye Corner", "Sunrise Ovens"})
        page += "<li class=hit><h2><a href='/biz/" + name.toLower().replace(' ', '-') + "'>" + name +
                "</a></h2><p class=tel>(416) 555-01" + QByteArray::number(10 + name.size()) + "</p></li>";
    Write(u"saved-page.html"_s, page + "</ul><a rel=next href='?page=2'>Next</a></body></html>");
    const Outcome fetched = RunCli({u"fetch"_s, u"--pace"_s, u"0"_s, Server().FirstResultPage(u"KVPN002001"_s, 1)});
    Write(u"result-page.html"_s, fetched.Out);
    for (const QString& list : {u"january.csv"_s, u"february.xlsx"_s, u"cards.vcf"_s})
        RunCli({u"harvest"_s, u"--demo"_s, u"--site"_s, u"KVPE001004"_s, u"--pace"_s, u"0"_s, u"--out"_s, list});
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
