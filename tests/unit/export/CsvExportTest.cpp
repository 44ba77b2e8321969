#include "export/CsvExport.h"

#include "CodePage.h"
#include "FileSizeLimit.h"
#include "HarvestBench.h"
#include "PrintTo.h"
#include "core/Errors.h"
#include "export/CsvFormat.h"
#include "export/ExportCommand.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <numeric>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::In8Bit;
#ifdef Q_OS_UNIX
using Test::FileSizeLimit;
#endif
using Test::HarvestBench;

std::string FileText(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "(no file)";
}

// Lines of a small list, each column holding a letter: "c0" to "c13".
Lead LetterLead(QChar letter) {
    Lead lead;
    for (int column = 0; column < FieldCount; ++column)
        lead.At(column) = letter + QString::number(column);
    return lead;
}

TEST(IsExported, LooksForTheNumberAnywhereInTheText) {
    const auto columnsOf = [](const QString& exportFields) {
        QStringList columns;
        for (int column = 0; column < FieldCount; ++column)
            if (IsExported(column, exportFields))
                columns.append(QString::number(column));
        return columns.join(u' ');
    };
    EXPECT_EQ(columnsOf(u"0,2"_s), u"0 2"_s);
    EXPECT_EQ(columnsOf(u"12"_s), u"1 2 12"_s);
    EXPECT_EQ(columnsOf(u"10"_s), u"0 1 10"_s);
    EXPECT_EQ(columnsOf(u"3 1;x-4"_s), u"1 3 4"_s);
    EXPECT_EQ(columnsOf(u"none"_s), u""_s);
    EXPECT_EQ(columnsOf(CountColumns(FieldCount)), u"0 1 2 3 4 5 6 7 8 9 10 11 12 13"_s);
    EXPECT_EQ(CountColumns(0), u""_s);
}

TEST(CsvFormat, CutsTwoCharactersBehindTheLastField) {
    struct Case {
        QString Columns;
        QString Delimiter;
        std::string Header;
        std::string Record;
    };
    const Case cases[]{
        {u"0,2"_s, u","_s, "\"Category\",\"Full Address\"", "\"x0\",\"x2\""},
        {u"2"_s, u";"_s, "\"Full Address\"", "\"x2\""},
        {u"0"_s, u";"_s, "\"Category\"", "\"x0\""},
        {u"13"_s, u"\t"_s, "\"Business Name\"\t\"Address\"\t\"Details Link\"", "\"x1\"\t\"x3\"\t\"x13\""},
        {u"4"_s, u"\u20AC"_s, "\"City\"", "\"x4\""},
        // A longer delimiter leaves a part of itself at the end of the line, an empty one takes a quote along.
        {u"0,2"_s, u"||"_s, "\"Category\"||\"Full Address\"|", "\"x0\"||\"x2\"|"},
        {u"0,2"_s, u"<->"_s, "\"Category\"<->\"Full Address\"<-", "\"x0\"<->\"x2\"<-"},
        {u"0,2"_s, u""_s, "\"Category\"\"Full Address", "\"x0\"\"x2"},
        // No column: the header's only quote goes, a record gets one in any case.
        {u"x"_s, u";"_s, "", "\""},
        {u"x"_s, u""_s, "", "\""},
    };
    for (const Case& one : cases) {
        Settings settings;
        settings.eExportFields = one.Columns;
        settings.eDelimiter = one.Delimiter;
        CsvFormat format(settings);
        QByteArray bytes;
        format.AppendHeader(bytes, EnglishCaptions());
        format.AppendLead(bytes, LetterLead(u'x'));
        EXPECT_EQ(bytes.toStdString(), one.Header + "\r\n" + one.Record + "\r\n")
            << one.Columns.toStdString() << " with " << one.Delimiter.toStdString();
    }
}

TEST(CsvFormat, WritesARowOfTheListLikeALead) {
    LeadList leads;
    const QString texts[]{u""_s,       u"plain"_s,        u"Caffè"_s,        u"\u20AC uro"_s, u"\U0001F600"_s,
                          u"a\"b,c"_s, u"two\r\nlines"_s, u"\xD800 alone"_s, u"\0nul"_s,      QString(70'000, u'x')};
    for (size_t i = 0; i < std::size(texts); ++i) {
        Lead lead;
        for (size_t column = 0; column < FieldCount; ++column)
            lead.At(static_cast<int>(column)) = texts[(i + column) % std::size(texts)];
        leads.Append(lead);
    }
    for (const QString& delimiter : {u","_s, u""_s, u"\u20AC\u20AC"_s}) {
        Settings settings;
        settings.eDelimiter = delimiter;
        for (qsizetype row = 0; row < leads.Count(); ++row) {
            QByteArray fromLead;
            QByteArray fromRow;
            CsvFormat(settings).AppendLead(fromLead, leads.At(row));
            CsvFormat(settings).AppendLead(fromRow, leads.StoredAt(row));
            ASSERT_EQ(fromRow, fromLead) << row;
        }
    }
    Settings settings;
    settings.eExportFields = u"2"_s;
    QByteArray bytes;
    CsvFormat(settings).AppendLead(bytes, leads.StoredAt(0));
    CsvFormat(settings).AppendLead(bytes, leads.StoredAt(3));
    CsvFormat(settings).AppendLead(bytes, leads.StoredAt(4));
    EXPECT_EQ(bytes.toStdString(), In8Bit("\"Caffè\"\r\n\"a\"b,c\"\r\n\"two\r\nlines\"\r\n"));
}

class SaveRecordsTest : public testing::Test {
protected:
    QTemporaryDir folder_;
    QString fileName_ = folder_.filePath(u"out.csv"_s);
    LeadList leads_;
    Settings settings_;

    SaveRecordsTest() {
        settings_.eExportFields = u"0,2"_s;
        for (const QChar letter : u"abcd"_s)
            leads_.Append(LetterLead(letter));
    }
};

TEST_F(SaveRecordsTest, WritesTheRowsInListOrder) {
    const std::vector<qsizetype> rows{1, 3};
    EXPECT_TRUE(SaveRecords(fileName_, leads_, rows, settings_));
    EXPECT_EQ(FileText(fileName_), "\"Category\",\"Full Address\"\r\n\"b0\",\"b2\"\r\n\"d0\",\"d2\"\r\n");
    leads_.Captions[0] = u"Catégorie"_s;
    settings_.eDelimiter = u";"_s;
    settings_.eExportFields = u"0"_s;
    EXPECT_TRUE(SaveRecords(fileName_, leads_, {}, settings_));
    EXPECT_EQ(FileText(fileName_), In8Bit("\"Catégorie\"\r\n\"a0\"\r\n\"b0\"\r\n\"c0\"\r\n\"d0\"\r\n"));
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files).size(), 1);
}

TEST_F(SaveRecordsTest, LeavesNoHalfFile) {
    ASSERT_TRUE(SaveRecords(fileName_, leads_, {}, settings_));
    const std::string before = FileText(fileName_);
    for (int row = 0; row < 100'000; ++row)
        leads_.Append(LetterLead(u'e'));

    // Cancelled in the middle.
    std::vector<qsizetype> reports;
    EXPECT_FALSE(SaveRecords(fileName_, leads_, {}, settings_, [&](qsizetype written, qsizetype rows) {
        EXPECT_EQ(rows, 100'004);
        reports.push_back(written);
        return reports.size() < 3;
    }));
    EXPECT_EQ(reports.size(), 3U);
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_EQ(FileText(fileName_), before);
#ifdef Q_OS_UNIX
    {
        const FileSizeLimit limit(700'000);
        EXPECT_THROW(SaveRecords(fileName_, leads_, {}, settings_), SaveError);
    }
    EXPECT_EQ(FileText(fileName_), before);
#endif
    EXPECT_EQ(QDir(folder_.path()).entryList(QDir::Files).size(), 1);

    const QString nowhere = folder_.filePath(u"missing/out.csv"_s);
    try {
        SaveRecords(nowhere, leads_, {}, settings_);
        ADD_FAILURE() << "it was written";
    } catch (const SaveError& error) {
        EXPECT_TRUE(error.Message().startsWith(QDir::toNativeSeparators(nowhere) + u": "_s)) << error.what();
    }
}

TEST_F(SaveRecordsTest, EndsWhenTheListShrinksMeanwhile) {
    for (int row = 0; row < 20'000; ++row)
        leads_.Append(LetterLead(u'e'));
    EXPECT_TRUE(SaveRecords(fileName_, leads_, {}, settings_, [this](qsizetype, qsizetype) {
        leads_.Clear();
        return true;
    }));
}

class ExportSelectedTest : public SaveRecordsTest {
protected:
    HarvestBench bench_{SiteCode::PagineMail};

    ExportSelectedTest() {
        for (int slot = 48; slot <= 53; ++slot)
            bench_.Texts.Set(static_cast<Message>(slot), u"main%1"_s.arg(slot));
    }
    bool Export(std::span<const qsizetype> rows) {
        return ExportSelected({leads_, settings_, bench_.Texts, bench_.Notices, bench_.Status, bench_.Loop, u"/docs"_s},
                              rows);
    }
};

TEST_F(ExportSelectedTest, RefusesWhatCannotBeExported) {
    bench_.Notices.FileName = fileName_;
    const std::vector<qsizetype> first{0};
    settings_.eExportFields = u" \t"_s;
    EXPECT_FALSE(Export(first));
    EXPECT_FALSE(Export({}));
    leads_.Clear();
    EXPECT_FALSE(Export({}));
    EXPECT_EQ(bench_.Notices.Said, (QStringList{u"main50"_s, u"main49"_s, u"main48"_s}));
    EXPECT_TRUE(bench_.Status.Panels.empty());
    EXPECT_FALSE(QFile::exists(fileName_));
}

TEST_F(ExportSelectedTest, AsksForAFileAndSaysHowItWent) {
    const std::vector<qsizetype> rows{2};
    EXPECT_FALSE(Export(rows)); // no file chosen
    EXPECT_TRUE(bench_.Status.Panels.empty());

    bench_.Notices.FileName = fileName_;
    EXPECT_TRUE(Export(rows));
    EXPECT_EQ(bench_.Status.TextsOf(0), (QStringList{u"main52"_s, u"main53"_s}));
    EXPECT_EQ(FileText(fileName_), "\"Category\",\"Full Address\"\r\n\"c0\",\"c2\"\r\n");

    bench_.Notices.FileName = folder_.filePath(u"missing/out.csv"_s);
    EXPECT_FALSE(Export(rows));
    EXPECT_EQ(bench_.Notices.Folders, QStringList(3, u"/docs"_s));
    EXPECT_TRUE(bench_.Notices.Said.last().startsWith(QDir::toNativeSeparators(bench_.Notices.FileName) + u": "_s));
    EXPECT_EQ(bench_.Status.Last(0), u""_s);
}

TEST_F(ExportSelectedTest, SaysWhatAFormatCannotHold) {
    leads_.Append({.Name = QString(40'000, u'x')});
    const std::vector<qsizetype> rows{leads_.Count() - 1};
    const OfferedFormat workbook{LeadFormat::Workbook, u"Workbook (*.xlsx)"_s};
    settings_.eExportFields = u"1"_s;
    bench_.Notices.FileName = folder_.filePath(u"long.xlsx"_s);
    const ExportCommand command{leads_,        settings_,   bench_.Texts, bench_.Notices,
                                bench_.Status, bench_.Loop, u"/docs"_s,   {workbook}};
    EXPECT_FALSE(ExportAs(command, workbook, {}, {}));
    EXPECT_TRUE(ExportAs(command, workbook, {}, rows));
    EXPECT_EQ(bench_.Status.Last(0), u"main53 1 texts shortened"_s);
    EXPECT_EQ(bench_.Notices.FileTypes, QStringList(workbook.Type));
    const std::string before = FileText(bench_.Notices.FileName);
    EXPECT_TRUE(before.starts_with("PK"));
    // Cancelled, what was there before stays.
    for (int row = 0; row < 3000; ++row)
        leads_.Append(LetterLead(u'e'));
    std::vector<qsizetype> all(static_cast<size_t>(leads_.Count()));
    std::iota(all.begin(), all.end(), 0);
    bench_.Notices.FileType = 1;
    EXPECT_FALSE(ExportSelected(command, all, [](qsizetype, qsizetype) { return false; }));
    EXPECT_EQ(FileText(bench_.Notices.FileName), before);
    EXPECT_EQ(bench_.Status.Last(0), QString());
}

} // namespace
} // namespace Brindle
