#include "recipes/LearnAddress.h"

#include "core/Errors.h"
#include "recipes/ExampleText.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostLines = 5; // of an address

// The fewest neighbouring lines in which all of the texts stand.
QStringList LinesAround(const QStringList& lines, const QStringList& folded) {
    QStringList best;
    for (qsizetype first = 0; first < lines.size(); ++first) {
        QString seen;
        for (qsizetype last = first; last < std::min(lines.size(), first + mostLines); ++last) {
            seen += FoldedExample(lines[last]);
            const qsizetype count = last - first + 1;
            const bool all =
                std::all_of(folded.begin(), folded.end(), [&](const QString& text) { return seen.contains(text); });
            if (all && (best.isEmpty() || count < best.size()))
                best = lines.sliced(first, count);
            if (all)
                break;
        }
    }
    return best;
}

// From the first of the texts to the last one.
QString FromFirstToLast(const QString& text, const QStringList& folded) {
    const QString all = FoldedExample(text);
    qsizetype begin = all.size();
    qsizetype end = 0;
    for (const QString& part : folded) {
        begin = std::min(begin, all.indexOf(part));
        end = std::max(end, all.indexOf(part) + part.size());
    }
    return PartOfFold(text, all.sliced(begin, end - begin));
}

} // namespace

bool AddressRows::IsPart(Field column) {
    return column == Field::Address || column == Field::City || column == Field::State || column == Field::PostalCode ||
           column == Field::Country;
}

void AddressRows::Add(const std::vector<Part>& parts, const RecordSet& set, Recipe& recipe) {
    const auto known = std::find_if(recipe.Fields.begin(), recipe.Fields.end(),
                                    [](const RecipeField& field) { return field.Column == Field::FullAddress; });
    std::optional<RecipeField> full = known != recipe.Fields.end() ? std::optional(*known) : std::nullopt;
    if (!full && !parts.empty())
        full = RowAround(parts, set);
    bool takenApart = false;
    std::vector<RecipeField> others;
    for (const Part& part : parts) {
        if (full && Gives(*full, *part.Example, set))
            takenApart = true;
        else if (part.Row && IsSteady(*part.Row, set))
            others.push_back(*part.Row);
        else
            throw Failure(u"%1=%2: stands in one text with other things, and nothing takes it out of there"_s.arg(
                EnglishCaptions()[static_cast<int>(part.Example->What.Column)], part.Example->Text));
    }
    if (takenApart && known == recipe.Fields.end())
        recipe.Fields.push_back(*full);
    recipe.Fields.insert(recipe.Fields.end(), others.begin(), others.end());
    const bool hasParts = std::any_of(recipe.Fields.begin(), recipe.Fields.end(), [](const RecipeField& field) {
        return field.Column == Field::Address || field.Column == Field::City || field.Column == Field::PostalCode;
    });
    for (RecipeField& field : recipe.Fields)
        field.SplitAddress = field.Column == Field::FullAddress && (takenApart || !hasParts);
}

// Whether a part that is known by the commas before it stands behind as many of them everywhere.
bool AddressRows::IsSteady(const RecipeField& row, const RecordSet& set) {
    if (!row.Pattern.startsWith(u"^(?:[^,]*,)"))
        return true;
    const RecipeField whole{.Column = Field::FullAddress, .Selector = row.Selector, .Attribute = row.Attribute};
    const auto commas = [&](RecordSpan record) { return in_.Trial.Read(whole, record).count(u','); };
    const qsizetype own = commas(set.OfBusiness.front());
    return std::all_of(set.Members.begin(), set.Members.end(), [&](RecordSpan record) {
        return in_.Trial.Read(whole, record).isEmpty() || commas(record) == own;
    });
}

// Whether the address, taken apart, gives what is said of the part, of all businesses of which it is said.
bool AddressRows::Gives(const RecipeField& full, const FoundExample& part, const RecordSet& set) {
    return std::all_of(in_.Examples.begin(), in_.Examples.end(), [&](const FoundExample& example) {
        if (example.What.Column != part.What.Column)
            return true;
        Lead lead;
        lead.FullAddress = in_.Trial.Read(full, set.Of(example));
        SplitFullAddress(in_.Page, in_.Url, country_, lead);
        return IsExample(part.What.Column, lead.At(static_cast<int>(part.What.Column)), example.Text);
    });
}

// Whether what is said of the business beside its address stands in a text: it is no address then.
bool AddressRows::HoldsOthers(const QString& text, int business) const {
    const QString folded = FoldedExample(text);
    return std::any_of(in_.Examples.begin(), in_.Examples.end(), [&](const FoundExample& example) {
        return example.What.Business == business && !IsPart(example.What.Column) &&
               folded.contains(FoldedExample(example.Text));
    });
}

// The lines in which the parts stand, or what lies between them, as a full address of which nobody spoke.
std::optional<RecipeField> AddressRows::RowAround(const std::vector<Part>& parts, const RecordSet& set) {
    const FoundExample& first = *parts.front().Example;
    const RecordSpan record = set.Of(first);
    QStringList folded;
    for (const Part& part : parts)
        if (part.Example->What.Business == first.What.Business)
            folded.append(FoldedExample(part.Example->Text));
    const QStringList lines = LinesAround(ShownText(in_.Lines, record.Begin, record.End, u"\n").split(u'\n'), folded);
    const QString whole = lines.join(u", "_s);
    for (const QString& text : {whole, lines.isEmpty() ? QString() : FromFirstToLast(whole, folded)}) {
        if (text.isEmpty() || HoldsOthers(text, first.What.Business))
            continue;
        const FoundExample full{.What = {.Column = Field::FullAddress, .Text = text, .Business = first.What.Business},
                                .Text = text,
                                .Places = in_.Places.Find(Field::FullAddress, text)};
        for (const std::optional<RecipeField>& row : {rows_.Row(full, set), rows_.RowOfParts(full, set)}) {
            const auto isGiven = [&](const Part& part) { return part.Row || Gives(*row, *part.Example, set); };
            if (row && std::all_of(parts.begin(), parts.end(), isGiven))
                return row;
        }
    }
    return {};
}

} // namespace Brindle
