#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <thread>

#include "platform/linux/registry/sqlite_registry.h"
#include "platform/wake_event.h"
#include "tests/e2e/panel_fixture.h"

namespace e2e {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;
using support::ScreenRect;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::uint32_t kSand = 0xE3C69C;

class MainWindowTest : public PanelTest {
 protected:
  void Open(const std::string& kind) {
    UseLaptop(kind);
    StartEngine();
    StartPanel();
    EXPECT_THAT(ReceivedEvents(), IsEmpty()) << "opening the window must not change the sound";
  }

  // Clicks a mode while watching the route's key: whether anything was written there.
  bool ClickWrites(int mode, const std::string& pathKey) {
    platform::SqliteRegistry registry(folder_ / "state");
    platform::WakeEvent written;
    const auto key =
        registry.OpenKey(platform::RegistryRoot::LocalMachine,
                         u"SOFTWARE\\Norvane\\Velsona\\Parameters\\" +
                             std::u16string(pathKey.begin(), pathKey.end()) + u"\\Settings",
                         platform::kRegistryRead);
    EXPECT_TRUE(key);
    EXPECT_EQ(key->NotifyChange(written), platform::RegistryStatus::Success);
    ClickMode(mode);
    return written.WaitFor(milliseconds(700));
  }

  // A window that was just made active may not have the keyboard yet.
  void PressUntilItEnds(const std::string& key) {
    Eventually([&] {
      desktop_.PressKey(key);
      return panel_->WaitForExit(milliseconds(500)).has_value();
    });
  }

  // Whether the Advanced entry's white text stands on the dark panel.
  bool ShowsAdvancedText() {
    const std::vector<std::uint32_t> pixels = desktop_.Pixels(SkinRect({64, 402}, {80, 28}));
    return std::count_if(pixels.begin(), pixels.end(),
                         [](std::uint32_t pixel) { return (pixel & 0xFFU) > 0xC0; }) > 20;
  }

  bool ShowsSandText(SkinPoint topLeft, SkinPoint size) {
    const std::vector<std::uint32_t> pixels = desktop_.Pixels(SkinRect(topLeft, size));
    return std::count(pixels.begin(), pixels.end(), kSand) > 20;
  }
};

TEST_F(MainWindowTest, ClickOnAModeReachesStoreAndEngine) {
  Open("standard");
  ASSERT_EQ(ActiveSetting(kSpeakerKey), "2");
  ClickMode(2);
  EXPECT_THAT(ReceivedEvents(), ElementsAreArray(ModeChangeEvents()));
  EXPECT_EQ(ActiveSetting(kSpeakerKey), "3");
  EXPECT_EQ(ActiveSetting(kSubwooferKey), "3");
  EXPECT_EQ(ActiveSetting(kHeadphoneKey), "1");

  EXPECT_FALSE(ClickWrites(2, kSpeakerKey)) << "the selected mode once more";
  EXPECT_THAT(ReceivedEvents(), IsEmpty());
  EXPECT_TRUE(ClickWrites(4, kSpeakerKey));
  EXPECT_EQ(ClosePanel(), 0);
}

TEST_F(MainWindowTest, SelectionFollowsTheStoreWithoutWritingBack) {
  Open("standard");
  const auto gaming = PictureOfMode(4);
  const auto off = PictureOfMode(0);
  ASSERT_NE(gaming, off);
  ReceivedEvents();
  SetActiveSetting(kSpeakerKey, "5");
  EXPECT_TRUE(ShowsPicture(gaming));
  SetActiveSetting(kSpeakerKey, "1");
  EXPECT_TRUE(ShowsPicture(off));
  EXPECT_THAT(ReceivedEvents(), IsEmpty());
  EXPECT_EQ(ActiveSetting(kSpeakerKey), "1");
  EXPECT_EQ(ActiveSetting(kSubwooferKey), "1");
}

TEST_F(MainWindowTest, FollowsHeadphonesInAndOut) {
  Open("standard");
  const auto off = PictureOfMode(0);
  const auto movie = PictureOfMode(2);
  ASSERT_EQ(ActiveSetting(kHeadphoneKey), "1");
  Laptop({"plug", "headphones"});
  EXPECT_TRUE(ShowsPicture(off));
  ReceivedEvents();
  ClickMode(5);
  EXPECT_THAT(ReceivedEvents(), ElementsAreArray(ModeChangeEvents()));
  EXPECT_EQ(ActiveSetting(kHeadphoneKey), "6");
  EXPECT_EQ(ActiveSetting(kSpeakerKey), "3");
  ParkPointer();
  Laptop({"unplug"});
  EXPECT_TRUE(ShowsPicture(movie));
}

TEST_F(MainWindowTest, WarnsWhileAnotherAdapterPlays) {
  Open("standard");
  const std::string other = OtherActiveEndpointId();
  const SkinPoint topLeft{160, 362};
  const SkinPoint size{440, 24};
  EXPECT_FALSE(ShowsSandText(topLeft, size));
  Laptop({"peak", other, "0.5"});
  EXPECT_TRUE(Eventually([&] { return ShowsSandText(topLeft, size); }, seconds(3)));
  Laptop({"peak", other, "0"});
  EXPECT_TRUE(Eventually([&] { return !ShowsSandText(topLeft, size); }, seconds(3)));
}

TEST_F(MainWindowTest, ElementsLieWhereTheLayoutSaysAtThisResolution) {
  Open("layers");
  const double scale = desktop_.Dpi() / 96.0;
  EXPECT_EQ(window_.width, static_cast<int>(651 * scale));
  EXPECT_EQ(window_.height, static_cast<int>(454 * scale));
  // Just inside and just outside of the first button's corner.
  const int left = window_.x + static_cast<int>(28 * scale);
  const int top = window_.y + static_cast<int>(145 * scale);
  for (const auto& [x, y, setting] : {std::tuple(left - 1, top, "2"),
                                      std::tuple(left, top - 1, "2"), std::tuple(left, top, "1")}) {
    desktop_.Click(x, y);
    EXPECT_TRUE(Eventually([&, wanted = std::string(setting)] {
      return ActiveSetting(kSpeakerKey) == wanted;
    })) << x
        << ", " << y;
  }
  // The overlap of two rows belongs to the lower one, for hovering and for clicking.
  const int overlap = window_.y + static_cast<int>(251 * scale);
  desktop_.Click(window_.x + static_cast<int>(100 * scale), overlap);
  EXPECT_TRUE(Eventually([&] { return ActiveSetting(kSpeakerKey) == "4"; }));
}

TEST_F(MainWindowTest, TransparentCornersShowTheDesktop) {
  Open("standard");
  const std::uint32_t desktop = desktop_.PixelAt(window_.x - 3, window_.y - 3);
  EXPECT_EQ(desktop_.PixelAt(window_.x, window_.y), desktop);
  EXPECT_NE(desktop_.PixelAt(window_.x + window_.width / 2, window_.y + window_.height / 2),
            desktop);
}

TEST_F(MainWindowTest, CaptionStripMovesTheWindowAndChangesNoMode) {
  Open("standard");
  const ScreenRect grip = SkinRect({200, 20}, {1, 1});
  desktop_.Drag({grip.x, grip.y}, {grip.x + 40, grip.y + 30}, 10);
  EXPECT_TRUE(Eventually([&] {
    const auto moved = desktop_.FindWindow("Tonalyx");
    return moved && moved->x == window_.x + 40 && moved->y == window_.y + 30;
  }));
  EXPECT_THAT(ReceivedEvents(), IsEmpty());
}

TEST_F(MainWindowTest, EveryWayToCloseEndsWithZero) {
  UseLaptop("standard");
  struct Way {
    const char* name;
    std::function<void()> close;
  };
  const Way ways[] = {
      {"close element",
       [&] {
         ClickSkin({608, 24});
       }},
      {"Done",
       [&] {
         ClickSkin({572, 419});
       }},
      {"Escape", [&] { PressUntilItEnds("Escape"); }},
      {"Enter", [&] { PressUntilItEnds("Return"); }},
      {"window manager", [&] { desktop_.RequestClose("Tonalyx"); }},
  };
  for (const Way& way : ways) {
    SCOPED_TRACE(way.name);
    StartPanel();
    ASSERT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == "Tonalyx"; }));
    way.close();
    EXPECT_EQ(panel_->WaitForExit(seconds(2)), 0) << "the watcher waits, and must not hold it up";
  }
}

TEST_F(MainWindowTest, MinimisesAndSecondStartBringsItBack) {
  Open("standard");
  const std::string log = Log();
  ClickSkin({582, 24});
  ASSERT_TRUE(Eventually([&] { return desktop_.IsIconified("Tonalyx"); }));
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, std::vector<std::string>{"/init"}}) {
    EXPECT_EQ(Run("tonalyx", arguments).exitStatus, 0);
    EXPECT_TRUE(Eventually(
        [&] { return !desktop_.IsIconified("Tonalyx") && desktop_.ActiveTitle() == "Tonalyx"; }));
  }
  EXPECT_EQ(Log(), log) << "a second start leaves no line";
  EXPECT_EQ(ClosePanel(), 0);
  StartPanel();
  EXPECT_TRUE(Log().starts_with(log));
  EXPECT_GT(Log().size(), log.size());
}

TEST_F(MainWindowTest, AdvancedEntryExistsOnlyWithThreeLayers) {
  Open("standard");
  EXPECT_FALSE(ShowsAdvancedText());
  ClickSkin({80, 416});
  std::this_thread::sleep_for(milliseconds(300));
  EXPECT_TRUE(desktop_.FindWindow("Tonalyx"));
  ASSERT_EQ(ClosePanel(), 0);

  UseLaptop("layers");
  StartPanel();
  EXPECT_TRUE(Eventually([&] { return ShowsAdvancedText(); }));
}

TEST_F(MainWindowTest, DavrinSkinHasItsOwnGridAndNoDone) {
  Open("davrin");
  const double scale = desktop_.Dpi() / 96.0;
  EXPECT_EQ(window_.width, static_cast<int>(1802 * desktop_.Dpi() / 240.0));
  ClickSkin({572, 419});
  std::this_thread::sleep_for(milliseconds(300));
  EXPECT_TRUE(desktop_.FindWindow("Tonalyx")) << "nothing lies where the other skin has Done";
  EXPECT_THAT(ReceivedEvents(), IsEmpty());
  EXPECT_EQ(ActiveSetting(kSpeakerKey), "3");
  desktop_.Click(window_.x + static_cast<int>(560 * scale),
                 window_.y + static_cast<int>(300 * scale));
  EXPECT_TRUE(Eventually([&] { return ActiveSetting(kSpeakerKey) == "6"; })) << "Off";
}

TEST_F(MainWindowTest, StartsWithoutAnyEndpoint) {
  UseLaptop("standard");
  const support::ProcessResult shown = Run("laptopctl", {laptopFile_.string(), "default", "none"});
  ASSERT_EQ(shown.exitStatus, 0);
  StartEngine();
  StartPanel();
  const auto off = PictureOfMode(0);
  EXPECT_NE(PictureOfMode(2), off) << "the window shows what was chosen";
  EXPECT_THAT(ReceivedEvents(), IsEmpty());
  EXPECT_EQ(ActiveSetting(kSpeakerKey), "2");
  EXPECT_EQ(ClosePanel(), 0);
}

TEST_F(MainWindowTest, UnsupportedModelIsRefused) {
  Laptop({"new", "unsupported"});
  // The laptop's driver keeps its jack values in a store of its own.
  environment_["TONALYX_ROOT"] = (folder_ / "fresh").string();
  EXPECT_EQ(Run("tonalyx", {"/init"}).exitStatus, 67) << "1603, as far as the system keeps it";
  EXPECT_FALSE(std::filesystem::exists(folder_ / "fresh" / "registry.db"));
  const support::ProcessResult query = Run("regtool", {"query", "HKLM\\SOFTWARE\\Norvane"});
  EXPECT_EQ(query.exitStatus, 1);

  support::ChildProcess panel = Start("tonalyx");
  ASSERT_TRUE(desktop_.WaitForWindow("Error", seconds(5)));
  EXPECT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == "Error"; }));
  EXPECT_FALSE(desktop_.FindWindow("Tonalyx"));
  desktop_.PressKey("Return");
  EXPECT_EQ(panel.WaitForExit(seconds(5)), 1);
}

TEST_F(MainWindowTest, InstallsWithoutADisplay) {
  environment_["DISPLAY"] = "";
  UseLaptop("standard");
  EXPECT_EQ(ActiveSetting(kSpeakerKey), "2");
}

}  // namespace
}  // namespace e2e
