#include "store/LeadWords.h"

#include <QSet>

#include <algorithm>

namespace Brindle {

namespace {

constexpr qsizetype longestWord = 64;

template <typename Take>
void ForEachWord(const QString& text, Take take) {
    const bool plain = std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
    const QString folded = plain ? text.toLower() : text.normalized(QString::NormalizationForm_KD).toUpper().toLower();
    QString word;
    for (const QChar c : folded) {
        if (c.isMark())
            continue;
        if (c.isLetterOrNumber() || c.isSurrogate()) {
            if (word.size() < longestWord)
                word += c;
        } else if (!word.isEmpty()) {
            take(word);
            word.clear();
        }
    }
    if (!word.isEmpty())
        take(word);
}

QString DigitsOf(const QString& text) {
    QString digits;
    for (const QChar c : text)
        if (c.isDigit())
            digits += QChar(u'0' + c.digitValue());
    return digits.left(longestWord);
}

// In the address of every page, so they tell no lead from another.
bool IsOfEveryLink(const QString& word) {
    return word == u"http" || word == u"https" || word == u"www";
}

} // namespace

QStringList WordsOf(const QString& text) {
    QStringList words;
    ForEachWord(text, [&](const QString& word) { words += word; });
    return words;
}

QString LeadWords(const Lead& lead) {
    QSet<QString> seen;
    QString words;
    const auto add = [&](const QString& word) {
        if (word.isEmpty() || seen.contains(word))
            return;
        seen.insert(word);
        if (!words.isEmpty())
            words += u' ';
        words += word;
    };
    for (int column = 0; column < FieldCount; ++column) {
        const auto field = static_cast<Field>(column);
        if (field == Field::MapLink)
            continue;
        const bool link = field == Field::Website || field == Field::DetailsLink;
        ForEachWord(lead.At(column), [&](const QString& word) {
            if (!link || !IsOfEveryLink(word))
                add(word);
        });
    }
    add(DigitsOf(lead.Phone));
    add(DigitsOf(lead.Fax));
    return words;
}

} // namespace Brindle
