#pragma once

#include "core/EmbeddedBrowser.h"

#include <QDeadlineTimer>
#include <QSet>
#include <QWebEnginePage>

#include <utility>

namespace Brindle {

/// A page that never asks the user anything: the dialogs of its scripts, of servers and of the engine are answered
/// without being shown, a window of its own that the user asked for with a click opens in its place, others are
/// dropped, and files are neither sent nor stored.
class WebEnginePage : public QWebEnginePage {
    Q_OBJECT

public:
    explicit WebEnginePage(QWebEngineProfile* profile);

    /// A link is clicked in the user's place: the window that it may open is wanted, up to some seconds after
    /// `EndClick`, unless another page begins to load.
    void BeginClick() { windowExpected_ = QDeadlineTimer(QDeadlineTimer::Forever); }
    void EndClick();

    /// The user name and password for the proxy; asked for when the proxy demands them.
    void SetProxyLogin(const Proxy& proxy) { proxy_ = proxy; }

    /// Why the page at `from` may not lead to an address; empty when it may, or when `from` is empty.
    QString RefusalOf(const QString& from, const QUrl& url) const;
    /// What is loaded next comes from the page at `from`: its redirects are held to the same. Empty: the user's wish.
    void GuardFor(const QString& from) { guarded_ = from; }
    /// Why a redirect was not followed; empty when none was refused since the last call.
    QString TakeRefusal() { return std::exchange(refusal_, QString()); }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& preset, QString* result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& old, const QStringList& types) override;

private:
    void AnswerProxy(const QUrl& asker, QAuthenticator* login);

    Proxy proxy_;
    QString guarded_; // the page that leads to what is being loaded
    QString refusal_;
    QDeadlineTimer windowExpected_{0}; // until when a click may open a window
    QSet<QUrl> askedFor_;              // addresses of this load for which the proxy has asked
};

} // namespace Brindle
