#pragma once

#include "core/EmbeddedBrowser.h"

#include <QDeadlineTimer>
#include <QSet>
#include <QWebEnginePage>

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

protected:
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& preset, QString* result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& old, const QStringList& types) override;

private:
    void AnswerProxy(const QUrl& asker, QAuthenticator* login);

    Proxy proxy_;
    QDeadlineTimer windowExpected_{0}; // until when a click may open a window
    QSet<QUrl> askedFor_;              // addresses of this load for which the proxy has asked
};

} // namespace Brindle
