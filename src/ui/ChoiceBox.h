#pragma once

#include <QComboBox>
#include <QWheelEvent>

namespace Brindle {

/// A selector that the wheel turns only while its list is open: whoever scrolls past it has not chosen anything.
class ChoiceBox : public QComboBox {
public:
    using QComboBox::QComboBox;

protected:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

} // namespace Brindle
