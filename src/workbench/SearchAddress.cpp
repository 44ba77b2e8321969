#include "workbench/SearchAddress.h"

#include "core/Errors.h"

#include <QUrl>

namespace Brindle {

using namespace Qt::StringLiterals;

QString StartOf(const SearchRow& row, const SiteCatalogue& catalogue) {
    const auto directory = catalogue.Adapter(row.Site);
    if (!directory)
        throw Failure(u"\u201C%1\u201D is no site code"_s.arg(row.Site));
    if (!row.Start.isEmpty())
        return row.Start;
    if (directory->SearchAddress.isEmpty())
        throw Failure(u"%1: no search address is known of this directory; give a start address"_s.arg(row.Site));
    QString start = directory->SearchAddress;
    start.replace(u"{what}"_s, QString::fromLatin1(QUrl::toPercentEncoding(row.What)));
    return start.replace(u"{where}"_s, QString::fromLatin1(QUrl::toPercentEncoding(row.Place)));
}

QString WhyNoSearch(const SearchRow& row, const SitesFile& sites, const SiteCatalogue& catalogue) {
    if (sites.DisabledSites.contains(row.Site))
        return sites.ProblemsOf(row.Site).value(0);
    try {
        StartOf(row, catalogue);
        return {};
    } catch (const Failure& failure) {
        return failure.Message();
    }
}

QString TurnHostOf(const QString& address) {
    const QUrl url(address);
    if (url.host().isEmpty())
        return {};
    return url.port() > 0 ? QString(url.host() + u':' + QString::number(url.port())) : url.host();
}

} // namespace Brindle
