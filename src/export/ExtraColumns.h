#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace Brindle {

/// Whether a domain (lower case, ASCII) is known to take no mail; may take its time.
using TakesNoMail = std::function<bool(const QString& domain)>;

/// A column beside the fourteen, made from a lead.
enum class ExtraColumn {
    InternationalPhone, ///< the phones that can be ones, E.164 (ITU-T), several joined by "; "
    PhoneCheck,         ///< "impossible" when one of the numbers can be none in its country
    CheckedEmail        ///< the addresses that can be ones, those of the business's own domain first
};

/// The names of the further columns, in the order of the enumeration; they are the captions too.
const QStringList& ExtraColumnNames();

/// The columns of these names, whatever their case. Throws `Failure` that names the first one that is none.
std::vector<ExtraColumn> ExtraColumnsNamed(const QStringList& names);

/// Makes the texts of further columns.
class ExtraColumns {
public:
    ExtraColumns() = default;
    /// `takesNoMail`: empty when nobody is to be asked.
    explicit ExtraColumns(std::vector<ExtraColumn> columns, TakesNoMail takesNoMail = {});

    bool IsEmpty() const { return columns_.empty(); }
    /// Whether a lead may take long, because somebody is asked.
    bool Asks() const { return static_cast<bool>(takesNoMail_); }
    const std::vector<ExtraColumn>& Columns() const { return columns_; }
    QStringList Captions() const;
    /// One text a column.
    QStringList Of(const Lead& lead) const;

private:
    QString TextOf(ExtraColumn column, const Lead& lead) const;

    std::vector<ExtraColumn> columns_;
    TakesNoMail takesNoMail_;
};

} // namespace Brindle
