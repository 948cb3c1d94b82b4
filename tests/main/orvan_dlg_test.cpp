// The window as a whole, with a laptop of fakes behind it.
#include "ui/main/orvan_dlg.h"

#include <algorithm>
#include <chrono>
#include <memory>

#include "resources/templates.h"
#include "tests/controls/picture.h"
#include "tests/main/artwork.h"
#include "tests/main/mode_fixture.h"
#include "tests/support/scripted_window.h"
#include "ui/images/png_resource.h"

namespace ui {
namespace {

using platform::HitTest;
using support::kScriptEnded;
namespace msg = platform::message;

using ScriptedMainWindow = support::Scripted<COrvanDlg>;
using ScriptedDialog = support::Scripted<platform::Dialog>;

class OrvanDlgTest : public ModeFixture {
 protected:
  // Whether the picture has this look of the artwork there, where no text lies over it, at once.
  testing::AssertionResult Looks(const std::string& role, std::int32_t x, std::int32_t y) const {
    const auto image = LoadPngResource(roles_.at(role), 96.0F);
    platform::Bitmap bare =
        Solid({std::min(image->Width(), 75), std::min(image->Height(), 100)}, 0);
    platform::Graphics(bare).DrawImage(*image, 0, 0);
    return Shows(WindowPicture({0, 0, 651, 454}), bare, x, y) << role;
  }

  const std::map<std::string, std::uint16_t> roles_ = ArtworkRoles();
};

TEST_F(OrvanDlgTest, ShowsWhatIsHoveredClickedAndSetElsewhere) {
  WriteSetting(kSpeakerPathKey, u"1");
  WriteSetting(kHeadphonesPathKey, u"6");
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  const auto send = [&window](std::uint32_t message, std::int32_t x, std::int32_t y) {
    return window.Send(message, 0, platform::PointToLParam({x, y}));
  };
  // A window that comes up takes its time.
  window.Then([&] {
    Settle();
    return static_cast<bool>(Looks("studio mode off, selected", 28, 145));
  });
  window.ThenDo([&] {
    EXPECT_TRUE(machine_.audioDevices.HasSinks());
    EXPECT_TRUE(Looks("studio close button, normal", 596, 12));
    send(msg::kMouseMove, 597, 13);
    EXPECT_TRUE(Looks("studio close button, hover", 596, 12));
    send(msg::kMouseMove, 429, 252);
    EXPECT_TRUE(Looks("studio mode speech, hover", 426, 249));
    EXPECT_TRUE(Looks("studio close button, normal", 596, 12));
    send(msg::kMouseMove, 3, 3);
    send(msg::kLeftButtonDown, 230, 252);
    EXPECT_TRUE(Looks("studio mode gaming, selected", 227, 249));
    EXPECT_TRUE(Looks("studio mode speech, normal", 426, 249));
    window.Send(endpoints::UM_SETTING_CHANGED, 0, 2);
    EXPECT_TRUE(Looks("studio mode speech, selected", 426, 249)) << "the headphones' mode";
    EXPECT_EQ(window.Send(msg::kEraseBackground, 0, 0), 1);
    const platform::Rect place = window.WindowRect();
    for (const auto& [x, hit] :
         {std::pair{530, HitTest::Caption}, std::pair{531, HitTest::Client}}) {
      EXPECT_EQ(send(msg::kNonClientHitTest, place.left + x, place.top + 35),
                static_cast<platform::LResult>(hit));
    }
    EXPECT_TRUE(VisibleWindowHasIcon());
    send(msg::kLeftButtonDown, 571, 13);
    EXPECT_TRUE(window.IsMinimized());
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
  EXPECT_EQ(ReadSetting(kSpeakerPathKey), u"5");
}

TEST_F(OrvanDlgTest, LooksForTheWarningOnceASecond) {
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  std::chrono::steady_clock::time_point first;
  platform::Bitmap before = Solid({1, 1}, 0);
  window.Then([&] { return window.Received(msg::kTimer) == 1; });
  window.ThenDo([&] {
    first = std::chrono::steady_clock::now();
    Settle();
    before = WindowPicture({150, 362, 620, 384});
    PlayElsewhere();
  });
  window.Then([&] { return !SamePixels(before, WindowPicture({150, 362, 620, 384})); });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
  const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - first);
  EXPECT_GT(seconds.count(), 0.7);
  EXPECT_LT(seconds.count(), 2.3);
}

TEST_F(OrvanDlgTest, OpensWithoutAnEndpointAndLeavesWhatItRegistered) {
  machine_.audioDevices.SetDefault(u"");
  {
    ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
    window.ThenDo([&] {
      EXPECT_TRUE(machine_.audioDevices.HasSinks());
      window.ClickAt(500, 200);
    });
    EXPECT_EQ(window.DoModal(), kScriptEnded);
  }
  EXPECT_EQ(ReadSetting(kSpeakerPathKey), u"");
  EXPECT_TRUE(machine_.events.Calls().empty());
  EXPECT_FALSE(machine_.audioDevices.HasSinks());
}

TEST_F(OrvanDlgTest, HidesBehindTheAdvancedDialogAndReturnsWithTheStoresMode) {
  // Without an endpoint at the start nothing watches, so the window has to look for itself.
  machine_.audioDevices.SetDefault(u"");
  int opened = 0;
  ScriptedMainWindow* main = nullptr;
  const auto factory = [&]() -> std::unique_ptr<platform::Dialog> {
    ++opened;
    auto dialog = std::make_unique<ScriptedDialog>(resources::kMainTemplate);
    dialog->ThenDo([&] {
      EXPECT_FALSE(main->IsVisible());
      machine_.audioDevices.SetDefault(u"speaker");
      WriteSetting(kSpeakerPathKey, u"4");
    });
    return dialog;
  };
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{.threeGuiLayers = true}, factory);
  main = &window;
  window.ThenDo([&window] {
    // Both clicks are there before the window can hide.
    window.ClickAt(45, 410);
    window.ClickAt(140, 420);
  });
  window.Then([&] { return opened > 0 && window.IsVisible(); });
  window.Then([&] { return static_cast<bool>(Looks("studio mode recording, selected", 28, 249)); });
  window.ThenDo([&] {
    window.ClickAt(100, 320);
    window.ClickAt(225, 200);
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
  EXPECT_EQ(opened, 1);
  EXPECT_TRUE(machine_.events.Calls().empty()) << "the fourth mode was selected on return";
}

}  // namespace
}  // namespace ui
