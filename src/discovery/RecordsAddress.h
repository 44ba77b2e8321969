#pragma once

#include "discovery/AnyPageText.h"
#include "discovery/PostalAddress.h"
#include "discovery/StructuredData.h"

namespace Brindle {

/// What a text has of a postal address.
struct AddressSigns {
    bool PostalCode = false;
    bool Street = false;
};
AddressSigns AddressSignsIn(QStringView text, QStringView region);

/// What a page says of the country of its addresses: its language and host, the phones of its links, what its
/// structured data names.
/// Where none names the country, the one whose phones and addresses the page's lines look like.
AddressHints AddressHintsOf(const PageTree& page, const PageLines& lines, const QString& url,
                            const std::vector<StructuredRecord>& structured);

/// Takes addresses apart that structured data gives in one text. What is not sure stays whole.
void SplitWholeAddresses(std::vector<StructuredRecord>& structured, const AddressHints& hints);

} // namespace Brindle
