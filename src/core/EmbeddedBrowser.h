#pragma once

#include "core/MarkupForm.h"
#include "core/Proxy.h"

#include <QObject>
#include <QString>

namespace Brindle {

class PagePointing;

/// Port: the browser in which the user searches and whose document the harvest reads. All calls come from the one
/// thread of the program; loading goes on while messages are handled.
class EmbeddedBrowser : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Starts loading an address; returns at once. "about:blank" empties the document.
    virtual void Navigate(const QString& address) = 0;
    /// Starts loading an address to which the shown page leads. Unlike one of the user's own, it is not loaded where
    /// that page may not lead to; `LastError` then says so.
    virtual void Follow(const QString& address) { Navigate(address); }
    virtual void Stop() = 0;
    virtual void Refresh() = 0;
    virtual void GoBack() = 0;
    virtual void GoForward() = 0;
    /// A page is being loaded.
    virtual bool Busy() const = 0;
    /// The address of the page that is shown, after redirects.
    virtual QString LocationAddress() const = 0;
    /// Numeric address of the server that the shown page came from; empty when it is not known.
    virtual QString PeerAddress() const { return {}; }

    /// The serialisation of the document's body element, tag included, in the form that is asked for; empty while
    /// there is no document or it cannot be read.
    virtual QString BodyOuterHtml(MarkupForm form) = 0;
    /// The serialisation of the whole document with its head, from the html element's start tag to its end tag, in the
    /// form of today's engines; empty when there is none or it cannot be read.
    virtual QString DocumentHtml() = 0;

    /// The document's links (a and area elements with an address), in document order.
    virtual int LinkCount() = 0;
    /// The visible text of a link, 0-based; empty beyond the last one.
    virtual QString LinkInnerText(int index) = 0;
    /// Follows a link as a click would; nothing happens beyond the last one.
    virtual void ClickLink(int index) = 0;

    /// Asks the page for more of its list: scrolls to its end or, where `selector` names a button, clicks that, then
    /// waits, while messages are handled, until the document has grown, for some seconds at most. False when it has
    /// not grown, and in browsers that run no scripts.
    virtual bool LoadMore(const QString& /*selector*/) { return false; }

    virtual void SetProxy(const Proxy& proxy) = 0;
    virtual void SetUserAgent(const QString& userAgent) = 0;
    virtual void ClearCache() = 0;

    /// Why the last page failed to load or could not be read, one line; empty when nothing is wrong.
    virtual QString LastError() const { return {}; }
    /// For pointing at what is shown; null where the browser's view does not show pages as they are.
    virtual PagePointing* Pointing() { return nullptr; }
    /// Whether scripts run in its pages, so that a page can become a results page after it was loaded.
    virtual bool RunsScripts() const = 0;

Q_SIGNALS:
    void ProgressChange(qint64 progress, qint64 maximum);
    void NavigateComplete(const QString& address);
    /// A page wanted something to be stored as a file, which is never done.
    void DownloadRefused(const QString& address);
};

} // namespace Brindle
