#include "export/ExtraColumns.h"

#include "core/Errors.h"
#include "export/EmailCheck.h"
#include "toolkit/Phone.h"

#include <QHash>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The region of a lead's country as the directories write it; empty when it is unknown.
QString RegionOfCountryName(const QString& name) {
    static const QHash<QString, QString> regions{{u"united states"_s, u"US"_s},
                                                 {u"usa"_s, u"US"_s},
                                                 {u"canada"_s, u"CA"_s},
                                                 {u"italy"_s, u"IT"_s},
                                                 {u"italia"_s, u"IT"_s}};
    return name.size() == 2 ? name.toUpper() : regions.value(name.trimmed().toLower());
}

struct Phones {
    QStringList International;
    bool Impossible = false; // a number is given whose country is known, and it can be none
};

Phones PhonesOf(const Lead& lead) {
    const QString region = RegionOfCountryName(lead.Country);
    Phones phones;
    for (const QString& part : lead.Phone.split(u';')) {
        const QStringView text = QStringView(part).trimmed();
        if (text.isEmpty())
            continue;
        if (const std::optional<PhoneNumber> number = ReadPhone(text, region)) {
            if (!phones.International.contains(number->E164))
                phones.International.append(number->E164);
        } else {
            phones.Impossible =
                phones.Impossible || !region.isEmpty() || text.startsWith(u'+') || text.startsWith(u"00");
        }
    }
    return phones;
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
        const auto found =
            std::find_if(ExtraColumnNames().begin(), ExtraColumnNames().end(),
                         [&](const QString& known) { return known.compare(wanted, Qt::CaseInsensitive) == 0; });
        if (found == ExtraColumnNames().end())
            throw Failure(
                u"\u201C%1\u201D is no further column; there are %2"_s.arg(wanted, ExtraColumnNames().join(u", "_s)));
        columns.push_back(static_cast<ExtraColumn>(found - ExtraColumnNames().begin()));
    }
    return columns;
}

ExtraColumns::ExtraColumns(std::vector<ExtraColumn> columns, TakesNoMail takesNoMail)
    : columns_(std::move(columns)), takesNoMail_(std::move(takesNoMail)) {}

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
        return PhonesOf(lead).International.join(u"; "_s);
    case ExtraColumn::PhoneCheck:
        return PhonesOf(lead).Impossible ? u"impossible"_s : QString();
    case ExtraColumn::CheckedEmail: {
        QStringList emails = UsableEmails(lead.Email, lead.Website);
        if (takesNoMail_)
            emails.removeIf([this](const QString& email) { return takesNoMail_(DomainOfEmail(email)); });
        return emails.join(u"; "_s);
    }
    }
    return {};
}

} // namespace Brindle
