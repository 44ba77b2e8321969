#include "ui/ExportDialog.h"

#include "export/CsvFormat.h"
#include "net/MailDomains.h"
#include "ui/ChoiceBox.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

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

QString LossesText(const ExportLosses& losses, const WindowTexts& texts) {
    QStringList parts;
    for (const auto& [count, text] :
         std::initializer_list<std::pair<qint64, WindowText>>{{losses.Characters, WindowText::ExportLostCharacters},
                                                              {losses.Shortened, WindowText::ExportShortened},
                                                              {losses.PlainLinks, WindowText::ExportPlainLinks}})
        if (count > 0)
            parts += texts.With(text, {QLocale::system().toString(count)});
    return parts.join(u", "_s);
}

// Controls are made in the order in which Tab walks through them.
TfrmExport::TfrmExport(const LeadList& leads, std::span<const qsizetype> rows, const Settings& settings,
                       const WindowTexts& texts, QString nameServer, QWidget* parent)
    : QDialog(parent),
      cbxFormat(new ChoiceBox(this)),
      lblPreview(new QLabel(this)),
      leads_(leads),
      rows_(rows),
      settings_(settings),
      formats_(FurtherFormats(texts)),
      nameServer_(std::move(nameServer)) {
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
    top->addStretch(1);
    column->addLayout(top);
    auto* const further = new QHBoxLayout;
    for (const OfferedColumn& offered : offeredColumns) {
        auto* const box = new QCheckBox(texts.Text(offered.Caption), this);
        furtherCaptions_.append(texts.Text(offered.Caption));
        box->setObjectName(u"chkColumn" + QString::number(Columns.size()));
        box->setAccessibleDescription(texts.Text(offered.Hint));
        AccessKeys::SetHint(box, texts.Text(offered.Hint));
        connect(box, &QCheckBox::toggled, this, [this, which = Columns.size()](bool isChosen) {
            ShowPreview();
            if (isChosen)
                ShowColumn(static_cast<ExtraColumn>(which));
        });
        keys_.Add(box);
        Columns.push_back(box);
        further->addWidget(box);
    }
    chkMailDomains = new QCheckBox(texts.Text(WindowText::ExportMailDomains), this);
    chkMailDomains->setObjectName(u"chkMailDomains");
    chkMailDomains->setAccessibleDescription(texts.Text(WindowText::ExportMailDomainsHint));
    AccessKeys::SetHint(chkMailDomains, texts.Text(WindowText::ExportMailDomainsHint));
    keys_.Add(chkMailDomains);
    further->addWidget(chkMailDomains);
    further->addStretch(1);
    column->addLayout(further);
    // The answer has its place in the column of checked addresses.
    QCheckBox* const email = Columns.back();
    connect(chkMailDomains, &QCheckBox::toggled, this, [email](bool asks) {
        if (asks)
            email->setChecked(true);
    });
    connect(email, &QCheckBox::toggled, this, [this](bool checked) {
        if (!checked)
            chkMailDomains->setChecked(false);
    });

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
    lvwPreview->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    lvwPreview->verticalHeader()->hide();
    lvwPreview->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 7);
    lvwPreview->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
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
        chkMailDomains->setEnabled(!cards);
        ShowPreview();
    });
    keys_.Assign();
    ShowPreview();
    resize(860, 440);
}

OfferedFormat TfrmExport::Format() const {
    return formats_.at(static_cast<size_t>(std::max(0, cbxFormat->currentIndex())));
}

std::vector<ExtraColumn> TfrmExport::Chosen() const {
    std::vector<ExtraColumn> columns;
    for (size_t i = 0; i < Columns.size(); ++i)
        if (Columns[i]->isChecked() && Columns[i]->isEnabled())
            columns.push_back(static_cast<ExtraColumn>(i));
    return columns;
}

ExtraColumns TfrmExport::Extra(const std::function<bool()>& waiting) const {
    if (!chkMailDomains->isChecked() || !chkMailDomains->isEnabled())
        return ExtraColumns(Chosen());
    const auto goesOn = std::make_shared<bool>(true);
    const auto domains = std::make_shared<MailDomains>(nameServer_, std::chrono::seconds(5), [waiting, goesOn] {
        if (*goesOn && waiting)
            *goesOn = waiting();
    });
    return ExtraColumns(Chosen(), [domains, goesOn](const QString& domain) {
        return *goesOn && domains->Check(domain) == MailDomain::TakesNone;
    });
}

// A further column stands behind the others, mostly beyond the edge.
void TfrmExport::ShowColumn(ExtraColumn column) {
    const std::vector<ExtraColumn> chosen = Chosen();
    const auto behind = static_cast<int>(std::find(chosen.begin(), chosen.end(), column) - chosen.begin());
    const int place = lvwPreview->columnCount() - static_cast<int>(chosen.size()) + behind;
    lvwPreview->doItemsLayout(); // the room of the new column counts at once
    lvwPreview->scrollTo(lvwPreview->model()->index(0, place));
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
    const ExtraColumns extra(Chosen()); // nobody is asked for a look
    for (const ExtraColumn column : extra.Columns())
        captions.append(furtherCaptions_[static_cast<int>(column)]);
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
