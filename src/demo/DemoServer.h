#pragma once

#include "core/Lead.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <memory>
#include <vector>

namespace Brindle::Demo {

/// A directory as today's are built, which no adapter knows.
struct ModernSite {
    QString Code;              ///< "demo-table"
    QString Label;             ///< what is special about it
    QString Region;            ///< ISO 3166 alpha-2
    QString Start;             ///< address of the first result page
    QString SearchAddress;     ///< with {what} and {where}
    bool NeedsScripts = false; ///< the list is whole in a browser with scripts alone
    bool Secure = false;       ///< https, with a certificate of the demo's own authority
};

/// Serves invented directories on 127.0.0.1, each on a free port of its own, with the servers that they link to: one
/// that redirects clicks, one with the websites of businesses and a map page. Nothing else is reached.
class DemoServer {
public:
    DemoServer();
    ~DemoServer();

    /// To be called before `Start`: Trovanumeri's directory lists so many businesses, its pages made as they are asked
    /// for.
    void ServeManyLeads(int leads) { manyLeads_ = leads; }
    /// Takes the ports and begins to answer. Throws std::runtime_error when no port is free.
    void Start();
    /// Ends all servers; returns when their threads have ended. Also done by the destructor.
    void Stop();

    // What follows is for a server that was started.

    /// The deployment file to use: every directory of the program has its group.
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

    /// The modern directories, in the order in which a harvest walks them.
    std::vector<ModernSite> ModernSites() const;
    /// The leads of one of them, each field as a person reads it off the list; with `details` what the pages of the
    /// businesses add. Empty for an unknown code.
    std::vector<Lead> ModernLeads(QStringView code, bool details = false) const;
    /// Gives the classes on the pages of a modern directory other names, as after a relaunch, or their first ones
    /// again.
    void ChangeClasses(QStringView code, bool changed);
    /// The certificate of the authority that vouches for the secure ones, a PEM file; empty when there are none.
    QString AuthorityFile() const;

private:
    struct State;
    std::unique_ptr<State> state_;
    int manyLeads_ = 0;
};

} // namespace Brindle::Demo
