#include "ListingSteps.h"

#include "Errors.h"
#include "LeadListCommands.h"
#include "Markup.h"
#include "Text.h"

namespace Brindle {

namespace {

QString MapLinkOf(const Harvest& harvest, const ListingRules& rules, const QString& fullAddress) {
    QString query = fullAddress + u',' + rules.MapCountry;
    query.replace(u' ', u'+');
    return harvest.Catalogue.MapBase() + u"/maps?q=" + query;
}

void List(Harvest& harvest, const Lead& lead) {
    if (!TrimmedView(lead.DetailsLink).isEmpty())
        harvest.Leads.DuplicatedItems.Add(UpperTrimmed(lead.DetailsLink));
    harvest.Leads.Append(lead);
}

void SaveOrList(Harvest& harvest, const Lead& lead) {
    if (harvest.LeadKept)
        harvest.LeadKept(lead);
    if (!harvest.Options.cExportAutomatic)
        return List(harvest, lead);
    try {
        harvest.Saver.AutomaticSave(harvest.Options.eExportFolder, QStringLiteral("Results"), AutomaticLine(lead));
    } catch (const SaveError& error) {
        // The lead must not be lost: the list keeps it, and the harvest ends before another one fails.
        List(harvest, lead);
        harvest.Fail(error.Message());
    }
}

} // namespace

bool IsListed(const Harvest& harvest, const QString& detailsLink) {
    return harvest.Leads.DuplicatedItems.Contains(UpperTrimmed(detailsLink));
}

bool KeepLead(Harvest& harvest, const ListingRules& rules, Lead& lead) {
    if (harvest.ShouldStop())
        return false;
    harvest.PumpMessages();
    const bool listed = !TrimmedView(lead.DetailsLink).isEmpty() && IsListed(harvest, lead.DetailsLink);
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
        if (rules.CountsExtracted)
            ++harvest.State.ExtractedNum;
        lead.Country = rules.Country.toString();
        SaveOrList(harvest, lead);
    }
    ShowListCount(harvest.Leads, harvest.Texts, harvest.Status);
    harvest.PumpMessages();
    return true;
}

void StartListing(Lead& lead) {
    QString category = std::move(lead.Category);
    lead = Lead{};
    lead.Category = std::move(category);
}

void RememberCategory(Harvest& harvest, const QString& category) {
    if (TrimmedView(harvest.State.MainCategory).isEmpty())
        harvest.State.MainCategory = category;
}

void FallBackOnRemembered(const Harvest& harvest, QString& category) {
    if (TrimmedView(category).isEmpty())
        category = harvest.State.MainCategory;
}

QString KeptBefore(const QString& text, QStringView marker) {
    const qsizetype at = text.indexOf(marker);
    return at < 0 ? text : Trim(QStringView(text).first(at));
}

} // namespace Brindle
