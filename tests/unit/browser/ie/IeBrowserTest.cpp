#include "browser/ie/IeBrowser.h"

#include "PrintTo.h"
#include "browser/ie/IeWidget.h"
#include "core/QtMessageLoop.h"

#include <QStringList>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

// What happened in a control, in words.
class Recorder : public IeListener {
public:
    QStringList Heard;

    void NavigationBegins(const QString& address, bool page) override { Note(u"begins", address, page); }
    void NavigationShows(const QString& address, bool page) override { Note(u"shows", address, page); }
    void DocumentLoaded(const QString& address, bool page) override { Note(u"loaded", address, page); }
    void NavigationFails(const QString& address, qint32, bool page) override { Note(u"fails", address, page); }
    void FileRefused() override {}
    void WindowWanted(const QString&, bool) override {}
    void Progress(qint64, qint64) override {}

private:
    void Note(QStringView what, const QString& address, bool page) {
        Heard += what.toString() + u' ' + address + (page ? u" page" : u" frame");
    }
};

// The control's own window within the one that it was given.
HWND Inner(const QWidget& widget) {
    return GetWindow(reinterpret_cast<HWND>(widget.internalWinId()), GW_CHILD);
}

QSize SizeOf(HWND window) {
    RECT inside{};
    GetClientRect(window, &inside);
    return {static_cast<int>(inside.right), static_cast<int>(inside.bottom)};
}

struct Window : QWidget {
    Window() {
        auto* const layout = new QVBoxLayout(this);
        layout->addWidget(Pages);
        resize(400, 300);
        show();
    }

    IeWidget* const Pages = new IeWidget;
};

TEST(IeControl, IsShownInTheWidgetAndFollowsItsSize) {
    const OleScope ole;
    Recorder listener;
    Window window;
    std::unique_ptr<IeControl> control = IeControl::Create(listener);
    ASSERT_TRUE(control);
    ASSERT_TRUE(window.Pages->Show(control.get()));
    ASSERT_TRUE(Inner(*window.Pages));
    EXPECT_EQ(SizeOf(Inner(*window.Pages)), window.Pages->size() * window.devicePixelRatio());

    window.resize(640, 480);
    QtMessageLoop().ProcessMessages();
    EXPECT_GT(window.Pages->width(), 600);
    EXPECT_EQ(SizeOf(Inner(*window.Pages)), window.Pages->size() * window.devicePixelRatio());

    window.Pages->Show(nullptr);
    control.reset();
    EXPECT_FALSE(Inner(*window.Pages));
}

TEST(IeControl, TellsOfTheNavigationThatItBegins) {
    const OleScope ole;
    Recorder listener;
    Window window;
    const std::unique_ptr<IeControl> control = IeControl::Create(listener);
    ASSERT_TRUE(control);
    window.Pages->Show(control.get());
    EXPECT_TRUE(control->Navigate(u"about:blank"_s));
    QtMessageLoop loop;
    for (int rounds = 0; rounds < 200 && listener.Heard.isEmpty(); ++rounds)
        loop.WaitForMessage(10);
    EXPECT_EQ(listener.Heard.value(0), u"begins about:blank page"_s);
    control->Stop();
    control->Refresh();
    control->GoBack();
    control->GoForward();
    window.Pages->Show(nullptr);
}

TEST(IeControl, CannotBeShownInNoWindow) {
    const OleScope ole;
    Recorder listener;
    const std::unique_ptr<IeControl> control = IeControl::Create(listener);
    ASSERT_TRUE(control);
    EXPECT_FALSE(control->Show(nullptr));
}

TEST(IeNavigation, WhatIsLeftIsNotReadAndWhatFailedIsNoPage) {
    const QString first = u"http://a.example/"_s;
    const QString second = u"https://b.example/"_s;
    IeNavigation navigation;
    EXPECT_TRUE(navigation.HasPage());
    navigation.Begin(first);
    EXPECT_FALSE(navigation.HasPage());
    navigation.Show();
    EXPECT_TRUE(navigation.HasPage());

    // The server is not there: the engine shows its own message, until another page comes.
    navigation.Begin(second);
    navigation.Fail(second, u"gone"_s);
    navigation.Begin(u"res://ieframe.dll/dnserror.htm"_s);
    navigation.Show();
    EXPECT_FALSE(navigation.HasPage());
    EXPECT_EQ(navigation.ShownInPlaceOf(), second);
    EXPECT_EQ(navigation.LastError(), u"https://b.example/: gone"_s);
    navigation.Begin(first);
    EXPECT_EQ(navigation.LastError(), QString());
    navigation.Show();
    EXPECT_TRUE(navigation.HasPage());

    // A load that is given up leaves the page that was there; a script's address loads nothing.
    navigation.Begin(second);
    navigation.End();
    EXPECT_TRUE(navigation.HasPage());
    navigation.Begin(u"javascript:void(0)"_s);
    navigation.Begin(u"mailto:a@b.example"_s);
    EXPECT_TRUE(navigation.HasPage());
}

// Whatever the system has: nothing hangs, and where there is no engine, it says so.
TEST(IeBrowser, AnswersWithoutAPage) {
    IeBrowser browser;
    QtMessageLoop loop;
    QStringList completed;
    QObject::connect(&browser, &EmbeddedBrowser::NavigateComplete,
                     [&](const QString& address) { completed += address; });
    const auto expectEmpty = [&] {
        EXPECT_EQ(browser.BodyOuterHtml(MarkupForm::Legacy), QString());
        EXPECT_EQ(browser.LinkCount(), 0);
        EXPECT_EQ(browser.LinkInnerText(0), QString());
        browser.ClickLink(0);
        browser.Stop();
        browser.Refresh();
        browser.GoBack();
        browser.GoForward();
        browser.ClearCache();
        EXPECT_FALSE(browser.Busy());
    };
    expectEmpty();
    browser.SetProxy({u"127.0.0.1"_s, 9, ProxyLogin{u"u"_s, u"p"_s}});
    browser.SetProxy({});
    browser.SetUserAgent(u"Agent/1"_s);
    browser.Widget()->show();
    if (IeControl::PageEngineInstalled())
        GTEST_SKIP() << "this system has a page engine";
    browser.Navigate(u"about:blank"_s);
    loop.ProcessMessages();
    EXPECT_EQ(completed.size(), 1);
    EXPECT_EQ(browser.LastError(), u"about:blank: Windows has no page engine for its web browser control"_s);
    expectEmpty();
    browser.SetUserAgent({});
}

TEST(IeBrowser, GoesBeforeOrAfterItsView) {
    {
        QWidget window;
        IeBrowser browser;
        browser.Widget()->setParent(&window);
        browser.Navigate(u"about:blank"_s);
    }
    {
        IeBrowser browser;
        QWidget window;
        browser.Widget()->setParent(&window);
        browser.Navigate(u"about:blank"_s);
    }
}

} // namespace
} // namespace Brindle
