#include "platform/CreatePlatform.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

// Sets an environment variable for the length of a test.
class Environment {
public:
    Environment(const char* name, const QByteArray& value)
        : name_(name), old_(qgetenv(name)), wasSet_(qEnvironmentVariableIsSet(name)) {
        qputenv(name, value);
    }
    ~Environment() { wasSet_ ? qputenv(name_, old_) : qunsetenv(name_); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name_;
    QByteArray old_;
    bool wasSet_;
};

void WriteFile(const QString& fileName, const QByteArray& text, QFile::Permissions permissions = {}) {
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
    if (permissions)
        file.setPermissions(permissions);
}

TEST(LinuxPlatform, TakesItsFoldersFromTheDesktop) {
    const QTemporaryDir folder;
    const Environment home("HOME", folder.path().toLocal8Bit());
    const Environment config("XDG_CONFIG_HOME", folder.filePath(u"cfg"_s).toLocal8Bit());
    const auto platform = CreatePlatform();
    EXPECT_EQ(platform->SettingsFolder(), folder.filePath(u"cfg/Norvane Software/Brindle"_s));
    EXPECT_EQ(platform->GetDocumentsFolder(), folder.filePath(u"Documents"_s));
    ASSERT_TRUE(QDir().mkpath(folder.filePath(u"cfg"_s)));
    WriteFile(folder.filePath(u"cfg/user-dirs.dirs"_s), "XDG_DOCUMENTS_DIR=\"$HOME/Documenti\"\n");
    EXPECT_EQ(platform->GetDocumentsFolder(), folder.filePath(u"Documenti"_s));
}

TEST(LinuxPlatform, HandsAnAddressToTheDesktopsOpenerUnchanged) {
    const QTemporaryDir folder;
    const QString opened = folder.filePath(u"opened"_s);
    const auto platform = CreatePlatform();
    {
        const Environment path("PATH", folder.path().toLocal8Bit());
        EXPECT_FALSE(platform->OpenInDefaultBrowser(u"http://a.test"_s)) << "nothing there that opens addresses";
    }
    WriteFile(folder.filePath(u"xdg-open"_s),
              "#!/bin/sh\nprintf '%s' \"$#|$1\" > '" + opened.toLocal8Bit() + ".new'\nmv '" + opened.toLocal8Bit() +
                  ".new' '" + opened.toLocal8Bit() + "'\n",
              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const Environment path("PATH", folder.path().toLocal8Bit() + ':' + qgetenv("PATH"));
    const QString address = u"http://a.test/maps?q=Via+Città,+\"1\"&x=$HOME;ls"_s;
    EXPECT_TRUE(platform->OpenInDefaultBrowser(address));
    // The opener is a program of its own; waiting for it has a bound that no machine needs.
    const QElapsedTimer started = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    while (!QFile::exists(opened) && started.elapsed() < 60'000)
        QThread::msleep(1);
    QFile file(opened);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(), "1|" + address.toStdString());
}

} // namespace
} // namespace Brindle
