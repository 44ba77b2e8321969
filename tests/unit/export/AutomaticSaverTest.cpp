#include "export/AutomaticSaver.h"

#include "CodePage.h"
#include "FileSizeLimit.h"
#include "HarvestBench.h"
#include "KilledProgram.h"
#include "PrintTo.h"
#include "core/Errors.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <barrier>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
using Test::In8Bit;
#ifdef Q_OS_UNIX
using Test::FileSizeLimit;
#endif
using Test::HarvestBench;
using Test::OutputUntilKilled;

const QString allCaptions = EnglishCaptions().join(u"\";\""_s);

QByteArray FileBytes(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class AutomaticSaverTest : public testing::Test {
protected:
    QTemporaryDir folder_;
    HarvestBench bench_{SiteCode::PagineMail};
    AutomaticSaver saver_{bench_.State, bench_.Options, bench_.Leads, bench_.Texts, bench_.Status, bench_.Loop};

    AutomaticSaverTest() {
        bench_.Texts.Set(Message::AutomaticSavePrefix, u"Saving to "_s);
        bench_.Options.eDelimiter = u";"_s;
        bench_.Options.eExportFields = u"0"_s;
    }
    QString FileOf(const QString& stamp) {
        return folder_.path() + QDir::separator() + u"Results "_s + stamp + u".csv";
    }
    void Save(const QString& line) { saver_.AutomaticSave(folder_.path(), u"Results"_s, line); }
};

TEST_F(AutomaticSaverTest, AppendsToTheFileOfTheHarvest) {
    bench_.State.DateTimeVal = u"1-2-26 10-00-00"_s;
    saver_.AutomaticSave(folder_.path(), u"Re:sul?ts"_s, u"\"a\",\"Caffè\""_s);
    Save(u"\"b\""_s);
    bench_.State.DateTimeVal = u"1-2-26 10-05-00"_s;
    Save(u"\"c\""_s);
    const std::string header = "\"" + allCaptions.toStdString() + "\"\r\n";
    EXPECT_EQ(FileBytes(FileOf(u"1-2-26 10-00-00"_s)).toStdString(), header + In8Bit("\"a\",\"Caffè\"\r\n\"b\"\r\n"));
    EXPECT_EQ(FileBytes(FileOf(u"1-2-26 10-05-00"_s)).toStdString(), header + "\"c\"\r\n");
    EXPECT_EQ(bench_.Status.TextsOf(2),
              (QStringList{u"1 items exported"_s, u"2 items exported"_s, u"3 items exported"_s}));
    EXPECT_EQ(bench_.Status.Last(0), QString(u"Saving to "_s + FileOf(u"1-2-26 10-05-00"_s)));
}

TEST_F(AutomaticSaverTest, WritesTheHeaderOnlyIntoAFileOfItsOwn) {
    QFile file(FileOf(u"now"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    bench_.State.DateTimeVal = u"now"_s;
    Save(u"\"a\""_s);
    EXPECT_EQ(FileBytes(FileOf(u"now"_s)).toStdString(), "\"a\"\r\n");
}

TEST_F(AutomaticSaverTest, TellsWhyALeadWasNotSaved) {
    bench_.State.DateTimeVal = u"now"_s;
    const auto failureOf = [this](const QString& line) {
        try {
            Save(line);
        } catch (const SaveError& error) {
            return error.Message();
        }
        return QString();
    };
    ASSERT_TRUE(QDir().mkpath(FileOf(u"now"_s)));
    EXPECT_TRUE(failureOf(u"\"a\""_s).startsWith(FileOf(u"now"_s) + u": "_s));
    ASSERT_TRUE(QDir().rmdir(FileOf(u"now"_s)));
#ifdef Q_OS_UNIX
    {
        const FileSizeLimit limit(100);
        EXPECT_TRUE(failureOf(u"\"a\""_s).startsWith(FileOf(u"now"_s) + u": "_s));
        EXPECT_FALSE(QFile::exists(FileOf(u"now"_s))) << "without its header it would never get one";
    }
    EXPECT_EQ(bench_.State.ExportedNum, 0);
    Save(u"\"a\""_s);
    const QByteArray before = FileBytes(FileOf(u"now"_s));
    {
        const FileSizeLimit limit(static_cast<rlim_t>(before.size()) + 3);
        EXPECT_FALSE(failureOf(u"\"second\""_s).isEmpty());
    }
    EXPECT_EQ(FileBytes(FileOf(u"now"_s)), before) << "half a line was left";
    EXPECT_EQ(bench_.State.ExportedNum, 1);
#endif
    // A folder that is missing is made; where it cannot be, nothing is saved.
    saver_.AutomaticSave(folder_.filePath(u"made/for it"_s), u"Results"_s, u"x"_s);
    const QString made = folder_.filePath(u"made/for it/Results now.csv"_s);
    EXPECT_TRUE(QFile::exists(made));
    EXPECT_THROW(saver_.AutomaticSave(made + u"/below", u"Results"_s, u"x"_s), SaveError);
}

TEST_F(AutomaticSaverTest, AHeldFileIsFollowedByTheNextNumber) {
    bench_.State.DateTimeVal = u"now"_s;
    QStringList held;
    QStringList moves;
    QStringList saved;
    saver_.IsHeld = [&](const QString& fileName) { return held.contains(fileName); };
    saver_.MovedOn = [&](const QString& from, const QString& to) { moves += {from, to}; };
    saver_.LeadSaved = [&](const QString& fileName, const Lead&) { saved.append(fileName); };
    const auto save = [this] { saver_.SaveLead(folder_.path(), u"Results"_s, {.Name = u"x"_s}); };
    const QString first = FileOf(u"now"_s);
    const QString second = FileOf(u"now (2)"_s);
    const QString third = FileOf(u"now (3)"_s);
    // A folder of that name cannot be written to either.
    ASSERT_TRUE(QDir().mkpath(first));
    EXPECT_THROW(save(), SaveError) << "any other error is as it was";
    EXPECT_FALSE(QFile::exists(second));
    ASSERT_TRUE(QDir().mkpath(second));
    held = QStringList{first, second};
    save();
    EXPECT_EQ(bench_.Status.Last(0), QString(u"Saving to " + third));
    ASSERT_TRUE(QDir().rmdir(first));
    save(); // the file that is free again stays behind
    EXPECT_EQ(saved, (QStringList{first, first}));
    EXPECT_EQ(moves, (QStringList{first, second, second, third}));
    EXPECT_EQ(FileBytes(third).count('\n'), 3);
    EXPECT_EQ(bench_.State.ExportedNum, 2);
    bench_.State.DateTimeVal = u"later"_s;
    save();
    EXPECT_EQ(saved.last(), FileOf(u"later"_s));
}

TEST_F(AutomaticSaverTest, SeveralAtOnceGiveTheFileOneHeader) {
    constexpr int savers = 4;
    constexpr int leads = 3;
    const std::string header = "\"" + allCaptions.toStdString() + "\"";
    for (int round = 0; round < 100; ++round) {
        const QString stamp = QString::number(round);
        std::barrier together(savers);
        std::vector<std::jthread> threads;
        for (int number = 0; number < savers; ++number)
            threads.emplace_back([&] {
                HarvestBench bench(SiteCode::PagineMail);
                bench.State.DateTimeVal = stamp;
                bench.Options.eDelimiter = u";"_s;
                AutomaticSaver saver(bench.State, bench.Options, bench.Leads, bench.Texts, bench.Status, bench.Loop);
                together.arrive_and_wait();
                for (int lead = 0; lead < leads; ++lead)
                    saver.AutomaticSave(folder_.path(), u"Results"_s, u"\"whole\""_s);
            });
        threads.clear();
        const QList<QByteArray> lines = FileBytes(FileOf(stamp)).split('\n');
        ASSERT_EQ(lines.size(), 1 + savers * leads + 1);
        ASSERT_EQ(lines.first().toStdString(), header + "\r");
        for (qsizetype line = 1; line + 1 < lines.size(); ++line)
            ASSERT_EQ(lines[line].toStdString(), "\"whole\"\r");
    }
}

TEST_F(AutomaticSaverTest, EndsWithAWholeLineWhenItIsKilled) {
    for (unsigned long kill = 0; kill < 50; ++kill) {
        const QString stamp = QString::number(kill);
        const QByteArray said = OutputUntilKilled(QStringLiteral(LEAD_SAVER), {folder_.path(), stamp}, kill * 100);
        ASSERT_FALSE(said.isNull());
        const qsizetype counted = said.count('\n');
        const QByteArray bytes = FileBytes(FileOf(stamp));
        const QList<QByteArray> lines = bytes.split('\n');
        ASSERT_GE(lines.size() - 2, counted); // the header, and what stands behind the last line end
        // A lead that was not counted yet may be cut where a memory page ends, because the system itself gives up a
        // single write there when it kills the writer. Anywhere else a cut would be ours.
        constexpr qsizetype page = 4096;
        ASSERT_TRUE(lines.last().isEmpty() || bytes.size() % page == 0) << "after " << counted << " leads";
        for (qsizetype line = 2; line < lines.size() - 1; ++line)
            ASSERT_EQ(lines[line], lines[1]);
    }
}

} // namespace
} // namespace Brindle
