#pragma once

#include "i18n/WindowTexts.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace Brindle {

/// The quiet bar above a page of any website: what the program sees on it, and what can be done. It knows nothing of
/// pages. It never takes the focus by itself.
class AnyPageBar : public QFrame {
    Q_OBJECT

public:
    explicit AnyPageBar(QWidget* parent = nullptr);

    void ApplyTexts(const WindowTexts& texts);
    /// Shows a line; `lists` above 1 shows the buttons that step through so many lists.
    void Show(const QString& line, bool canHarvest, int lists = 0);
    /// "Mend..." instead of "Teach...".
    void OfferMending(bool mend);
    QString Said() const { return isHidden() ? QString() : text_->text(); }

Q_SIGNALS:
    void HarvestClicked();
    void TeachClicked();
    void Stepped(int by);

private:
    QLabel* text_;
    QToolButton* previous_;
    QToolButton* next_;
    QPushButton* harvest_;
    QPushButton* teach_;
    QString teachText_;
    QString mendText_;
    bool mend_ = false;
};

} // namespace Brindle
