// The user's settings file and the boxes that tell about it.
#include <gtest/gtest.h>

#include <bit>
#include <cstring>

#include "platform/fake/fake_files.h"
#include "platform/resources.h"
#include "platform/shell.h"
#include "resources/templates.h"
#include "store/user_settings_dialogs.h"

// The desktop as this program sees it: boxes are noted and answered at once.
namespace {

struct Box {
  platform::WindowHandle owner;
  std::u16string text, caption;
  platform::MessageBoxKind kind;
  bool operator==(const Box&) const = default;
};

std::vector<Box> boxes;
std::int32_t answer = platform::kIdOk;

}  // namespace

namespace platform {

std::int32_t ShowMessageBox(WindowHandle owner, std::u16string_view text,
                            std::u16string_view caption, MessageBoxKind kind) {
  boxes.push_back({owner, std::u16string(text), std::u16string(caption), kind});
  return answer;
}

WindowHandle ActiveWindow() {
  return 77;
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

const std::u16string kPath = u"/home/mine.tus";
using ParameterBits = std::array<std::uint32_t, 1114>;

// Bits that differ for every parameter and make some of them NaNs with payloads.
std::uint32_t PatternOf(std::size_t number) {
  return 0x7F900000U + static_cast<std::uint32_t>(number) * 0x10001U;
}

ParameterStore PatternStore() {
  ParameterStore store;
  for (std::size_t i = 0; i < 1114; ++i) store.values[i] = std::bit_cast<float>(PatternOf(i + 1));
  return store;
}

class UserSettingsTest : public testing::Test {
 protected:
  UserSettingsTest() { boxes.clear(); }

  std::string Saved() {
    EXPECT_TRUE(SaveUserSettings(files_, PatternStore(), kPath));
    return files_.Contents(kPath).value_or("");
  }

  void ExpectOneError(const std::u16string& text) {
    EXPECT_EQ(boxes,
              (std::vector<Box>{{77, text, u"Error", platform::MessageBoxKind::Exclamation}}));
    boxes.clear();
  }

  platform::FakeFileSystem files_;
};

TEST_F(UserSettingsTest, LayoutToTheByteAndBack) {
  files_.PutFile(kPath, std::string(1000, 'x'));
  const std::string bytes = Saved();
  ParameterBits expected{};
  std::string file("KUS\0\0\1", 6);
  const auto add = [&](std::size_t number) {
    expected[number - 1] = PatternOf(number);
    file.append(reinterpret_cast<const char*>(&expected[number - 1]), 4);
  };
  for (const std::size_t number : {6, 223, 250, 232}) add(number);
  for (std::size_t number = 117; number <= 217; ++number) add(number);
  EXPECT_EQ(bytes, file);

  files_.PutFile(kPath, bytes + "and more");
  ParameterStore store;
  EXPECT_TRUE(LoadUserSettings(files_, store, kPath));
  EXPECT_EQ(std::bit_cast<ParameterBits>(store.values), expected);
  EXPECT_EQ(store.committed, ParameterSet{});
  EXPECT_TRUE(boxes.empty());
}

TEST_F(UserSettingsTest, FirstFaultInTheFileDecidesTheOneMessage) {
  const std::string good = Saved();
  const auto changed = [&](std::size_t offset, char byte, std::size_t size) {
    std::string bytes = good.substr(0, size);
    bytes[offset] = byte;
    return bytes;
  };
  const std::u16string cut = u"Error reading from file.";
  const std::u16string foreign = u"File is not a valid settings file.";
  const std::pair<std::string, std::u16string> cases[] = {
      {"", cut},
      {"XU", cut},
      {changed(2, 'X', 426), foreign},
      {changed(3, ' ', 426), foreign},
      {changed(0, 'X', 4), foreign},
      {good.substr(0, 5), cut},
      {changed(5, 2, 426), foreign},
      {changed(4, 1, 6), foreign},
      {good.substr(0, 425), cut},
  };
  for (const auto& [bytes, message] : cases) {
    SCOPED_TRACE(bytes);
    files_.PutFile(kPath, bytes);
    ParameterStore store;
    EXPECT_FALSE(LoadUserSettings(files_, store, kPath));
    ExpectOneError(message);
    EXPECT_EQ(store.values, ParameterSet{});
  }
  files_.PutFile(kPath, good);
  ParameterStore store;
  {
    const auto reader = files_.OpenExisting(kPath, platform::FileAccess::Read);
    EXPECT_FALSE(LoadUserSettings(files_, store, kPath)) << "held by another";
    ExpectOneError(u"Cannot open file.");
  }
  files_.FailReadsFrom(kPath, 100);
  EXPECT_FALSE(LoadUserSettings(files_, store, kPath));
  ExpectOneError(cut);
  EXPECT_EQ(store.values, ParameterSet{});
}

TEST_F(UserSettingsTest, SavingTellsWhyItFailed) {
  files_.SetFreeSpace(100);
  EXPECT_FALSE(SaveUserSettings(files_, PatternStore(), kPath));
  ExpectOneError(u"Error writing file.");
  EXPECT_EQ(files_.Contents(kPath)->size(), 100U) << "what was written stays";
  files_.DenyOpening(kPath);
  EXPECT_FALSE(SaveUserSettings(files_, PatternStore(), kPath));
  ExpectOneError(u"File creation error.");
}

TEST_F(UserSettingsTest, RestoreAsksOverTheDialog) {
  const Box question = {5,
                        u"Restoring settings will overwrite your changes.\n\nAre you sure you want "
                        u"to restore to factory settings?",
                        u"Confirm", platform::MessageBoxKind::YesNoDefaultNo};
  for (const std::int32_t given : {platform::kIdYes, platform::kIdNo}) {
    answer = given;
    EXPECT_EQ(AskRestoreDefaults(5), given == platform::kIdYes);
    EXPECT_EQ(boxes, std::vector{question});
    boxes.clear();
  }
}

}  // namespace
}  // namespace store
