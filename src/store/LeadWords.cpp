#include "store/LeadWords.h"

#include "toolkit/Ascii.h"

#include <QHash>
#include <QSet>
#include <QVarLengthArray>

#include <algorithm>

namespace Brindle {

namespace {

constexpr qsizetype longestWord = 64;

using Buffer = QVarLengthArray<char16_t, 256>;

// The text in the form that words are compared in: small letters without marks.
void Fold(const QString& text, Buffer& folded) {
    folded.clear();
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit >= 0x80)
            break;
        folded.append(Ascii::Lower(unit));
    }
    if (folded.size() == text.size())
        return;
    folded.clear();
    const QString whole = text.normalized(QString::NormalizationForm_KD).toUpper().toLower();
    for (const QChar c : whole)
        if (!c.isMark())
            folded.append(c.unicode());
}

template <typename Take>
void ForEachWord(const QString& text, Buffer& folded, Take take) {
    Fold(text, folded);
    const QStringView all(folded.constData(), folded.size());
    for (qsizetype from = 0; from < all.size();) {
        qsizetype end = from;
        while (end < all.size() && (all[end].isLetterOrNumber() || all[end].isSurrogate()))
            ++end;
        if (end > from)
            take(all.sliced(from, std::min(end - from, longestWord)));
        from = end + 1;
    }
}

// Different words, with a blank between them.
class WordLine {
public:
    WordLine() { text_.reserve(400); }
    void Add(QStringView word) {
        if (word.isEmpty())
            return;
        const size_t hash = qHash(word);
        if (IsKnown(word, hash))
            return;
        if (places_.size() >= fewWords)
            many_.insert(word.toString());
        if (!text_.isEmpty())
            text_ += u' ';
        if (places_.size() < fewWords)
            places_.append({hash, text_.size(), word.size()});
        text_ += word;
    }
    const QString& Text() const { return text_; }

private:
    // A few words are looked through faster than a set is kept of them.
    static constexpr qsizetype fewWords = 64;

    bool IsKnown(QStringView word, size_t hash) const {
        for (qsizetype i = 0; i < std::min(places_.size(), fewWords); ++i)
            if (places_[i].Hash == hash && QStringView(text_).sliced(places_[i].From, places_[i].Length) == word)
                return true;
        return !many_.isEmpty() && many_.contains(word.toString());
    }

    struct Place {
        size_t Hash;
        qsizetype From;
        qsizetype Length;
    };
    QString text_;
    QVarLengthArray<Place, fewWords> places_;
    QSet<QString> many_; // those behind the first few
};

QString DigitsOf(const QString& text) {
    QString digits;
    for (const QChar c : text)
        if (c.isDigit())
            digits += QChar(u'0' + c.digitValue());
    return digits.left(longestWord);
}

// In the address of every page, so they tell no lead from another.
bool IsOfEveryLink(QStringView word) {
    return word == u"http" || word == u"https" || word == u"www";
}

} // namespace

QStringList WordsOf(const QString& text) {
    QStringList words;
    Buffer folded;
    ForEachWord(text, folded, [&](QStringView word) { words += word.toString(); });
    return words;
}

QString LeadWords(const Lead& lead) {
    WordLine words;
    Buffer folded;
    for (int column = 0; column < FieldCount; ++column) {
        const auto field = static_cast<Field>(column);
        if (field == Field::MapLink)
            continue;
        const bool link = field == Field::Website || field == Field::DetailsLink;
        ForEachWord(lead.At(column), folded, [&](QStringView word) {
            if (!link || !IsOfEveryLink(word))
                words.Add(word);
        });
    }
    words.Add(DigitsOf(lead.Phone));
    words.Add(DigitsOf(lead.Fax));
    return words.Text();
}

} // namespace Brindle
