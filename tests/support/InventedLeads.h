#pragma once

#include "core/Lead.h"

namespace Brindle::Test {

/// The `number`th of invented businesses, all different, with every field of a listing that is well filled; the same
/// each time. Lengths, and how often words repeat, are those of directories.
Lead InventedLead(qint64 number);

} // namespace Brindle::Test
