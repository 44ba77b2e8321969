#include "recipes/TeachSession.h"

#include "core/Errors.h"
#include "discovery/AnyPage.h"
#include "discovery/PostalAddress.h"
#include "discovery/SavedPage.h"
#include "page/Selector.h"
#include "recipes/RecipeValue.h"
#include "recipes/RecordSpans.h"
#include "recipes/SearchAddressOf.h"
#include "recipes/SturdySelectors.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Phone.h"

#include <QUrl>

#include <algorithm>
#include <numeric>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostExamined = 8; // businesses of which it chooses those to learn from
constexpr size_t mostTried = 3;
constexpr int mostBusinesses = 4; // of which examples are taken together

// In which order the program looks for the fields that it can learn from what it sees by itself.
constexpr Field ownFields[]{Field::BusinessName, Field::DetailsLink, Field::Phone, Field::FullAddress,
                            Field::Website,      Field::Email,       Field::Fax,   Field::Category};
// Where no element shows the whole address.
constexpr Field partFields[]{Field::Address, Field::City, Field::State, Field::PostalCode, Field::Country};

} // namespace

TeachSession::TeachSession(std::shared_ptr<const PageTree> page, const QString& url, const std::optional<Recipe>& mend)
    : page_(std::move(page)), url_(WebAddressOfPage(*page_, url)) {
    const QString language = page_->Root() == noNode ? QString() : page_->Attribute(page_->Root(), u"lang").toString();
    AddressHints hints;
    hints.Language = language;
    hints.Host = QUrl(url_).host();
    region_ = GuessCountry(hints).Region;
    seen_ = ReadAnyPage(*page_, url_, Selectors::Made);
    if (!mend || !BeginMending(*mend))
        BeginByItself();
    if (mend)
        KeepBeside(*mend);
    if (recipe_.Search.isEmpty() && url_ != UnknownWebsite)
        recipe_.Search = SearchAddressOf(*page_, url_);
}

// What a recipe says beside its list holds where the list is another one.
void TeachSession::KeepBeside(const Recipe& recipe) {
    recipe_.Country = recipe.Country;
    recipe_.Search = recipe.Search;
    if (RowOf(Field::DetailsLink)) {
        recipe_.Details = recipe.Details;
        recipe_.DetailsFields = recipe.DetailsFields;
    }
    Read();
}

void TeachSession::SetPage(std::shared_ptr<const PageTree> page) {
    if (own_) {
        own_->Page = std::move(page);
        return;
    }
    page_ = std::move(page);
    saidOf_.clear();
    seen_ = ReadAnyPage(*page_, url_, Selectors::Made);
    Read();
}

bool TeachSession::BeginMending(const Recipe& recipe) {
    recipe_ = recipe;
    Read();
    if (reading_.Records.empty())
        return false;
    // A row that reads nothing any more is what is to be said anew, or is seen by the program itself.
    const auto isLost = [this](const RecipeField& row) {
        return reading_.Counts.Filled.at(static_cast<size_t>(row.Column)) == 0;
    };
    if (std::erase_if(recipe_.Fields, isLost) == 0)
        return true;
    const TeachSession seen(page_, url_);
    const auto isSame = [](const PageRecord& one, const PageRecord& other) {
        return one.Begin == other.Begin && one.End == other.End;
    };
    if (std::equal(reading_.Records.begin(), reading_.Records.end(), seen.reading_.Records.begin(),
                   seen.reading_.Records.end(), isSame))
        for (const RecipeField& row : seen.recipe_.Fields)
            if (!RowOf(row.Column))
                PutRow(row);
    Read();
    return true;
}

void TeachSession::BeginByItself() {
    const QString name = recipe_.Name;
    recipe_ = {};
    recipe_.Name = name;
    if (!seen_.Next.Address.isEmpty())
        recipe_.Next = automaticNextPage.toString();
    if (!seen_.Records.empty() && !LearnFromOneOf(seen_.Records))
        recipe_.Records = structuredRecords.toString(); // what no element shows
    Read();
}

// Those of which most is known come first; what holds for one of them holds for most.
bool TeachSession::LearnFromOneOf(const std::vector<PageRecord>& records) {
    std::vector<const Lead*> leads;
    for (size_t i = 0; i < std::min(records.size(), mostExamined); ++i)
        leads.push_back(&records[i].Fields);
    const auto known = [](const Lead* lead) {
        int fields = 0;
        for (int column = 0; column < FieldCount; ++column)
            fields += lead->At(column).isEmpty() ? 0 : 1;
        return fields;
    };
    std::stable_sort(leads.begin(), leads.end(),
                     [&](const Lead* one, const Lead* other) { return known(one) > known(other); });
    leads.resize(std::min(leads.size(), mostTried));
    const Recipe before = recipe_;
    for (const Lead* const lead : leads) {
        recipe_ = before;
        if (!LearnFrom(*lead))
            continue;
        Read();
        if (reading_.Records.size() * 2 > records.size())
            return true;
    }
    recipe_ = before;
    return false;
}

// A business's own texts are the examples; one that cannot be generalised is left out.
bool TeachSession::LearnFrom(const Lead& first) {
    std::vector<RecipeExample> examples;
    const auto learn = [&](Field column) {
        const QString& text = first.At(static_cast<int>(column));
        if (text.isEmpty())
            return;
        examples.push_back({.Column = column, .Text = text});
        try {
            LearnedRecipe learned = LearnRecipe(*page_, url_, examples, seen_);
            if (learned.What.Records == structuredRecords)
                examples.pop_back(); // no element shows this one
            else
                Take(std::move(learned), {column});
        } catch (const Failure&) {
            examples.pop_back();
        }
    };
    for (const Field column : ownFields)
        learn(column);
    if (!examples.empty() && !RowOf(Field::FullAddress))
        for (const Field column : partFields)
            learn(column);
    return !examples.empty();
}

bool TeachSession::TakeList(const QString& recordSelector) {
    const Recipe before = recipe_;
    for (const NodeIndex record : Selected(*page_, recordSelector)) {
        // Its first link or heading is taken for the name; a person says what is not so.
        for (NodeIndex node = record; node < page_->End(record); ++node) {
            if (!page_->IsElement(node) || ShownText(*page_, node).isEmpty() ||
                !(IsLink(*page_, node) || IsInHeading(*page_, node)))
                continue;
            if (Say(Field::BusinessName, node)) {
                said_.erase(Field::BusinessName);
                return true;
            }
            break;
        }
        break;
    }
    recipe_ = before;
    Read();
    return false;
}

void TeachSession::Take(LearnedRecipe learned, const std::set<Field>& said) {
    Recipe made = std::move(learned.What);
    if (!recipe_.Name.isEmpty())
        made.Name = recipe_.Name;
    made.Country = made.Country.isEmpty() ? recipe_.Country : made.Country;
    made.Search = recipe_.Search;
    made.Details = recipe_.Details;
    made.DetailsFields = recipe_.DetailsFields;
    if (!recipe_.Next.isEmpty()) {
        made.Next = recipe_.Next;
        made.NextAttribute = recipe_.NextAttribute;
    }
    // In the same records, what is known of the other columns holds.
    std::vector<RecipeField> before;
    if (made.Records == recipe_.Records && made.Flat == recipe_.Flat)
        before = std::move(recipe_.Fields);
    recipe_ = std::move(made);
    for (const RecipeField& row : before) {
        if (!said.contains(row.Column))
            Drop(row.Column);
        if (!RowOf(row.Column))
            PutRow(row);
    }
    for (const RecipeProposal& proposal : learned.Proposals)
        if (!RowOf(proposal.Row.Column) && !forgotten_.contains(proposal.Row.Column))
            PutRow(proposal.Row);
}

// The element with what was said of its business before, and with its name.
std::vector<RecipeExample> TeachSession::ExamplesOfBusiness(const Said& now) const {
    std::vector<RecipeExample> examples{{.Column = now.Column, .Node = now.Node}};
    const int record = RecordNear(now.Node);
    if (record < 0)
        return examples;
    for (const RecipeField& row : recipe_.Fields) {
        if (row.Column == now.Column || !(said_.contains(row.Column) || row.Column == Field::BusinessName))
            continue;
        const auto said = std::find_if(saidOf_.begin(), saidOf_.end(), [&](const Said& each) {
            return each.Column == row.Column && RecordNear(each.Node) == record;
        });
        const NodeIndex node =
            said != saidOf_.end() ? said->Node : FirstOf(row.Selector, reading_.Records[static_cast<size_t>(record)]);
        if (node != noNode)
            examples.push_back({.Column = row.Column, .Node = node});
    }
    return examples;
}

// The same with what was said of other businesses.
std::vector<RecipeExample> TeachSession::AllExamples(const Said& now) const {
    std::vector<RecipeExample> examples = ExamplesOfBusiness(now);
    std::vector<int> businesses{RecordNear(now.Node)};
    for (const Said& each : saidOf_) {
        const int record = RecordNear(each.Node);
        if (record < 0 || record == businesses.front())
            continue;
        auto at = std::find(businesses.begin(), businesses.end(), record);
        if (at == businesses.end() && businesses.size() < mostBusinesses)
            at = businesses.insert(at, record);
        if (at != businesses.end())
            examples.push_back(
                {.Column = each.Column, .Node = each.Node, .Business = static_cast<int>(at - businesses.begin())});
    }
    return examples;
}

bool TeachSession::TakeExamples(Field column, const std::vector<RecipeExample>& examples) {
    const Recipe before = recipe_;
    const std::set<Field> forgotten = forgotten_;
    try {
        LearnedRecipe learned = LearnRecipe(*page_, url_, examples, seen_);
        if (learned.What.Records == structuredRecords)
            return false; // pointing is at elements
        Drop(column);
        forgotten_.erase(column);
        std::set<Field> said = said_;
        said.insert(column);
        Take(std::move(learned), said);
        Read();
        if (!reading_.Records.empty())
            return true;
    } catch (const Failure&) {
        // nothing holds for them
    }
    recipe_ = before;
    forgotten_ = forgotten;
    Read();
    return false;
}

bool TeachSession::Say(Field column, NodeIndex element) {
    problem_ = TeachProblem::None;
    if (own_)
        return SayOfOwnPage(column, element);
    // A part of an address that is read as a whole says that this is the address.
    if (column == Field::FullAddress)
        if (const NodeIndex whole = ReadAround(column, element); whole != noNode)
            element = whole;
    const Said now{column, element};
    const int record = RecordNear(element);
    const auto isOfThis = [&](const Said& said) { return said.Column == column && RecordNear(said.Node) == record; };
    std::erase_if(saidOf_, isOfThis); // the later word holds
    const std::vector<RecipeExample> own = ExamplesOfBusiness(now);
    const std::vector<RecipeExample> all = AllExamples(now);
    const bool agrees = IsReadAs(column, element);
    const Recipe before = recipe_;
    const auto known = [this] {
        return std::accumulate(reading_.Counts.Filled.begin(), reading_.Counts.Filled.end(), 0);
    };
    const int knownBefore = known();
    // The rest of the business, as it is read now, tells which records are meant.
    std::vector<RecipeExample> whole = all;
    if (const int within = RecordOf(element); within >= 0)
        for (const RecipeField& row : recipe_.Fields) {
            const bool given = std::any_of(
                own.begin(), own.end(), [&row](const RecipeExample& example) { return example.Column == row.Column; });
            const NodeIndex node = FirstOf(row.Selector, reading_.Records[static_cast<size_t>(within)]);
            if (!given && node != noNode)
                whole.push_back({.Column = row.Column, .Node = node});
        }
    bool taken = (whole.size() > all.size() && TakeExamples(column, whole)) || TakeExamples(column, all);
    if (!taken && all.size() > own.size()) {
        taken = TakeExamples(column, own);
        // What does not go together with it was wrong.
        if (taken)
            std::erase_if(saidOf_, [column](const Said& said) { return said.Column == column; });
    }
    if (!taken && own.size() > 1 && column == Field::BusinessName)
        taken = TakeExamples(column, {own.front()});
    // What was read here already was right where more is known by it.
    if (agrees && (!taken || known() < knownBefore)) {
        recipe_ = before;
        Read();
        taken = true;
    }
    if (taken) {
        said_.insert(column);
        saidOf_.push_back(now);
        return true;
    }
    const bool hasName = std::any_of(
        own.begin(), own.end(), [](const RecipeExample& example) { return example.Column == Field::BusinessName; });
    problem_ = hasName ? TeachProblem::NothingLike : TeachProblem::NameFirst;
    return false;
}

// The element that the recipe reads for this field, where it is this one or around it; `noNode` where it is not.
NodeIndex TeachSession::ReadAround(Field column, NodeIndex element) const {
    const RecipeField* const row = RowOf(column);
    const int record = RecordOf(element);
    const NodeIndex read =
        row && record >= 0 ? FirstOf(row->Selector, reading_.Records[static_cast<size_t>(record)]) : noNode;
    return read != noNode && page_->Contains(read, element) ? read : noNode;
}

// Whether the recipe takes the text that an element shows for this field of its business; where the element is in no
// business, as a heading above it or a repeat of it on a map, for this field of any.
bool TeachSession::IsReadAs(Field column, NodeIndex element) const {
    const RecipeField* const row = RowOf(column);
    const int record = RecordOf(element);
    const QString text = ShownText(*page_, element);
    const std::vector<NodeIndex> firsts = FirstsOf(row ? row->Selector : QString());
    for (size_t i = 0; i < firsts.size(); ++i) {
        const NodeIndex read = firsts[i];
        if (read == noNode)
            continue;
        const bool isMeant = record < 0 || (static_cast<size_t>(record) == i &&
                                            (page_->Contains(read, element) || page_->Contains(element, read)));
        if (isMeant && ShownText(*page_, read) == text)
            return true;
    }
    return false;
}

void TeachSession::Drop(Field column) {
    std::erase_if(recipe_.Fields, [column](const RecipeField& row) { return row.Column == column; });
}

void TeachSession::Forget(Field column) {
    problem_ = TeachProblem::None;
    std::erase_if(recipe_.DetailsFields, [column](const RecipeField& row) { return row.Column == column; });
    saidOfOwn_.erase(column);
    if (own_)
        return;
    Drop(column);
    said_.erase(column);
    std::erase_if(saidOf_, [column](const Said& said) { return said.Column == column; });
    forgotten_.insert(column);
    Read();
}

bool TeachSession::SayNext(NodeIndex element) {
    problem_ = TeachProblem::None;
    if (own_) {
        problem_ = TeachProblem::NoLink;
        return false;
    }
    const Recipe before = recipe_;
    NodeIndex link = LinkOf(*page_, element);
    for (NodeIndex node = element; link == noNode && node != noNode; node = page_->Parent(node))
        if (IsPageButton(*page_, node))
            link = node;
    if (link != noNode) {
        std::vector<CandidateSelector> candidates = OwnSelectors(*page_, link);
        const std::vector<CandidateSelector> byPlace = FieldSelectors(*page_, page_->Body(), link);
        candidates.insert(candidates.end(), byPlace.begin(), byPlace.end());
        for (const CandidateSelector& candidate : candidates) {
            const std::vector<NodeIndex> found = Selected(*page_, candidate.Text);
            if (found.size() != 1 || found.front() != link)
                continue;
            recipe_.Next = candidate.Text;
            recipe_.NextAttribute.clear();
            Read();
            if (!reading_.Next.isEmpty() || !reading_.LoadMore.isEmpty())
                return true;
        }
    }
    recipe_ = before;
    Read();
    problem_ = TeachProblem::NoLink;
    return false;
}

void TeachSession::ForgetNext() {
    recipe_.Next.clear();
    recipe_.NextAttribute.clear();
    Read();
}

bool TeachSession::SayDetails(NodeIndex element) {
    const NodeIndex link = own_ ? noNode : LinkOf(*page_, element);
    if (link == noNode) {
        problem_ = TeachProblem::NoLink;
        return false;
    }
    if (!Say(Field::DetailsLink, link))
        return false;
    recipe_.Details = true;
    return true;
}

void TeachSession::ReadDetails(bool read) {
    recipe_.Details = read;
}

const RecipeField* TeachSession::RowOf(Field column) const {
    const auto row = std::find_if(recipe_.Fields.begin(), recipe_.Fields.end(),
                                  [column](const RecipeField& each) { return each.Column == column; });
    return row == recipe_.Fields.end() ? nullptr : &*row;
}

void TeachSession::PutRow(const RecipeField& row) {
    const auto place = std::find_if(recipe_.Fields.begin(), recipe_.Fields.end(),
                                    [&](const RecipeField& each) { return each.Column > row.Column; });
    recipe_.Fields.insert(place, row);
}

void TeachSession::Read() {
    reading_ = {};
    if (recipe_.Records.isEmpty())
        return;
    try {
        reading_ = RecipeReader(recipe_).Read(*page_, url_);
    } catch (const Failure&) {
        reading_ = {}; // selectors of another program's making
    }
    recipe_.Taught = reading_.Counts;
}

int TeachSession::RecordOf(NodeIndex element) const {
    for (size_t i = 0; i < reading_.Records.size(); ++i)
        if (element >= reading_.Records[i].Begin && element < reading_.Records[i].End)
            return static_cast<int>(i);
    return -1;
}

// The business that an element belongs to: the one that it stands in, or else the one that it follows.
int TeachSession::RecordNear(NodeIndex element) const {
    int before = -1;
    for (size_t i = 0; i < reading_.Records.size(); ++i)
        if (reading_.Records[i].Begin != noNode && reading_.Records[i].Begin <= element)
            before = static_cast<int>(i);
    return before;
}

// The first element of a selector in each record; `noNode` where there is none.
std::vector<NodeIndex> TeachSession::FirstsOf(const QString& selector) const {
    std::vector<NodeIndex> firsts(reading_.Records.size(), noNode);
    if (selector.isEmpty())
        return firsts;
    try {
        const SelectorQuery query(*page_, Selector::Parse(selector));
        for (size_t i = 0; i < firsts.size(); ++i) {
            const PageRecord& record = reading_.Records[i];
            if (record.Begin == noNode)
                continue;
            const std::vector<NodeIndex> found = SelectedIn(query, {record.Begin, record.End, recipe_.Flat});
            firsts[i] = found.empty() ? noNode : found.front();
        }
    } catch (const Failure&) {
        firsts.assign(firsts.size(), noNode);
    }
    return firsts;
}

NodeIndex TeachSession::FirstOf(const QString& selector, const PageRecord& record) const {
    const std::vector<NodeIndex> firsts = FirstsOf(selector);
    return firsts[static_cast<size_t>(&record - reading_.Records.data())];
}

std::vector<NodeIndex> TeachSession::ElementsOf(Field column) const {
    if (own_) {
        for (const RecipeField& row : recipe_.DetailsFields)
            if (row.Column == column)
                if (std::vector<NodeIndex> found = Selected(*own_->Page, row.Selector); !found.empty())
                    return {found.front()};
        return {};
    }
    const RecipeField* const row = RowOf(column);
    std::vector<NodeIndex> elements = FirstsOf(row ? row->Selector : QString());
    std::erase(elements, noNode);
    return elements;
}

std::vector<NodeIndex> TeachSession::LikesOf(NodeIndex element) const {
    if (own_)
        return {element};
    const int record = RecordOf(element);
    if (record < 0) {
        for (const CandidateSelector& candidate : RecordSelectors(*page_, element))
            if (std::vector<NodeIndex> found = Selected(*page_, candidate.Text); found.size() > 1)
                return found;
        return {element};
    }
    // In a list without an element around each business, selectors look down from what holds all of it.
    const NodeIndex begin = reading_.Records[static_cast<size_t>(record)].Begin;
    for (const CandidateSelector& candidate :
         FieldSelectors(*page_, recipe_.Flat ? page_->Parent(begin) : begin, element)) {
        if (recipe_.Flat && candidate.Text.contains(u":scope"))
            continue;
        std::vector<NodeIndex> likes = FirstsOf(candidate.Text);
        if (likes[static_cast<size_t>(record)] != element)
            continue;
        std::erase(likes, noNode);
        return likes;
    }
    return {element};
}

std::vector<Field> TeachSession::LikelyFields(NodeIndex element) const {
    FieldHints hints{.Url = own_ ? own_->Url : url_, .Region = region_, .Taken = {}, .Filled = {}};
    const QString text = ShownText(Page(), element);
    const auto takeIf = [&](const RecipeField& row, NodeIndex read) {
        const bool related = read != noNode && (Page().Contains(read, element) || Page().Contains(element, read));
        if (related && ShownText(Page(), read) == text)
            hints.Taken.push_back(row.Column);
    };
    for (const RecipeField& row : recipe_.Fields)
        hints.Filled.push_back(row.Column);
    if (own_) {
        for (const RecipeField& row : recipe_.DetailsFields) {
            const std::vector<NodeIndex> found = ElementsOf(row.Column);
            takeIf(row, found.empty() ? noNode : found.front());
            hints.Filled.push_back(row.Column);
        }
        return LikelyFieldsOf(*own_->Page, element, hints);
    }
    // What it is taken for already comes first; a name is more than the link that it often is as well.
    if (const int record = RecordOf(element); record >= 0)
        for (const bool links : {false, true})
            for (const RecipeField& row : recipe_.Fields)
                if (IsLinkColumn(row.Column) == links)
                    takeIf(row, FirstOf(row.Selector, reading_.Records[static_cast<size_t>(record)]));
    return LikelyFieldsOf(*page_, element, hints);
}

std::vector<ChoosableText> TeachSession::Texts() const {
    NodeIndex begin = Page().Body();
    NodeIndex end = begin == noNode ? noNode : Page().End(begin);
    if (!own_ && !reading_.Records.empty() && reading_.Records.front().Begin != noNode) {
        begin = reading_.Records.front().Begin;
        end = reading_.Records.front().End;
    }
    return TextsWithin(Page(), begin, end);
}

std::vector<ChoosableText> TeachSession::Links() const {
    std::vector<ChoosableText> links;
    if (own_)
        return links;
    constexpr size_t mostLinks = 400;
    const NodeIndex body = page_->Body();
    for (NodeIndex node = body; node != noNode && node < page_->End(body) && links.size() < mostLinks; ++node) {
        if (!IsLink(*page_, node) && !IsPageButton(*page_, node))
            continue;
        if (RecordOf(node) >= 0)
            continue;
        QString text = ShownText(*page_, node);
        for (const char16_t* const name : {u"aria-label", u"title", u"value"})
            if (text.isEmpty())
                text = page_->Attribute(node, name).toString().simplified();
        links.push_back({node, text.isEmpty() ? page_->Attribute(node, u"href").toString() : text});
    }
    // The one to the next page stands behind the list, mostly last of all.
    std::reverse(links.begin(), links.end());
    return links;
}

} // namespace Brindle
