#pragma once

#include "core/Harvest.h"
#include "core/Services.h"

#include <QSet>
#include <QStringList>

namespace Brindle {

/// A list of texts without repeats, letter case not mattering, in the order in which they were first seen.
class DistinctTexts {
public:
    /// Appends the text unless an equal one is there.
    void Add(const QString& text);
    void Clear();
    const QStringList& Texts() const { return texts_; }
    QStringList& Texts() { return texts_; }

private:
    QStringList texts_;
    QSet<QString> folded_;
};

/// Collects the e-mail addresses of a business from its website: from the start page and from the pages that its links
/// announce as contact pages.
class EmailHarvester : public EmailSource {
public:
    EmailHarvester(const HarvestState& state, const Settings& settings, PageSource& pages);

    void GetEmailsFromWebsite(const QString& url, QString& emails) override;

    /// Fills `ContactPagesList` from the links of a page.
    void FindContactPages(const QString& page);
    /// Fetches every contact page and collects its addresses.
    void ExtractEmails();
    /// Adds the page's new addresses to `EmailList`.
    void ExtractEmailsFromPage(const QString& page);

    DistinctTexts EmailList;
    DistinctTexts ContactPagesList;

private:
    const HarvestState& state_;
    const Settings& settings_;
    PageSource& pages_;
    QString websiteBase_; // nothing fills it, so only absolute links can be followed
};

/// The words that announce a contact page, in a link's text or in its address.
const QStringList& ContactPageWords();

} // namespace Brindle
