#pragma once

#include "core/EmbeddedBrowser.h"

#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QWidget>

namespace Brindle {

/// The row above the embedded browser: its buttons, the address box and Go.
class BrowserBar : public QWidget {
    Q_OBJECT

public:
    explicit BrowserBar(QWidget* parent = nullptr);

    /// From now on Back, Forward, Stop and Refresh are the browser's.
    void Drive(EmbeddedBrowser& browser);

    /// What a button says when the pointer rests on it, and to a screen reader.
    static void SetHint(QToolButton* button, const QString& hint);

    QToolButton* imgBack;
    QToolButton* imgForward;
    QToolButton* imgStop;
    QToolButton* imgRefresh;
    QToolButton* imgHome;
    QLineEdit* edtAddress;
    QPushButton* btnGo;

Q_SIGNALS:
    /// Go or the Enter key: the address box's text is to be loaded.
    void GoTo(const QString& address);
};

} // namespace Brindle
