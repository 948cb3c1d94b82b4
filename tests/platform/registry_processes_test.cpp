// One registry, several processes, any of which may die at any moment.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/linux/registry/sqlite_registry.h"
#include "tests/platform/open_key.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using support::ForkedProcess;
using support::GetBytes;
using support::Line;
using support::SetBytes;

constexpr RegistryRoot kRoot = RegistryRoot::LocalMachine;
constexpr std::array<std::u16string_view, 4> kNames = {u"a", u"b", u"c", u"d"};
constexpr const char* kOpenToAll = "D:(A;OICI;KA;;;BU)(A;OICI;KA;;;AU)(A;OICI;KA;;;BA)";

class RegistryProcessesTest : public testing::Test {
 protected:
  static std::unique_ptr<RegistryKey> Create(SqliteRegistry& registry) {
    auto key = registry.CreateKey(kRoot, u"k", kRegistryAllAccess);
    if (key == nullptr) std::abort();
    return key;
  }

  support::TemporaryFolder temporary_;
  std::filesystem::path folder_ = temporary_.Path() / "store";
};

int NumberIn(RegistryKey& key, std::u16string_view name) {
  return std::stoi(GetBytes(key, name).value_or("0"));
}

TEST_F(RegistryProcessesTest, ProcessesThatStartTogetherMakeOneStore) {
  for (int round = 0; round < 10; ++round) {
    const std::filesystem::path folder = folder_ / std::to_string(round);
    std::vector<std::unique_ptr<ForkedProcess>> writers(kNames.size());
    for (std::size_t i = 0; i < writers.size(); ++i) {
      writers[i] = std::make_unique<ForkedProcess>([&](const Line& parent) {
        parent.Hear();
        SqliteRegistry registry(folder);
        const auto key = Create(registry);
        if (SetBytes(*key, kNames[i], "1") != RegistryStatus::Success) {
          _exit(1);
        }
      });
    }
    for (const auto& writer : writers) writer->Talk().Say('g');
    for (const auto& writer : writers) EXPECT_TRUE(writer->Join());
    SqliteRegistry registry(folder);
    EXPECT_EQ(support::ValuesOf(*Create(registry)).size(), 4U);
  }
}

TEST_F(RegistryProcessesTest, EveryChangeOfAnotherProcessWakes) {
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
  WakeEvent wake;
  const auto key = Create(registry);
  for (int number = 1; number <= kRounds; ++number) {
    const bool armedBefore = number == 1 || number % 2 == 0 || number % 3 == 0;
    if (armedBefore) {
      ASSERT_EQ(key->NotifyChange(wake), RegistryStatus::Success);
    }
    writer.Talk().Say('g');
    if (number % 3 != 0) {
      ASSERT_EQ(writer.Talk().Hear(), 'd');
    }
    if (!armedBefore) {
      ASSERT_EQ(key->NotifyChange(wake), RegistryStatus::Success);
    }
    ASSERT_TRUE(wake.WaitFor(std::chrono::seconds(5))) << "change " << number;
    ASSERT_FALSE(wake.WaitFor(std::chrono::milliseconds(0)));
  }
  writer.Talk().Say('e');
  EXPECT_TRUE(writer.Join());
}

TEST_F(RegistryProcessesTest, TheLastChangeOfAKilledWriterWakes) {
  std::mt19937 random(2);
  SqliteRegistry registry(folder_);
  WakeEvent wake;
  const auto key = Create(registry);
  for (int round = 0; round < 10; ++round) {
    ASSERT_EQ(key->NotifyChange(wake), RegistryStatus::Success);
    const auto life = std::uniform_int_distribution<useconds_t>(3'000, 15'000)(random);
    ForkedProcess writer([&](const Line&) {
      ualarm(life, 0);
      SqliteRegistry mine(folder_);
      const auto own = Create(mine);
      for (int number = round * 100'000;; ++number) SetBytes(*own, u"a", std::to_string(number));
    });
    int seen = NumberIn(*key, u"a");
    while (wake.WaitFor(std::chrono::milliseconds(400))) {
      ASSERT_EQ(key->NotifyChange(wake), RegistryStatus::Success);
      seen = NumberIn(*key, u"a");
    }
    EXPECT_EQ(seen, NumberIn(*key, u"a"));
  }
  EXPECT_GT(NumberIn(*key, u"a"), 100'000) << "no writer lived long enough";
}

TEST_F(RegistryProcessesTest, TheAccessListOpensTheStoreToEveryUserWhateverTheUmask) {
  const auto modeOf = [&](const char* name) {
    struct stat status {};
    return stat((folder_ / name).c_str(), &status) == 0 ? status.st_mode & ALLPERMS : 0U;
  };
  // A folder that was there before, closed and sticky.
  ASSERT_EQ(mkdir(folder_.c_str(), 0700), 0);
  ASSERT_EQ(chmod(folder_.c_str(), 01700), 0);
  ForkedProcess installer([&](const Line& parent) {
    umask(0077);
    SqliteRegistry registry(folder_);
    const std::string sddl(kOpenToAll);
    const auto key = registry.CreateKey(kRoot, u"k", kRegistryAllAccess, nullptr,
                                        std::u16string(sddl.begin(), sddl.end()));
    SetBytes(*key, u"a", "1");
    parent.Say('d');
    parent.Hear();
    // The companions of a later connection.
    chmod((folder_ / "registry.db").c_str(), 0600);
    key->SetAccessList(std::u16string(sddl.begin(), sddl.end()));
    parent.Say('d');
    parent.Hear();
  });
  for (int look = 0; look < 2; ++look) {
    ASSERT_EQ(installer.Talk().Hear(), 'd');
    EXPECT_EQ(modeOf("."), 0777U);
    for (const char* name :
         {"registry.db", "registry.db-wal", "registry.db-shm", "registry.changed"}) {
      EXPECT_EQ(modeOf(name), 0666U) << name;
    }
    installer.Talk().Say('g');
  }
  EXPECT_TRUE(installer.Join());
}

}  // namespace
}  // namespace platform
