#include "HarvestBench.h"

#include "core/Errors.h"

using namespace Qt::StringLiterals;

namespace Brindle::Test {

QStringList StatusRecorder::TextsOf(int panel) const {
    QStringList texts;
    for (const auto& [number, text] : Panels)
        if (number == panel)
            texts.append(text);
    return texts;
}

QString StatusRecorder::Last(int panel) const {
    const QStringList texts = TextsOf(panel);
    return texts.isEmpty() ? QString() : texts.last();
}

bool StubPages::DownloadURL(const QString& url, QString& page, bool /*utf8*/) {
    if (Keeps)
        Fetched.append(url);
    if (OnFetch)
        OnFetch();
    if (Redirects.contains(url))
        state_.CurrRedirect = Redirects.value(url);
    if (Pages.contains(url))
        page = Pages.value(url);
    else if (!EveryPage.isNull())
        page = EveryPage;
    else
        return false;
    state_.LastFetched = {url, {}};
    return true;
}

bool StubPages::DirectDownloadURL(const QString& url, QString& page, bool utf8) {
    return DownloadURL(url, page, utf8);
}

void StubSaver::SaveLead(const QString& folder, const QString& name, const Lead& lead) {
    if (!Error.isEmpty())
        throw SaveError(Error);
    Targets.append(folder + u'|' + name);
    Leads.push_back(lead);
}

SiteCatalogue TestCatalogue(std::span<const SiteAdapter> directories) {
    SiteCatalogue catalogue(u"http://maps.test"_s);
    for (const SiteAdapter& site : directories)
        catalogue.Add({.Code = site.Code,
                       .Base = u"http://"_s + site.Code.toLower() + u".test"_s,
                       .Label = u"Test"_s,
                       .DetailsBase = u"http://details.test"_s,
                       .OwnHost = u"own.test"_s,
                       .RedirectHost = u"clicks.test"_s,
                       .ContactEmail = u"info@directory.test"_s,
                       .AdvertUrl = u"http://adverts.test/free"_s},
                      site);
    return catalogue;
}

HarvestBench::HarvestBench(QStringView siteCode, int layoutVariant, quint32 startTick)
    : HarvestBench(SiteAdapters(), siteCode, layoutVariant, startTick) {}

HarvestBench::HarvestBench(std::span<const SiteAdapter> directories, QStringView siteCode, int layoutVariant,
                           quint32 startTick)
    : Loop(startTick),
      Catalogue(TestCatalogue(directories)),
      Job({State, Leads, Options, Texts, Catalogue, Loop, Status, Notices, Pages, Emails, Saver}) {
    State.CurrID = siteCode.toString();
    State.CurrSite = layoutVariant;
    if (const SiteEntry* const site = Catalogue.Find(siteCode))
        State.SelectedEntry = site->DisplayEntry();
    Texts.Set(Message::ListCount, u"[VAR1] items listed"_s);
    Texts.Set(Message::ExportedCount, u"[VAR1] items exported"_s);
    Texts.Set(Message::Request, u"Loading"_s);
    Texts.Set(Message::HarvestFinished, u"Finished"_s);
}

std::vector<Lead> HarvestBench::AllLeads() const {
    std::vector<Lead> leads;
    for (qsizetype row = 0; row < Leads.Count(); ++row)
        leads.push_back(Leads.At(row));
    return leads;
}

} // namespace Brindle::Test
