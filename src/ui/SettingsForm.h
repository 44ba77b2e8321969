#pragma once

#include "i18n/LanguageFile.h"
#include "i18n/WindowTexts.h"
#include "ui/AccessKeys.h"
#include "ui/DigitsEdit.h"
#include "ui/MorePage.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace Brindle {

/// The controls of the settings dialog, their layout and their captions. What they do is the dialog's business.
class SettingsForm {
public:
    /// Fills the dialog. `columnCaptions`: those of the results list.
    SettingsForm(QDialog& dialog, const QStringList& columnCaptions);

    /// Replaces every caption; a text that the file lacks becomes empty.
    void ApplyCaptions(const LanguageFile& language);
    /// What is not in the sequence of the captions: the page "More", and what tooltips say beyond captions.
    void ApplyHints(const WindowTexts& texts);

    // Page "Connections"
    QRadioButton* rbtNoProxy;
    QRadioButton* rbtProxy;
    QLabel* lblHost;
    QLineEdit* edtHost;
    QLabel* lblPort;
    QLineEdit* edtPort;
    QCheckBox* chkAuthentification;
    QLabel* lblUsername;
    QLineEdit* edtUsername;
    QLabel* lblPassword;
    QLineEdit* edtPassword;
    QRadioButton* rbtRandom;
    QPlainTextEdit* memRandomProxies;
    QLabel* lblRandomDelay;
    DigitsEdit* speRandom;
    QLabel* lblSeconds;
    QPushButton* btnFreeProxies;

    // Page "Data"
    QLabel* lblColumns;
    QListWidget* chlColumns;
    QCheckBox* chkExtractEmails;
    QRadioButton* rbtExportManually;
    QRadioButton* rbtExportAutomatic;
    QLineEdit* edtFolder;
    QPushButton* btnBrowse;
    QLabel* lblDelimiterHeader;
    QLabel* lblDelimiter;
    QLineEdit* edtDelimiter;

    MorePage* More; ///< page "More"

    QTabWidget* pgcSettings;
    QPushButton* btnOk;
    QPushButton* btnCancel;

private:
    QWidget* BuildConnections();
    QWidget* BuildData(const QStringList& columnCaptions);
    void FillColumns(const QStringList& captions);
    void CaptionsChanged();

    QDialog& dialog_;
    AccessKeys keys_{QString()};
};

} // namespace Brindle
