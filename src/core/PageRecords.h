#pragma once

#include <QHashFunctions>
#include <QString>
#include <QStringView>

namespace Brindle {

/// A digest of the records of one page in their order, whether they were new or not: what tells that a page brings the
/// same records as another one did. Good within one run of the program.
class PageRecords {
public:
    /// `key`: what tells the record from others, in the form of duplicate keys.
    void Add(QStringView key) {
        const auto bytes = static_cast<size_t>(key.size()) * sizeof(char16_t);
        high_ = qHashBits(key.utf16(), bytes, high_ + 1);
        low_ = qHashBits(key.utf16(), bytes, low_ + 1);
        ++count_;
    }
    qsizetype Count() const { return count_; }
    /// The digest as a text.
    QString Text() const {
        return QString::number(count_) + u' ' + QString::number(high_, 16) + u' ' + QString::number(low_, 16);
    }
    bool operator==(const PageRecords&) const = default;

private:
    size_t high_ = 0x5bd1e995;
    size_t low_ = 0x27d4eb2f;
    qsizetype count_ = 0;
};

} // namespace Brindle
