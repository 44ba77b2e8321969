#include "ui/History.h"

#include "core/LeadListCommands.h"
#include "export/ExportCommand.h"
#include "store/StoreEdits.h"
#include "ui/ExportDialog.h"

#include <QDateTime>
#include <QHeaderView>

#include <algorithm>
#include <numeric>
#include <span>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// Questions of a kind replace each other while they wait.
constexpr int harvestsKind = 1;
constexpr int countKind = 2;
constexpr int leadsKind = 3;
constexpr qint64 mostHarvests = 100'000;
constexpr qint64 leadsAtOnce = 5000;
constexpr qint64 deep = 2000; // rows behind which a sorted list is sorted as a whole

} // namespace

History::History(const Parts& parts) : parts_(parts) {
    HistoryPage& page = parts_.Page;
    sorted_.setSourceModel(&Harvests);
    sorted_.setSortRole(StoredHarvestsModel::SortRole);
    page.lvwHarvests->setModel(&sorted_);
    page.lvwHarvests->sortByColumn(StoredHarvestsModel::Date, Qt::DescendingOrder);
    page.lvwHLeads->setModel(&Leads);
    const int character = page.fontMetrics().averageCharWidth();
    for (int column = 0; column < Leads.columnCount(); ++column)
        page.lvwHLeads->setColumnWidth(column, (column == StoredLeadsModel::FirstField + 1 ? 28 : 18) * character);
    Leads.Ask = [this](qint64 offset, qint64 limit) { AskLeads(offset, limit); };

    connect(page.lvwHarvests->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        const StoredHarvest* const harvest = Selected();
        harvest_ = harvest ? harvest->Id : 0;
        ShowButtons();
        AskCount();
    });
    connect(page.lvwHLeads->selectionModel(), &QItemSelectionModel::selectionChanged, this, &History::ShowButtons);
    connect(&Leads, &StoredLeadsModel::OrderChanged, this, &History::AskCount);
    connect(page.edtHFind, &QLineEdit::textChanged, this, &History::AskCount);
    connect(page.cbxHSite, &QComboBox::activated, this, &History::AskCount);
    connect(page.cbxHSince, &QComboBox::activated, this, &History::AskCount);
    connect(page.chkHNew, &QCheckBox::toggled, this, &History::AskCount);
    connect(page.btnHAll, &QPushButton::clicked, page.lvwHarvests, &QTableView::clearSelection);
    connect(page.btnHOpen, &QPushButton::clicked, this, [this] {
        if (const StoredHarvest* const harvest = Selected())
            parts_.Desk.OpenHarvest(*harvest);
    });
    connect(page.lvwHarvests, &QTableView::activated, page.btnHOpen, &QPushButton::click);
    connect(page.btnHExport, &QPushButton::clicked, this, &History::Export);
    connect(page.btnHDelete, &QPushButton::clicked, this, &History::Delete);
    connect(page.btnHErase, &QPushButton::clicked, this, &History::Erase);
    connect(&parts_.Desk, &StoreDesk::Changed, this, [this] {
        if (parts_.Page.isVisible())
            Refresh();
    });
    ShowButtons();
}

void History::Show() {
    shown_ = true;
    Refresh();
}

void History::Refresh() {
    parts_.Desk.Flush();
    AskHarvests();
    AskCount();
}

void History::ApplyTexts() {
    const WindowTexts& texts = parts_.Texts;
    const auto directory = [this](const QString& code) { return DirectoryOf(code); };
    Harvests.SetTexts({texts.Text(WindowText::HistoryDate), texts.Text(WindowText::HistoryDirectory),
                       texts.Text(WindowText::HistorySearch), texts.Text(WindowText::HistoryLeads),
                       texts.Text(WindowText::HistoryNew)},
                      directory);
    Leads.SetTexts(QStringList{texts.Text(WindowText::HistoryDate)} + parts_.Bench.Leads.Captions, directory);
    WidenColumns();
    if (parts_.Page.isVisible())
        Refresh();
}

// Moments and numbers are short and never worth cutting; the others share the rest.
void History::WidenColumns() {
    const HistoryPage& page = parts_.Page;
    const int margin = page.fontMetrics().averageCharWidth() * 3;
    const int moment = page.fontMetrics().horizontalAdvance(ShownMoment(QDateTime::currentSecsSinceEpoch())) + margin;
    QHeaderView* const header = page.lvwHarvests->horizontalHeader();
    for (const int column : {StoredHarvestsModel::Directory, StoredHarvestsModel::Search})
        header->setSectionResizeMode(column, QHeaderView::Stretch);
    page.lvwHarvests->setColumnWidth(StoredHarvestsModel::Date, moment);
    for (const int column : {StoredHarvestsModel::Leads, StoredHarvestsModel::New})
        page.lvwHarvests->setColumnWidth(column, header->sectionSizeHint(column));
    header->setMinimumSectionSize(margin * 2); // where there is no room for all, the list is scrolled
    page.lvwHLeads->setColumnWidth(0, moment);
}

LeadFilter History::Filter() const {
    const HistoryPage& page = parts_.Page;
    LeadFilter filter;
    filter.Text = page.edtHFind->text();
    filter.Site = page.cbxHSite->currentData().toString();
    filter.Harvest = harvest_;
    filter.OnlyNew = page.chkHNew->isChecked();
    if (const int days = page.cbxHSince->currentData().toInt(); days > 0)
        filter.Since = QDate::currentDate().addDays(1 - days).startOfDay().toSecsSinceEpoch();
    return filter;
}

void History::AskHarvests() {
    parts_.Desk.Post(harvestsKind, [this](Database& database) -> std::function<void()> {
        StoreQueries queries(database);
        return [this, harvests = queries.Harvests(0, mostHarvests), sites = queries.Sites()] {
            const qint64 selected = harvest_;
            Harvests.Show(harvests);
            for (int row = 0; row < Harvests.rowCount(); ++row)
                if (Harvests.At(row).Id == selected)
                    parts_.Page.lvwHarvests->selectRow(sorted_.mapFromSource(Harvests.index(row, 0)).row());
            QComboBox* const box = parts_.Page.cbxHSite;
            const QString site = box->currentData().toString();
            while (box->count() > 1)
                box->removeItem(1);
            for (const QString& code : sites)
                box->addItem(DirectoryOf(code), code);
            box->setCurrentIndex(std::max(0, box->findData(site)));
            ShowButtons();
        };
    });
}

void History::AskCount() {
    if (!shown_)
        return;
    const quint64 question = ++question_;
    parts_.Desk.Post(countKind, [this, question, filter = Filter()](Database& database) -> std::function<void()> {
        return [this, question, count = StoreQueries(database).LeadCount(filter)] {
            if (question != question_)
                return;
            parts_.Page.lblHCount->setText(
                parts_.Texts.With(WindowText::HistoryCount, {QLocale::system().toString(count)}));
            Leads.Begin(count);
            ShowButtons();
        };
    });
}

void History::AskLeads(qint64 offset, qint64 limit) {
    parts_.Desk.Post(leadsKind,
                     [this, question = question_, filter = Filter(), order = Leads.Order(), offset, limit,
                      sorted = inOrder_](Database& database) -> std::function<void()> {
                         StoreQueries queries(database);
                         std::vector<StoredLead> leads;
                         if (order.Column == LeadOrder::Found || offset < deep) {
                             leads = queries.Leads(filter, order, offset, limit);
                         } else {
                             // A page far down takes the sorting of all before it, so that is done once for all pages.
                             if (sorted->Question != question)
                                 *sorted = {question, queries.Numbers(filter, order)};
                             const std::span<const qint64> all(sorted->Numbers);
                             const size_t from = std::min(static_cast<size_t>(offset), all.size());
                             leads = queries.LeadsOf(
                                 all.subspan(from, std::min(static_cast<size_t>(limit), all.size() - from)));
                         }
                         return [this, question, offset, leads = std::move(leads)] {
                             if (question == question_)
                                 Leads.Take(offset, leads);
                         };
                     });
}

void History::Export() {
    const StoredHarvest* const harvest = Selected();
    if (!harvest)
        return;
    parts_.Desk.Flush();
    parts_.Desk.Post(0, [this, id = harvest->Id, uid = harvest->Info.Uid](Database& database) -> std::function<void()> {
        // In the list's own form, which takes a third of the room of single texts.
        const auto list = std::make_shared<LeadList>();
        StoreQueries queries(database);
        for (qint64 seq = 0;;) {
            const std::vector<StoredLead> leads = queries.LeadsOf(id, seq, leadsAtOnce);
            if (leads.empty())
                break;
            for (const StoredLead& lead : leads)
                list->Append(lead.Lead);
            seq = leads.back().Seq;
        }
        return [this, list, uid] {
            list->Captions = parts_.Bench.Leads.Captions;
            std::vector<qsizetype> rows(static_cast<size_t>(list->Count()));
            std::iota(rows.begin(), rows.end(), 0);
            const bool saved =
                ExportSelected({*list, parts_.Bench.Options, parts_.Bench.Texts, parts_.Notices, parts_.Status,
                                parts_.Loop, parts_.DocumentsFolder, FurtherFormats(parts_.Texts),
                                [this](const ExportLosses& losses) { return LossesText(losses, parts_.Texts); }},
                               rows);
            if (saved)
                parts_.Desk.Post(0, [uid](Database& store) -> std::function<void()> {
                    StoreEdits(store).Settle(uid);
                    return {};
                });
        };
    });
}

void History::Delete() {
    const StoredHarvest* const harvest = Selected();
    if (!harvest || !parts_.Notices.Confirm(parts_.Texts.With(
                        WindowText::HistoryConfirmDelete,
                        {ShownMoment(harvest->Info.Begun / 1000), QLocale::system().toString(harvest->Leads)})))
        return;
    parts_.Desk.Post(0, [this, id = harvest->Id](Database& database) -> std::function<void()> {
        StoreEdits(database).DeleteHarvest(id);
        return [this] {
            harvest_ = 0;
            Refresh();
        };
    });
}

void History::Erase() {
    const StoredLead* const lead = Leads.At(parts_.Page.lvwHLeads->currentIndex().row());
    if (!lead || !parts_.Notices.Confirm(parts_.Texts.With(WindowText::HistoryConfirmErase, {lead->Lead.Name})))
        return;
    parts_.Desk.Post(0, [this, business = lead->Business](Database& database) -> std::function<void()> {
        const std::vector<StoredLead> leads = StoreQueries(database).LeadsOfBusiness(business);
        StoreEdits(database).EraseBusiness(business);
        return [this, leads] {
            // It goes from the results list as well, where it may stand more than once.
            LeadList& list = parts_.Bench.Leads;
            std::vector<qsizetype> rows;
            for (qsizetype row = 0; row < list.Count(); ++row) {
                const Lead listed = list.At(row);
                if (std::any_of(leads.begin(), leads.end(),
                                [&](const StoredLead& stored) { return stored.Lead == listed; }))
                    rows.push_back(row);
            }
            parts_.Desk.RowsToGo(rows);
            if (!rows.empty())
                list.Remove(rows);
            ShowListCount(list, parts_.Bench.Texts, parts_.Status);
            Refresh();
        };
    });
}

const StoredHarvest* History::Selected() const {
    const QModelIndexList rows = parts_.Page.lvwHarvests->selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : &Harvests.At(sorted_.mapToSource(rows.first()).row());
}

QString History::DirectoryOf(const QString& siteCode) const {
    const SiteEntry* const entry = parts_.Bench.Catalogue.Find(siteCode);
    return entry ? entry->DisplayEntry() : siteCode;
}

void History::ShowButtons() {
    const HistoryPage& page = parts_.Page;
    const bool harvest = Selected() != nullptr;
    for (QWidget* button : {page.btnHOpen, page.btnHExport, page.btnHDelete, page.btnHAll})
        button->setEnabled(harvest);
    page.btnHErase->setEnabled(page.lvwHLeads->selectionModel()->hasSelection());
}

} // namespace Brindle
