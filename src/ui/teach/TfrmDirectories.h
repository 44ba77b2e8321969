#pragma once

#include "core/Dialogs.h"
#include "core/SiteCatalogue.h"
#include "i18n/WindowTexts.h"
#include "recipes/RecipeFolders.h"

#include <QDialog>
#include <QListWidget>
#include <QPushButton>

#include <vector>

namespace Brindle {

/// The list of the directories: those that come with the program, which stay as they are, and the user's own, which can
/// be renamed, copied, edited as text, taken in from a file, given out and deleted. Each change is on disk at once.
class TfrmDirectories : public QDialog {
    Q_OBJECT

public:
    struct Parts {
        QStringList BuiltIn;   ///< display entries, only shown
        QString ProgramFolder; ///< of recipes that come with the program
        QString UserFolder;
        Dialogs& Notices;
        const WindowTexts& Texts;
    };
    explicit TfrmDirectories(const Parts& parts, QWidget* parent = nullptr);

    /// Whether something was changed.
    bool Changed() const { return changed_; }

    /// Asks for a line of text; nothing when it was given up. A box unless a test answers.
    std::function<QString(const QString& question, const QString& text)> AskLine;
    /// Asks for a file to read; nothing when it was given up.
    std::function<QString()> AskFile;

    // The commands, on the selected entry.
    void Rename();
    void Duplicate();
    void EditText();
    void Import();
    void Export();
    void Delete();
    void Select(const QString& code);

private:
    const RecipeEntry* Selected() const;
    void Reload(const QString& selectCode = {});
    void Store(const Recipe& recipe, const QString& code);
    QString FileOf(const QString& code) const;
    void Warn(const QString& reason);

    QStringList builtIn_;
    QString programFolder_;
    QString userFolder_;
    Dialogs& notices_;
    const WindowTexts& texts_;
    std::vector<RecipeEntry> recipes_;
    QListWidget* list_;
    std::vector<QPushButton*> ofUser_; // those that need one of the user's selected
    std::vector<QPushButton*> ofAny_;  // those that need a recipe selected
    bool changed_ = false;
};

/// A recipe as text, checked while it is typed: the line below says which line is wrong and why.
class TfrmRecipeText : public QDialog {
    Q_OBJECT

public:
    TfrmRecipeText(const QString& fileName, const QByteArray& text, const WindowTexts& texts, QWidget* parent);
    QByteArray Text() const;
};

/// A site code made of a name, one that no file of the folder has.
QString FreeRecipeCode(const QString& name, const QString& folder);

} // namespace Brindle
