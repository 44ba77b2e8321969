#include "discovery/AnyPage.h"

#include "discovery/RecordsAddress.h"
#include "discovery/RecordsMerge.h"
#include "discovery/SavedPage.h"

#include <QSet>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostLists = 6;   // that are read in full
constexpr double partsFrom = 0.5; // share of a sure list’s promise
constexpr double lateFrom = 0.25;
constexpr double wellWitnessed = 0.6; // share of a list's records that structured data names

void Take(AnyPageReading& reading, RecordsReading& list) {
    reading.Records = std::move(list.Records);
    reading.Fields = std::move(list.Fields);
    reading.RecordSelector = list.Selector;
}

double QualityOf(const RecordsReading& list) {
    return list.Score / static_cast<double>(std::max<size_t>(list.Records.size(), 1));
}

// Whether nearly all of the inner records lie within outer ones.
template <typename Inner, typename Outer>
bool LiesWithin(const Inner& inner, const Outer& outer) {
    size_t at = 0;
    size_t within = 0;
    for (const auto& record : inner.Records) {
        while (at + 1 < outer.Records.size() && outer.Records[at].End <= record.Begin)
            ++at;
        within += outer.Records[at].Begin <= record.Begin && record.End <= outer.Records[at].End;
    }
    return within * 10 >= inner.Records.size() * 9;
}

// Whether most of the outer records hold inner ones: a page's columns hold no records as records hold their parts.
bool IsSpreadOver(const RecordsReading& inner, const RecordsReading& outer) {
    const auto held = std::count_if(outer.Records.begin(), outer.Records.end(), [&inner](const PageRecord& record) {
        const auto found = std::lower_bound(inner.Records.begin(), inner.Records.end(), record.Begin,
                                            [](const PageRecord& one, NodeIndex node) { return one.Begin < node; });
        return found != inner.Records.end() && found->Begin < record.End;
    });
    return held * 10 >= static_cast<std::ptrdiff_t>(outer.Records.size()) * 7;
}

// Whether the outer records are rows of cards: most hold several inner ones that can be reached, each with a name that
// no other has, and have no name but the first one's. The branches of a business stand below its name.
bool AreRowsOf(const RecordsReading& inner, const RecordsReading& outer) {
    QSet<QString> names;
    for (const PageRecord& record : inner.Records)
        names.insert(record.Fields.Name);
    if (names.size() * 10 < std::ssize(inner.Records) * 9)
        return false;
    std::ptrdiff_t rows = 0;
    auto at = inner.Records.begin();
    for (const PageRecord& record : outer.Records) {
        int cards = 0;
        bool named = false;
        for (; at != inner.Records.end() && at->Begin < record.End; ++at) {
            named = named || at->Fields.Name == record.Fields.Name;
            const Lead& lead = at->Fields;
            cards += at->Begin >= record.Begin && !(lead.Phone.isEmpty() && lead.FullAddress.isEmpty() &&
                                                    lead.Email.isEmpty() && lead.Website.isEmpty());
        }
        rows += cards >= 2 && named;
    }
    return rows * 2 >= std::ssize(outer.Records);
}

// Parts of records can be many and look like records of their own: whole ones that say more go before them.
void PreferWhole(std::vector<RecordsReading>& lists) {
    for (size_t i = 1; i < lists.size() && lists[i].Sure && !lists[i].Late; ++i)
        if (QualityOf(lists[i]) > 1.25 * QualityOf(lists.front()) && LiesWithin(lists.front(), lists[i]) &&
            IsSpreadOver(lists.front(), lists[i]) && !AreRowsOf(lists.front(), lists[i]))
            std::rotate(lists.begin(), lists.begin() + static_cast<std::ptrdiff_t>(i),
                        lists.begin() + static_cast<std::ptrdiff_t>(i) + 1);
}

int FilledIn(const std::vector<PageRecord>& records, Field field) {
    return static_cast<int>(std::count_if(records.begin(), records.end(), [field](const PageRecord& record) {
        return !record.Fields.At(static_cast<int>(field)).isEmpty();
    }));
}

void CountFields(AnyPageReading& reading, const QString& why) {
    for (int column = 0; column < FieldCount; ++column) {
        const auto field = static_cast<Field>(column);
        const auto filled = FilledIn(reading.Records, field);
        const auto known = std::find_if(reading.Fields.begin(), reading.Fields.end(),
                                        [&](const FieldReading& one) { return one.Column == field; });
        if (known != reading.Fields.end()) {
            if (!why.isEmpty() && known->Filled != filled)
                known->Why += u"; also in "_s + why;
            known->Filled = filled;
        } else if (filled > 0) {
            reading.Fields.push_back({field, {}, filled, u"in "_s + why});
        }
    }
}

// Entries of another make between those of the list or above them: paid ones. Each has a phone and an address, as few
// other things in the same place have.
void AddPaidEntries(const PageAnnotations& page, const Signatures& signatures, const PageSubject& subject,
                    RecordsReading& best) {
    const PageTree& tree = page.Page;
    const NodeIndex parent = tree.Parent(best.Records.front().Begin);
    quint64 characters = 0;
    for (const PageRecord& record : best.Records) {
        if (tree.Parent(record.Begin) != parent || tree.End(record.Begin) != record.End)
            return;
        characters += page.FactsOf(record.Begin).Characters;
    }
    constexpr HintSet others = Hint::Aside | Hint::Similar | Hint::Review | Hint::Article | Hint::Event;
    constexpr int mostPhones = 4;
    const quint64 longest = 5 * characters / best.Records.size() + 200;
    std::vector<std::pair<quint64, RecordList>> kinds;
    auto own = best.Records.begin();
    for (NodeIndex child = tree.FirstChild(parent); child != noNode; child = tree.NextSibling(child)) {
        while (own != best.Records.end() && own->Begin < child)
            ++own;
        const NodeFacts& facts = page.FactsOf(child);
        if ((own != best.Records.end() && own->Begin == child) || !tree.IsElement(child) || facts.Phones == 0 ||
            facts.Phones > mostPhones || facts.PostalCodes + facts.Streets == 0 || facts.Characters > longest ||
            (page.HintsOf(child) & others) != 0 || tree.Is(child, u"footer") || tree.Is(child, u"header"))
            continue;
        const quint64 look = signatures.Of(child);
        const auto known =
            std::find_if(kinds.begin(), kinds.end(), [look](const auto& kind) { return kind.first == look; });
        RecordList& list = (known == kinds.end() ? kinds.emplace_back(look, RecordList{}) : *known).second;
        list.Records.push_back({child, tree.End(child)});
    }
    size_t added = 0;
    for (const auto& [look, list] : kinds)
        for (PageRecord& record : ReadRecords(page, signatures, list, subject, Selectors::Left).Records)
            if (!record.Fields.Phone.isEmpty() && !record.Fields.FullAddress.isEmpty() &&
                added < best.Records.size() * 4) {
                best.Records.push_back(std::move(record));
                ++added;
            }
    if (added == 0)
        return;
    std::stable_sort(best.Records.begin(), best.Records.end(),
                     [](const PageRecord& one, const PageRecord& other) { return one.Begin < other.Begin; });
    best.Verdict += u"; with %1 of another make between them"_s.arg(added);
    for (FieldReading& field : best.Fields)
        field.Filled = FilledIn(best.Records, field.Column);
}

// What an element and those around it are called, as far as it is the same on all pages of a list.
QString LookOf(const PageTree& page, NodeIndex node) {
    QString look;
    for (int level = 0; level < 4 && node != noNode; ++level, node = page.Parent(node))
        look += page.Name(node) + u'.' + SturdyClasses(page.Attribute(node, u"class")).join(u'.') + u'<';
    return look;
}

QStringList LooksOf(const PageTree& page, const std::vector<PageRecord>& records) {
    QStringList looks;
    NodeIndex before = noNode; // the last record whose look was made
    const auto isAlike = [&page](NodeIndex one, NodeIndex other) {
        return other != noNode && page.Parent(one) == page.Parent(other) && page.NameId(one) == page.NameId(other) &&
               page.Attribute(one, u"class") == page.Attribute(other, u"class");
    };
    for (const PageRecord& record : records) {
        if (looks.size() == 4)
            break;
        if (record.Begin == noNode || record.End != page.End(record.Begin) || isAlike(record.Begin, before))
            continue;
        before = record.Begin;
        if (const QString look = LookOf(page, before); !looks.contains(look))
            looks.push_back(look);
    }
    return looks;
}

// The last page of a list has one or two records, which prove nothing by themselves.
void GoOn(const PageAnnotations& page, const Signatures& signatures, const PageSubject& subject,
          const RecordsMerge& merge, const QStringList& before, AnyPageReading& reading) {
    if (before.isEmpty())
        return;
    const PageTree& tree = page.Page;
    RecordList list;
    for (NodeIndex node = tree.Body(); node != noNode && node < tree.End(tree.Body()); ++node) {
        const bool named = tree.IsElement(node) && std::any_of(before.begin(), before.end(), [&](const QString& look) {
                               return look.startsWith(tree.Name(node)) && look == LookOf(tree, node);
                           });
        if (named && page.FactsOf(node).Characters > 0 && (list.Records.empty() || node >= list.Records.back().End))
            list.Records.push_back({node, tree.End(node)});
    }
    if (list.Records.empty())
        return;
    RecordsReading records = ReadRecords(page, signatures, list, subject, Selectors::Left);
    if (!records.Records.empty() && merge.WitnessFor(records) > 0)
        merge.AddTo(records);
    std::erase_if(records.Records, [](const PageRecord& record) {
        return record.Fields.Phone.isEmpty() && record.Fields.FullAddress.isEmpty() &&
               record.Fields.DetailsLink.isEmpty();
    });
    if (records.Records.empty())
        return;
    reading.Looks = before;
    reading.Source = u"shape"_s;
    records.Verdict = u"taken: it goes on with the list of the page before"_s;
    reading.Candidates.insert(reading.Candidates.begin(), {records.Selector, static_cast<int>(records.Records.size()),
                                                           records.Score, records.Verdict});
    Take(reading, records);
    CountFields(reading, {});
}

AnyPageReading ReadPageAt(const PageTree& page, const QString& url, Selectors selectors, const QStringList& before) {
    AnyPageReading reading;
    const PageLines lines(page);
    reading.Next = FindNextPage(page, lines, url);
    std::vector<StructuredRecord> structured = StructuredRecords(page, url);
    const AddressHints hints = AddressHintsOf(page, lines, url, structured);
    SplitWholeAddresses(structured, hints);
    const PageAnnotations annotations(page, lines, url, hints);
    const Signatures signatures(page);
    const PageSubject subject = SubjectOf(annotations);
    const RecordsMerge merge(page, std::move(structured));
    std::vector<RecordsReading> lists;
    std::vector<ListCandidate> parts;
    double promise = 0; // of the best list that is sure
    size_t sure = 0;    // its number
    for (const RecordList& list : FindLists(annotations, signatures, mostLists)) {
        if (promise > 0 && list.Promise < partsFrom * promise && LiesWithin(list, lists[sure])) {
            parts.push_back({{}, static_cast<int>(list.Records.size()), 0, u"parts of the records of a better list"_s});
            continue;
        }
        // A list that promises much less than a sure one never is the better one: it is read to be explained alone.
        const bool late = promise > 0 && list.Promise < lateFrom * promise;
        if (late && selectors == Selectors::Left)
            continue;
        lists.push_back(ReadRecords(annotations, signatures, list, subject, selectors));
        lists.back().Late = late;
        if (lists.back().Sure && promise == 0) {
            promise = list.Promise;
            sure = lists.size() - 1;
        }
    }
    for (RecordsReading& list : lists) {
        // Structured data that names a list's records stands in for what its look does not say.
        const double witness = merge.WitnessFor(list);
        if (witness >= wellWitnessed) {
            list.Score *= 1 + witness;
            list.Verdict += list.Sure ? u"; "_s + merge.Source() + u" names them"_s : QString();
        }
        list.Witness = witness;
    }
    std::stable_sort(lists.begin(), lists.end(), [](const RecordsReading& one, const RecordsReading& other) {
        return one.Late != other.Late ? other.Late : one.Sure != other.Sure ? one.Sure : one.Score > other.Score;
    });
    PreferWhole(lists);
    if (!lists.empty() && lists.front().Sure)
        AddPaidEntries(annotations, signatures, subject, lists.front());
    for (const RecordsReading& list : lists)
        reading.Candidates.push_back({list.Selector, static_cast<int>(list.Records.size()), list.Score, list.Verdict});
    reading.Candidates.insert(reading.Candidates.end(), parts.begin(), parts.end());
    if (!lists.empty() && lists.front().Sure) {
        reading.Candidates.front().Verdict = u"taken: "_s + lists.front().Verdict;
        RecordsReading& best = lists.front();
        const bool witnessed = best.Witness >= wellWitnessed;
        if (best.Witness > 0)
            merge.AddTo(best);
        reading.Looks = LooksOf(page, best.Records);
        Take(reading, best);
        reading.Source = witnessed ? merge.Source() : u"shape"_s;
        CountFields(reading, merge.Source());
        return reading;
    }
    std::vector<PageRecord> alone = merge.Alone();
    if (alone.empty()) {
        GoOn(annotations, signatures, subject, merge, before, reading);
        return reading;
    }
    reading.Source = merge.Source();
    // A list that is not sure by its look alone still adds to what is said of its records.
    const auto witnessed = std::find_if(lists.begin(), lists.end(),
                                        [](const RecordsReading& list) { return list.Witness >= wellWitnessed; });
    if (witnessed != lists.end()) {
        merge.AddTo(*witnessed);
        reading.Candidates[static_cast<size_t>(witnessed - lists.begin())].Verdict =
            u"taken: "_s + reading.Source + u" names its records"_s;
        reading.Looks = LooksOf(page, witnessed->Records);
        Take(reading, *witnessed);
    } else {
        reading.Records = std::move(alone);
    }
    CountFields(reading, reading.Source);
    return reading;
}

} // namespace

AnyPageReading ReadAnyPage(const PageTree& page, const QString& url, Selectors selectors, const QStringList& before) {
    const QString address = WebAddressOfPage(page, url);
    AnyPageReading reading = ReadPageAt(page, address, selectors, before);
    if (address != UnknownWebsite)
        return reading;
    for (PageRecord& record : reading.Records)
        DropUnknownLinks(record.Fields);
    CountFields(reading, {});
    std::erase_if(reading.Fields, [](const FieldReading& field) { return field.Filled == 0; });
    return reading;
}

} // namespace Brindle
