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

#include <span>

namespace Brindle {

/// The formats behind classic CSV in the window's save dialogs, in the language of the window.
std::vector<OfferedFormat> FurtherFormats(const WindowTexts& texts);

/// The dialog "Export as": format, further columns, and how the first rows come out. It writes nothing itself.
class TfrmExport : public QDialog {
    Q_OBJECT

public:
    static constexpr int PreviewedRows = 20;

    /// `rows`: those to be exported, ascending; they and the list must outlive the dialog.
    TfrmExport(const LeadList& leads, std::span<const qsizetype> rows, const Settings& settings,
               const WindowTexts& texts, QWidget* parent);

    /// What is chosen.
    OfferedFormat Format() const;
    ExtraColumns Extra() const;

    QComboBox* cbxFormat;
    std::vector<QCheckBox*> Columns; ///< in the order of the further columns
    QLabel* lblPreview;
    QTableWidget* lvwPreview;
    QDialogButtonBox* Buttons;

private:
    void ShowPreview();

    const LeadList& leads_;
    std::span<const qsizetype> rows_;
    const Settings& settings_;
    std::vector<OfferedFormat> formats_;
    AccessKeys keys_{QString()};
};

} // namespace Brindle
