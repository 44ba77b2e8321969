#pragma once

#include "core/EmbeddedBrowser.h"

#include <QSet>
#include <QWebEnginePage>

namespace Brindle {

/// A page that never asks the user anything: the dialogs of its scripts, of servers and of the engine are answered
/// without being shown, what wants a window of its own opens in its place, and files are neither sent nor stored.
class WebEnginePage : public QWebEnginePage {
    Q_OBJECT

public:
    explicit WebEnginePage(QWebEngineProfile* profile);

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
    QSet<QUrl> askedFor_; // addresses of this load for which the proxy has asked
};

} // namespace Brindle
