#include "recipes/ExampleText.h"

#include "recipes/RecipeValue.h"
#include "toolkit/Text.h"

#include <algorithm>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype fewestDigits = 5;   // of what is compared as a number
constexpr qsizetype nationalDigits = 7; // of a number that is known without its country's code
constexpr qsizetype longestCode = 3;    // of a country

bool IsFolded(QChar c) {
    return c.isLetterOrNumber() || c.isSurrogate();
}

QChar Folded(QChar c) {
    // Turkish has both of them with and without a dot.
    return c == u'\u0130' || c == u'\u0131' ? QChar(u'i') : c.toCaseFolded();
}

bool OnlyCounts(QStringView parameter) {
    return StartsWithFolded(parameter, u"utm_") || parameter.startsWith(u"gclid=") || parameter.startsWith(u"fbclid=");
}

QString WithoutCounting(const QString& address) {
    const qsizetype at = address.indexOf(u'?');
    if (at < 0)
        return address;
    QStringList parameters = address.sliced(at + 1).split(u'&');
    parameters.removeIf([](const QString& parameter) { return OnlyCounts(parameter); });
    return parameters.isEmpty() ? address.left(at) : QString(address.left(at + 1) + parameters.join(u'&'));
}

} // namespace

bool IsPhoneColumn(Field column) {
    return column == Field::Phone || column == Field::Fax;
}

QString DigitsOf(QStringView text) {
    QString digits;
    for (const QChar c : text)
        if (c.isDigit())
            digits += c;
    return digits;
}

QString FoldedExample(QStringView text) {
    QString folded;
    folded.reserve(text.size());
    for (const QChar c : text)
        if (IsFolded(c))
            folded += Folded(c);
    return folded;
}

QString PartOfFold(const QString& text, const QString& folded) {
    std::vector<qsizetype> places;
    QString all;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (IsFolded(text[i])) {
            all += Folded(text[i]);
            places.push_back(i);
        }
    const qsizetype at = folded.isEmpty() ? -1 : all.indexOf(folded);
    if (at < 0)
        return {};
    const qsizetype begin = places[static_cast<size_t>(at)];
    return text.sliced(begin, places[static_cast<size_t>(at + folded.size() - 1)] + 1 - begin);
}

QString FoldedAddress(QStringView address) {
    QString text = WithoutCounting(Trim(address));
    const qsizetype scheme = text.indexOf(u"://");
    if (scheme >= 0)
        text.remove(0, scheme + 3);
    else if (text.startsWith(u"//"))
        text.remove(0, 2);
    if (StartsWithFolded(text, u"www."))
        text.remove(0, 4);
    while (text.endsWith(u'/'))
        text.chop(1);
    const qsizetype slash = text.indexOf(u'/');
    const qsizetype host = slash < 0 ? text.size() : slash;
    return text.left(host).toLower() + text.sliced(host);
}

bool IsSameNumber(QStringView one, QStringView other) {
    QString shorter = DigitsOf(one);
    QString longer = DigitsOf(other);
    if (shorter == longer)
        return true;
    if (shorter.size() > longer.size())
        shorter.swap(longer);
    if (longer.startsWith(u"00"))
        longer.remove(0, 2);
    if (shorter.startsWith(u'0'))
        shorter.remove(0, 1); // of a number in its country
    const qsizetype code = longer.size() - shorter.size();
    return shorter.size() >= nationalDigits && code >= 0 && code <= longestCode && longer.endsWith(shorter);
}

bool IsExample(Field column, QStringView value, QStringView example) {
    if (value.isEmpty())
        return false;
    if (IsLinkColumn(column))
        return FoldedAddress(value) == FoldedAddress(example);
    if (IsPhoneColumn(column) && DigitsOf(example).size() >= fewestDigits)
        return IsSameNumber(value, example);
    return FoldedExample(value) == FoldedExample(example);
}

} // namespace Brindle
