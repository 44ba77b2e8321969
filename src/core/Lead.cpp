#include "Lead.h"

namespace Brindle {

namespace {

constexpr std::array<QString Lead::*, FieldCount> fields{
    &Lead::Category, &Lead::Name,  &Lead::FullAddress, &Lead::Street,  &Lead::City,  &Lead::State,   &Lead::PostalCode,
    &Lead::Country,  &Lead::Phone, &Lead::Fax,         &Lead::Website, &Lead::Email, &Lead::MapLink, &Lead::DetailsLink,
};

} // namespace

const QString& Lead::At(int column) const {
    return this->*fields.at(static_cast<size_t>(column));
}

QString& Lead::At(int column) {
    return this->*fields.at(static_cast<size_t>(column));
}

const QStringList& EnglishCaptions() {
    static const QStringList captions{
        QStringLiteral("Category"),    QStringLiteral("Business Name"), QStringLiteral("Full Address"),
        QStringLiteral("Address"),     QStringLiteral("City"),          QStringLiteral("State"),
        QStringLiteral("Postal Code"), QStringLiteral("Country"),       QStringLiteral("Phone"),
        QStringLiteral("Fax"),         QStringLiteral("Website"),       QStringLiteral("Email"),
        QStringLiteral("Map Link"),    QStringLiteral("Details Link"),
    };
    return captions;
}

QString AutomaticLine(const Lead& lead) {
    QString line = QStringLiteral("\"");
    for (int column = 0; column < FieldCount; ++column) {
        if (column > 0)
            line += QStringLiteral("\",\"");
        line += lead.At(column);
    }
    line += u'"';
    return line;
}

} // namespace Brindle
