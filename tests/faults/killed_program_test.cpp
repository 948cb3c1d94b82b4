// The program killed at any moment of its writing: what is left is whole, and the next start goes
// on from there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <thread>

#include "dsp/eq_model.h"
#include "platform/linux/files/posix_files.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/parameter_store.h"
#include "store/registry_layout.h"
#include "store/user_settings_file.h"
#include "tests/faults/machine.h"
#include "tests/faults/rounds.h"
#include "tests/support/forked_process.h"

namespace faults {
namespace {

namespace fs = std::filesystem;
using std::chrono::microseconds;
using std::chrono::steady_clock;
using support::ForkedProcess;

constexpr std::u16string_view kRoute = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";

class KilledInstallTest : public testing::Test {
 protected:
  explicit KilledInstallTest(Tuning tuning = Tuning::Whole)
      : machine_(tuning), installed_(InstalledTree(tuning)) {}

  // How long an installation takes that nobody disturbs, here and now.
  microseconds UndisturbedTime() {
    machine_.PutTuning();
    const auto start = steady_clock::now();
    EXPECT_EQ(machine_.Install().exitStatus, 0);
    return std::chrono::duration_cast<microseconds>(steady_clock::now() - start);
  }

  // Whether it was still at work when the signal came.
  bool KillAfter(microseconds life) {
    support::ChildProcess program(machine_.InstallCommand(), machine_.Environment());
    std::this_thread::sleep_for(life);
    program.Kill(SIGKILL);
    return program.WaitForExit(std::chrono::seconds(10)) == 128 + SIGKILL;
  }

  // Every value is one of the tuning's, and a setting has all of them or none.
  void ExpectWholeSettings(const support::Tree& stored) {
    std::map<std::u16string, int> counts;
    for (const auto& [path, value] : stored) {
      const auto expected = installed_.find(path);
      ASSERT_NE(expected, installed_.end()) << platform::ToUtf8(path);
      EXPECT_TRUE(value == expected->second) << platform::ToUtf8(path);
      if (path.find(u" : Param") != std::u16string::npos) ++counts[path.substr(0, path.find(u':'))];
    }
    for (const auto& [setting, count] : counts) {
      EXPECT_EQ(count, static_cast<int>(store::kParameterCount)) << platform::ToUtf8(setting);
    }
  }

  void ExpectNextInstallCompletes() {
    EXPECT_EQ(machine_.Install().exitStatus, 0);
    EXPECT_EQ(FirstDifference(machine_.Stored(), installed_), "");
    EXPECT_FALSE(machine_.HasTuning());
  }

  Machine machine_;
  const support::Tree installed_;
};

class KilledReplacementTest : public KilledInstallTest {
 protected:
  KilledReplacementTest() : KilledInstallTest(Tuning::Small) {}
};

TEST_F(KilledInstallTest, LeavesWholeSettingsAndTheNextOneCompletes) {
  std::mt19937 random = Random();
  const microseconds whole = UndisturbedTime();
  int killed = 0;
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    machine_.RemoveState();
    machine_.PutTuning();
    const microseconds life(Between(random, 0, static_cast<int>(whole.count())));
    killed += KillAfter(life) ? 1 : 0;
    ExpectWholeSettings(machine_.Stored());
    ExpectNextInstallCompletes();
  }
  RecordProperty("killed", killed);
}

TEST_F(KilledReplacementTest, LosesNothingOfADamagedStoreThatItReplaces) {
  std::mt19937 random = Random();
  const microseconds whole = UndisturbedTime();
  const std::string damaged(100'000, 'x');
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    machine_.RemoveState();
    fs::create_directory(machine_.State());
    WriteFile(machine_.Database(), damaged);
    machine_.PutTuning();
    KillAfter(microseconds(Between(random, 0, static_cast<int>(whole.count()))));
    int kept = 0;
    for (const auto& entry : fs::directory_iterator(machine_.State())) {
      kept += ReadFile(entry.path()) == damaged ? 1 : 0;
    }
    EXPECT_EQ(kept, 1);
    ExpectNextInstallCompletes();
    EXPECT_TRUE(ReadFile(machine_.State() / "registry-damaged-1.db") == damaged);
  }
}

// A set in which every parameter is the same number.
store::ParameterStore UniformSet(float number) {
  store::ParameterStore set;
  set.pathKey = kRoute;
  set.activeSetting = u"2";
  set.values.fill(number);
  set.committed.fill(-1.0F);
  return set;
}

TEST(KilledCommitTest, LeavesOneWholeSetThatIsAtLeastTheLastOneTold) {
  std::mt19937 random = Random();
  const support::TemporaryFolder folder;
  int committed = 0;
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    ForkedProcess panel([&](const support::Line& parent) {
      platform::SqliteRegistry registry(folder.Path());
      for (int number = committed + 1;; ++number) {
        store::ParameterStore set = UniformSet(static_cast<float>(number));
        if (!store::CommitChanges(registry, set)) _exit(1);
        parent.Say('c');
      }
    });
    ASSERT_EQ(panel.Talk().Hear(), 'c');
    std::this_thread::sleep_for(microseconds(Between(random, 0, 30'000)));
    panel.Signal(SIGKILL);
    int told = committed + 1;
    while (panel.Talk().Hear() == 'c') ++told;

    platform::SqliteRegistry registry(folder.Path());
    const auto key =
        support::OpenToRead(registry, store::SettingKeyPath(store::Tree::Parameters, kRoute, u"2"));
    ASSERT_TRUE(key);
    const auto first = support::GetValue(*key, u"Param1");
    ASSERT_TRUE(first);
    for (std::size_t number = 1; number <= store::kParameterCount; ++number) {
      EXPECT_EQ(support::GetValue(*key, store::ParameterName(number)), first) << number;
    }
    float stored = 0.0F;
    ASSERT_EQ(first->bytes.size(), sizeof(stored));
    std::memcpy(&stored, first->bytes.data(), sizeof(stored));
    EXPECT_GE(stored, static_cast<float>(told));
    EXPECT_LE(stored, static_cast<float>(told + 1));
    committed = static_cast<int>(stored);
  }
}

TEST(KilledSaveTest, LeavesAFileThatIsWholeOrRefused) {
  std::mt19937 random = Random();
  const support::TemporaryFolder folder;
  const std::u16string file = platform::FromUtf8((folder.Path() / "mine.tus").native());
  int whole = 0;
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    ForkedProcess panel([&](const support::Line& parent) {
      platform::PosixFileSystem files(folder.Path());
      for (int number = 1;; ++number) {
        const auto set = UniformSet(static_cast<float>(number));
        if (store::WriteUserSettingsFile(files, file, set) != store::UserSettingsResult::Success) {
          _exit(1);
        }
        if (number == 1) parent.Say('w');
      }
    });
    ASSERT_EQ(panel.Talk().Hear(), 'w');
    std::this_thread::sleep_for(microseconds(Between(random, 0, 3'000)));
    panel.Kill();

    platform::PosixFileSystem files(folder.Path());
    store::ParameterStore loaded = UniformSet(0.0F);
    const auto result = store::ReadUserSettingsFile(files, file, loaded);
    const float knob = loaded.values[dsp::ParameterIndex(dsp::kBassAmount)];
    if (result == store::UserSettingsResult::Success) {
      ++whole;
      EXPECT_GE(knob, 1.0F);
      for (int number = dsp::kEqualizerEnable; number < 218; ++number) {
        EXPECT_EQ(loaded.values[dsp::ParameterIndex(number)], knob) << number;
      }
    } else {
      EXPECT_EQ(result, store::UserSettingsResult::ReadFailed);
      EXPECT_EQ(knob, 0.0F) << "refused as a whole";
    }
    EXPECT_EQ(store::WriteUserSettingsFile(files, file, UniformSet(2.0F)),
              store::UserSettingsResult::Success);
  }
  RecordProperty("whole", whole);
}

}  // namespace
}  // namespace faults
