#pragma once

#include "core/Harvest.h"
#include "core/Services.h"

#include <QSet>
#include <QStringList>

#include <optional>

namespace Brindle {

/// A list of texts without repeats, letter case not mattering, in the order in which they were first seen.
class DistinctTexts {
public:
    /// Appends the text unless an equal one is there.
    void Add(const QString& text);
    void Clear();
    qsizetype Count() const { return texts_.size(); }
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
    EmailHarvester(HarvestState& state, const Settings& settings, PageSource& pages);

    void GetEmailsFromWebsite(const QString& url, QString& emails) override;
    /// The same as a value: the addresses joined by ";"; nothing when the search did not run to its end.
    std::optional<QString> EmailsOfWebsite(const QString& url);

    /// Fills `ContactPagesList` from the links of a page. In the classic way only absolute http links can be followed;
    /// in the modern one any that the page leads to, the first twenty.
    void FindContactPages(const QString& page);
    /// Fetches every contact page and collects its addresses.
    void ExtractEmails();
    /// Adds the page's new addresses to `EmailList`.
    void ExtractEmailsFromPage(const QString& page);

    DistinctTexts EmailList;
    DistinctTexts ContactPagesList;

private:
    void CompleteClassic();
    void ResolveLinks();
    bool IsModern() const { return state_.CurrWay == Way::Modern; }

    HarvestState& state_;
    const Settings& settings_;
    PageSource& pages_;
    QString websiteBase_; // nothing fills it, so only absolute links can be followed
};

} // namespace Brindle
