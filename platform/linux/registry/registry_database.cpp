#include "platform/linux/registry/registry_database.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "platform/linux/registry/registry_schema.h"
#include "platform/registry_rules.h"

namespace platform {
namespace {

// Damaged pages are noticed before they are used, the schema among them: nothing of it has been
// read when this runs.
constexpr const char* kFirstSettings =
    "PRAGMA cell_size_check = ON; PRAGMA temp_store = MEMORY;"
    // Without a watcher thread in the process the log is copied back only when it has grown to 64
    // MiB.
    "PRAGMA wal_autocheckpoint = 16384; PRAGMA journal_size_limit = 4194304;";

constexpr const char* kLastSettings = "PRAGMA synchronous = NORMAL";

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

// An empty database with a log has lost what the log goes on from. SQLite, to which one byte is
// empty too, would throw the log away.
bool HasOnlyItsLog(const std::filesystem::path& file, const struct stat& status) {
  struct stat log {};
  return status.st_size <= 1 && stat((file.native() + "-wal").c_str(), &log) == 0 &&
         log.st_size > 0;
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
    case Sql::SchemaVersion:
      return "PRAGMA schema_version";
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
                                                         Opening opening, LockPatience& patience,
                                                         RegistryProblem* problem) {
  *problem = {};
  if (opening == Opening::Existing && IsMissing(file)) return nullptr;
  std::unique_ptr<RegistryDatabase> database(new RegistryDatabase(patience));
  if (!database->OpenFile(file, opening, problem)) return nullptr;
  return database;
}

bool RegistryDatabase::OpenFile(const std::filesystem::path& file, Opening opening,
                                RegistryProblem* problem) {
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW;
  const int code = sqlite3_open_v2(WithoutLinksAbove(file).c_str(), &connection_, kFlags, nullptr);
  const auto fail = [&] {
    if (opening == Opening::Create || !IsMissing(file)) *problem = Problem();
    return false;
  };
  struct stat status {};
  if (code != SQLITE_OK || stat(file.c_str(), &status) != 0) return fail();
  file_ = file;
  device_ = status.st_dev;
  inode_ = status.st_ino;
  if (HasOnlyItsLog(file, status)) {
    *problem = {RegistryProblem::Kind::Damaged, "it is empty, but its log is not"};
    return false;
  }
  const bool isProtected = guard_.Protect(connection_) && Execute(kFirstSettings);
  if (!isProtected || !ReadIdentityAtOnce()) return fail();
  if (layout_ == 0) {
    // A file without tables: its maker has not come to them yet, or never did.
    if (opening == Opening::Existing) return false;
    if (!CreateTables() || !ReadIdentityAtOnce()) return fail();
  }
  if (layout_ == kRegistryLayout) return Execute(kLastSettings) || fail();
  *problem = {RegistryProblem::Kind::Other, "it has a layout that this program does not know"};
  return false;
}

RegistryProblem RegistryDatabase::Problem() const {
  if (connection_ == nullptr) return {RegistryProblem::Kind::Other, "out of memory"};
  const int code = failure_ == SQLITE_OK ? sqlite3_errcode(connection_) : failure_;
  const int kind = code & 0xFF;
  // Tables that are not ours are damage, and so is what takes more work or room than a store can.
  const bool damaged = kind == SQLITE_NOTADB || kind == SQLITE_CORRUPT || kind == SQLITE_ERROR ||
                       kind == SQLITE_SCHEMA || kind == SQLITE_INTERRUPT || kind == SQLITE_TOOBIG;
  return {damaged ? RegistryProblem::Kind::Damaged : RegistryProblem::Kind::Other,
          sqlite3_errstr(code)};
}

RegistryDatabase::~RegistryDatabase() {
  for (auto& statement : prepared_) statement.reset();
  sqlite3_close_v2(connection_);
}

bool RegistryDatabase::Execute(const char* sql) {
  const int code = sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK && failure_ == SQLITE_OK) failure_ = code;
  return code == SQLITE_OK;
}

bool RegistryDatabase::CreateTables() {
  // Going over to the log is the one step that does not wait by itself for another who does it.
  for (int step = 0; !Execute("PRAGMA journal_mode = WAL"); ++step) {
    const int code = sqlite3_errcode(connection_);
    if (code != SQLITE_BUSY && code != SQLITE_LOCKED) return false;
    if (!guard_.Patience().Wait(step)) return false;
    failure_ = SQLITE_OK;
  }
  if (!Run(Sql::BeginWrite) || !ReadIdentity()) return false;
  if (layout_ == 0 && !Execute(RegistrySchemaSql().c_str())) {
    Rollback();
    return false;
  }
  return Commit();
}

bool RegistryDatabase::ReadIdentityAtOnce() {
  return Run(Sql::BeginRead) && ReadIdentity() && Commit();
}

bool RegistryDatabase::ReadIdentity() {
  const SqliteStatement layout(connection_, "PRAGMA user_version", &failure_);
  SqliteRun layoutRun(layout);
  if (layoutRun.Step() != SqliteStep::Row) return false;
  layout_ = layoutRun.Number(0);
  if (layout_ != kRegistryLayout) return true;
  if (!KnowsSchema()) return false;
  const SqliteStatement store(connection_, "SELECT id FROM store", &failure_);
  SqliteRun storeRun(store);
  const SqliteStep found = storeRun.Step();
  if (found == SqliteStep::Done) failure_ = SQLITE_CORRUPT;
  if (found != SqliteStep::Row) return false;
  storeId_ = storeRun.Number(0);
  return true;
}

// Others may change the schema at any time; a transaction goes on with the one that it began with.
bool RegistryDatabase::KnowsSchema() {
  SqliteRun run(Prepared(Sql::SchemaVersion));
  if (run.Step() != SqliteStep::Row) return false;
  const std::int64_t version = run.Number(0);
  if (version == schemaVersion_) return true;
  guard_.Allow(RegistryGuard::Work::Opening);
  if (!HasRegistrySchema(connection_, &failure_)) {
    if (failure_ == SQLITE_OK) failure_ = SQLITE_SCHEMA;
    return false;
  }
  schemaVersion_ = version;
  return true;
}

bool RegistryDatabase::IsStillThere() const {
  struct stat status {};
  return stat(file_.c_str(), &status) == 0 && status.st_dev == device_ && status.st_ino == inode_;
}

SqliteStatement& RegistryDatabase::Prepared(Sql sql) {
  guard_.Allow(RegistryGuard::Work::Statement);
  std::unique_ptr<SqliteStatement>& statement = prepared_[static_cast<std::size_t>(sql)];
  // What could not be prepared for want of memory, or of the disk's answer, may be now.
  if (statement == nullptr || statement->Native() == nullptr) {
    statement = std::make_unique<SqliteStatement>(connection_, TextOf(sql), &failure_);
  }
  return *statement;
}

bool RegistryDatabase::Run(Sql sql) {
  return SqliteRun(Prepared(sql)).Step() == SqliteStep::Done;
}

bool RegistryDatabase::BeginRead() {
  return Run(Sql::BeginRead) && HasOurSchema();
}

bool RegistryDatabase::BeginWrite() {
  if (!Run(Sql::BeginWrite)) return false;
  guard_.Patience().Renew();
  return HasOurSchema();
}

// Ends the transaction that has just begun when it is none of ours.
bool RegistryDatabase::HasOurSchema() {
  if (KnowsSchema()) return true;
  Rollback();
  return false;
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

std::string RegistryDatabase::TakeFailure() {
  const int code = std::exchange(failure_, SQLITE_OK);
  return code == SQLITE_OK ? std::string() : sqlite3_errstr(code);
}

bool RegistryDatabase::IsWhole() {
  sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  if (BeginRead()) {
    guard_.Allow(RegistryGuard::Work::Check);
    const SqliteStatement check(connection_, "PRAGMA integrity_check(1)", &failure_);
    SqliteRun run(check);
    if (run.Step() == SqliteStep::Row) return run.Text(0) == "ok";
  }
  return Problem().kind != RegistryProblem::Kind::Damaged;
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
