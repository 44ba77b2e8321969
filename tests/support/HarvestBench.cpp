#include "HarvestBench.h"

#include "Errors.h"

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
    return true;
}

bool StubPages::DirectDownloadURL(const QString& url, QString& page, bool utf8) {
    return DownloadURL(url, page, utf8);
}

void StubSaver::AutomaticSave(const QString& folder, const QString& name, const QString& line) {
    if (!Error.isEmpty())
        throw SaveError(Error);
    Targets.append(folder + u'|' + name);
    Lines.append(line);
}

SiteCatalogue TestCatalogue() {
    std::vector<SiteEntry> entries;
    for (const QString& code : KnownSiteCodes())
        entries.push_back({.Code = code,
                           .Base = QStringLiteral("http://") + code.toLower() + QStringLiteral(".test"),
                           .Label = QStringLiteral("Test"),
                           .DetailsBase = QStringLiteral("http://details.test"),
                           .OwnHost = QStringLiteral("own.test"),
                           .RedirectHost = QStringLiteral("clicks.test"),
                           .ContactEmail = QStringLiteral("info@directory.test"),
                           .AdvertUrl = QStringLiteral("http://adverts.test/free")});
    return SiteCatalogue(std::move(entries), QStringLiteral("http://maps.test"));
}

HarvestBench::HarvestBench(QStringView siteCode, int layoutVariant, quint32 startTick)
    : Loop(startTick),
      Catalogue(TestCatalogue()),
      Job({State, Leads, Options, Texts, Catalogue, Loop, Status, Notices, Pages, Emails, Saver}) {
    State.CurrID = siteCode.toString();
    State.CurrSite = layoutVariant;
    if (const SiteEntry* const site = Catalogue.Find(siteCode))
        State.SelectedEntry = site->DisplayEntry();
    Texts.Set(Message::ListCount, QStringLiteral("[VAR1] items listed"));
    Texts.Set(Message::ExportedCount, QStringLiteral("[VAR1] items exported"));
    Texts.Set(Message::Request, QStringLiteral("Loading"));
    Texts.Set(Message::HarvestFinished, QStringLiteral("Finished"));
}

std::vector<Lead> HarvestBench::AllLeads() const {
    std::vector<Lead> leads;
    for (qsizetype row = 0; row < Leads.Count(); ++row)
        leads.push_back(Leads.At(row));
    return leads;
}

} // namespace Brindle::Test
