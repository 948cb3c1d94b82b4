#include "platform/linux/registry_database.h"

#include <sys/stat.h>

#include <chrono>
#include <thread>

#include "platform/registry_rules.h"

namespace platform {
namespace {

constexpr std::int64_t kLayout = 1;

// The longest wait for another process: about two seconds in steps that a short commit of the
// other makes good.
constexpr int kBusySteps = 2000;

// Without a watcher thread in the process the log is copied back only when it has grown to 64 MiB.
constexpr const char* kSettings =
    "PRAGMA synchronous = NORMAL; PRAGMA wal_autocheckpoint = 16384;"
    "PRAGMA journal_size_limit = 4194304; PRAGMA temp_store = MEMORY;"
    "PRAGMA cell_size_check = ON;";

constexpr const char* kTables = R"(
  CREATE TABLE registry_key(
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    parent INTEGER NOT NULL,
    folded TEXT NOT NULL,
    name TEXT NOT NULL,
    changes INTEGER NOT NULL DEFAULT 0,
    access_list TEXT,
    UNIQUE(parent, folded));
  CREATE TABLE registry_value(
    key INTEGER NOT NULL,
    folded TEXT NOT NULL,
    name TEXT NOT NULL,
    type INTEGER NOT NULL,
    data BLOB NOT NULL,
    PRIMARY KEY(key, folded)) WITHOUT ROWID;
  CREATE TABLE store(id INTEGER NOT NULL, checkpoints INTEGER NOT NULL);
  INSERT INTO registry_key(id, parent, folded, name) VALUES
    (1, 0, 'HKEY_LOCAL_MACHINE', 'HKEY_LOCAL_MACHINE'),
    (2, 0, 'HKEY_CLASSES_ROOT', 'HKEY_CLASSES_ROOT');
  INSERT INTO store VALUES (random(), 0);
  PRAGMA user_version = 1;
)";

int WaitWhileBusy(void* /*context*/, int step) {
  if (step >= kBusySteps) return 0;
  std::this_thread::sleep_for(std::chrono::microseconds(step < 20 ? 50 : 1000));
  return 1;
}

bool Execute(sqlite3* connection, const char* sql) {
  return sqlite3_exec(connection, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

// Whether the file's own kind of failure is that there is none.
bool IsMissing(const std::filesystem::path& file) {
  struct stat status {};
  return lstat(file.c_str(), &status) != 0 && errno == ENOENT;
}

// The folder with its links resolved: below it none is followed.
std::filesystem::path WithoutLinksAbove(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::canonical(file.parent_path(), error);
  return error ? file : folder / file.filename();
}

}  // namespace

const char* RegistryDatabase::TextOf(Sql sql) {
  switch (sql) {
    case Sql::BeginRead:
      return "BEGIN";
    case Sql::BeginWrite:
      return "BEGIN IMMEDIATE";
    case Sql::Commit:
      return "COMMIT";
    case Sql::Rollback:
      return "ROLLBACK";
    case Sql::FindSubKey:
      return "SELECT id FROM registry_key WHERE parent = ?1 AND folded = ?2";
    case Sql::InsertKey:
      return "INSERT INTO registry_key(parent, folded, name) VALUES (?1, ?2, ?3)";
    // UNION, not UNION ALL: it ends in a tree that somebody has tied into a ring, too.
    case Sql::DeleteTreeValues:
      return "WITH RECURSIVE tree(id) AS (SELECT ?1 UNION SELECT registry_key.id"
             " FROM registry_key JOIN tree ON registry_key.parent = tree.id)"
             " DELETE FROM registry_value WHERE key IN tree";
    case Sql::DeleteTreeKeys:
      return "WITH RECURSIVE tree(id) AS (SELECT ?1 UNION SELECT registry_key.id"
             " FROM registry_key JOIN tree ON registry_key.parent = tree.id)"
             " DELETE FROM registry_key WHERE id IN tree";
    case Sql::SetAccessList:
      return "UPDATE registry_key SET access_list = ?2 WHERE id = ?1";
    case Sql::ReadValue:
      return "SELECT type, data FROM registry_value WHERE key = ?1 AND folded = ?2";
    case Sql::WriteValue:
      return "INSERT INTO registry_value VALUES (?1, ?2, ?3, ?4, ?5)"
             " ON CONFLICT(key, folded) DO UPDATE SET type = ?4, data = ?5";
    case Sql::DeleteValue:
      return "DELETE FROM registry_value WHERE key = ?1 AND folded = ?2";
    case Sql::SubKeyAt:
      return "SELECT folded, name FROM registry_key WHERE parent = ?1 ORDER BY folded"
             " LIMIT 1 OFFSET ?2";
    case Sql::SubKeyAfter:
      return "SELECT folded, name FROM registry_key WHERE parent = ?1 AND folded > ?2"
             " ORDER BY folded LIMIT 1";
    case Sql::ValueAt:
      return "SELECT folded, name FROM registry_value WHERE key = ?1 ORDER BY folded"
             " LIMIT 1 OFFSET ?2";
    case Sql::ValueAfter:
      return "SELECT folded, name FROM registry_value WHERE key = ?1 AND folded > ?2"
             " ORDER BY folded LIMIT 1";
    case Sql::CountChange:
      return "UPDATE registry_key SET changes = changes + 1 WHERE id = ?1";
    case Sql::ReadChanges:
      return "SELECT changes FROM registry_key WHERE id = ?1";
    case Sql::CountCheckpoint:
      return "UPDATE store SET checkpoints = checkpoints + 1";
    case Sql::Count:
      break;
  }
  return "";
}

std::unique_ptr<RegistryDatabase> RegistryDatabase::Open(const std::filesystem::path& file,
                                                         Opening opening, std::string* problem) {
  problem->clear();
  if (opening == Opening::Existing && IsMissing(file)) return nullptr;
  sqlite3* connection = nullptr;
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW;
  const int code = sqlite3_open_v2(WithoutLinksAbove(file).c_str(), &connection, kFlags, nullptr);
  std::unique_ptr<RegistryDatabase> database(new RegistryDatabase(connection));
  const auto fail = [&]() -> std::unique_ptr<RegistryDatabase> {
    if (opening == Opening::Create || !IsMissing(file)) {
      *problem = connection == nullptr ? "out of memory" : sqlite3_errmsg(connection);
    }
    return nullptr;
  };
  struct stat status {};
  if (code != SQLITE_OK || stat(file.c_str(), &status) != 0) return fail();
  database->file_ = file;
  database->device_ = status.st_dev;
  database->inode_ = status.st_ino;
  if (!database->Configure() || !database->ReadIdentity()) return fail();
  if (database->layout_ == 0) {
    // A file without tables: its maker has not come to them yet, or never did.
    if (opening == Opening::Existing) return nullptr;
    if (!database->CreateTables() || !database->ReadIdentity()) return fail();
  }
  if (database->layout_ != kLayout) {
    *problem = "it has a layout that this program does not know";
    return nullptr;
  }
  return database;
}

RegistryDatabase::~RegistryDatabase() {
  for (auto& statement : prepared_) statement.reset();
  sqlite3_close_v2(connection_);
}

// Every user may write the file, with any program: what else than tables of data stands in its
// schema must not run here, and damaged pages are noticed before they are used.
bool RegistryDatabase::Configure() {
  const auto configure = [this](int option, int value) {
    return sqlite3_db_config(connection_, option, value, nullptr) == SQLITE_OK;
  };
  sqlite3_busy_handler(connection_, WaitWhileBusy, nullptr);
  sqlite3_extended_result_codes(connection_, 1);
  return configure(SQLITE_DBCONFIG_DEFENSIVE, 1) && configure(SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0) &&
         configure(SQLITE_DBCONFIG_ENABLE_TRIGGER, 0) &&
         configure(SQLITE_DBCONFIG_ENABLE_VIEW, 0) && Execute(connection_, kSettings);
}

bool RegistryDatabase::CreateTables() {
  // Going over to the log is the one step that does not wait by itself for another who does it.
  for (int step = 0; !Execute(connection_, "PRAGMA journal_mode = WAL"); ++step) {
    const int code = sqlite3_errcode(connection_);
    if (code != SQLITE_BUSY && code != SQLITE_LOCKED) return false;
    if (WaitWhileBusy(nullptr, step) == 0) return false;
  }
  if (!BeginWrite() || !ReadIdentity()) return false;
  if (layout_ == 0 && !Execute(connection_, kTables)) {
    Rollback();
    return false;
  }
  return Commit();
}

bool RegistryDatabase::ReadIdentity() {
  const SqliteStatement layout(connection_, "PRAGMA user_version");
  SqliteRun layoutRun(layout);
  if (layoutRun.Step() != SqliteStep::Row) return false;
  layout_ = layoutRun.Number(0);
  if (layout_ != kLayout) return true;
  const SqliteStatement store(connection_, "SELECT id FROM store");
  SqliteRun storeRun(store);
  if (storeRun.Step() != SqliteStep::Row) return false;
  storeId_ = storeRun.Number(0);
  return true;
}

bool RegistryDatabase::IsStillThere() const {
  struct stat status {};
  return stat(file_.c_str(), &status) == 0 && status.st_dev == device_ && status.st_ino == inode_;
}

SqliteStatement& RegistryDatabase::Prepared(Sql sql) {
  std::unique_ptr<SqliteStatement>& statement = prepared_[static_cast<std::size_t>(sql)];
  if (statement == nullptr) {
    statement = std::make_unique<SqliteStatement>(connection_, TextOf(sql));
  }
  return *statement;
}

bool RegistryDatabase::Run(Sql sql) {
  return SqliteRun(Prepared(sql)).Step() == SqliteStep::Done;
}

bool RegistryDatabase::BeginRead() {
  return Run(Sql::BeginRead);
}

bool RegistryDatabase::BeginWrite() {
  return Run(Sql::BeginWrite);
}

bool RegistryDatabase::Commit() {
  if (Run(Sql::Commit)) return true;
  Rollback();
  return false;
}

void RegistryDatabase::Rollback() {
  if (InTransaction()) Run(Sql::Rollback);
}

RegistryStatus RegistryDatabase::WriteFailure() const {
  const int code = sqlite3_errcode(connection_) & 0xFF;
  const bool denied = code == SQLITE_READONLY || code == SQLITE_PERM || code == SQLITE_AUTH;
  return denied ? RegistryStatus::AccessDenied : RegistryStatus::WriteFault;
}

std::optional<RegistryKeyId> RegistryDatabase::FindSubKey(RegistryKeyId parent,
                                                          std::string_view folded) {
  SqliteRun run(Prepared(Sql::FindSubKey));
  if (run.Bind(1, parent).Bind(2, folded).Step() != SqliteStep::Row) return std::nullopt;
  return run.Number(0);
}

std::optional<RegistryKeyId> RegistryDatabase::InsertKey(RegistryKeyId parent,
                                                         std::string_view folded,
                                                         std::string_view name) {
  SqliteRun run(Prepared(Sql::InsertKey));
  if (run.Bind(1, parent).Bind(2, folded).Bind(3, name).Step() != SqliteStep::Done) {
    return std::nullopt;
  }
  return sqlite3_last_insert_rowid(connection_);
}

RegistryStatus RegistryDatabase::DeleteTree(RegistryKeyId key) {
  for (const Sql sql : {Sql::DeleteTreeValues, Sql::DeleteTreeKeys}) {
    SqliteRun run(Prepared(sql));
    if (run.Bind(1, key).Step() != SqliteStep::Done) return WriteFailure();
  }
  return RegistryStatus::Success;
}

RegistryStatus RegistryDatabase::SetAccessList(RegistryKeyId key, std::string_view sddl) {
  SqliteRun run(Prepared(Sql::SetAccessList));
  if (run.Bind(1, key).Bind(2, sddl).Step() != SqliteStep::Done) return WriteFailure();
  return sqlite3_changes(connection_) == 0 ? RegistryStatus::FileNotFound : RegistryStatus::Success;
}

RegistryStatus RegistryDatabase::ReadValue(RegistryKeyId key, std::string_view folded,
                                           RegistryType* type, void* data, std::uint32_t* size) {
  SqliteRun run(Prepared(Sql::ReadValue));
  if (run.Bind(1, key).Bind(2, folded).Step() != SqliteStep::Row) {
    return RegistryStatus::FileNotFound;
  }
  if (type != nullptr) *type = static_cast<RegistryType>(run.Number(0));
  return CopyRegistryValue(run.Bytes(1), data, size);
}

RegistryStatus RegistryDatabase::WriteValue(RegistryKeyId key, std::string_view folded,
                                            std::string_view name, RegistryType type,
                                            std::span<const std::byte> data) {
  SqliteRun run(Prepared(Sql::WriteValue));
  run.Bind(1, key).Bind(2, folded).Bind(3, name).Bind(4, static_cast<std::int64_t>(type));
  return run.Bind(5, data).Step() == SqliteStep::Done ? RegistryStatus::Success : WriteFailure();
}

RegistryStatus RegistryDatabase::DeleteValue(RegistryKeyId key, std::string_view folded) {
  SqliteRun run(Prepared(Sql::DeleteValue));
  if (run.Bind(1, key).Bind(2, folded).Step() != SqliteStep::Done) return WriteFailure();
  return sqlite3_changes(connection_) == 0 ? RegistryStatus::FileNotFound : RegistryStatus::Success;
}

std::optional<RegistryDatabase::Name> RegistryDatabase::OneName(SqliteRun& run) {
  if (run.Step() != SqliteStep::Row) return std::nullopt;
  return Name{std::string(run.Text(0)), std::string(run.Text(1))};
}

std::optional<RegistryDatabase::Name> RegistryDatabase::NameAt(RegistryKeyId key, Listing listing,
                                                               std::uint32_t index) {
  SqliteRun run(Prepared(listing == Listing::SubKeys ? Sql::SubKeyAt : Sql::ValueAt));
  return OneName(run.Bind(1, key).Bind(2, std::int64_t{index}));
}

std::optional<RegistryDatabase::Name> RegistryDatabase::NameAfter(RegistryKeyId key,
                                                                  Listing listing,
                                                                  std::string_view folded) {
  SqliteRun run(Prepared(listing == Listing::SubKeys ? Sql::SubKeyAfter : Sql::ValueAfter));
  return OneName(run.Bind(1, key).Bind(2, folded));
}

RegistryStatus RegistryDatabase::CountChange(RegistryKeyId key) {
  SqliteRun run(Prepared(Sql::CountChange));
  if (run.Bind(1, key).Step() != SqliteStep::Done) return WriteFailure();
  return sqlite3_changes(connection_) == 0 ? RegistryStatus::FileNotFound : RegistryStatus::Success;
}

RegistryDatabase::Changes RegistryDatabase::ReadChanges(RegistryKeyId key) {
  SqliteRun run(Prepared(Sql::ReadChanges));
  const SqliteStep result = run.Bind(1, key).Step();
  return {result, result == SqliteStep::Row ? run.Number(0) : 0};
}

bool RegistryDatabase::Checkpoint() {
  int logged = 0;
  int copied = 0;
  sqlite3_wal_checkpoint_v2(connection_, nullptr, SQLITE_CHECKPOINT_PASSIVE, &logged, &copied);
  if (logged < 0 || copied < logged) return false;
  // The first commit after it starts the log anew and waits for the disk: better this one than one
  // that a hand waits for.
  if (BeginWrite() && Run(Sql::CountCheckpoint)) return Commit();
  Rollback();
  return false;
}

}  // namespace platform
