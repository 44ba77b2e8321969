#include "DemoFixture.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

const DemoSite canada{u"KVPN002001"_s, 1};

class ExportFormatsTest : public DemoFixture {
protected:
    static Outcome HarvestTo(const QString& file, const QStringList& more = {}) {
        QStringList arguments = Harvest(canada, QStringList{u"--out"_s, file} + more);
        arguments.remove(arguments.indexOf(u"--format"_s), 2);
        return RunCli(arguments);
    }
    static std::vector<Lead> Merged(const QStringList& files, QString* report = nullptr) {
        const Outcome outcome = RunCli(QStringList{u"merge"_s} + files + QStringList{u"--format"_s, u"jsonl"_s});
        EXPECT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        if (report)
            *report = outcome.ErrText();
        return LeadsOfJsonl(outcome.Out);
    }
};

TEST_F(ExportFormatsTest, EveryFormOfAHarvestMergesBackToTheSameLeads) {
    const std::vector<Lead> planted = Planted(canada);
    QStringList files;
    for (const QString& name : {u"leads.csv"_s, u"leads.xlsx"_s, u"leads.vcf"_s, u"leads.jsonl"_s}) {
        files.append(Path(name));
        const Outcome outcome = HarvestTo(files.last());
        ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        ExpectSameLeads(Merged({files.last()}), planted);
    }
    files.append(Path(u"sheet.csv"_s));
    ASSERT_EQ(HarvestTo(files.last(), {u"--format"_s, u"csv-sheet"_s}).Status, 0);
    ASSERT_TRUE(FileContent(files.last()).startsWith("\xef\xbb\xbf"));
    QString report;
    ExpectSameLeads(Merged(files, &report), planted);
    EXPECT_TRUE(report.contains(u"%1 leads read, %2 duplicates, %3 leads written"_s.arg(planted.size() * 5)
                                    .arg(planted.size() * 4)
                                    .arg(planted.size())))
        << report.toStdString();
}

TEST_F(ExportFormatsTest, FurtherColumnsStandBehindTheFourteen) {
    const Outcome outcome =
        HarvestTo(Path(u"leads.csv"_s), {u"--columns"_s, u"Phone (international),email (checked)"_s});
    ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
    const QByteArrayList lines = FileContent(Path(u"leads.csv"_s)).split('\n');
    EXPECT_TRUE(lines[0].endsWith("\"Details Link\",\"Phone (international)\",\"Email (checked)\"\r"))
        << lines[0].toStdString();
    EXPECT_TRUE(lines[1].contains(",\"+1")) << lines[1].toStdString();
    EXPECT_EQ(HarvestTo(Path(u"x.csv"_s), {u"--columns"_s, u"Shoe size"_s}).Status, 2);
}

// Each command that fills the automatic file makes its copies, too; what a site's page says of itself goes into the
// store like all else.
TEST_F(ExportFormatsTest, AutomaticFilesOfSavedPagesHaveTheirCopies) {
    const QString page = Write(u"page.html"_s, RunCli({u"fetch"_s, Server().FirstResultPage(canada.Code)}).Out);
    const QString store = Path(u"leads.db"_s);
    const QStringList ways[]{{u"--site"_s, canada.Code}, {u"--site"_s, u"AUTO"_s, u"--url"_s, u"http://a.test/"_s}};
    for (const QStringList& way : ways) {
        const QString folder = Path(way[1]);
        const Outcome outcome =
            RunCli(QStringList{u"parse"_s, page, u"--sites"_s, SitesFileName(), u"--store"_s, store} + way +
                   QStringList{u"--set"_s, u"cExportAutomatic=-1"_s, u"--set"_s, u"eExportFolder="_s + folder,
                               u"--set"_s, u"export.workbook_at_end=true"_s, u"--set"_s,
                               u"export.sheet_csv_at_end=true"_s, u"--pace"_s, u"0"_s});
        ASSERT_EQ(outcome.Status, 0) << outcome.Err.toStdString();
        const QDir files(folder);
        const QStringList books = files.entryList({u"*.xlsx"_s});
        const QStringList sheets = files.entryList({u"*-sheet.csv"_s});
        ASSERT_EQ(books.size(), 1) << outcome.Err.toStdString();
        ASSERT_EQ(sheets.size(), 1);
        const std::vector<Lead> leads = Merged({files.filePath(books[0])});
        EXPECT_GT(leads.size(), 10U);
        ExpectSameLeads(Merged({files.filePath(sheets[0])}), leads);
        const Outcome kept = RunCli({u"leads"_s, u"--store"_s, store, u"--site"_s, way[1], u"--format"_s, u"jsonl"_s});
        EXPECT_EQ(LeadsOfJsonl(kept.Out).size(), leads.size()) << way[1].toStdString();
    }
}

// What this program writes is read by a shorter way than what others write.
TEST_F(ExportFormatsTest, JsonLinesOfOthersAreReadAsWell) {
    const QString own =
        Write(u"own.jsonl"_s, R"({"Category": "a\"b\\c\/d\n", "Business Name": "Café ☎", "Extra": "x"})");
    const QString others = Write(
        u"others.jsonl"_s,
        R"({ "Extra" : {"Category": "no"}, "Business Name":"Caf\u00e9 \u260e", "Category":"a\"b\\c\/d\n", "Fax": 7 } )");
    const std::vector<Lead> leads = Merged({own});
    ASSERT_EQ(leads.size(), 1U);
    EXPECT_EQ(leads[0].Category, u"a\"b\\c/d\n"_s);
    EXPECT_EQ(leads[0].Name, u"Café ☎"_s);
    ExpectSameLeads(Merged({others}), leads);
    const Outcome bad =
        RunCli({u"merge"_s, Write(u"bad.jsonl"_s, "{\"Fax\": \"1\"} x\n{\"Fax\": \"\t\"\n{\"Fax\": \"\xff\"}\n")});
    for (const char* const line : {"line 1:", "line 2:"})
        EXPECT_TRUE(bad.Err.contains(line)) << bad.Err.toStdString();
}

TEST_F(ExportFormatsTest, WhatCannotBeMadeIsSaid) {
    struct Case {
        QStringList Arguments;
        int Status;
        QString Said;
    };
    const Case cases[]{
        {Harvest(canada, {u"--format"_s, u"xlsx"_s}), 1, u"a workbook cannot go to standard output"_s},
        {Harvest(canada, {u"--format"_s, u"doc"_s}), 2, u"is none of csv, csv-sheet, jsonl, xlsx, vcf"_s},
        {{u"merge"_s, Path(u"missing.csv"_s)}, 1, u"missing.csv: "_s},
        {{u"merge"_s, Write(u"milk.txt"_s, "milk\nbread\n")},
         1,
         u"milk.txt: its first line has none of the captions"_s},
        {{u"merge"_s, Write(u"odd.jsonl"_s, "{}\nodd\n")}, 0, u"odd.jsonl: line 2: "_s},
    };
    for (const Case& one : cases) {
        const Outcome outcome = RunCli(one.Arguments);
        EXPECT_EQ(outcome.Status, one.Status);
        EXPECT_TRUE(outcome.ErrText().contains(one.Said)) << outcome.Err.toStdString();
    }
    // A workbook that cannot be put in place leaves what was there.
    const QString folder = Path(u"folder.xlsx"_s);
    ASSERT_TRUE(QDir().mkpath(folder));
    const Outcome outcome = HarvestTo(folder);
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_TRUE(outcome.ErrText().contains(u"folder.xlsx: "_s)) << outcome.Err.toStdString();
}

} // namespace
} // namespace Brindle::Test
