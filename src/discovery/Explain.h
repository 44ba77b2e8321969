#pragma once

#include "discovery/AnyPage.h"

#include <QByteArray>

namespace Brindle {

/// A reading as one JSON object (RFC 8259, UTF-8, indented): how many records, from what source, by which selector,
/// each field with its selector, in how many records it is filled and why it was taken for that, the next page, and
/// what else was considered. `source`, `record` and `next` are null when there is none.
QByteArray ExplainReading(const AnyPageReading& reading);

} // namespace Brindle
