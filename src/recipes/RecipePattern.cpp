#include "recipes/RecipePattern.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestPattern = 500;
constexpr qsizetype longestText = 4000;

// Limits that stand in front of a pattern can be lowered by it, not raised.
QRegularExpression Limited(const QString& pattern) {
    return QRegularExpression(u"(*LIMIT_MATCH=50000)(*LIMIT_DEPTH=2000)"_s + pattern,
                              QRegularExpression::UseUnicodePropertiesOption);
}

} // namespace

RecipePattern::RecipePattern(const QString& pattern) : set_(!pattern.isEmpty()), seesLines_(pattern.contains(u"\\n")) {
    if (set_)
        expression_ = Limited(pattern);
}

QString RecipePattern::ProblemOf(const QString& pattern) {
    if (pattern.isEmpty())
        return {};
    if (pattern.size() > longestPattern)
        return u"more than %1 characters"_s.arg(longestPattern);
    const QRegularExpression expression = Limited(pattern);
    if (expression.isValid())
        return {};
    const qsizetype at = expression.patternErrorOffset() - (Limited({}).pattern().size());
    return u"%1, at character %2"_s.arg(expression.errorString()).arg(qMax(qsizetype{1}, at + 1));
}

RecipePattern::Outcome RecipePattern::Apply(QString& text) const {
    if (!set_ || text.isEmpty())
        return Outcome::Matched;
    const QRegularExpressionMatch match = expression_.match(text.left(longestText));
    if (!match.hasMatch()) {
        text.clear();
        return match.isValid() ? Outcome::NotMatched : Outcome::TooCostly;
    }
    text = match.captured(match.lastCapturedIndex() >= 1 ? 1 : 0);
    return Outcome::Matched;
}

} // namespace Brindle
