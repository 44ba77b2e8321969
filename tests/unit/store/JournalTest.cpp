#include "store/Journal.h"

#include "InventedLeads.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

TEST(Journal, IsTheUsersAloneAndReadUpToWhatIsDamaged) {
    const QTemporaryDir folder;
    QString fileName;
    std::vector<qint64> ends;
    {
        Journal journal(folder.filePath(u"spool"_s), u"s"_s);
        ASSERT_EQ(journal.Error(), QString());
        fileName = journal.FileName();
        for (int i = 0; i < 3; ++i)
            ends.push_back(journal.Append(
                FoundLead{.HarvestUid = u"h"_s, .Seq = i, .Found = 0, .Lead = Brindle::Test::InventedLead(i)}));
    }
#ifdef Q_OS_UNIX
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther;
    EXPECT_EQ(QFile::permissions(fileName) & others, QFileDevice::Permissions());
#endif
    qint64 place = 0;
    EXPECT_EQ(Journal::Read(fileName, place, 10).size(), 3U);
    EXPECT_EQ(place, ends[2]);
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.seek(ends[1] - 60));
    const char wrong = 'x';
    ASSERT_EQ(file.write(&wrong, 1), 1);
    file.close();
    place = 0;
    EXPECT_EQ(Journal::Read(fileName, place, 10).size(), 1U);
    EXPECT_EQ(place, ends[0]);
}

} // namespace
} // namespace Brindle
