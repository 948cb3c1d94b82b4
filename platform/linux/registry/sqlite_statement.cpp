#include "platform/linux/registry/sqlite_statement.h"

namespace platform {

SqliteStatement::SqliteStatement(sqlite3* database, const char* sql, int* failure)
    : failure_(failure) {
  const int code =
      sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr);
  if (code != SQLITE_OK) Fail(code);
}

SqliteStatement::~SqliteStatement() {
  sqlite3_finalize(statement_);
}

SqliteRun& SqliteRun::Bind(int parameter, std::span<const std::byte> bytes) {
  // A null pointer would bind NULL; no bytes are still a value.
  const void* data = bytes.empty() ? static_cast<const void*>("") : bytes.data();
  sqlite3_bind_blob64(statement_, parameter, data, bytes.size(), SQLITE_STATIC);
  return *this;
}

std::string_view SqliteRun::Text(int column) const {
  const void* text = sqlite3_column_text(statement_, column);
  if (text == nullptr) return {};
  return {static_cast<const char*>(text),
          static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

}  // namespace platform
