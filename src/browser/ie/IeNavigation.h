#pragma once

#include <QString>

namespace Brindle {

/// Where a web browser control stands between two pages, by what it tells. While it is on its way to another page, the
/// one that is being left counts no more; what the engine shows in place of a page that did not come is no page.
class IeNavigation {
public:
    /// Addresses that bring up a page; the others run a script, write a mail, or show the engine's own messages.
    static bool BringsPage(const QString& address);

    /// The control sets out for an address, or is about to be told to.
    void Begin(const QString& address);
    /// The control cannot bring the page up; the engine's own message may come in its place.
    void Fail(const QString& address, const QString& reason);
    /// The document of the navigation is there.
    void Show();
    /// The navigation is over, and what was shown before is shown still.
    void End() { leaving_ = false; }

    bool Leaving() const { return leaving_; }
    /// There is a page that can be read.
    bool HasPage() const { return !leaving_ && shownInPlaceOf_.isEmpty(); }
    /// The address in whose place the engine shows a message; empty when it shows a page.
    QString ShownInPlaceOf() const { return shownInPlaceOf_; }
    /// Why the last page did not come, one line; empty when it did.
    QString LastError() const { return lastError_; }

private:
    bool leaving_ = false;
    QString failed_; // address of the navigation under way, once it has failed
    QString shownInPlaceOf_;
    QString lastError_;
};

} // namespace Brindle
