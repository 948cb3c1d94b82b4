// The advanced dialog with all its controls, as a screen reader sees it and works on it.
#include <gmock/gmock.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "resources/resource_ids.h"
#include "tests/accessible/accessible_tree.h"
#include "tests/eq/eq_machine.h"
#include "tests/support/scripted_window.h"
#include "ui/eq/kel_control_dlg.h"

namespace ui {
namespace {

using support::AccessibleTree;
using support::AllTold;
using support::kScriptEnded;
using support::Listener;
using support::Told;
using testing::Contains;
using testing::ElementsAreArray;
using testing::IsSupersetOf;
using ScriptedAdvancedDialog = support::Scripted<CKelControlDlg>;

constexpr int kSignalsOfAnEdit = 6;  // three for each of two active endpoints

class AccessibleAdvancedDialog : public testing::Test {
 protected:
  AccessibleAdvancedDialog() {
    machine_.SetActive(kSpeakerPathKey, u"3");
    Parameters set = EqMachine::InitialSet();
    for (int band = 1; band <= 10; ++band) {
      const int first = 118 + (band - 1) * 5;
      set[first] = band == 10 ? 0.0F : 1.0F;
      set[first + 2] = 100.0F * static_cast<float>(band);
      set[first + 3] = std::pow(10.0F, static_cast<float>(band - 4) / 20.0F);
    }
    set.insert_or_assign(117, 0.0F);
    set.insert_or_assign(232, 0.25F);
    set.insert_or_assign(6, 0.75F);
    set.insert_or_assign(223, 1.0F);
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", set);
    machine_.events.SetOnSet([this](const std::u16string&) { ++signals_; });
  }

  float Stored(int parameter) {
    return machine_.Read(kSpeakerPathKey, u"3", parameter).value_or(NAN);
  }
  // Presses the button that shows the equalizer, when the window manager has placed the window.
  void Expand() {
    dialog_.Then([&] { return support::IsOnScreen(dialog_); });
    dialog_.ThenDo([&] { AccessibleTree(dialog_).Press("Equalizer"); });
    dialog_.Then([&] {
      return AccessibleTree(dialog_).Line("Equalizer") == "button \"Equalizer\" [expanded]";
    });
  }
  // What `action` does to the controls is one edit, told with these lines.
  void ThenExpectEdit(std::function<void(const AccessibleTree&)> action, int parameter,
                      float stored, std::vector<std::string> told) {
    dialog_.ThenDo([this, action = std::move(action)] {
      listener_.Take();
      signals_ = 0;
      action(AccessibleTree(dialog_));
    });
    dialog_.Then([this] { return signals_ == kSignalsOfAnEdit; });
    dialog_.ThenDo([=, this] {
      EXPECT_FLOAT_EQ(Stored(parameter), stored) << parameter;
      EXPECT_THAT(listener_.Take(), IsSupersetOf(AllTold(told)));
    });
  }

  EqMachine machine_;
  std::atomic<int> signals_{0};
  Listener listener_;
  ScriptedAdvancedDialog dialog_{machine_.platform, store::ModelFlags{true, false}};
};

TEST_F(AccessibleAdvancedDialog, TellsEveryControlAndItsPlace) {
  const std::string type = " (Filter type of the selected band)";
  const auto band = [](int number, const std::string& place, const std::string& state) {
    return "radio button \"Band " + std::to_string(number) + "\" \"" + place + "\" [" + state +
           "] (" + place + ")";
  };
  const std::vector<std::string> lines = {
      "87,39 128x154 dial \"Bass\" \"25%\" 25 of 0..100 (Amount of bass in percent)",
      "236,39 128x154 dial \"Treble\" \"50%\" 50 of 0..100 (Amount of treble in percent)",
      "384,39 128x154 dial \"Widener\" \"75%\" 75 of 0..100 (Width of the stereo image in percent)",
      "533,39 128x154 dial \"Loudness\" \"100%\" 100 of 0..100 (Amount of loudness in percent)",
      "662,174 83x34 button \"Equalizer\" [expanded] (Shows or hides the equalizer)",
      "584,221 161x23 check box \"Equalizer Enable\" [unchecked] ()",
      "11,249 734x197 chart \"Frequency response\" (Ten bands from 20 Hz to 20 kHz)",
      band(1, "100 Hz, -3.0 dB", "checked"),
      band(2, "200 Hz, -2.0 dB", "unchecked"),
      band(3, "300 Hz, -1.0 dB", "unchecked"),
      band(4, "400 Hz, 0.0 dB", "unchecked"),
      band(5, "500 Hz, +1.0 dB", "unchecked"),
      band(6, "600 Hz, +2.0 dB", "unchecked"),
      band(7, "700 Hz, +3.0 dB", "unchecked"),
      band(8, "800 Hz, +4.0 dB", "unchecked"),
      band(9, "900 Hz, +5.0 dB", "unchecked"),
      band(10, "1000 Hz, +6.0 dB, off", "unchecked"),
      "168,455 389x59 slider \"Gain\" \"-3.0 dB\" -3 of -12..12 (Gain of the selected band in dB)",
      "168,517 389x59 slider \"Frequency\" \"99 Hz\" 99 of 20..20000 "
      "(Frequency of the selected band in Hz)",
      "168,579 389x59 slider \"Bandwidth\" \"90 Hz\" 1.1 of 0.1..5 "
      "(Q of the selected band; the lower, the wider)",
      "584,458 161x20 radio button \"Peaking\" [checked]" + type,
      "584,494 161x20 radio button \"High Shelving\" [unchecked]" + type,
      "584,530 161x20 radio button \"Low Shelving\" [unchecked]" + type,
      "584,566 161x20 radio button \"High Pass\" [unchecked]" + type,
      "584,601 161x20 radio button \"Low Pass\" [unchecked]" + type,
      "11,533 129x20 check box \"Band Enable\" [checked] (Turns the selected band on)",
      "669,11 38x31 menu button \"Menu\" (Loads, saves and restores settings)",
      "707,11 38x31 button \"Close\" ()",
  };
  Expand();
  dialog_.ThenDo([&] {
    const AccessibleTree tree(dialog_);
    EXPECT_EQ(support::LineOf(tree.Root()), "dialog \"Velsona\"");
    std::vector<std::string> found = tree.Lines(support::Detail::Places);
    EXPECT_THAT(found, ElementsAreArray(AllTold(lines)));
    const platform::Rect plot = tree.Find("Frequency response").place;
    const platform::Rect band2 = tree.Find("Band 2").place;
    EXPECT_EQ((platform::Point{band2.left - plot.left, band2.top - plot.top}),
              (platform::Point{248, 94}));
  });
  EXPECT_EQ(dialog_.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, WhatACollapsedDialogLeavesOutIsHiddenAndCannotBeChanged) {
  dialog_.ThenDo([&] {
    const AccessibleTree tree(dialog_);
    EXPECT_EQ(tree.Line("Equalizer"), "button \"Equalizer\" [collapsed]");
    EXPECT_EQ(tree.Line("Gain"), Told("slider \"Gain\" \"-3.0 dB\" -3 of -12..12 [hidden]"));
    EXPECT_EQ(tree.Line("Band 2"),
              "radio button \"Band 2\" \"200 Hz, -2.0 dB\" [unchecked hidden]");
    tree.Set("Gain", 3.0);
    tree.Press("Band 2");
    listener_.Take();
  });
  Expand();
  dialog_.ThenDo([&] {
    EXPECT_THAT(listener_.Take(),
                IsSupersetOf(AllTold({"expansion: button \"Equalizer\" [expanded]",
                                      "shown: check box \"Band Enable\" [checked]"})));
    EXPECT_EQ(signals_, 0);
    AccessibleTree(dialog_).Press("Equalizer");
  });
  dialog_.Then([&] { return listener_.Heard("expansion: button \"Equalizer\" [collapsed]"); });
  // The window manager may take its time.
  dialog_.Then(
      [&] { return listener_.Heard("hidden: check box \"Band Enable\" [checked hidden]"); });
  EXPECT_EQ(dialog_.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, ASliderOrKnobThatIsSetEditsTheStoreOnce) {
  struct Case {
    const char* control;
    double value;
    int parameter;
    float stored;
    const char* line;
  };
  // A slider takes the nearest of the values that a pixel of its travel stands for.
  const Case cases[] = {
      {"Bass", 60.0, 232, 0.6F, "dial \"Bass\" \"60%\" 60 of 0..100"},
      {"Treble", 20.4, 250, 0.2F, "dial \"Treble\" \"20%\" 20 of 0..100"},
      {"Widener", 1e9, 6, 1.0F, "dial \"Widener\" \"100%\" 100 of 0..100"},
      {"Loudness", -7.0, 223, 0.0F, "dial \"Loudness\" \"0%\" 0 of 0..100"},
      {"Gain", 3.5, 121, 1.4962357F, "slider \"Gain\" \"+3.5 dB\" 3.5 of -12..12"},
      {"Gain", 1e300, 121, 3.9810717F, "slider \"Gain\" \"+12.0 dB\" 12 of -12..12"},
      {"Bandwidth", 2.0, 122, 2.0F, "slider \"Bandwidth\" \"49 Hz\" 2 of 0.1..5"},
      {"Frequency", 20000.0, 120, 20000.0F, "slider \"Frequency\" \"20000 Hz\" 20000 of 20..20000"},
      {"Frequency", -1e9, 120, 20.0F, "slider \"Frequency\" \"20 Hz\" 20 of 20..20000"},
  };
  Expand();
  for (const Case& c : cases) {
    ThenExpectEdit([&c](const AccessibleTree& tree) { tree.Set(c.control, c.value); }, c.parameter,
                   c.stored, {std::string("value: ") + c.line});
    dialog_.ThenDo([&] {
      EXPECT_EQ(AccessibleTree(dialog_).Line(c.control), Told(c.line));
      // What it has already, and what is no number, are no edits.
      AccessibleTree(dialog_).Set(c.control, c.value);
      AccessibleTree(dialog_).Set(c.control, std::numeric_limits<double>::quiet_NaN());
    });
  }
  dialog_.ThenDo([&] { EXPECT_EQ(signals_, kSignalsOfAnEdit); });
  EXPECT_EQ(dialog_.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, PressesAreClicks) {
  const auto press = [](const char* name) {
    return [name](const AccessibleTree& tree) { tree.Press(name); };
  };
  Expand();
  ThenExpectEdit(press("Equalizer Enable"), 117, 1.0F,
                 {"check: check box \"Equalizer Enable\" [checked]"});
  ThenExpectEdit(press("Band Enable"), 118, 0.0F,
                 {"description: radio button \"Band 1\" \"100 Hz, -3.0 dB, off\" [checked]"});
  ThenExpectEdit(press("High Pass"), 119, 3.0F, {"check: radio button \"High Pass\" [checked]"});
  ThenExpectEdit(press("Low Shelving"), 119, 4.0F, {});
  ThenExpectEdit(press("High Shelving"), 119, 5.0F, {});
  ThenExpectEdit(press("Peaking"), 119, 1.0F, {});
  ThenExpectEdit(
      press("Low Pass"), 119, 2.0F,
      {"check: radio button \"Peaking\" [unchecked]", "check: radio button \"Low Pass\" [checked]",
       "enabling: slider \"Gain\" \"-3.0 dB\" -3 of -12..12 [disabled]"});
  dialog_.ThenDo([&] {
    signals_ = 0;
    AccessibleTree(dialog_).Set("Gain", 6.0);
    AccessibleTree(dialog_).Press("Band 3");
  });
  dialog_.Then([&] {
    return listener_.Heard("check: radio button \"Band 3\" \"300 Hz, -1.0 dB\" [checked]");
  });
  dialog_.ThenDo([&] {
    EXPECT_EQ(signals_, 0) << "a disabled slider takes nothing, choosing a band changes nothing";
    EXPECT_TRUE(
        listener_.Heard("check: radio button \"Band 1\" \"100 Hz, -3.0 dB, off\" [unchecked]"));
  });
  ThenExpectEdit([](const AccessibleTree& tree) { tree.Set("Gain", 2.0); }, 131, 1.2589254F, {});
  EXPECT_EQ(dialog_.DoModal(), kScriptEnded);
}

}  // namespace
}  // namespace ui
