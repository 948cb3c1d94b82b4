// A state folder that is full, cannot be written to or cannot be made: whoever uses it goes on,
// says why once, and what was stored stays.
#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <optional>

#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/parameter_store.h"
#include "tests/faults/machine.h"

namespace faults {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr int kEnough = 16 * 1024;  // kilobytes

class FullDiskTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!LeaveCommonMounts()) GTEST_SKIP() << "only root can make a small disk";
    disk_.emplace(machine_.State(), kEnough);
  }

  void Install() {
    ASSERT_EQ(machine_.Install().exitStatus, 0);
    ASSERT_EQ(machine_.Difference(), "");
  }
  support::ProcessResult Add(const std::string& data) {
    return machine_.RunTool("regtool",
                            {"add", "HKLM\\SOFTWARE\\Norvane\\Other", "/v", "a", "/d", data, "/f"});
  }
  support::ProcessResult Query() {
    return machine_.RunTool("regtool", {"query", "HKLM\\SOFTWARE\\Norvane\\Other", "/v", "a"});
  }
  static void ExpectOneComplaint(const support::ProcessResult& result) {
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(Complaints(result.errors), 1) << result.errors;
  }

  Machine machine_;
  std::optional<SmallDisk> disk_;
};

TEST_F(FullDiskTest, TheInstallerEndsAndTheNextOneCompletes) {
  std::mt19937 random = Random();
  const support::Tree& installed = InstalledTree(Tuning::Small);
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    const int size = 4 * Between(random, 1, 200);
    SCOPED_TRACE(std::to_string(size) + " kilobytes");
    disk_.reset();
    disk_.emplace(machine_.State(), size);
    const support::ProcessResult result = machine_.Install();
    EXPECT_EQ(result.exitStatus, 0);
    const std::string log = ReadFile(machine_.State() / "Velsona.txt");
    disk_->Resize(kEnough);
    // Every value that is there is the one that was meant.
    const support::Tree stored = machine_.Stored();
    for (const auto& [path, value] : stored) {
      const auto expected = installed.find(path);
      ASSERT_NE(expected, installed.end()) << platform::ToUtf8(path);
      EXPECT_TRUE(value == expected->second) << platform::ToUtf8(path);
    }
    if (machine_.HasTuning()) {
      EXPECT_EQ(Complaints(result.errors), 2) << result.errors;
      EXPECT_THAT(result.errors, HasSubstr("could not be stored"));
      EXPECT_THAT(log, testing::Not(HasSubstr("VTD")));
    }
    for (const auto& [path, value] : installed) {
      const bool isOfTuning = path.find(u"\\Settings") != std::u16string::npos;
      EXPECT_TRUE(machine_.HasTuning() || !isOfTuning || stored.contains(path))
          << platform::ToUtf8(path);
    }
    if (result.errors.empty()) {
      EXPECT_EQ(machine_.Difference(), "");
    }
    Install();
    EXPECT_FALSE(machine_.HasTuning());
  }
}

TEST_F(FullDiskTest, WritersFailWithOneLineAndNothingIsLost) {
  Install();
  ASSERT_EQ(Add("before").exitStatus, 0);
  disk_->Fill();
  ExpectOneComplaint(Add(std::string(100'000, 'x')));
  // Who opens the store first makes its companions, for which there is no room either.
  ExpectOneComplaint(Query());
  disk_->Empty();
  EXPECT_THAT(Query().output, HasSubstr("before"));
  EXPECT_EQ(Add("after").exitStatus, 0);
  EXPECT_THAT(Query().output, HasSubstr("after"));
}

TEST_F(FullDiskTest, AnOpenPanelGoesOnWhenThereIsRoomAgain) {
  Install();
  std::mt19937 random = Random();
  platform::SqliteRegistry registry(machine_.State());
  store::ParameterStore set;
  ASSERT_TRUE(store::LoadActiveSet(registry, kSpeakerRoute, set));
  testing::internal::CaptureStderr();
  const auto stored = [&] {
    store::ParameterStore read;
    EXPECT_TRUE(store::LoadActiveSet(registry, kSpeakerRoute, read));
    return read.values;
  };
  const auto commit = [&] {
    set.committed.fill(-1.0F);
    return store::CommitChanges(registry, set);
  };
  const int rounds = Rounds();
  for (int round = 0; round < rounds; ++round) {
    SCOPED_TRACE(round);
    disk_->Fill();
    // Until the log has no room left for one more.
    bool isKept = true;
    for (int edit = 0; edit < 300 && isKept; ++edit) {
      const auto before = stored();
      set.values.fill(static_cast<float>(Between(random, 1, 1000)));
      isKept = commit();
      EXPECT_EQ(stored(), isKept ? set.values : before);
    }
    EXPECT_FALSE(isKept) << "the disk was never full";
    EXPECT_EQ(Add(std::string(100'000, 'x')).exitStatus, 1);
    disk_->Empty();
    EXPECT_TRUE(store::CommitChanges(registry, set)) << "what was lost is not committed";
    EXPECT_EQ(stored(), set.values);
  }
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(Complaints(told), 1) << told;
}

// The user's own state folder, where there is none for the machine. The lock lies elsewhere: a
// program without its lock would end at once.
TEST_F(FullDiskTest, AUsersFolderThatIsReadOnlyOrCannotBeMadeIsToldOnce) {
  SmallDisk noMachineFolder("/var/lib", 4);
  noMachineFolder.MakeReadOnly(4);
  const auto call = [&](std::vector<std::string> command) {
    return support::RunProcess(command,
                               {{"TONALYX_ROOT", ""},
                                {"TONALYX_LAPTOP", machine_.Environment().at("TONALYX_LAPTOP")},
                                {"XDG_RUNTIME_DIR", machine_.Folder().native()},
                                {"XDG_STATE_HOME", machine_.State().native()}});
  };
  const auto tool = [&](const char* verb) {
    return call({TONALYX_BIN_DIR "/regtool", verb, "HKLM\\SOFTWARE\\Norvane", "/v", "a"});
  };
  const auto expectInstallerFails = [&] {
    machine_.PutTuning();
    const support::ProcessResult result = call(machine_.InitCommand());
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(Complaints(result.errors), 2) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("registry.db: "));
    EXPECT_THAT(result.errors, HasSubstr("could not be stored"));
  };
  disk_->MakeReadOnly(kEnough);
  EXPECT_EQ(Complaints(tool("query").errors), 0) << "there is nothing yet, which is no fault";
  expectInstallerFails();

  disk_->Resize(kEnough);
  machine_.PutTuning();
  EXPECT_EQ(call(machine_.InitCommand()).errors, "");
  const fs::path file = machine_.State() / "norvane/velsona/registry.db";
  const std::string database = ReadFile(file);
  ASSERT_FALSE(database.empty());
  disk_->MakeReadOnly(kEnough);
  ExpectOneComplaint(tool("query"));
  ExpectOneComplaint(tool("add"));
  expectInstallerFails();
  EXPECT_TRUE(ReadFile(file) == database);
}

}  // namespace
}  // namespace faults
