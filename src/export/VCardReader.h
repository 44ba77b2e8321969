#pragma once

#include "export/LeadReader.h"

namespace Brindle {

/// Reads cards (vCard 3.0 and 4.0, RFC 6350): names, addresses, phones, e-mails, websites; what a lead has no field for
/// is left out.
LeadFile ReadVCards(const QString& text);

} // namespace Brindle
