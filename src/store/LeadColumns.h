#pragma once

#include "core/Lead.h"

#include <QSqlQuery>
#include <QString>

namespace Brindle {

/// The columns of a lead's fields in a SELECT from `lead`, joined with `map_shape` by `LeadTables`; fifteen of them,
/// for `ReadLead`.
QString LeadColumns();
QString LeadTables();

/// The lead whose columns begin at `first`.
Lead ReadLead(const QSqlQuery& query, int first);

/// The link of the map cut around the address that it is made of: what stands before and behind it. False when it is
/// not made like that.
bool SplitMapLink(const Lead& lead, QString& before, QString& behind);

} // namespace Brindle
