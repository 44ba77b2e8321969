#include "demo/DemoServer.h"

#include "adapters/Adapters.h"
#include "demo/BusinessWebsites.h"
#include "demo/DemoAuthority.h"
#include "demo/DemoPage.h"
#include "demo/Directories.h"
#include "demo/LoopbackServers.h"
#include "demo/modern/ModernDirectory.h"

#include <httplib.h>

using namespace Qt::StringLiterals;

namespace Brindle::Demo {

namespace {

constexpr QStringView http = u"http://";

// The pages of a site without a directory.
void AddPlainHomePage(httplib::Server& server, const QString& code) {
    server.Get("/", [code](const httplib::Request&, httplib::Response& response) {
        SendPage(response, Document({code, u"#555"_s, u"en"_s, {}}, code,
                                    Fill(u"<body><div class=\"masthead\"><span class=\"brand\">{{code}}</span></div>"
                                         u"<div class=\"search\">Nothing is listed here yet.</div></body>",
                                         {{u"code", code}})));
    });
}

void AddClickRoutes(httplib::Server& server) {
    server.Get("/go", [](const httplib::Request& request, httplib::Response& response) {
        const QString target = Parameter(request, "dest");
        if (target.startsWith(u"http://127.0.0.1:"))
            SendRedirect(response, target);
        else
            response.status = 404;
    });
}

QString LabelOf(QStringView code) {
    if (code.startsWith(u"KVPN001"))
        return u"USA"_s;
    if (code.startsWith(u"KVPN002"))
        return u"Canada"_s;
    return code.startsWith(u"KVPE001") ? u"Italy"_s : u"Elsewhere"_s;
}

} // namespace

QString HostOf(const QString& base) {
    return base.startsWith(http) ? base.sliced(http.size()) : base;
}

QString ClickLink(const DemoContext& context, const QString& target) {
    QString encoded = target;
    encoded.replace(u'%', u"%25"_s); // first: the others bring in new ones
    for (const auto& [character, code] :
         {std::pair(u'?', "%3F"), {u'&', "%26"}, {u'=', "%3D"}, {u'#', "%23"}, {u'+', "%2B"}})
        encoded.replace(QChar(character), QLatin1String(code));
    return context.Clicks + u"/go?dest=" + encoded;
}

struct DemoServer::State {
    struct Site {
        QString Code;
        std::unique_ptr<DemoDirectory> Directory; ///< null: a plain home page
        DemoContext Context;
    };

    struct Modern {
        std::unique_ptr<ModernDirectory> Directory;
        DemoContext Context;
    };

    std::vector<Site> Sites;
    std::vector<Modern> ModernSites;
    QString Businesses;
    std::unique_ptr<DemoAuthority> Authority;
    // Destroyed first: routes use the directories.
    LoopbackServers Servers;

    const Site* Find(QStringView code, int layout) const {
        for (const Site& site : Sites)
            if (site.Code == code && site.Directory && layout >= 1 && layout <= site.Directory->LayoutCount())
                return &site;
        return nullptr;
    }

    const Modern* FindModern(QStringView code) const {
        for (const Modern& site : ModernSites)
            if (site.Directory->Is().Code == code)
                return &site;
        return nullptr;
    }

    void AddModernSites(const QString& clicks) {
#ifdef BRINDLE_DEMO_TLS
        Authority = std::make_unique<DemoAuthority>();
#endif
        for (auto& directory : AllModernDirectories(Authority != nullptr)) {
            const QString base = directory->Is().Secure ? Servers.AddSecure(*Authority) : Servers.Add();
            Modern& site =
                ModernSites.emplace_back(Modern{std::move(directory), {base, base, clicks, Businesses, Businesses}});
            site.Directory->AddRoutes(Servers.At(base), site.Context);
        }
    }
};

DemoServer::DemoServer() : state_(std::make_unique<State>()) {}

DemoServer::~DemoServer() = default;

void DemoServer::Start() {
    Stop();
    State& state = *state_;
    std::vector<std::unique_ptr<DemoDirectory>> directories = AllDirectories();
    if (manyLeads_ > 0)
        directories.back() = MakeManyLeadsDemo(manyLeads_);
    for (const SiteAdapter& known : SiteAdapters()) {
        State::Site& site = state.Sites.emplace_back();
        site.Code = known.Code;
        for (auto& directory : directories)
            if (directory && directory->Code() == known.Code)
                site.Directory = std::move(directory);
    }
    state.Businesses = state.Servers.Add();
    AddBusinessRoutes(state.Servers.At(state.Businesses), state.Businesses);
    const QString clicks = state.Servers.Add();
    AddClickRoutes(state.Servers.At(clicks));
    for (State::Site& site : state.Sites) {
        DemoContext& context = site.Context;
        context = {state.Servers.Add(), {}, clicks, state.Businesses, state.Businesses};
        const bool ownDetails = site.Directory && site.Directory->HasDetailsServer();
        context.DetailsBase = ownDetails ? state.Servers.Add() : context.Base;
        if (!site.Directory) {
            AddPlainHomePage(state.Servers.At(context.Base), site.Code);
            continue;
        }
        site.Directory->AddRoutes(state.Servers.At(context.Base), context);
        if (ownDetails)
            site.Directory->AddDetailsRoutes(state.Servers.At(context.DetailsBase), context);
    }
    state.AddModernSites(clicks);
    state.Servers.Run();
}

void DemoServer::Stop() {
    state_ = std::make_unique<State>();
}

QString DemoServer::SitesIni() const {
    QString text =
        u"; The demo directories. Nothing here leaves this machine.\n[map]\nbase="_s + state_->Businesses + u'\n';
    for (const State::Site& site : state_->Sites) {
        const DemoContext& context = site.Context;
        text += u"\n[%1]\nbase=%2\nlabel=%3\n"_s.arg(site.Code, context.Base, LabelOf(site.Code));
        if (context.DetailsBase != context.Base)
            text += u"details_base=" + context.DetailsBase + u'\n';
        if (!site.Directory)
            continue;
        text += u"search=" + context.Base + site.Directory->PathOfSearch() + u'\n';
        for (const auto& [key, value] : site.Directory->SiteKeys(context))
            text += key + u'=' + value + u'\n';
    }
    return text;
}

QStringList DemoServer::SiteCodes() const {
    QStringList codes;
    for (const State::Site& site : state_->Sites)
        if (site.Directory)
            codes.append(site.Code);
    return codes;
}

int DemoServer::LayoutCount(QStringView siteCode) const {
    const State::Site* const site = state_->Find(siteCode, 1);
    return site ? site->Directory->LayoutCount() : 0;
}

QString DemoServer::FirstResultPage(QStringView siteCode, int layout) const {
    const State::Site* const site = state_->Find(siteCode, layout);
    return site ? site->Directory->FirstResultPage(site->Context, layout) : QString();
}

std::vector<Lead> DemoServer::PlantedLeads(QStringView siteCode, int layout, bool emailSearch) const {
    std::vector<Lead> leads;
    const State::Site* const site = state_->Find(siteCode, layout);
    if (!site)
        return leads;
    for (PlantedLead& planted : site->Directory->PlantedLeads(site->Context, layout)) {
        if (emailSearch && planted.Fields.Email.isEmpty())
            planted.Fields.Email = planted.FoundEmails;
        leads.push_back(std::move(planted.Fields));
    }
    return leads;
}

QString DemoServer::Businesses() const {
    return state_->Businesses;
}

std::vector<ModernSite> DemoServer::ModernSites() const {
    std::vector<ModernSite> sites;
    for (const State::Modern& site : state_->ModernSites) {
        const ModernDirectory::Kind& kind = site.Directory->Is();
        sites.push_back({kind.Code.toString(), kind.Label.toString(), kind.Region.toString(),
                         site.Directory->FirstResultPage(site.Context), site.Directory->SearchAddress(site.Context),
                         kind.NeedsScripts, kind.Secure});
    }
    return sites;
}

std::vector<Lead> DemoServer::ModernLeads(QStringView code, bool details) const {
    const State::Modern* const site = state_->FindModern(code);
    return site ? site->Directory->PlantedLeads(site->Context, details) : std::vector<Lead>();
}

void DemoServer::ChangeClasses(QStringView code, bool changed) {
    if (const State::Modern* const site = state_->FindModern(code))
        site->Directory->ChangeClasses(changed);
}

QString DemoServer::AuthorityFile() const {
#ifdef BRINDLE_DEMO_TLS
    if (state_->Authority)
        return state_->Authority->File();
#endif
    return {};
}

} // namespace Brindle::Demo
