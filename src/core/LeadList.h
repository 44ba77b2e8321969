#pragma once

#include "core/DuplicateKeys.h"
#include "core/Lead.h"

#include <QStringList>

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace Brindle {

/// Told of every change of a results list.
class LeadListObserver {
public:
    virtual ~LeadListObserver() = default;
    /// A lead was appended as row `row`.
    virtual void LeadAppended(qsizetype row) = 0;
    /// Rows are about to be removed; indices are invalid until `LeadsRemoved`.
    virtual void LeadsAboutToBeRemoved() {}
    virtual void LeadsRemoved() {}
};

/// A field of a row as the list stores it, for those who pass on many rows without making a text object of each field.
/// Good until the list changes.
struct StoredText {
    const std::byte* Data = nullptr; ///< one byte a character (Latin-1) or, when wide, two (UTF-16, not aligned)
    size_t Characters = 0;
    bool Wide = false;

    QString Text() const;
};

/// The results list: the leads in the order in which they were found, the captions of the columns, and the duplicate
/// keys of the listed leads. The texts of a lead lie packed side by side in large blocks, one byte a character where
/// Latin-1 can hold the field, so a million leads fit where one string object per field would need three times as much.
class LeadList {
public:
    LeadList();

    qsizetype Count() const { return static_cast<qsizetype>(rows_.size()); }
    /// A whole row, 0-based.
    Lead At(qsizetype row) const;
    /// One field of a row.
    QString FieldAt(qsizetype row, Field field) const;
    /// The fields of a row in column order.
    std::array<StoredText, FieldCount> StoredAt(qsizetype row) const;

    void Append(const Lead& lead);
    /// Removes the rows, which are given ascending and without repeats. Keys are left alone.
    void Remove(std::span<const qsizetype> rows);
    /// Removes all rows. Keys are left alone.
    void Clear();

    void AddObserver(LeadListObserver* observer);
    void RemoveObserver(LeadListObserver* observer);

    /// Bytes that the packed texts occupy, free space of the last block included.
    size_t StoredBytes() const;

    DuplicateKeys DuplicatedItems;
    QStringList Captions = EnglishCaptions(); ///< of the columns, as the window shows them

private:
    const std::byte* Store(const Lead& lead);
    std::byte* Reserve(size_t bytes);
    void CompactIfWorthIt();

    struct Block {
        std::unique_ptr<std::byte[]> Bytes;
        size_t Size = 0;
        size_t Used = 0;
    };
    std::vector<Block> blocks_;
    std::vector<const std::byte*> rows_;
    size_t liveBytes_ = 0;
    size_t usedBytes_ = 0;
    std::vector<LeadListObserver*> observers_;
};

} // namespace Brindle
