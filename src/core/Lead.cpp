#include "core/Lead.h"

namespace Brindle {

using namespace Qt::StringLiterals;

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
        u"Category"_s, u"Business Name"_s, u"Full Address"_s, u"Address"_s,      u"City"_s,
        u"State"_s,    u"Postal Code"_s,   u"Country"_s,      u"Phone"_s,        u"Fax"_s,
        u"Website"_s,  u"Email"_s,         u"Map Link"_s,     u"Details Link"_s,
    };
    return captions;
}

} // namespace Brindle
