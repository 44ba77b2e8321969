#pragma once

#include "core/Lead.h"
#include "page/PageTree.h"

#include <QString>

namespace Brindle {

/// Stands for the website of a page that was opened from disk and does not say where it was. The name is one that no
/// host has (RFC 2606, section 2).
inline constexpr QStringView UnknownWebsite = u"http://saved-page.invalid/";

/// The address under which a page is read: `url`, or for one that was opened from disk ("file:") the address that it
/// had on the web as far as it says: in its canonical link, its og:url or its base element, or else the server that
/// most of its links name. `UnknownWebsite` where it says nothing.
QString WebAddressOfPage(const PageTree& page, const QString& url);

/// Takes the links out of a lead that lead to the `UnknownWebsite`.
void DropUnknownLinks(Lead& lead);

} // namespace Brindle
