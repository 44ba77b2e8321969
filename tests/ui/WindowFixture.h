#pragma once

#include "HarvestBench.h"
#include "SiteCodes.h"
#include "demo/DemoServer.h"
#include "ui/TfrmMain.h"

#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace Brindle::Test {

/// A platform that keeps to a temporary folder and records what it was asked.
class RecordingPlatform : public Platform {
public:
    QString GetDocumentsFolder() override { return folder_.path(); }
    QString SettingsFolder() override { return folder_.filePath(QStringLiteral("settings")); }
    bool OpenInDefaultBrowser(const QString& url) override {
        Opened.append(url);
        return HasBrowser;
    }
    void ClearUrlCache() override { ++CachesCleared; }
    QString BrowserEngineVersion() override { return QStringLiteral("0"); }
    void WriteUserRegistry(const QString& key, const QString& name, quint32 value) override {
        Written.append(QStringLiteral("%1|%2|%3").arg(key.section(u'\\', -1), name).arg(value));
    }

    QStringList Opened;
    QStringList Written;
    int CachesCleared = 0;
    bool HasBrowser = true;

private:
    QTemporaryDir folder_;
};

/// A whole window with scripted dialogs, on a platform that keeps to a temporary folder.
class WindowRun {
public:
    WindowRun(MessageLoop& loop, SitesFile sites, const BrowserFactory& createBrowser);

    MessageLoop& Loop;
    RecordingPlatform System;
    ScriptedDialogs Notices;
    // Of the processes that a window starts; for windows that are made from then on.
    QString SitesFileName;
    double Pace = 0;
    std::unique_ptr<TfrmMain> Window;

    /// Makes a window anew on the same folders, as after a crash: the old one goes without being closed.
    void Again();
    /// Shows the window and waits until it can be used.
    void Show();
    /// Handles messages until the condition holds; false when it does not within `seconds`.
    bool Until(const std::function<bool()>& condition, int seconds = 60);

    /// Acts once as soon as the condition holds, also in the middle of a tick or a wait, as a user would.
    void When(const std::function<bool()>& condition, const std::function<void()>& action) const;

    template <class T>
    T* Control(const char16_t* name) const {
        return Window->findChild<T*>(QString::fromUtf16(name));
    }
    void Click(const char16_t* button) const;
    /// Chooses an entry of a selector as a user does.
    void Choose(const char16_t* selector, int index) const;
    QString Panel(int panel) const { return Control<StatusBarView>(u"StatusBar")->PanelText(panel); }
    /// What the notice above the page says; empty while it is hidden.
    QString Notice() const { return Control<NoticeBar>(u"Notice")->Said(); }
    LeadTableView& Items() const { return *Control<LeadTableView>(u"lvwItems"); }
    /// Chooses an entry of the site selector and waits until its home page is there.
    void ChooseSite(const QString& code, const Demo::DemoServer& server);
    /// Loads a page by way of the address box.
    bool GoTo(const QString& address);
    std::vector<Lead> ShownLeads() const;

private:
    SitesFile sites_;
    BrowserFactory createBrowser_;
};

} // namespace Brindle::Test
