#include "recipes/LearnStructured.h"

#include "discovery/StructuredLinks.h"
#include "recipes/ExampleText.h"
#include "recipes/RecipeReader.h"
#include "toolkit/PageAddress.h"

#include <algorithm>

namespace Brindle {

using namespace Qt::StringLiterals;

QString HomeOf(const QString& url) {
    const qsizetype end = url.indexOf(u'/', url.indexOf(u"://") + 3);
    return end < 0 ? QString(url + u'/') : url.left(end + 1);
}

std::optional<LearnedRecipe> LearnStructured(const PageTree& page, const QString& url,
                                             const std::vector<RecipeExample>& examples) {
    LearnedRecipe learned;
    learned.What.Name = HostOfAddress(url);
    learned.What.Home = HomeOf(url);
    learned.What.Records = structuredRecords.toString();
    learned.What.Next = automaticNextPage.toString();
    const RecipeReading reading = RecipeReader(learned.What).Read(page, url);
    int businesses = 0;
    for (const RecipeExample& example : examples)
        businesses = std::max(businesses, example.Business + 1);
    for (int business = 0; business < businesses; ++business) {
        const auto isThis = [&](const PageRecord& record) {
            return std::all_of(examples.begin(), examples.end(), [&](const RecipeExample& example) {
                return example.Business != business ||
                       IsExample(example.Column, record.Fields.At(static_cast<int>(example.Column)), example.Text);
            });
        };
        if (std::none_of(reading.Records.begin(), reading.Records.end(), isThis))
            return {};
    }
    if (reading.Records.size() < 2)
        return {};
    learned.What.Taught = reading.Counts;
    return learned;
}

} // namespace Brindle
