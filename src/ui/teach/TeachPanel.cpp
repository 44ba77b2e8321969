#include "ui/teach/TeachPanel.h"

#include "discovery/SavedPage.h"
#include "ui/ElidedLabel.h"

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
constexpr int fewestLines = 4; // of the fields that are in sight

} // namespace

TeachPanel::TeachPanel(QWidget* parent)
    : PaneOfRows(parent),
      title_(new QLabel(this)),
      hint_(new QLabel(this)),
      fields_(new QTreeWidget(this)),
      forget_(new QPushButton(this)),
      textsLabel_(new QLabel(this)),
      texts_(new QListWidget(this)),
      field_(new QComboBox(this)),
      use_(new QPushButton(this)),
      next_(new ElidedLabel(Qt::ElideMiddle, this)),
      pointNext_(new QPushButton(this)),
      forgetNext_(new QPushButton(this)),
      details_(new QCheckBox(this)),
      ownPage_(new QPushButton(this)),
      about_(new QPushButton(this)),
      said_(new QLabel(this)),
      nameLabel_(new QLabel(this)),
      name_(new QLineEdit(this)),
      save_(new QPushButton(this)),
      leave_(new QPushButton(this)),
      table_(new LeadTableView) {
    setObjectName(u"TeachPanel");
    const std::pair<QObject*, const char16_t*> names[]{
        {fields_, u"TeachFields"},        {forget_, u"btnTeachForget"},   {texts_, u"TeachTexts"},
        {field_, u"TeachField"},          {use_, u"btnTeachUse"},         {pointNext_, u"btnTeachNext"},
        {forgetNext_, u"btnTeachNoNext"}, {details_, u"chkTeachDetails"}, {name_, u"edtTeachName"},
        {ownPage_, u"btnTeachOwnPage"},   {about_, u"btnTeachAbout"},     {said_, u"TeachSaid"},
        {save_, u"btnTeachSave"},         {leave_, u"btnTeachLeave"},     {table_, u"TeachTable"}};
    for (const auto& [control, name] : names)
        control->setObjectName(QString::fromUtf16(name));
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    next_->setTextFormat(Qt::PlainText);
    for (QLabel* const label : {hint_, said_}) {
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
    fields_->setMinimumHeight(fields_->header()->sizeHint().height() + fewestLines * fields_->fontMetrics().height() +
                              2 * fields_->frameWidth());
    texts_->setUniformItemSizes(true);
    texts_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // the room is for lines; the hints have the rest
    textsLabel_->setBuddy(texts_);
    nameLabel_->setBuddy(name_);
    table_->ShowLeads(model_);

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
    auto* const nextRow = new WrapRow(column->spacing());
    nextRow->addWidget(pointNext_);
    nextRow->addWidget(forgetNext_);
    column->addLayout(nextRow);
    auto* const detailsRow = new WrapRow(column->spacing());
    detailsRow->addWidget(details_);
    detailsRow->addWidget(ownPage_);
    column->addLayout(detailsRow);
    column->addWidget(said_);
    auto* const nameRow = new QHBoxLayout;
    nameRow->addWidget(nameLabel_);
    nameRow->addWidget(name_, 1);
    nameRow->addWidget(about_);
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
    connect(ownPage_, &QPushButton::clicked, this,
            [this] { Q_EMIT OwnPageWanted(session_ && !session_->OnOwnPage()); });
    connect(about_, &QPushButton::clicked, this, &TeachPanel::AboutClicked);
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
    fields_->setHeaderLabels({texts.Text(WindowText::TeachFieldColumn), texts.Text(WindowText::TeachFirstColumn),
                              texts.Text(WindowText::TeachFilledColumn)});
    fields_->setAccessibleName(texts.Text(WindowText::TeachFieldColumn));
    forget_->setText(texts.Text(WindowText::TeachForget));
    windowTexts_ = texts;
    textsText_ = texts.Text(WindowText::TeachTexts);
    linksText_ = texts.Text(WindowText::TeachLinks);
    ownTextsText_ = texts.Text(WindowText::TeachOwnPageTexts);
    field_->setAccessibleName(texts.Text(WindowText::TeachFieldColumn));
    use_->setText(texts.Text(WindowText::TeachUse));
    pointNext_->setText(texts.Text(WindowText::TeachPointNext));
    forgetNext_->setText(texts.Text(WindowText::TeachNoNext));
    details_->setText(texts.Text(WindowText::TeachDetails));
    about_->setText(texts.Text(WindowText::TeachAbout));
    about_->setToolTip(texts.Text(WindowText::TeachAboutTitle));
    about_->setAccessibleName(texts.Text(WindowText::TeachAboutTitle));
    nameLabel_->setText(texts.Text(WindowText::TeachName));
    save_->setText(texts.Text(WindowText::TeachSave));
    leave_->setText(texts.Text(WindowText::TeachLeave));
    proposed_ = texts.Text(WindowText::TeachProposed);
    nextText_ = texts.Text(WindowText::TeachNextIs);
    noNext_ = texts.Text(WindowText::TeachNextNone);
    itemNext_ = texts.Text(WindowText::TeachIsNext);
    itemDetails_ = texts.Text(WindowText::TeachIsDetails);
    hint_->setText(texts.Text(WindowText::TeachPointHint));
    ownPage_->setText(texts.Text(WindowText::TeachOwnPage));
    textsLabel_->setText(textsText_);
    texts_->setAccessibleName(textsLabel_->text().remove(u'&'));
    name_->setAccessibleName(nameLabel_->text().remove(u'&'));
    table_->setAccessibleName(texts.Text(WindowText::TeachTableName));
    leads_.Captions = captions;
    model_.CaptionsChanged();
}

void TeachPanel::Show(const TeachSession& session) {
    session_ = &session;
    leads_.Clear();
    std::array<bool, FieldCount> filled{};
    for (const Lead& lead : session.Leads()) {
        leads_.Append(lead);
        for (int column = 0; column < FieldCount; ++column)
            filled.at(static_cast<size_t>(column)) |= !lead.At(column).isEmpty();
    }
    model_.ShowPending();
    for (int column = 0; column < FieldCount; ++column)
        table_->setColumnHidden(column, !filled.at(static_cast<size_t>(column)));
    choosingNext_ = false;
    ShowPlace(session);
    ShowFields(session);
    ShowTexts(session);
    QString next = session.Reading().Next.isEmpty() ? session.Reading().LoadMore : session.Reading().Next;
    if (next.startsWith(UnknownWebsite))
        next.remove(0, UnknownWebsite.size() - 1); // a path of which nobody knows the host
    next_->setText(next.isEmpty() ? noNext_ : QString(nextText_).replace(u"[VAR1]"_s, next));
    forgetNext_->setEnabled(!session.OnOwnPage() && !session.What().Next.isEmpty());
    details_->setChecked(session.What().Details);
    save_->setEnabled(!session.Reading().Records.empty());
    Say(ProblemText(session.Problem()));
}

// The list is shown, or the own page of one of its businesses.
void TeachPanel::ShowPlace(const TeachSession& session) {
    const bool own = session.OnOwnPage();
    const QString name = leads_.Count() > 0 ? leads_.At(0).Name : QString();
    hint_->setText(own ? windowTexts_.With(WindowText::TeachOwnPageHint, {name})
                       : windowTexts_.Text(pointing_ ? WindowText::TeachPointHint : WindowText::TeachChooseHint));
    ownPage_->setText(windowTexts_.Text(own ? WindowText::TeachBackToList : WindowText::TeachOwnPage));
    ownPage_->setEnabled(own || !session.OwnPages(1).isEmpty());
    pointNext_->setEnabled(!own);
    details_->setEnabled(!own);
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
    const size_t records = session.Reading().Records.size();
    for (int column = 0; column < FieldCount; ++column) {
        auto* const item = new QTreeWidgetItem(fields_);
        item->setText(0, captions_.value(column));
        item->setData(0, fieldRole, column);
        int filled = session.Reading().Counts.Filled.at(static_cast<size_t>(column));
        size_t of = records;
        if (leads_.Count() > 0) {
            item->setText(1, leads_.At(0).At(column));
            item->setToolTip(1, leads_.At(0).At(column));
        }
        // What the businesses' own pages say, of as many as have been read.
        if (filled == 0) {
            for (qsizetype row = 0; row < leads_.Count(); ++row)
                filled += leads_.At(row).At(column).isEmpty() ? 0 : 1;
            of = session.OwnPagesRead();
        }
        if (filled > 0)
            item->setText(2, u"%1/%2"_s.arg(filled).arg(of));
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
    case TeachProblem::NotFetched:
        return windowTexts_.Text(WindowText::TeachNotFetched);
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
    textsLabel_->setText(choosingNext_ ? linksText_ : session.OnOwnPage() ? ownTextsText_ : textsText_);
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
    if (field_->count() > 0 && !choosingNext_ && !session_->OnOwnPage()) {
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
