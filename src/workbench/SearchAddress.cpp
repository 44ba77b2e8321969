#include "workbench/SearchAddress.h"

#include "core/Errors.h"

#include <QUrl>

namespace Brindle {

using namespace Qt::StringLiterals;

QString StartOf(const SearchRow& row, const SiteCatalogue& catalogue) {
    if (const SearchFault fault = WhyNoSearch(row, catalogue); fault.Kind != SearchFault::Why::None)
        throw Failure(fault.Text());
    if (!row.Start.isEmpty())
        return row.Start;
    QString start = catalogue.Adapter(row.Site)->SearchAddress;
    start.replace(u"{what}"_s, QString::fromLatin1(QUrl::toPercentEncoding(row.What)));
    return start.replace(u"{where}"_s, QString::fromLatin1(QUrl::toPercentEncoding(row.Place)));
}

SearchFault WhyNoSearch(const SearchRow& row, const SiteCatalogue& catalogue) {
    const auto directory = catalogue.Adapter(row.Site);
    if (!directory)
        return {SearchFault::Why::UnknownDirectory, {row.Site}};
    if (row.Start.isEmpty() && directory->SearchAddress.isEmpty())
        return {SearchFault::Why::NoSearchAddress, {row.Site}};
    return {};
}

SearchFault WhyNoSearch(const SearchRow& row, const SitesFile& sites, const SiteCatalogue& catalogue) {
    if (sites.DisabledSites.contains(row.Site))
        return {SearchFault::Why::Directory, {sites.ProblemsOf(row.Site).value(0)}};
    return WhyNoSearch(row, catalogue);
}

QString CodeOfName(const QString& name, const SiteCatalogue& catalogue) {
    if (catalogue.Find(name))
        return name;
    QString code = name;
    qsizetype found = 0;
    for (const QString& key : catalogue.WebsiteKeys()) {
        const SiteEntry* const entry = catalogue.Find(key);
        if (entry->DisplayEntry().compare(name, Qt::CaseInsensitive) == 0)
            return key;
        if (entry->Base.compare(name, Qt::CaseInsensitive) == 0 ||
            entry->Label.compare(name, Qt::CaseInsensitive) == 0) {
            code = key;
            ++found;
        }
    }
    return found == 1 ? code : name;
}

QString TurnHostOf(const QString& address) {
    const QUrl url(address);
    if (url.host().isEmpty())
        return {};
    return url.port() > 0 ? QString(url.host() + u':' + QString::number(url.port())) : url.host();
}

} // namespace Brindle
