#include "ui/teach/TeachPanel.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QShortcut>
#include <QVBoxLayout>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int fieldRole = Qt::UserRole;
constexpr int nodeRole = Qt::UserRole;
// What can be said of a text beside the fourteen fields.
constexpr int nextPage = FieldCount;
constexpr int detailsPage = FieldCount + 1;

} // namespace

TeachPanel::TeachPanel(QWidget* parent)
    : QWidget(parent),
      title_(new QLabel(this)),
      hint_(new QLabel(this)),
      fields_(new QTreeWidget(this)),
      forget_(new QPushButton(this)),
      textsLabel_(new QLabel(this)),
      texts_(new QListWidget(this)),
      field_(new QComboBox(this)),
      use_(new QPushButton(this)),
      next_(new QLabel(this)),
      pointNext_(new QPushButton(this)),
      forgetNext_(new QPushButton(this)),
      details_(new QCheckBox(this)),
      said_(new QLabel(this)),
      nameLabel_(new QLabel(this)),
      name_(new QLineEdit(this)),
      save_(new QPushButton(this)),
      leave_(new QPushButton(this)),
      table_(new QTableView) {
    setObjectName(u"TeachPanel");
    const std::pair<QObject*, const char16_t*> names[]{
        {fields_, u"TeachFields"},        {forget_, u"btnTeachForget"},   {texts_, u"TeachTexts"},
        {field_, u"TeachField"},          {use_, u"btnTeachUse"},         {pointNext_, u"btnTeachNext"},
        {forgetNext_, u"btnTeachNoNext"}, {details_, u"chkTeachDetails"}, {name_, u"edtTeachName"},
        {save_, u"btnTeachSave"},         {leave_, u"btnTeachLeave"},     {table_, u"TeachTable"}};
    for (const auto& [control, name] : names)
        control->setObjectName(QString::fromUtf16(name));
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    for (QLabel* const label : {hint_, next_, said_}) {
        label->setWordWrap(true);
        label->setTextFormat(Qt::PlainText);
    }
    said_->setForegroundRole(QPalette::Link);
    fields_->setColumnCount(3);
    fields_->setRootIsDecorated(false);
    fields_->setUniformRowHeights(true);
    fields_->header()->setStretchLastSection(false);
    fields_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    fields_->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    fields_->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    texts_->setUniformItemSizes(true);
    textsLabel_->setBuddy(texts_);
    nameLabel_->setBuddy(name_);
    table_->setModel(&model_);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
    table_->setTabKeyNavigation(false);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(8, 6, 8, 6);
    column->setSpacing(5);
    column->addWidget(title_);
    column->addWidget(hint_);
    column->addWidget(fields_, 5);
    auto* const textsRow = new QHBoxLayout;
    textsRow->addWidget(textsLabel_, 1);
    textsRow->addWidget(forget_);
    column->addLayout(textsRow);
    column->addWidget(texts_, 2);
    auto* const useRow = new QHBoxLayout;
    useRow->addWidget(field_, 1);
    useRow->addWidget(use_);
    column->addLayout(useRow);
    column->addWidget(next_);
    auto* const nextRow = new QHBoxLayout;
    nextRow->addWidget(pointNext_);
    nextRow->addWidget(forgetNext_);
    nextRow->addStretch(1);
    column->addLayout(nextRow);
    column->addWidget(details_);
    column->addWidget(said_);
    auto* const nameRow = new QHBoxLayout;
    nameRow->addWidget(nameLabel_);
    nameRow->addWidget(name_, 1);
    column->addLayout(nameRow);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(save_);
    buttons->addWidget(leave_);
    column->addLayout(buttons);
    setMinimumWidth(300);

    connect(texts_, &QListWidget::currentRowChanged, this, [this] {
        OfferFields();
        Q_EMIT TextHighlighted(ChosenText());
    });
    connect(texts_, &QListWidget::itemActivated, this, &TeachPanel::Use);
    connect(use_, &QPushButton::clicked, this, &TeachPanel::Use);
    connect(forget_, &QPushButton::clicked, this, [this] {
        if (const QTreeWidgetItem* const item = fields_->currentItem())
            Q_EMIT FieldForgotten(static_cast<Field>(item->data(0, fieldRole).toInt()));
    });
    connect(fields_, &QTreeWidget::currentItemChanged, this,
            [this](const QTreeWidgetItem* item) { forget_->setEnabled(item && !item->text(2).isEmpty()); });
    connect(pointNext_, &QPushButton::clicked, this, [this] {
        OfferLinks(!choosingNext_);
        Q_EMIT PointAtNext(choosingNext_);
    });
    connect(forgetNext_, &QPushButton::clicked, this, &TeachPanel::NextForgotten);
    connect(details_, &QCheckBox::clicked, this, &TeachPanel::DetailsWanted);
    connect(save_, &QPushButton::clicked, this, &TeachPanel::SaveClicked);
    connect(leave_, &QPushButton::clicked, this, &TeachPanel::LeaveClicked);
    connect(name_, &QLineEdit::returnPressed, this, &TeachPanel::SaveClicked);
    // Also while the page has the focus.
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &TeachPanel::LeaveClicked);
    ApplyTexts({}, EnglishCaptions());
}

TeachPanel::~TeachPanel() {
    if (table_ && !table_->parent())
        delete table_;
}

void TeachPanel::ApplyTexts(const WindowTexts& texts, const QStringList& captions) {
    captions_ = captions;
    title_->setText(texts.Text(WindowText::TeachTitle));
    hint_->setText(texts.Text(WindowText::TeachPointHint));
    fields_->setHeaderLabels({texts.Text(WindowText::TeachFieldColumn), texts.Text(WindowText::TeachFirstColumn),
                              texts.Text(WindowText::TeachFilledColumn)});
    fields_->setAccessibleName(texts.Text(WindowText::TeachFieldColumn));
    forget_->setText(texts.Text(WindowText::TeachForget));
    windowTexts_ = texts;
    textsText_ = texts.Text(WindowText::TeachTexts);
    linksText_ = texts.Text(WindowText::TeachLinks);
    textsLabel_->setText(choosingNext_ ? linksText_ : textsText_);
    field_->setAccessibleName(texts.Text(WindowText::TeachFieldColumn));
    use_->setText(texts.Text(WindowText::TeachUse));
    pointNext_->setText(texts.Text(WindowText::TeachPointNext));
    forgetNext_->setText(texts.Text(WindowText::TeachNoNext));
    details_->setText(texts.Text(WindowText::TeachDetails));
    nameLabel_->setText(texts.Text(WindowText::TeachName));
    save_->setText(texts.Text(WindowText::TeachSave));
    leave_->setText(texts.Text(WindowText::TeachLeave));
    proposed_ = texts.Text(WindowText::TeachProposed);
    nextText_ = texts.Text(WindowText::TeachNextIs);
    noNext_ = texts.Text(WindowText::TeachNextNone);
    itemNext_ = texts.Text(WindowText::TeachIsNext);
    itemDetails_ = texts.Text(WindowText::TeachIsDetails);
    texts_->setAccessibleName(textsLabel_->text().remove(u'&'));
    name_->setAccessibleName(nameLabel_->text().remove(u'&'));
    table_->setAccessibleName(texts.Text(WindowText::TeachTableName));
    leads_.Captions = captions;
    model_.CaptionsChanged();
}

void TeachPanel::Show(const TeachSession& session) {
    session_ = &session;
    leads_.Clear();
    for (const PageRecord& record : session.Reading().Records)
        leads_.Append(record.Fields);
    model_.ShowPending();
    for (int column = 0; column < FieldCount; ++column)
        table_->setColumnHidden(column, session.Reading().Counts.Filled.at(static_cast<size_t>(column)) == 0);
    choosingNext_ = false;
    ShowFields(session);
    ShowTexts(session);
    const QString next = session.Reading().Next.isEmpty() ? session.Reading().LoadMore : session.Reading().Next;
    next_->setText(next.isEmpty() ? noNext_ : QString(nextText_).replace(u"[VAR1]"_s, next));
    forgetNext_->setEnabled(!session.What().Next.isEmpty());
    details_->setChecked(session.What().Details);
    save_->setEnabled(!session.Reading().Records.empty());
    Say(ProblemText(session.Problem()));
}

void TeachPanel::Detach() {
    session_ = nullptr;
    choosingNext_ = false;
    leads_.Clear();
    model_.ShowPending();
    const QSignalBlocker quiet(texts_);
    texts_->clear();
    fields_->clear();
}

void TeachPanel::ShowFields(const TeachSession& session) {
    const QTreeWidgetItem* const before = fields_->currentItem();
    const int current = before ? before->data(0, fieldRole).toInt() : 0;
    fields_->clear();
    const auto& records = session.Reading().Records;
    for (int column = 0; column < FieldCount; ++column) {
        auto* const item = new QTreeWidgetItem(fields_);
        item->setText(0, captions_.value(column));
        item->setData(0, fieldRole, column);
        const int filled = session.Reading().Counts.Filled.at(static_cast<size_t>(column));
        if (!records.empty()) {
            item->setText(1, records.front().Fields.At(column));
            item->setToolTip(1, records.front().Fields.At(column));
        }
        if (filled > 0)
            item->setText(2, u"%1/%2"_s.arg(filled).arg(records.size()));
        const bool proposed = filled > 0 && session.IsProposed(static_cast<Field>(column));
        item->setToolTip(0, proposed ? proposed_ : QString());
        QColor pale = palette().color(QPalette::Text);
        pale.setAlphaF(0.65F);
        for (int part = 0; proposed && part < 3; ++part)
            item->setForeground(part, pale);
        if (column == current)
            fields_->setCurrentItem(item);
    }
}

QString TeachPanel::ProblemText(TeachProblem problem) const {
    switch (problem) {
    case TeachProblem::None:
        return {};
    case TeachProblem::NameFirst:
        return windowTexts_.Text(WindowText::TeachNameFirst);
    case TeachProblem::NothingLike:
        return windowTexts_.Text(WindowText::TeachNothingLike);
    case TeachProblem::NoLink:
        return windowTexts_.Text(WindowText::TeachNoLink);
    }
    return {};
}

// The next page can be chosen from a list, too.
void TeachPanel::OfferLinks(bool offer) {
    if (!session_)
        return;
    choosingNext_ = offer;
    ShowTexts(*session_);
    Say({});
    if (offer)
        texts_->setFocus();
}

void TeachPanel::ShowTexts(const TeachSession& session) {
    const int current = texts_->currentRow();
    const QSignalBlocker quiet(texts_);
    texts_->clear();
    textsLabel_->setText(choosingNext_ ? linksText_ : textsText_);
    texts_->setAccessibleName(textsLabel_->text().remove(u'&'));
    for (const ChoosableText& text : choosingNext_ ? session.Links() : session.Texts()) {
        auto* const item = new QListWidgetItem(text.Text, texts_);
        item->setData(nodeRole, text.Node);
        item->setToolTip(text.Text);
    }
    if (texts_->count() > 0)
        texts_->setCurrentRow(choosingNext_ ? 0 : std::clamp(current, 0, texts_->count() - 1));
    OfferFields();
}

void TeachPanel::OfferFields() {
    field_->clear();
    if (choosingNext_ && texts_->count() > 0)
        field_->addItem(itemNext_, nextPage);
    else if (const NodeIndex element = ChosenText(); session_ && element != noNode)
        for (const Field column : session_->LikelyFields(element))
            field_->addItem(captions_.value(static_cast<int>(column)), static_cast<int>(column));
    if (field_->count() > 0 && !choosingNext_) {
        field_->addItem(itemNext_, nextPage);
        field_->addItem(itemDetails_, detailsPage);
    }
    use_->setEnabled(field_->count() > 0);
}

NodeIndex TeachPanel::ChosenText() const {
    const QListWidgetItem* const item = texts_->currentItem();
    return item ? item->data(nodeRole).toInt() : noNode;
}

void TeachPanel::Use() {
    const NodeIndex element = ChosenText();
    if (element == noNode || field_->currentIndex() < 0)
        return;
    const int what = field_->currentData().toInt();
    if (what == nextPage)
        Q_EMIT NextChosen(element);
    else if (what == detailsPage)
        Q_EMIT DetailsChosen(element);
    else
        Q_EMIT TextChosen(element, static_cast<Field>(what));
}

void TeachPanel::Say(const QString& line) {
    said_->setText(line);
    said_->setVisible(!line.isEmpty());
}

void TeachPanel::SetName(const QString& name) {
    name_->setText(name);
}

} // namespace Brindle
