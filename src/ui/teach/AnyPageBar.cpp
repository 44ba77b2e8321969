#include "ui/teach/AnyPageBar.h"

#include <QHBoxLayout>

namespace Brindle {

using namespace Qt::StringLiterals;

AnyPageBar::AnyPageBar(QWidget* parent)
    : QFrame(parent),
      text_(new QLabel(this)),
      previous_(new QToolButton(this)),
      next_(new QToolButton(this)),
      harvest_(new QPushButton(this)),
      teach_(new QPushButton(this)) {
    setObjectName(u"AnyPageBar");
    setFrameShape(QFrame::StyledPanel);
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    previous_->setObjectName(u"btnPreviousList");
    next_->setObjectName(u"btnNextList");
    harvest_->setObjectName(u"btnAnyHarvest");
    teach_->setObjectName(u"btnTeach");
    previous_->setArrowType(Qt::LeftArrow);
    next_->setArrowType(Qt::RightArrow);
    for (QToolButton* const button : {previous_, next_}) {
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        button->hide();
    }
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(8, 3, 6, 3);
    row->addWidget(text_, 1);
    row->addWidget(previous_);
    row->addWidget(next_);
    row->addWidget(harvest_);
    row->addWidget(teach_);
    connect(harvest_, &QPushButton::clicked, this, &AnyPageBar::HarvestClicked);
    connect(teach_, &QPushButton::clicked, this, &AnyPageBar::TeachClicked);
    connect(previous_, &QToolButton::clicked, this, [this] { Q_EMIT Stepped(-1); });
    connect(next_, &QToolButton::clicked, this, [this] { Q_EMIT Stepped(1); });
    ApplyTexts({});
    hide();
}

void AnyPageBar::ApplyTexts(const WindowTexts& texts) {
    teachText_ = texts.Text(WindowText::Teach);
    mendText_ = texts.Text(WindowText::Mend);
    harvest_->setText(texts.Text(WindowText::AnyHarvest));
    previous_->setToolTip(texts.Text(WindowText::PreviousList));
    next_->setToolTip(texts.Text(WindowText::NextList));
    previous_->setAccessibleName(previous_->toolTip());
    next_->setAccessibleName(next_->toolTip());
    teach_->setToolTip(texts.Text(WindowText::TeachHint));
    OfferMending(mend_);
}

void AnyPageBar::OfferMending(bool mend) {
    mend_ = mend;
    teach_->setText(mend ? mendText_ : teachText_);
}

void AnyPageBar::Show(const QString& line, bool canHarvest, int lists) {
    text_->setText(line);
    setAccessibleName(line);
    harvest_->setVisible(canHarvest);
    previous_->setVisible(lists > 1);
    next_->setVisible(lists > 1);
    show();
}

} // namespace Brindle
