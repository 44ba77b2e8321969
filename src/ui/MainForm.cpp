#include "ui/MainForm.h"

#include "ui/ChoiceBox.h"
#include "ui/Icons.h"
#include "ui/WrapRow.h"

#include <QVBoxLayout>

#include <utility>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QPushButton* Button(QWidget* parent, const QString& name, const QString& caption, Glyph glyph) {
    auto* const button = new QPushButton(IconOf(glyph), caption, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

QLabel* Label(QWidget* parent, const QString& name, const QString& caption) {
    auto* const label = new QLabel(caption, parent);
    label->setObjectName(name);
    return label;
}

QComboBox* ComboBox(QWidget* parent, const QString& name) {
    auto* const box = new ChoiceBox(parent);
    box->setObjectName(name);
    return box;
}

// The one of two buttons that makes sense now stands out; the other one looks as if it could not be pressed.
void SetProminent(QPushButton* button, Glyph glyph, bool prominent) {
    QFont font = button->font();
    font.setBold(prominent);
    button->setFont(font);
    button->setIcon(prominent ? IconOf(glyph) : FadedIconOf(glyph));
    QPalette palette = button->parentWidget()->palette();
    if (!prominent)
        palette.setColor(QPalette::ButtonText, palette.color(QPalette::Disabled, QPalette::ButtonText));
    button->setPalette(palette);
}

// As wide as it is at its widest, so that nothing moves when it becomes prominent.
void KeepRoomForBold(QPushButton* button) {
    QFont font = button->font();
    font.setBold(true);
    button->setMinimumWidth(0);
    const QFont now = button->font();
    button->setFont(font);
    button->setMinimumWidth(button->sizeHint().width());
    button->setFont(now);
}

} // namespace

// Alt+D leads to the address box in browsers, and people's fingers know it.
MainForm::MainForm(QMainWindow& window, QWidget* browserView, QWidget* newsView) : keys_(u"D"_s) {
    auto* const centre = new QWidget(&window);
    auto* const column = new QVBoxLayout(centre);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(BuildTop(centre));

    Splitter = new QSplitter(Qt::Vertical, centre);
    Splitter->setObjectName(u"splMain");
    Splitter->setChildrenCollapsible(false);
    Splitter->setHandleWidth(7);
    pgcMain = new QTabWidget(Splitter);
    pgcMain->setObjectName(u"pgcMain");
    pgcMain->setDocumentMode(true);
    TabSheet1 = BuildBrowserPage(browserView);
    TabSheet2 = newsView;
    TabSheet2->setObjectName(u"TabSheet2");
    pgcMain->addTab(TabSheet1, u"Browser"_s);
    pgcMain->addTab(TabSheet2, u"News"_s);
    History = new HistoryPage;
    History->setObjectName(u"tabHistory");
    pgcMain->addTab(History, WindowTexts::English(WindowText::History));
    Splitter->addWidget(pgcMain);
    Splitter->addWidget(BuildResults(Splitter));
    Splitter->setStretchFactor(0, 3);
    Splitter->setStretchFactor(1, 2);
    Splitter->setSizes({430, 260});
    column->addWidget(Splitter, 1);
    window.setCentralWidget(centre);

    Status = new StatusBarView(&window);
    window.setStatusBar(Status);

    keys_.Add(lblCurrentLanguage, cbxLanguage);
    keys_.Add(lblWebsite, cbxWebsites);
    for (QPushButton* button : {btnDirectories, btnSearches, btnStart, btnStop, btnSettings, btnUpdates, Bar->btnGo,
                                btnRSelectAll, btnRClearSelection, btnRDelete, btnRDeleteAll, btnOpenWebsite,
                                btnOpenMaps, btnOpenDetails, btnExportAll, btnExportAs})
        keys_.Add(button);
    History->AddKeys(keys_);
    History->ApplyCaptions(WindowTexts());
    keys_.Assign();
    NameForScreenReaders();
    ShowRunning(false);
}

void MainForm::ShowRunning(bool running) {
    if (running_ == running)
        return;
    running_ = running;
    SetProminent(btnStart, Glyph::Start, !running);
    SetProminent(btnStop, Glyph::Stop, running);
}

QLayout* MainForm::BuildTop(QWidget* parent) {
    auto* const row = new WrapRow(6);
    row->setContentsMargins(8, 8, 8, 6);
    lblCurrentLanguage = Label(parent, u"lblCurrentLanguage"_s, u"Language:"_s);
    cbxLanguage = ComboBox(parent, u"cbxLanguage"_s);
    for (const Language& language : OfferedLanguages())
        cbxLanguage->addItem(language.Name, language.Code);
    lblWebsite = Label(parent, u"lblWebsite"_s, u"Website:"_s);
    cbxWebsites = ComboBox(parent, u"cbxWebsites"_s);
    cbxWebsites->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cbxWebsites->setMinimumContentsLength(22);
    cbxWebsites->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    cbxWebsites->setMaxVisibleItems(20);
    btnDirectories = new QPushButton(parent);
    btnDirectories->setObjectName(u"btnDirectories");
    btnDirectories->setText(WindowTexts().Text(WindowText::Directories));
    btnSearches = new QPushButton(WindowTexts::English(WindowText::Searches), parent);
    btnSearches->setObjectName(u"btnSearches");
    btnStart = Button(parent, u"btnStart"_s, u"Get Data"_s, Glyph::Start);
    btnStop = Button(parent, u"btnStop"_s, u"Stop"_s, Glyph::Stop);
    btnSettings = Button(parent, u"btnSettings"_s, u"Settings"_s, Glyph::Settings);
    btnUpdates = Button(parent, u"btnUpdates"_s, u"Check for Updates"_s, Glyph::Updates);
    row->addWidget(lblCurrentLanguage);
    row->addWidget(cbxLanguage);
    row->AddSpace(4);
    row->addWidget(lblWebsite);
    row->addWidget(cbxWebsites);
    row->addWidget(btnDirectories);
    row->addWidget(btnSearches);
    row->AddSpace(0);
    row->addWidget(btnStart);
    row->addWidget(btnStop);
    row->AddSpace(16);
    row->addWidget(btnSettings);
    row->addWidget(btnUpdates);
    return row;
}

QWidget* MainForm::BuildBrowserPage(QWidget* browserView) {
    auto* const page = new QWidget;
    page->setObjectName(u"TabSheet1");
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    Bar = new BrowserBar(page);
    column->addWidget(Bar);
    Notice = new NoticeBar(page);
    Notice->setObjectName(u"Notice");
    column->addWidget(Notice);
    AnyBar = new AnyPageBar(page);
    column->addWidget(AnyBar);
    browserView->setObjectName(u"ewbMain");
    auto* const beside = new QSplitter(Qt::Horizontal, page);
    beside->setObjectName(u"splTeach");
    beside->setChildrenCollapsible(false);
    beside->addWidget(browserView);
    Teach = new TeachPanel(beside);
    Teach->hide();
    beside->addWidget(new ScrolledPane(Teach, beside));
    beside->setStretchFactor(0, 1);
    beside->setSizes({900, 340});
    column->addWidget(beside, 1);
    return page;
}

QWidget* MainForm::BuildResults(QWidget* parent) {
    Results = new PaneOfRows(parent);
    auto* const column = new QVBoxLayout(Results);
    column->setContentsMargins(8, 4, 8, 4);
    column->setSpacing(5);
    panResultsHeader = Label(Results, u"panResultsHeader"_s, u"Results"_s);
    QFont bold = panResultsHeader->font();
    bold.setBold(true);
    panResultsHeader->setFont(bold);
    Offer = new NoticeBar(Results);
    Offer->setObjectName(u"Offer");
    lvwItems = new LeadTableView(Results);
    lvwItems->setObjectName(u"lvwItems");
    lvwItems->setMinimumHeight(90);
    column->addWidget(panResultsHeader);
    column->addWidget(Offer);
    column->addWidget(lvwItems, 1);
    column->addWidget(Teach->Table(), 1);
    Teach->Table()->hide();

    auto* const row = new WrapRow(6);
    const auto add = [&](const QString& name, const QString& caption, Glyph glyph) {
        QPushButton* const button = Button(Results, name, caption, glyph);
        row->addWidget(button);
        return button;
    };
    btnRSelectAll = add(u"btnRSelectAll"_s, u"Select All"_s, Glyph::SelectAll);
    btnRClearSelection = add(u"btnRClearSelection"_s, u"Clear Selection"_s, Glyph::ClearSelection);
    btnRDelete = add(u"btnRDelete"_s, u"Delete Selected"_s, Glyph::Delete);
    btnRDeleteAll = add(u"btnRDeleteAll"_s, u"Delete All"_s, Glyph::DeleteAll);
    row->AddSpace(8);
    btnOpenWebsite = add(u"btnOpenWebsite"_s, u"Open Website"_s, Glyph::Website);
    btnOpenMaps = add(u"btnOpenMaps"_s, u"Open Maps URL"_s, Glyph::Map);
    btnOpenDetails = add(u"btnOpenDetails"_s, u"Open Details URL"_s, Glyph::Details);
    row->AddStretch();
    btnExportAll = add(u"btnExportAll"_s, u"Export Data"_s, Glyph::Export);
    btnExportAs = new QPushButton(WindowTexts::English(WindowText::ExportAs), Results);
    btnExportAs->setObjectName(u"btnExportAs");
    btnExportAs->setAutoDefault(false);
    row->addWidget(btnExportAs);
    column->addLayout(row);
    return Results;
}

void MainForm::ApplyCaptions(const LanguageFile& language, const WindowTexts& texts) {
    btnDirectories->setText(texts.Text(WindowText::Directories));
    btnSearches->setText(texts.Text(WindowText::Searches));
    AccessKeys::SetHint(btnSearches, texts.Text(WindowText::SearchesHint));
    btnExportAs->setText(texts.Text(WindowText::ExportAs));
    AccessKeys::SetHint(btnExportAs, texts.Text(WindowText::ExportAsHint));
    const std::initializer_list<std::pair<QLabel*, int>> labels{
        {lblCurrentLanguage, 1}, {lblWebsite, 2}, {panResultsHeader, 20}};
    const std::initializer_list<std::pair<QPushButton*, int>> buttons{
        {btnStart, 4},       {btnStop, 5},        {btnSettings, 6},         {btnUpdates, 7},
        {Bar->btnGo, 17},    {btnRSelectAll, 35}, {btnRClearSelection, 36}, {btnRDelete, 37},
        {btnRDeleteAll, 38}, {btnExportAll, 39},  {btnOpenWebsite, 40},     {btnOpenMaps, 41},
        {btnOpenDetails, 42}};
    const std::initializer_list<std::pair<QToolButton*, int>> hints{
        {Bar->imgHome, 12}, {Bar->imgBack, 13}, {Bar->imgForward, 14}, {Bar->imgStop, 15}, {Bar->imgRefresh, 16}};
    for (const auto& [label, number] : labels)
        label->setText(language.Main(number));
    for (const auto& [button, number] : buttons)
        button->setText(language.Main(number));
    for (const auto& [button, number] : hints)
        BrowserBar::SetHint(button, language.Main(number));
    pgcMain->setTabText(0, language.Main(18));
    pgcMain->setTabText(1, language.Main(19));
    Status->SetPanel(StatusPanel::ProgressLabel, language.Main(43));
    pgcMain->setTabText(2, texts.Text(WindowText::History));
    History->ApplyCaptions(texts);
    Offer->SetCloseHint(texts.Text(WindowText::CloseNotice));
    Notice->SetCloseHint(texts.Text(WindowText::CloseNotice));
    AccessKeys::SetHint(btnUpdates, btnUpdates->isEnabled() ? QString() : texts.Text(WindowText::NoUpdateAddress));
    for (QPushButton* button : {btnStart, btnStop})
        KeepRoomForBold(button);
    keys_.Assign();
    NameForScreenReaders();
}

// Buttons are named by their captions.
void MainForm::NameForScreenReaders() {
    cbxLanguage->setAccessibleName(WithoutColon(lblCurrentLanguage->text()));
    cbxWebsites->setAccessibleName(WithoutColon(lblWebsite->text()));
    pgcMain->setAccessibleName(pgcMain->tabText(0));
    lvwItems->setAccessibleName(panResultsHeader->text());
    Bar->edtAddress->setPlaceholderText(u"http://"_s);
    Status->NameGauge(WithoutColon(Status->PanelText(3)));
}

} // namespace Brindle
