#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <thread>

#include "platform/drawing.h"
#include "platform/resources.h"
#include "tests/e2e/dialog_fixture.h"

namespace e2e {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using support::Eventually;
using support::ScreenPoint;
using support::ScreenRect;

constexpr int kEqualizerSwitch = 117;

constexpr int BandParameter(int band, int field) {
  return 118 + 5 * (band - 1) + field;
}
constexpr int kEnabled = 0;
constexpr int kType = 1;
constexpr int kFrequency = 2;
constexpr int kGain = 3;
constexpr int kQ = 4;

TEST_F(AdvancedDialogTest, OpensCollapsedAndClosesBackToTheMainWindow) {
  OpenDialog();
  const std::map<int, ScreenPoint> sizes = {
      {96, {755, 644}}, {120, {1006, 792}}, {144, {1132, 990}}, {192, {1509, 1238}}};
  const ScreenPoint size = sizes.at(static_cast<int>(desktop_.Dpi()));
  const ScreenRect collapsed = window_;
  EXPECT_EQ(collapsed.width, size.x);
  EXPECT_EQ(collapsed.height, size.y / 3);
  Expand();
  EXPECT_EQ(window_.x, collapsed.x);
  EXPECT_EQ(window_.y, collapsed.y);
  EXPECT_EQ(window_.height, size.y);
  ClickControl(resources::kExpandButton);
  EXPECT_TRUE(
      Eventually([&] { return desktop_.FindWindow(kDialogTitle)->height == collapsed.height; }));

  EXPECT_EQ(Run("tonalyx", {}).exitStatus, 0);
  EXPECT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == kDialogTitle; }))
      << "a second start finds the dialog";

  // The main window shows what the store holds by the time it comes back.
  SetActiveSetting(kSpeakerKey, "4");
  ClickControl(resources::kCloseButton);
  ASSERT_TRUE(desktop_.WaitForWindow("Tonalyx", seconds(5)));
  window_ = *desktop_.FindWindow("Tonalyx");
  ParkPointer();
  std::this_thread::sleep_for(milliseconds(300));
  const auto shown = Picture();
  EXPECT_EQ(PictureOfMode(3), shown);
}

TEST_F(AdvancedDialogTest, KeysAndMenuEndIt) {
  const std::pair<const char*, std::function<void()>> ways[] = {
      {"Escape", [&] { desktop_.PressKey("Escape"); }},
      {"Enter", [&] { desktop_.PressKey("Return"); }},
      {"the close button by keyboard",
       [&] {
         // From the button that opens the lower part past eight others.
         for (int i = 0; i < 9; ++i) desktop_.PressKey("Tab");
         desktop_.PressKey("space");
       }},
      {"the menu's entry", [&] { ChooseMenu('c'); }},
  };
  OpenDialog();
  for (const auto& [name, end] : ways) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == kDialogTitle; }));
    end();
    ASSERT_TRUE(desktop_.WaitForWindow("Tonalyx", seconds(3)));
    window_ = *desktop_.FindWindow("Tonalyx");
    ClickAdvancedEntry();
  }
}

TEST_F(AdvancedDialogTest, TheBackgroundShowsThroughEveryControl) {
  OpenDialog();
  Expand();
  const auto tile = platform::Bitmap::FromPng(
      platform::FindResourceData(platform::ResourceType::Bitmap, resources::kDialogTileBitmap));
  ASSERT_TRUE(tile);
  const auto showsTile = [&](int x, int y) {
    const std::uint32_t expected =
        tile->GetPixel((x - window_.x) % tile->Width(), (y - window_.y) % tile->Height());
    return Eventually([&] { return desktop_.PixelAt(x, y) == (expected & 0xFFFFFFU); });
  };
  EXPECT_TRUE(showsTile(window_.x + 5, window_.y + window_.height - 5)) << "where nothing is";
  for (const std::uint16_t id :
       {resources::kMenuButton, resources::kCloseButton, resources::kExpandButton,
        resources::kKnobBass, resources::kEqualizerEnable, resources::kGainSlider,
        resources::kTypeLowPass, resources::kBandEnable}) {
    const ScreenRect rect = Control(id);
    EXPECT_TRUE(showsTile(rect.x + 1, rect.y + 1)) << id;
  }
  const ScreenRect slider = Control(resources::kBandwidthSlider);
  EXPECT_TRUE(showsTile(slider.x + slider.width - 2, slider.y + slider.height - 2));
}

TEST_F(AdvancedDialogTest, EveryKnobWritesItsParameterOncePerNotification) {
  OpenDialog();
  struct Case {
    std::uint16_t id;
    int amount;
    int toggled;  // the switch that the knob sets, 0 for none
  };
  for (const Case& knob :
       {Case{resources::kKnobBass, 232, 0}, Case{resources::kKnobTreble, 250, 0},
        Case{resources::kKnobWidener, 6, 5}, Case{resources::kKnobLoudness, 223, 221}}) {
    const ScreenRect rect = Control(knob.id);
    const ScreenPoint middle{rect.width / 2, rect.height / 2};
    const float before = Stored(knob.amount);
    // A quarter turn clockwise above the centre, then back.
    Drag(knob.id, {middle.x - 25, middle.y - 25}, {middle.x + 25, middle.y - 25}, 10);
    EXPECT_TRUE(Eventually([&] { return Stored(knob.amount) > before; })) << knob.id;
    if (knob.toggled != 0) {
      EXPECT_EQ(Stored(knob.toggled), 1.0F);
    }
    const int edits = ReceivedEdits();
    EXPECT_GE(edits, 1);
    EXPECT_LE(edits, 10) << "at most one for each move of the pointer";
    const float turned = Stored(knob.amount);
    Drag(knob.id, {middle.x + 25, middle.y - 25}, {middle.x - 25, middle.y - 25}, 10);
    EXPECT_TRUE(Eventually([&] { return Stored(knob.amount) < turned; })) << knob.id;
    ReceivedEvents();
  }
}

TEST_F(AdvancedDialogTest, SlidersReachBothEndsAndKeepTheMirror) {
  OpenDialog();
  Expand();
  UsePeakingBand();
  struct Case {
    std::uint16_t id;
    int field;
    float left;
    float right;
  };
  for (const Case& slider : {Case{resources::kGainSlider, kGain, std::pow(10.0F, -12.0F / 20.0F),
                                  std::pow(10.0F, 12.0F / 20.0F)},
                             Case{resources::kFrequencySlider, kFrequency, 20.0F, 20000.0F},
                             Case{resources::kBandwidthSlider, kQ, 5.0F, 0.1F}}) {
    SCOPED_TRACE(slider.id);
    const ScreenRect rect = Control(slider.id);
    const int row = rect.height * 3 / 4;
    // A press beside the thumb jumps and is one notification; the drag goes on from there.
    desktop_.Click(rect.x + rect.width - 2, rect.y + row);
    EXPECT_TRUE(BecomesStored(BandParameter(1, slider.field), slider.right));
    EXPECT_EQ(Stored(BandParameter(1, slider.field) + 50), slider.right);
    EXPECT_EQ(ReceivedEdits(), 1);
    Drag(slider.id, {rect.width * 3 / 4, row}, {1, row});
    EXPECT_TRUE(BecomesStored(BandParameter(1, slider.field), slider.left));
    EXPECT_GE(ReceivedEdits(), 1);
  }
}

TEST_F(AdvancedDialogTest, MarkerDraggedToTheCornersIsClamped) {
  OpenDialog();
  Expand();
  const ScreenRect rect = Control(resources::kPlot);
  const dsp::PlotMapping plot = Plot();
  const ScreenPoint corners[] = {{plot.plotLeft + 1, 12},
                                 {rect.width - plot.plotRight - 1, 12},
                                 {rect.width - plot.plotRight - 1, rect.height - 22},
                                 {plot.plotLeft + 1, rect.height - 22}};
  constexpr int kBand = 6;
  for (const ScreenPoint& corner : corners) {
    Drag(resources::kPlot, MarkerOf(kBand), corner, 12);
    const float gain = std::pow(10.0F, (corner.y < rect.height / 2 ? 12.0F : -12.0F) / 20.0F);
    EXPECT_TRUE(BecomesStored(BandParameter(kBand, kGain), gain));
    const float frequency = Stored(BandParameter(kBand, kFrequency));
    if (corner.x < rect.width / 2) {
      EXPECT_EQ(frequency, 20.0F);
    } else {
      EXPECT_GT(frequency, 19000.0F);
      EXPECT_LE(frequency, 20000.0F);
    }
    EXPECT_GE(ReceivedEdits(), 1);
  }
  // The press selected the band: the sliders edit it now.
  const ScreenRect slider = Control(resources::kFrequencySlider);
  desktop_.Click(slider.x + slider.width - 2, slider.y + slider.height * 3 / 4);
  EXPECT_TRUE(BecomesStored(BandParameter(kBand, kFrequency), 20000.0F));
}

TEST_F(AdvancedDialogTest, TypeButtonsAndSwitchesWriteTheirRules) {
  OpenDialog();
  Expand();
  const float q = Stored(BandParameter(1, kQ));
  struct Case {
    std::uint16_t id;
    float type;
    bool fixesQ;
    bool fixesGain;
  };
  StoreParameter(BandParameter(1, kGain), 1.0F);
  SetActiveSetting(kSpeakerKey, ActiveSetting(kSpeakerKey));
  for (const Case& button : {Case{resources::kTypeHighShelving, 5.0F, true, false},
                             Case{resources::kTypeLowShelving, 4.0F, true, false},
                             Case{resources::kTypeHighPass, 3.0F, true, true},
                             Case{resources::kTypeLowPass, 2.0F, true, true},
                             Case{resources::kTypePeaking, 1.0F, true, true}}) {
    ClickControl(button.id);
    EXPECT_TRUE(BecomesStored(BandParameter(1, kType), button.type));
    EXPECT_EQ(Stored(BandParameter(1, kQ)), button.fixesQ ? 0.7F : q);
    if (button.fixesGain) {
      EXPECT_EQ(Stored(BandParameter(1, kGain)), std::pow(10.0F, -0.15F));
    }
    EXPECT_EQ(ReceivedEdits(), 1);
  }
  for (const auto& [id, parameter] :
       {std::pair{resources::kEqualizerEnable, kEqualizerSwitch},
        std::pair{resources::kBandEnable, BandParameter(1, kEnabled)}}) {
    const float before = Stored(parameter);
    ClickControl(id);
    EXPECT_TRUE(BecomesStored(parameter, 1.0F - before));
    ClickControl(id);
    EXPECT_TRUE(BecomesStored(parameter, before));
    EXPECT_EQ(ReceivedEdits(), 2);
  }
}

TEST_F(AdvancedDialogTest, SavedSettingsComeBack) {
  OpenDialog();
  Expand();
  ClickControl(resources::kTypeHighPass);
  EXPECT_TRUE(BecomesStored(BandParameter(1, kType), 3.0F));
  std::this_thread::sleep_for(milliseconds(300));
  const std::vector<float> saved = StoredSettings();
  desktop_.MovePointer(window_.x + 5, window_.y + window_.height - 5);
  std::this_thread::sleep_for(milliseconds(200));
  const auto picture = Picture();

  const std::filesystem::path file = folder_ / "mine";
  ChooseMenu('s');
  AnswerFileDialog("Save As", file.string());
  ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(file.string() + ".tus"); }))
      << "the extension is added";
  EXPECT_TRUE(
      Eventually([&] { return std::filesystem::file_size(file.string() + ".tus") == 426; }));

  ClickControl(resources::kEqualizerEnable);
  UsePeakingBand();
  const ScreenRect slider = Control(resources::kGainSlider);
  desktop_.Click(slider.x + slider.width - 2, slider.y + slider.height * 3 / 4);
  EXPECT_TRUE(BecomesStored(BandParameter(1, kGain), std::pow(10.0F, 0.6F)));
  ASSERT_NE(StoredSettings(), saved);
  ReceivedEvents();

  ChooseMenu('l');
  AnswerFileDialog("Open", file.string() + ".tus");
  EXPECT_TRUE(Eventually([&] { return StoredSettings() == saved; }));
  EXPECT_EQ(ReceivedEdits(), 1);
  desktop_.MovePointer(window_.x + 5, window_.y + window_.height - 5);
  EXPECT_TRUE(ShowsPicture(picture));
}

TEST_F(AdvancedDialogTest, BrokenSettingsFilesAreRefusedWithOneMessage) {
  OpenDialog();
  const std::string header("KUS\0\0\1", 6);
  const std::vector<std::pair<std::string, std::string>> files = {
      {"short.tus", header + std::string(419, '\0')},
      {"version.tus", std::string("KUS\0\0\2", 6) + std::string(420, '\0')},
      {"magic.tus", "KUX" + std::string(423, '\0')},
      {"empty.tus", ""}};
  const std::vector<float> before = StoredSettings();
  for (const auto& [name, bytes] : files) {
    SCOPED_TRACE(name);
    std::ofstream(folder_ / name, std::ios::binary) << bytes;
    ChooseMenu('l');
    AnswerFileDialog("Open", (folder_ / name).string());
    ASSERT_TRUE(desktop_.WaitForWindow("Error", seconds(3)));
    ASSERT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == "Error"; }));
    desktop_.PressKey("Return");
    ASSERT_TRUE(desktop_.WaitUntilGone("Error", seconds(3)));
    std::this_thread::sleep_for(milliseconds(150));
    EXPECT_FALSE(desktop_.FindWindow("Error")) << "exactly one";
  }
  EXPECT_EQ(StoredSettings(), before);
  EXPECT_EQ(ReceivedEdits(), 0);
}

TEST_F(AdvancedDialogTest, RestoreAsksAndNoIsTheDefault) {
  OpenDialog();
  const std::vector<float> factory = StoredSettings();
  const ScreenRect knob = Control(resources::kKnobBass);
  Drag(resources::kKnobBass, {knob.width / 2 - 25, knob.height / 2 - 25},
       {knob.width / 2 + 25, knob.height / 2 - 25});
  EXPECT_TRUE(Eventually([&] { return StoredSettings() != factory; }));
  ReceivedEvents();
  const std::vector<float> changed = StoredSettings();

  for (const char* key : {"Return", "Alt+y"}) {
    ChooseMenu('r');
    ASSERT_TRUE(desktop_.WaitForWindow("Confirm", seconds(3)));
    ASSERT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == "Confirm"; }));
    desktop_.PressKey("Escape");
    std::this_thread::sleep_for(milliseconds(150));
    ASSERT_TRUE(desktop_.FindWindow("Confirm")) << "Escape is no answer";
    desktop_.PressKey(key);
    ASSERT_TRUE(desktop_.WaitUntilGone("Confirm", seconds(3)));
    const bool yes = std::string(key) != "Return";
    EXPECT_EQ(ReceivedEdits(), yes ? 1 : 0);
    EXPECT_EQ(StoredSettings(), yes ? factory : changed);
  }
}

TEST_F(AdvancedDialogTest, FollowsHeadphonesAndSettingsFromOutside) {
  OpenDialog();
  Expand();
  const ScreenPoint marker = MarkerOf(5);
  const ScreenRect plot = Control(resources::kPlot);
  desktop_.Click(plot.x + marker.x, plot.y + marker.y);
  desktop_.MovePointer(window_.x + 5, window_.y + window_.height - 5);
  std::this_thread::sleep_for(milliseconds(300));
  ReceivedEvents();

  Laptop({"plug", "headphones"});
  std::this_thread::sleep_for(milliseconds(400));
  EXPECT_EQ(ReceivedEdits(), 0) << "following writes nothing";
  const ScreenRect slider = Control(resources::kFrequencySlider);
  desktop_.Click(slider.x + slider.width - 2, slider.y + slider.height * 3 / 4);
  EXPECT_TRUE(BecomesStored(BandParameter(1, kFrequency), 20000.0F, kHeadphoneKey))
      << "band 1 of the headphone route is shown and edited";
  EXPECT_NE(Stored(BandParameter(5, kFrequency)), 20000.0F);
  EXPECT_EQ(ReceivedEdits(), 1);

  SetActiveSetting(kHeadphoneKey, "3");
  std::this_thread::sleep_for(milliseconds(400));
  desktop_.Click(slider.x + slider.width / 2, slider.y + slider.height * 3 / 4);
  EXPECT_TRUE(Eventually([&] {
    const float frequency = Stored(BandParameter(1, kFrequency), kHeadphoneKey);
    return frequency > 500.0F && frequency < 800.0F;
  })) << "setting 3 is edited now";
}

TEST_F(AdvancedDialogTest, FastEditsEndInAgreement) {
  OpenDialog();
  Expand();
  UsePeakingBand();
  const ScreenRect slider = Control(resources::kGainSlider);
  const int row = slider.y + slider.height * 3 / 4;
  for (int i = 0; i < 10; ++i) {
    desktop_.Click(slider.x + slider.width * (i + 1) / 12, row);
  }
  EXPECT_EQ(ReceivedEdits(), 10);
  const float stored = Stored(BandParameter(1, kGain));
  EXPECT_GT(stored, 1.0F);
  // What the dialog shows is what a fresh load of the store shows, up to the pixel and the tenth of
  // a dB that the truncating conversions may lose.
  desktop_.MovePointer(window_.x + 5, window_.y + window_.height - 5);
  std::this_thread::sleep_for(milliseconds(300));
  const auto shown = Picture();
  const std::string setting = ActiveSetting(kSpeakerKey);
  SetActiveSetting(kSpeakerKey, setting == "5" ? "6" : "5");
  EXPECT_TRUE(Eventually([&] { return Picture() != shown; }));
  SetActiveSetting(kSpeakerKey, setting);
  EXPECT_TRUE(Eventually([&] { return Difference(shown) < 600; })) << Difference(shown);
}

TEST_F(AdvancedDialogTest, WhatTheHandDidMeanwhileIsHandledInItsOrder) {
  OpenDialog();
  Expand();
  const dsp::PlotMapping plot = Plot();
  const ScreenPoint target{static_cast<int>(plot.X(2500.0F)), static_cast<int>(plot.Y(6.0F))};
  const float frequency = Stored(BandParameter(1, kFrequency));
  const float gain = Stored(BandParameter(1, kGain));
  panel_->Kill(SIGSTOP);
  // Press and move arrive together; the press selects band 5 first.
  Drag(resources::kPlot, MarkerOf(5), target);
  // The type edit shows the band anew, after the slider's edit.
  const ScreenRect slider = Control(resources::kBandwidthSlider);
  desktop_.Click(slider.x + slider.width - 2, slider.y + slider.height * 3 / 4);
  ClickControl(resources::kTypeLowShelving);
  panel_->Kill(SIGCONT);
  EXPECT_TRUE(BecomesStored(BandParameter(5, kType), 4.0F));
  EXPECT_EQ(Stored(BandParameter(1, kFrequency)), frequency);
  EXPECT_EQ(Stored(BandParameter(1, kGain)), gain);
  EXPECT_GT(Stored(BandParameter(5, kFrequency)), 2000.0F);
  EXPECT_GT(Stored(BandParameter(5, kGain)), 1.5F);
}

TEST_F(AdvancedDialogTest, CaptionMovesItAndHeaderOpensTheSystemMenu) {
  OpenDialog();
  const ScreenPoint grip{window_.x + window_.width / 2, window_.y + 8};
  desktop_.Drag(grip, {grip.x + 30, grip.y + 20}, 10);
  EXPECT_TRUE(Eventually([&] {
    const auto moved = desktop_.FindWindow(kDialogTitle);
    return moved && moved->x == window_.x + 30 && moved->y == window_.y + 20;
  }));
  window_ = *desktop_.FindWindow(kDialogTitle);
  desktop_.Click(window_.x + 20, window_.y + 15);
  std::this_thread::sleep_for(milliseconds(300));
  desktop_.PressKey("a");
  ASSERT_TRUE(desktop_.WaitForWindow("About Tonalyx", seconds(3)));
  desktop_.PressKey("Return");
  EXPECT_TRUE(desktop_.WaitUntilGone("About Tonalyx", seconds(3)));
}

}  // namespace
}  // namespace e2e
