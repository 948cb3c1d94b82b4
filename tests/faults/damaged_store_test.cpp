// A database that is damaged: whoever reads it goes on without, only the installer replaces it, and
// what was there stays.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "platform/linux/registry/sqlite_registry.h"
#include "tests/faults/machine.h"

namespace faults {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr std::size_t kPage = 4096;

class DamagedStoreTest : public testing::Test {
 protected:
  DamagedStoreTest() {
    EXPECT_EQ(machine_.Install().exitStatus, 0);
    whole_ = ReadFile(machine_.Database());
    EXPECT_GT(whole_.size(), 20 * kPage);
  }

  // The state folder with nothing in it but this database.
  void PutDatabase(std::string_view bytes) {
    fs::remove_all(machine_.State());
    fs::create_directory(machine_.State());
    WriteFile(machine_.Database(), bytes);
  }

  fs::path Replaced() const { return machine_.State() / "registry-damaged-1.db"; }
  bool IsReplaced() const { return fs::exists(Replaced()); }

  // Neither a reader nor a writer dies of it, and the reader leaves it alone.
  void ExpectOthersSurvive(const std::string& damaged, int complaints) {
    const auto reading = machine_.RunTool("regtool", {"query", "HKLM\\SOFTWARE", "/s"});
    EXPECT_LE(reading.exitStatus, 1) << "no end by a signal";
    EXPECT_LE(Complaints(reading.errors), 1) << reading.errors;
    if (complaints >= 0) {
      EXPECT_EQ(Complaints(reading.errors), complaints) << reading.errors;
    }
    EXPECT_TRUE(ReadFile(machine_.Database()) == damaged);
    const auto writing =
        machine_.RunTool("regtool", {"add", "HKLM\\SOFTWARE\\Other", "/v", "a", "/d", "b", "/f"});
    EXPECT_LE(writing.exitStatus, 1) << "no end by a signal";
    EXPECT_LE(Complaints(writing.errors), 1) << writing.errors;
    EXPECT_FALSE(IsReplaced());
    PutDatabase(damaged);
  }

  Machine machine_;
  std::string whole_;
};

TEST_F(DamagedStoreTest, IsToldOnceAndReplacedByTheInstallerAlone) {
  // What is overwritten from where, and with what.
  const struct {
    const char* name;
    std::size_t begin;
    std::size_t size;
    char with;
  } damages[] = {{"no header", 0, 100, '\0'},
                 {"another kind of file", 0, whole_.size(), 'x'},
                 {"impossible page size", 16, 2, '\x12'},
                 {"no table of tables", 100, 300, 'x'},
                 {"every page but the first", kPage, whole_.size() - kPage, '\xA5'},
                 {"one page in the middle", whole_.size() / kPage / 2 * kPage, kPage, '\xFF'},
                 {"the last page", whole_.size() - kPage, kPage, '\0'}};
  std::vector<std::string> spoiled;
  for (const auto& damage : damages) {
    spoiled.push_back(whole_);
    spoiled.back().replace(damage.begin, damage.size, damage.size, damage.with);
  }
  for (const std::size_t left :
       {std::size_t{2}, std::size_t{99}, std::size_t{100}, kPage - 1, kPage + 1, 20 * kPage}) {
    spoiled.push_back(whole_.substr(0, left));
  }
  // What is missing here reads as zeros, in a page that has values enough: only a full check sees
  // it.
  spoiled.push_back(whole_.substr(0, whole_.size() - kPage / 2));
  for (const std::string& damaged : spoiled) {
    SCOPED_TRACE(&damaged - spoiled.data());
    PutDatabase(damaged);
    ExpectOthersSurvive(damaged, &damaged == &spoiled.back() ? 0 : 1);
    const support::ProcessResult installing = machine_.Install();
    EXPECT_EQ(installing.exitStatus, 0);
    EXPECT_THAT(installing.errors, HasSubstr("now called registry-damaged-1.db"));
    EXPECT_EQ(machine_.Difference(), "");
    EXPECT_TRUE(ReadFile(Replaced()) == damaged);
  }
}

TEST_F(DamagedStoreTest, EveryDamagedStoreHasANameOfItsOwn) {
  for (const std::string number : {"1", "2"}) {
    const std::string damaged = number + std::string(10'000, 'x');
    WriteFile(machine_.Database(), damaged);
    EXPECT_EQ(machine_.Init().exitStatus, 0);
    EXPECT_TRUE(ReadFile(machine_.State() / ("registry-damaged-" + number + ".db")) == damaged);
  }
}

TEST_F(DamagedStoreTest, TheInstallerLeavesWhatItDoesNotKnow) {
  // The big-endian number of the schema's version lies in the header.
  for (const char version : {'\2', '\x63'}) {
    std::string newer = whole_;
    newer.at(63) = version;
    PutDatabase(newer);
    const support::ProcessResult result = machine_.Install();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(Complaints(result.errors), 2) << result.errors;
    EXPECT_TRUE(ReadFile(machine_.Database()) == newer);
    EXPECT_FALSE(IsReplaced());
  }
}

// SQLite would take the empty database for a new one and throw its log away.
TEST_F(DamagedStoreTest, AnEmptiedDatabaseDoesNotCostItsLog) {
  const fs::path log = machine_.Database().native() + "-wal";
  std::string logged;
  {
    platform::SqliteRegistry registry(machine_.State());
    support::PutDword(registry, u"SOFTWARE\\Other", u"a", 1);
    logged = ReadFile(log);
  }
  ASSERT_FALSE(logged.empty());
  PutDatabase("");
  WriteFile(log, logged);
  EXPECT_EQ(Complaints(machine_.RunTool("regtool", {"query", "HKLM\\SOFTWARE"}).errors), 1);
  EXPECT_TRUE(ReadFile(log) == logged);
  EXPECT_EQ(machine_.Install().exitStatus, 0);
  EXPECT_TRUE(ReadFile(Replaced().native() + "-wal") == logged);
  EXPECT_EQ(machine_.Difference(), "");
}

// Damage in any place: nothing is lost, and the installer gets every value through.
TEST_F(DamagedStoreTest, SurvivesNoiseAnywhere) {
  std::mt19937 random = Random();
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    std::string damaged = whole_;
    const int last = static_cast<int>(damaged.size()) - 1;
    const int first = Between(random, 0, last);
    const int end = std::min(last, first + Between(random, 1, 2000));
    for (int i = first; i <= end; ++i) {
      damaged[static_cast<std::size_t>(i)] = static_cast<char>(Between(random, 0, 255));
    }
    SCOPED_TRACE("bytes " + std::to_string(first) + " to " + std::to_string(end));
    PutDatabase(damaged);
    ExpectOthersSurvive(damaged, -1);
    EXPECT_EQ(machine_.Install().exitStatus, 0);
    if (!IsReplaced()) continue;
    EXPECT_TRUE(ReadFile(Replaced()) == damaged);
    EXPECT_EQ(machine_.Difference(), "");
  }
}

}  // namespace
}  // namespace faults
