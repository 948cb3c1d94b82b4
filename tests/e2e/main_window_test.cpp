#include <gmock/gmock.h>

#include "tests/e2e/panel_fixture.h"

namespace e2e {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;

class MainWindowTest : public PanelTest {
 protected:
  void Open(const std::string& kind) {
    UseLaptop(kind);
    StartEngine();
    StartPanel();
    EXPECT_THAT(ReceivedEvents(), IsEmpty()) << "opening the window must not change the sound";
  }
};

TEST_F(MainWindowTest, ClicksReachStoreAndEngineAndTheWindowFollowsStoreAndJack) {
  Open("standard");
  ASSERT_EQ(ActiveSetting(kSpeakerKey), "2");
  const auto movie = PictureOfMode(2);
  EXPECT_THAT(ReceivedEvents(), ElementsAreArray(ModeChangeEvents()));
  EXPECT_EQ(ActiveSetting(kSpeakerKey), "3");
  EXPECT_EQ(ActiveSetting(kSubwooferKey), "3");
  EXPECT_EQ(ActiveSetting(kHeadphoneKey), "1");
  ClickMode(2);
  EXPECT_THAT(ReceivedEvents(), IsEmpty()) << "the selected mode once more";

  const auto off = PictureOfMode(0);
  ASSERT_NE(movie, off);
  ReceivedEvents();
  SetActiveSetting(kSpeakerKey, "3");
  EXPECT_TRUE(ShowsPicture(movie));
  Laptop({"plug", "headphones"});
  EXPECT_TRUE(ShowsPicture(off));
  EXPECT_THAT(ReceivedEvents(), IsEmpty()) << "following writes nothing";
  EXPECT_EQ(ActiveSetting(kSubwooferKey), "1");
  ClickMode(5);
  EXPECT_THAT(ReceivedEvents(), ElementsAreArray(ModeChangeEvents()));
  EXPECT_EQ(ActiveSetting(kHeadphoneKey), "6");
  ParkPointer();
  Laptop({"unplug"});
  EXPECT_TRUE(ShowsPicture(movie));
}

TEST_F(MainWindowTest, WarnsWhileAnotherAdapterPlays) {
  Open("standard");
  const std::string other = "{0.0.0.00000000}.{5B1C9E70-3A54-4D0F-8C26-7F1E02A9D402}";
  EXPECT_FALSE(ShowsWarning());
  Laptop({"peak", other, "0.5"});
  EXPECT_TRUE(Eventually([&] { return ShowsWarning(); }, seconds(3)));
  Laptop({"peak", other, "0"});
  EXPECT_TRUE(Eventually([&] { return !ShowsWarning(); }, seconds(3)));
}

TEST_F(MainWindowTest, TheLogoOpensTheMakersSite) {
  const std::filesystem::path browser = folder_ / "xdg-open";
  std::ofstream(browser) << "#!/bin/sh\necho \"$1\" >" << folder_ / "opened"
                         << "\n";
  std::filesystem::permissions(browser, std::filesystem::perms::owner_all);
  environment_["PATH"] = folder_.string() + ":" + std::getenv("PATH");
  if (home_.IsWindows()) {
    support::RunProcess({"wine", "reg", "add", R"(HKCU\Software\Wine\WineBrowser)", "/v",
                         "Browsers", "/d", browser.string(), "/f"},
                        environment_);
  }
  Open("standard");
  ClickSkin({291, 405});
  EXPECT_TRUE(Eventually(
      [&] { return support::ReadFile(folder_ / "opened") == "https://www.norvane.example/\n"; }));
}

TEST_F(MainWindowTest, HasItsSizeAndTransparentCornersAndMovesByItsCaption) {
  Open("davrin");
  EXPECT_EQ(window_.width, static_cast<int>(1802 * desktop_.Dpi() / 240.0));
  const std::uint32_t desktop = desktop_.PixelAt(window_.x - 3, window_.y - 3);
  EXPECT_EQ(desktop_.PixelAt(window_.x, window_.y), desktop);
  EXPECT_NE(desktop_.PixelAt(window_.x + window_.width / 2, window_.y + window_.height / 2),
            desktop);
  const ScreenRect grip = SkinRect({200, 20}, {1, 1});
  DragWindow({grip.x, grip.y}, {grip.x + 40, grip.y + 30});
  EXPECT_TRUE(Eventually([&] {
    const auto moved = desktop_.FindWindow("Tonalyx");
    return moved && moved->x == window_.x + 40 && moved->y == window_.y + 30;
  }));
  EXPECT_THAT(ReceivedEvents(), IsEmpty());
}

TEST_F(MainWindowTest, MinimisesAndSecondStartBringsItBack) {
  Open("standard");
  const std::string log = Log();
  ClickSkin({582, 24});
  ASSERT_TRUE(Eventually([&] { return desktop_.IsIconified("Tonalyx"); }));
  EXPECT_EQ(Run("tonalyx", {"/init"}).exitStatus, 0);
  EXPECT_TRUE(Eventually(
      [&] { return !desktop_.IsIconified("Tonalyx") && desktop_.ActiveTitle() == "Tonalyx"; }));
  EXPECT_EQ(Log(), log) << "a second start leaves no line";
  ClickSkin({608, 24});
  EXPECT_EQ(panel_->WaitForExit(seconds(2)), 0) << "the watcher waits, and must not hold it up";
  StartPanel();
  EXPECT_TRUE(Log().starts_with(log));
  EXPECT_GT(Log().size(), log.size());
}

TEST_F(MainWindowTest, UnsupportedModelIsRefused) {
  Laptop({"new", "unsupported"});
  // The laptop's driver keeps its jack values in a store of its own.
  environment_["TONALYX_ROOT"] = (folder_ / "fresh").string();
  EXPECT_EQ(Run("tonalyx", {"/init"}).exitStatus, 67) << "1603, as far as the system keeps it";
  EXPECT_EQ(Run("regtool", {"query", "HKLM\\SOFTWARE\\Norvane"}).exitStatus, 1);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "fresh" / "registry.db"));
  support::ChildProcess panel(PanelCommand(), environment_);
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
