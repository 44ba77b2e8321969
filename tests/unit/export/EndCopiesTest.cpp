#include "export/EndCopies.h"

#include "PrintTo.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

QByteArray BytesOf(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class EndCopiesTest : public testing::Test {
protected:
    QTemporaryDir folder_;
    MoreOptions more_;
    Settings settings_;
    LeadList leads_;
    EndCopies copies_{more_, settings_, leads_};

    QString File(const QString& name) const { return folder_.filePath(name); }
    // Those that have their names: on Windows a file that is being written stands beside under another one.
    QStringList Files() const {
        return QDir(folder_.path()).entryList({u"*.csv"_s, u"*.xlsx"_s}, QDir::Files, QDir::Name);
    }
};

TEST_F(EndCopiesTest, AreThoseThatTheOptionsWantAndComeAtTheEnd) {
    settings_.eExportFields = u"1"_s; // the automatic file has all columns, and so have its copies
    struct Case {
        bool Workbook;
        bool Sheet;
        QStringList Files;
    };
    for (const Case& wanted :
         {Case{false, false, {}}, Case{true, false, {u"R 1.xlsx"_s}}, Case{false, true, {u"R 1-sheet.csv"_s}},
          Case{true, true, {u"R 1-sheet.csv"_s, u"R 1.xlsx"_s}}}) {
        more_.WorkbookAtEnd = wanted.Workbook;
        more_.SheetCsvAtEnd = wanted.Sheet;
        EXPECT_EQ(copies_.Finish().Saved, QStringList()) << "no lead, no file";
        copies_.Add(File(u"R 1.csv"_s), {.Category = u"Pizzerie"_s, .Name = u"Caffè \"Uno\""_s});
        copies_.Add(File(u"R 1.csv"_s), {.Name = u"=Due"_s, .FullAddress = QString(40'000, u'x')});
        EXPECT_EQ(Files(), QStringList()) << "half a file";
        const EndCopies::Ending ending = copies_.Finish();
        EXPECT_EQ(ending.Saved.size(), wanted.Files.size());
        EXPECT_EQ(ending.Problems, QStringList());
        EXPECT_EQ(ending.Losses.Text(), wanted.Workbook ? u"1 texts shortened"_s : QString());
        EXPECT_EQ(Files(), wanted.Files);
        if (wanted.Sheet) {
            const QByteArray bytes = BytesOf(File(u"R 1-sheet.csv"_s));
            EXPECT_TRUE(bytes.contains("\"Pizzerie\",\"Caffè \"\"Uno\"\"\""));
            EXPECT_EQ(bytes.count("\r\n"), 3);
        }
        for (const QString& name : Files())
            EXPECT_TRUE(QFile::remove(File(name)));
    }
}

TEST_F(EndCopiesTest, OfAFailedOneTheReasonIsSaidAndTheOtherIsMade) {
    more_.WorkbookAtEnd = more_.SheetCsvAtEnd = true;
    ASSERT_TRUE(QDir().mkpath(File(u"R 1-sheet.csv"_s)));
    copies_.Add(File(u"R 1.csv"_s), {.Name = u"Uno"_s});
    copies_.Add(File(u"R 1.csv"_s), {.Name = u"Due"_s});
    const EndCopies::Ending ending = copies_.Finish();
    EXPECT_EQ(ending.Saved, QStringList(File(u"R 1.xlsx"_s)));
    ASSERT_EQ(ending.Problems.size(), 1);
    EXPECT_TRUE(ending.Problems[0].startsWith(QDir::toNativeSeparators(File(u"R 1-sheet.csv"_s)) + u": "));
    EXPECT_TRUE(copies_.Finish().Problems.isEmpty());

    // Another automatic file ends the copies of the one before.
    more_.SheetCsvAtEnd = false;
    copies_.Add(File(u"R 2.csv"_s), {.Name = u"Uno"_s});
    copies_.Add(File(u"R 3.csv"_s), {.Name = u"Due"_s});
    EXPECT_EQ(copies_.Finish().Saved, (QStringList{File(u"R 2.xlsx"_s), File(u"R 3.xlsx"_s)}));
}

} // namespace
} // namespace Brindle
