#include "browser/ie/IeWidget.h"

#include "browser/ie/IeControl.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QPointer>

namespace Brindle {

IeWidget::IeWidget() {
    setAttribute(Qt::WA_NativeWindow);
    setFocusPolicy(Qt::StrongFocus);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

IeWidget::~IeWidget() {
    Show(nullptr);
}

bool IeWidget::Show(IeControl* control) {
    if (control_)
        control_->Site().Deactivate();
    control_ = control;
    if (!control_)
        return true;
    control_->Site().FocusLeaves = [self = QPointer<IeWidget>(this)](bool forward) {
        // Not in the middle of the control's own handling of the key.
        if (self)
            QMetaObject::invokeMethod(
                self, [self, forward] { self->PassFocus(forward); }, Qt::QueuedConnection);
    };
    return Place();
}

void IeWidget::SetNote(const QString& note) {
    note_ = note;
    update();
}

bool IeWidget::Place() {
    return control_->Show(reinterpret_cast<HWND>(winId()));
}

bool IeWidget::event(QEvent* event) {
    // Qt gives a widget another window when it gets another parent.
    if (event->type() == QEvent::WinIdChange && control_ && internalWinId())
        Place();
    return QWidget::event(event);
}

bool IeWidget::nativeEvent(const QByteArray& type, void* message, qintptr* result) {
    const auto* const msg = static_cast<const MSG*>(message);
    if (control_ && msg->hwnd == control_->Site().Window()) {
        if (msg->message == WM_SIZE)
            control_->Site().FollowWindow();
        else if (msg->message == WM_DESTROY)
            control_->Site().Deactivate(); // its window would go with this one
    }
    return QWidget::nativeEvent(type, message, result);
}

void IeWidget::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (control_)
        control_->Site().TakeFocus();
}

void IeWidget::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.drawText(rect().marginsRemoved({20, 20, 20, 20}), Qt::AlignCenter | Qt::TextWordWrap, note_);
}

// The keys go to the control's own windows, so they are seen only before they are handed out.
bool IeWidget::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    auto* const msg = static_cast<MSG*>(message);
    if (!control_ || type != "windows_dispatcher_MSG" || msg->message < WM_KEYFIRST || msg->message > WM_KEYLAST)
        return false;
    return control_->Site().TakeKey(*msg);
}

void IeWidget::PassFocus(bool forward) {
    QWidget* next = this;
    do {
        next = forward ? next->nextInFocusChain() : next->previousInFocusChain();
        if (next == this)
            return;
    } while (!(next->focusPolicy() & Qt::TabFocus) || !next->isEnabled() || !next->isVisible() ||
             next->window() != window());
    activateWindow();
    next->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

} // namespace Brindle
