// What the registry in a database promises beyond the contract: its scopes, what it does when its
// files are not as it left them, and several processes at once.
#include "platform/linux/registry/sqlite_registry.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "platform/fake/fake_registry.h"
#include "tests/platform/registry_contract.h"
#include "tests/support/files.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace support {

std::vector<RegistryBackend> RegistryBackends() {
  struct Store {
    TemporaryFolder folder;
    platform::SqliteRegistry registry{folder.Path() / "store"};
  };
  return {{"Fake", [] { return std::make_shared<platform::FakeRegistry>(); }},
          {"Sqlite", [] {
             const auto store = std::make_shared<Store>();
             return std::shared_ptr<platform::Registry>(store, &store->registry);
           }}};
}

}  // namespace support

namespace platform {
namespace {

namespace fs = std::filesystem;
using std::chrono::seconds;
using std::chrono::steady_clock;
using support::ForkedProcess;
using support::GetBytes;
using support::Line;
using support::SetBytes;

constexpr RegistryRoot kRoot = RegistryRoot::LocalMachine;
constexpr auto kSuccess = RegistryStatus::Success;

class SqliteRegistryTest : public testing::Test {
 protected:
  static std::unique_ptr<RegistryKey> Open(SqliteRegistry& registry) {
    return registry.OpenKey(kRoot, u"k", kRegistryAllAccess);
  }
  static std::unique_ptr<RegistryKey> Create(SqliteRegistry& registry,
                                             std::u16string_view sddl = {}) {
    return registry.CreateKey(kRoot, u"k", kRegistryAllAccess, nullptr, sddl);
  }
  static int NumberIn(RegistryKey& key) { return std::stoi(GetBytes(key, u"a").value_or("0")); }
  fs::path Database() const { return folder_ / "registry.db"; }

  // On a connection that knows nothing of our rules.
  void Execute(const char* sql, fs::path file = {}) {
    if (file.empty()) file = Database();
    sqlite3* connection = nullptr;
    sqlite3_open(file.c_str(), &connection);
    EXPECT_EQ(sqlite3_exec(connection, sql, nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection);
    sqlite3_close(connection);
  }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "a/store";
  SqliteRegistry first_{folder_};
  SqliteRegistry second_{folder_};
  WakeEvent wake_;
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

TEST_F(SqliteRegistryTest, ScopesShowAndHandOnOneState) {
  const auto mine = Create(first_);
  const auto theirs = Open(second_);
  {
    const auto outer = first_.BeginWrite();
    SetBytes(*mine, u"a", "1");
    {
      const auto inner = first_.BeginWrite();
      SetBytes(*mine, u"b", "1");
      EXPECT_EQ(inner->Commit(), kSuccess);
    }
    EXPECT_EQ(GetBytes(*theirs, u"a"), std::nullopt);
    EXPECT_EQ(GetBytes(*theirs, u"b"), std::nullopt);
    EXPECT_EQ(outer->Commit(), kSuccess);
  }
  EXPECT_EQ(GetBytes(*theirs, u"b"), "1");
  {
    const auto reading = second_.BeginRead();
    EXPECT_EQ(GetBytes(*theirs, u"a"), "1");
    SetBytes(*mine, u"a", "2");
    EXPECT_EQ(GetBytes(*theirs, u"a"), "1");
    ASSERT_EQ(theirs->NotifyChange(wake_), kSuccess);
    EXPECT_TRUE(wake_.WaitFor(seconds(5))) << "what the scope hides is not missed";
  }
  EXPECT_EQ(GetBytes(*theirs, u"a"), "2");
}

TEST_F(SqliteRegistryTest, AnotherWritersLockIsWaitedForWithinBounds) {
  const auto key = Create(first_);
  ASSERT_EQ(SetBytes(*key, u"a", "before"), kSuccess);
  const auto theirs = Open(second_);
  auto holding = second_.BeginWrite();
  ASSERT_EQ(SetBytes(*theirs, u"c", "theirs"), kSuccess);
  {
    const auto scope = first_.BeginWrite();
    const auto start = steady_clock::now();
    EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::WriteFault);
    EXPECT_GT(steady_clock::now() - start, seconds(1));
    EXPECT_LT(steady_clock::now() - start, seconds(20));
    EXPECT_EQ(GetBytes(*key, u"a"), "before");
    holding.reset();
    EXPECT_EQ(SetBytes(*key, u"b", "1"), RegistryStatus::WriteFault) << "a half of the scope";
    EXPECT_EQ(scope->Commit(), RegistryStatus::WriteFault);
  }
  EXPECT_EQ(SetBytes(*key, u"a", "after"), kSuccess);
  holding = second_.BeginWrite();
  ASSERT_EQ(SetBytes(*theirs, u"c", "theirs"), kSuccess);
  EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::WriteFault);
  const auto start = steady_clock::now();
  for (int edit = 0; edit < 10; ++edit) {
    EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::WriteFault);
  }
  EXPECT_LT(steady_clock::now() - start, seconds(1)) << "whoever holds it on is waited for once";
}

TEST_F(SqliteRegistryTest, WriteScopesThatEndWithoutCommitUndoTheirWrites) {
  const auto key = Create(first_);
  ASSERT_EQ(SetBytes(*key, u"a", "before"), kSuccess);
  {
    const auto scope = first_.BeginWrite();
    EXPECT_EQ(SetBytes(*key, u"a", "1"), kSuccess);
  }
  EXPECT_EQ(GetBytes(*key, u"a"), "before");
  {
    const auto outer = first_.BeginWrite();
    EXPECT_EQ(SetBytes(*key, u"a", "1"), kSuccess);
    { const auto inner = first_.BeginWrite(); }
    EXPECT_NE(SetBytes(*key, u"a", "2"), kSuccess) << "a half of the scope";
    EXPECT_NE(outer->Commit(), kSuccess);
  }
  EXPECT_EQ(GetBytes(*key, u"a"), "before");
  EXPECT_EQ(SetBytes(*key, u"a", "after"), kSuccess);
}

TEST_F(SqliteRegistryTest, AStoreThatIsTakenAwayIsNotWrittenOn) {
  const auto key = Create(first_);
  ASSERT_EQ(SetBytes(*key, u"a", "old"), kSuccess);
  ASSERT_EQ(key->NotifyChange(wake_), kSuccess);
  fs::remove_all(folder_);
  EXPECT_TRUE(wake_.WaitFor(seconds(5)));
  EXPECT_EQ(GetBytes(*key, u"a"), std::nullopt);

  const auto fresh = Create(second_);
  ASSERT_EQ(SetBytes(*fresh, u"a", "new"), kSuccess);
  EXPECT_EQ(SetBytes(*key, u"a", "old"), RegistryStatus::FileNotFound);
  EXPECT_EQ(key->NotifyChange(wake_), RegistryStatus::FileNotFound);
  const auto reopened = Open(first_);
  ASSERT_NE(reopened, nullptr);
  EXPECT_EQ(GetBytes(*reopened, u"a"), "new");
  ASSERT_EQ(reopened->NotifyChange(wake_), kSuccess);
  SetBytes(*fresh, u"a", "newer");
  EXPECT_TRUE(wake_.WaitFor(seconds(5)));
}

// Nothing else would ever copy the log back while a panel is open for days.
TEST_F(SqliteRegistryTest, TheLogDoesNotGrowForEver) {
  const auto key = Create(first_);
  ASSERT_EQ(key->NotifyChange(wake_), kSuccess);
  for (const char byte : {'a', 'b', 'c', 'd', 'e', 'f', 'g', 'h'}) {
    ASSERT_EQ(SetBytes(*key, u"a", std::string(1U << 20U, byte)), kSuccess);
  }
  const fs::path log = folder_ / "registry.db-wal";
  ASSERT_GT(fs::file_size(log), 5U << 20U);
  const auto deadline = steady_clock::now() + seconds(10);
  while (fs::file_size(log) > 5U << 20U && steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  EXPECT_LE(fs::file_size(log), 5U << 20U);
}

// The store lies where every user may write, so its files, and what is in them, may be traps.

TEST_F(SqliteRegistryTest, ALinkInTheDatabasesPlaceLeadsNowhereButAnEmptyFileIsAStore) {
  fs::create_directories(folder_);
  const fs::path elsewhere = temporary_.Path() / "elsewhere";
  fs::create_directory(elsewhere);
  std::ofstream(elsewhere / "empty").close();
  Execute("CREATE TABLE other(x)", elsewhere / "database");
  for (const char* target : {"empty", "database", "missing"}) {
    SCOPED_TRACE(target);
    const std::string before = support::ReadFile(elsewhere / target);
    fs::create_symlink(elsewhere / target, Database());
    SqliteRegistry registry(folder_);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Open(registry), nullptr);
    EXPECT_EQ(Create(registry), nullptr);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(support::ReadFile(elsewhere / target), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(elsewhere), {}), 2);
    fs::remove(Database());
  }
  // One that is not made yet; its folder may be reached through a link.
  std::ofstream(Database()).close();
  fs::create_directory_symlink(folder_, temporary_.Path() / "link");
  SqliteRegistry registry(temporary_.Path() / "link");
  testing::internal::CaptureStderr();
  EXPECT_EQ(Open(registry), nullptr);
  EXPECT_NE(Create(second_), nullptr);
  EXPECT_NE(Open(registry), nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
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

TEST_F(SqliteRegistryTest, ASchemaThatIsNotOursIsNotUsedAndMakesWayForTheInstaller) {
  for (const char* sql : kForeignSchemas) {
    SCOPED_TRACE(sql);
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    SqliteRegistry open(folder_);
    ASSERT_EQ(SetBytes(*Create(open), u"a", "1"), kSuccess);
    const auto key = Open(open);
    Execute(sql);
    testing::internal::CaptureStderr();
    // Whoever has the store open, and who opens it now.
    EXPECT_EQ(GetBytes(*key, u"a"), std::nullopt);
    EXPECT_NE(SetBytes(*key, u"a", "2"), kSuccess);
    SqliteRegistry registry(folder_);
    EXPECT_EQ(Open(registry), nullptr);
    EXPECT_EQ(Create(registry), nullptr);
    registry.SetDamagedAside();
    EXPECT_NE(testing::internal::GetCapturedStderr().find("registry-damaged-1.db"),
              std::string::npos);
    const auto fresh = Create(registry);
    ASSERT_NE(fresh, nullptr);
    EXPECT_EQ(SetBytes(*fresh, u"a", "3"), kSuccess);
    EXPECT_EQ(GetBytes(*Open(open), u"a"), "3");
  }
}

TEST_F(SqliteRegistryTest, WhatIsTooMuchForAStoreIsLeft) {
  SqliteRegistry registry(folder_);
  const auto key = Create(registry);
  ASSERT_EQ(SetBytes(*key, u"a", "1"), kSuccess);
  Execute(
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

TEST_F(SqliteRegistryTest, DeletingATreeThatIsARingEnds) {
  ASSERT_NE(Create(first_), nullptr);
  Execute(
      "UPDATE registry_key SET parent ="
      " (SELECT id FROM registry_key WHERE folded = 'K') WHERE id = 1");
  EXPECT_EQ(first_.RemoveTree(kRoot, u"k"), kSuccess);
}

// Several processes on one registry.

TEST_F(SqliteRegistryTest, ProcessesThatStartTogetherMakeOneStoreAndLoseNoCount) {
  constexpr int kCounts = 20;
  for (int round = 0; round < 10; ++round) {
    const fs::path folder = folder_ / std::to_string(round);
    std::vector<std::unique_ptr<ForkedProcess>> writers(4);
    for (auto& writer : writers) {
      writer = std::make_unique<ForkedProcess>([&](const Line& parent) {
        parent.Hear();
        SqliteRegistry registry(folder);
        const auto key = Create(registry);
        for (int i = 0; i < kCounts; ++i) {
          const auto scope = registry.BeginWrite();
          if (SetBytes(*key, u"a", std::to_string(NumberIn(*key) + 1)) != kSuccess) {
            _exit(1);
          }
          if (scope->Commit() != kSuccess) _exit(1);
        }
      });
    }
    for (const auto& writer : writers) writer->Talk().Say('g');
    for (const auto& writer : writers) EXPECT_TRUE(writer->Join());
    SqliteRegistry registry(folder);
    EXPECT_EQ(NumberIn(*Create(registry)), 4 * kCounts);
  }
}

TEST_F(SqliteRegistryTest, EveryChangeOfAnotherProcessWakes) {
  constexpr int kRounds = 3000;
  ForkedProcess writer([&](const Line& parent) {
    SqliteRegistry registry(folder_);
    const auto key = Create(registry);
    for (int number = 1; parent.Hear() == 'g'; ++number) {
      const auto scope = number % 3 == 0 ? registry.BeginWrite() : nullptr;
      SetBytes(*key, u"a", "same");
      if (scope != nullptr) static_cast<void>(scope->Commit());
      if (scope == nullptr) parent.Say('d');
    }
  });
  SqliteRegistry registry(folder_);
  const auto key = Create(registry);
  for (int number = 1; number <= kRounds; ++number) {
    const bool isScope = number % 3 == 0;
    const bool armedBefore = number == 1 || number % 2 == 0 || isScope;
    const auto arm = [&] { ASSERT_EQ(key->NotifyChange(wake_), kSuccess); };
    if (armedBefore) arm();
    writer.Talk().Say('g');
    ASSERT_TRUE(isScope || writer.Talk().Hear() == 'd');
    if (!armedBefore) arm();
    ASSERT_TRUE(wake_.WaitFor(seconds(5))) << "change " << number;
    ASSERT_FALSE(wake_.WaitFor(std::chrono::milliseconds(0)));
  }
}

TEST_F(SqliteRegistryTest, TheAccessListOpensTheStoreToEveryUserWhateverTheUmask) {
  constexpr std::u16string_view kOpenToAll = u"D:(A;OICI;KA;;;BU)(A;OICI;KA;;;AU)(A;OICI;KA;;;BA)";
  constexpr std::array kShared = {"registry.db", "registry.db-wal", "registry.db-shm",
                                  "registry.changed"};
  const auto modeOf = [&](const char* name) {
    struct stat status {};
    return stat((folder_ / name).c_str(), &status) == 0 ? status.st_mode & ALLPERMS : 0U;
  };
  // A folder that was there before, closed and sticky.
  fs::create_directories(folder_);
  fs::permissions(folder_, fs::perms(01700));
  ForkedProcess installer([&](const Line& parent) {
    umask(0077);
    SqliteRegistry registry(folder_);
    const auto key = Create(registry, kOpenToAll);
    SetBytes(*key, u"a", "1");
    parent.Say('d');
    parent.Hear();
    // As a user's own connection left them.
    for (const char* name : kShared) chmod((folder_ / name).c_str(), 0600);
    key->SetAccessList(kOpenToAll);
    parent.Say('d');
    parent.Hear();
  });
  for (int look = 0; look < 2; ++look) {
    ASSERT_EQ(installer.Talk().Hear(), 'd');
    EXPECT_EQ(modeOf("."), 0777U);
    for (const char* name : kShared) {
      EXPECT_EQ(modeOf(name), 0666U) << name;
    }
    installer.Talk().Say('g');
  }
}

}  // namespace
}  // namespace platform
