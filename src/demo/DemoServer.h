#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <memory>
#include <vector>

namespace Brindle::Demo {

/// Serves invented directories on 127.0.0.1, each on a free port of its own, with the servers that they link to: one
/// that redirects clicks, one with the websites of businesses and a map page. Nothing else is reached.
class DemoServer {
public:
    DemoServer();
    ~DemoServer();

    /// Takes the ports and begins to answer. Throws std::runtime_error when no port is free.
    void Start();
    /// Ends all servers; returns when their threads have ended. Also done by the destructor.
    void Stop();

    // What follows is for a server that was started.

    /// The deployment file to use: every known site code has its group.
    QString SitesIni() const;
    /// Codes of the sites that have an invented directory; the others have a plain home page.
    QStringList SiteCodes() const;
    /// Number of layouts that a site's directory is served in; 0 when there is no directory.
    int LayoutCount(QStringView siteCode) const;
    /// Address of the first result page; empty when there is no such directory or layout.
    QString FirstResultPage(QStringView siteCode, int layout = 1) const;
    /// The leads that a harvest from that page on must find, in order. With `emailSearch` the e-mails that a search on
    /// the websites of the businesses finds are filled in.
    std::vector<Lead> PlantedLeads(QStringView siteCode, int layout = 1, bool emailSearch = false) const;
    /// Base address of the business websites.
    QString Businesses() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace Brindle::Demo
