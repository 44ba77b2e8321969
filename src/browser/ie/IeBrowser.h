#pragma once

#include "browser/ie/IeControl.h"
#include "browser/ie/IeNavigation.h"
#include "core/EmbeddedBrowser.h"

#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

namespace Brindle {

class IeWidget;

/// The system's own web browser control as the embedded browser. Needs a QApplication. The control is made with the
/// first navigation, so that what it reads of the registry once can be written before.
///
/// While a navigation that it was told of, or that a click began, has not brought up its page, the page that is being
/// left is not read any more: the document is empty then. So it is while the engine shows a message of its own. What a
/// click wants to open in a window of its own opens in this one; windows that pages open unasked are dropped.
class IeBrowser final : public EmbeddedBrowser, private IeListener {
    Q_OBJECT

public:
    IeBrowser();
    ~IeBrowser() override;

    /// What the user sees: to be put into a window. It belongs to this browser unless it is given a parent.
    QWidget* Widget() const;

    void Navigate(const QString& address) override;
    void Stop() override;
    void Refresh() override;
    void GoBack() override;
    void GoForward() override;
    bool Busy() const override;
    QString LocationAddress() const override;
    QString BodyOuterHtml(MarkupForm form) override;
    QString DocumentHtml() override;
    int LinkCount() override;
    QString LinkInnerText(int index) override;
    void ClickLink(int index) override;
    /// Holds for every such browser of the program.
    void SetProxy(const Proxy& proxy) override;
    /// Holds for every such browser of the program.
    void SetUserAgent(const QString& userAgent) override;
    /// The pages are kept in the system's URL cache, which is the whole system's and emptied as such; this browser has
    /// none of its own.
    void ClearCache() override {}
    QString LastError() const override { return navigation_.LastError(); }
    bool RunsScripts() const override { return true; }

private:
    void NavigationBegins(const QString& address, bool wholePage) override;
    void NavigationShows(const QString& address, bool wholePage) override;
    void DocumentLoaded(const QString& address, bool wholePage) override;
    void NavigationFails(const QString& address, qint32 status, bool wholePage) override;
    void FileRefused() override;
    void WindowWanted(const QString& address, bool byUser) override;
    void Progress(qint64 progress, qint64 maximum) override;

    /// Makes the control when there is none yet; why it cannot be, empty when it is there.
    QString MakeControl();
    IeDocument Document() const;
    void Watch();
    void GiveUpWhenIdle();
    void Tell(std::function<void()> what);
    void TellComplete();

    OleScope ole_;
    std::unique_ptr<IeControl> control_;
    QPointer<IeWidget> view_;
    Proxy proxy_;
    QString userAgent_;
    IeNavigation navigation_;
    bool clicked_ = false; // a link, since the page came
    QTimer idle_;          // runs while a page is being left
};

} // namespace Brindle
