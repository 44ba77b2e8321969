#pragma once

#include "discovery/AnyPageText.h"
#include "page/PageTree.h"

#include <QString>

namespace Brindle {

/// Where a list goes on.
struct NextPageLink {
    QString Address;         ///< absolute, http or https; empty when there is none
    QString Why;             ///< one line for people; what speaks for it, or why there is none
    NodeIndex Node = noNode; ///< the link
};

/// The next page of the list that this page shows a part of. `url` is the page's address. The link must lead to the
/// same site and not to the page itself; the words of many languages, rel=next (HTML, section 4.6.7), arrows and
/// numbers in a row of pages count, each only as far as it can be trusted. Linear in the page.
NextPageLink FindNextPage(const PageTree& page, const PageLines& lines, const QString& url);

/// The address that the page's relative links are relative to: its base element's, else its own.
QString BaseAddressOf(const PageTree& page, const QString& url);

/// The address with "." and ".." of its path worked in (RFC 3986, section 5.2.4).
QString WithoutDotSegments(const QString& address);

/// The host of a web address in lower case, without "www." and port; empty for other addresses.
QString SiteOf(QStringView address);

/// What an address says about being another page of the same list.
struct PageStep {
    bool SameList = false; ///< they differ in a page's number only
    int Number = -1;       ///< the number that the other address has; -1 for none
    int OwnNumber = -1;    ///< the number that this address has; -1 for none
};
PageStep StepBetween(const QString& own, const QString& other);

} // namespace Brindle
