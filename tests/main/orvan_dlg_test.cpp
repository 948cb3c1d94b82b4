// The window on a real display, with a laptop of fakes behind it.
#include "ui/main/orvan_dlg.h"

#include <memory>
#include <optional>

#include "resources/templates.h"
#include "tests/main/mode_fixture.h"
#include "tests/support/scripted_window.h"

namespace ui {
namespace {

using support::kScriptEnded;

using ScriptedMainWindow = support::Scripted<COrvanDlg>;
using ScriptedDialog = support::Scripted<platform::Dialog>;

class OrvanDlgTest : public ModeFixture {};

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
  EXPECT_EQ(ReadSetting(kSpeakerKey), std::nullopt);
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
      machine_.audioDevices.SetDefault(kSpeakerId);
      WriteSetting(kSpeakerKey, u"4");
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
  window.ThenDo([&window] {
    window.ClickAt(100, 320);
    window.ClickAt(225, 200);
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
  EXPECT_EQ(opened, 1);
  EXPECT_TRUE(machine_.events.Calls().empty()) << "the fourth mode was selected on return";
}

}  // namespace
}  // namespace ui
