#pragma once

#include "core/Lead.h"

#include <QString>

#include <array>

namespace Brindle {

/// Counts in how many leads each field is filled: a field that is never filled is the first sign that a directory
/// changed its pages.
class LeadReport {
public:
    void Add(const Lead& lead);
    qint64 Count() const { return leads_; }
    /// An adapter could not go on with a page.
    void AddPageGivenUp() { ++pagesGivenUp_; }
    /// One line for the whole and one per field; one more when pages were given up.
    QString Text() const;

private:
    qint64 leads_ = 0;
    qint64 pagesGivenUp_ = 0;
    std::array<qint64, FieldCount> filled_{};
};

} // namespace Brindle
