#include "ui/HistoryPage.h"

#include "ui/AccessKeys.h"
#include "ui/ChoiceBox.h"
#include "ui/WrapRow.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QSplitter>
#include <QVBoxLayout>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

template <class T>
T* Named(T* control, const char16_t* name) {
    control->setObjectName(QString::fromUtf16(name));
    return control;
}

QPushButton* Button(QWidget* parent, const char16_t* name) {
    auto* const button = Named(new QPushButton(parent), name);
    button->setAutoDefault(false);
    return button;
}

QTableView* Table(QWidget* parent, const char16_t* name) {
    auto* const table = Named(new QTableView(parent), name);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setWordWrap(false);
    table->setTabKeyNavigation(false);
    table->setCornerButtonEnabled(false);
    table->setSortingEnabled(true);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 7);
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    return table;
}

} // namespace

// Controls are made in the order in which Tab walks through them.
HistoryPage::HistoryPage(QWidget* parent) : QWidget(parent) {
    auto* const split = Named(new QSplitter(Qt::Horizontal, this), u"splHistory");
    split->setChildrenCollapsible(false);

    auto* const harvests = new QWidget(split);
    lvwHarvests = Table(harvests, u"lvwHarvests");
    btnHAll = Button(harvests, u"btnHAll");
    btnHOpen = Button(harvests, u"btnHOpen");
    btnHExport = Button(harvests, u"btnHExport");
    btnHDelete = Button(harvests, u"btnHDelete");
    auto* const commands = new WrapRow(6);
    for (QPushButton* button : {btnHAll, btnHOpen, btnHExport, btnHDelete})
        commands->addWidget(button);
    auto* const leftColumn = new QVBoxLayout(harvests);
    leftColumn->setContentsMargins(8, 6, 4, 4);
    leftColumn->addWidget(lvwHarvests, 1);
    leftColumn->addLayout(commands);

    auto* const leads = new QWidget(split);
    lblHFind = Named(new QLabel(leads), u"lblHFind");
    edtHFind = Named(new QLineEdit(leads), u"edtHFind");
    edtHFind->setClearButtonEnabled(true);
    cbxHSite = Named(new ChoiceBox(leads), u"cbxHSite");
    cbxHSite->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cbxHSite->setMinimumContentsLength(14);
    cbxHSince = Named(new ChoiceBox(leads), u"cbxHSince");
    chkHNew = Named(new QCheckBox(leads), u"chkHNew");
    lvwHLeads = Table(leads, u"lvwHLeads");
    lblHCount = Named(new QLabel(leads), u"lblHCount");
    btnHErase = Button(leads, u"btnHErase");
    edtHFind->setMinimumWidth(fontMetrics().averageCharWidth() * 20);
    auto* const filter = new WrapRow(6);
    filter->addWidget(lblHFind);
    filter->addWidget(edtHFind);
    filter->addWidget(cbxHSite);
    filter->addWidget(cbxHSince);
    filter->addWidget(chkHNew);
    auto* const below = new QHBoxLayout;
    below->addWidget(lblHCount, 1);
    below->addWidget(btnHErase);
    auto* const rightColumn = new QVBoxLayout(leads);
    rightColumn->setContentsMargins(4, 6, 8, 4);
    rightColumn->addLayout(filter);
    rightColumn->addWidget(lvwHLeads, 1);
    rightColumn->addLayout(below);

    split->addWidget(harvests);
    split->addWidget(leads);
    split->setSizes({580, 700});
    split->setStretchFactor(0, 4);
    split->setStretchFactor(1, 5);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(split);
    lvwHLeads->sortByColumn(0, Qt::DescendingOrder);
    lvwHarvests->sortByColumn(0, Qt::DescendingOrder);
}

void HistoryPage::ApplyCaptions(const WindowTexts& texts) {
    btnHAll->setText(texts.Text(WindowText::HistoryAll));
    btnHOpen->setText(texts.Text(WindowText::HistoryOpen));
    btnHExport->setText(texts.Text(WindowText::HistoryExport));
    btnHDelete->setText(texts.Text(WindowText::HistoryDelete));
    btnHErase->setText(texts.Text(WindowText::HistoryErase));
    lblHFind->setText(texts.Text(WindowText::HistoryFind));
    chkHNew->setText(texts.Text(WindowText::HistoryOnlyNew));
    lvwHarvests->setAccessibleName(texts.Text(WindowText::History));
    lvwHLeads->setAccessibleName(texts.Text(WindowText::HistoryLeads));
    edtHFind->setAccessibleName(WithoutColon(lblHFind->text()));
    edtHFind->setPlaceholderText(texts.Text(WindowText::HistoryFindHint));
    cbxHSite->setAccessibleName(texts.Text(WindowText::HistoryDirectory));
    cbxHSince->setAccessibleName(texts.Text(WindowText::HistoryDate));
    if (cbxHSite->count() == 0)
        cbxHSite->addItem({}, QString());
    cbxHSite->setItemText(0, texts.Text(WindowText::HistoryEveryDirectory));
    const std::initializer_list<std::pair<WindowText, int>> spans{{WindowText::HistoryAlways, 0},
                                                                  {WindowText::HistoryToday, 1},
                                                                  {WindowText::HistoryWeek, 7},
                                                                  {WindowText::HistoryMonth, 30}};
    int at = 0;
    for (const auto& [text, days] : spans) {
        if (cbxHSince->count() <= at)
            cbxHSince->addItem({}, days);
        cbxHSince->setItemText(at++, texts.Text(text));
    }
}

void HistoryPage::AddKeys(AccessKeys& keys) const {
    keys.Add(lblHFind, edtHFind);
    for (QAbstractButton* button :
         std::initializer_list<QAbstractButton*>{btnHAll, btnHOpen, btnHExport, btnHDelete, chkHNew, btnHErase})
        keys.Add(button);
}

} // namespace Brindle
