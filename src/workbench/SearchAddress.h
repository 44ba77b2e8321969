#pragma once

#include "core/SiteCatalogue.h"
#include "core/SitesFile.h"
#include "store/SearchTable.h"

namespace Brindle {

/// The address where a search begins. Throws `Failure` for an unknown directory, and for one that knows no search
/// address when there is no start.
QString StartOf(const SearchRow& row, const SiteCatalogue& catalogue);

/// Why a row of a table cannot be searched for with the directories that there are. Of those that the file of sites
/// has turned off, it says why.
SearchFault WhyNoSearch(const SearchRow& row, const SiteCatalogue& catalogue);
SearchFault WhyNoSearch(const SearchRow& row, const SitesFile& sites, const SiteCatalogue& catalogue);

/// The code of a directory that is named as the selector of directories shows it, or by its address or its label
/// alone where only one has it; the name itself when there is no such directory. A code stays what it is.
QString CodeOfName(const QString& name, const SiteCatalogue& catalogue);

/// The host of an address, with its port where it has one: what turns are taken at.
QString TurnHostOf(const QString& address);

} // namespace Brindle
