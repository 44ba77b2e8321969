#pragma once

#include "page/PageTree.h"

#include <QString>

namespace Brindle {

/// The address of a search, with {what} and {where} in it, made of the address of its results: the words stand in the
/// page's search form still, or the parts of the address are called as such parts are. Empty where that is not sure.
QString SearchAddressOf(const PageTree& page, const QString& url);

/// The same from the words that somebody searched for; empty where the address has none of them.
QString SearchAddressOf(const QString& url, const QString& what, const QString& where);

/// Why an address is none of a search, one line; empty when it is one.
QString WhyNoSearchAddress(const QString& address);

} // namespace Brindle
