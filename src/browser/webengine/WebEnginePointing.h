#pragma once

#include "core/PagePointing.h"

#include <QVariant>

#include <memory>

class QWebEnginePage;

namespace Brindle {

/// Pointing at pages of the Chromium engine. What it remembers of a page lies in a script world of its own.
class WebEnginePointing : public PagePointing {
public:
    /// `evaluate` runs a script in that world and waits for what it gives.
    WebEnginePointing(QWebEnginePage& page, std::function<QVariant(const QString& script)> evaluate);

    PageSnapshot TakeSnapshot() override;
    void AskPlaces(const std::vector<std::vector<int>>& groups,
                   std::function<void(const ShownPlaces&)> answer) override;
    void AskElementAt(QPointF place, std::function<void(int element)> answer) override;
    void ScrollTo(int element) override;

private:
    double ScaleOfView() const;
    void Ask(const QString& script, std::function<void(const QVariant&)> answer);

    QWebEnginePage& page_;
    std::function<QVariant(const QString&)> evaluate_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); // answers that come too late are dropped
};

} // namespace Brindle
