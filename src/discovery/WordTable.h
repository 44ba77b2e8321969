#pragma once

#include <QStringView>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace Brindle {

/// Words of a fixed list and what they stand for. Most words of a page are in no list, and their first letter and
/// length alone tell so. The words are views: what they show outlives the table.
template <typename Value>
class WordTable {
public:
    /// Gives the word a value, or finds the one that it has.
    Value& operator[](QStringView word) {
        if (Value* const known = Find(word))
            return *known;
        if (entries_.size() * 2 >= slots_.size())
            Grow();
        entries_.emplace_back(word, Value());
        Note(entries_.size() - 1);
        longest_ = std::max(longest_, word.size());
        return entries_.back().second;
    }

    /// Whether a word of this first letter can be there.
    bool MayBegin(QChar first) const { return lengths_[first.unicode() % lengths_.size()] != 0; }

    /// Whether a word of this first letter and length can be there.
    bool MayHave(QChar first, qsizetype size) const {
        return size <= longest_ && (lengths_[first.unicode() % lengths_.size()] >> (size % 64) & 1U) != 0;
    }

    /// The value of a word; null when it is not there.
    const Value* Find(QStringView word) const {
        if (word.isEmpty() || !MayHave(word.front(), word.size()))
            return nullptr;
        for (std::size_t at = HashOf(word) & (slots_.size() - 1); slots_[at] != 0; at = (at + 1) & (slots_.size() - 1))
            if (const auto& entry = entries_[slots_[at] - 1]; entry.first == word)
                return &entry.second;
        return nullptr;
    }
    Value* Find(QStringView word) { return const_cast<Value*>(std::as_const(*this).Find(word)); }

    bool Contains(QStringView word) const { return Find(word) != nullptr; }
    Value ValueOf(QStringView word) const {
        const Value* const found = Find(word);
        return found ? *found : Value();
    }
    qsizetype Longest() const { return longest_; }

private:
    static std::size_t HashOf(QStringView word) {
        std::size_t hash = static_cast<std::size_t>(word.size());
        for (const QChar c : word)
            hash = hash * 31 + c.unicode();
        return hash ^ hash >> 16;
    }

    void Note(std::size_t entry) {
        const QStringView word = entries_[entry].first;
        lengths_[word.front().unicode() % lengths_.size()] |= quint64(1) << (word.size() % 64);
        std::size_t at = HashOf(word) & (slots_.size() - 1);
        while (slots_[at] != 0)
            at = (at + 1) & (slots_.size() - 1);
        slots_[at] = static_cast<quint32>(entry + 1);
    }

    void Grow() {
        slots_.assign(std::max<std::size_t>(64, slots_.size() * 2), 0);
        for (std::size_t entry = 0; entry < entries_.size(); ++entry)
            Note(entry);
    }

    std::vector<std::pair<QStringView, Value>> entries_;
    std::vector<quint32> slots_;         // number of an entry and one; a power of two of them
    std::array<quint64, 256> lengths_{}; // by first letter
    qsizetype longest_ = 0;
};

} // namespace Brindle
