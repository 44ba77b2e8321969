#pragma once

#include "recipes/Recipe.h"

#include <QStringList>

#include <vector>

namespace Brindle {

/// A recipe that can be chosen.
struct RecipeEntry {
    QString Code; ///< the site code: the file's name without ".toml"
    QString FileName;
    bool OfUser = false;
    Recipe What;
};

/// Why a name cannot be the site code of a recipe; empty when it can: letters, digits, "-", "_" and "." inside, at most
/// 64, and neither the code of any website nor of a built-in directory, in any case.
QString RecipeCodeProblem(QStringView code);

/// The site code of a recipe's file.
QString RecipeCodeOf(const QString& fileName);

/// The recipes of the program's folder and of the user's, by code; the user's wins over the program's of the same code
/// (in any case). A folder that is not there has none. What cannot be read is left out, with one line each in
/// `problems`.
std::vector<RecipeEntry> LoadRecipes(const QString& programFolder, const QString& userFolder, QStringList& problems);

/// The recipe of a code, in any case; null when there is none.
const RecipeEntry* FindRecipe(const std::vector<RecipeEntry>& recipes, QStringView code);

/// The hosts that a recipe names, for who is asked whether to use it: of its home and its search.
QStringList HostsOfRecipe(const Recipe& recipe);

} // namespace Brindle
