#include "store/LeadColumns.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QString InLink(const QString& address) {
    QString text = address;
    return text.replace(u' ', u'+');
}

} // namespace

QString LeadColumns() {
    return u"category,name,full_address,street,city,state,postal_code,country,phone,fax,website,email,"
           "before_address,behind_address,map_link,details_link"_s;
}

QString LeadTables() {
    return u"lead LEFT JOIN map_shape ON map_shape.id=lead.map_shape"_s;
}

Lead ReadLead(const QSqlQuery& query, int first) {
    Lead lead;
    for (int column = 0; column < static_cast<int>(Field::MapLink); ++column)
        lead.At(column) = query.value(first + column).toString();
    const int map = first + static_cast<int>(Field::MapLink);
    if (query.isNull(map))
        lead.MapLink = query.value(map + 2).toString();
    else
        lead.MapLink = query.value(map).toString() + InLink(lead.FullAddress) + query.value(map + 1).toString();
    lead.DetailsLink = query.value(map + 3).toString();
    return lead;
}

bool SplitMapLink(const Lead& lead, QString& before, QString& behind) {
    if (lead.FullAddress.isEmpty())
        return false;
    const QString address = InLink(lead.FullAddress);
    const qsizetype at = lead.MapLink.indexOf(address);
    if (at < 0)
        return false;
    before = lead.MapLink.first(at);
    behind = lead.MapLink.sliced(at + address.size());
    // A shape is worth keeping where many leads share it.
    return before.size() + behind.size() <= 200;
}

} // namespace Brindle
