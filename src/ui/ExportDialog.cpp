#include "ui/ExportDialog.h"

#include "export/CsvFormat.h"
#include "ui/ChoiceBox.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int widestColumn = 220; // pixels

struct OfferedColumn {
    WindowText Caption;
    WindowText Hint;
};
// In the order of the further columns.
constexpr OfferedColumn offeredColumns[]{{WindowText::ExportPhone, WindowText::ExportPhoneHint},
                                         {WindowText::ExportPhoneCheck, WindowText::ExportPhoneCheckHint},
                                         {WindowText::ExportEmail, WindowText::ExportEmailHint}};

} // namespace

std::vector<OfferedFormat> FurtherFormats(const WindowTexts& texts) {
    return {{LeadFormat::Workbook, texts.Text(WindowText::ExportWorkbook) + u" (*.xlsx)"},
            {LeadFormat::CsvSheet, texts.Text(WindowText::ExportSheetCsv) + u" (*.csv)"},
            {LeadFormat::VCard, texts.Text(WindowText::ExportCards) + u" (*.vcf)"}};
}

// Controls are made in the order in which Tab walks through them.
TfrmExport::TfrmExport(const LeadList& leads, std::span<const qsizetype> rows, const Settings& settings,
                       const WindowTexts& texts, QWidget* parent)
    : QDialog(parent),
      cbxFormat(new ChoiceBox(this)),
      lblPreview(new QLabel(this)),
      leads_(leads),
      rows_(rows),
      settings_(settings),
      formats_(FurtherFormats(texts)) {
    formats_.insert(formats_.begin(), ClassicCsv());
    setObjectName(u"frmExport");
    setWindowTitle(QString(texts.Text(WindowText::ExportAs)).remove(u'\u2026'));
    auto* const lblFormat = new QLabel(texts.Text(WindowText::ExportFormat), this);
    cbxFormat->setObjectName(u"cbxFormat");
    cbxFormat->setAccessibleName(WithoutColon(lblFormat->text()));
    for (const WindowText name :
         {WindowText::ExportClassic, WindowText::ExportWorkbook, WindowText::ExportSheetCsv, WindowText::ExportCards})
        cbxFormat->addItem(texts.Text(name));
    keys_.Add(lblFormat, cbxFormat);

    auto* const column = new QVBoxLayout(this);
    auto* const top = new QHBoxLayout;
    top->addWidget(lblFormat);
    top->addWidget(cbxFormat);
    top->addSpacing(12);
    for (const OfferedColumn& offered : offeredColumns) {
        auto* const box = new QCheckBox(texts.Text(offered.Caption), this);
        box->setObjectName(u"chkColumn" + QString::number(Columns.size()));
        box->setAccessibleDescription(texts.Text(offered.Hint));
        AccessKeys::SetHint(box, texts.Text(offered.Hint));
        connect(box, &QCheckBox::toggled, this, &TfrmExport::ShowPreview);
        keys_.Add(box);
        Columns.push_back(box);
        top->addWidget(box);
    }
    top->addStretch(1);
    column->addLayout(top);

    auto* const cardsHint = new QLabel(texts.Text(WindowText::ExportCardsHint), this);
    cardsHint->setWordWrap(true);
    cardsHint->setForegroundRole(QPalette::PlaceholderText);
    cardsHint->hide();
    column->addWidget(cardsHint);

    const auto count = static_cast<qsizetype>(rows.size());
    const QLocale locale = QLocale::system();
    lblPreview->setText(
        texts.With(WindowText::ExportPreview,
                   {locale.toString(std::min<qsizetype>(count, PreviewedRows)), locale.toString(count)}));
    column->addWidget(lblPreview);
    lvwPreview = new QTableWidget(this);
    lvwPreview->setObjectName(u"lvwPreview");
    lvwPreview->setAccessibleName(lblPreview->text());
    lvwPreview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwPreview->setTabKeyNavigation(false);
    lvwPreview->setWordWrap(false);
    lvwPreview->verticalHeader()->hide();
    column->addWidget(lvwPreview, 1);

    Buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(Buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(Buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(Buttons);
    connect(cbxFormat, &QComboBox::currentIndexChanged, this, [this, cardsHint] {
        const bool cards = Format().Format == LeadFormat::VCard;
        cardsHint->setVisible(cards);
        for (QCheckBox* const box : Columns)
            box->setEnabled(!cards);
        ShowPreview();
    });
    keys_.Assign();
    ShowPreview();
    resize(860, 440);
}

OfferedFormat TfrmExport::Format() const {
    return formats_.at(static_cast<size_t>(std::max(0, cbxFormat->currentIndex())));
}

ExtraColumns TfrmExport::Extra() const {
    std::vector<ExtraColumn> columns;
    for (size_t i = 0; i < Columns.size(); ++i)
        if (Columns[i]->isChecked() && Columns[i]->isEnabled())
            columns.push_back(static_cast<ExtraColumn>(i));
    return ExtraColumns(std::move(columns));
}

void TfrmExport::ShowPreview() {
    // A card has all fields; the columns of the settings are those of tables.
    const bool cards = Format().Format == LeadFormat::VCard;
    std::vector<int> fields;
    QStringList captions;
    for (int field = 0; field < FieldCount; ++field)
        if (cards || IsExported(field, settings_.eExportFields)) {
            fields.push_back(field);
            captions.append(leads_.Captions.value(field));
        }
    const ExtraColumns extra = Extra();
    captions += extra.Captions();
    const auto count = static_cast<int>(std::min<size_t>(rows_.size(), PreviewedRows));
    lvwPreview->clear();
    lvwPreview->setColumnCount(static_cast<int>(captions.size()));
    lvwPreview->setRowCount(count);
    lvwPreview->setHorizontalHeaderLabels(captions);
    for (int row = 0; row < count; ++row) {
        const qsizetype from = rows_[static_cast<size_t>(row)];
        if (from >= leads_.Count())
            break;
        const Lead lead = leads_.At(from);
        QStringList texts;
        for (const int field : fields)
            texts.append(lead.At(field));
        texts += extra.Of(lead);
        for (qsizetype column = 0; column < texts.size(); ++column)
            lvwPreview->setItem(row, static_cast<int>(column), new QTableWidgetItem(texts[column]));
    }
    lvwPreview->resizeColumnsToContents();
    for (int column = 0; column < lvwPreview->columnCount(); ++column)
        lvwPreview->setColumnWidth(column, std::min(lvwPreview->columnWidth(column), widestColumn));
}

} // namespace Brindle
