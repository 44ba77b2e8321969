#pragma once

#include "core/QtMessageLoop.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QWebEnginePage>
#include <QWebEngineProfile>

namespace Brindle::Test {

class QuietPage : public QWebEnginePage {
public:
    using QWebEnginePage::QWebEnginePage;

protected:
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override {}
};

/// A page of the engine that a test fills and asks.
class EnginePage {
public:
    EnginePage() : page_(&profile_) {}

    /// Whether it was shown.
    bool Show(const QString& html) {
        bool loaded = false;
        const auto connection =
            QObject::connect(&page_, &QWebEnginePage::loadFinished, &page_, [&loaded] { loaded = true; });
        page_.setHtml(html);
        const bool shown = Comes([&loaded] { return loaded; });
        QObject::disconnect(connection);
        return shown;
    }

    /// What a function of JavaScript, which takes and gives an array of texts, makes of these texts.
    QStringList Ask(QStringView function, const QStringList& texts) {
        const QByteArray written = QJsonDocument(QJsonArray::fromStringList(texts)).toJson(QJsonDocument::Compact);
        QStringList answers;
        bool answered = false;
        page_.runJavaScript(u'(' + function.toString() + u")(" + QString::fromUtf8(written) + u')',
                            [&](const QVariant& result) {
                                answers = result.toStringList();
                                answered = true;
                            });
        Comes([&answered] { return answered; });
        return answers;
    }

private:
    template <typename Condition>
    bool Comes(Condition condition) {
        QElapsedTimer waited;
        waited.start();
        while (!condition() && waited.elapsed() < 20'000)
            loop_.WaitForMessage(50);
        return condition();
    }

    QtMessageLoop loop_;
    QWebEngineProfile profile_;
    QuietPage page_;
};

} // namespace Brindle::Test
