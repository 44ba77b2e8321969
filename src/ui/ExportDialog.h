#pragma once

#include "core/LeadList.h"
#include "core/Settings.h"
#include "export/ExportCommand.h"
#include "i18n/WindowTexts.h"
#include "ui/AccessKeys.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QTableWidget>

#include <functional>
#include <span>

namespace Brindle {

/// The formats behind classic CSV in the window's save dialogs, in the language of the window.
std::vector<OfferedFormat> FurtherFormats(const WindowTexts& texts);

/// What a format could not hold, in the language of the window; empty when it held all.
QString LossesText(const ExportLosses& losses, const WindowTexts& texts);

/// The dialog "Export as": format, further columns, and how the first rows come out. It writes nothing itself.
class TfrmExport : public QDialog {
    Q_OBJECT

public:
    static constexpr int PreviewedRows = 20;

    /// `rows`: those to be exported, ascending; they and the list must outlive the dialog.
    /// `nameServer`: as the options name it; empty: that of the system.
    TfrmExport(const LeadList& leads, std::span<const qsizetype> rows, const Settings& settings,
               const WindowTexts& texts, QString nameServer, QWidget* parent);

    /// What is chosen.
    OfferedFormat Format() const;
    /// The same as columns to be written. `waiting` is called over and over while a name server is asked; when it
    /// returns false, nothing more is asked.
    ExtraColumns Extra(const std::function<bool()>& waiting) const;

    QComboBox* cbxFormat;
    std::vector<QCheckBox*> Columns; ///< in the order of the further columns
    QCheckBox* chkMailDomains;
    QLabel* lblPreview;
    QTableWidget* lvwPreview;
    QDialogButtonBox* Buttons;

private:
    std::vector<ExtraColumn> Chosen() const;
    void ShowColumn(ExtraColumn column);
    void ShowPreview();

    const LeadList& leads_;
    std::span<const qsizetype> rows_;
    const Settings& settings_;
    std::vector<OfferedFormat> formats_;
    QStringList furtherCaptions_; // in the order of the further columns
    QString nameServer_;
    AccessKeys keys_{QString()};
};

} // namespace Brindle
