#pragma once

#include <QAbstractNativeEventFilter>
#include <QWidget>

namespace Brindle {

class IeControl;

/// The part of the window in which a web browser control shows its pages. It has a window of the system's of its own,
/// gives the control its size, the keyboard and the keys.
class IeWidget final : public QWidget, private QAbstractNativeEventFilter {
public:
    IeWidget();
    ~IeWidget() override;

    /// Shows a control from now on, which must live until another one is shown; null: nothing is shown. False when the
    /// control cannot be shown here.
    bool Show(IeControl* control);
    /// What stands here while there are no pages to be seen.
    void SetNote(const QString& note);

protected:
    bool event(QEvent* event) override;
    bool nativeEvent(const QByteArray& type, void* message, qintptr* result) override;
    void focusInEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    bool Place();
    void PassFocus(bool forward);

    IeControl* control_ = nullptr;
    QString note_;
};

} // namespace Brindle
