#pragma once

#include "i18n/WindowTexts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QWidget>

namespace Brindle {

class AccessKeys;

/// The page *History*: the harvests of the store on the left, their leads on the right. It knows nothing of what its
/// controls do.
class HistoryPage : public QWidget {
    Q_OBJECT

public:
    explicit HistoryPage(QWidget* parent = nullptr);

    void ApplyCaptions(const WindowTexts& texts);
    void AddKeys(AccessKeys& keys) const;

    QTableView* lvwHarvests;
    QPushButton* btnHOpen;
    QPushButton* btnHExport;
    QPushButton* btnHDelete;
    QPushButton* btnHAll;
    QLabel* lblHFind;
    QLineEdit* edtHFind;
    QComboBox* cbxHSite;  ///< data: the site code; empty: every directory
    QComboBox* cbxHSince; ///< data: the days that count, 0: always
    QCheckBox* chkHNew;
    QLabel* lblHCount;
    QTableView* lvwHLeads;
    QPushButton* btnHErase;
};

} // namespace Brindle
