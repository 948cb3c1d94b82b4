// The main window, which has no controls but draws them, as a screen reader sees it.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/accessible/accessible_tree.h"
#include "tests/main/mode_fixture.h"
#include "tests/support/scripted_window.h"
#include "ui/main/orvan_dlg.h"

namespace ui {
namespace {

using support::AccessibleTree;
using support::AllTold;
using support::kScriptEnded;
using support::Listener;
using testing::ElementsAreArray;
using ScriptedMainWindow = support::Scripted<COrvanDlg>;

constexpr const char* kWarning = "Warning: This tool can only be used with supported endpoints.";

class AccessibleMainWindow : public ModeFixture {
 protected:
  AccessibleMainWindow() { WriteSetting(kSpeakerPathKey, u"1"); }
};

TEST_F(AccessibleMainWindow, TellsWhatEachSkinDraws) {
  const std::string warning = std::string("alert \"") + kWarning + "\" [hidden]";
  struct Case {
    store::ModelFlags model;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {{},
       {"radio button \"OFF\" [checked]", "radio button \"Music Mode\" [unchecked]",
        "radio button \"Movie Mode\" [unchecked]", "radio button \"Recording Mode\" [unchecked]",
        "radio button \"Gaming Mode\" [unchecked]", "radio button \"Speech Mode\" [unchecked]",
        "link \"Norvane web site\"", "button \"Done\"", "button \"Minimize\"", "button \"Close\"",
        warning}},
      {{.threeGuiLayers = true, .davrinModel = true},
       {"radio button \"War Room\" [checked]", "radio button \"Battlefield\" [unchecked]",
        "radio button \"Multimedia\" [unchecked]", "radio button \"Action\" [unchecked]",
        "radio button \"Soundscape\" [unchecked]", "radio button \"Off\" [unchecked]",
        "button \"Advanced\"", "link \"Norvane web site\"", "button \"Minimize\"",
        "button \"Close\"", warning}},
  };
  for (const Case& c : cases) {
    ScriptedMainWindow window(machine_.platform, c.model, nullptr);
    window.ThenDo([&] {
      const AccessibleTree tree(window);
      EXPECT_EQ(support::LineOf(tree.Root()), "dialog \"Tonalyx\"");
      EXPECT_THAT(tree.Lines(), ElementsAreArray(c.lines));
    });
    EXPECT_EQ(window.DoModal(), kScriptEnded);
  }
}

TEST_F(AccessibleMainWindow, APressedModeIsAClickedMode) {
  Listener listener;
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  window.ThenDo([&] {
    listener.Take();
    AccessibleTree(window).Press("Movie Mode");
  });
  window.Then([&] { return ReadSetting(kSpeakerPathKey) == u"3"; });
  window.ThenDo([&] {
    EXPECT_EQ(ReadSetting(kSubwooferPathKey), u"3");
    EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents());
    EXPECT_THAT(listener.Take(),
                ElementsAreArray(AllTold({"check: radio button \"OFF\" [unchecked]",
                                          "check: radio button \"Movie Mode\" [checked]"})));
    machine_.events.ClearCalls();
    AccessibleTree(window).Press("Movie Mode");
    AccessibleTree(window).Press("Speech Mode");
  });
  window.Then([&] { return ReadSetting(kSpeakerPathKey) == u"6"; });
  window.ThenDo([&] {
    EXPECT_EQ(machine_.events.Sets(), ModeChangeEvents())
        << "a mode that is selected already writes none";
  });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

TEST_F(AccessibleMainWindow, TheWarningIsTold) {
  Listener listener;
  ScriptedMainWindow window(machine_.platform, store::ModelFlags{}, nullptr);
  window.ThenDo([&] { PlayElsewhere(); });
  const std::string line = std::string("alert \"") + kWarning + '"';
  window.Then([&] { return listener.Heard("shown: " + line); });
  window.ThenDo([&] { machine_.audioDevices.SetDefault(u"speaker"); });
  window.Then([&] { return listener.Heard("hidden: " + line + " [hidden]"); });
  EXPECT_EQ(window.DoModal(), kScriptEnded);
}

}  // namespace
}  // namespace ui
