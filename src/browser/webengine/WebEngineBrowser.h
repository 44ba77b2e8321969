#pragma once

#include "core/EmbeddedBrowser.h"
#include "core/MessageLoop.h"

#include <QNetworkProxy>
#include <QPointer>
#include <QStringList>
#include <QUrl>
#include <QVariant>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QWebEngineLoadingInfo;
class QWebEngineProfile;
class QWebEngineView;
class QWebEnginePage;
class QWidget;

namespace Brindle {

class WebEnginePage;
class WebEnginePointing;

/// The Chromium engine as the embedded browser. Needs a QApplication and, before it, `PrepareWebEngine`.
///
/// While a navigation that it was told of, or that a click began, has not brought up its page, the page that is being
/// left is not read any more: the document is empty then.
class WebEngineBrowser : public EmbeddedBrowser {
    Q_OBJECT

public:
    /// Cookies and cache are kept in `profileFolder`, or nowhere when it is empty.
    WebEngineBrowser(MessageLoop& loop, const QString& profileFolder);
    ~WebEngineBrowser() override;

    /// What the user sees: to be put into a window, or shown by itself with the offscreen platform. It belongs to this
    /// browser unless it is given a parent.
    QWidget* Widget() const;

    /// How long a page may take to answer what it is asked; five seconds unless it is set.
    void SetPatience(std::chrono::milliseconds patience) { patience_ = patience; }

    void Navigate(const QString& address) override;
    /// Names are resolved for it, which waits for the resolver; not behind a proxy, which resolves them itself.
    void Follow(const QString& address) override;
    void Stop() override;
    void Refresh() override;
    void GoBack() override;
    void GoForward() override;
    bool Busy() const override { return busy_; }
    QString LocationAddress() const override;
    /// Waits for the engine while messages are handled, at most the patience; empty when it does not answer.
    QString BodyOuterHtml(MarkupForm form) override;
    /// Waits as `BodyOuterHtml` does.
    QString DocumentHtml() override;
    int LinkCount() override;
    /// The texts are those at the time of the last `LinkCount`.
    QString LinkInnerText(int index) override;
    void ClickLink(int index) override;
    /// Waits four seconds at most, and for the engine as `BodyOuterHtml` does.
    bool LoadMore(const QString& selector) override;
    /// Holds for every browser of the program.
    void SetProxy(const Proxy& proxy) override;
    void SetUserAgent(const QString& userAgent) override;
    void ClearCache() override;
    QString LastError() const override { return lastError_; }
    bool RunsScripts() const override { return true; }
    PagePointing* Pointing() override;

private:
    void OnLoadingChanged(const QWebEngineLoadingInfo& info);
    void OnRendererGone();
    void LeaveDocument();
    struct Wanted {
        QUrl Address;
        std::function<void()> Begin;
    };
    void Load(const QUrl& address, std::function<void()> begin);
    void BeginAgain();
    void TellOfProxy();
    void ProxyIsTold();
    void GoBy(int steps);
    void EndBusy();
    void Tell(std::function<void()> what);
    QString OuterHtmlOf(QStringView element);
    enum class Asked { Once, AgainWhenThePageChanges };
    std::optional<QVariant> Evaluate(const QString& script, Asked asked);

    MessageLoop& loop_;
    std::unique_ptr<QWebEngineProfile> profile_;
    std::unique_ptr<WebEnginePage> page_;
    QPointer<QWebEngineView> view_;
    std::unique_ptr<WebEnginePointing> pointing_;
    QString defaultUserAgent_;
    QString lastError_;
    QString proxyError_; // why nothing can be loaded through the proxy; empty: it can be used
    std::chrono::milliseconds patience_{5000};
    std::optional<QStringList> linkTexts_;
    std::function<void()> afterEnd_;            // what to load when the page's process has ended
    Wanted overtaking_;                         // what was asked for while another page came
    QUrl overtaken_;                            // that other page
    QUrl coming_;                               // the page that began to come up last
    QNetworkProxy way_;                         // that this browser was given last
    std::unique_ptr<QWebEnginePage> proxyPage_; // makes the engine look for another proxy
    Wanted afterProxy_;                         // what to load then
    bool asked_ = false;                        // something was loaded already
    quint64 changes_ = 0;                       // of the page: counts loads that begin, come up or end
    QString lastPage_;                          // address of the last page from a server
    bool busy_ = false;
    bool loading_ = false; // a page has begun to come up
    bool overtakingBegun_ = false;
    bool hung_ = false; // the engine has not answered a question yet
    bool gone_ = false; // the page's process has died, or the engine shows a message of its own
};

} // namespace Brindle
