#include "discovery/SavedPage.h"

#include "discovery/NextPage.h"
#include "toolkit/PageAddress.h"

#include <QHash>

#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The server that most of a page's links name, where most of them name one; empty for none.
QString ServerOfMostLinks(const PageTree& page) {
    QHash<QString, int> servers;
    int links = 0;
    for (NodeIndex node = 0; node < page.Count(); ++node) {
        const QStringView href = page.Is(node, u"a") ? page.Attribute(node, u"href").trimmed() : QStringView();
        const QString scheme = SchemeOf(href);
        if (href.isEmpty() || href.startsWith(u'#') || !(scheme.isEmpty() || scheme == u"http" || scheme == u"https"))
            continue;
        ++links;
        if (!scheme.isEmpty())
            ++servers[ServerOf(href.toString())];
    }
    for (const auto& [server, count] : servers.asKeyValueRange())
        if (count * 2 > links)
            return server + u'/';
    return {};
}

} // namespace

QString WebAddressOfPage(const PageTree& page, const QString& url) {
    if (!url.startsWith(u"file:", Qt::CaseInsensitive))
        return url;
    std::array<QString, 3> said; // the surest first
    const auto take = [&said](size_t place, const QString& address) {
        if (said.at(place).isEmpty() && !SiteOf(address).isEmpty())
            said.at(place) = address;
    };
    for (NodeIndex node = 0; node < page.Count(); ++node) {
        if (page.Is(node, u"link") && page.Attribute(node, u"rel").compare(u"canonical", Qt::CaseInsensitive) == 0)
            take(0, page.Attribute(node, u"href").trimmed().toString());
        else if (page.Is(node, u"meta") && page.Attribute(node, u"property") == u"og:url")
            take(1, page.Attribute(node, u"content").trimmed().toString());
        else if (page.Is(node, u"base"))
            take(2, page.Attribute(node, u"href").trimmed().toString());
    }
    for (const QString& address : said)
        if (!address.isEmpty())
            return address;
    const QString server = ServerOfMostLinks(page);
    return SiteOf(server).isEmpty() ? UnknownWebsite.toString() : server;
}

void DropUnknownLinks(Lead& lead) {
    for (int column = 0; column < FieldCount; ++column)
        if (lead.At(column).startsWith(UnknownWebsite))
            lead.At(column).clear();
}

} // namespace Brindle
