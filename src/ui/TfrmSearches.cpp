#include "ui/TfrmSearches.h"

#include "ui/ChoiceBox.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QScreen>
#include <QVBoxLayout>

#include <map>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestTable = 16 << 20;

QString Number(qint64 number) {
    return QLocale::system().toString(number);
}

QString TableRow(QStringList fields, QChar delimiter = u'\t') {
    for (QString& field : fields) {
        field = field.simplified();
        if (field.contains(delimiter) || field.contains(u'"'))
            field = u'"' + field.replace(u'"', u"\"\""_s) + u'"';
    }
    return fields.join(delimiter) + u'\n';
}

// What is wrong with a row, in the language of the window; what a file of sites is told is the same in all of them.
QString Said(const SearchProblem& problem, const WindowTexts& texts) {
    using Why = SearchFault::Why;
    static const std::map<Why, WindowText> known{{Why::OpenQuote, WindowText::SearchesOpenQuote},
                                                 {Why::Columns, WindowText::SearchesColumns},
                                                 {Why::NoAddress, WindowText::SearchesNoAddress},
                                                 {Why::NothingAsked, WindowText::SearchesNothingAsked},
                                                 {Why::UnknownDirectory, WindowText::SearchesUnknownDirectory},
                                                 {Why::NoSearchAddress, WindowText::SearchesNoSearchAddress}};
    const auto text = known.find(problem.Fault.Kind);
    return texts.With(WindowText::SearchesWrongLine,
                      {Number(problem.Line),
                       text == known.end() ? problem.Fault.Text() : texts.With(text->second, problem.Fault.Values)});
}

bool IsNumber(int column) {
    return column == SearchesModel::Line || column == SearchesModel::Pages || column == SearchesModel::Leads;
}

} // namespace

void SearchesModel::SetTexts(const WindowTexts& texts) {
    captions_ = {texts.Text(WindowText::SearchesLine),   texts.Text(WindowText::HistoryDirectory),
                 texts.Text(WindowText::HistorySearch),  texts.Text(WindowText::SearchesState),
                 texts.Text(WindowText::SearchesPages),  texts.Text(WindowText::HistoryLeads),
                 texts.Text(WindowText::SearchesTrouble)};
    states_ = {texts.Text(WindowText::SearchWaiting), texts.Text(WindowText::SearchRunning),
               texts.Text(WindowText::SearchDone), texts.Text(WindowText::SearchFailed),
               texts.Text(WindowText::SearchCancelled)};
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
    Update();
}

void SearchesModel::Update() {
    const auto& rows = desk_.Rows();
    const QString list = rows.empty() ? QString() : rows.front().Search.List;
    // Rows that only changed stay where they are, with what is selected of them.
    if (list != list_ || static_cast<int>(rows.size()) != shown_) {
        beginResetModel();
        list_ = list;
        shown_ = static_cast<int>(rows.size());
        endResetModel();
    } else if (shown_ > 0) {
        Q_EMIT dataChanged(index(0, 0), index(shown_ - 1, ColumnCount - 1));
    }
}

int SearchesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : shown_;
}

int SearchesModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SearchesModel::data(const QModelIndex& index, int role) const {
    const auto& rows = desk_.Rows();
    if (!index.isValid() || static_cast<size_t>(index.row()) >= rows.size())
        return {};
    const SearchProgress& row = rows[static_cast<size_t>(index.row())];
    const SearchRow& search = row.Search.Row;
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue((IsNumber(index.column()) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case Line:
        return Number(search.Line);
    case Directory: {
        const SiteEntry* const entry = catalogue_.Find(search.Site);
        return entry ? entry->DisplayEntry() : search.Site;
    }
    case Search:
        return search.Start.isEmpty() ? QString(QStringList{search.What, search.Place}.join(u", "_s)) : search.Start;
    case State:
        return states_.value(static_cast<int>(row.Search.State));
    case Pages:
        return Number(row.Search.Pages);
    case Leads:
        return Number(row.Leads);
    default:
        return row.Search.Error;
    }
}

QVariant SearchesModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole && IsNumber(section))
        return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
    return role == Qt::DisplayRole ? QVariant(captions_.value(section)) : QVariant();
}

// Controls are made in the order in which Tab walks through them.
TfrmSearches::TfrmSearches(SearchDesk& desk, StoreDesk& store, const Workbench& bench, QWidget* parent)
    : QDialog(parent), desk_(desk), store_(store), bench_(bench), model_(desk, bench.Catalogue) {
    setObjectName(u"frmSearches");
    AskFile = [this] {
        return QFileDialog::getOpenFileName(this, windowTitle(), {}, u"CSV (*.csv *.tsv *.txt);;* (*)"_s);
    };
    const auto named = [](auto* control, const char16_t* name) {
        control->setObjectName(QString::fromUtf16(name));
        return control;
    };
    const auto button = [&](const char16_t* name) {
        auto* const made = named(new QPushButton(this), name);
        made->setAutoDefault(false);
        keys_.Add(made);
        return made;
    };
    auto* const column = new QVBoxLayout(this);

    auto* const entry = new QHBoxLayout;
    entry->addWidget(lblDirectory_ = new QLabel(this));
    entry->addWidget(cbxDirectory_ = named(new ChoiceBox(this), u"cbxSDirectory"), 2);
    cbxDirectory_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cbxDirectory_->setMinimumContentsLength(20);
    entry->addWidget(lblWhat_ = new QLabel(this));
    entry->addWidget(edtWhat_ = named(new QLineEdit(this), u"edtSWhat"), 1);
    entry->addWidget(lblWhere_ = new QLabel(this));
    entry->addWidget(edtWhere_ = named(new QLineEdit(this), u"edtSWhere"), 1);
    entry->addWidget(btnAdd_ = button(u"btnSAdd"));
    entry->addSpacing(12);
    entry->addWidget(btnFile_ = button(u"btnSFile"));
    column->addLayout(entry);

    column->addWidget(lblTable_ = new QLabel(this));
    lblTable_->setWordWrap(true);
    column->addWidget(edtTable_ = named(new QPlainTextEdit(this), u"edtSTable"), 2);
    edtTable_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edtTable_->setLineWrapMode(QPlainTextEdit::NoWrap);
    edtTable_->setTabChangesFocus(true);
    edtTable_->setTabStopDistance(edtTable_->fontMetrics().averageCharWidth() * 14);
    edtTable_->setMinimumHeight(edtTable_->fontMetrics().lineSpacing() * 5);
    column->addWidget(lblVerdict_ = named(new QLabel(this), u"lblSVerdict"));
    lblVerdict_->setTextFormat(Qt::PlainText);
    lblVerdict_->setWordWrap(true);

    auto* const commands = new QHBoxLayout;
    commands->addWidget(lblJobs_ = new QLabel(this));
    commands->addWidget(edtJobs_ = named(new QSpinBox(this), u"edtSJobs"));
    edtJobs_->setRange(1, MostJobs);
    commands->addSpacing(12);
    commands->addWidget(chkRobots_ = named(new QCheckBox(this), u"chkSRobots"));
    commands->addStretch(1);
    commands->addWidget(btnRun_ = button(u"btnSRun"));
    commands->addWidget(btnStop_ = button(u"btnSStop"));
    commands->addWidget(btnRetry_ = button(u"btnSRetry"));
    column->addLayout(commands);

    column->addWidget(lvwSearches_ = named(new QTableView(this), u"lvwSearches"), 3);
    lvwSearches_->setModel(&model_);
    lvwSearches_->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvwSearches_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    lvwSearches_->setWordWrap(false);
    lvwSearches_->setTabKeyNavigation(false);
    lvwSearches_->setCornerButtonEnabled(false);
    lvwSearches_->verticalHeader()->hide();
    lvwSearches_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    lvwSearches_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 7);
    lvwSearches_->horizontalHeader()->setHighlightSections(false);
    lvwSearches_->horizontalHeader()->setStretchLastSection(true);
    lvwSearches_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    const int character = fontMetrics().averageCharWidth();
    for (const auto& [which, characters] : std::initializer_list<std::pair<int, int>>{{SearchesModel::Line, 7},
                                                                                      {SearchesModel::Directory, 36},
                                                                                      {SearchesModel::Search, 30},
                                                                                      {SearchesModel::State, 13},
                                                                                      {SearchesModel::Pages, 10},
                                                                                      {SearchesModel::Leads, 12}})
        lvwSearches_->setColumnWidth(which, characters * character);

    auto* const below = new QHBoxLayout;
    below->addWidget(lblProgress_ = named(new QLabel(this), u"lblSProgress"), 1);
    below->addWidget(btnOpen_ = button(u"btnSOpen"));
    below->addWidget(btnClose_ = button(u"btnSClose"));
    column->addLayout(below);

    keys_.Add(lblDirectory_, cbxDirectory_);
    keys_.Add(lblWhat_, edtWhat_);
    keys_.Add(lblWhere_, edtWhere_);
    keys_.Add(lblTable_, edtTable_);
    keys_.Add(lblJobs_, edtJobs_);
    connect(btnAdd_, &QPushButton::clicked, this, &TfrmSearches::AddRow);
    connect(edtWhat_, &QLineEdit::returnPressed, this, &TfrmSearches::AddRow);
    connect(edtWhere_, &QLineEdit::returnPressed, this, &TfrmSearches::AddRow);
    connect(btnFile_, &QPushButton::clicked, this, &TfrmSearches::OpenFile);
    // The example names the directory that is chosen.
    connect(cbxDirectory_, &QComboBox::currentIndexChanged, this, [this] {
        const QString code = cbxDirectory_->currentData().toString();
        edtTable_->setPlaceholderText(
            code.isEmpty() ? QString() : u"site,what,where\n%1,plumber,vancouver\n%1,baker,victoria"_s.arg(code));
    });
    connect(edtTable_, &QPlainTextEdit::textChanged, this, &TfrmSearches::Check);
    connect(btnRun_, &QPushButton::clicked, this, [this] {
        desk_.Run(table_, {edtJobs_->value(), chkRobots_->isChecked()});
    });
    connect(btnStop_, &QPushButton::clicked, &desk_, &SearchDesk::Stop);
    connect(btnRetry_, &QPushButton::clicked, &desk_, &SearchDesk::Retry);
    connect(btnOpen_, &QPushButton::clicked, this, &TfrmSearches::OpenLeads);
    connect(btnClose_, &QPushButton::clicked, this, &QDialog::close);
    connect(&desk_, &SearchDesk::Changed, this, &TfrmSearches::ShowProgress);
    connect(&desk_, &SearchDesk::Failed, lblVerdict_, &QLabel::setText);
    const SearchWish wish = desk_.Wish();
    edtJobs_->setValue(wish.Jobs);
    chkRobots_->setChecked(wish.AskRobots);
    resize(QSize(980, 620).boundedTo(screen()->availableSize() - QSize(20, 60))); // the frame takes room, too
}

void TfrmSearches::ApplyTexts(const WindowTexts& texts) {
    texts_ = texts;
    setWindowTitle(texts.Text(WindowText::SearchesTitle));
    lblDirectory_->setText(texts.Text(WindowText::HistoryDirectory) + u':');
    lblWhat_->setText(texts.Text(WindowText::SearchesWhat));
    lblWhere_->setText(texts.Text(WindowText::SearchesWhere));
    btnAdd_->setText(texts.Text(WindowText::SearchesAdd));
    btnFile_->setText(texts.Text(WindowText::SearchesFile));
    lblTable_->setText(texts.Text(WindowText::SearchesTable));
    lblJobs_->setText(texts.Text(WindowText::SearchesJobs));
    chkRobots_->setText(texts.Text(WindowText::SearchesRobots));
    chkRobots_->setToolTip(texts.Text(WindowText::SearchesRobotsHint));
    btnRun_->setText(texts.Text(WindowText::SearchesRun));
    btnStop_->setText(texts.Text(WindowText::SearchesStop));
    btnRetry_->setText(texts.Text(WindowText::SearchesRetry));
    btnOpen_->setText(texts.Text(WindowText::HistoryOpen));
    btnClose_->setText(texts.Text(WindowText::DirectoryClose));
    AccessKeys::SetHint(btnRun_, texts.Text(WindowText::SearchesRunHint));
    AccessKeys::SetHint(btnFile_, texts.Text(WindowText::SearchesFileHint));
    for (const auto& [label, control] : std::initializer_list<std::pair<QLabel*, QWidget*>>{
             {lblDirectory_, cbxDirectory_}, {lblWhat_, edtWhat_}, {lblWhere_, edtWhere_}, {lblJobs_, edtJobs_}})
        control->setAccessibleName(WithoutColon(label->text()));
    edtTable_->setAccessibleName(windowTitle());
    lvwSearches_->setAccessibleName(windowTitle());
    keys_.Assign();
    model_.SetTexts(texts);
    Check();
}

void TfrmSearches::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    const QString chosen = cbxDirectory_->count() > 0 ? cbxDirectory_->currentData().toString() : bench_.State.CurrID;
    cbxDirectory_->clear();
    for (const QString& code : bench_.Catalogue.WebsiteKeys())
        if (const auto directory = bench_.Catalogue.Adapter(code); directory && !directory->SearchAddress.isEmpty())
            cbxDirectory_->addItem(bench_.Catalogue.Find(code)->DisplayEntry(), code);
    cbxDirectory_->setCurrentIndex(std::max(0, cbxDirectory_->findData(chosen)));
    if (edtTable_->document()->isEmpty())
        edtTable_->setPlainText(LastTable());
    ShowProgress();
}

QString TfrmSearches::LastTable() const {
    QString text;
    for (const SearchProgress& row : desk_.Rows()) {
        const SearchRow& search = row.Search.Row;
        const bool starts = !search.Start.isEmpty();
        if (text.isEmpty())
            text =
                TableRow(starts ? QStringList{u"site"_s, u"start"_s} : QStringList{u"site"_s, u"what"_s, u"where"_s});
        text += TableRow(starts ? QStringList{search.Site, search.Start}
                                : QStringList{search.Site, search.What, search.Place});
    }
    return text;
}

void TfrmSearches::AddRow() {
    const QString code = cbxDirectory_->currentData().toString();
    if (code.isEmpty() || (edtWhat_->text().trimmed().isEmpty() && edtWhere_->text().trimmed().isEmpty()))
        return;
    QString text = edtTable_->toPlainText();
    if (!text.isEmpty() && !text.endsWith(u'\n'))
        text += u'\n';
    // In the table's own way, which its first line shows.
    const QString head = text.section(u'\n', 0, 0);
    const QChar delimiter = head.isEmpty() || head.contains(u'\t') ? u'\t' : head.contains(u';') ? u';' : u',';
    edtTable_->setPlainText(text + TableRow({code, edtWhat_->text(), edtWhere_->text()}, delimiter));
    edtTable_->moveCursor(QTextCursor::End);
    edtWhere_->clear();
    edtWhere_->setFocus();
}

void TfrmSearches::OpenFile() {
    const QString fileName = AskFile();
    if (fileName.isEmpty())
        return;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestTable) {
        const QString reason = file.isOpen() ? u"> 16 MB"_s : file.errorString();
        return lblVerdict_->setText(QDir::toNativeSeparators(fileName) + u": " + reason);
    }
    edtTable_->setPlainText(TableText(file.readAll()));
}

void TfrmSearches::Check() {
    const QString text = edtTable_->toPlainText();
    table_ = text.trimmed().isEmpty() ? SearchTable() : desk_.Read(text);
    QStringList lines;
    for (const SearchProblem& problem : table_.Problems)
        if (lines.size() < NamedProblems)
            lines += Said(problem, texts_);
    if (std::ssize(table_.Problems) > NamedProblems)
        lines += u"\u2026 (%1)"_s.arg(Number(std::ssize(table_.Problems)));
    if (lines.isEmpty())
        lines += store_.Keeps() ? texts_.With(WindowText::SearchesCount, {Number(std::ssize(table_.Rows))})
                                : texts_.Text(WindowText::SearchesNeedStore);
    lblVerdict_->setText(lines.join(u'\n'));
    ShowProgress();
}

void TfrmSearches::ShowProgress() {
    model_.Update();
    const bool running = desk_.Running();
    const bool right = table_.Problems.empty() && !table_.Rows.empty() && store_.Keeps();
    for (QWidget* const control : std::initializer_list<QWidget*>{btnAdd_, btnFile_, edtJobs_, chkRobots_})
        control->setEnabled(!running);
    edtTable_->setReadOnly(running);
    btnRun_->setEnabled(right && !running);
    btnStop_->setEnabled(running);
    btnRetry_->setEnabled(!running && desk_.Count(SearchState::Failed) > 0);
    btnOpen_->setEnabled(desk_.Leads() > 0);
    const auto count = [this](SearchState state) { return Number(desk_.Count(state)); };
    lblProgress_->setText(desk_.Rows().empty() ? QString()
                                               : texts_.With(WindowText::SearchesProgress,
                                                             {count(SearchState::Waiting), count(SearchState::Running),
                                                              count(SearchState::Done), count(SearchState::Failed),
                                                              Number(desk_.Leads())}));
}

void TfrmSearches::OpenLeads() {
    // Those that are selected; all when none is.
    QStringList harvests;
    const QModelIndexList selected = lvwSearches_->selectionModel()->selectedRows();
    const auto& rows = desk_.Rows();
    for (size_t row = 0; row < rows.size(); ++row)
        if (selected.isEmpty() || selected.contains(model_.index(static_cast<int>(row), 0)))
            harvests += rows[row].Search.Harvest;
    harvests.removeAll(QString());
    store_.OpenHarvests(harvests);
}

} // namespace Brindle
