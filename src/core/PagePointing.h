#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>

#include <functional>
#include <vector>

namespace Brindle {

/// The document that a browser shows, at one moment.
struct PageSnapshot {
    QString Html;   ///< as `EmbeddedBrowser::DocumentHtml` gives it; empty when it cannot be read
    QString Marked; ///< the same with the attribute `elementNumberAttribute` in every element that can be pointed at
};

inline constexpr QStringView elementNumberAttribute = u"data-brindle-element";

/// Where elements are shown.
struct ShownPlaces {
    std::vector<QRectF> Places; ///< one for each group that was asked for; empty for what is not shown
    bool Changed = false;       ///< the document is not that of the last snapshot any more
};

/// Port: what a browser that shows its pages can do for a person who points at them. Nothing of it changes the
/// document, and the page's scripts can neither see nor change it. Elements are numbers of the last snapshot; places
/// are in the coordinates of the browser's view.
class PagePointing {
public:
    virtual ~PagePointing() = default;

    /// Takes a snapshot; waits for the page while messages are handled, as `DocumentHtml` does.
    virtual PageSnapshot TakeSnapshot() = 0;
    /// Asks where elements are shown, several together as the place around all of them. The answer comes later, or not
    /// at all when the page goes away.
    virtual void AskPlaces(const std::vector<std::vector<int>>& groups,
                           std::function<void(const ShownPlaces&)> answer) = 0;
    /// Asks which element is shown at a place; -1: none of the snapshot.
    virtual void AskElementAt(QPointF place, std::function<void(int element)> answer) = 0;
    /// Scrolls an element into sight.
    virtual void ScrollTo(int element) = 0;
};

} // namespace Brindle
