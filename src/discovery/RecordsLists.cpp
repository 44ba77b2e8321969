#include "discovery/RecordsLists.h"

#include <QHash>
#include <QSet>
#include <QVarLengthArray>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

bool IsVolatile(QStringView token) {
    static const QSet<QString> words = [] {
        QSet<QString> set;
        constexpr QStringView list = u"odd even first last active selected current highlight highlighted alt row hover "
                                     u"open closed lazy loaded visible hidden new premium featured sponsored free paid "
                                     u"basic gold silver bronze top";
        for (const QStringView word : list.split(u' '))
            set.insert(word.toString());
        return set;
    }();
    return token.startsWith(u"is-") || token.startsWith(u"has-") || words.contains(token.toString().toLower());
}

// Elements that hold nothing which could be a record or a part of one that matters.
bool IsBare(const PageAnnotations& page, NodeIndex node) {
    const NodeFacts& facts = page.FactsOf(node);
    return facts.Characters == 0 && facts.Phones == 0;
}

// Numbers of things that come again and again, from 0, in the order in which each comes first.
class Numbering {
public:
    size_t NumberOf(quint64 thing) {
        if (things_.size() * 2 >= slots_.size())
            Grow();
        size_t at = SlotOf(thing);
        if (slots_[at] == 0) {
            things_.push_back(thing);
            slots_[at] = static_cast<quint32>(things_.size());
        }
        return slots_[at] - 1;
    }
    size_t Count() const { return things_.size(); }
    void Clear() {
        things_.clear();
        slots_.assign(fewest, 0);
    }

private:
    static constexpr size_t fewest = 16; // slots; always a power of two

    // Where a thing stands or is to stand.
    size_t SlotOf(quint64 thing) const {
        size_t at = thing & (slots_.size() - 1);
        while (slots_[at] != 0 && things_[slots_[at] - 1] != thing)
            at = (at + 1) & (slots_.size() - 1);
        return at;
    }
    void Grow() {
        slots_.assign(std::max(fewest, slots_.size() * 2), 0);
        for (size_t i = 0; i < things_.size(); ++i)
            slots_[SlotOf(things_[i])] = static_cast<quint32>(i + 1);
    }

    std::vector<quint64> things_;
    std::vector<quint32> slots_; // number of a thing and one
};

class ListFinder {
public:
    ListFinder(const PageAnnotations& page, const Signatures& signatures) : page_(page), signatures_(signatures) {}

    std::vector<RecordList> Find(size_t most) {
        const NodeIndex body = page_.Page.Body();
        if (body == noNode)
            return {};
        MarkAsides(body);
        GroupByPath(body, true);
        GroupByPath(body, false);
        SplitFlatLists(body);
        for (FlatGroup& group : flatGroups_)
            if (group.Parents >= 2)
                Add(std::move(group.List));
        return Best(most);
    }

private:
    // How much less a list is worth for where it stands: navigation, footers, side columns.
    void MarkAsides(NodeIndex body) {
        const auto size = static_cast<size_t>(page_.Page.Count());
        place_.assign(size, 1.0F);
        for (NodeIndex node = body; node < page_.Page.End(body); ++node) {
            float factor = node == body ? 1.0F : place_[static_cast<size_t>(page_.Page.Parent(node))];
            const HintSet hints = page_.HintsOf(node);
            // A whole page can call itself "with-sidebar".
            const bool small = page_.FactsOf(node).Characters * 2 < page_.FactsOf(body).Characters;
            if (node != body && small && factor > 0.05F) {
                if (Has(hints, Hint::Aside))
                    factor *= 0.3F;
                if (Has(hints, Hint::Similar))
                    factor *= 0.5F;
                if (Has(hints, Hint::Advert))
                    factor *= 0.5F;
            }
            place_[static_cast<size_t>(node)] = factor;
        }
    }

    void GroupByPath(NodeIndex body, bool withClasses) {
        const PageTree& page = page_.Page;
        std::vector<quint64> path(static_cast<size_t>(page.Count()), 0);
        numbers_.Clear();
        std::vector<std::vector<NodeIndex>> groups;
        for (NodeIndex node = body; node < page.End(body); ++node) {
            if (!page.IsElement(node))
                continue;
            const quint64 own = withClasses ? signatures_.Of(node) : signatures_.Plain(node);
            const quint64 above = node == body ? 1 : path[static_cast<size_t>(page.Parent(node))];
            const quint64 key = Mixed(above, own);
            // Bold print that nobody ended goes on around what follows.
            if (HoldsBlocks(node)) {
                path[static_cast<size_t>(node)] = above;
                continue;
            }
            // The last row of a table of cards may have fewer of them.
            path[static_cast<size_t>(node)] = page.Is(node, u"tr") ? Mixed(above, HasHeadCell(node) ? 1 : 0) : key;
            if (node == body || IsBare(page_, node))
                continue;
            const size_t number = numbers_.NumberOf(key);
            if (number == groups.size())
                groups.emplace_back();
            groups[number].push_back(node);
        }
        for (const std::vector<NodeIndex>& group : groups)
            if (group.size() >= 2)
                AddGroup(group, withClasses ? 1.0 : 0.9);
    }

    // Whether an element of print holds elements that begin lines of their own.
    bool HoldsBlocks(NodeIndex node) const {
        const PageTree& page = page_.Page;
        const QStringView name = page.Name(node);
        const bool print = name == u"b" || name == u"i" || name == u"strong" || name == u"em" || name == u"font" ||
                           name == u"u" || name == u"small" || name == u"big";
        for (NodeIndex child = print ? page.FirstChild(node) : noNode; child != noNode; child = page.NextSibling(child))
            for (const QStringView block : {u"div", u"table", u"p", u"ul", u"li", u"dl", u"article", u"section"})
                if (page.Is(child, block))
                    return true;
        return false;
    }

    bool HasHeadCell(NodeIndex row) const {
        for (NodeIndex cell = page_.Page.FirstChild(row); cell != noNode; cell = page_.Page.NextSibling(cell))
            if (page_.Page.Is(cell, u"th"))
                return true;
        return false;
    }

    void AddGroup(const std::vector<NodeIndex>& group, double factor) {
        // Members of the same look under several parents: parents whose members are worth much less are other lists.
        struct Part {
            NodeIndex Parent;
            size_t Begin;
            size_t End;
            double Sum;
        };
        std::vector<Part> parts;
        std::vector<double> worths(group.size());
        for (size_t i = 0; i < group.size(); ++i) {
            const NodeIndex parent = page_.Page.Parent(group[i]);
            if (parts.empty() || parts.back().Parent != parent)
                parts.push_back({parent, i, i, 0});
            worths[i] = WorthOf(page_.FactsOf(group[i])) * static_cast<double>(place_[static_cast<size_t>(group[i])]);
            parts.back().End = i + 1;
            parts.back().Sum += worths[i] * worths[i];
        }
        const auto mean = [](const Part& part) { return part.Sum / static_cast<double>(part.End - part.Begin); };
        const Part& main = *std::max_element(parts.begin(), parts.end(),
                                             [](const Part& one, const Part& other) { return one.Sum < other.Sum; });
        if (main.Sum <= 0)
            return;
        // Of one look, an entry may have less to say; of any look, what says little is no entry.
        const double least = factor < 1 ? 0.1 : 0.002;
        RecordList list;
        for (const Part& part : parts) {
            if (mean(part) < 0.35 * mean(main))
                continue;
            for (size_t i = part.Begin; i < part.End; ++i)
                if (worths[i] * worths[i] >= least * mean(main)) {
                    list.Records.push_back({group[i], page_.Page.End(group[i])});
                    list.Promise += worths[i] * worths[i];
                }
        }
        list.Promise *= factor;
        Add(std::move(list));
    }

    void SplitFlatLists(NodeIndex body) {
        const PageTree& page = page_.Page;
        for (NodeIndex parent = body; parent < page.End(body); ++parent) {
            if (!page.IsElement(parent) || page.FirstChild(parent) == noNode)
                continue;
            int elements = 0;
            for (NodeIndex child = page.FirstChild(parent); child != noNode; child = page.NextSibling(child))
                elements += page.IsElement(child);
            if (elements >= 4 || (elements >= 2 && page.Is(parent, u"dl")))
                SplitAtNames(parent);
        }
    }

    // The children of a parent, parted where one that could bear a name comes again.
    void SplitAtNames(NodeIndex parent) {
        const PageTree& page = page_.Page;
        std::vector<NodeIndex> children;
        std::vector<std::pair<quint64, int>> kinds; // of possible names, in their order
        numbers_.Clear();
        for (NodeIndex child = page.FirstChild(parent); child != noNode; child = page.NextSibling(child)) {
            if (!page.IsText(child) || page_.FactsOf(child).Characters > 0)
                children.push_back(child);
            if (!page.IsElement(child) || page_.FactsOf(child).Characters < 2)
                continue;
            const size_t number = numbers_.NumberOf(signatures_.Of(child));
            if (number == kinds.size())
                kinds.emplace_back(signatures_.Of(child), 0);
            ++kinds[number].second;
        }
        int tried = 0;
        if (kinds.size() >= 2 || HasTextOfItsOwn(children))
            for (const auto& kind : kinds)
                if ((kind.second >= 2 || (page.Is(parent, u"dl") && kind.first == kinds.front().first)) && tried++ < 6)
                    SplitAt(parent, children,
                            [this, look = kind.first](NodeIndex child) { return signatures_.Of(child) == look; });
        for (const quint64 shape : NameShapes(children))
            SplitAt(parent, children, [this, shape](NodeIndex child) { return ShapeOf(child) == shape; });
    }

    // What an element begins with: old pages tell a name's row or paragraph from the others by nothing else.
    quint64 ShapeOf(NodeIndex node) const {
        const PageTree& page = page_.Page;
        quint64 shape = signatures_.Of(node);
        int levels = 0;
        for (NodeIndex at = page.FirstChild(node); at != noNode && levels < 4;) {
            if (page.IsElement(at)) {
                shape = Mixed(shape, signatures_.Plain(at));
                at = page.FirstChild(at);
                ++levels;
            } else if (page.IsText(at) && page_.FactsOf(at).Characters > 0) {
                break;
            } else {
                at = page.NextSibling(at);
            }
        }
        return shape;
    }

    // The shapes of what could be names among children that look alike by their own names and classes.
    std::vector<quint64> NameShapes(const std::vector<NodeIndex>& children) {
        constexpr size_t mostShapes = 8;
        using Shapes = QVarLengthArray<std::pair<quint64, int>, mostShapes>;
        numbers_.Clear();
        std::vector<Shapes> kinds;
        for (const NodeIndex child : children) {
            if (!page_.Page.IsElement(child) || page_.FactsOf(child).Characters < 2)
                continue;
            const size_t number = numbers_.NumberOf(signatures_.Of(child));
            if (number == kinds.size())
                kinds.emplace_back();
            Shapes& shapes = kinds[number];
            const quint64 shape = ShapeOf(child);
            const auto known =
                std::find_if(shapes.begin(), shapes.end(), [shape](const auto& one) { return one.first == shape; });
            if (known != shapes.end())
                ++known->second;
            else if (static_cast<size_t>(shapes.size()) < mostShapes)
                shapes.emplace_back(shape, 1);
        }
        std::vector<quint64> names;
        for (const Shapes& shapes : kinds)
            if (shapes.size() >= 2)
                for (const auto& [shape, count] : shapes)
                    if (count >= 3 && names.size() < 4)
                        names.push_back(shape);
        return names;
    }

    bool HasTextOfItsOwn(const std::vector<NodeIndex>& children) const {
        return std::any_of(children.begin(), children.end(), [this](NodeIndex child) {
            return page_.Page.IsText(child) && page_.FactsOf(child).Characters > 5;
        });
    }

    // Where the last record of a flat list ends: it is no longer than the others, and has no pager or footer.
    size_t EndOfLast(const std::vector<NodeIndex>& children, size_t begin, size_t longest) const {
        const size_t end = longest > 0 ? std::min(children.size(), begin + longest) : children.size();
        for (size_t i = begin + 1; i < end && longest > 0; ++i) {
            const NodeIndex child = children[i];
            const NodeFacts& facts = page_.FactsOf(child);
            const bool odd = Has(page_.HintsOf(child), Hint::Aside) || facts.OwnLinks >= 2 || facts.Characters > 300;
            const bool known =
                std::any_of(children.begin(), children.begin() + static_cast<std::ptrdiff_t>(begin),
                            [&](NodeIndex other) { return signatures_.Of(other) == signatures_.Of(child); });
            if (page_.Page.IsElement(child) && odd && !known)
                return i;
        }
        return end;
    }

    template <typename Begins>
    void SplitAt(NodeIndex parent, const std::vector<NodeIndex>& children, const Begins& begins) {
        const PageTree& page = page_.Page;
        RecordList list;
        list.Flat = true;
        std::vector<NodeFacts> facts;
        size_t longest = 0;
        size_t begin = children.size();
        NodeFacts sum;
        const auto finish = [&](size_t end) {
            list.Records.push_back({children[begin], page.End(children[end - 1])});
            facts.push_back(sum);
            longest = std::max(longest, end - begin);
        };
        for (size_t i = 0; i < children.size(); ++i) {
            const NodeIndex child = children[i];
            if (page.IsElement(child) && page_.FactsOf(child).Characters >= 2 && begins(child)) {
                if (begin < i)
                    finish(i);
                begin = i;
                sum = {};
            } else if (begin == children.size()) {
                continue;
            } else if (i - begin >= std::max<size_t>(longest, 12) && longest > 0) {
                // What follows the last record belongs to it no longer.
                finish(i);
                begin = children.size();
                continue;
            }
            sum += page_.FactsOf(child);
        }
        if (begin < children.size())
            finish(EndOfLast(children, begin, longest));
        double alone = 0; // what the names' elements are worth by themselves
        for (const RecordRange& record : list.Records) {
            const double worth =
                WorthOf(page_.FactsOf(record.Begin)) * static_cast<double>(place_[static_cast<size_t>(parent)]);
            alone += worth * worth;
        }
        for (const NodeFacts& one : facts) {
            const double worth = WorthOf(one) * static_cast<double>(place_[static_cast<size_t>(parent)]);
            list.Promise += worth * worth;
        }
        // Elements that hold all of a record need nothing of what lies between them.
        if (alone > 0.6 * list.Promise)
            return;
        list.Promise *= 0.85;
        // A heading begins what follows it, and never ends what stands before it.
        const bool heading = std::any_of(list.Records.begin(), list.Records.end(), [&page](const RecordRange& record) {
            return page.IsElement(record.Begin) && IsHeading(page, record.Begin);
        });
        const bool headings = std::any_of(children.begin(), children.end(), [&page](NodeIndex child) {
            return page.IsElement(child) && IsHeading(page, child);
        });
        if (headings && !heading)
            list.Promise *= 0.9;
        if (page.Is(parent, u"dl") && !list.Records.empty())
            AddToGroup(parent, list);
        Add(std::move(list));
    }

    // "<h3>A</h3><dl>…</dl><h3>B</h3><dl>…</dl>": the lists of the letters are one.
    void AddToGroup(NodeIndex parent, const RecordList& list) {
        const quint64 key = Mixed(Mixed(static_cast<quint64>(page_.Page.Parent(parent)), signatures_.Of(parent)),
                                  signatures_.Of(list.Records.front().Begin));
        const auto known = std::find_if(flatGroups_.begin(), flatGroups_.end(),
                                        [key](const FlatGroup& group) { return group.Key == key; });
        FlatGroup& group = known == flatGroups_.end() ? flatGroups_.emplace_back() : *known;
        group.Key = key;
        group.Parents += group.Last != parent;
        group.Last = parent;
        group.List.Flat = true;
        group.List.Promise += list.Promise;
        group.List.Records.insert(group.List.Records.end(), list.Records.begin(), list.Records.end());
    }

    void Add(RecordList list) {
        if (list.Records.size() >= 2 && list.Promise > 0)
            found_.push_back(std::move(list));
    }

    // Lists of the same records, one within the other, count once: the outer one has all that the inner one has.
    std::vector<RecordList> Best(size_t most) {
        std::stable_sort(found_.begin(), found_.end(), [](const RecordList& one, const RecordList& other) {
            return one.Promise != other.Promise ? one.Promise > other.Promise
                                                : one.Records.front().Begin < other.Records.front().Begin;
        });
        std::vector<RecordList> best;
        for (RecordList& list : found_) {
            const bool known = std::any_of(best.begin(), best.end(), [&list](const RecordList& better) {
                const RecordRange& one = better.Records.front();
                const RecordRange& other = list.Records.front();
                return better.Records.size() == list.Records.size() && one.Begin <= other.Begin &&
                       other.End <= one.End && list.Promise > 0.7 * better.Promise;
            });
            if (!known) {
                Adopt(list);
                best.push_back(std::move(list));
            }
            if (best.size() == most)
                break;
        }
        return best;
    }

    // Entries of another look among those of the list: paid ones among free ones.
    void Adopt(RecordList& list) const {
        if (list.Flat)
            return;
        const PageTree& page = page_.Page;
        const QStringView name = page.Name(list.Records.front().Begin);
        double sum = 0;
        size_t headings = 0;
        std::vector<NodeIndex> parents;
        for (const RecordRange& record : list.Records) {
            const NodeFacts& facts = page_.FactsOf(record.Begin);
            const double worth = WorthOf(facts);
            sum += worth * worth;
            headings += facts.Headings > 0;
            if (const NodeIndex parent = page.Parent(record.Begin); parents.empty() || parents.back() != parent)
                parents.push_back(parent);
        }
        const double mean = sum / static_cast<double>(list.Records.size());
        std::vector<RecordRange> all;
        size_t next = 0;
        for (const NodeIndex parent : parents)
            for (NodeIndex child = page.FirstChild(parent); child != noNode; child = page.NextSibling(child)) {
                while (next < list.Records.size() && list.Records[next].Begin < child)
                    all.push_back(list.Records[next++]);
                if (next < list.Records.size() && list.Records[next].Begin == child)
                    continue;
                if (!page.IsElement(child) || page.Name(child) != name)
                    continue;
                const NodeFacts& facts = page_.FactsOf(child);
                const double worth = WorthOf(facts);
                const bool named = facts.Headings > 0 || headings * 2 < list.Records.size();
                const bool aside = (page_.HintsOf(child) & (Hint::Aside | Hint::Similar)) != 0;
                // As much as the others have, but not several of them at once.
                if (worth * worth >= 0.4 * mean && named && !aside && facts.Headings <= 3 && facts.Phones <= 6)
                    all.push_back({child, page.End(child)});
            }
        while (next < list.Records.size())
            all.push_back(list.Records[next++]);
        std::sort(all.begin(), all.end(),
                  [](const RecordRange& one, const RecordRange& other) { return one.Begin < other.Begin; });
        list.Records = std::move(all);
    }

    struct FlatGroup {
        quint64 Key = 0;
        NodeIndex Last = noNode;
        int Parents = 0;
        RecordList List;
    };
    std::vector<FlatGroup> flatGroups_;
    const PageAnnotations& page_;
    const Signatures& signatures_;
    std::vector<float> place_;
    Numbering numbers_; // of what one pass is about
    std::vector<RecordList> found_;
};

} // namespace

quint64 Mixed(quint64 one, quint64 other) {
    quint64 mixed = one * 0x9E3779B97F4A7C15ULL ^ (other + 0xD1B54A32D192ED03ULL);
    mixed ^= mixed >> 32;
    mixed *= 0xD6E8FEB86659FD93ULL;
    return mixed ^ (mixed >> 29);
}

namespace {

template <typename Use>
void ForEachToken(QStringView classes, const Use& use) {
    for (qsizetype at = 0; at < classes.size();) {
        while (at < classes.size() && classes[at].isSpace())
            ++at;
        qsizetype end = at;
        while (end < classes.size() && !classes[end].isSpace())
            ++end;
        if (end > at)
            use(classes.sliced(at, end - at));
        at = end;
    }
}

} // namespace

QStringList SturdyClasses(QStringView classes) {
    QStringList kept;
    ForEachToken(classes, [&kept](QStringView token) {
        if (kept.size() < 20 && !IsVolatile(token))
            kept << token.toString();
    });
    return kept;
}

Signatures::Signatures(const PageTree& page)
    : full_(static_cast<size_t>(page.Count()), 0), plain_(static_cast<size_t>(page.Count()), 0) {
    QHash<QStringView, quint64> known; // by what stands in the page
    // Page builders give each element a class of its own beside those that it shares: "column column-c41f0ab".
    QHash<QStringView, int> uses;
    for (NodeIndex node = 0; node < page.Count(); ++node)
        if (const QStringView classes = page.Attribute(node, u"class"); classes.size() <= 1000)
            ForEachToken(classes, [&uses](QStringView token) { ++uses[token]; });
    for (NodeIndex node = 0; node < page.Count(); ++node) {
        if (!page.IsElement(node))
            continue;
        quint64 plain = static_cast<quint64>(page.NameId(node)) + 2;
        if (page.Is(node, u"tr")) {
            // Rows that bear headings are no rows of records.
            int cells = 0;
            for (NodeIndex cell = page.FirstChild(node); cell != noNode; cell = page.NextSibling(cell))
                cells += page.Is(cell, u"td") ? 1 : page.Is(cell, u"th") ? 100 : 0;
            plain = Mixed(plain, static_cast<quint64>(cells));
        }
        plain_[static_cast<size_t>(node)] = plain;
        const QStringView classes = page.Attribute(node, u"class");
        quint64 own = 0;
        if (!classes.isEmpty() && classes.size() <= 1000) {
            auto found = known.constFind(classes);
            if (found == known.cend()) {
                const QStringList tokens = SturdyClasses(classes);
                const bool shares = std::any_of(tokens.begin(), tokens.end(),
                                                [&uses](const QString& token) { return uses.value(token) > 1; });
                quint64 hash = 7;
                for (const QString& token : tokens) {
                    if (shares && uses.value(token) == 1)
                        continue;
                    for (const QChar c : token)
                        if (!c.isDigit())
                            hash = Mixed(hash, c.unicode());
                    hash = Mixed(hash, u' ');
                }
                found = known.insert(classes, hash);
            }
            own = *found;
        }
        full_[static_cast<size_t>(node)] = Mixed(plain, own);
    }
}

double WorthOf(const NodeFacts& facts) {
    double worth = 0;
    if (facts.Phones > 0)
        worth += 3;
    if (facts.PostalCodes > 0 && facts.Streets > 0)
        worth += 3;
    else if (facts.PostalCodes > 0 || facts.Streets > 0)
        worth += 2;
    else if (facts.Addresses > 0)
        worth += 1;
    if (facts.Mails > 0)
        worth += 1.5;
    if (facts.Websites > 0)
        worth += 1;
    if (facts.Maps > 0)
        worth += 0.5;
    if (facts.Cities > 0)
        worth += 0.75;
    if (facts.Categories > 0)
        worth += 0.5;
    if (facts.Ratings > 0)
        worth += 0.25;
    if (facts.Names > 0)
        worth += 0.75;
    if (facts.Headings > 0)
        worth += 0.75;
    if (facts.OwnLinks > 0)
        worth += 0.5;
    const bool nameable = facts.Headings > 0 || facts.OwnLinks > 0 || facts.Names > 0 || facts.Strong > 0;
    if (!nameable)
        worth *= 0.6;
    if (facts.Characters < 3)
        return 0;
    if (facts.Characters > 6000)
        worth *= 0.5;
    return worth;
}

std::vector<RecordList> FindLists(const PageAnnotations& page, const Signatures& signatures, size_t most) {
    return ListFinder(page, signatures).Find(most);
}

} // namespace Brindle
