#include "recipes/TeachSession.h"

#include "core/Errors.h"
#include "discovery/AnyPage.h"
#include "discovery/PostalAddress.h"
#include "page/Selector.h"
#include "recipes/RecipeValue.h"
#include "recipes/SturdySelectors.h"
#include "toolkit/PageAddress.h"
#include "toolkit/Phone.h"

#include <QUrl>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestText = 200;
constexpr size_t mostTexts = 400;

// In which order the program looks for the fields that it can learn from what it sees by itself.
constexpr Field ownFields[]{Field::BusinessName, Field::DetailsLink, Field::Phone, Field::FullAddress,
                            Field::Website,      Field::Email,       Field::Fax,   Field::Category};

QString TextOf(const PageTree& page, NodeIndex element) {
    QString text;
    for (NodeIndex node = element; node < page.End(element) && text.size() < longestText; ++node)
        if (page.IsText(node))
            text += page.Text(node) + u' ';
    return text.simplified().left(longestText);
}

bool ShowsNothing(const PageTree& page, NodeIndex node) {
    for (const char16_t* const name : {u"script", u"style", u"template", u"noscript", u"head", u"option"})
        if (page.Is(node, name))
            return true;
    return false;
}

bool IsLink(const PageTree& page, NodeIndex node) {
    return page.Is(node, u"a") && page.HasAttribute(node, u"href");
}

// The link that an element lies in, or else the first one in it.
NodeIndex LinkOf(const PageTree& page, NodeIndex element) {
    for (NodeIndex node = element; node != noNode; node = page.Parent(node))
        if (IsLink(page, node))
            return node;
    for (NodeIndex node = element; node < page.End(element); ++node)
        if (IsLink(page, node))
            return node;
    return noNode;
}

std::vector<NodeIndex> Selected(const PageTree& page, const QString& selector) {
    try {
        return Selector::Parse(selector).SelectAll(page);
    } catch (const Failure&) {
        return {};
    }
}

bool IsInHeading(const PageTree& page, NodeIndex element) {
    for (NodeIndex node = element; node != noNode; node = page.Parent(node))
        if (const QStringView name = page.Name(node);
            name.size() == 2 && name[0] == u'h' && name[1] >= u'1' && name[1] <= u'6')
            return true;
    return false;
}

} // namespace

TeachSession::TeachSession(std::shared_ptr<const PageTree> page, QString url, const std::optional<Recipe>& mend)
    : page_(std::move(page)), url_(std::move(url)) {
    const QString language = page_->Root() == noNode ? QString() : page_->Attribute(page_->Root(), u"lang").toString();
    AddressHints hints;
    hints.Language = language;
    hints.Host = QUrl(url_).host();
    region_ = GuessCountry(hints).Region;
    if (!mend || !BeginMending(*mend))
        BeginByItself();
}

void TeachSession::SetPage(std::shared_ptr<const PageTree> page) {
    page_ = std::move(page);
    Read();
}

bool TeachSession::BeginMending(const Recipe& recipe) {
    recipe_ = recipe;
    Read();
    if (reading_.Records.empty())
        return false;
    // A row that reads nothing any more is what is to be said anew.
    std::erase_if(recipe_.Fields, [this](const RecipeField& row) {
        return reading_.Counts.Filled.at(static_cast<size_t>(row.Column)) == 0;
    });
    Read();
    return true;
}

void TeachSession::BeginByItself() {
    const QString name = recipe_.Name;
    const AnyPageReading seen = ReadAnyPage(*page_, url_);
    recipe_ = {};
    recipe_.Name = name;
    if (!seen.Next.Address.isEmpty())
        recipe_.Next = automaticNextPage.toString();
    if (!seen.Records.empty() && !LearnFrom(seen.Records.front().Fields))
        recipe_.Records = structuredRecords.toString(); // what no element shows
    Read();
}

// A business's own texts are the examples; one that cannot be generalised is left out.
bool TeachSession::LearnFrom(const Lead& first) {
    std::vector<RecipeExample> examples;
    for (const Field column : ownFields) {
        const QString& text = first.At(static_cast<int>(column));
        if (text.isEmpty())
            continue;
        examples.push_back({.Column = column, .Text = text});
        try {
            Take(LearnRecipe(*page_, url_, examples));
        } catch (const Failure&) {
            examples.pop_back();
        }
    }
    return !examples.empty();
}

bool TeachSession::TakeList(const QString& recordSelector) {
    const Recipe before = recipe_;
    for (const NodeIndex record : Selected(*page_, recordSelector)) {
        // Its first link or heading is taken for the name; a person says what is not so.
        for (NodeIndex node = record; node < page_->End(record); ++node) {
            if (!page_->IsElement(node) || TextOf(*page_, node).isEmpty() ||
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

void TeachSession::Take(LearnedRecipe learned) {
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
    const std::vector<RecipeField> before =
        made.Records == recipe_.Records ? recipe_.Fields : std::vector<RecipeField>();
    recipe_ = std::move(made);
    for (const RecipeField& row : before)
        if (!RowOf(row.Column))
            PutRow(row);
    for (const RecipeProposal& proposal : learned.Proposals)
        if (!RowOf(proposal.Row.Column) && !forgotten_.contains(proposal.Row.Column))
            PutRow(proposal.Row);
}

bool TeachSession::Say(Field column, NodeIndex element) {
    problem_.clear();
    std::vector<RecipeExample> examples{{.Column = column, .Node = element}};
    // What a person has said of this business before, and its name, are examples beside the new one.
    if (const int record = RecordOf(element); record >= 0)
        for (const RecipeField& row : recipe_.Fields) {
            const bool counts = said_.contains(row.Column) || row.Column == Field::BusinessName;
            const NodeIndex other = row.Column == column || !counts
                                        ? noNode
                                        : ElementOf(row, reading_.Records[static_cast<size_t>(record)]);
            if (other != noNode)
                examples.push_back({.Column = row.Column, .Node = other});
        }
    const Recipe before = recipe_;
    const std::set<Field> forgotten = forgotten_;
    for (const bool alone : {false, true}) {
        if (alone)
            examples.resize(1);
        try {
            LearnedRecipe learned = LearnRecipe(*page_, url_, examples);
            Drop(column);
            forgotten_.erase(column);
            Take(std::move(learned));
            Read();
            if (!reading_.Records.empty()) {
                problem_.clear();
                said_.insert(column);
                return true;
            }
            problem_ = u"no business has a name then"_s;
        } catch (const Failure& failure) {
            problem_ = failure.Message();
        }
        recipe_ = before;
        forgotten_ = forgotten;
    }
    Read();
    return false;
}

void TeachSession::Drop(Field column) {
    std::erase_if(recipe_.Fields, [column](const RecipeField& row) { return row.Column == column; });
}

void TeachSession::Forget(Field column) {
    problem_.clear();
    Drop(column);
    said_.erase(column);
    forgotten_.insert(column);
    Read();
}

bool TeachSession::SayNext(NodeIndex element) {
    problem_.clear();
    const Recipe before = recipe_;
    if (const NodeIndex link = LinkOf(*page_, element); link != noNode) {
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
            if (!reading_.Next.isEmpty())
                return true;
        }
    }
    recipe_ = before;
    Read();
    problem_ = u"this is no link to another page"_s;
    return false;
}

void TeachSession::ForgetNext() {
    recipe_.Next.clear();
    recipe_.NextAttribute.clear();
    Read();
}

bool TeachSession::SayDetails(NodeIndex element) {
    const NodeIndex link = LinkOf(*page_, element);
    if (link == noNode) {
        problem_ = u"this is no link to a page"_s;
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
    } catch (const Failure& failure) {
        problem_ = failure.Message();
    }
    recipe_.Taught = reading_.Counts;
}

int TeachSession::RecordOf(NodeIndex element) const {
    for (size_t i = 0; i < reading_.Records.size(); ++i)
        if (element >= reading_.Records[i].Begin && element < reading_.Records[i].End)
            return static_cast<int>(i);
    return -1;
}

NodeIndex TeachSession::ElementOf(const RecipeField& row, const PageRecord& record) const {
    if (record.Begin == noNode)
        return noNode;
    try {
        return SelectorQuery(*page_, Selector::Parse(row.Selector)).FirstWithin(record.Begin);
    } catch (const Failure&) {
        return noNode;
    }
}

std::vector<NodeIndex> TeachSession::ElementsOf(Field column) const {
    std::vector<NodeIndex> elements;
    const RecipeField* const row = RowOf(column);
    if (!row || row->Selector.isEmpty())
        return elements;
    try {
        const SelectorQuery query(*page_, Selector::Parse(row->Selector));
        for (const PageRecord& record : reading_.Records)
            if (const NodeIndex element = record.Begin == noNode ? noNode : query.FirstWithin(record.Begin);
                element != noNode)
                elements.push_back(element);
    } catch (const Failure&) {
        elements.clear();
    }
    return elements;
}

std::vector<NodeIndex> TeachSession::LikesOf(NodeIndex element) const {
    const int record = RecordOf(element);
    if (record < 0) {
        for (const CandidateSelector& candidate : RecordSelectors(*page_, element))
            if (std::vector<NodeIndex> found = Selected(*page_, candidate.Text); found.size() > 1)
                return found;
        return {element};
    }
    const NodeIndex root = reading_.Records[static_cast<size_t>(record)].Begin;
    for (const CandidateSelector& candidate : FieldSelectors(*page_, root, element)) {
        try {
            const SelectorQuery query(*page_, Selector::Parse(candidate.Text));
            if (query.FirstWithin(root) != element)
                continue;
            std::vector<NodeIndex> likes;
            for (const PageRecord& each : reading_.Records)
                if (const NodeIndex like = query.FirstWithin(each.Begin); like != noNode)
                    likes.push_back(like);
            return likes;
        } catch (const Failure&) {
            continue;
        }
    }
    return {element};
}

std::vector<Field> TeachSession::LikelyFields(NodeIndex element) const {
    std::vector<Field> order;
    const auto put = [&order](Field column) {
        if (std::find(order.begin(), order.end(), column) == order.end())
            order.push_back(column);
    };
    const QString text = TextOf(*page_, element);
    // What it is taken for already comes first; a name is more than the link that it often is as well.
    const int record = RecordOf(element);
    for (const bool links : {false, true})
        for (const RecipeField& row : recipe_.Fields) {
            if (record < 0 || IsLinkColumn(row.Column) != links)
                continue;
            const NodeIndex read = ElementOf(row, reading_.Records[static_cast<size_t>(record)]);
            const bool related = read != noNode && (page_->Contains(read, element) || page_->Contains(element, read));
            if (related && TextOf(*page_, read) == text)
                put(row.Column);
        }
    const NodeIndex link = LinkOf(*page_, element);
    const QString href = link == noNode ? QString() : page_->Attribute(link, u"href").trimmed().toString();
    if (text.contains(u'@') || href.startsWith(u"mailto:", Qt::CaseInsensitive))
        put(Field::Email);
    if (href.startsWith(u"tel:", Qt::CaseInsensitive) || !FindPhones(text, region_).empty())
        put(text.contains(u"fax", Qt::CaseInsensitive) ? Field::Fax : Field::Phone);
    if (HasStreetWord(text) || LooksLikeAddress(text, region_))
        put(Field::FullAddress);
    const QUrl target(link == noNode ? QString() : ResolveAddress(url_, href));
    const bool toWeb = target.scheme() == u"http" || target.scheme() == u"https";
    const bool outside = toWeb && target.host() != QUrl(url_).host();
    if (outside)
        put(Field::Website);
    if (IsInHeading(*page_, element) || !RowOf(Field::BusinessName))
        put(Field::BusinessName);
    if (toWeb && !outside)
        put(Field::DetailsLink);
    for (const Field column : ownFields)
        if (!RowOf(column))
            put(column);
    for (int column = 0; column < FieldCount; ++column)
        put(static_cast<Field>(column));
    return order;
}

std::vector<ChoosableText> TeachSession::Texts() const {
    std::vector<ChoosableText> texts;
    NodeIndex begin = page_->Body();
    NodeIndex end = begin == noNode ? noNode : page_->End(begin);
    if (!reading_.Records.empty() && reading_.Records.front().Begin != noNode) {
        begin = reading_.Records.front().Begin;
        end = reading_.Records.front().End;
    }
    for (NodeIndex node = begin; node != noNode && node < end && texts.size() < mostTexts; ++node) {
        if (page_->IsElement(node) && ShowsNothing(*page_, node)) {
            node = page_->End(node) - 1;
            continue;
        }
        if (!page_->IsText(node))
            continue;
        const QString text = page_->Text(node).toString().simplified().left(longestText);
        if (!text.isEmpty())
            texts.push_back({page_->Parent(node), text});
    }
    return texts;
}

} // namespace Brindle
