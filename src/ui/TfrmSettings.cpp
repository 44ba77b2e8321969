#include "ui/TfrmSettings.h"

#include "export/CsvFormat.h"
#include "toolkit/Markup.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QShowEvent>

#include <utility>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QString ProxyPage() {
    return u"https://en.wikipedia.org/wiki/Proxy_server"_s;
}

// The lines of a text; a line end at its very end begins no other line.
QStringList LinesOf(const QString& text) {
    if (text.isEmpty())
        return {};
    QStringList lines = text.split(u'\n');
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace

TfrmSettings::TfrmSettings(Settings& settings, MoreOptions& more, const QStringList& columnCaptions, Platform& system,
                           Dialogs& notices, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      settings_(settings),
      more_(more),
      system_(system),
      notices_(notices),
      form_(*this, columnCaptions) {
    setObjectName(u"frmSettings");
    setModal(true);
    FormCreate();
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{
             form_.rbtNoProxy, form_.rbtProxy, form_.rbtRandom, form_.chkAuthentification, form_.rbtExportManually,
             form_.rbtExportAutomatic})
        connect(button, &QAbstractButton::toggled, this, &TfrmSettings::ApplyEnabling);
    connect(form_.btnOk, &QPushButton::clicked, this, &TfrmSettings::btnOkClick);
    connect(form_.btnCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(form_.btnBrowse, &QPushButton::clicked, this, &TfrmSettings::btnBrowseClick);
    connect(form_.btnFreeProxies, &QPushButton::clicked, this, &TfrmSettings::btnFreeProxiesClick);
}

void TfrmSettings::FormCreate() {
    for (int column = 0; column < form_.chlColumns->count(); ++column)
        form_.chlColumns->item(column)->setCheckState(IsExported(column, settings_.eExportFields) ? Qt::Checked
                                                                                                  : Qt::Unchecked);
    // A record from a file can have several modes on, the last one counts, or none.
    for (const auto& [button, on] : std::initializer_list<std::pair<QAbstractButton*, bool>>{
             {form_.rbtNoProxy, settings_.rNoProxy},
             {form_.rbtProxy, settings_.rUseProxy},
             {form_.rbtRandom, settings_.rRandomProxy},
             {form_.chkAuthentification, settings_.rAuthentification},
             {form_.chkExtractEmails, settings_.cExtractEmails},
             {form_.rbtExportManually, settings_.cExportManually},
             {form_.rbtExportAutomatic, settings_.cExportAutomatic}})
        if (on)
            button->setChecked(true);
    form_.memRandomProxies->setPlainText(settings_.eRandomProxies.join(u'\n'));
    form_.edtHost->setText(settings_.eHost);
    form_.edtPort->setText(settings_.ePort);
    form_.edtUsername->setText(settings_.eUserName);
    form_.edtPassword->setText(settings_.ePassword);
    form_.speRandom->SetText(settings_.eRandom);
    form_.edtFolder->setText(settings_.eExportFolder);
    form_.edtDelimiter->setText(settings_.eDelimiter);
    form_.More->Show(more_);
    // From here on: what the file had stays as it is until the user edits it.
    form_.edtPort->setValidator(new DigitsOnly(form_.edtPort));
    form_.edtDelimiter->setValidator(new OneCharacter(form_.edtDelimiter));
    ApplyEnabling();
}

void TfrmSettings::ApplyEnabling() {
    const bool proxy = form_.rbtProxy->isChecked();
    for (QWidget* control : std::initializer_list<QWidget*>{form_.edtHost, form_.edtPort, form_.chkAuthentification})
        control->setEnabled(proxy);
    for (QWidget* control : {form_.edtUsername, form_.edtPassword})
        control->setEnabled(proxy && form_.chkAuthentification->isChecked());
    form_.memRandomProxies->setEnabled(form_.rbtRandom->isChecked());
    for (QWidget* control : std::initializer_list<QWidget*>{form_.edtFolder, form_.btnBrowse})
        control->setEnabled(!form_.rbtExportManually->isChecked());
}

void TfrmSettings::showEvent(QShowEvent* event) {
    if (!event->spontaneous() && !std::exchange(shown_, true))
        FormShow();
    QDialog::showEvent(event);
}

void TfrmSettings::FormShow() {
    LoadLanguage(settings_.Language);
    const QScreen* const on = screen();
    if (!on)
        return;
    adjustSize();
    QRect place = frameGeometry();
    place.moveCenter(on->availableGeometry().center());
    move(place.topLeft());
}

void TfrmSettings::LoadLanguage(const QString& code) {
    ApplyLanguageText(ReadLanguageText(LanguageFileName(code)));
}

void TfrmSettings::ApplyLanguageText(const QString& text) {
    ApplyLanguage(LanguageFile(text));
    WindowTexts texts;
    texts.Load(text);
    form_.ApplyHints(texts);
}

void TfrmSettings::ApplyLanguage(const LanguageFile& language) {
    if (!language.IsEmpty())
        form_.ApplyCaptions(language);
}

QString TfrmSettings::CountExportFields() const {
    QStringList columns;
    for (int column = 0; column < form_.chlColumns->count(); ++column)
        if (form_.chlColumns->item(column)->checkState() == Qt::Checked)
            columns.append(QString::number(column));
    return columns.join(u',');
}

void TfrmSettings::btnOkClick() {
    // These are taken over before anything is tested, so a refused Ok leaves them changed, even if Cancel follows.
    settings_.rNoProxy = form_.rbtNoProxy->isChecked();
    settings_.rUseProxy = form_.rbtProxy->isChecked();
    settings_.rRandomProxy = form_.rbtRandom->isChecked();
    settings_.rAuthentification = form_.chkAuthentification->isChecked();
    if (settings_.rUseProxy && (form_.edtHost->text().isEmpty() || form_.edtPort->text().isEmpty())) {
        notices_.Warn(u"Please enter a valid proxy server address and port."_s);
        return;
    }
    // The delay is what is tested here, not the list: an empty list is accepted.
    if (settings_.rRandomProxy && CleanMarkup(form_.speRandom->text()).isEmpty()) {
        notices_.Warn(u"Please enter at least one valid proxy."_s);
        return;
    }
    settings_.eHost = form_.edtHost->text();
    settings_.ePort = form_.edtPort->text();
    settings_.eUserName = form_.edtUsername->text();
    settings_.ePassword = form_.edtPassword->text();
    settings_.eExportFields = CountExportFields();
    settings_.eRandom = form_.speRandom->text();
    settings_.eRandomProxies = LinesOf(form_.memRandomProxies->toPlainText());
    settings_.cExtractEmails = form_.chkExtractEmails->isChecked();
    settings_.cExportManually = form_.rbtExportManually->isChecked();
    settings_.cExportAutomatic = form_.rbtExportAutomatic->isChecked();
    settings_.eExportFolder = form_.edtFolder->text();
    settings_.eDelimiter = form_.edtDelimiter->text();
    form_.More->TakeInto(more_);
    accept();
}

void TfrmSettings::btnBrowseClick() {
    const QString current = form_.edtFolder->text();
    const QString start = !current.isEmpty() && QFileInfo(current).isDir() ? current : system_.GetDocumentsFolder();
    const QString chosen = notices_.AskFolder(u"Select a directory"_s, start);
    if (!chosen.isEmpty())
        form_.edtFolder->setText(QDir::toNativeSeparators(chosen));
}

void TfrmSettings::btnFreeProxiesClick() {
    system_.OpenInDefaultBrowser(ProxyPage());
}

} // namespace Brindle
