#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace Brindle {

/// One line about something that happened, with a button for what can be done about it and one that closes it. Hidden
/// until it has something to say; it never takes the focus by itself.
class NoticeBar : public QFrame {
    Q_OBJECT

public:
    explicit NoticeBar(QWidget* parent = nullptr);

    /// Shows a text; without an action the button is hidden.
    void Say(const QString& text, const QString& action = {});
    void SetCloseHint(const QString& hint);
    /// It is shown with its button.
    bool Asks() const { return !isHidden() && !action_->isHidden(); }
    QString Said() const { return isHidden() ? QString() : text_->text(); }

Q_SIGNALS:
    void ActionClicked();
    void Closed();

private:
    QLabel* text_;
    QPushButton* action_;
    QToolButton* close_;
};

} // namespace Brindle
