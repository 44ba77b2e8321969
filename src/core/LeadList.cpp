#include "core/LeadList.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Brindle {

namespace {

// A row is stored field after field: a header of variable length with (characters * 2 + wide), then the characters,
// one byte each or, when wide, two.
constexpr size_t blockSize = size_t{1} << 20;

size_t HeaderLength(size_t value) {
    size_t length = 1;
    for (; value >= 0x80; value >>= 7)
        ++length;
    return length;
}

std::byte* WriteHeader(std::byte* to, size_t value) {
    for (; value >= 0x80; value >>= 7)
        *to++ = static_cast<std::byte>((value & 0x7F) | 0x80);
    *to++ = static_cast<std::byte>(value);
    return to;
}

size_t ReadHeader(const std::byte*& from) {
    auto value = static_cast<size_t>(*from++);
    if (value < 0x80) // nearly always
        return value;
    value &= 0x7F;
    for (int shift = 7;; shift += 7) {
        const auto byte = static_cast<size_t>(*from++);
        value |= (byte & 0x7F) << shift;
        if (byte < 0x80)
            return value;
    }
}

StoredText ReadField(const std::byte*& from) {
    const size_t header = ReadHeader(from);
    const StoredText field{from, header >> 1, (header & 1) != 0};
    from += field.Wide ? field.Characters * 2 : field.Characters;
    return field;
}

bool IsWide(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() > 0xFF; });
}

size_t RowLength(const std::byte* row) {
    const std::byte* at = row;
    for (int i = 0; i < FieldCount; ++i)
        ReadField(at);
    return static_cast<size_t>(at - row);
}

} // namespace

QString StoredText::Text() const {
    const auto length = static_cast<qsizetype>(Characters);
    if (!Wide)
        return QString::fromLatin1(reinterpret_cast<const char*>(Data), length);
    QString text(length, Qt::Uninitialized);
    std::memcpy(text.data(), Data, Characters * 2);
    return text;
}

LeadList::LeadList() = default;

Lead LeadList::At(qsizetype row) const {
    Lead lead;
    const std::byte* at = rows_[static_cast<size_t>(row)];
    for (int column = 0; column < FieldCount; ++column)
        lead.At(column) = ReadField(at).Text();
    return lead;
}

QString LeadList::FieldAt(qsizetype row, Field field) const {
    const std::byte* at = rows_[static_cast<size_t>(row)];
    for (int column = 0; column < static_cast<int>(field); ++column)
        ReadField(at);
    return ReadField(at).Text();
}

std::array<StoredText, FieldCount> LeadList::StoredAt(qsizetype row) const {
    // Field by field into its place: to clear the array first costs an export more than to read it.
    return [at = rows_[static_cast<size_t>(row)]]<size_t... I>(std::index_sequence<I...>) mutable {
        return std::array<StoredText, FieldCount>{(static_cast<void>(I), ReadField(at))...};
    }
    (std::make_index_sequence<FieldCount>());
}

std::byte* LeadList::Reserve(size_t bytes) {
    if (blocks_.empty() || blocks_.back().Size - blocks_.back().Used < bytes) {
        const size_t size = std::max(bytes, blockSize);
        blocks_.push_back({std::make_unique_for_overwrite<std::byte[]>(size), size, 0});
    }
    Block& block = blocks_.back();
    std::byte* const at = block.Bytes.get() + block.Used;
    block.Used += bytes;
    usedBytes_ += bytes;
    liveBytes_ += bytes;
    return at;
}

const std::byte* LeadList::Store(const Lead& lead) {
    std::array<size_t, FieldCount> headers{};
    size_t bytes = 0;
    for (int column = 0; column < FieldCount; ++column) {
        const QString& text = lead.At(column);
        const bool wide = IsWide(text);
        const auto characters = static_cast<size_t>(text.size());
        headers.at(static_cast<size_t>(column)) = characters * 2 + (wide ? 1 : 0);
        bytes += HeaderLength(headers.at(static_cast<size_t>(column))) + (wide ? characters * 2 : characters);
    }
    std::byte* const row = Reserve(bytes);
    std::byte* to = row;
    for (int column = 0; column < FieldCount; ++column) {
        const QString& text = lead.At(column);
        const size_t header = headers.at(static_cast<size_t>(column));
        to = WriteHeader(to, header);
        if ((header & 1) != 0) {
            std::memcpy(to, text.utf16(), static_cast<size_t>(text.size()) * 2);
            to += text.size() * 2;
        } else {
            to = std::transform(text.begin(), text.end(), to,
                                [](QChar c) { return static_cast<std::byte>(c.unicode()); });
        }
    }
    return row;
}

void LeadList::Append(const Lead& lead) {
    rows_.push_back(Store(lead));
    for (LeadListObserver* observer : observers_)
        observer->LeadAppended(Count() - 1);
}

void LeadList::Remove(std::span<const qsizetype> rows) {
    if (rows.empty())
        return;
    for (LeadListObserver* observer : observers_)
        observer->LeadsAboutToBeRemoved();
    auto next = rows.begin();
    auto kept = static_cast<size_t>(rows.front());
    for (size_t row = kept; row < rows_.size(); ++row) {
        if (next != rows.end() && static_cast<size_t>(*next) == row) {
            liveBytes_ -= RowLength(rows_[row]);
            ++next;
        } else {
            rows_[kept++] = rows_[row];
        }
    }
    rows_.resize(kept);
    CompactIfWorthIt();
    for (LeadListObserver* observer : observers_)
        observer->LeadsRemoved();
}

void LeadList::Clear() {
    for (LeadListObserver* observer : observers_)
        observer->LeadsAboutToBeRemoved();
    rows_.clear();
    rows_.shrink_to_fit();
    blocks_.clear();
    liveBytes_ = 0;
    usedBytes_ = 0;
    for (LeadListObserver* observer : observers_)
        observer->LeadsRemoved();
}

void LeadList::CompactIfWorthIt() {
    // Copying costs a pass over what is kept, so it waits until half of the stored bytes belong to removed rows.
    if (liveBytes_ * 2 > usedBytes_)
        return;
    const std::vector<Block> old = std::exchange(blocks_, {});
    liveBytes_ = 0;
    usedBytes_ = 0;
    for (const std::byte*& row : rows_) {
        const size_t bytes = RowLength(row);
        std::byte* const to = Reserve(bytes);
        std::memcpy(to, row, bytes);
        row = to;
    }
    rows_.shrink_to_fit();
}

void LeadList::AddObserver(LeadListObserver* observer) {
    observers_.push_back(observer);
}

void LeadList::RemoveObserver(LeadListObserver* observer) {
    std::erase(observers_, observer);
}

size_t LeadList::StoredBytes() const {
    size_t bytes = rows_.capacity() * sizeof(rows_[0]);
    for (const Block& block : blocks_)
        bytes += block.Size;
    return bytes;
}

} // namespace Brindle
