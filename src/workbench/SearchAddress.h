#pragma once

#include "core/SiteCatalogue.h"
#include "core/SitesFile.h"
#include "store/SearchTable.h"

namespace Brindle {

/// The address where a search begins. Throws `Failure` for an unknown directory, and for one that knows no search
/// address when there is no start.
QString StartOf(const SearchRow& row, const SiteCatalogue& catalogue);

/// Why a row of a table cannot be searched for with the directories that there are; empty when it can.
QString WhyNoSearch(const SearchRow& row, const SitesFile& sites, const SiteCatalogue& catalogue);

/// The host of an address, with its port where it has one: what turns are taken at.
QString TurnHostOf(const QString& address);

} // namespace Brindle
