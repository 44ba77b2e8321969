#include "discovery/NextPage.h"

#include "discovery/NextPageWords.h"
#include "discovery/PostalAddressWords.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Text.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// What a link is worth before it counts as the one to the next page.
constexpr int sureEnough = 50;

struct Link {
    NodeIndex Node = noNode;
    QString Address;       ///< of this site; empty: it leads nowhere. Most links of a page are never asked for it
    bool Resolved = false; ///< whether the address is known
    QString Text;
    int Score = 0;
    QStringList Why;
};

// A number that stands alone in the text, as in a row of pages.
struct RowNumber {
    int Number = 0;
    int Link = -1; // of the links; -1: it is none
    NodeIndex Node = noNode;
    bool Current = false;
};

bool HasToken(QStringView list, std::span<const QStringView> tokens) {
    for (qsizetype begin = 0; begin < list.size();) {
        qsizetype end = list.indexOf(u' ', begin);
        end = end < 0 ? list.size() : end;
        const QStringView token = list.sliced(begin, end - begin);
        for (const QStringView wanted : tokens)
            if (token.size() == wanted.size() && token.compare(wanted, Qt::CaseInsensitive) == 0)
                return true;
        begin = end + 1;
    }
    return false;
}

// "21-40": the second page of twenty entries each; 0 for other texts.
int PageOfRange(QStringView text) {
    qsizetype dash = 0;
    while (dash < text.size() && text[dash].isDigit())
        ++dash;
    qsizetype end = dash;
    while (end < text.size() && (text[end] == u'-' || text[end] == u'\u2013' || text[end].isSpace()))
        ++end;
    bool first = false;
    bool last = false;
    const int from = text.first(dash).toInt(&first);
    const int to = text.sliced(end).toInt(&last);
    const int size = to - from + 1;
    return end > dash && first && last && from >= 1 && size >= 5 && size <= 500 && (from - 1) % size == 0
               ? (from - 1) / size + 1
               : 0;
}

bool HasPart(QStringView text, std::span<const QStringView> parts) {
    return std::any_of(parts.begin(), parts.end(),
                       [text](QStringView part) { return text.contains(part, Qt::CaseInsensitive); });
}

constexpr auto currentTokens = std::to_array<QStringView>(
    {u"current", u"active", u"selected", u"thisclass", u"on", u"now", u"is-active", u"is-current", u"current-page",
     u"pageactive", u"page-current", u"pagination-active", u"pagination__item--active", u"cur"});
constexpr auto disabledTokens =
    std::to_array<QStringView>({u"disabled", u"is-disabled", u"inactive", u"btn-disabled", u"disable", u"unavailable"});
constexpr auto pagerParts = std::to_array<QStringView>(
    {u"pagina", u"pager", u"paging", u"pagelink", u"page-link", u"pagenav", u"page-num", u"page_num", u"wp-pagenavi",
     u"resultpages", u"pages", u"seiten", u"blaettern", u"page-nav", u"sunpage", u"pagebar"});
constexpr auto otherNextParts =
    std::to_array<QStringView>({u"carousel", u"slider", u"slick", u"swiper", u"calendar", u"datepicker", u"gallery",
                                u"lightbox", u"slideshow", u"post-navigation", u"nav-single", u"post-nav", u"postnav",
                                u"prevnext", u"prev-next", u"entry-nav", u"orbit", u"flexslider", u"related"});

bool IsArrow(QStringView text) {
    return !text.isEmpty() && text.size() <= 3 && std::all_of(text.begin(), text.end(), [](QChar c) {
        return QStringView(u"\u00BB\u203A\u2192>\u25B6\u25BA\u276F\u27E9\u232A\u21E8\u25B8\u2794").contains(c);
    });
}

class Finder {
public:
    Finder(const PageTree& page, const PageLines& lines, const QString& url)
        : page_(page), lines_(lines), url_(url), site_(SiteOf(url)), base_(BaseAddressOf(page, url)) {}

    NextPageLink Find() {
        GatherLinks();
        JudgeRows();
        for (Link& link : links_)
            Judge(link);
        // The links of a page's head have no text.
        const Link* best = nullptr;
        for (const Link& link : links_)
            if (link.Score >= sureEnough && (!best || link.Score > best->Score))
                best = &link;
        if (!best)
            return {{}, lastOfRow_ ? u"the row of page numbers ends at this page"_s : u"no link says that it is one"_s};
        return {best->Address, best->Why.join(u"; "_s), best->Node};
    }

private:
    QString SameSiteAddress(QStringView href) const {
        const QStringView trimmed = TrimmedView(href);
        if (trimmed.isEmpty() || trimmed.startsWith(u'#'))
            return {};
        const QString address = WithoutDotSegments(ResolveAddress(base_, trimmed.toString()));
        const QString site = SiteOf(address);
        const bool same = !site.isEmpty() && (site == site_ || site.endsWith(u'.' + site_));
        return same ? WithoutFragment(address).toString() : QString();
    }

    void GatherLinks() {
        for (NodeIndex node = 0; node < page_.Count(); ++node) {
            if (!page_.IsElement(node))
                continue;
            if (page_.IsTemplate(node)) {
                node = page_.End(node) - 1;
                continue;
            }
            const bool isAnchor = page_.Is(node, u"a") || page_.Is(node, u"area");
            if (!isAnchor && !page_.Is(node, u"link"))
                continue;
            const QStringView rel = page_.Attribute(node, u"rel");
            if (!isAnchor && !HasToken(rel, std::to_array<QStringView>({u"next"})))
                continue;
            Link link;
            link.Node = node;
            if (isAnchor)
                link.Text = ShownText(lines_, node, page_.End(node), u" ", 100);
            ofAnchor_.insert(node, static_cast<int>(links_.size()));
            links_.push_back(std::move(link));
        }
    }

    const QString& AddressOf(Link& link) const {
        if (!link.Resolved) {
            link.Resolved = true;
            link.Address = SameSiteAddress(page_.Attribute(link.Node, u"href"));
            if (link.Address == WithoutFragment(url_) || IsDisabled(link.Node))
                link.Address.clear();
        }
        return link.Address;
    }

    // Whether a link may lead to an address that a row of numbers speaks for: they end alike.
    bool MayBeWitnessed(const Link& link) const {
        const QStringView href = WithoutFragment(TrimmedView(page_.Attribute(link.Node, u"href")));
        const QStringView end = href.last(std::min<qsizetype>(href.size(), 6));
        return std::any_of(witnessed_.begin(), witnessed_.end(),
                           [end](const QString& address) { return address.endsWith(end); });
    }

    bool IsDisabled(NodeIndex node) const {
        const NodeIndex parent = page_.Parent(node);
        const auto disabled = [this](NodeIndex element) {
            return page_.Attribute(element, u"aria-disabled") == u"true" || page_.HasAttribute(element, u"disabled") ||
                   HasToken(page_.Attribute(element, u"class"), disabledTokens);
        };
        return disabled(node) || (parent != noNode && page_.Is(parent, u"li") && disabled(parent));
    }

    // The innermost link around a text; -1 when there is none within a few levels.
    int LinkAround(NodeIndex node) const {
        NodeIndex at = page_.Parent(node);
        for (int level = 0; level < 5 && at != noNode; ++level, at = page_.Parent(at))
            if (page_.Is(at, u"a"))
                return ofAnchor_.value(at, -1);
        return -1;
    }

    bool LooksCurrent(NodeIndex node) const {
        NodeIndex at = page_.Parent(node);
        for (int level = 0; level < 3 && at != noNode; ++level, at = page_.Parent(at)) {
            if (page_.HasAttribute(at, u"aria-current") || HasToken(page_.Attribute(at, u"class"), currentTokens) ||
                page_.Is(at, u"strong") || page_.Is(at, u"b") || page_.Attribute(at, u"id") == u"current")
                return true;
            if (page_.Is(at, u"li") || page_.Is(at, u"td"))
                break;
        }
        return false;
    }

    // Walks over the texts and takes numbers that stand close together as a row of pages.
    void JudgeRows() {
        std::vector<RowNumber> row;
        int others = 0;
        NodeIndex before = noNode;
        for (const TextPiece& piece : lines_.Pieces) {
            bool isNumber = false;
            int number = 0;
            if (piece.Length <= 14 && HasDigit(lines_.TextOf(piece))) {
                const BareView words(lines_.TextOf(piece));
                if (words.View().size() <= 5)
                    number = words.View().toInt(&isNumber);
                if (!isNumber) {
                    number = PageOfRange(words.View());
                    isNumber = number > 0;
                }
            }
            if (isNumber && number >= 0) {
                if (before != noNode && piece.Node - before > 60)
                    EndRow(row);
                const int link = LinkAround(piece.Node);
                row.push_back({number, link, piece.Node, LooksCurrent(piece.Node)});
                others = 0;
                before = piece.Node;
            } else if (lines_.TextOf(piece).size() > 24 || ++others > 3) {
                EndRow(row);
            }
        }
        EndRow(row);
    }

    void EndRow(std::vector<RowNumber>& row) {
        JudgeRow(row);
        row.clear();
    }

    void JudgeRow(const std::vector<RowNumber>& row) {
        const auto leads = [this](const RowNumber& entry) {
            return entry.Link >= 0 && !AddressOf(links_[static_cast<size_t>(entry.Link)]).isEmpty();
        };
        const auto linkTo = [&](int number) -> const RowNumber* {
            for (const RowNumber& entry : row)
                if (entry.Number == number && leads(entry))
                    return &entry;
            return nullptr;
        };
        if (row.size() < 2 || row.size() > 200)
            return;
        // Pages whose addresses differ by their numbers alone, whatever this page's own is.
        const RowNumber* one = nullptr;
        bool counted = false;
        for (const RowNumber& entry : row) {
            if (!leads(entry))
                continue;
            if (one && one->Number != entry.Number) {
                const PageStep step = StepBetween(links_[static_cast<size_t>(one->Link)].Address,
                                                  links_[static_cast<size_t>(entry.Link)].Address);
                counted = counted || (step.SameList && step.OwnNumber == one->Number && step.Number == entry.Number);
            }
            one = &entry;
        }
        const RowNumber* current = nullptr;
        int links = 0;
        for (const RowNumber& entry : row) {
            if (leads(entry)) {
                ++links;
                continue;
            }
            const bool neighbour = linkTo(entry.Number + 1) || linkTo(entry.Number - 1);
            if (neighbour && (!current || (entry.Current && !current->Current)))
                current = &entry;
        }
        // Some rows link their own page, too, and say by its class which it is.
        for (const RowNumber& entry : row)
            if (!current && leads(entry) && entry.Current && (linkTo(entry.Number + 1) || linkTo(entry.Number - 1)))
                current = &entry;
        if (links == 0)
            return;
        if (!current) {
            // 2, 3, 4 …: the page that is missing in front is this one.
            const RowNumber* const second = linkTo(2);
            if (second && !linkTo(1) && linkTo(3))
                Witness(*second, counted, u"the row of page numbers goes on with 2"_s);
            return;
        }
        if (const RowNumber* const following = linkTo(current->Number + 1)) {
            Witness(*following, counted,
                    u"number %1 behind %2 in a row of page numbers"_s.arg(current->Number + 1).arg(current->Number));
        } else if (std::none_of(
                       row.begin(), row.end(),
                       [&](const RowNumber& entry) { return entry.Number > current->Number && leads(entry); }) &&
                   links >= 1 &&
                   StepBetween(url_, links_[static_cast<size_t>(linkTo(current->Number - 1)->Link)].Address).SameList) {
            lastOfRow_ = true;
        }
    }

    void Witness(const RowNumber& entry, bool counted, const QString& why) {
        const Link& link = links_[static_cast<size_t>(entry.Link)];
        const PageStep step = StepBetween(url_, link.Address);
        const bool inPager = IsInPager(link.Node);
        if (!step.SameList && !inPager && !entry.Current && !counted)
            return;
        witnesses_.insert(link.Address, why);
        witnessed_.push_back(link.Address);
    }

    bool IsInPager(NodeIndex node) const { return AncestorHas(node, pagerParts, 5); }

    bool AncestorHas(NodeIndex node, std::span<const QStringView> parts, int levels) const {
        for (int level = 0; level < levels && node != noNode; ++level, node = page_.Parent(node))
            for (const QStringView name : {u"class", u"id", u"aria-label", u"role"})
                if (HasPart(page_.Attribute(node, name), parts))
                    return true;
        return false;
    }

    QStringView PictureText(NodeIndex node) const {
        for (NodeIndex inner = node + 1; inner < page_.End(node) && inner < node + 12; ++inner)
            if (page_.Is(inner, u"img") || page_.Is(inner, u"svg"))
                for (const QStringView name : {u"alt", u"title", u"aria-label"})
                    if (const QStringView text = page_.Attribute(inner, name); !text.isEmpty())
                        return text;
        return {};
    }

    void Judge(Link& link) {
        const auto add = [&link](int points, const QString& why) {
            link.Score += points;
            if (!why.isEmpty())
                link.Why << why;
        };
        const bool inHead = page_.Is(link.Node, u"link");
        const bool relNext = HasToken(page_.Attribute(link.Node, u"rel"), std::to_array<QStringView>({u"next"}));
        const QStringView title = page_.Attribute(link.Node, u"title");
        const QStringView label = page_.Attribute(link.Node, u"aria-label");
        const QStringView picture = link.Text.isEmpty() ? PictureText(link.Node) : QStringView();
        const std::array<QStringView, 4> texts{link.Text, label, title, picture};

        NextWord word = NextWord::None;
        for (const QStringView text : texts) {
            if (text.isEmpty() || text.size() > 100)
                continue;
            const BareView words(text);
            const NextWord here = NextWordIn(words.View());
            if (here > word) {
                word = here;
                if (here == NextWord::Strong)
                    link.Why << u"says “%1”"_s.arg(text.toString().simplified().left(40));
            }
        }
        const bool arrow = IsArrow(TrimmedView(link.Text)) || (word == NextWord::None && IsArrow(TrimmedView(picture)));
        const bool classNext = SaysNextInClass(link.Node);
        const bool says = word != NextWord::None || arrow || relNext || classNext;
        if ((!says && (witnesses_.isEmpty() || !MayBeWitnessed(link))) || AddressOf(link).isEmpty())
            return;
        const auto witness = witnesses_.constFind(link.Address);
        const bool hasWitness = witness != witnesses_.cend();
        if (!says && !hasWitness)
            return;

        const PageStep step = StepBetween(url_, link.Address);
        const bool backwards = step.SameList && step.OwnNumber >= 0 && step.Number < step.OwnNumber;
        const int ownNumber = step.OwnNumber < 0 ? 1 : step.OwnNumber;
        if (word == NextWord::Strong)
            add(50, {});
        else if (word == NextWord::Weak)
            add(15, u"says “%1”"_s.arg(link.Text.simplified().left(40)));
        else if (arrow)
            add(15, u"an arrow"_s);
        if (relNext) {
            // Of a single article's page it may be the next article, whose title it bears.
            const bool titled = inHead ? !title.isEmpty() : (!link.Text.isEmpty() && word == NextWord::None && !arrow);
            if (!titled || step.SameList || hasWitness || word == NextWord::Strong)
                add(inHead ? 60 : 55, u"rel=next"_s);
        }
        if (classNext)
            add(20, u"its class says next"_s);
        if (hasWitness)
            add(55, *witness);
        if (step.SameList && !backwards) {
            // "?start=20" behind none, "?start=60" behind "?start=40": what was skipped are whole pages.
            const int skipped = step.Number - std::max(step.OwnNumber, 0);
            const bool whole = word == NextWord::Weak && skipped >= 2 && std::max(step.OwnNumber, 0) % skipped == 0;
            const bool following = step.Number == ownNumber + 1 || (step.OwnNumber < 0 && step.Number <= 1) || whole;
            add(following ? 35 : 25, u"its address is this one with another page’s number"_s);
        }
        if (IsInPager(link.Node))
            add(10, {});
        if (backwards)
            add(-80, {});
        const bool otherThing = std::any_of(texts.begin(), texts.end(), [](QStringView text) {
            if (text.isEmpty() || text.size() > 100)
                return false;
            const BareView words(text);
            return words.View().size() <= 60 && NextWordIn(words.View()) == NextWord::None &&
                   NamesOtherNext(words.View());
        });
        if (otherThing && !hasWitness && !step.SameList)
            add(-60, {});
        if (!hasWitness && !step.SameList && AncestorHas(link.Node, otherNextParts, 6))
            add(-60, {});
        // A row that ends here leaves only a plain word.
        if (lastOfRow_ && !hasWitness && word != NextWord::Strong && !relNext && !step.SameList)
            add(-60, {});
        // More of something, by an address that says nothing of pages.
        if (word == NextWord::Weak && !step.SameList && !hasWitness && !relNext)
            add(-20, {});
    }

    bool SaysNextInClass(NodeIndex node) const {
        for (const NodeIndex element : {node, page_.Parent(node)}) {
            if (element == noNode || (element != node && !page_.Is(element, u"li") && !page_.Is(element, u"span")))
                continue;
            for (const QStringView name : {u"class", u"id"})
                if (const QStringView value = page_.Attribute(element, name);
                    value.contains(u"next", Qt::CaseInsensitive))
                    for (const QStringView token : value.split(u' ', Qt::SkipEmptyParts)) {
                        const qsizetype at = token.indexOf(u"next", 0, Qt::CaseInsensitive);
                        const bool begins = at == 0 || (at > 0 && (!token[at - 1].isLetter() || token[at].isUpper()));
                        if (begins)
                            return true;
                    }
        }
        return false;
    }

    const PageTree& page_;
    const PageLines& lines_;
    QString url_;
    QString site_;
    QString base_;
    std::vector<Link> links_;
    QHash<NodeIndex, int> ofAnchor_;
    QHash<QString, QString> witnesses_; // what speaks for an address
    std::vector<QString> witnessed_;    // these addresses
    bool lastOfRow_ = false;
};

} // namespace

NextPageLink FindNextPage(const PageTree& page, const PageLines& lines, const QString& url) {
    return Finder(page, lines, url).Find();
}

} // namespace Brindle
