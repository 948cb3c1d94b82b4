// The advanced dialog with all its controls, as a screen reader sees it and works on it.
#include <gmock/gmock.h>

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QMenu>
#include <QWindow>
#include <atomic>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "dsp/conversions.h"
#include "resources/resource_ids.h"
#include "tests/accessible/accessible_tree.h"
#include "tests/eq/eq_machine.h"
#include "tests/support/scripted_window.h"
#include "ui/eq/kel_control_dlg.h"

namespace ui {
namespace {

using support::AccessibleTree;
using support::kScriptEnded;
using support::Listener;
using testing::Contains;
using testing::ElementsAreArray;
using testing::IsSupersetOf;
using ScriptedAdvancedDialog = support::Scripted<CKelControlDlg>;

constexpr store::ModelFlags kTwoLayers{false, false};
constexpr store::ModelFlags kThreeLayers{true, false};
constexpr int kSignalsOfAnEdit = 6;  // three for each of two active endpoints
constexpr int kFirstBandEnable = 118;
constexpr int kFirstBandType = 119;
constexpr int kFirstBandFrequency = 120;
constexpr int kFirstBandGain = 121;
constexpr int kFirstBandQ = 122;
constexpr int kThirdBandGain = kFirstBandGain + 2 * dsp::kFieldsPerBand;

class AccessibleAdvancedDialog : public testing::Test {
 protected:
  AccessibleAdvancedDialog() {
    machine_.SetActive(kSpeakerPathKey, u"3");
    Parameters set = EqMachine::InitialSet();
    for (int band = 1; band <= dsp::kBandCount; ++band) {
      const int first = dsp::kFirstBandParameter + (band - 1) * dsp::kFieldsPerBand;
      set[first] = band == 10 ? 0.0F : 1.0F;
      set[first + 1] = 1.0F;
      set[first + 2] = 100.0F * static_cast<float>(band);
      set[first + 3] = dsp::GainFromDecibels(static_cast<float>(band - 4));
      set[first + 4] = 1.0F;
    }
    set[dsp::kEqualizerEnable] = 0.0F;
    set[dsp::kBassAmount] = 0.25F;
    set[dsp::kTrebleAmount] = 0.5F;
    set[dsp::kWidenerAmount] = 0.75F;
    set[dsp::kLoudnessAmount] = 1.0F;
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", set);
    machine_.events.SetOnSet([this](const std::u16string&) { ++signals_; });
  }

  float Stored(int parameter) {
    return machine_.Read(kSpeakerPathKey, u"3", parameter).value_or(NAN);
  }
  // Presses the button that shows the equalizer, when the window manager has placed the window.
  static void Expand(ScriptedAdvancedDialog& dialog) {
    dialog.Then([&dialog] { return AccessibleTree(dialog).Root().window()->isExposed(); });
    dialog.ThenDo([&dialog] { AccessibleTree(dialog).Press("Equalizer"); });
    dialog.Then([&dialog] {
      return AccessibleTree(dialog).Line("Equalizer") == "button \"Equalizer\" [expanded]";
    });
  }

  EqMachine machine_;
  std::atomic<int> signals_{0};
};

TEST_F(AccessibleAdvancedDialog, TellsEveryControl) {
  const std::vector<std::string> lines = {
      "dial \"Bass\" \"25%\" 25 of 0..100",
      "dial \"Treble\" \"50%\" 50 of 0..100",
      "dial \"Widener\" \"75%\" 75 of 0..100",
      "dial \"Loudness\" \"100%\" 100 of 0..100",
      "button \"Equalizer\" [expanded]",
      "check box \"Equalizer Enable\" [unchecked]",
      "chart \"Frequency response\"",
      "radio button \"Band 1\" \"100 Hz, -3.0 dB\" [checked]",
      "radio button \"Band 2\" \"200 Hz, -2.0 dB\" [unchecked]",
      "radio button \"Band 3\" \"300 Hz, -1.0 dB\" [unchecked]",
      "radio button \"Band 4\" \"400 Hz, 0.0 dB\" [unchecked]",
      "radio button \"Band 5\" \"500 Hz, +1.0 dB\" [unchecked]",
      "radio button \"Band 6\" \"600 Hz, +2.0 dB\" [unchecked]",
      "radio button \"Band 7\" \"700 Hz, +3.0 dB\" [unchecked]",
      "radio button \"Band 8\" \"800 Hz, +4.0 dB\" [unchecked]",
      "radio button \"Band 9\" \"900 Hz, +5.0 dB\" [unchecked]",
      "radio button \"Band 10\" \"1000 Hz, +6.0 dB, off\" [unchecked]",
      "slider \"Gain\" \"-3.0 dB\" -3 of -12..12",
      "slider \"Frequency\" \"99 Hz\" 99 of 20..20000",
      "slider \"Bandwidth\" \"90 Hz\" 1.1 of 0.1..5",
      "radio button \"Peaking\" [checked]",
      "radio button \"High Shelving\" [unchecked]",
      "radio button \"Low Shelving\" [unchecked]",
      "radio button \"High Pass\" [unchecked]",
      "radio button \"Low Pass\" [unchecked]",
      "check box \"Band Enable\" [checked]",
      "menu button \"Menu\"",
      "button \"Close\"",
  };
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  Expand(dialog);
  dialog.ThenDo([&] {
    const AccessibleTree tree(dialog);
    EXPECT_EQ(support::LineOf(tree.Root()), "dialog \"Velsona\"");
    EXPECT_THAT(tree.Lines(), ElementsAreArray(lines));
    EXPECT_EQ(tree.Find("Gain").text(QAccessible::Description), "Gain of the selected band in dB");
    const QRect plot = tree.Find("Frequency response").rect();
    EXPECT_TRUE(plot.contains(tree.Find("Band 10").rect()));
  });
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, WhatACollapsedDialogLeavesOutIsHiddenAndCannotBeChanged) {
  Listener listener;
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  dialog.ThenDo([&] {
    const AccessibleTree tree(dialog);
    EXPECT_EQ(tree.Line("Equalizer"), "button \"Equalizer\" [collapsed]");
    EXPECT_EQ(tree.Line("Bass"), "dial \"Bass\" \"25%\" 25 of 0..100");
    EXPECT_EQ(tree.Line("Gain"), "slider \"Gain\" \"-3.0 dB\" -3 of -12..12 [hidden]");
    EXPECT_EQ(tree.Line("Band 2"),
              "radio button \"Band 2\" \"200 Hz, -2.0 dB\" [unchecked hidden]");
    tree.Set("Gain", 3.0);
    tree.Press("Band Enable");
    tree.Press("Band 2");
    listener.Take();
  });
  Expand(dialog);
  dialog.ThenDo([&] {
    EXPECT_THAT(listener.Take(), IsSupersetOf({"expansion: button \"Equalizer\" [expanded]",
                                               "shown: slider \"Gain\" \"-3.0 dB\" -3 of -12..12",
                                               "shown: check box \"Band Enable\" [checked]"}));
    EXPECT_EQ(AccessibleTree(dialog).Line("Band 2"),
              "radio button \"Band 2\" \"200 Hz, -2.0 dB\" [unchecked]");
    EXPECT_EQ(signals_, 0);
    AccessibleTree(dialog).Press("Equalizer");
  });
  dialog.Then([&] { return listener.Heard("expansion: button \"Equalizer\" [collapsed]"); });
  // The window manager may take its time.
  dialog.Then([&] { return listener.Heard("hidden: check box \"Band Enable\" [checked hidden]"); });
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, AModelWithoutEqualizerHidesItsButtonAndStaysCollapsed) {
  ScriptedAdvancedDialog dialog(machine_.platform, kTwoLayers);
  dialog.ThenDo([&] {
    EXPECT_EQ(AccessibleTree(dialog).Line("Equalizer"), "button \"Equalizer\" [collapsed hidden]");
    const platform::Rect collapsed = dialog.WindowRect();
    dialog.Send(platform::message::kCommand,
                platform::MakeWParam(resources::kExpandButton, platform::kNotifyClicked), 0);
    EXPECT_EQ(dialog.WindowRect().Height(), collapsed.Height());
    dialog.Send(kSignalEngineMessage, 0, 0);
    EXPECT_EQ(signals_, kSignalsOfAnEdit) << "whoever asks for it wakes the engine";
  });
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
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
      {"Bass", 60.0, dsp::kBassAmount, 0.6F, "dial \"Bass\" \"60%\" 60 of 0..100"},
      {"Loudness", -7.0, dsp::kLoudnessAmount, 0.0F, "dial \"Loudness\" \"0%\" 0 of 0..100"},
      {"Gain", 3.5, kFirstBandGain, dsp::GainFromSlider(35),
       "slider \"Gain\" \"+3.5 dB\" 3.5 of -12..12"},
      {"Gain", 1e300, kFirstBandGain, dsp::GainFromSlider(120),
       "slider \"Gain\" \"+12.0 dB\" 12 of -12..12"},
      {"Bandwidth", 2.0, kFirstBandQ, 2.0F, "slider \"Bandwidth\" \"49 Hz\" 2 of 0.1..5"},
      {"Frequency", 20000.0, kFirstBandFrequency, 20000.0F,
       "slider \"Frequency\" \"20000 Hz\" 20000 of 20..20000"},
      {"Frequency", -1e9, kFirstBandFrequency, 20.0F,
       "slider \"Frequency\" \"20 Hz\" 20 of 20..20000"},
  };
  Listener listener;
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  Expand(dialog);
  for (const Case& c : cases) {
    dialog.ThenDo([&] {
      listener.Take();
      signals_ = 0;
      AccessibleTree(dialog).Set(c.control, c.value);
    });
    dialog.Then([&] { return signals_ == kSignalsOfAnEdit; });
    dialog.ThenDo([&] {
      EXPECT_EQ(Stored(c.parameter), c.stored) << c.control << ' ' << c.value;
      EXPECT_EQ(AccessibleTree(dialog).Line(c.control), c.line);
      EXPECT_THAT(listener.Take(), Contains(std::string("value: ") + c.line));
      // What it has already, and what is no number, are no edits.
      AccessibleTree(dialog).Set(c.control, c.value);
      AccessibleTree(dialog).Set(c.control, std::numeric_limits<double>::quiet_NaN());
    });
  }
  dialog.ThenDo([&] { EXPECT_EQ(signals_, kSignalsOfAnEdit); });
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
}

// Whatever screen readers do in steps must get somewhere from every value, in both directions.
TEST_F(AccessibleAdvancedDialog, StepsReachBothEndsOfEverySlider) {
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  Expand(dialog);
  for (const char* const name : {"Gain", "Frequency", "Bandwidth", "Bass"}) {
    dialog.ThenDo([&dialog, name] {
      QAccessibleInterface& control = AccessibleTree(dialog).Find(name);
      QAccessibleValueInterface& number = *control.valueInterface();
      const auto run = [&](const QString& action, double direction, double end) {
        for (double before = NAN; number.currentValue().toDouble() != end;) {
          before = number.currentValue().toDouble();
          control.actionInterface()->doAction(action);
          ASSERT_GT((number.currentValue().toDouble() - before) * direction, 0.0)
              << name << " at " << before;
        }
      };
      run(QAccessibleActionInterface::increaseAction(), 1.0, number.maximumValue().toDouble());
      run(QAccessibleActionInterface::decreaseAction(), -1.0, number.minimumValue().toDouble());
    });
  }
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, PressesAreClicks) {
  Listener listener;
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  Expand(dialog);
  const auto press = [&](const char* name) {
    dialog.ThenDo([&, name] {
      listener.Take();
      signals_ = 0;
      AccessibleTree(dialog).Press(name);
    });
  };
  const auto waitForEdit = [&] { dialog.Then([&] { return signals_ == kSignalsOfAnEdit; }); };
  press("Equalizer Enable");
  waitForEdit();
  dialog.ThenDo([&] {
    EXPECT_EQ(Stored(dsp::kEqualizerEnable), 1.0F);
    EXPECT_THAT(listener.Take(), Contains("check: check box \"Equalizer Enable\" [checked]"));
  });
  press("Band Enable");
  waitForEdit();
  dialog.ThenDo([&] {
    EXPECT_EQ(Stored(kFirstBandEnable), 0.0F);
    EXPECT_THAT(
        listener.Take(),
        Contains("description: radio button \"Band 1\" \"100 Hz, -3.0 dB, off\" [checked]"));
  });
  press("Low Pass");
  waitForEdit();
  dialog.ThenDo([&] {
    EXPECT_EQ(Stored(kFirstBandType), 2.0F);
    EXPECT_THAT(listener.Take(),
                IsSupersetOf({"check: radio button \"Peaking\" [unchecked]",
                              "check: radio button \"Low Pass\" [checked]",
                              "enabling: slider \"Gain\" \"-3.0 dB\" -3 of -12..12 [disabled]"}));
    signals_ = 0;
    AccessibleTree(dialog).Set("Gain", 6.0);
  });
  press("Band 3");
  dialog.Then([&] {
    return listener.Heard("check: radio button \"Band 3\" \"300 Hz, -1.0 dB\" [checked]");
  });
  dialog.ThenDo([&] {
    EXPECT_EQ(signals_, 0) << "a disabled slider takes nothing, choosing a band changes nothing";
    const AccessibleTree tree(dialog);
    EXPECT_EQ(tree.Line("Gain"), "slider \"Gain\" \"-1.0 dB\" -1 of -12..12");
    tree.Set("Gain", 2.0);
  });
  waitForEdit();
  dialog.ThenDo([&] { EXPECT_EQ(Stored(kThirdBandGain), dsp::GainFromSlider(20)); });
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, TheMenuOpensByActionAndItsBoxesKeepTheDialogFromChanging) {
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  const auto menu = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
  const auto box = [] { return QApplication::activeModalWidget(); };
  dialog.ThenDo([&] { AccessibleTree(dialog).Press("Menu"); });
  dialog.Then([&] { return menu() != nullptr; });
  dialog.ThenDo([&] { AccessibleTree(dialog).Press("Restore defaults..."); });
  dialog.Then([&] { return box() != nullptr; });
  dialog.ThenDo([&] {
    AccessibleTree(dialog).Set("Bass", 60.0);
    AccessibleTree(dialog).Press("Close");
  });
  dialog.ThenDo([&] { AccessibleTree(box()).Press("No"); });
  dialog.Then([&] { return box() == nullptr; });
  dialog.ThenDo([&] {
    EXPECT_EQ(signals_, 0);
    EXPECT_EQ(AccessibleTree(dialog).Line("Bass"), "dial \"Bass\" \"25%\" 25 of 0..100");
    AccessibleTree(dialog).Press("Close");
  });
  dialog.Then([] { return false; });
  EXPECT_EQ(dialog.DoModal(), platform::kIdCancel);
}

TEST_F(AccessibleAdvancedDialog, FileDialogsOfferTheKindsOfFilesByTheirNames) {
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  for (const char* const command : {"Load settings...", "Save setting..."}) {
    const auto files = [] { return qobject_cast<QFileDialog*>(QApplication::activeModalWidget()); };
    dialog.ThenDo([&] { AccessibleTree(dialog).Press("Menu"); });
    dialog.Then([] { return QApplication::activePopupWidget() != nullptr; });
    dialog.ThenDo([&dialog, command] { AccessibleTree(dialog).Press(command); });
    dialog.Then([files] { return files() != nullptr; });
    dialog.ThenDo([files] {
      const auto& kinds = *files()->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
      ASSERT_EQ(kinds.count(), 2);
      EXPECT_EQ(kinds.itemText(0).toStdString(), "Tonalyx user settings (*.tus)");
      EXPECT_EQ(kinds.itemText(1).toStdString(), "All files (*.*)");
      files()->reject();
    });
    dialog.Then([files] { return files() == nullptr; });
  }
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
}

// The system uses the low bits of its commands for itself.
TEST_F(AccessibleAdvancedDialog, TheSystemMenusCommandLeadsToTheAboutBoxWhateverItsLowBits) {
  const auto aboutBox = [] {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible() && widget->windowTitle() == "About Tonalyx") return widget;
    }
    return static_cast<QWidget*>(nullptr);
  };
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  dialog.ThenDo([&] {
    platform::PostToWindow(dialog.Handle(), platform::message::kSystemCommand,
                           resources::kCommandAbout + 3, 0);
  });
  dialog.Then([&] { return aboutBox() != nullptr; });
  dialog.ThenDo([&] { aboutBox()->close(); });
  dialog.Then([&] { return aboutBox() == nullptr; });
  EXPECT_EQ(dialog.DoModal(), kScriptEnded);
}

TEST_F(AccessibleAdvancedDialog, NothingIsLeftOfADialogThatIsGone) {
  Listener listener;
  std::vector<QAccessible::Id> ids;
  ScriptedAdvancedDialog dialog(machine_.platform, kThreeLayers);
  Expand(dialog);
  dialog.ThenDo([&] {
    const AccessibleTree tree(dialog);
    ids = {QAccessible::uniqueId(&tree.Root())};
    for (const char* const name : {"Bass", "Gain", "Menu", "Band 3"}) {
      ids.push_back(QAccessible::uniqueId(&tree.Find(name)));
    }
    tree.Press("Close");
    tree.Press("Menu");
    tree.Press("Band 3");
  });
  dialog.Then([] { return false; });
  EXPECT_EQ(dialog.DoModal(), platform::kIdCancel);
  QCoreApplication::sendPostedEvents();
  for (const QAccessible::Id id : ids) EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

}  // namespace
}  // namespace ui
