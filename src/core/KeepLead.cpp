#include "core/KeepLead.h"

#include "core/BusinessKey.h"
#include "core/Errors.h"
#include "core/LeadListCommands.h"
#include "toolkit/Text.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

QString MapLinkOf(const Harvest& harvest, const ListingRules& rules, const QString& fullAddress,
                  const QString& ownCountry) {
    const QString& base = harvest.Catalogue.MapBase();
    QString link = base + u"/maps?q=" + fullAddress;
    const QStringView country = rules.MapCountry.isEmpty() ? QStringView(ownCountry) : rules.MapCountry;
    if (!country.isEmpty())
        link += u',' + country;
    std::replace(link.begin() + base.size(), link.end(), QChar(u' '), QChar(u'+'));
    return link;
}

void List(Harvest& harvest, const Lead& lead, const QString& key) {
    if (!key.isEmpty())
        harvest.Leads.DuplicatedItems.Add(key);
    harvest.Leads.Append(lead);
}

void SaveOrList(Harvest& harvest, const ListingRules& rules, const Lead& lead, const QString& key) {
    if (harvest.LeadKept)
        harvest.LeadKept(lead);
    if (!harvest.Options.cExportAutomatic)
        return List(harvest, lead, key);
    try {
        harvest.Saver.SaveLead(harvest.Options.eExportFolder, u"Results"_s, lead);
        if (rules.KeyedByBusiness && !key.isEmpty())
            harvest.SavedKeys.Add(key);
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

QString LeadKey(const ListingRules& rules, const Lead& lead) {
    return rules.KeyedByBusiness ? BusinessKey(lead) : UpperTrimmed(lead.DetailsLink);
}

bool IsKnown(const Harvest& harvest, const QString& key) {
    return !key.isEmpty() && (harvest.Leads.DuplicatedItems.Contains(key) || harvest.SavedKeys.Contains(key));
}

bool KeepLead(Harvest& harvest, const ListingRules& rules, Lead& lead) {
    if (harvest.ShouldStop())
        return false;
    harvest.PumpMessages();
    const QString key = LeadKey(rules, lead);
    harvest.Records.Add(key.isEmpty() ? UpperTrimmed(QString(lead.Name + lead.Phone + lead.FullAddress)) : key);
    if (!TrimmedView(lead.Name).isEmpty() && !IsKnown(harvest, key)) {
        if (rules.DropsOddWebsites && !StartsWithFolded(lead.Website, u"http"))
            lead.Website.clear();
        if (lead.Email.isEmpty() && !lead.Website.isEmpty() && harvest.Options.cExtractEmails)
            harvest.Emails.GetEmailsFromWebsite(lead.Website, lead.Email);
        if (rules.DropsEmptyParentheses && TrimmedView(lead.FullAddress) == u"()")
            lead.FullAddress.clear();
        if (!lead.FullAddress.isEmpty())
            lead.MapLink = MapLinkOf(harvest, rules, lead.FullAddress, lead.Country);
        if (rules.CleansCategory) {
            ReplaceAll(lead.Category, u"maxLength=150", u"");
            ReplaceAll(lead.Category, u"name=what", u"");
            lead.Category = Trim(lead.Category);
        }
        if (rules.CleansPhone) {
            ReplaceAll(lead.Phone, u"span class=phone_type", u"");
            lead.Phone = Trim(lead.Phone);
        }
        if (!rules.Country.isEmpty())
            lead.Country = rules.Country.toString();
        if (harvest.Store)
            harvest.Store->Keep(lead);
        if (rules.CountsExtracted)
            ++harvest.State.ExtractedNum;
        SaveOrList(harvest, rules, lead, key);
    }
    ShowListCount(harvest.Leads, harvest.Texts, harvest.Status);
    harvest.PumpMessages();
    return true;
}

} // namespace Brindle
