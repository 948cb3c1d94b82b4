// A prepared statement and one run of it.
#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace platform {

enum class SqliteStep { Row, Done, Failed };

// Prepared for many runs. A statement that could not be prepared fails in every run. The result
// code of a failure goes to `failure`, unless an earlier one still waits there.
class SqliteStatement {
 public:
  SqliteStatement(sqlite3* database, const char* sql, int* failure);
  ~SqliteStatement();
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  sqlite3_stmt* Native() const { return statement_; }
  void Fail(int code) const {
    if (*failure_ == SQLITE_OK) *failure_ = code;
  }

 private:
  sqlite3_stmt* statement_ = nullptr;
  int* failure_;
};

// One run; the statement is free again when it ends. Parameters count from 1, columns from 0. What
// was bound must outlive the run; what a column gives is valid until the next step.
class SqliteRun {
 public:
  explicit SqliteRun(const SqliteStatement& statement)
      : prepared_(statement), statement_(statement.Native()) {}
  ~SqliteRun() { sqlite3_reset(statement_); }
  SqliteRun(const SqliteRun&) = delete;
  SqliteRun& operator=(const SqliteRun&) = delete;

  SqliteRun& Bind(int parameter, std::int64_t number) {
    sqlite3_bind_int64(statement_, parameter, number);
    return *this;
  }
  SqliteRun& Bind(int parameter, std::string_view text) {
    sqlite3_bind_text(statement_, parameter, text.data(), static_cast<int>(text.size()),
                      SQLITE_STATIC);
    return *this;
  }
  SqliteRun& Bind(int parameter, std::span<const std::byte> bytes);

  SqliteStep Step() {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) return SqliteStep::Row;
    if (code == SQLITE_DONE) return SqliteStep::Done;
    if (statement_ != nullptr) prepared_.Fail(code);
    return SqliteStep::Failed;
  }

  std::int64_t Number(int column) const { return sqlite3_column_int64(statement_, column); }
  std::string_view Text(int column) const;
  std::span<const std::byte> Bytes(int column) const {
    const void* data = sqlite3_column_blob(statement_, column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return {static_cast<const std::byte*>(data), size};
  }

 private:
  const SqliteStatement& prepared_;
  sqlite3_stmt* statement_;
};

}  // namespace platform
