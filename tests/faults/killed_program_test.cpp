// The program killed at any moment of its writing: what is left is whole, and the next start goes
// on from there.
#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "platform/text.h"
#include "store/registry_layout.h"
#include "tests/faults/machine.h"

namespace faults {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

class KilledInstallTest : public testing::TestWithParam<bool> {
 protected:
  // Every value is one of the tuning's, and a setting has all of them or none.
  void ExpectWholeSettings(const support::Tree& stored) {
    const support::Tree& installed = InstalledTree(Tuning::Whole);
    std::map<std::u16string, std::size_t> counts;
    for (const auto& [path, value] : stored) {
      const auto expected = installed.find(path);
      ASSERT_NE(expected, installed.end()) << platform::ToUtf8(path);
      EXPECT_TRUE(value == expected->second) << platform::ToUtf8(path);
      if (path.find(u" : Param") != std::u16string::npos) ++counts[path.substr(0, path.find(u':'))];
    }
    for (const auto& [setting, count] : counts) {
      EXPECT_EQ(count, store::kParameterCount) << platform::ToUtf8(setting);
    }
  }

  // A damaged store is replaced at the same moment whatever comes after.
  Machine machine_{GetParam() ? Tuning::Small : Tuning::Whole};
};

INSTANTIATE_TEST_SUITE_P(OfADamagedStore, KilledInstallTest, testing::Bool());

TEST_P(KilledInstallTest, LeavesWholeSettingsAndTheDamagedStoreAndTheNextOneCompletes) {
  const bool isDamaged = GetParam();
  const std::string damaged(100'000, 'x');
  const auto start = steady_clock::now();
  EXPECT_EQ(machine_.Install().exitStatus, 0);
  const auto whole = std::chrono::duration_cast<microseconds>(steady_clock::now() - start).count();
  std::mt19937 random = Random();
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    std::filesystem::remove_all(machine_.State());
    if (isDamaged) {
      std::filesystem::create_directory(machine_.State());
      WriteFile(machine_.Database(), damaged);
    }
    machine_.PutTuning();
    {
      const support::ChildProcess program(machine_.InitCommand(), machine_.Environment());
      std::this_thread::sleep_for(microseconds(Between(random, 0, static_cast<int>(whole))));
    }
    if (isDamaged) {
      int kept = 0;
      for (const auto& entry : std::filesystem::directory_iterator(machine_.State())) {
        kept += ReadFile(entry.path()) == damaged ? 1 : 0;
      }
      EXPECT_EQ(kept, 1);
    } else {
      ExpectWholeSettings(machine_.Stored());
    }
    EXPECT_EQ(machine_.Init().exitStatus, 0);
    EXPECT_EQ(machine_.Difference(), "");
    EXPECT_FALSE(machine_.HasTuning());
  }
}

}  // namespace
}  // namespace faults
