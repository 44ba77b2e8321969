#include "recipes/RecipeFolders.h"

#include "core/Errors.h"
#include "core/SiteCatalogue.h"
#include "discovery/StructuredLinks.h"
#include "recipes/RecipeFile.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestCode = 64;
constexpr qsizetype mostRecipes = 5000; // of a folder

bool IsSame(QStringView one, QStringView other) {
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

void LoadFolder(const QString& folder, bool ofUser, std::vector<RecipeEntry>& recipes, QStringList& problems) {
    if (folder.isEmpty())
        return;
    QStringList names = QDir(folder).entryList({u"*.toml"_s}, QDir::Files, QDir::Name);
    if (names.size() > mostRecipes) {
        problems.append(u"%1: more than %2 recipes; the others were not read"_s.arg(QDir::toNativeSeparators(folder))
                            .arg(mostRecipes));
        names.resize(mostRecipes);
    }
    for (const QString& name : names) {
        RecipeEntry entry;
        entry.FileName = QDir(folder).filePath(name);
        entry.Code = RecipeCodeOf(name);
        entry.OfUser = ofUser;
        if (const QString reason = RecipeCodeProblem(entry.Code); !reason.isEmpty()) {
            problems.append(u"%1: %2"_s.arg(QDir::toNativeSeparators(entry.FileName), reason));
            continue;
        }
        try {
            entry.What = LoadRecipe(entry.FileName);
        } catch (const Failure& failure) {
            problems.append(failure.Message());
            continue;
        }
        recipes.push_back(std::move(entry));
    }
}

} // namespace

namespace {

// The codes of the directories that come with the program: "KVP", a letter for the region, six digits.
bool IsOfBuiltInForm(QStringView code) {
    return code.size() == 10 && IsSame(code.first(3), u"KVP") && code[3].isLetter() &&
           std::all_of(code.begin() + 4, code.end(), [](QChar c) { return c.isDigit(); });
}

} // namespace

QString RecipeCodeProblem(QStringView code) {
    const auto isInner = [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'-' || c == u'_' || c == u'.');
    };
    if (code.isEmpty() || code.size() > longestCode || !std::all_of(code.begin(), code.end(), isInner) ||
        !code.front().isLetterOrNumber() || !code.back().isLetterOrNumber())
        return u"the name of a recipe has 1 to %1 letters, digits, \"-\", \"_\" and \".\""_s.arg(longestCode);
    // Names of devices, with which Windows opens no file.
    static constexpr QStringView devices[] = {u"CON", u"PRN", u"AUX", u"NUL"};
    const QStringView stem = code.first(std::find(code.begin(), code.end(), u'.') - code.begin());
    const bool isPort =
        stem.size() == 4 && stem.back().isDigit() && (IsSame(stem.first(3), u"COM") || IsSame(stem.first(3), u"LPT"));
    const bool isTaken =
        IsSame(code, u"AUTO") || IsOfBuiltInForm(code) || isPort ||
        std::any_of(std::begin(devices), std::end(devices), [&](QStringView device) { return IsSame(stem, device); });
    return isTaken ? u"\u201C%1\u201D cannot be the name of a recipe"_s.arg(code) : QString();
}

QString RecipeCodeOf(const QString& fileName) {
    return QFileInfo(fileName).completeBaseName();
}

std::vector<RecipeEntry> LoadRecipes(const QString& programFolder, const QString& userFolder, QStringList& problems) {
    std::vector<RecipeEntry> recipes;
    LoadFolder(userFolder, true, recipes, problems);
    if (QDir(programFolder) != QDir(userFolder))
        LoadFolder(programFolder, false, recipes, problems);
    // The first of equal codes is the user's.
    const auto before = [](const RecipeEntry& a, const RecipeEntry& b) {
        return a.Code.compare(b.Code, Qt::CaseInsensitive) < 0;
    };
    std::stable_sort(recipes.begin(), recipes.end(), before);
    const auto last = std::unique(recipes.begin(), recipes.end(),
                                  [](const RecipeEntry& a, const RecipeEntry& b) { return IsSame(a.Code, b.Code); });
    recipes.erase(last, recipes.end());
    return recipes;
}

const RecipeEntry* FindRecipe(const std::vector<RecipeEntry>& recipes, QStringView code) {
    const auto found = std::find_if(recipes.begin(), recipes.end(),
                                    [&](const RecipeEntry& entry) { return IsSame(entry.Code, code); });
    return found == recipes.end() ? nullptr : &*found;
}

QStringList HostsOfRecipe(const Recipe& recipe) {
    QStringList hosts;
    for (const QString& address : {recipe.Home, recipe.Search})
        if (const QString host = HostOfAddress(address); !host.isEmpty() && !hosts.contains(host))
            hosts.append(host);
    return hosts;
}

} // namespace Brindle
