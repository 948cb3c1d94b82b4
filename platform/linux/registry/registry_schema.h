// The tables of the registry's database.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>

namespace platform {

// The number that tells this layout from others.
inline constexpr std::int64_t kRegistryLayout = 1;

// The statements that make the tables in an empty database.
std::string RegistrySchemaSql();

// True when the schema is the one that those make, to the byte, and nothing besides: no constraint,
// computed column, index, trigger or view of another maker, whose expressions would run here. The
// caller has a transaction open, so that the schema that was read is the one in use. A failure to
// read goes to `failure`, unless an earlier one waits there.
bool HasRegistrySchema(sqlite3* connection, int* failure);

}  // namespace platform
