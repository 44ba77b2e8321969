#include "core/KeepLead.h"

#include "core/Errors.h"
#include "core/LeadListCommands.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QString MapLinkOf(const Harvest& harvest, const ListingRules& rules, const QString& fullAddress) {
    const QString& base = harvest.Catalogue.MapBase();
    QString link = base + u"/maps?q=" + fullAddress + u',' + rules.MapCountry;
    std::replace(link.begin() + base.size(), link.end(), QChar(u' '), QChar(u'+'));
    return link;
}

// `key` is that of the lead's details link.
void List(Harvest& harvest, const Lead& lead, const QString& key) {
    if (!key.isEmpty())
        harvest.Leads.DuplicatedItems.Add(key);
    harvest.Leads.Append(lead);
}

void SaveOrList(Harvest& harvest, const Lead& lead, const QString& key) {
    if (harvest.LeadKept)
        harvest.LeadKept(lead);
    if (!harvest.Options.cExportAutomatic)
        return List(harvest, lead, key);
    try {
        harvest.Saver.SaveLead(harvest.Options.eExportFolder, u"Results"_s, lead);
    } catch (const SaveError& error) {
        // The lead must not be lost: the list keeps it, and the harvest ends before another one fails.
        List(harvest, lead, key);
        harvest.Fail(error.Message());
    }
}

} // namespace

bool IsListed(Harvest& harvest, const QString& detailsLink) {
    const QString key = UpperTrimmed(detailsLink);
    const bool listed = harvest.Leads.DuplicatedItems.Contains(key);
    if (listed) // otherwise it counts as a record of the page when it is kept
        harvest.Records.Add(key);
    return listed;
}

bool KeepLead(Harvest& harvest, const ListingRules& rules, Lead& lead) {
    if (harvest.ShouldStop())
        return false;
    harvest.PumpMessages();
    const QString key = UpperTrimmed(lead.DetailsLink);
    harvest.Records.Add(key.isEmpty() ? UpperTrimmed(QString(lead.Name + lead.Phone + lead.FullAddress)) : key);
    const bool listed = !key.isEmpty() && harvest.Leads.DuplicatedItems.Contains(key);
    if (!TrimmedView(lead.Name).isEmpty() && !listed) {
        if (rules.DropsOddWebsites && !StartsWithFolded(lead.Website, u"http"))
            lead.Website.clear();
        if (lead.Email.isEmpty() && !lead.Website.isEmpty() && harvest.Options.cExtractEmails)
            harvest.Emails.GetEmailsFromWebsite(lead.Website, lead.Email);
        if (rules.DropsEmptyParentheses && TrimmedView(lead.FullAddress) == u"()")
            lead.FullAddress.clear();
        if (!lead.FullAddress.isEmpty())
            lead.MapLink = MapLinkOf(harvest, rules, lead.FullAddress);
        if (rules.CleansCategory) {
            ReplaceAll(lead.Category, u"maxLength=150", u"");
            ReplaceAll(lead.Category, u"name=what", u"");
            lead.Category = Trim(lead.Category);
        }
        if (rules.CleansPhone) {
            ReplaceAll(lead.Phone, u"span class=phone_type", u"");
            lead.Phone = Trim(lead.Phone);
        }
        lead.Country = rules.Country.toString();
        if (harvest.Store)
            harvest.Store->Keep(lead);
        if (rules.CountsExtracted)
            ++harvest.State.ExtractedNum;
        SaveOrList(harvest, lead, key);
    }
    ShowListCount(harvest.Leads, harvest.Texts, harvest.Status);
    harvest.PumpMessages();
    return true;
}

} // namespace Brindle
