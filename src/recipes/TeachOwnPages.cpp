#include "recipes/TeachSession.h"

#include <algorithm>

// The part of teaching that is about the pages of the businesses.
namespace Brindle {

QStringList TeachSession::OwnPages(qsizetype most) const {
    QStringList addresses;
    for (const PageRecord& record : reading_.Records)
        if (const QString& link = record.Fields.DetailsLink;
            addresses.size() < most && !link.isEmpty() && !addresses.contains(link))
            addresses.append(link);
    return addresses;
}

void TeachSession::OpenOwnPage(OwnPage shown, std::vector<OwnPage> pages) {
    problem_ = TeachProblem::None;
    own_ = std::move(shown);
    ownPages_ = std::move(pages);
    recipe_.Details = true;
}

void TeachSession::CloseOwnPage(std::shared_ptr<const PageTree> list) {
    own_.reset();
    problem_ = TeachProblem::None;
    SetPage(std::move(list));
}

bool TeachSession::SayOfOwnPage(Field column, NodeIndex element) {
    std::optional<RecipeField> row = LearnDetailsRow(*own_->Page, own_->Url, ownPages_, column, element);
    if (!row) {
        problem_ = TeachProblem::NotFetched;
        return false;
    }
    Forget(column);
    const auto has = [this](Field part) {
        return RowOf(part) || std::any_of(recipe_.DetailsFields.begin(), recipe_.DetailsFields.end(),
                                          [part](const RecipeField& each) { return each.Column == part; });
    };
    row->SplitAddress =
        column == Field::FullAddress && !has(Field::Address) && !has(Field::City) && !has(Field::PostalCode);
    recipe_.DetailsFields.push_back(std::move(*row));
    std::sort(recipe_.DetailsFields.begin(), recipe_.DetailsFields.end(),
              [](const RecipeField& one, const RecipeField& other) { return one.Column < other.Column; });
    saidOfOwn_.insert(column);
    return true;
}

std::vector<Lead> TeachSession::Leads() const {
    std::vector<Lead> leads;
    std::optional<RecipeReader> reader;
    if (recipe_.Details && !ownPages_.empty())
        reader.emplace(recipe_);
    for (const PageRecord& record : reading_.Records) {
        Lead& lead = leads.emplace_back(record.Fields);
        for (const OwnPage& page : ownPages_)
            if (QStringList problems; reader && page.Url == lead.DetailsLink)
                reader->ReadDetails(*page.Page, page.Url, lead, problems);
    }
    return leads;
}

void TeachSession::SetAbout(const QString& country, const QString& search) {
    recipe_.Search = search;
    if (recipe_.Country == country)
        return;
    recipe_.Country = country;
    Read();
}

} // namespace Brindle
