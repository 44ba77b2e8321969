#include "cli/CommandLine.h"

#include "PrintTo.h"
#include "cli/Console.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

CommandLine Parsed(const char* arguments) {
    return ParseCommandLine(QString::fromUtf8(arguments).split(u' ', Qt::SkipEmptyParts));
}

QString Refused(const char* arguments) {
    try {
        Parsed(arguments);
    } catch (const UsageError& error) {
        return error.Message();
    }
    return {};
}

TEST(ParseCommandLine, TakesOptionsInAnyOrderAndForm) {
    const CommandLine line =
        Parsed("--quiet parse --set a.b=c=d --site=X one.html --set e= --variant 2 -- --two.html -");
    EXPECT_EQ(line.Name, Command::Parse);
    EXPECT_EQ(line.Arguments, (QStringList{u"one.html"_s, u"--two.html"_s, u"-"_s}));
    EXPECT_EQ(line.Overrides, (QStringList{u"a.b=c=d"_s, u"e="_s}));
    EXPECT_EQ(line.Site, u"X"_s);
    EXPECT_EQ(line.Variant, 2);
    EXPECT_TRUE(line.Quiet);
    EXPECT_EQ(line.Markup, MarkupSource::Site);
    EXPECT_EQ(Parsed("harvest --site X --start u --pace 0.25 --patience 1.5").Pace, 0.25);
    EXPECT_EQ(Parsed("harvest --site X --start u --patience 1.5").PatienceSeconds, 1.5);
    // Help and version need nothing else to be right.
    EXPECT_EQ(Parsed("harvest --help").Name, Command::Help);
    EXPECT_EQ(Parsed("--version x").Name, Command::Version);
}

TEST(ParseCommandLine, TakesTheFormatFromTheFileUnlessItIsGiven) {
    EXPECT_EQ(Parsed("harvest --site X --demo").Format, LeadFormat::Csv);
    EXPECT_EQ(Parsed("harvest --site X --demo --out leads.jsonl").Format, LeadFormat::JsonLines);
    EXPECT_EQ(Parsed("harvest --site X --demo --out leads.txt").Format, LeadFormat::Csv);
    EXPECT_EQ(Parsed("harvest --format csv --site X --demo --out leads.jsonl").Format, LeadFormat::Csv);
}

TEST(ParseCommandLine, SaysWhatIsWrong) {
    const std::pair<const char*, QStringView> cases[]{
        {"", u"no command"},
        {"havest", u"havest"},
        {"sites --what x", u"--what does not go with sites"},
        {"sites --wat", u"--wat"},
        {"sites extra", u"extra"},
        {"harvest --start u", u"--site CODE is missing"},
        {"harvest --site X", u"--start URL is missing"},
        {"harvest --site X --start", u"--start: its value is missing"},
        {"harvest --site X --start u --what w", u"do not go together"},
        {"harvest --site X --recipe r --start u", u"do not go together"},
        {"harvest --site X --demo --sites s", u"--demo"},
        {"harvest --site X --start u --quiet=1", u"--quiet takes no value"},
        {"harvest --site X --start u --pace 1.5", u"1.5"},
        {"harvest --site X --start u --pace nan", u"nan"},
        {"harvest --site X --start u --max-pages 0", u"whole number"},
        {"harvest --site X --start u --max-pages 99999999999999999999", u"whole number"},
        {"harvest --site X --start u --browser ie", u"neither static nor web"},
        {"harvest --site X --start u --format doc", u"doc"},
        {"parse --site X", u"something is missing"},
        {"parse --site X --variant 3 p", u"3"},
        {"emails a b", u"b"},
        {"next page.html", u"--url URL is missing"},
        {"teach --url u page.html", u"--example"},
    };
    for (const auto& [arguments, expected] : cases)
        EXPECT_TRUE(Refused(arguments).contains(expected)) << arguments << ": " << Refused(arguments).toStdString();
}

// The manual page and the completions are made from the help as well.
TEST(UsageText, HasALineForEveryCommandAndOption) {
    const QString text = UsageText();
    for (const QString& name : CommandNames() + OptionNames())
        EXPECT_TRUE(text.contains(u"\n  "_s + name + u' ')) << name.toStdString();
    for (const QString& line : text.split(u'\n'))
        EXPECT_LE(line.size(), 120) << line.toStdString();
}

TEST(LiveLine, FitsATerminalAndCannotSteerIt) {
    EXPECT_EQ(LiveLine(65, 3, 57, u"http://a.test/"_s), u"1:05  3 pages  57 leads  http://a.test/"_s);
    EXPECT_EQ(LiveLine(3600, 0, 0, u"a\x1B[2J\r\nb\u009Bc"_s), u"60:00  0 pages  0 leads  a [2J  b c"_s);
    EXPECT_EQ(LiveLine(0, 0, 0, QString(500, u'x')).size(), 78);
}

} // namespace
} // namespace Brindle
