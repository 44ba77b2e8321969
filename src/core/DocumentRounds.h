#pragma once

#include "core/DuplicateKeys.h"
#include "core/EmbeddedBrowser.h"
#include "core/Harvest.h"
#include "core/KeepLead.h"

namespace Brindle {

/// What becomes of the records of a directory that reads whole documents.
inline constexpr ListingRules DocumentRules{.CountsExtracted = true, .KeyedByBusiness = true};

/// Lists or saves the records that are new, in their order, with what their own pages say where the directory reads
/// those, and counts what they fill. Ends early when a stop was requested.
void KeepRecords(Harvest& harvest, const SiteAdapter& site, DocumentRecords&& found);

/// The rounds of a harvest over a directory that reads whole documents: when a page is complete, whether it is a new
/// one, and where the list goes on.
class DocumentRounds {
public:
    DocumentRounds(Harvest& harvest, EmbeddedBrowser& browser) : harvest_(harvest), browser_(browser) {}

    /// A new harvest begins.
    void Begin();
    /// Reads the page that is shown. True when it is complete: loading has ended, and two looks in a row have seen the
    /// same records. Messages are handled. Throws `Failure` when the page is beyond what is read.
    bool Look(const SiteAdapter& site);
    /// Whether the last look has seen no record.
    bool IsEmpty() const { return found_.Leads.empty(); }
    /// What the reader gave up on the page, one line each.
    const QStringList& Problems() const { return found_.Problems; }
    /// The document that the last look has read.
    const QString& Document() const { return html_; }
    /// Looks since a next page was loaded that have seen no record; 0 for the page on which the harvest began.
    int EmptyLooks() const { return emptyLooks_; }
    /// Whether the complete page, loaded as the next one, has an address or a set of records that the harvest has seen.
    bool IsRepeated();
    /// `KeepRecords` of the complete page.
    void Keep(const SiteAdapter& site);

    /// The address of the next page; empty when there is none, or when it leads off the site where the harvest began.
    QString NextAddress(const SiteAdapter& site) const;
    /// A next page is being loaded.
    void PageLeft();
    /// Brings more records into the page where it can; false when it has no more.
    bool LoadMore(const SiteAdapter& site);

private:
    bool HasGrown(const SiteAdapter& site) const;

    Harvest& harvest_;
    EmbeddedBrowser& browser_;
    QString start_; // address of the first page
    QString html_;
    QString address_;
    DocumentRecords found_;
    QString records_;        // digest of the last look's records
    DuplicateKeys pages_;    // addresses and record sets that were read
    qsizetype keptHere_ = 0; // records of this page that were kept before more were loaded
    int emptyLooks_ = 0;
    bool loadedAnew_ = false;
    bool grew_ = false;
};

} // namespace Brindle
