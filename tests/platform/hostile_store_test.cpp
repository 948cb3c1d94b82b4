// The store lies where every user may write, so its files, and what is in them, may be traps.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "platform/linux/sqlite_registry.h"
#include "tests/platform/foreign_connection.h"
#include "tests/platform/open_key.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using support::ForeignConnection;
using support::GetBytes;
using support::SetBytes;

constexpr RegistryRoot kRoot = RegistryRoot::LocalMachine;

class HostileStoreTest : public testing::Test {
 protected:
  HostileStoreTest() {
    fs::create_directory(folder_);
    fs::create_directory(elsewhere_);
  }

  static std::string Contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static bool Exists(const fs::path& path) { return fs::exists(fs::symlink_status(path)); }
  static std::ptrdiff_t Entries(const fs::path& folder) {
    return std::distance(fs::directory_iterator(folder), {});
  }

  static std::unique_ptr<RegistryKey> Create(SqliteRegistry& registry) {
    return registry.CreateKey(kRoot, u"k", kRegistryAllAccess);
  }
  static std::unique_ptr<RegistryKey> Open(SqliteRegistry& registry) {
    return registry.OpenKey(kRoot, u"k", kRegistryAllAccess);
  }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "store";
  fs::path elsewhere_ = temporary_.Path() / "elsewhere";
};

TEST_F(HostileStoreTest, ALinkInTheDatabasesPlaceLeadsNowhere) {
  std::ofstream(elsewhere_ / "empty").close();
  ForeignConnection(elsewhere_ / "database").Execute("CREATE TABLE other(x)");
  for (const char* target : {"empty", "database", "missing"}) {
    SCOPED_TRACE(target);
    const fs::path victim = elsewhere_ / target;
    const std::string before = Contents(victim);
    fs::create_symlink(victim, folder_ / "registry.db");
    SqliteRegistry registry(folder_);
    testing::internal::CaptureStderr();
    EXPECT_EQ(Open(registry), nullptr);
    EXPECT_EQ(Create(registry), nullptr);
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(Contents(victim), before);
    EXPECT_EQ(Entries(elsewhere_), 2);
    fs::remove(folder_ / "registry.db");
  }
}

TEST_F(HostileStoreTest, AFolderMayBeReachedThroughALink) {
  fs::create_directory_symlink(folder_, temporary_.Path() / "link");
  SqliteRegistry registry(temporary_.Path() / "link");
  const auto key = Create(registry);
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(SetBytes(*key, u"a", "1"), RegistryStatus::Success);
  EXPECT_TRUE(Exists(folder_ / "registry.db"));
}

TEST_F(HostileStoreTest, TriggersAndViewsOfTheSchemaDoNotRun) {
  {
    SqliteRegistry maker(folder_);
    SetBytes(*Create(maker), u"a", "1");
  }
  ForeignConnection(folder_ / "registry.db")
      .Execute(
          "CREATE TRIGGER trap AFTER UPDATE ON registry_value BEGIN"
          " UPDATE registry_value SET data = x'00'; END");
  {
    SqliteRegistry registry(folder_);
    const auto key = Open(registry);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(SetBytes(*key, u"a", "2"), RegistryStatus::Success);
    EXPECT_EQ(GetBytes(*key, u"a"), "2");
  }
  ForeignConnection(folder_ / "registry.db")
      .Execute(
          "ALTER TABLE registry_value RENAME TO kept; CREATE VIEW registry_value AS"
          " SELECT key, folded, name, type, x'00' AS data FROM kept");
  SqliteRegistry registry(folder_);
  const auto key = Open(registry);
  ASSERT_NE(key, nullptr);
  EXPECT_EQ(GetBytes(*key, u"a"), std::nullopt);
}

TEST_F(HostileStoreTest, DeletingATreeThatIsARingEnds) {
  SqliteRegistry registry(folder_);
  ASSERT_NE(Create(registry), nullptr);
  ForeignConnection(folder_ / "registry.db")
      .Execute(
          "UPDATE registry_key SET parent ="
          " (SELECT id FROM registry_key WHERE folded = 'K') WHERE id = 1");
  EXPECT_EQ(registry.RemoveTree(kRoot, u"k"), RegistryStatus::Success);
}

}  // namespace
}  // namespace platform
