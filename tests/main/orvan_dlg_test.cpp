// The window on a real display, with a laptop of fakes behind it.
#include "ui/main/orvan_dlg.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "platform/screen.h"
#include "resources/templates.h"
#include "tests/main/mode_fixture.h"
#include "tests/support/scripted_window.h"

namespace ui {
namespace {

using platform::LParam;
using support::kScriptEnded;

using ScriptedMainWindow = support::Scripted<COrvanDlg>;
using ScriptedDialog = support::Scripted<platform::Dialog>;

class OrvanDlgTest : public ModeFixture {};

TEST_F(OrvanDlgTest, AClickOnAModeWritesItAndWakesTheEngineOnce) {
  WriteSetting(kSpeakerKey, u"1");
  ScriptedMainWindow window(platform_, MainWindowModel{}, nullptr);
  window.ThenDo([&] {
    EXPECT_EQ(window.Text(), u"Tonalyx");
    const double scale = platform::GetScreenDpi().x / 96.0;
    EXPECT_EQ(window.ClientRect().Width(), static_cast<std::int32_t>(651 * scale));
    EXPECT_EQ(window.ClientRect().Height(), static_cast<std::int32_t>(454 * scale));
    EXPECT_TRUE(events_.Calls().empty()) << "opening changes nothing";

    window.ClickAt(500, 200);
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"3");
    EXPECT_EQ(ReadSetting(kSubwooferKey), u"3");
    EXPECT_EQ(events_.Sets(), ModeChangeEvents());
    events_.ClearCalls();
    window.ClickAt(500, 200);
    EXPECT_TRUE(events_.Calls().empty()) << "selected already";
    window.ClickAt(30, 252);
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"4") << "where two rows overlap the lower one is meant";
    window.ClickAt(45, 410);  // where other models have the Advanced entry
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

TEST_F(OrvanDlgTest, TheDavrinSkinHasItsOwnPlaces) {
  WriteSetting(kSpeakerKey, u"1");
  ScriptedMainWindow window(platform_, MainWindowModel{.davrinModel = true}, nullptr);
  window.ThenDo([&] {
    window.ClickAt(530, 410);  // the other skin's Done button
    window.ClickAt(600, 300);
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"6");
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

TEST_F(OrvanDlgTest, CloseAndDoneEndTheWindow) {
  for (const auto& [x, y] : {std::pair{600, 20}, std::pair{540, 420}}) {
    ScriptedMainWindow window(platform_, MainWindowModel{}, nullptr);
    window.ThenDo([&window, at = std::pair(x, y)] { window.ClickAt(at.first, at.second); });
    window.Then([] { return false; });
    EXPECT_EQ(window.DoModal(), 0);
  }
}

TEST_F(OrvanDlgTest, FollowsWhatOthersWrite) {
  // The first start makes the key; it must be watched from then on.
  ScriptedMainWindow window(platform_, MainWindowModel{}, nullptr);
  const auto waitForChange = [&window](int count) {
    window.Then(
        [&window, count] { return window.Received(endpoints::kSettingChangedMessage) >= count; });
  };
  EXPECT_EQ(ReadSetting(kSpeakerKey), std::nullopt);
  waitForChange(1);
  window.ThenDo([&] {
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"1");
    events_.ClearCalls();
    WriteSetting(kSpeakerKey, u"5");
  });
  waitForChange(2);
  window.ThenDo([&] {
    window.ClickAt(300, 320);
    EXPECT_TRUE(events_.Calls().empty()) << "the fifth mode is selected now";
    WriteSetting(kHeadphonesKey, u"3");
    Plug(Jack::Headphones);
  });
  window.Then([&window] {
    const auto headphones = static_cast<LParam>(endpoints::OutputPath::Headphone);
    return window.LastParameter(endpoints::kSettingChangedMessage) == headphones;
  });
  window.ThenDo([&] {
    window.ClickAt(500, 200);
    EXPECT_TRUE(events_.Calls().empty()) << "the headphones' own mode is shown";
    window.ClickAt(100, 200);
    EXPECT_EQ(ReadSetting(kHeadphonesKey), u"1");
    EXPECT_EQ(ReadSetting(kSpeakerKey), u"5");
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

TEST_F(OrvanDlgTest, OpensWithoutAnEndpointAndLeavesWhatItRegistered) {
  audioDevices_.SetDefault(u"");
  {
    ScriptedMainWindow window(platform_, MainWindowModel{}, nullptr);
    window.ThenDo([&] {
      EXPECT_TRUE(audioDevices_.HasSinks());
      window.ClickAt(500, 200);
    });
    EXPECT_EQ(window.DoModal(), kScriptEnded);
  }
  EXPECT_EQ(ReadSetting(kSpeakerKey), std::nullopt);
  EXPECT_TRUE(events_.Calls().empty());
  EXPECT_FALSE(audioDevices_.HasSinks());
}

TEST_F(OrvanDlgTest, HidesBehindTheAdvancedDialogAndReturnsWithTheStoresMode) {
  // Without an endpoint at the start nothing watches, so the window has to look for itself.
  audioDevices_.SetDefault(u"");
  int opened = 0;
  ScriptedMainWindow* main = nullptr;
  const auto factory = [&]() -> std::unique_ptr<platform::Dialog> {
    ++opened;
    auto dialog = std::make_unique<ScriptedDialog>(resources::kMainTemplate);
    dialog->ThenDo([&] {
      EXPECT_FALSE(main->IsVisible());
      audioDevices_.SetDefault(kSpeakerId);
      WriteSetting(kSpeakerKey, u"4");
    });
    return dialog;
  };
  ScriptedMainWindow window(platform_, MainWindowModel{.threeGuiLayers = true}, factory);
  main = &window;
  window.ThenDo([&window] {
    // Both clicks are there before the window can hide.
    window.ClickAt(45, 410);
    window.ClickAt(140, 420);
  });
  window.Then([&] { return opened > 0 && window.IsVisible(); });
  window.ThenDo([&window] {
    window.ClickAt(100, 320);
    window.ClickAt(225, 200);
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
  EXPECT_EQ(opened, 1);
  EXPECT_TRUE(events_.Calls().empty()) << "the fourth mode was selected on return";
}

}  // namespace
}  // namespace ui
