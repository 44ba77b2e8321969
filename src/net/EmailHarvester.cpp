#include "net/EmailHarvester.h"

#include "net/EmailSearch.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"
#include "toolkit/WorkingText.h"

#include <QScopeGuard>

#include <algorithm>
#include <utility>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

const Marker doubleQuoted(u"href=\"");
const Marker singleQuoted(u"href='");
const Marker doubleQuote(u"\"");
const Marker singleQuote(u"'");
const Marker tagEnd(u">");
const Marker tagBegin(u"<");

// What announces a contact page, in a link's text or in its address.
constexpr Marker contactWords[]{
    u"contact",    u"contatto",         u"contatti", u"support",         u"call",    u"email",
    u"directions", u"customer service", u"help",     u"client services", u"support", u"help",
    u"affiliates", u"resellers",        u"survey",   u"about",
};

bool HoldsContactWord(QStringView text) {
    return std::ranges::any_of(contactWords, [text](const Marker& word) { return word.FindFolded(text, 0) >= 0; });
}

// The next link's address. When both ways of quoting occur, the one that stands first is taken.
QStringView TakeLink(WorkingText& text) {
    const qsizetype d = text.FindFolded(doubleQuoted);
    const qsizetype s = text.FindFolded(singleQuoted);
    const bool single = d < 0 || (s >= 0 && d >= s);
    return single ? text.TakeBetween(singleQuoted, singleQuote) : text.TakeBetween(doubleQuoted, doubleQuote);
}

} // namespace

void DistinctTexts::Add(const QString& text) {
    const qsizetype before = folded_.size();
    folded_.insert(text.toCaseFolded());
    if (folded_.size() > before)
        texts_.append(text);
}

void DistinctTexts::Clear() {
    texts_.clear();
    folded_.clear();
}

EmailHarvester::EmailHarvester(HarvestState& state, const Settings& settings, PageSource& pages)
    : state_(state), settings_(settings), pages_(pages) {}

void EmailHarvester::GetEmailsFromWebsite(const QString& url, QString& emails) {
    if (const std::optional<QString> found = EmailsOfWebsite(url))
        emails = *found;
}

std::optional<QString> EmailHarvester::EmailsOfWebsite(const QString& url) {
    EmailList.Clear();
    ContactPagesList.Clear();
    if (state_.ShouldStop)
        return std::nullopt;
    QString page;
    if (!pages_.DirectDownloadURL(url, page, false) || state_.ShouldStop)
        return std::nullopt;
    // What the website leads to, it leads to, and not the directory.
    const auto restore = qScopeGuard(
        [this, directory = std::exchange(state_.CurrPage, state_.LastFetched)] { state_.CurrPage = directory; });
    FindContactPages(page);
    if (!state_.ShouldStop && settings_.cExtractEmails) {
        ExtractEmailsFromPage(page);
        ExtractEmails();
    }
    if (state_.ShouldStop)
        return std::nullopt;
    return EmailList.Texts().join(u';');
}

void EmailHarvester::FindContactPages(const QString& page) {
    WorkingText text(page);
    while (text.ContainsFolded(doubleQuoted) || text.ContainsFolded(singleQuoted)) {
        const QStringView link = TakeLink(text);
        QStringView anchor;
        if (!link.isEmpty())
            anchor = text.TakeBetween(tagEnd, tagBegin);
        // An empty link names no page.
        if (!link.isEmpty() && (HoldsContactWord(anchor) || HoldsContactWord(link)))
            ContactPagesList.Add(link.toString());
    }
    if (IsModern())
        ResolveLinks();
    else
        CompleteClassic();
}

void EmailHarvester::CompleteClassic() {
    for (QString& entry : ContactPagesList.Texts()) {
        if (entry.startsWith(u'/'))
            entry.remove(0, 1);
        if (!ContainsFolded(entry, u"http://"))
            entry = websiteBase_ + u'/' + entry;
    }
}

void EmailHarvester::ResolveLinks() {
    constexpr qsizetype mostPages = 20;
    const QStringList links = ContactPagesList.Texts();
    const QString start = WithoutFragment(state_.CurrPage.Address).toString();
    ContactPagesList.Clear();
    for (const QString& link : links) {
        QString text = link;
        ReplaceAll(text, u"&amp;", u"&");
        const QString target = NormalAddress(ResolveAddress(start, text));
        const QString page = WithoutFragment(target).toString();
        if (StartsWithFolded(page, u"http") && page != NormalAddress(start) && ContactPagesList.Count() < mostPages)
            ContactPagesList.Add(page);
    }
}

void EmailHarvester::ExtractEmails() {
    for (const QString& link : QStringList(ContactPagesList.Texts())) {
        if (state_.ShouldStop)
            return;
        QString page;
        if (!link.isEmpty() && pages_.DownloadURL(link, page, false))
            ExtractEmailsFromPage(page);
    }
}

void EmailHarvester::ExtractEmailsFromPage(const QString& page) {
    for (const QString& address : FindEmails(page))
        if (!IsModern() || MayBeEmail(address))
            EmailList.Add(address);
}

} // namespace Brindle
