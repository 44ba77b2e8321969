#pragma once

#include "core/Dialogs.h"
#include "core/Platform.h"
#include "core/Settings.h"
#include "ui/SettingsForm.h"

#include <QDialog>

namespace Brindle {

/// The settings dialog: edits the records in place, but for Cancel. Their files are the caller's business.
class TfrmSettings : public QDialog {
    Q_OBJECT

public:
    /// `columnCaptions`: those of the results list.
    TfrmSettings(Settings& settings, MoreOptions& more, const QStringList& columnCaptions, Platform& system,
                 Dialogs& notices, QWidget* parent = nullptr);

    /// Applies a language to every caption; an empty file leaves them as they are.
    void ApplyLanguage(const LanguageFile& language);
    /// The same with the texts that a language file has beyond its sequence.
    void ApplyLanguageText(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void FormCreate();
    void FormShow();
    void LoadLanguage(const QString& code);
    void ApplyEnabling();
    QString CountExportFields() const;

    void btnOkClick();
    void btnBrowseClick();
    void btnFreeProxiesClick();

    Settings& settings_;
    MoreOptions& more_;
    Platform& system_;
    Dialogs& notices_;
    SettingsForm form_;
    bool shown_ = false;
};

} // namespace Brindle
