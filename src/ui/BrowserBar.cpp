#include "BrowserBar.h"

#include "Icons.h"

#include <QHBoxLayout>
#include <QShortcut>

namespace Brindle {

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
    imgBack = button(QStringLiteral("imgBack"), Glyph::Back, QStringLiteral("Go Back"), QStringLiteral("Alt+Left"));
    imgForward =
        button(QStringLiteral("imgForward"), Glyph::Forward, QStringLiteral("Go Forward"), QStringLiteral("Alt+Right"));
    imgStop = button(QStringLiteral("imgStop"), Glyph::StopLoading, QStringLiteral("Stop"), QStringLiteral("Esc"));
    imgRefresh = button(QStringLiteral("imgRefresh"), Glyph::Refresh, QStringLiteral("Refresh"), QStringLiteral("F5"));
    imgHome = button(QStringLiteral("imgHome"), Glyph::Home, QStringLiteral("Home"), QStringLiteral("Alt+Home"));

    edtAddress = new QLineEdit(this);
    edtAddress->setObjectName(u"edtAddress");
    edtAddress->setAccessibleName(QStringLiteral("Address"));
    edtAddress->setClearButtonEnabled(true);
    btnGo = new QPushButton(QStringLiteral("Go"), this);
    btnGo->setObjectName(u"btnGo");
    row->addSpacing(4);
    row->addWidget(edtAddress, 1);
    row->addSpacing(4);
    row->addWidget(btnGo);

    const auto go = [this] { Q_EMIT GoTo(edtAddress->text()); };
    connect(btnGo, &QPushButton::clicked, this, go);
    connect(edtAddress, &QLineEdit::returnPressed, this, go);
    auto* const toAddress = new QShortcut(QKeySequence(QStringLiteral("Ctrl+L")), this);
    connect(toAddress, &QShortcut::activated, edtAddress, [this] {
        edtAddress->setFocus(Qt::ShortcutFocusReason);
        edtAddress->selectAll();
    });
}

void BrowserBar::SetHint(QToolButton* button, const QString& hint) {
    button->setAccessibleName(hint);
    button->setToolTip(QStringLiteral("%1 (%2)").arg(hint, button->shortcut().toString(QKeySequence::NativeText)));
}

} // namespace Brindle
