#include "ui/BrowserBar.h"

#include "ui/Icons.h"

#include <QHBoxLayout>
#include <QShortcut>

namespace Brindle {

using namespace Qt::StringLiterals;

BrowserBar::BrowserBar(QWidget* parent) : QWidget(parent) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(6, 4, 6, 4);
    row->setSpacing(2);
    const auto button = [&](const QString& name, Glyph glyph, const QString& hint, const QString& key) {
        auto* const made = new QToolButton(this);
        made->setObjectName(name);
        made->setIcon(IconOf(glyph));
        made->setIconSize({20, 20});
        made->setAutoRaise(true);
        made->setFocusPolicy(Qt::TabFocus);
        made->setShortcut(QKeySequence(key));
        SetHint(made, hint);
        row->addWidget(made);
        return made;
    };
    imgBack = button(u"imgBack"_s, Glyph::Back, u"Go Back"_s, u"Alt+Left"_s);
    imgForward = button(u"imgForward"_s, Glyph::Forward, u"Go Forward"_s, u"Alt+Right"_s);
    imgStop = button(u"imgStop"_s, Glyph::StopLoading, u"Stop"_s, u"Esc"_s);
    imgRefresh = button(u"imgRefresh"_s, Glyph::Refresh, u"Refresh"_s, u"F5"_s);
    imgHome = button(u"imgHome"_s, Glyph::Home, u"Home"_s, u"Alt+Home"_s);

    edtAddress = new QLineEdit(this);
    edtAddress->setObjectName(u"edtAddress");
    edtAddress->setAccessibleName(u"Address"_s);
    edtAddress->setClearButtonEnabled(true);
    btnGo = new QPushButton(u"Go"_s, this);
    btnGo->setObjectName(u"btnGo");
    row->addSpacing(4);
    row->addWidget(edtAddress, 1);
    row->addSpacing(4);
    row->addWidget(btnGo);

    const auto go = [this] { Q_EMIT GoTo(edtAddress->text()); };
    connect(btnGo, &QPushButton::clicked, this, go);
    connect(edtAddress, &QLineEdit::returnPressed, this, go);
    auto* const toAddress = new QShortcut(QKeySequence(u"Ctrl+L"_s), this);
    connect(toAddress, &QShortcut::activated, edtAddress, [this] {
        edtAddress->setFocus(Qt::ShortcutFocusReason);
        edtAddress->selectAll();
    });
}

void BrowserBar::Drive(EmbeddedBrowser& browser) {
    const auto leave = [&browser] {
        if (browser.Busy())
            browser.Stop();
    };
    connect(imgBack, &QToolButton::clicked, &browser, [&browser, leave] {
        leave();
        browser.GoBack();
    });
    connect(imgForward, &QToolButton::clicked, &browser, [&browser, leave] {
        leave();
        browser.GoForward();
    });
    connect(imgStop, &QToolButton::clicked, &browser, [&browser] { browser.Stop(); });
    connect(imgRefresh, &QToolButton::clicked, &browser, [&browser] { browser.Refresh(); });
}

void BrowserBar::SetHint(QToolButton* button, const QString& hint) {
    button->setAccessibleName(hint);
    button->setToolTip(u"%1 (%2)"_s.arg(hint, button->shortcut().toString(QKeySequence::NativeText)));
}

} // namespace Brindle
