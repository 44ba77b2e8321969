#include "DemoFixture.h"

#include <QDir>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

struct BadInput {
    const char* Name;
    QStringList Arguments;
    int Status;
    QStringList Said; ///< all of it stands in the one line of the message
};

void PrintTo(const BadInput& input, std::ostream* out) {
    *out << input.Name;
}

// Words of the arguments and messages that are only known once the demo runs.
QString Resolved(QString text, const QString& folder, const QString& sitesFile, Demo::DemoServer& server) {
    text.replace(u"{folder}"_s, folder);
    text.replace(u"{sites}"_s, sitesFile);
    text.replace(u"{start}"_s, server.FirstResultPage(u"KVPN002001"));
    text.replace(u"{longname}"_s, QString(70, u'n'));
    text.replace(u"{businesses}"_s, server.Businesses());
    return text;
}

QStringList Words(const char* line) {
    return QString::fromUtf8(line).split(u' ');
}

std::vector<BadInput> BadInputs() {
    const auto said = [](std::initializer_list<const char*> texts) {
        QStringList list;
        for (const char* const text : texts)
            list.append(QString::fromUtf8(text));
        return list;
    };
    return {
        // Wrong usage.
        {"NoCommand", {}, 2, {}},
        {"UnknownCommand", Words("reap"), 2, said({"reap"})},
        {"UnknownOption", Words("harvest --demo --site KVPN002001 --fast"), 2, said({"fast"})},
        {"NoSite", Words("harvest --demo"), 2, said({"--site"})},
        {"NoStart", Words("harvest --sites {sites} --site KVPN002001"), 2, said({"--start"})},
        {"UnknownSite", Words("harvest --demo --site KVPX009009"), 2, said({"KVPX009009"})},
        {"PaceTooLarge", Words("harvest --demo --site KVPN002001 --pace 1.5"), 2, said({"--pace"})},
        {"PaceNoNumber", Words("harvest --demo --site KVPN002001 --pace slow"), 2, said({"--pace", "slow"})},
        {"PagesNegative", Words("harvest --demo --site KVPN002001 --max-pages -1"), 2, said({"--max-pages"})},
        {"UnknownBrowser", Words("harvest --demo --site KVPN002001 --browser lynx"), 2, said({"lynx"})},
        {"UnknownFormat", Words("harvest --demo --site KVPN002001 --format xml"), 2, said({"xml"})},
        {"UnknownSetting", Words("harvest --demo --site KVPN002001 --set cExtractMails=-1"), 2,
         said({"cExtractMails"})},
        {"ParseWithoutPages", Words("parse --sites {sites} --site KVPN002001"), 2, {}},
        {"FetchWithoutAddress", Words("fetch"), 2, {}},
        // Files.
        {"SitesFileMissing", Words("sites --sites {folder}/none.ini"), 1, said({"{folder}/none.ini"})},
        {"SitesFileIsAFolder", Words("sites --sites {folder}"), 1, said({"{folder}"})},
        {"SiteWithoutBase", Words("harvest --sites {folder}/nobase.ini --site KVPN002001 --start {start}"), 1,
         said({"nobase.ini", "KVPN002001", "base"})},
        {"SiteWithoutLabel", Words("harvest --sites {folder}/nolabel.ini --site KVPN002001 --start {start}"), 1,
         said({"nolabel.ini", "KVPN002001", "label"})},
        {"SettingsFileMissing", Words("harvest --demo --site KVPN002001 --settings {folder}/none.dat"), 1,
         said({"none.dat"})},
        {"PageMissing", Words("parse --sites {sites} --site KVPN002001 {folder}/none.html"), 1, said({"none.html"})},
        {"OutputFolderMissing", Words("harvest --demo --site KVPN002001 --pace 0 --out {folder}/no/where.csv"), 1,
         said({"{folder}/no/where.csv"})},
        {"OutputIsAFolder", Words("harvest --demo --site KVPN002001 --pace 0 --out {folder}"), 1, said({"{folder}"})},
        // Pages.
        {"PageIsNoResultsPage", Words("parse --sites {sites} --site KVPN002001 {folder}/hello.html"), 1,
         said({"hello.html", "ypgResultsTop"})},
        {"StartIsNoResultsPage",
         Words("harvest --sites {sites} --site KVPN002001 --pace 0 --start {businesses}/plain/two-movers/"), 1,
         said({"ypgResultsTop"})},
        {"StartIsMissing", Words("harvest --sites {sites} --site KVPN002001 --pace 0 --start {businesses}/nothing"), 1,
         said({"{businesses}/nothing"})},
        {"NobodyAnswers", Words("harvest --sites {sites} --site KVPN002001 --pace 0 --start http://127.0.0.1:9/"), 1,
         said({"127.0.0.1"})},
        // A name that no question can be asked for, so none leaves this machine.
        {"NameDoesNotResolve", Words("harvest --sites {sites} --site KVPN002001 --pace 0 --start http://{longname}/"),
         1, said({"{longname}"})},
        {"FetchRefused", Words("fetch --pace 0 http://127.0.0.1:9/"), 1, said({"http://127.0.0.1:9/"})},
        {"FetchMissing", Words("fetch --pace 0 {businesses}/nothing"), 1, said({"{businesses}/nothing"})},
        {"FetchByDeadProxies",
         Words("fetch --pace 0 --patience 0.1 --set rRandomProxy=-1 --set eRandomProxies=127.0.0.1:9 http://x.test/"),
         1, said({"http://x.test/", "given up"})},
        {"EmailsOfNoWebsite", Words("emails --pace 0 {businesses}/gone/x/"), 1, said({"{businesses}/gone/x/"})},
    };
}

class BadInputTest : public DemoFixture, public testing::WithParamInterface<BadInput> {};

TEST_P(BadInputTest, SaysInOneLineWhatIsWrong) {
    const BadInput& input = GetParam();
    Write(u"hello.html"_s, "<html><body><h1>Hello</h1></body></html>");
    const QByteArray sites = Server().SitesIni().toUtf8();
    const qsizetype group = sites.indexOf("[KVPN002001]");
    const auto without = [&](const char* key) {
        const qsizetype from = sites.indexOf(key, group);
        return QByteArray(sites).remove(from, sites.indexOf('\n', from) - from);
    };
    Write(u"nobase.ini"_s, without("base="));
    Write(u"nolabel.ini"_s, without("label="));

    const auto resolved = [&](const QString& text) {
        return Resolved(text, Path(u"."_s).chopped(2), SitesFileName(), Server());
    };
    QStringList arguments;
    for (const QString& argument : input.Arguments)
        arguments.append(resolved(argument));
    const Outcome outcome = RunCli(arguments);
    EXPECT_EQ(outcome.Status, input.Status);
    // At most the line with the captions.
    EXPECT_LE(outcome.Out.count('\n'), 1) << outcome.Out.toStdString();
    // Progress may stand before it, usage behind it: the message is the one line that says all of it.
    const QStringList lines = outcome.ErrText().split(u'\n', Qt::SkipEmptyParts);
    EXPECT_FALSE(lines.isEmpty());
    const bool told = std::any_of(lines.begin(), lines.end(), [&](const QString& line) {
        return std::all_of(input.Said.begin(), input.Said.end(), [&](const QString& text) {
            return QDir::fromNativeSeparators(line).contains(resolved(text));
        });
    });
    EXPECT_TRUE(told) << outcome.Err.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Inputs, BadInputTest, testing::ValuesIn(BadInputs()),
                         [](const auto& info) { return std::string(info.param.Name); });

// The folder of the automatic file cannot be written: the harvest ends, and the lead in hand is not lost.
TEST_F(DemoFixture, LeadThatCannotBeSavedIsNotLost) {
    const DemoSite canada{u"KVPN002001"_s, 1};
    QFile file(Path(u"file"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString folder = file.fileName() + u"/below"; // which cannot be made
    for (const QString& format : {u"jsonl"_s, u"csv"_s}) {
        const Outcome outcome =
            RunCli(Harvest(canada, {u"--format"_s, format, u"--set"_s, u"cExportAutomatic=-1"_s, u"--set"_s,
                                    u"cExportManually=0"_s, u"--set"_s, u"eExportFolder=" + folder}));
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_TRUE(outcome.ErrText().contains(folder)) << outcome.Err.toStdString();
        const Lead lost = Planted(canada).front();
        if (format == u"csv")
            EXPECT_EQ(outcome.Out, CsvOf({lost}));
        else
            ExpectSameLeads(LeadsOfJsonl(outcome.Out), {lost});
    }
}

// A full disk, as far as a file can play one.
TEST_F(DemoFixture, OutputThatCannotBeWrittenIsReported) {
    if (!QFile::exists(u"/dev/full"_s))
        GTEST_SKIP() << "no /dev/full here";
    const DemoSite canada{u"KVPN002001"_s, 1};
    const Outcome outcome = RunCli(Harvest(canada, {u"--out"_s, u"/dev/full"_s}));
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_TRUE(outcome.ErrText().contains(u"/dev/full"_s)) << outcome.Err.toStdString();
}

} // namespace
} // namespace Brindle::Test
