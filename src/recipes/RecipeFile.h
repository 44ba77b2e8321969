#pragma once

#include "recipes/Recipe.h"

#include <QByteArray>
#include <QStringList>

namespace Brindle {

/// Longest recipe that is read, in bytes.
inline constexpr qint64 longestRecipe = 256 * 1024;

/// Reads a recipe (TOML 1.0; docs/recipes.md has every key). Throws `Failure` with one line that names the file, the
/// line and what is wrong there: no TOML, a key that is unknown or missing, a selector or pattern that is none, an odd
/// value.
Recipe ReadRecipe(const QByteArray& toml, const QString& fileName);

/// As `ReadRecipe`, from a file.
Recipe LoadRecipe(const QString& fileName);

/// The recipe as a file, for people to read and mend; `ReadRecipe` gives an equal one. `remarks` stand on top, one
/// comment each.
QByteArray RecipeText(const Recipe& recipe, const QStringList& remarks = {});

/// Writes a file whole or not at all. Throws `SaveError`.
void SaveRecipe(const Recipe& recipe, const QString& fileName);

} // namespace Brindle
