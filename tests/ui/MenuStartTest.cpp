// The program as a menu starts it: nobody reads its standard error.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace Brindle::Test {
namespace {

TEST(MenuStart, WhyItEndsStandsInABox) {
    QProcess display;
    // A display without clients starts anew, and ends whoever comes just then.
    display.start(u"Xvfb"_s, {u"-noreset"_s, u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"800x600x24"_s});
    if (!display.waitForStarted() || !display.waitForReadyRead(20'000))
        GTEST_SKIP() << "no Xvfb here";
    const QString name = u":"_s + QString::fromLatin1(display.readLine().trimmed());
    const auto windows = [&name] {
        QProcess look;
        look.start(u"xwininfo"_s, {u"-display"_s, name, u"-root"_s, u"-tree"_s});
        look.waitForFinished();
        return look.error() == QProcess::FailedToStart ? QByteArray("none") : look.readAllStandardOutput();
    };
    if (windows() == "none")
        GTEST_SKIP() << "no xwininfo here";
    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, name);
    environment.insert(u"HOME"_s, home.path());
    environment.remove(u"QT_QPA_PLATFORM"_s);
    const auto start = [&](QProcess& program) {
        program.setProcessEnvironment(environment);
        program.start(QCoreApplication::applicationDirPath() + u"/brindle",
                      {u"--browser"_s, u"static"_s, u"--sites"_s, home.filePath(u"none/sites.ini"_s)});
    };
    QProcess fromMenu;
    fromMenu.setStandardErrorFile(QProcess::nullDevice());
    start(fromMenu);
    QElapsedTimer waited;
    waited.start();
    bool box = false;
    for (; !box && waited.elapsed() < 30'000 && fromMenu.state() != QProcess::NotRunning;) {
        fromMenu.waitForFinished(100);
        box = windows().contains("\"Brindle\"");
    }
    EXPECT_TRUE(box) << windows().constData();
    EXPECT_EQ(fromMenu.state(), QProcess::Running); // until somebody has read it
    fromMenu.kill();
    fromMenu.waitForFinished();

    QProcess fromShell;
    start(fromShell);
    ASSERT_TRUE(fromShell.waitForFinished());
    EXPECT_EQ(fromShell.exitCode(), 1);
    EXPECT_TRUE(fromShell.readAllStandardError().contains("none/sites.ini"));
    display.terminate();
    display.waitForFinished();
}

} // namespace
} // namespace Brindle::Test
