#include "store/user_settings_dialogs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/fake/fake_files.h"
#include "platform/resources.h"
#include "platform/shell.h"
#include "resources/templates.h"

// The desktop as this program sees it: boxes are noted and answered at once.
namespace {

struct Box {
  platform::WindowHandle owner;
  std::u16string text;
  std::u16string caption;
  platform::MessageBoxKind kind;
  bool operator==(const Box&) const = default;
};

struct Desktop {
  std::vector<Box> boxes;
  std::int32_t answer = platform::kIdOk;
};

Desktop& TestDesktop() {
  static Desktop desktop;
  return desktop;
}

constexpr platform::WindowHandle kActive = 77;

}  // namespace

namespace platform {

std::int32_t ShowMessageBox(WindowHandle owner, std::u16string_view text,
                            std::u16string_view caption, MessageBoxKind kind) {
  TestDesktop().boxes.push_back({owner, std::u16string(text), std::u16string(caption), kind});
  return TestDesktop().answer;
}

WindowHandle ActiveWindow() {
  return kActive;
}

std::u16string LoadStringResource(std::uint16_t id) {
  for (const resources::StringEntry& entry : resources::kStringTable) {
    if (entry.id == id) return std::u16string(entry.text);
  }
  return {};
}

}  // namespace platform

namespace store {
namespace {

class UserSettingsDialogsTest : public testing::Test {
 protected:
  UserSettingsDialogsTest() { TestDesktop() = {}; }

  void ExpectOneError(const std::u16string& text) {
    EXPECT_EQ(TestDesktop().boxes,
              (std::vector<Box>{{kActive, text, u"Error", platform::MessageBoxKind::Exclamation}}));
    TestDesktop() = {};
  }

  platform::FakeFileSystem files_;
  ParameterStore store_;
};

TEST_F(UserSettingsDialogsTest, EveryFailureShowsItsOneMessage) {
  EXPECT_FALSE(LoadUserSettings(files_, store_, u"/f.tus"));
  ExpectOneError(u"Cannot open file.");
  files_.PutFile(u"/f.tus", "KUS");
  EXPECT_FALSE(LoadUserSettings(files_, store_, u"/f.tus"));
  ExpectOneError(u"Error reading from file.");
  files_.PutFile(u"/f.tus", "none of ours");
  EXPECT_FALSE(LoadUserSettings(files_, store_, u"/f.tus"));
  ExpectOneError(u"File is not a valid settings file.");
  EXPECT_TRUE(SaveUserSettings(files_, store_, u"/f.tus"));
  EXPECT_TRUE(LoadUserSettings(files_, store_, u"/f.tus"));
  EXPECT_TRUE(TestDesktop().boxes.empty());
  files_.SetFreeSpace(10);
  EXPECT_FALSE(SaveUserSettings(files_, store_, u"/f.tus"));
  ExpectOneError(u"Error writing file.");
  files_.DenyOpening(u"/f.tus");
  EXPECT_FALSE(SaveUserSettings(files_, store_, u"/f.tus"));
  ExpectOneError(u"File creation error.");
}

TEST_F(UserSettingsDialogsTest, RestoreAsksOverTheDialog) {
  TestDesktop().answer = platform::kIdYes;
  EXPECT_TRUE(AskRestoreDefaults(5));
  EXPECT_EQ(TestDesktop().boxes,
            (std::vector<Box>{{5,
                               u"Restoring settings will overwrite your changes.\n\nAre you sure "
                               u"you want to restore to factory settings?",
                               u"Confirm", platform::MessageBoxKind::YesNoDefaultNo}}));
  TestDesktop().answer = platform::kIdNo;
  EXPECT_FALSE(AskRestoreDefaults(5));
}

}  // namespace
}  // namespace store
