// What the registry in a database promises beyond the contract: its scopes, and what it does when
// its files are not as it left them.
#include "platform/linux/registry/sqlite_registry.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>

#include "platform/wake_event.h"
#include "tests/platform/open_key.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;
using support::GetBytes;
using support::SetBytes;

constexpr RegistryRoot kRoot = RegistryRoot::LocalMachine;

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

class SqliteRegistryTest : public testing::Test {
 protected:
  std::unique_ptr<RegistryKey> Open(SqliteRegistry& registry) {
    return registry.OpenKey(kRoot, u"k", kRegistryAllAccess);
  }
  std::unique_ptr<RegistryKey> Create(SqliteRegistry& registry) {
    return registry.CreateKey(kRoot, u"k", kRegistryAllAccess);
  }
  fs::path Database() const { return folder_ / "registry.db"; }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "a/store";
  SqliteRegistry first_{folder_};
  SqliteRegistry second_{folder_};
};

TEST_F(SqliteRegistryTest, ReadsMakeNothing) {
  {
    const auto reading = first_.BeginRead();
    const auto writing = first_.BeginWrite();
    EXPECT_EQ(Open(first_), nullptr);
    EXPECT_EQ(first_.OpenRoot(kRoot), nullptr);
    EXPECT_EQ(first_.RemoveTree(kRoot, u"k"), RegistryStatus::FileNotFound);
    EXPECT_EQ(first_.CreateKey(kRoot, u"a\\", kRegistryAllAccess), nullptr);
  }
  EXPECT_FALSE(fs::exists(temporary_.Path() / "a"));
}

TEST_F(SqliteRegistryTest, WriteScopesReachOthersAsAWhole) {
  const auto mine = Create(first_);
  const auto theirs = Open(second_);
  {
    const auto outer = first_.BeginWrite();
    SetBytes(*mine, u"a", "1");
    {
      const auto inner = first_.BeginWrite();
      SetBytes(*mine, u"b", "1");
      EXPECT_EQ(inner->Commit(), RegistryStatus::Success);
    }
    EXPECT_EQ(GetBytes(*theirs, u"a"), std::nullopt);
    EXPECT_EQ(GetBytes(*theirs, u"b"), std::nullopt);
    EXPECT_EQ(outer->Commit(), RegistryStatus::Success);
  }
  EXPECT_EQ(GetBytes(*theirs, u"a"), "1");
  EXPECT_EQ(GetBytes(*theirs, u"b"), "1");
}

TEST_F(SqliteRegistryTest, WriteScopesThatEndWithoutCommitUndoTheirWrites) {
  const auto key = Create(first_);
  ASSERT_EQ(SetBytes(*key, u"a", "before"), RegistryStatus::Success);
  {
    const auto scope = first_.BeginWrite();
    EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::Success);
  }
  EXPECT_EQ(GetBytes(*key, u"a"), "before");
  {
    const auto outer = first_.BeginWrite();
    EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::Success);
    { const auto inner = first_.BeginWrite(); }
    EXPECT_NE(SetBytes(*key, u"a", "2"), RegistryStatus::Success) << "a half of the scope";
    EXPECT_NE(outer->Commit(), RegistryStatus::Success);
  }
  EXPECT_EQ(GetBytes(*key, u"a"), "before");
  EXPECT_EQ(SetBytes(*key, u"a", "after"), RegistryStatus::Success);
}

TEST_F(SqliteRegistryTest, ReadScopesShowOneState) {
  const auto mine = Create(first_);
  SetBytes(*mine, u"a", "1");
  const auto theirs = Open(second_);
  {
    const auto reading = second_.BeginRead();
    EXPECT_EQ(GetBytes(*theirs, u"a"), "1");
    SetBytes(*mine, u"a", "2");
    EXPECT_EQ(GetBytes(*theirs, u"a"), "1");
  }
  EXPECT_EQ(GetBytes(*theirs, u"a"), "2");
}

TEST_F(SqliteRegistryTest, ArmingInAReadScopeDoesNotMissWhatTheScopeHides) {
  const auto mine = Create(first_);
  SetBytes(*mine, u"a", "1");
  WakeEvent wake;
  const auto theirs = Open(second_);
  const auto reading = second_.BeginRead();
  ASSERT_EQ(GetBytes(*theirs, u"a"), "1");
  SetBytes(*mine, u"a", "2");
  ASSERT_EQ(theirs->NotifyChange(wake), RegistryStatus::Success);
  EXPECT_TRUE(wake.WaitFor(std::chrono::seconds(5)));
}

TEST_F(SqliteRegistryTest, ChangesThatNobodyToldAreNoticed) {
  WakeEvent wake;
  const auto key = Create(first_);
  ForeignConnection foreign(Database());
  for (int round = 0; round < 5; ++round) {
    ASSERT_EQ(key->NotifyChange(wake), RegistryStatus::Success);
    foreign.Execute("UPDATE registry_key SET changes = changes + 1 WHERE folded = 'K'");
    ASSERT_TRUE(wake.WaitFor(std::chrono::seconds(5)));
  }
}

TEST_F(SqliteRegistryTest, AnotherWritersLockIsWaitedForWithinBounds) {
  const auto key = Create(first_);
  ASSERT_EQ(SetBytes(*key, u"a", "before"), RegistryStatus::Success);
  ForeignConnection foreign(Database());
  foreign.Execute("BEGIN IMMEDIATE");
  const auto start = steady_clock::now();
  {
    const auto scope = first_.BeginWrite();
    EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::WriteFault);
    EXPECT_EQ(GetBytes(*key, u"a"), "before");
    foreign.Execute("COMMIT");
    EXPECT_EQ(SetBytes(*key, u"b", "1"), RegistryStatus::WriteFault) << "a half of the scope";
    EXPECT_EQ(scope->Commit(), RegistryStatus::WriteFault);
  }
  EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(6));
  EXPECT_EQ(SetBytes(*key, u"a", "after"), RegistryStatus::Success);
}

TEST_F(SqliteRegistryTest, AStoppedProcesssLockIsWaitedForOnce) {
  // Made before there is a database that the two would share.
  support::ForkedProcess holder([&](const support::Line& parent) {
    while (parent.Hear() == 'b') {
      ForeignConnection foreign(Database());
      foreign.Execute("BEGIN IMMEDIATE");
      parent.Say('b');
      parent.Hear();
      foreign.Execute("COMMIT");
      parent.Say('c');
    }
  });
  const auto key = Create(first_);
  const auto write = [&] { return SetBytes(*key, u"a", "1"); };
  for (int round = 0; round < 2; ++round) {
    holder.Talk().Say('b');
    ASSERT_EQ(holder.Talk().Hear(), 'b');
    holder.Stop();
    const auto start = steady_clock::now();
    EXPECT_EQ(write(), RegistryStatus::WriteFault);
    const auto second = steady_clock::now();
    EXPECT_GT(second - start, std::chrono::seconds(1));
    for (int edit = 0; edit < 10; ++edit) EXPECT_EQ(write(), RegistryStatus::WriteFault);
    EXPECT_LT(steady_clock::now() - second, std::chrono::seconds(1));
    holder.Signal(SIGCONT);
    holder.Talk().Say('c');
    ASSERT_EQ(holder.Talk().Hear(), 'c');
    EXPECT_EQ(write(), RegistryStatus::Success);
  }
}

TEST_F(SqliteRegistryTest, AnEmptyFileIsAStoreThatIsNotMadeYet) {
  fs::create_directories(folder_);
  std::ofstream(Database()).close();
  testing::internal::CaptureStderr();
  EXPECT_EQ(Open(first_), nullptr);
  EXPECT_NE(Create(second_), nullptr);
  EXPECT_NE(Open(first_), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(SqliteRegistryTest, AStoreThatIsTakenAwayIsNotWrittenOn) {
  WakeEvent wake;
  const auto key = Create(first_);
  ASSERT_EQ(SetBytes(*key, u"a", "old"), RegistryStatus::Success);
  ASSERT_EQ(key->NotifyChange(wake), RegistryStatus::Success);
  fs::remove_all(folder_);
  EXPECT_TRUE(wake.WaitFor(std::chrono::seconds(5)));
  EXPECT_EQ(GetBytes(*key, u"a"), std::nullopt);

  const auto fresh = Create(second_);
  ASSERT_EQ(SetBytes(*fresh, u"a", "new"), RegistryStatus::Success);
  EXPECT_EQ(SetBytes(*key, u"a", "old"), RegistryStatus::FileNotFound);
  EXPECT_EQ(key->NotifyChange(wake), RegistryStatus::FileNotFound);
  const auto reopened = Open(first_);
  ASSERT_NE(reopened, nullptr);
  EXPECT_EQ(GetBytes(*reopened, u"a"), "new");
  ASSERT_EQ(reopened->NotifyChange(wake), RegistryStatus::Success);
  SetBytes(*fresh, u"a", "newer");
  EXPECT_TRUE(wake.WaitFor(std::chrono::seconds(5)));
}

// Nothing else would ever copy the log back while a panel is open for days.
TEST_F(SqliteRegistryTest, TheLogDoesNotGrowForEver) {
  WakeEvent wake;
  const auto key = Create(first_);
  ASSERT_EQ(key->NotifyChange(wake), RegistryStatus::Success);
  for (const char byte : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
    ASSERT_EQ(SetBytes(*key, u"a", std::string(1U << 20U, byte)), RegistryStatus::Success);
  }
  const fs::path log = folder_ / "registry.db-wal";
  ASSERT_GT(fs::file_size(log), 5U << 20U);
  const auto deadline = steady_clock::now() + std::chrono::seconds(10);
  while (fs::file_size(log) > 5U << 20U && steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_LE(fs::file_size(log), 5U << 20U);
}

// The store lies where every user may write, so its files, and what is in them, may be traps.
class HostileStoreTest : public SqliteRegistryTest {
 protected:
  HostileStoreTest() { fs::create_directories(folder_); }

  static std::string Contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(HostileStoreTest, ALinkInTheDatabasesPlaceLeadsNowhere) {
  const fs::path elsewhere = temporary_.Path() / "elsewhere";
  fs::create_directory(elsewhere);
  std::ofstream(elsewhere / "empty").close();
  ForeignConnection(elsewhere / "database").Execute("CREATE TABLE other(x)");
  for (const char* target : {"empty", "database", "missing"}) {
    SCOPED_TRACE(target);
    const fs::path victim = elsewhere / target;
    const std::string before = Contents(victim);
    fs::create_symlink(victim, Database());
    SqliteRegistry registry(folder_);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Open(registry), nullptr);
    EXPECT_EQ(Create(registry), nullptr);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(Contents(victim), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(elsewhere), {}), 2);
    fs::remove(Database());
  }
}

TEST_F(HostileStoreTest, AFolderMayBeReachedThroughALink) {
  fs::create_directory_symlink(folder_, temporary_.Path() / "link");
  SqliteRegistry registry(temporary_.Path() / "link");
  const auto key = Create(registry);
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::Success);
  EXPECT_TRUE(fs::exists(Database()));
}

// Each would run for as long as its maker likes, or do something else than it says.
constexpr const char* kForeignSchemas[] = {
    "CREATE TRIGGER trap AFTER UPDATE ON registry_value BEGIN SELECT 1; END",
    "CREATE VIEW other AS SELECT 1",
    "CREATE TABLE other(x)",
    "CREATE INDEX other ON registry_value(hex(zeroblob(length(data) * 1000000)))",
    "ALTER TABLE registry_value ADD COLUMN more GENERATED ALWAYS AS (hex(zeroblob(4000000)))",
    "ALTER TABLE registry_value ADD COLUMN more CHECK (length(hex(zeroblob(4000000))) > 0)",
    "ALTER TABLE store RENAME TO kept; CREATE VIEW store AS"
    " WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT max(i) AS id FROM n",
    "DROP TABLE registry_value; CREATE TABLE registry_value(key INTEGER NOT NULL, folded TEXT,"
    " name AS (hex(zeroblob(4000000))), type INTEGER, data BLOB, PRIMARY KEY(key, folded))",
    "DROP TABLE registry_value",
};

TEST_F(HostileStoreTest, ASchemaThatIsNotOursIsNotUsedAndMakesWayForTheInstaller) {
  for (const char* sql : kForeignSchemas) {
    SCOPED_TRACE(sql);
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    SqliteRegistry open(folder_);
    ASSERT_EQ(SetBytes(*Create(open), u"a", "1"), RegistryStatus::Success);
    const auto key = Open(open);
    ForeignConnection(Database()).Execute(sql);
    testing::internal::CaptureStderr();
    // Whoever has the store open, and who opens it now.
    EXPECT_EQ(GetBytes(*key, u"a"), std::nullopt);
    EXPECT_NE(SetBytes(*key, u"a", "2"), RegistryStatus::Success);
    SqliteRegistry registry(folder_);
    EXPECT_EQ(Open(registry), nullptr);
    EXPECT_EQ(Create(registry), nullptr);
    registry.SetDamagedAside();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("registry-damaged-1.db"),
              std::string::npos);
    const auto fresh = Create(registry);
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(SetBytes(*fresh, u"a", "3"), RegistryStatus::Success);
    EXPECT_EQ(GetBytes(*Open(open), u"a"), "3");
  }
}

TEST_F(HostileStoreTest, WhatIsTooMuchForAStoreIsLeft) {
  SqliteRegistry registry(folder_);
  const auto key = Create(registry);
  ASSERT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::Success);
  ForeignConnection(Database())
      .Execute(
          "INSERT INTO registry_value SELECT id, 'B', 'b', 3, zeroblob(5000000) FROM registry_key"
          " WHERE folded = 'K';"
          "WITH RECURSIVE n(i) AS (SELECT 10 UNION ALL SELECT i + 1 FROM n LIMIT 700000)"
          " INSERT INTO registry_key(id, parent, folded, name) SELECT i, i - 1, 'X', 'x' FROM n;"
          "UPDATE registry_key SET parent = (SELECT id FROM registry_key WHERE folded = 'K')"
          " WHERE id = 10");
  testing::internal::CaptureStderr();
  EXPECT_EQ(GetBytes(*key, u"b"), std::nullopt);
  EXPECT_EQ(GetBytes(*key, u"a"), "1");
  EXPECT_EQ(registry.RemoveTree(kRoot, u"k"), RegistryStatus::WriteFault);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_NE(told.find("too big"), std::string::npos) << told;
  EXPECT_NE(told.find("interrupted"), std::string::npos) << told;
}

TEST_F(HostileStoreTest, DeletingATreeThatIsARingEnds) {
  SqliteRegistry registry(folder_);
  ASSERT_NE(Create(registry), nullptr);
  ForeignConnection(Database())
      .Execute(
          "UPDATE registry_key SET parent ="
          " (SELECT id FROM registry_key WHERE folded = 'K') WHERE id = 1");
  EXPECT_EQ(registry.RemoveTree(kRoot, u"k"), RegistryStatus::Success);
}

}  // namespace
}  // namespace platform
