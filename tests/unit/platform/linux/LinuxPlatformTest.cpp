#include "core/OutputFile.h"
#include "platform/CreatePlatform.h"
#include "platform/StandardStreams.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

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
    EXPECT_FALSE(platform->OpenInDefaultBrowser(u"file:///bin/sh"_s));
    EXPECT_FALSE(platform->OpenInDefaultBrowser(u"pizza in milano"_s));
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

// What the standard error of this process is for the length of a test.
class ErrorTo {
public:
    explicit ErrorTo(int descriptor) : old_(dup(STDERR_FILENO)) { dup2(descriptor, STDERR_FILENO); }
    ~ErrorTo() {
        dup2(old_, STDERR_FILENO);
        close(old_);
    }
    ErrorTo(const ErrorTo&) = delete;
    ErrorTo& operator=(const ErrorTo&) = delete;

private:
    int old_;
};

TEST(StandardStreams, KnowsWhetherAnybodySeesItsErrors) {
    const QTemporaryDir folder;
    QFile log(folder.filePath(u"program.log"_s));
    QFile session(folder.filePath(u".xsession-errors"_s));
    QFile nothing(u"/dev/null"_s);
    for (QFile* file : {&log, &session, &nothing})
        ASSERT_TRUE(file->open(QIODevice::WriteOnly));
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    int journal[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, journal), 0);
    const auto seen = [](int descriptor) {
        const ErrorTo error(descriptor);
        return HasStandardError();
    };
    EXPECT_TRUE(seen(ends[1]));
    EXPECT_TRUE(seen(log.handle()));
    EXPECT_FALSE(seen(session.handle()));
    EXPECT_FALSE(seen(nothing.handle()));
    EXPECT_FALSE(seen(journal[0]));
    for (const int descriptor : {ends[0], ends[1], journal[0], journal[1]})
        close(descriptor);
}

// "--out /dev/null" as the administrator must not put a file there.
TEST(OutputFile, APipeStaysAPipeAndAFileIsWrittenWhole) {
    const QTemporaryDir folder;
    const QString pipe = folder.filePath(u"pipe"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const int end = open(QFile::encodeName(pipe).constData(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(end, 0);
    OutputFile file(pipe);
    ASSERT_TRUE(file.Open());
    EXPECT_TRUE(file.Write("a lead\n"));
    EXPECT_TRUE(file.Commit());
    char bytes[16];
    EXPECT_EQ(read(end, bytes, sizeof bytes), 7);
    close(end);
    EXPECT_FALSE(QFileInfo(pipe).isFile());

    const QString plain = folder.filePath(u"leads.csv"_s);
    for (const bool whole : {true, false}) {
        OutputFile next(plain);
        ASSERT_TRUE(next.Open());
        EXPECT_TRUE(next.Write(whole ? "first" : "second"));
        EXPECT_TRUE(!whole || next.Commit());
    }
    QFile written(plain);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "first");
}

} // namespace
} // namespace Brindle
