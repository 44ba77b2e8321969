#pragma once

namespace Brindle {

class Database;

/// The version of the schema that this program writes.
int SchemaVersion();

/// Brings a store up to date: every migration that it has not had yet, in order, all or none. Throws `StoreError`; a
/// store of a newer version, or a file of another program, is left as it is.
void MigrateSchema(Database& database);

} // namespace Brindle
