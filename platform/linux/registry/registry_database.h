// One connection to the registry's database: its tables and the statements on them.
#pragma once

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/linux/registry/registry_guard.h"
#include "platform/linux/registry/sqlite_statement.h"
#include "platform/registry.h"

namespace platform {

using RegistryKeyId = std::int64_t;  // never used twice in one store
inline constexpr RegistryKeyId kLocalMachineId = 1;
inline constexpr RegistryKeyId kClassesRootId = 2;

// Why a database does not open.
struct RegistryProblem {
  enum class Kind { None, Damaged, Other };
  Kind kind = Kind::None;
  std::string text;
};

// Used by one thread at a time. Whoever reads or writes holds a transaction; none begins in a
// database whose schema is not ours (any more). Names come folded where they are looked up. A read
// that fails finds nothing.
class RegistryDatabase {
 public:
  enum class Opening { Existing, Create };

  // Create makes the tables in a file that is still empty; the file itself must be there. Null when
  // it does not open; `problem` is none when that is because there is no store (yet). `patience`
  // must outlive it.
  static std::unique_ptr<RegistryDatabase> Open(const std::filesystem::path& file, Opening opening,
                                                LockPatience& patience, RegistryProblem* problem);
  ~RegistryDatabase();
  RegistryDatabase(const RegistryDatabase&) = delete;
  RegistryDatabase& operator=(const RegistryDatabase&) = delete;

  // Tells one store from another that took its place.
  std::int64_t StoreId() const { return storeId_; }
  // False when the file is gone or another one has its name.
  bool IsStillThere() const;

  bool BeginRead();
  // Waits for another writer, but not for ever.
  bool BeginWrite();
  bool Commit();
  void Rollback();
  // False also after a failure that made the database give up the transaction by itself.
  bool InTransaction() const { return sqlite3_get_autocommit(connection_) == 0; }
  // The status for a write that just failed.
  RegistryStatus WriteFailure() const;
  // What went wrong first since the last call, in words; empty when nothing did.
  std::string TakeFailure();
  // Reads all of it; false when something of it is damaged. The log stays as it is, also when the
  // connection is the last to close.
  bool IsWhole();

  std::optional<RegistryKeyId> FindSubKey(RegistryKeyId parent, std::string_view folded);
  std::optional<RegistryKeyId> InsertKey(RegistryKeyId parent, std::string_view folded,
                                         std::string_view name);
  // Deletes the key with everything below it.
  RegistryStatus DeleteTree(RegistryKeyId key);
  RegistryStatus SetAccessList(RegistryKeyId key, std::string_view sddl);

  RegistryStatus ReadValue(RegistryKeyId key, std::string_view folded, RegistryType* type,
                           void* data, std::uint32_t* size);
  RegistryStatus WriteValue(RegistryKeyId key, std::string_view folded, std::string_view name,
                            RegistryType type, std::span<const std::byte> data);
  RegistryStatus DeleteValue(RegistryKeyId key, std::string_view folded);

  // Enumerating: the name at a position, or the one after a name already given.
  struct Name {
    std::string folded;
    std::string spelled;
  };
  enum class Listing { SubKeys, Values };
  std::optional<Name> NameAt(RegistryKeyId key, Listing listing, std::uint32_t index);
  std::optional<Name> NameAfter(RegistryKeyId key, Listing listing, std::string_view folded);

  // Counts a change of the key's values; FileNotFound when the key is gone.
  RegistryStatus CountChange(RegistryKeyId key);
  // The changes counted so far.
  struct Changes {
    SqliteStep result;   // Done: the key is gone
    std::int64_t count;  // with Row
  };
  Changes ReadChanges(RegistryKeyId key);
  bool HasKey(RegistryKeyId key) { return ReadChanges(key).result == SqliteStep::Row; }

  // Copies the log into the database as far as nobody still reads it; true, and the log is started
  // anew, when that was all of it. Waits for the disk.
  bool Checkpoint();

 private:
  enum class Sql : std::size_t {
    BeginRead,
    BeginWrite,
    Commit,
    Rollback,
    SchemaVersion,
    FindSubKey,
    InsertKey,
    DeleteTreeValues,
    DeleteTreeKeys,
    SetAccessList,
    ReadValue,
    WriteValue,
    DeleteValue,
    SubKeyAt,
    SubKeyAfter,
    ValueAt,
    ValueAfter,
    CountChange,
    ReadChanges,
    CountCheckpoint,
    Count
  };
  static const char* TextOf(Sql sql);

  explicit RegistryDatabase(LockPatience& patience) : guard_(patience) {}

  bool OpenFile(const std::filesystem::path& file, Opening opening, RegistryProblem* problem);
  bool CreateTables();
  // Reads layout and identity; false when this is no store that we know. In a transaction, and in
  // one of its own.
  bool ReadIdentity();
  bool ReadIdentityAtOnce();
  bool KnowsSchema();
  bool HasOurSchema();
  bool Execute(const char* sql);
  RegistryProblem Problem() const;
  SqliteStatement& Prepared(Sql sql);
  bool Run(Sql sql);
  std::optional<Name> OneName(SqliteRun& run);

  RegistryGuard guard_;
  sqlite3* connection_ = nullptr;
  int failure_ = SQLITE_OK;
  std::filesystem::path file_;
  std::int64_t layout_ = 0;
  std::int64_t schemaVersion_ = -1;  // of the schema that was compared last
  std::int64_t storeId_ = 0;
  std::uint64_t device_ = 0;
  std::uint64_t inode_ = 0;
  std::array<std::unique_ptr<SqliteStatement>, static_cast<std::size_t>(Sql::Count)> prepared_;
};

}  // namespace platform
