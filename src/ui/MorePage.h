#pragma once

#include "core/MoreOptions.h"
#include "i18n/WindowTexts.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>

namespace Brindle {

class AccessKeys;

/// The page "More" of the settings dialog: the options beyond the settings file.
class MorePage : public QWidget {
    Q_OBJECT

public:
    explicit MorePage(QWidget* parent = nullptr);

    void Show(const MoreOptions& options);
    /// Puts what stands in the controls into the options; what has no control stays.
    void TakeInto(MoreOptions& options) const;
    void ApplyCaptions(const WindowTexts& texts);
    void AddKeys(AccessKeys& keys) const;

    QCheckBox* chkKeep;
    QLabel* lblTarget;
    QLineEdit* edtTarget;
    QLabel* lblMailServer;
    QLineEdit* edtMailServer;
    QCheckBox* chkWorkbook;
    QCheckBox* chkSheetCsv;

private:
    QLabel* lblTargetHint_;
    QLabel* lblMailServerHint_;
};

} // namespace Brindle
