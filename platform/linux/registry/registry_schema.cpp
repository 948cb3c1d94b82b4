#include "platform/linux/registry/registry_schema.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "platform/linux/registry/sqlite_statement.h"

namespace platform {
namespace {

constexpr std::string_view kKeyTable = R"(CREATE TABLE registry_key(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    parent INTEGER NOT NULL,
    folded TEXT NOT NULL,
    name TEXT NOT NULL,
    changes INTEGER NOT NULL DEFAULT 0,
    access_list TEXT,
    UNIQUE(parent, folded)))";

constexpr std::string_view kValueTable = R"(CREATE TABLE registry_value(
    key INTEGER NOT NULL,
    folded TEXT NOT NULL,
    name TEXT NOT NULL,
    type INTEGER NOT NULL,
    data BLOB NOT NULL,
    PRIMARY KEY(key, folded)) WITHOUT ROWID)";

constexpr std::string_view kStoreTable =
    "CREATE TABLE store(id INTEGER NOT NULL, checkpoints INTEGER NOT NULL)";

constexpr std::string_view kFirstRows = R"(
  INSERT INTO registry_key(id, parent, folded, name) VALUES
    (1, 0, 'HKEY_LOCAL_MACHINE', 'HKEY_LOCAL_MACHINE'),
    (2, 0, 'HKEY_CLASSES_ROOT', 'HKEY_CLASSES_ROOT');
  INSERT INTO store VALUES (random(), 0);
  PRAGMA user_version = 1;
)";

// What the database itself keeps about them, in no order: SQLite adds two of its own.
struct Entry {
  std::string_view type;
  std::string_view name;
  std::string_view sql;
};
constexpr std::array<Entry, 5> kEntries = {
    {{"table", "registry_key", kKeyTable},
     {"index", "sqlite_autoindex_registry_key_1", ""},
     {"table", "sqlite_sequence", "CREATE TABLE sqlite_sequence(name,seq)"},
     {"table", "registry_value", kValueTable},
     {"table", "store", kStoreTable}}};

}  // namespace

std::string RegistrySchemaSql() {
  std::string sql;
  for (const std::string_view table : {kKeyTable, kValueTable, kStoreTable}) {
    sql.append(table).append(";");
  }
  return sql.append(kFirstRows);
}

bool HasRegistrySchema(sqlite3* connection, int* failure) {
  const SqliteStatement statement(connection, "SELECT type, name, sql FROM sqlite_schema", failure);
  SqliteRun run(statement);
  std::array<bool, kEntries.size()> isFound{};
  SqliteStep step = run.Step();
  for (; step == SqliteStep::Row; step = run.Step()) {
    std::size_t i = 0;
    while (i < kEntries.size() && run.Text(1) != kEntries[i].name) ++i;
    if (i == kEntries.size() || isFound[i]) return false;
    if (run.Text(0) != kEntries[i].type || run.Text(2) != kEntries[i].sql) return false;
    isFound[i] = true;
  }
  return step == SqliteStep::Done && std::ranges::find(isFound, false) == isFound.end();
}

}  // namespace platform
