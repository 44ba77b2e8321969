#include "settings/SettingsStore.h"

#include "FileSizeLimit.h"
#include "KilledProgram.h"
#include "PrintTo.h"
#include "core/Errors.h"
#include "settings/SettingsText.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;
#ifdef Q_OS_UNIX
using Test::FileSizeLimit;
#endif
using Test::OutputUntilKilled;

QByteArray FileBytes(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class SettingsStoreTest : public testing::Test {
protected:
    QTemporaryDir folder_;
    QString fileName_ = folder_.filePath(u"Norvane Software/Brindle/settings.dat"_s);
    SettingsStore store_{fileName_, u"/docs"_s};

    QString FailureOfSave(const Settings& settings) {
        try {
            store_.SaveSettings(settings);
        } catch (const SaveError& error) {
            return error.Message();
        }
        return {};
    }
    QString FailureOfLoad() {
        try {
            store_.LoadSettings();
        } catch (const Failure& failure) {
            return failure.Message();
        }
        return {};
    }
};

TEST_F(SettingsStoreTest, GivesDefaultsWithoutAFile) {
    EXPECT_EQ(store_.LoadSettings(), DefaultSettings(u"/docs"_s));
    EXPECT_FALSE(QFileInfo::exists(fileName_)) << "loading makes nothing";
}

TEST_F(SettingsStoreTest, SavesForTheOwnerAlone) {
    Settings settings;
    settings.ePassword = u"sécret"_s;
    settings.eExportFolder = u"/x"_s;
    store_.SaveSettings(settings);
    EXPECT_EQ(FileBytes(fileName_), SettingsText(settings));
    EXPECT_EQ(store_.LoadSettings(), settings);

    // A file that others could read, from an older release or copied by hand, is closed by the next save.
    QFile::setPermissions(fileName_, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther | QFile::ReadGroup);
    store_.SaveSettings(settings);
#ifdef Q_OS_UNIX
    EXPECT_EQ(QFile::permissions(fileName_) & ~(QFile::ReadUser | QFile::WriteUser),
              QFile::ReadOwner | QFile::WriteOwner);
#endif
    EXPECT_EQ(QFileInfo(fileName_).dir().entryList(QDir::Files), QStringList{u"settings.dat"_s});
}

TEST_F(SettingsStoreTest, RefusesWhatIsNoSettingsFile) {
    QDir().mkpath(fileName_);
    EXPECT_TRUE(FailureOfLoad().startsWith(QDir::toNativeSeparators(fileName_) + u": "_s))
        << FailureOfLoad().toStdString();
    EXPECT_TRUE(FailureOfSave({}).startsWith(QDir::toNativeSeparators(fileName_) + u": "_s));
    ASSERT_TRUE(QDir().rmdir(fileName_));

    QFile file(fileName_);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("\xFF\xFE\0<%%eHost%%>\x80<%%/eHost%%>\0", 27));
    file.close();
    EXPECT_EQ(store_.LoadSettings().eHost, QString::fromLocal8Bit("\x80"));

    ASSERT_TRUE(file.resize(100 << 20));
    EXPECT_TRUE(FailureOfLoad().startsWith(QDir::toNativeSeparators(fileName_) + u": "_s));
}

#ifdef Q_OS_UNIX
TEST_F(SettingsStoreTest, KeepsTheOldFileWhenSavingFails) {
    store_.SaveSettings({});
    const QByteArray before = FileBytes(fileName_);
    Settings settings;
    settings.eRandomProxies = QStringList(1000, u"10.0.0.1:8080"_s);
    {
        const FileSizeLimit limit(4096);
        EXPECT_TRUE(FailureOfSave(settings).startsWith(QDir::toNativeSeparators(fileName_) + u": "_s))
            << FailureOfSave(settings).toStdString();
    }
    EXPECT_EQ(FileBytes(fileName_), before);
    EXPECT_EQ(QFileInfo(fileName_).dir().entryList(QDir::Files).size(), 1);

    SettingsStore nowhere(fileName_ + u"/below a file/settings.dat"_s, {});
    EXPECT_THROW(nowhere.SaveSettings({}), SaveError);
}
#endif

TEST_F(SettingsStoreTest, IsNeverDamagedByAKill) {
    Settings settings;
    const QByteArray shortFile = SettingsText(settings);
    settings.eRandomProxies = QStringList(20'000, u"10.0.0.1:8080:user:password"_s);
    const QByteArray longFile = SettingsText(settings);
    int shortFiles = 0;
    for (unsigned long kill = 0; kill < 100; ++kill) {
        ASSERT_FALSE(OutputUntilKilled(QStringLiteral(SETTINGS_SAVER), {fileName_}, kill * 50).isNull());
        const QByteArray bytes = FileBytes(fileName_);
        ASSERT_TRUE(bytes == shortFile || bytes == longFile) << "after " << kill << " kills";
        shortFiles += bytes == shortFile ? 1 : 0;
    }
    RecordProperty("kills_after_a_short_save", shortFiles);

    // The unfinished copies of killed programs go away once they are old enough to be nobody's work in hand; what a
    // person keeps beside the settings stays.
    const QDir folder = QFileInfo(fileName_).dir();
    const QStringList own{u"settings.dat.backup"_s, u"settings.dat.before"_s, u"settings.dat.unfinished"_s};
    for (const QString& name : own + QStringList{u"settings.dat.unfinished-1a2b3c"_s})
        QFile::copy(fileName_, folder.filePath(name));
    for (const QString& name : folder.entryList({u"settings.dat.*"_s}, QDir::Files)) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFile::FileModificationTime);
    }
    store_.SaveSettings({});
    EXPECT_EQ(folder.entryList({u"settings.dat.*"_s}, QDir::Files, QDir::Name), own);
}

} // namespace
} // namespace Brindle
