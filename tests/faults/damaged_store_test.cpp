// A database that is damaged: whoever reads it goes on without, only the installer replaces it, and
// what was there stays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/registry/sqlite_registry.h"
#include "tests/faults/machine.h"
#include "tests/faults/rounds.h"

namespace faults {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::size_t kPage = 4096;

void Execute(const fs::path& file, const char* sql) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
}

// Everything in the state folder that could be the damaged database.
std::vector<std::string> Databases(const Machine& machine) {
  std::vector<std::string> contents;
  for (const auto& entry : fs::directory_iterator(machine.State())) {
    if (entry.path().extension() == ".db") contents.push_back(ReadFile(entry.path()));
  }
  return contents;
}

class DamagedStoreTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    installed_ = std::make_unique<support::Tree>(InstalledTree(Tuning::Small));
    machine_ = std::make_unique<Machine>(Tuning::Small);
    machine_->PutTuning();
    ASSERT_EQ(machine_->Install().exitStatus, 0);
    whole_ = std::make_unique<std::string>(ReadFile(machine_->Database()));
    ASSERT_GT(whole_->size(), 20 * kPage);
  }
  static void TearDownTestSuite() {
    installed_.reset();
    machine_.reset();
    whole_.reset();
  }

  // The state folder with nothing in it but this database.
  static void PutDatabase(std::string_view bytes) {
    machine_->RemoveState();
    fs::create_directory(machine_->State());
    WriteFile(machine_->Database(), bytes);
  }

  static support::ProcessResult ReadAll() {
    return machine_->RunTool("regtool", {"query", "HKLM\\SOFTWARE", "/s"});
  }

  static bool IsKept(const std::string& damaged) {
    const std::vector<std::string> databases = Databases(*machine_);
    return std::ranges::find(databases, damaged) != databases.end();
  }

  static inline std::unique_ptr<support::Tree> installed_;
  static inline std::unique_ptr<Machine> machine_;
  static inline std::unique_ptr<std::string> whole_;
};

struct Damage {
  std::string name;
  std::function<std::string(std::string)> spoil;
  // What is missing reads as zeros, in a page that has values enough: only a full check sees it.
  bool isSilent = false;
};

std::vector<Damage> Damages() {
  std::vector<Damage> damages = {
      {"no header", [](std::string bytes) { return bytes.replace(0, 100, 100, '\0'); }},
      {"another kind of file", [](const std::string&) { return std::string(10'000, 'x'); }},
      {"impossible page size", [](std::string bytes) { return bytes.replace(16, 2, "\x12\x34"); }},
      {"no table of tables", [](std::string bytes) { return bytes.replace(100, 300, 300, 'x'); }},
      {"every page but the first",
       [](std::string bytes) {
         return bytes.replace(kPage, bytes.size() - kPage, bytes.size() - kPage, '\xA5');
       }},
      {"one page in the middle",
       [](std::string bytes) {
         return bytes.replace(bytes.size() / kPage / 2 * kPage, kPage, kPage, '\xFF');
       }},
      {"the last page",
       [](std::string bytes) { return bytes.replace(bytes.size() - kPage, kPage, kPage, '\0'); }}};
  for (const std::size_t left : {std::size_t{2}, std::size_t{15}, std::size_t{99}, std::size_t{100},
                                 std::size_t{511}, kPage - 1, kPage, kPage + 1, 20 * kPage}) {
    damages.push_back({"cut to " + std::to_string(left),
                       [left](const std::string& bytes) { return bytes.substr(0, left); }});
  }
  damages.push_back(
      {"cut within the last page",
       [](const std::string& bytes) { return bytes.substr(0, bytes.size() - kPage / 2); }, true});
  return damages;
}

TEST_F(DamagedStoreTest, IsToldOnceAndLeftAloneByReadersAndNotReplacedByWriters) {
  for (const Damage& damage : Damages()) {
    SCOPED_TRACE(damage.name);
    const std::string damaged = damage.spoil(*whole_);
    PutDatabase(damaged);
    const support::ProcessResult reading = ReadAll();
    EXPECT_LE(reading.exitStatus, 1) << "no end by a signal";
    EXPECT_EQ(Complaints(reading.errors), damage.isSilent ? 0 : 1) << reading.errors;
    EXPECT_TRUE(ReadFile(machine_->Database()) == damaged);

    const support::ProcessResult writing =
        machine_->RunTool("regtool", {"add", "HKLM\\SOFTWARE\\Other", "/v", "a", "/d", "b", "/f"});
    EXPECT_LE(writing.exitStatus, 1) << "no end by a signal";
    EXPECT_LE(Complaints(writing.errors), 1) << writing.errors;
    EXPECT_EQ(Databases(*machine_).size(), 1U);
  }
}

TEST_F(DamagedStoreTest, TheInstallerKeepsItUnderANewNameAndMakesANewOne) {
  for (const Damage& damage : Damages()) {
    SCOPED_TRACE(damage.name);
    const std::string damaged = damage.spoil(*whole_);
    PutDatabase(damaged);
    machine_->PutTuning();
    const support::ProcessResult result = machine_->Install();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.errors, HasSubstr("now called registry-damaged-1.db"));
    EXPECT_EQ(FirstDifference(machine_->Stored(), *installed_), "");
    EXPECT_TRUE(ReadFile(machine_->State() / "registry-damaged-1.db") == damaged);
  }
}

TEST_F(DamagedStoreTest, EveryDamagedStoreHasANameOfItsOwn) {
  for (int number = 1; number <= 3; ++number) {
    const std::string damaged(10'000, static_cast<char>('0' + number));
    if (number == 1) PutDatabase(damaged);
    WriteFile(machine_->Database(), damaged);
    EXPECT_EQ(machine_->Install().exitStatus, 0);
    EXPECT_EQ(Databases(*machine_).size(), static_cast<std::size_t>(number) + 1);
    EXPECT_TRUE(ReadFile(machine_->State() /
                         ("registry-damaged-" + std::to_string(number) + ".db")) == damaged);
  }
}

TEST_F(DamagedStoreTest, TheInstallerReplacesAStoreThatLacksTables) {
  for (const char* sql : {"DROP TABLE store", "DELETE FROM store", "DROP TABLE registry_value",
                          "DROP TABLE registry_key"}) {
    SCOPED_TRACE(sql);
    PutDatabase(*whole_);
    Execute(machine_->Database(), sql);
    machine_->PutTuning();
    EXPECT_THAT(machine_->Install().errors, HasSubstr("now called registry-damaged-1.db"));
    EXPECT_EQ(FirstDifference(machine_->Stored(), *installed_), "");
  }
}

// SQLite would take the empty database for a new one and throw its log away.
TEST_F(DamagedStoreTest, AnEmptiedDatabaseDoesNotCostItsLog) {
  PutDatabase(*whole_);
  const fs::path log = machine_->Database().native() + "-wal";
  std::string logged;
  {
    platform::SqliteRegistry registry(machine_->State());
    support::PutDword(registry, u"SOFTWARE\\Other", u"a", 1);
    logged = ReadFile(log);
  }
  ASSERT_FALSE(logged.empty());
  WriteFile(machine_->Database(), "");
  WriteFile(log, logged);
  EXPECT_EQ(Complaints(ReadAll().errors), 1);
  EXPECT_TRUE(ReadFile(log) == logged);

  machine_->PutTuning();
  EXPECT_EQ(machine_->Install().exitStatus, 0);
  EXPECT_TRUE(ReadFile(machine_->State() / "registry-damaged-1.db-wal") == logged);
  EXPECT_EQ(FirstDifference(machine_->Stored(), *installed_), "");
}

TEST_F(DamagedStoreTest, TheInstallerLeavesWhatItDoesNotKnow) {
  const auto spoil = {"PRAGMA user_version = 2", "PRAGMA user_version = 99"};
  for (const char* sql : spoil) {
    PutDatabase(*whole_);
    Execute(machine_->Database(), sql);
    const std::string newer = ReadFile(machine_->Database());
    machine_->PutTuning();
    const support::ProcessResult result = machine_->Install();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(Complaints(result.errors), 2) << result.errors;
    EXPECT_TRUE(ReadFile(machine_->Database()) == newer);
    EXPECT_EQ(Databases(*machine_).size(), 1U);
  }
}

TEST_F(DamagedStoreTest, OpenStoresGoOnInTheNewOne) {
  PutDatabase(*whole_);
  platform::SqliteRegistry registry(machine_->State());
  const std::u16string path = u"SOFTWARE\\Norvane\\Velsona";
  const auto open = support::OpenToRead(registry, path);
  ASSERT_TRUE(open);
  platform::WakeEvent wake;
  ASSERT_EQ(open->NotifyChange(wake), platform::RegistryStatus::Success);

  // What is read from now on is not in anybody's memory.
  WriteFile(machine_->Database(), std::string(whole_->size(), 'x'));
  machine_->PutTuning();
  EXPECT_EQ(machine_->Install().exitStatus, 0);
  EXPECT_TRUE(wake.WaitFor(std::chrono::seconds(5)));
  EXPECT_EQ(FirstDifference(support::ReadTree(registry, std::u16string(kVendor)), *installed_), "");
  support::PutDword(registry, path, u"HardwareOutputPath", 3);
  EXPECT_NE(FirstDifference(machine_->Stored(), *installed_), "") << "others see what is written";
}

// Damage in any place: nothing is lost, and the installer gets every value through.
TEST_F(DamagedStoreTest, SurvivesNoiseAnywhere) {
  std::mt19937 random = Random();
  int replaced = 0;
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    std::string damaged = *whole_;
    const int last = static_cast<int>(damaged.size()) - 1;
    const int first = Between(random, 0, last);
    const int end = std::min(last, first + Between(random, 1, 2000));
    for (int i = first; i <= end; ++i) {
      damaged[static_cast<std::size_t>(i)] = static_cast<char>(Between(random, 0, 255));
    }
    SCOPED_TRACE("bytes " + std::to_string(first) + " to " + std::to_string(end));
    PutDatabase(damaged);
    const support::ProcessResult reading = ReadAll();
    EXPECT_LE(reading.exitStatus, 1) << "no end by a signal";
    EXPECT_LE(Complaints(reading.errors), 1) << reading.errors;
    EXPECT_TRUE(IsKept(damaged));

    machine_->PutTuning();
    const support::ProcessResult installing = machine_->Install();
    EXPECT_EQ(installing.exitStatus, 0);
    if (Databases(*machine_).size() == 1) continue;
    ++replaced;
    EXPECT_TRUE(IsKept(damaged));
    EXPECT_EQ(FirstDifference(machine_->Stored(), *installed_), "");
  }
  RecordProperty("replaced", replaced);
}

}  // namespace
}  // namespace faults
