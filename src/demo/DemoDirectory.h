#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringView>

#include <utility>
#include <vector>

namespace httplib {
class Server;
}

namespace Brindle::Demo {

/// The addresses that a directory's pages link to. None has a trailing slash.
struct DemoContext {
    QString Base;        ///< the directory itself
    QString DetailsBase; ///< the server of its details pages; the directory itself when it has none of its own
    QString Clicks;      ///< the click-redirect server, see `ClickLink`
    QString Businesses;  ///< the business websites, see BusinessWebsites.h
    QString Maps;        ///< the map service
};

/// "127.0.0.1:40123" of "http://127.0.0.1:40123".
QString HostOf(const QString& base);

/// The address on the click-redirect server that leads to `target`, an absolute address. What has a meaning in a
/// query is encoded, everything else stands as it is, so that the link holds the target's host name.
QString ClickLink(const DemoContext& context, const QString& target);

/// A lead that a harvest must find, as a person would read it off the directory's pages.
struct PlantedLead {
    Lead Fields;
    QString FoundEmails; ///< what the search on the business's website finds; asked when `Fields.Email` is empty
};

/// One invented directory. A directory is one source file; Directories.cpp lists them.
///
/// Routes are answered on several threads at once and must not change the directory. A route is a regular expression
/// that the whole path (percent-decoded, without the query) must match.
class DemoDirectory {
public:
    virtual ~DemoDirectory() = default;

    virtual QStringView Code() const = 0;
    /// Layouts are numbered from 1, as the catalogue's layout variants.
    virtual int LayoutCount() const { return 1; }
    /// Whether details pages lie on a server of their own.
    virtual bool HasDetailsServer() const { return false; }
    /// The keys of the deployment file besides base and label, in order.
    virtual std::vector<std::pair<QString, QString>> SiteKeys(const DemoContext&) const { return {}; }

    /// Registers the pages: the home page "/" with its search form, the result pages, details pages.
    virtual void AddRoutes(httplib::Server& server, const DemoContext& context) const = 0;
    /// Registers the pages of the details server, when there is one.
    virtual void AddDetailsRoutes(httplib::Server&, const DemoContext&) const {}

    /// Where a search leads to on the directory, with {what} and {where} in it: to the first result page of the first
    /// layout.
    virtual QString PathOfSearch() const = 0;
    /// Address of the first result page of a layout.
    virtual QString FirstResultPage(const DemoContext& context, int layout) const = 0;
    /// The leads of a harvest from the first result page of a layout to the last, in order.
    virtual std::vector<PlantedLead> PlantedLeads(const DemoContext& context, int layout) const = 0;
};

} // namespace Brindle::Demo
