#include "recipes/LearnDetails.h"

#include "discovery/NextPage.h"
#include "recipes/ExamplePlaces.h"
#include "recipes/ExampleText.h"
#include "recipes/RecipePattern.h"
#include "recipes/RecipeTrial.h"
#include "recipes/SturdySelectors.h"

#include <QSet>

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr size_t mostTried = 60; // selectors

// A page with what trying selectors on it needs.
struct TriedPage {
    explicit TriedPage(const OwnPage& own)
        : Page(*own.Page),
          Base(BaseAddressOf(Page, own.Url)),
          Lines(Page),
          Trial({Page, Lines, Base}),
          Whole{Page.Root(), Page.Root() == noNode ? noNode : Page.End(Page.Root())} {}

    const PageTree& Page;
    const QString Base;
    const PageLines Lines;
    RecipeTrial Trial;
    const RecordSpan Whole;
};

// Selectors of an element in its whole page; ids of it and of what it stands in, too.
std::vector<CandidateSelector> SelectorsInPage(const PageTree& page, NodeIndex element) {
    std::vector<CandidateSelector> found = FieldSelectors(page, page.Root(), element);
    QString rest;
    double cost = 0.7;
    const CandidateSelector own = OwnSelectors(page, element).front();
    for (NodeIndex node = element; node != noNode && node != page.Body(); node = page.Parent(node)) {
        if (const QStringView id = page.Attribute(node, u"id"); IsSturdyName(id))
            found.push_back({u'#' + EscapedIdentifier(id) + rest, cost});
        rest = u' ' + own.Text;
        cost += 0.3 + own.Cost * 0.3;
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const CandidateSelector& a, const CandidateSelector& b) { return a.Cost < b.Cost; });
    found.resize(std::min(found.size(), mostTried));
    return found;
}

} // namespace

std::optional<RecipeField> LearnDetailsRow(const PageTree& shown, const QString& url, const std::vector<OwnPage>& pages,
                                           Field column, NodeIndex element) {
    if (pages.empty())
        return {};
    const QString base = BaseAddressOf(shown, url);
    const PageLines lines(shown);
    const ValueSource source{shown, lines, base};
    const ExamplePlace place = ExamplePlaces(source).Pointed(column, element);
    if (place.Node == noNode)
        return {};
    QString text = RawFieldValue(source, place.Node, column, place.Attribute);
    RecipePattern(place.Pattern).Apply(text);
    text = FinishedFieldValue(column, base, text);
    if (text.isEmpty())
        return {};

    std::vector<std::unique_ptr<TriedPage>> tried;
    for (const OwnPage& page : pages)
        if (page.Page->Root() != noNode)
            tried.push_back(std::make_unique<TriedPage>(page));
    if (tried.empty() || &tried.front()->Page != pages.front().Page.get())
        return {};
    std::optional<RecipeField> best;
    double bestScore = 0;
    for (const CandidateSelector& candidate : SelectorsInPage(shown, place.Node)) {
        const RecipeField row{
            .Column = column, .Selector = candidate.Text, .Attribute = place.Attribute, .Pattern = place.Pattern};
        TriedPage& first = *tried.front();
        if (!IsExample(column, first.Trial.Read(row, first.Whole), text))
            continue;
        double share = 0;
        QSet<QString> values;
        for (const auto& page : tried) {
            share += page->Trial.FillOf(row, {page->Whole}).Share;
            values.insert(page->Trial.Read(row, page->Whole));
        }
        double score = share / static_cast<double>(tried.size()) - 0.04 * candidate.Cost;
        // What is the same on the pages of different businesses is the website's own.
        score -= tried.size() > 1 && share > 1.5 && values.size() == 1 ? 0.5 : 0;
        score -= first.Trial.CountOf(row.Selector, first.Whole) > 1 ? 0.03 : 0;
        if (!best || score > bestScore) {
            bestScore = score;
            best = row;
        }
    }
    return best;
}

} // namespace Brindle
