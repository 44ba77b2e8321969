#pragma once

#include "core/EmbeddedBrowser.h"
#include "net/HttpClient.h"
#include "page/HtmlDocument.h"

#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

namespace Brindle {

/// An embedded browser without scripts and without a display: it fetches a page and parses it. Pages come in while Qt's
/// messages are handled. A page is parsed when it is first asked for, and is then kept as text alone.
///
/// While a page is being loaded the document is empty. A page that a server answers with an error status is a page.
class StaticBrowser : public EmbeddedBrowser {
    Q_OBJECT

public:
    StaticBrowser();
    ~StaticBrowser() override;

    void Navigate(const QString& address) override;
    void Follow(const QString& address) override;
    /// Ends a load that is under way; the page before it is the document again.
    void Stop() override;
    void Refresh() override;
    void GoBack() override;
    void GoForward() override;
    bool Busy() const override { return transfer_ != nullptr; }
    QString LocationAddress() const override { return document_.Address; }
    QString PeerAddress() const override { return document_.Peer; }
    QString BodyOuterHtml(MarkupForm form) override;
    QString DocumentHtml() override;
    int LinkCount() override;
    QString LinkInnerText(int index) override;
    /// Where a click on a link leads; empty for one that leads to no page.
    QString LinkTarget(int index);
    /// Follows a link to a page or to a place on this page; one that would run a script, write a mail or store a file
    /// does nothing.
    void ClickLink(int index) override;
    void SetProxy(const Proxy& proxy) override;
    void SetUserAgent(const QString& userAgent) override;
    /// Pages are never kept, so there is nothing to empty; cookies stay.
    void ClearCache() override {}
    QString LastError() const override { return lastError_; }
    bool RunsScripts() const override { return false; }

private:
    // What is shown. `Source` waits to be parsed; once it is, `Parsed` is set and `Source` empty.
    struct Document {
        QString Address;
        QString Peer;
        QString Source;
        std::optional<HtmlDocument> Parsed;
        std::optional<QString> LegacyBody;
    };

    void Open(const QString& address, const QString& referer, const PageOrigin& from);
    void Load(const QString& address, const QString& referer, const PageOrigin& from, bool reload);
    void Show(Document document);
    void ShowBlank();
    void Loaded();
    void ReportProgress();
    void AddToHistory(const QString& address);
    void GoBy(int steps);
    const HtmlDocument& Parsed();

    HttpClient client_;
    HttpRequest template_; // user agent and proxy
    std::unique_ptr<HttpTransfer> transfer_;
    QString loading_;        // the address of the transfer
    int historyTarget_ = -1; // the place in the history that the transfer will take; -1 for a new one
    quint64 loads_ = 0;      // counts transfers, so that the end of one that was dropped is known
    qint64 expectedSize_ = 0;
    QTimer progress_;
    Document document_;
    PageOrigin lastPage_; // that really came, so an emptied document or a failure leads no further than it did
    std::vector<QString> history_;
    int historyPlace_ = -1;
    QString lastError_;
};

} // namespace Brindle
