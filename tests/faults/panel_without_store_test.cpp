// The panel where the store cannot be read or written: both windows work, one line says why, and
// nothing is touched.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/e2e/dialog_fixture.h"
#include "tests/faults/machine.h"
#include "tests/faults/private_mounts.h"

namespace faults {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds kPatience(20);
constexpr int kDiskSize = 8 * 1024;  // kilobytes

class PanelWithoutStore : public e2e::AdvancedDialogTest {
 protected:
  static void SetUpTestSuite() { mayMount_ = LeaveCommonMounts(); }

  // The folder of a user for whom there is no machine's: the lock then lies elsewhere, without
  // which the program would end at once.
  void UseUserFolder(const fs::path& stateHome) {
    noMachineFolder_ = std::make_unique<NoMachineFolder>();
    environment_["TONALYX_ROOT"] = "";
    environment_["XDG_STATE_HOME"] = stateHome;
    state_ = stateHome / "norvane/velsona";
  }

  fs::path Database() const { return state_ / "registry.db"; }

  // A mode, every knob, a band: whatever writes.
  void UseEverything() {
    StartPanel();
    ClickMode(3);
    ClickMode(4);
    ClickAdvancedEntry();
    Expand();
    for (const std::uint16_t knob : {resources::kKnobBass, resources::kKnobLoudness}) {
      Drag(knob, {30, 60}, {90, 60});
    }
    ClickControl(resources::kEqualizerEnable);
    ClickControl(resources::kTypeLowPass);
    ClickControl(resources::kCloseButton);
    ASSERT_TRUE(desktop_.WaitForWindow("Tonalyx", kPatience));
    desktop_.RequestClose("Tonalyx");
    EXPECT_EQ(panel_->WaitForExit(kPatience), 0);
    const std::string errors = panel_->RestOfErrors();
    EXPECT_EQ(Complaints(errors), 1) << errors;
  }

  static inline bool mayMount_ = false;
  fs::path state_ = folder_ / "state";
  std::unique_ptr<NoMachineFolder> noMachineFolder_;
};

TEST_F(PanelWithoutStore, DamagedDatabases) {
  UseLaptop("layers");
  const std::string whole = ReadFile(Database());
  for (const std::string& damaged :
       {std::string(whole.size(), 'x'), whole.substr(0, whole.size() / 2)}) {
    WriteFile(Database(), damaged);
    UseEverything();
    EXPECT_TRUE(ReadFile(Database()) == damaged);
  }
}

TEST_F(PanelWithoutStore, ReadOnlyDisk) {
  if (!mayMount_) GTEST_SKIP() << "only root can make a small disk";
  SmallDisk disk(folder_ / "home", kDiskSize);
  UseUserFolder(folder_ / "home");
  UseLaptop("layers");
  const std::string whole = ReadFile(Database());
  disk.MakeReadOnly(kDiskSize);
  UseEverything();
  EXPECT_TRUE(ReadFile(Database()) == whole);
}

TEST_F(PanelWithoutStore, FullDisk) {
  if (!mayMount_) GTEST_SKIP() << "only root can make a small disk";
  const SmallDisk disk(state_, kDiskSize);
  UseLaptop("layers");
  const std::string whole = ReadFile(Database());
  FillDisk(state_ / "filling");
  UseEverything();
  EXPECT_TRUE(ReadFile(Database()) == whole);
}

TEST_F(PanelWithoutStore, FolderThatCannotBeMade) {
  if (!mayMount_) GTEST_SKIP() << "only root can hide the machine's folder";
  UseLaptop("layers");
  UseUserFolder("/proc/nowhere");
  UseEverything();
}

}  // namespace
}  // namespace faults
