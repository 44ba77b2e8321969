#include "core/DocumentRounds.h"

#include "core/BusinessKey.h"
#include "core/Errors.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// What tells a record from the others of its page.
QString RecordKey(const Lead& lead) {
    const QString key = BusinessKey(lead);
    return key.isEmpty() ? UpperTrimmed(lead.Name) : key;
}

QString DigestOf(const std::vector<Lead>& leads) {
    PageRecords records;
    for (const Lead& lead : leads)
        records.Add(RecordKey(lead));
    return records.Text();
}

void ReadDetails(Harvest& harvest, const SiteAdapter& site, Lead& lead) {
    if (!site.ReadDetails || lead.DetailsLink.isEmpty())
        return;
    QString page;
    if (!harvest.Pages.DownloadURL(lead.DetailsLink, page, false))
        return;
    try {
        site.ReadDetails(page, lead.DetailsLink, lead);
    } catch (const Failure&) {
        // A page beyond what is read; the record has what its list says.
    }
}

} // namespace

void KeepRecords(Harvest& harvest, const SiteAdapter& site, DocumentRecords&& found) {
    harvest.Counts.Records += static_cast<int>(found.Leads.size());
    for (const Lead& lead : found.Leads)
        for (int column = 0; column < FieldCount; ++column)
            harvest.Counts.Filled.at(static_cast<size_t>(column)) += lead.At(column).isEmpty() ? 0 : 1;
    for (Lead& lead : found.Leads) {
        if (harvest.ShouldStop())
            return;
        if (!IsKnown(harvest, LeadKey(DocumentRules, lead)))
            ReadDetails(harvest, site, lead);
        if (!KeepLead(harvest, DocumentRules, lead))
            return;
    }
}

void DocumentRounds::Begin() {
    PageLeft();
    start_.clear();
    pages_.Clear();
    loadedAnew_ = false;
}

bool DocumentRounds::Look(const SiteAdapter& site) {
    QString html = browser_.DocumentHtml();
    QString address = browser_.LocationAddress();
    const bool same = address == address_ && html == html_;
    if (!same) {
        html_ = std::move(html);
        address_ = std::move(address);
        found_ = {}; // also when the reading fails
        found_ = site.ReadDocument(html_, address_);
    }
    const QString records = DigestOf(found_.Leads);
    const bool settled = records == records_ && !browser_.Busy();
    records_ = records;
    if (found_.Leads.empty()) {
        emptyLooks_ += loadedAnew_ && !browser_.Busy() ? 1 : 0;
        return false;
    }
    emptyLooks_ = 0;
    return settled;
}

bool DocumentRounds::IsRepeated() {
    if (start_.isEmpty())
        start_ = address_;
    if (grew_)
        return false; // more of the same page
    const QString page = u"page "_s + WithoutFragment(address_);
    const QString records = u"records "_s + records_;
    const bool known = pages_.Contains(page) || pages_.Contains(records);
    pages_.Add(page);
    pages_.Add(records);
    return known && loadedAnew_;
}

void DocumentRounds::Keep(const SiteAdapter& site) {
    // More of a page comes behind what it had.
    std::vector<Lead>& leads = found_.Leads;
    DocumentRecords fresh = found_;
    if (grew_)
        fresh.Leads.erase(fresh.Leads.begin(),
                          fresh.Leads.begin() + std::min<qsizetype>(keptHere_, static_cast<qsizetype>(leads.size())));
    keptHere_ = static_cast<qsizetype>(leads.size());
    KeepRecords(harvest_, site, std::move(fresh));
}

QString DocumentRounds::NextAddress(const SiteAdapter& site) const {
    const QString& next = found_.NextPage;
    return !site.IsSameSite || site.IsSameSite(start_, next) ? next : QString();
}

void DocumentRounds::PageLeft() {
    html_.clear();
    address_.clear();
    found_ = {};
    records_.clear();
    keptHere_ = 0;
    emptyLooks_ = 0;
    loadedAnew_ = true;
    grew_ = false;
}

// More may have come by itself between the last look and the asking.
bool DocumentRounds::HasGrown(const SiteAdapter& site) const {
    const QString html = browser_.DocumentHtml();
    try {
        return html != html_ && site.ReadDocument(html, address_).Leads.size() > found_.Leads.size();
    } catch (const Failure&) {
        return false;
    }
}

bool DocumentRounds::LoadMore(const SiteAdapter& site) {
    grew_ = browser_.LoadMore(found_.LoadMore) || (!harvest_.ShouldStop() && HasGrown(site));
    if (grew_)
        records_.clear(); // two looks must see the longer list
    return grew_;
}

} // namespace Brindle
