#include <signal.h>

#include "tests/e2e/panel_fixture.h"

namespace e2e {
namespace {

constexpr int kFrequency = 120;  // of band 1, as stored; the other bands follow by 5
constexpr int kGain = 121;

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

  const ScreenPoint grip{window_.x + window_.width / 2, window_.y + 8};
  DragWindow(grip, {grip.x + 30, grip.y + 20});
  EXPECT_TRUE(Eventually([&] {
    const auto moved = desktop_.FindWindow(kDialogTitle);
    return moved && moved->x == collapsed.x + 30 && moved->y == collapsed.y + 20;
  }));
  window_ = *desktop_.FindWindow(kDialogTitle);
  EXPECT_EQ(Run("tonalyx", {}).exitStatus, 0);
  EXPECT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == kDialogTitle; }))
      << "a second start finds the dialog";

  // The main window shows what the store holds by the time it comes back.
  SetActiveSetting(kSpeakerKey, "4");
  ClickControl(resources::kCloseButton);
  UseWindow("Tonalyx");
  ParkPointer();
  std::this_thread::sleep_for(milliseconds(300));
  const auto shown = Picture();
  EXPECT_EQ(PictureOfMode(3), shown);
}

TEST_F(AdvancedDialogTest, EditsReachStoreMirrorAndEngineOncePerNotification) {
  OpenDialog();
  Expand();
  const ScreenRect knob = Control(resources::kKnobWidener);
  const ScreenPoint middle{knob.width / 2, knob.height / 2};
  const float before = Stored(6);
  Drag(resources::kKnobWidener, {middle.x - 25, middle.y - 25}, {middle.x + 25, middle.y - 25}, 10);
  EXPECT_TRUE(Eventually([&] { return Stored(6) > before; }));
  EXPECT_EQ(Stored(5), 1.0F);
  const int edits = ReceivedEdits();
  EXPECT_GE(edits, 1);
  EXPECT_LE(edits, 10) << "at most one for each move of the pointer";

  UsePeakingBand();
  ClickSlider(resources::kGainSlider, SliderEnd::Last);
  EXPECT_TRUE(BecomesStored(kGain, 3.98107195F));
  EXPECT_EQ(Stored(kGain + 50), 3.98107195F);
  EXPECT_EQ(ReceivedEdits(), 1);
  const ScreenRect slider = Control(resources::kGainSlider);
  const int row = slider.height * 3 / 4;
  Drag(resources::kGainSlider, {slider.width * 3 / 4, row}, {1, row});
  EXPECT_TRUE(BecomesStored(kGain, 0.251188636F));
  ReceivedEvents();

  const ScreenRect plot = Control(resources::kPlot);
  Drag(resources::kPlot, MarkerOf(6), {Plot().plotLeft + 1, plot.height - 22}, 12);
  EXPECT_TRUE(BecomesStored(kGain + 25, 0.251188636F));
  EXPECT_EQ(Stored(kFrequency + 25), 20.0F);
  EXPECT_GE(ReceivedEdits(), 1);
  ClickControl(resources::kEqualizerEnable);
  EXPECT_TRUE(BecomesStored(117, 0.0F));
  EXPECT_EQ(ReceivedEdits(), 1);
}

TEST_F(AdvancedDialogTest, FollowsHeadphonesAndSettingsFromOutside) {
  OpenDialog();
  Expand();
  const ScreenPoint marker = MarkerOf(5);
  const ScreenRect plot = Control(resources::kPlot);
  desktop_.Click(plot.x + marker.x, plot.y + marker.y);
  ReceivedEvents();
  Laptop({"plug", "headphones"});
  std::this_thread::sleep_for(milliseconds(400));
  EXPECT_EQ(ReceivedEdits(), 0) << "following writes nothing";
  ClickSlider(resources::kFrequencySlider, SliderEnd::Last);
  EXPECT_TRUE(BecomesStored(kFrequency, 20000.0F, kHeadphoneKey))
      << "band 1 of the headphone route is shown and edited";
  EXPECT_NE(Stored(kFrequency + 20), 20000.0F);
  EXPECT_EQ(ReceivedEdits(), 1);

  SetActiveSetting(kHeadphoneKey, "3");
  std::this_thread::sleep_for(milliseconds(400));
  ClickSlider(resources::kFrequencySlider, SliderEnd::Last);
  EXPECT_TRUE(BecomesStored(kFrequency, 20000.0F, kHeadphoneKey)) << "setting 3 is edited now";
}

TEST_F(AdvancedDialogTest, SettingsTravelInAFileAndDefaultsComeBack) {
  OpenDialog();
  Expand();
  const float factoryType = Stored(119);
  UsePeakingBand();
  ClickSlider(resources::kGainSlider, SliderEnd::Last);
  ASSERT_TRUE(BecomesStored(kGain, 3.98107195F));
  ChooseFromMenu("s");
  NameFile("Save As", folder_ / "evening");
  EXPECT_TRUE(Eventually([&] { return std::filesystem::exists(folder_ / "evening.tus"); }));
  ClickSlider(resources::kGainSlider, SliderEnd::First);
  ASSERT_TRUE(BecomesStored(kGain, 0.251188636F));
  ReceivedEvents();
  ChooseFromMenu("l");
  NameFile("Open", folder_ / "evening.tus");
  EXPECT_TRUE(BecomesStored(kGain, 3.98107195F));
  EXPECT_EQ(ReceivedEdits(), 1);
  for (const char* answer : {"Return", "Alt+y"}) {
    EXPECT_EQ(Stored(119), 1.0F);
    ChooseFromMenu("r");
    ASSERT_TRUE(Eventually([&] { return desktop_.ActiveTitle() == "Confirm"; }));
    desktop_.PressKey(answer);
    ASSERT_TRUE(desktop_.WaitUntilGone("Confirm", seconds(5)));
  }
  EXPECT_TRUE(BecomesStored(119, factoryType));
  EXPECT_EQ(ReceivedEdits(), 1);
}

TEST_F(AdvancedDialogTest, WhatTheHandDidMeanwhileIsHandledInItsOrder) {
  OpenDialog();
  Expand();
  const dsp::PlotMapping plot = Plot();
  const ScreenPoint target{static_cast<int>(plot.X(2500.0F)), static_cast<int>(plot.Y(6.0F))};
  const float frequency = Stored(kFrequency);
  panel_->Kill(SIGSTOP);
  // Press and move arrive together; the press selects band 5 first.
  Drag(resources::kPlot, MarkerOf(5), target);
  // The type edit shows the band anew, after the slider's edit.
  ClickSlider(resources::kBandwidthSlider, SliderEnd::Last);
  ClickControl(resources::kTypeLowShelving);
  panel_->Kill(SIGCONT);
  EXPECT_TRUE(BecomesStored(139, 4.0F));
  EXPECT_EQ(Stored(kFrequency), frequency);
  EXPECT_GT(Stored(kFrequency + 20), 2000.0F);
  EXPECT_GT(Stored(kGain + 20), 1.5F);
}

}  // namespace
}  // namespace e2e
