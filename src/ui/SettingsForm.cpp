#include "ui/SettingsForm.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QStyle>
#include <QVBoxLayout>

#include <utility>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int columnsOfItems = 3;

template <class T>
T* Named(T* control, const char16_t* name) {
    control->setObjectName(QString::fromUtf16(name));
    return control;
}

// Controls that belong to a choice stand a little to its right.
int Indent(const QWidget& widget) {
    const QStyle* const style = widget.style();
    return style->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
           style->pixelMetric(QStyle::PM_RadioButtonLabelSpacing);
}

} // namespace

SettingsForm::SettingsForm(QDialog& dialog, const QStringList& columnCaptions) : dialog_(dialog) {
    dialog.setWindowTitle(u"Settings"_s);
    pgcSettings = Named(new QTabWidget(&dialog), u"pgcSettings");
    pgcSettings->addTab(BuildConnections(), u"Connections"_s);
    pgcSettings->addTab(BuildData(columnCaptions), u"Data"_s);
    More = new MorePage;
    pgcSettings->addTab(More, WindowTexts::English(WindowText::More));

    btnOk = Named(new QPushButton(u"Ok"_s), u"btnOk");
    btnCancel = Named(new QPushButton(u"Cancel"_s), u"btnCancel");
    auto* const buttons = new QDialogButtonBox(&dialog); // puts them in the order that the desktop has
    buttons->addButton(btnOk, QDialogButtonBox::AcceptRole);
    buttons->addButton(btnCancel, QDialogButtonBox::RejectRole);
    for (QPushButton* button : {btnFreeProxies, btnBrowse, btnCancel})
        button->setAutoDefault(false);
    btnOk->setDefault(true);

    auto* const column = new QVBoxLayout(&dialog);
    column->addWidget(pgcSettings);
    column->addWidget(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);

    for (const auto& [label, control] :
         std::initializer_list<std::pair<QLabel*, QWidget*>>{{lblHost, edtHost},
                                                             {lblPort, edtPort},
                                                             {lblUsername, edtUsername},
                                                             {lblPassword, edtPassword},
                                                             {lblRandomDelay, speRandom},
                                                             {lblColumns, chlColumns},
                                                             {lblDelimiter, edtDelimiter}})
        keys_.Add(label, control);
    for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{
             btnOk, btnCancel, rbtNoProxy, rbtProxy, chkAuthentification, rbtRandom, btnFreeProxies, chkExtractEmails,
             rbtExportManually, rbtExportAutomatic, btnBrowse})
        keys_.Add(button);
    More->AddKeys(keys_);
    QObject::connect(edtFolder, &QLineEdit::textChanged, edtFolder, &QWidget::setToolTip);
    CaptionsChanged();
}

// Controls are made in the order in which Tab walks through them.
QWidget* SettingsForm::BuildConnections() {
    auto* const page = new QWidget;
    rbtNoProxy = Named(new QRadioButton(u"Don't use any proxy"_s, page), u"rbtNoProxy");
    rbtProxy = Named(new QRadioButton(u"Use this specific proxy"_s, page), u"rbtProxy");
    lblHost = Named(new QLabel(u"Host:"_s, page), u"lblHost");
    edtHost = Named(new QLineEdit(page), u"edtHost");
    lblPort = Named(new QLabel(u"Port:"_s, page), u"lblPort");
    edtPort = Named(new QLineEdit(u"80"_s, page), u"edtPort");
    chkAuthentification = Named(new QCheckBox(u"Need Authentication"_s, page), u"chkAuthentification");
    lblUsername = Named(new QLabel(u"Username:"_s, page), u"lblUsername");
    edtUsername = Named(new QLineEdit(page), u"edtUsername");
    lblPassword = Named(new QLabel(u"Password:"_s, page), u"lblPassword");
    edtPassword = Named(new QLineEdit(page), u"edtPassword");
    rbtRandom = Named(new QRadioButton(u"Use a random proxy from the following  list. Enter 1 proxy per line."_s, page),
                      u"rbtRandom");
    memRandomProxies = Named(new QPlainTextEdit(page), u"memRandomProxies");
    lblRandomDelay = Named(new QLabel(u"Random delay between requests:"_s, page), u"lblRandomDelay");
    speRandom = Named(new DigitsEdit(page), u"speRandom");
    lblSeconds = Named(new QLabel(u"seconds"_s, page), u"lblSeconds");
    btnFreeProxies = Named(new QPushButton(u"How to protect your IP?"_s, page), u"btnFreeProxies");

    const int digit = edtPort->fontMetrics().horizontalAdvance(u'0');
    edtPort->setFixedWidth(digit * 9);
    speRandom->setFixedWidth(digit * 11);
    edtPassword->setEchoMode(QLineEdit::Password);
    edtPassword->setStyleSheet(u"lineedit-password-character: 42"_s); // "*"
    memRandomProxies->setLineWrapMode(QPlainTextEdit::NoWrap);
    memRandomProxies->setTabChangesFocus(true);
    memRandomProxies->setPlaceholderText(u"10.0.0.1:8080\n10.0.0.2:8080:user:password"_s);
    memRandomProxies->setFixedHeight(memRandomProxies->fontMetrics().lineSpacing() * 7);

    auto* const proxy = new QGridLayout;
    proxy->setContentsMargins(Indent(*rbtProxy), 0, 0, 4);
    proxy->addWidget(lblHost, 0, 0);
    proxy->addWidget(edtHost, 0, 1);
    proxy->addWidget(lblPort, 0, 2);
    proxy->addWidget(edtPort, 0, 3, Qt::AlignLeft);
    proxy->addWidget(chkAuthentification, 1, 0, 1, 4);
    proxy->addWidget(lblUsername, 2, 0);
    proxy->addWidget(edtUsername, 2, 1);
    proxy->addWidget(lblPassword, 2, 2);
    proxy->addWidget(edtPassword, 2, 3);
    proxy->setColumnStretch(1, 1);
    proxy->setColumnStretch(3, 1);

    auto* const list = new QHBoxLayout;
    list->setContentsMargins(Indent(*rbtRandom), 0, 0, 4);
    list->addWidget(memRandomProxies);

    auto* const delay = new QHBoxLayout;
    delay->addWidget(lblRandomDelay);
    delay->addWidget(speRandom);
    delay->addWidget(lblSeconds);
    delay->addStretch(1);

    auto* const column = new QVBoxLayout(page);
    column->addWidget(rbtNoProxy);
    column->addWidget(rbtProxy);
    column->addLayout(proxy);
    column->addWidget(rbtRandom);
    column->addLayout(list);
    column->addLayout(delay);
    column->addStretch(1);
    column->addWidget(btnFreeProxies, 0, Qt::AlignLeft);
    return page;
}

QWidget* SettingsForm::BuildData(const QStringList& columnCaptions) {
    auto* const page = new QWidget;
    lblColumns = Named(new QLabel(u"Columns to Export:"_s, page), u"lblColumns");
    chlColumns = Named(new QListWidget(page), u"chlColumns");
    chkExtractEmails = Named(new QCheckBox(u"Extract emails from websites (Will slow the extraction process)"_s, page),
                             u"chkExtractEmails");
    rbtExportManually = Named(new QRadioButton(u"Export results manually"_s, page), u"rbtExportManually");
    rbtExportAutomatic =
        Named(new QRadioButton(u"Export results automatically to a folder"_s, page), u"rbtExportAutomatic");
    edtFolder = Named(new QLineEdit(page), u"edtFolder");
    btnBrowse = Named(new QPushButton(u"Browse"_s, page), u"btnBrowse");
    lblDelimiterHeader =
        Named(new QLabel(u"Enter a delimiter char to separate columns when you export data. Ex: for USA "
                         "default char is comma (,) but in Italy is the semicolon (;)"_s,
                         page),
              u"lblDelimiterHeader");
    lblDelimiter = Named(new QLabel(u"Delimiter Char:"_s, page), u"lblDelimiter");
    edtDelimiter = Named(new QLineEdit(u","_s, page), u"edtDelimiter");

    FillColumns(columnCaptions);
    lblDelimiterHeader->setWordWrap(true);
    edtDelimiter->setFixedWidth(edtDelimiter->fontMetrics().horizontalAdvance(u'W') * 4);

    auto* const folder = new QHBoxLayout;
    folder->setContentsMargins(Indent(*rbtExportAutomatic), 0, 0, 4);
    folder->addWidget(edtFolder);
    folder->addWidget(btnBrowse);

    auto* const delimiter = new QHBoxLayout;
    delimiter->addWidget(lblDelimiter);
    delimiter->addWidget(edtDelimiter);
    delimiter->addStretch(1);

    auto* const column = new QVBoxLayout(page);
    column->addWidget(lblColumns);
    column->addWidget(chlColumns);
    column->addSpacing(4);
    column->addWidget(chkExtractEmails);
    column->addSpacing(4);
    column->addWidget(rbtExportManually);
    column->addWidget(rbtExportAutomatic);
    column->addLayout(folder);
    column->addWidget(lblDelimiterHeader);
    column->addLayout(delimiter);
    column->addStretch(1);
    return page;
}

// Three columns, filled from top to bottom, each as wide as the longest caption.
void SettingsForm::FillColumns(const QStringList& captions) {
    chlColumns->setFlow(QListView::TopToBottom);
    chlColumns->setWrapping(true);
    chlColumns->setMovement(QListView::Static);
    chlColumns->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    chlColumns->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const QString& caption : captions) {
        auto* const item = new QListWidgetItem(caption, chlColumns);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
    }
    QSize cell(0, 0);
    for (int row = 0; row < chlColumns->count(); ++row)
        cell = cell.expandedTo(chlColumns->sizeHintForIndex(chlColumns->model()->index(row, 0)));
    cell += QSize(10, 4);
    for (int row = 0; row < chlColumns->count(); ++row)
        chlColumns->item(row)->setSizeHint(cell);
    const int rows = (chlColumns->count() + columnsOfItems - 1) / columnsOfItems;
    // One pixel short of another row or column would be too little, so there is a little more than that.
    chlColumns->setMinimumWidth(cell.width() * columnsOfItems + 2 * chlColumns->frameWidth() + 4);
    chlColumns->setFixedHeight(cell.height() * rows + 2 * chlColumns->frameWidth() + 4);
}

void SettingsForm::ApplyCaptions(const LanguageFile& language) {
    dialog_.setWindowTitle(language.Settings(1));
    pgcSettings->setTabText(0, language.Settings(2));
    pgcSettings->setTabText(1, language.Settings(3));
    for (const auto& [label, number] : std::initializer_list<std::pair<QLabel*, int>>{{lblHost, 6},
                                                                                      {lblPort, 7},
                                                                                      {lblUsername, 9},
                                                                                      {lblPassword, 10},
                                                                                      {lblRandomDelay, 12},
                                                                                      {lblSeconds, 13},
                                                                                      {lblColumns, 17},
                                                                                      {lblDelimiterHeader, 21},
                                                                                      {lblDelimiter, 22}})
        label->setText(language.Settings(number));
    for (const auto& [button, number] :
         std::initializer_list<std::pair<QAbstractButton*, int>>{{rbtNoProxy, 4},
                                                                 {rbtProxy, 5},
                                                                 {chkAuthentification, 8},
                                                                 {rbtRandom, 11},
                                                                 {btnFreeProxies, 14},
                                                                 {btnOk, 15},
                                                                 {btnCancel, 16},
                                                                 {rbtExportManually, 18},
                                                                 {rbtExportAutomatic, 19},
                                                                 {btnBrowse, 20},
                                                                 {chkExtractEmails, 23}})
        button->setText(language.Settings(number));
    CaptionsChanged();
}

// Buttons are named by their captions, and what has no label of its own by the choice that it belongs to.
void SettingsForm::ApplyHints(const WindowTexts& texts) {
    for (QAbstractButton* choice : {rbtProxy, rbtRandom})
        AccessKeys::SetHint(choice, texts.Text(WindowText::ProxyHint));
    pgcSettings->setTabText(2, texts.Text(WindowText::More));
    More->ApplyCaptions(texts);
    CaptionsChanged();
}

void SettingsForm::CaptionsChanged() {
    keys_.Assign();
    for (const auto& [control, caption] :
         std::initializer_list<std::pair<QWidget*, QString>>{{edtHost, lblHost->text()},
                                                             {edtPort, lblPort->text()},
                                                             {edtUsername, lblUsername->text()},
                                                             {edtPassword, lblPassword->text()},
                                                             {memRandomProxies, rbtRandom->text()},
                                                             {speRandom, lblRandomDelay->text()},
                                                             {chlColumns, lblColumns->text()},
                                                             {edtFolder, rbtExportAutomatic->text()},
                                                             {edtDelimiter, lblDelimiter->text()},
                                                             {pgcSettings, dialog_.windowTitle()}})
        control->setAccessibleName(WithoutColon(caption));
}

} // namespace Brindle
