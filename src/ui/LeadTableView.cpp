#include "ui/LeadTableView.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

namespace Brindle {

namespace {

// Widths in average characters, by what the fields usually hold.
constexpr std::array<int, FieldCount> columnCharacters{22, 30, 40, 26, 18, 9, 14, 12, 18, 18, 32, 34, 34, 38};

// A field must not break the table that is pasted elsewhere.
void AppendCell(QString& to, const QString& text) {
    for (const QChar c : text)
        to += c == u'\t' || c == u'\n' || c == u'\r' ? QChar(u' ') : c;
}

} // namespace

LeadTableView::LeadTableView(QWidget* parent) : QTableView(parent) {
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(true);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setTabKeyNavigation(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 7);
    horizontalHeader()->setSectionsClickable(false);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void LeadTableView::ShowLeads(LeadTableModel& model) {
    model_ = &model;
    setModel(model_);
    const int character = fontMetrics().averageCharWidth();
    for (int column = 0; column < FieldCount; ++column) {
        const int caption = horizontalHeader()->sectionSizeHint(column) + character;
        setColumnWidth(column, std::max(columnCharacters.at(static_cast<size_t>(column)) * character, caption));
    }
}

std::vector<qsizetype> LeadTableView::SelectedRows() const {
    std::vector<qsizetype> rows;
    // Range by range: asking for the list of selected indices would make an object of every cell.
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

qsizetype LeadTableView::Selected() const {
    const QModelIndex focused = currentIndex();
    if (focused.isValid() && selectionModel()->isSelected(focused))
        return focused.row();
    qsizetype first = -1;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        if (first < 0 || range.top() < first)
            first = range.top();
    return first;
}

void LeadTableView::CopySelected() const {
    QString text;
    for (const qsizetype row : SelectedRows()) {
        const Lead lead = model_->LeadAt(row);
        for (int column = 0; column < FieldCount; ++column) {
            if (column > 0)
                text += u'\t';
            AppendCell(text, lead.At(column));
        }
        text += u'\n';
    }
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void LeadTableView::selectAll() {
    model_->ShowPending();
    QTableView::selectAll();
}

void LeadTableView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        CopySelected();
    } else if (event->matches(QKeySequence::Delete)) {
        Q_EMIT DeletePressed();
    } else {
        QTableView::keyPressEvent(event);
        return;
    }
    event->accept();
}

void LeadTableView::reset() {
    const int top = verticalScrollBar()->value();
    QTableView::reset();
    if (top > 0) {
        executeDelayedItemsLayout();
        verticalScrollBar()->setValue(top);
    }
}

} // namespace Brindle
