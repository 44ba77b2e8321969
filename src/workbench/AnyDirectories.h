#pragma once

#include "core/SiteAdapter.h"
#include "page/PageTree.h"
#include "recipes/RecipeFolders.h"

namespace Brindle {

/// The site code of any website.
inline constexpr QStringView AnyWebsiteCode = u"AUTO";
/// What the site selector shows for it.
inline constexpr QStringView AnyWebsiteLabel = u"Any website";

/// A directory of which nothing is known but what its pages say and show. With `readsDetails` each record's own page is
/// read, too.
SiteAdapter AnyWebsite(bool readsDetails = false);

/// The directory that a recipe describes; its details pages are read when the recipe says so or `readsDetails` does.
/// Throws `Failure` for a selector that is none.
SiteAdapter DirectoryOfRecipe(const RecipeEntry& entry, bool readsDetails = false);

/// Adds what a record's own page at `url` says of itself to a lead; what the lead has stays. Nothing when the page
/// speaks of more than one business and none has the lead's name.
void AddOwnPage(const PageTree& page, const QString& url, Lead& lead);

} // namespace Brindle
