#pragma once

#include "core/EmbeddedBrowser.h"

#include <QHash>
#include <QStringList>

namespace Brindle::Test {

/// A browser whose pages the test writes: an address shows the text that stands in `Pages`, at once. What is asked of
/// it is recorded in `Calls`.
class ScriptedBrowser : public EmbeddedBrowser {
    Q_OBJECT

public:
    struct Link {
        QString Text;
        QString Address;
    };

    QHash<QString, QString> Pages;       ///< address to body text, delivered as it stands in either form
    QHash<QString, QString> Documents;   ///< address to whole document, where it is more than the body text
    QHash<QString, QList<Link>> LinksOf; ///< address to the page's links
    QStringList Calls;
    std::function<bool()> OnLoadMore; ///< whether the page has grown
    std::function<void()> OnRead;     ///< called before a page is handed out

    void Navigate(const QString& address) override;
    void Stop() override { Calls.append(QStringLiteral("stop")); }
    void Refresh() override { Calls.append(QStringLiteral("refresh")); }
    void GoBack() override { Calls.append(QStringLiteral("back")); }
    void GoForward() override { Calls.append(QStringLiteral("forward")); }
    bool Busy() const override { return IsBusy; }
    QString LocationAddress() const override { return address_; }
    QString BodyOuterHtml(MarkupForm form) override;
    bool LoadMore(const QString& selector) override {
        Calls.append(QStringLiteral("more ") + selector);
        return OnLoadMore && OnLoadMore();
    }
    QString DocumentHtml() override { return Documents.value(address_, Pages.value(address_)); }
    int LinkCount() override { return static_cast<int>(LinksOf.value(address_).size()); }
    QString LinkInnerText(int index) override;
    void ClickLink(int index) override;
    void SetProxy(const Proxy& proxy) override;
    void SetUserAgent(const QString& userAgent) override;
    void ClearCache() override { Calls.append(QStringLiteral("clear cache")); }
    bool RunsScripts() const override { return false; }

    QString LastError() const override { return Errors.value(address_); }

    QHash<QString, QString> Errors; ///< address to why it cannot be loaded
    bool IsBusy = false;
    MarkupForm LastForm = MarkupForm::Standard;

private:
    QString address_;
};

} // namespace Brindle::Test
