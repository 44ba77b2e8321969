#include "export/ExtraColumns.h"

#include "core/Errors.h"
#include "export/EmailCheck.h"
#include "toolkit/Phone.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The phones of a field; nothing where not one of its numbers can be one.
QStringList InternationalPhones(const Lead& lead) {
    QStringList numbers;
    for (const FoundPhone& found : FindPhones(lead.Phone, RegionOfCountry(lead.Country)))
        if (found.Number.IsValid && !numbers.contains(found.Number.E164))
            numbers.append(found.Number.E164);
    return numbers;
}

} // namespace

const QStringList& ExtraColumnNames() {
    static const QStringList names{u"Phone (international)"_s, u"Phone (check)"_s, u"Email (checked)"_s};
    return names;
}

std::vector<ExtraColumn> ExtraColumnsNamed(const QStringList& names) {
    std::vector<ExtraColumn> columns;
    for (const QString& name : names) {
        const QString wanted = name.trimmed();
        const auto found = std::find_if(ExtraColumnNames().begin(), ExtraColumnNames().end(), [&](const QString& known) {
            return known.compare(wanted, Qt::CaseInsensitive) == 0;
        });
        if (found == ExtraColumnNames().end())
            throw Failure(u"\u201C%1\u201D is no further column; there are %2"_s.arg(wanted, ExtraColumnNames().join(u", "_s)));
        columns.push_back(static_cast<ExtraColumn>(found - ExtraColumnNames().begin()));
    }
    return columns;
}

ExtraColumns::ExtraColumns(std::vector<ExtraColumn> columns, MailDomainCheck checkDomain)
    : columns_(std::move(columns)), checkDomain_(std::move(checkDomain)) {}

QStringList ExtraColumns::Captions() const {
    QStringList captions;
    for (const ExtraColumn column : columns_)
        captions.append(ExtraColumnNames()[static_cast<int>(column)]);
    return captions;
}

QStringList ExtraColumns::Of(const Lead& lead) const {
    QStringList texts;
    for (const ExtraColumn column : columns_)
        texts.append(TextOf(column, lead));
    return texts;
}

QString ExtraColumns::TextOf(ExtraColumn column, const Lead& lead) const {
    switch (column) {
    case ExtraColumn::InternationalPhone:
        return InternationalPhones(lead).join(u"; "_s);
    case ExtraColumn::PhoneCheck:
        return !lead.Phone.trimmed().isEmpty() && InternationalPhones(lead).isEmpty() ? u"impossible"_s : QString();
    case ExtraColumn::CheckedEmail: {
        QStringList emails = UsableEmails(lead.Email, lead.Website);
        if (checkDomain_)
            emails.removeIf([this](const QString& email) {
                return checkDomain_(DomainOfEmail(email)) == MailDomain::TakesNone;
            });
        return emails.join(u"; "_s);
    }
    }
    return {};
}

} // namespace Brindle
