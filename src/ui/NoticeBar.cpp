#include "ui/NoticeBar.h"

#include "ui/Icons.h"

#include <QHBoxLayout>

namespace Brindle {

using namespace Qt::StringLiterals;

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent), text_(new QLabel(this)), action_(new QPushButton(this)), close_(new QToolButton(this)) {
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    text_->setForegroundRole(QPalette::ToolTipText);
    text_->setTextFormat(Qt::PlainText); // addresses and what servers say
    text_->setWordWrap(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    action_->setAutoDefault(false);
    close_->setAutoRaise(true);
    close_->setIcon(IconOf(Glyph::StopLoading));
    close_->setFocusPolicy(Qt::TabFocus);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(8, 3, 4, 3);
    row->addWidget(text_, 1);
    row->addWidget(action_);
    row->addWidget(close_);
    connect(action_, &QPushButton::clicked, this, &NoticeBar::ActionClicked);
    connect(close_, &QToolButton::clicked, this, [this] {
        hide();
        Q_EMIT Closed();
    });
    hide();
}

void NoticeBar::Say(const QString& text, const QString& action) {
    text_->setText(text);
    setAccessibleName(text);
    action_->setText(action);
    action_->setVisible(!action.isEmpty());
    show();
}

void NoticeBar::SetCloseHint(const QString& hint) {
    close_->setToolTip(hint);
    close_->setAccessibleName(hint);
}

} // namespace Brindle
