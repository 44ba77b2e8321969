#include "ui/teach/TfrmDirectories.h"

#include "core/Errors.h"
#include "recipes/RecipeFile.h"
#include "toolkit/Ascii.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QSaveFile>
#include <QVBoxLayout>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr int codeRole = Qt::UserRole;

QByteArray Bytes(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
    return file.read(longestRecipe + 1);
}

} // namespace

QString FreeRecipeCode(const QString& name, const QString& folder) {
    QString code;
    for (const QChar c : name.toLower())
        code += Ascii::IsLower(c) || Ascii::IsDigit(c) ? c : QChar(u' ');
    code = code.simplified().replace(u' ', u'-').left(50);
    if (code.isEmpty() || !RecipeCodeProblem(code).isEmpty())
        code = u"my-"_s + (code.isEmpty() ? u"directory"_s : code);
    QString free = code;
    for (int number = 2; QFile::exists(QDir(folder).filePath(free + u".toml")); ++number)
        free = code + u'-' + QString::number(number);
    return free;
}

TfrmDirectories::TfrmDirectories(const Parts& parts, QWidget* parent)
    : QDialog(parent),
      builtIn_(parts.BuiltIn),
      programFolder_(parts.ProgramFolder),
      userFolder_(parts.UserFolder),
      notices_(parts.Notices),
      texts_(parts.Texts),
      list_(new QListWidget(this)) {
    setObjectName(u"frmDirectories");
    setWindowTitle(texts_.Text(WindowText::DirectoriesTitle));
    AskLine = [this](const QString& question, const QString& text) {
        return QInputDialog::getText(this, windowTitle(), question, QLineEdit::Normal, text);
    };
    AskFile = [this] { return QFileDialog::getOpenFileName(this, windowTitle(), {}, u"TOML (*.toml)"_s); };
    list_->setObjectName(u"lstDirectories");
    list_->setAccessibleName(windowTitle());
    auto* const row = new QHBoxLayout(this);
    row->addWidget(list_, 1);
    auto* const column = new QVBoxLayout;
    const auto add = [&](const char16_t* name, WindowText caption, void (TfrmDirectories::*command)()) {
        auto* const button = new QPushButton(texts_.Text(caption), this);
        button->setObjectName(QString::fromUtf16(name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, command);
        column->addWidget(button);
        return button;
    };
    ofUser_.push_back(add(u"btnDirRename", WindowText::DirectoryRename, &TfrmDirectories::Rename));
    ofAny_.push_back(add(u"btnDirDuplicate", WindowText::DirectoryDuplicate, &TfrmDirectories::Duplicate));
    ofUser_.push_back(add(u"btnDirEdit", WindowText::DirectoryEdit, &TfrmDirectories::EditText));
    add(u"btnDirImport", WindowText::DirectoryImport, &TfrmDirectories::Import);
    ofAny_.push_back(add(u"btnDirExport", WindowText::DirectoryExport, &TfrmDirectories::Export));
    ofUser_.push_back(add(u"btnDirDelete", WindowText::DirectoryDelete, &TfrmDirectories::Delete));
    column->addStretch(1);
    auto* const close = new QPushButton(texts_.Text(WindowText::DirectoryClose), this);
    close->setObjectName(u"btnDirClose");
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    column->addWidget(close);
    row->addLayout(column);
    resize(560, 400);
    connect(list_, &QListWidget::currentItemChanged, this, [this] {
        const RecipeEntry* const entry = Selected();
        for (QPushButton* const button : ofUser_)
            button->setEnabled(entry && entry->OfUser);
        for (QPushButton* const button : ofAny_)
            button->setEnabled(entry != nullptr);
    });
    Reload();
}

void TfrmDirectories::Reload(const QString& selectCode) {
    list_->clear();
    for (const QString& entry : builtIn_) {
        auto* const item =
            new QListWidgetItem(u"%1   (%2)"_s.arg(entry, texts_.Text(WindowText::DirectoriesBuiltIn)), list_);
        QColor pale = palette().color(QPalette::Text);
        pale.setAlphaF(0.65F);
        item->setForeground(pale);
    }
    QStringList problems;
    recipes_ = LoadRecipes(programFolder_, userFolder_, problems);
    for (const RecipeEntry& recipe : recipes_) {
        const QString kind =
            texts_.Text(recipe.OfUser ? WindowText::DirectoriesTaught : WindowText::DirectoriesBuiltIn);
        auto* const item = new QListWidgetItem(u"%1   (%2, %3)"_s.arg(recipe.What.Name, recipe.Code, kind), list_);
        item->setData(codeRole, recipe.Code);
        item->setToolTip(QDir::toNativeSeparators(recipe.FileName));
    }
    for (const QString& problem : problems) {
        auto* const item = new QListWidgetItem(problem, list_);
        item->setForeground(Qt::red);
    }
    Select(selectCode);
}

void TfrmDirectories::Select(const QString& code) {
    list_->setCurrentRow(0);
    for (int row = 0; row < list_->count(); ++row)
        if (!code.isEmpty() && list_->item(row)->data(codeRole).toString() == code)
            list_->setCurrentRow(row);
}

const RecipeEntry* TfrmDirectories::Selected() const {
    const QListWidgetItem* const item = list_->currentItem();
    const QString code = item ? item->data(codeRole).toString() : QString();
    return code.isEmpty() ? nullptr : FindRecipe(recipes_, code);
}

QString TfrmDirectories::FileOf(const QString& code) const {
    return QDir(userFolder_).filePath(code + u".toml");
}

void TfrmDirectories::Warn(const QString& reason) {
    notices_.Warn(reason);
}

void TfrmDirectories::Store(const Recipe& recipe, const QString& code) {
    try {
        QDir().mkpath(userFolder_);
        SaveRecipe(recipe, FileOf(code));
        changed_ = true;
    } catch (const Failure& failure) {
        Warn(failure.Message());
    }
    Reload(code);
}

void TfrmDirectories::Rename() {
    const RecipeEntry* const entry = Selected();
    if (!entry || !entry->OfUser)
        return;
    Recipe recipe = entry->What;
    const QString code = entry->Code;
    const QString name = AskLine(texts_.Text(WindowText::DirectoryNameAsk), recipe.Name).trimmed();
    if (name.isEmpty() || name == recipe.Name)
        return;
    recipe.Name = name;
    Store(recipe, code);
}

void TfrmDirectories::Duplicate() {
    const RecipeEntry* const entry = Selected();
    if (!entry)
        return;
    Recipe recipe = entry->What;
    recipe.Name += u" (2)"_s;
    Store(recipe, FreeRecipeCode(entry->Code, userFolder_));
}

void TfrmDirectories::EditText() {
    const RecipeEntry* const entry = Selected();
    if (!entry || !entry->OfUser)
        return;
    const QString code = entry->Code;
    try {
        TfrmRecipeText dialog(code + u".toml", Bytes(entry->FileName), texts_, this);
        if (dialog.exec() != QDialog::Accepted)
            return;
        const QByteArray text = dialog.Text();
        ReadRecipe(text, code + u".toml");
        QSaveFile file(FileOf(code));
        // As it was typed: a person's remarks and order stay.
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
            throw SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(file.fileName()), file.errorString()));
        changed_ = true;
    } catch (const Failure& failure) {
        Warn(failure.Message());
    }
    Reload(code);
}

void TfrmDirectories::Import() {
    const QString fileName = AskFile();
    if (fileName.isEmpty())
        return;
    try {
        const Recipe recipe = ReadRecipe(Bytes(fileName), QDir::toNativeSeparators(fileName));
        // A stranger's recipe says first where it will lead.
        const QStringList hosts = HostsOfRecipe(recipe);
        if (!notices_.Confirm(texts_.With(WindowText::DirectoryImportAsk, {recipe.Name, hosts.join(u", "_s)})))
            return;
        Store(recipe, FreeRecipeCode(RecipeCodeOf(fileName), userFolder_));
    } catch (const Failure& failure) {
        Warn(failure.Message());
    }
}

void TfrmDirectories::Export() {
    const RecipeEntry* const entry = Selected();
    if (!entry)
        return;
    const QString from = entry->FileName;
    QFileDialog ask(this, windowTitle(), entry->Code + u".toml", u"TOML (*.toml)"_s);
    ask.setAcceptMode(QFileDialog::AcceptSave);
    ask.setDefaultSuffix(u"toml"_s); // else it is not among those that can be taken in
    if (ask.exec() != QDialog::Accepted || ask.selectedFiles().isEmpty())
        return;
    const QString to = ask.selectedFiles().first();
    try {
        SaveRecipe(LoadRecipe(from), to);
    } catch (const Failure& failure) {
        Warn(failure.Message());
    }
}

void TfrmDirectories::Delete() {
    const RecipeEntry* const entry = Selected();
    if (!entry || !entry->OfUser || !notices_.Confirm(texts_.With(WindowText::DirectoryDeleteAsk, {entry->What.Name})))
        return;
    QFile file(entry->FileName);
    if (file.remove())
        changed_ = true;
    else
        Warn(u"%1: %2"_s.arg(QDir::toNativeSeparators(file.fileName()), file.errorString()));
    Reload();
}

TfrmRecipeText::TfrmRecipeText(const QString& fileName, const QByteArray& text, const WindowTexts& texts,
                               QWidget* parent)
    : QDialog(parent) {
    setObjectName(u"frmRecipeText");
    setWindowTitle(fileName);
    auto* const edit = new QPlainTextEdit(QString::fromUtf8(text), this);
    edit->setObjectName(u"edtRecipe");
    edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit->setTabChangesFocus(true);
    auto* const verdict = new QLabel(this);
    verdict->setObjectName(u"lblRecipeVerdict");
    verdict->setTextFormat(Qt::PlainText);
    verdict->setWordWrap(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel, this);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(edit, 1);
    column->addWidget(verdict);
    column->addWidget(buttons);
    resize(640, 520);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    const auto check = [=, good = texts.Text(WindowText::DirectoryTextRight)] {
        bool right = true;
        try {
            ReadRecipe(edit->toPlainText().toUtf8(), fileName);
            verdict->setText(good);
        } catch (const Failure& failure) {
            verdict->setText(failure.Message());
            right = false;
        }
        buttons->button(QDialogButtonBox::Save)->setEnabled(right);
    };
    connect(edit, &QPlainTextEdit::textChanged, this, check);
    check();
}

QByteArray TfrmRecipeText::Text() const {
    return findChild<QPlainTextEdit*>()->toPlainText().toUtf8();
}

} // namespace Brindle
