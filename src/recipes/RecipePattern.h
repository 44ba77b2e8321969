#pragma once

#include <QRegularExpression>
#include <QString>

namespace Brindle {

/// A regular expression of a recipe. It comes from strangers, so it runs under a limit of steps and depth, over a text
/// of bounded length.
class RecipePattern {
public:
    RecipePattern() = default;
    explicit RecipePattern(const QString& pattern);

    /// Why a pattern is none; empty when it is one, or is empty.
    static QString ProblemOf(const QString& pattern);

    enum class Outcome { Matched, NotMatched, TooCostly };
    /// Replaces the text by the first group, or by all that matched where there is none; empties it otherwise. Without
    /// a pattern the text stays.
    Outcome Apply(QString& text) const;
    bool IsSet() const { return set_; }
    /// Whether it speaks of the ends of lines: then it is for a text with its lines, else for one in a single line.
    bool SeesLines() const { return seesLines_; }

private:
    QRegularExpression expression_;
    bool set_ = false;
    bool seesLines_ = false;
};

} // namespace Brindle
