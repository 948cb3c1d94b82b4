// A state folder that is full, cannot be written to or cannot be made: whoever uses it goes on,
// says why once, and what was stored stays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "dsp/eq_model.h"
#include "platform/linux/files/posix_files.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/parameter_store.h"
#include "store/registry_layout.h"
#include "store/user_settings_file.h"
#include "tests/faults/machine.h"
#include "tests/faults/private_mounts.h"
#include "tests/faults/rounds.h"
#include "tests/support/forked_process.h"

namespace faults {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view kRoute = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
constexpr int kEnough = 16 * 1024;  // kilobytes

class FullDiskTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    mayMount_ = LeaveCommonMounts();
    installed_ = std::make_unique<support::Tree>(InstalledTree(Tuning::Small));
  }
  static void TearDownTestSuite() { installed_.reset(); }

  void SetUp() override {
    if (!mayMount_) GTEST_SKIP() << "only root can make a small disk";
    disk_ = std::make_unique<SmallDisk>(machine_.State(), kEnough);
  }

  void Install() {
    machine_.PutTuning();
    ASSERT_EQ(machine_.Install().exitStatus, 0);
    ASSERT_EQ(FirstDifference(machine_.Stored(), *installed_), "");
  }

  void Fill() { FillDisk(machine_.State() / "filling"); }

  support::ProcessResult Add(const std::string& data) {
    return machine_.RunTool("regtool",
                            {"add", "HKLM\\SOFTWARE\\Norvane\\Other", "/v", "a", "/d", data, "/f"});
  }
  int Plug() {
    const std::string laptop = (machine_.Folder() / "laptop.json").native();
    return machine_.RunTool("laptopctl", {laptop, "plug", "headphones"}).exitStatus;
  }
  support::ProcessResult Query() {
    return machine_.RunTool("regtool", {"query", "HKLM\\SOFTWARE\\Norvane\\Other", "/v", "a"});
  }

  static inline bool mayMount_ = false;
  static inline std::unique_ptr<support::Tree> installed_;
  Machine machine_{Tuning::Small};
  std::unique_ptr<SmallDisk> disk_;
};

// Every value that is there is the one that was meant.
void ExpectPartOf(const support::Tree& stored, const support::Tree& whole) {
  for (const auto& [path, value] : stored) {
    const auto expected = whole.find(path);
    ASSERT_NE(expected, whole.end()) << platform::ToUtf8(path);
    EXPECT_TRUE(value == expected->second) << platform::ToUtf8(path);
  }
}

TEST_F(FullDiskTest, TheInstallerEndsAndTheNextOneCompletes) {
  std::mt19937 random = Random();
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    const int size = 4 * Between(random, 1, 200);
    SCOPED_TRACE(std::to_string(size) + " kilobytes");
    disk_.reset();
    disk_ = std::make_unique<SmallDisk>(machine_.State(), size);
    machine_.PutTuning();
    const support::ProcessResult result = machine_.Install();
    EXPECT_EQ(result.exitStatus, 0);
    const std::string log = ReadFile(machine_.State() / "Velsona.txt");
    disk_->Resize(kEnough);
    const support::Tree stored = machine_.Stored();
    ExpectPartOf(stored, *installed_);
    if (machine_.HasTuning()) {
      EXPECT_EQ(Complaints(result.errors), 2) << result.errors;
      EXPECT_THAT(result.errors, testing::HasSubstr("could not be stored"));
      EXPECT_THAT(log, testing::Not(testing::HasSubstr("VTD")));
    } else {
      for (const auto& [path, value] : *installed_) {
        const bool isOfTuning = path.find(u"\\Settings") != std::u16string::npos;
        EXPECT_TRUE(!isOfTuning || stored.contains(path)) << platform::ToUtf8(path);
      }
    }
    if (result.errors.empty()) {
      EXPECT_EQ(FirstDifference(stored, *installed_), "");
    }
    EXPECT_EQ(machine_.Install().errors, "");
    EXPECT_EQ(FirstDifference(machine_.Stored(), *installed_), "");
    EXPECT_FALSE(machine_.HasTuning());
  }
}

TEST_F(FullDiskTest, WritersFailWithOneLineAndNothingIsLost) {
  Install();
  ASSERT_EQ(Add("before").exitStatus, 0);
  Fill();
  const support::ProcessResult refused = Add(std::string(100'000, 'x'));
  EXPECT_EQ(refused.exitStatus, 1);
  EXPECT_EQ(Complaints(refused.errors), 1) << refused.errors;
  // Who opens the store first makes its companions, for which there is no room either.
  const support::ProcessResult read = Query();
  EXPECT_EQ(read.exitStatus, 1);
  EXPECT_EQ(Complaints(read.errors), 1) << read.errors;

  fs::remove(machine_.State() / "filling");
  EXPECT_THAT(Query().output, testing::HasSubstr("before"));
  EXPECT_EQ(Add("after").exitStatus, 0);
  EXPECT_THAT(Query().output, testing::HasSubstr("after"));
}

TEST_F(FullDiskTest, AnOpenPanelGoesOnWhenThereIsRoomAgain) {
  Install();
  std::mt19937 random = Random();
  platform::SqliteRegistry registry(machine_.State());
  store::ParameterStore set;
  ASSERT_TRUE(store::LoadActiveSet(registry, kRoute, set));
  testing::internal::CaptureStderr();
  const auto stored = [&] {
    store::ParameterStore read;
    EXPECT_TRUE(store::LoadActiveSet(registry, kRoute, read));
    return read.values;
  };
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    Fill();
    // Until the log has no room left for one more.
    bool isKept = true;
    for (int edit = 0; edit < 300 && isKept; ++edit) {
      const auto before = stored();
      set.values.fill(static_cast<float>(Between(random, 1, 1000)));
      set.committed.fill(-1.0F);
      isKept = store::CommitChanges(registry, set);
      EXPECT_EQ(stored(), isKept ? set.values : before);
    }
    EXPECT_FALSE(isKept) << "the disk was never full";
    EXPECT_EQ(Add(std::string(100'000, 'x')).exitStatus, 1);
    int plugged = 0;
    for (int edit = 0; edit < 300 && plugged == 0; ++edit) plugged = Plug();
    EXPECT_EQ(plugged, 1);
    fs::remove(machine_.State() / "filling");
    EXPECT_TRUE(store::CommitChanges(registry, set)) << "what was lost is not committed";
    EXPECT_EQ(stored(), set.values);
  }
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(Complaints(told), 1) << told;
}

TEST_F(FullDiskTest, ASettingsFileIsRefusedOrWhole) {
  platform::PosixFileSystem files(machine_.State());
  const std::u16string file = platform::FromUtf8((machine_.State() / "mine.tus").native());
  store::ParameterStore set;
  set.values.fill(0.5F);
  Fill();
  EXPECT_NE(store::WriteUserSettingsFile(files, file, set), store::UserSettingsResult::Success);
  store::ParameterStore loaded;
  loaded.values.fill(0.25F);
  EXPECT_NE(store::ReadUserSettingsFile(files, file, loaded), store::UserSettingsResult::Success);
  EXPECT_EQ(loaded.values[dsp::ParameterIndex(dsp::kBassAmount)], 0.25F);
}

// The user's own state folder, with the lock elsewhere: a program without its lock ends at once.
class UserFolderTest : public FullDiskTest {
 protected:
  support::ProcessResult Call(const std::vector<std::string>& command) {
    return support::RunProcess(command,
                               {{"TONALYX_ROOT", ""},
                                {"TONALYX_LAPTOP", machine_.Environment().at("TONALYX_LAPTOP")},
                                {"XDG_RUNTIME_DIR", machine_.Folder().native()},
                                {"XDG_STATE_HOME", machine_.State().native()}});
  }
  support::ProcessResult CallTool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), TONALYX_BIN_DIR "/regtool");
    return Call(arguments);
  }
  support::ProcessResult InstallForUser() {
    machine_.PutTuning();
    return Call(machine_.InstallCommand());
  }

  void ExpectInstallerLeavesItAlone() {
    const support::ProcessResult installed = InstallForUser();
    EXPECT_EQ(installed.exitStatus, 0);
    EXPECT_EQ(Complaints(installed.errors), 2) << installed.errors;
    EXPECT_THAT(installed.errors, testing::HasSubstr("registry.db: "));
    EXPECT_THAT(installed.errors, testing::HasSubstr("could not be stored"));
  }

  static std::vector<std::string> Value(const std::string& command) {
    return {command, "HKLM\\SOFTWARE\\Norvane\\Other", "/v", "a"};
  }
};

TEST_F(UserFolderTest, AReadOnlyOneIsLeftAlone) {
  const NoMachineFolder noMachineFolder;
  ASSERT_EQ(InstallForUser().errors, "");
  const fs::path file = machine_.State() / "norvane/velsona/registry.db";
  const std::string database = ReadFile(file);
  ASSERT_FALSE(database.empty());
  disk_->MakeReadOnly(kEnough);
  const support::ProcessResult read = CallTool(Value("query"));
  EXPECT_EQ(read.exitStatus, 1);
  EXPECT_EQ(Complaints(read.errors), 1) << read.errors;
  const support::ProcessResult written = CallTool(Value("add"));
  EXPECT_EQ(written.exitStatus, 1);
  EXPECT_EQ(Complaints(written.errors), 1) << written.errors;
  ExpectInstallerLeavesItAlone();
  EXPECT_TRUE(ReadFile(file) == database);

  disk_->Resize(kEnough);
  EXPECT_EQ(InstallForUser().errors, "");
}

TEST_F(UserFolderTest, OneThatCannotBeMadeIsToldOnce) {
  const NoMachineFolder noMachineFolder;
  disk_->MakeReadOnly(kEnough);
  const support::ProcessResult read = CallTool(Value("query"));
  EXPECT_EQ(read.exitStatus, 1);
  EXPECT_EQ(Complaints(read.errors), 0) << "there is nothing yet, which is no fault";
  ExpectInstallerLeavesItAlone();
}

// A folder of another user's, as it is without the installer.
TEST_F(FullDiskTest, AFolderWithoutRightsIsToldOnce) {
  Install();
  fs::permissions(machine_.State(), fs::perms(0755));
  for (const auto& entry : fs::directory_iterator(machine_.State())) {
    fs::permissions(entry.path(), fs::perms(0644));
  }
  fs::permissions(machine_.Folder(), fs::perms(0755));
  const std::string database = ReadFile(machine_.Database());
  support::ForkedProcess user([&](const support::Line&) {
    constexpr uid_t kNobody = 65534;
    if (setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(1);
    testing::internal::CaptureStderr();
    platform::SqliteRegistry registry(machine_.State());
    store::ParameterStore set;
    static_cast<void>(store::LoadActiveSet(registry, kRoute, set));
    set.pathKey = kRoute;
    set.values.fill(0.125F);
    static_cast<void>(store::CommitChanges(registry, set));
    if (Complaints(testing::internal::GetCapturedStderr()) != 1) _exit(1);
  });
  EXPECT_TRUE(user.Join());
  EXPECT_TRUE(ReadFile(machine_.Database()) == database);
}

}  // namespace
}  // namespace faults
