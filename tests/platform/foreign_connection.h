#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>

namespace support {

// A connection that knows nothing of our rules.
class ForeignConnection {
 public:
  explicit ForeignConnection(const std::filesystem::path& file) {
    sqlite3_open(file.c_str(), &connection_);
  }
  ~ForeignConnection() { sqlite3_close(connection_); }
  ForeignConnection(const ForeignConnection&) = delete;
  ForeignConnection& operator=(const ForeignConnection&) = delete;

  void Execute(const char* sql) {
    ASSERT_EQ(sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection_);
  }

 private:
  sqlite3* connection_ = nullptr;
};

}  // namespace support
