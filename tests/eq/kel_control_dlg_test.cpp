#include "ui/eq/kel_control_dlg.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <thread>

#include "tests/eq/open_dialog.h"
#include "ui/controls/plot_geometry.h"

namespace ui {
namespace {

using support::Eventually;
using support::ScreenRect;

constexpr int kSignalsOfAnEdit = 6;  // three for each of two active endpoints

// Control areas in dialog units.
struct Area {
  const char* name;
  double x;
  double y;
  double width;
  double height;
};
constexpr Area kGain{"gain", 112, 280, 259, 36};
constexpr Area kFrequency{"frequency", 112, 318, 259, 36};
constexpr Area kBandwidth{"bandwidth", 112, 356, 259, 36};
constexpr Area kPlotArea{"plot", 7, 153, 489, 121};

struct PlotOnScreen {
  explicit PlotOnScreen(OpenDialog& dialog) : origin(dialog.At(kPlotArea.x, kPlotArea.y)) {
    const ScreenRect end = dialog.At(kPlotArea.x + kPlotArea.width, kPlotArea.y + kPlotArea.height);
    mapping =
        MakePlotMapping({end.x - origin.x, end.y - origin.y}, static_cast<float>(dialog.Scale()));
  }

  ScreenRect At(float frequency, float gainDb) const {
    return {origin.x + static_cast<int>(mapping.X(frequency)),
            origin.y + static_cast<int>(mapping.Y(gainDb))};
  }

  ScreenRect origin;
  dsp::PlotMapping mapping;
};

bool IsCyan(std::uint32_t color) {
  return (color & 0xFFU) > ((color >> 16U) & 0xFFU) + 15;
}

class KelControlDlgTest : public testing::Test {
 protected:
  KelControlDlgTest() {
    machine_.SetActive(kSpeakerPathKey, u"3");
    machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"3", EqMachine::InitialSet());
  }

  float Stored(int parameter) {
    return machine_.Read(kSpeakerPathKey, u"3", parameter).value_or(NAN);
  }
  bool WaitFor(int parameter, float value) {
    return Eventually([&] { return Stored(parameter) == value; });
  }
  // Every edit is signalled once; all of them have been when it answers.
  void ExpectSignals(int edits) {
    int signals = 0;
    EXPECT_TRUE(Eventually([&] {
      signals += dialog_.TakeSignals();
      return signals >= edits * kSignalsOfAnEdit;
    }));
    EXPECT_EQ(signals, edits * kSignalsOfAnEdit);
  }

  EqMachine machine_;
  OpenDialog dialog_{machine_};
};

TEST_F(KelControlDlgTest, OpensCollapsedAndExpandsOnModelsWithThreeLayers) {
  for (const store::ModelFlags model : {kThreeLayers, kDavrin}) {
    dialog_.Run(model, [](OpenDialog& dialog) {
      const ScreenRect collapsed = dialog.Place();
      EXPECT_EQ(collapsed.width, dialog.Size().width);
      EXPECT_EQ(collapsed.height, dialog.Size().collapsed);
      dialog.Expand();
      const ScreenRect expanded = dialog.Place();
      EXPECT_EQ(expanded.width, dialog.Size().width);
      EXPECT_EQ(expanded.x, collapsed.x);
      EXPECT_EQ(expanded.y, collapsed.y);
      dialog.Click(468, 117);
      EXPECT_TRUE(dialog.WaitForHeight(dialog.Size().collapsed));
    });
  }
  dialog_.Run(kTwoLayers, [this](OpenDialog& dialog) {
    EXPECT_EQ(dialog.Place().height, dialog.Size().collapsed);
    dialog.Click(468, 117);
    // The edit shows that the click has been dealt with.
    dialog.Drag(dialog.At(80, 71), dialog.At(100, 40));
    EXPECT_TRUE(Eventually([&] { return Stored(232) != 0.5F; }));
    EXPECT_EQ(dialog.Place().height, dialog.Size().collapsed);
    EXPECT_EQ(dialog.Pixel(468, 117), dialog.TilePixel(468, 117));
  });
}

TEST_F(KelControlDlgTest, TheBackgroundShowsThroughEveryControl) {
  dialog_.Run(kThreeLayers, [](OpenDialog& dialog) {
    dialog.Expand();
    struct Spot {
      const char* control;
      double x;
      double y;
      int dx;
      int dy;
    };
    const Spot spots[] = {
        {"nothing", 300, 300, 0, -dialog.Place().height / 2},
        {"Menu", 446, 7, 1, 1},
        {"close", 471, 7, 1, 1},
        {"expand", 441, 107, 0, 0},
        {"knob", 58, 24, 1, 1},
        {"Equalizer Enable", 389, 136, 1, 1},
        {"gain slider", 112, 280, 1, 1},
        {"bandwidth slider", 371, 392, -2, -2},
        {"type", 389, 370, 1, 1},
        {"Band Enable", 7, 328, 1, 1},
    };
    for (const Spot& spot : spots) {
      EXPECT_TRUE(Eventually([&] {
        return dialog.Pixel(spot.x, spot.y, spot.dx, spot.dy) ==
               dialog.TilePixel(spot.x, spot.y, spot.dx, spot.dy);
      })) << spot.control;
    }
  });
}

TEST_F(KelControlDlgTest, ASlidersEndsAreTheEndsOfItsRange) {
  struct Press {
    Area slider;
    bool right;
    int parameter;
    float value;
  };
  const Press presses[] = {
      {kGain, false, 121, std::pow(10.0F, -0.6F)},
      {kGain, true, 121, std::pow(10.0F, 0.6F)},
      {kFrequency, false, 120, 20.0F},
      {kFrequency, true, 120, 20000.0F},
      {kBandwidth, false, 122, 5.0F},
      {kBandwidth, true, 122, 0.1F},
  };
  dialog_.Run(kThreeLayers, [&](OpenDialog& dialog) {
    dialog.Expand();
    for (const Press& press : presses) {
      SCOPED_TRACE(testing::Message() << press.slider.name << (press.right ? " right" : " left"));
      dialog.Click(press.slider.x + (press.right ? press.slider.width : 0),
                   press.slider.y + press.slider.height / 2, press.right ? -1 : 0);
      EXPECT_TRUE(WaitFor(press.parameter, press.value));
      EXPECT_TRUE(WaitFor(press.parameter + 50, press.value));
      ExpectSignals(1);
    }
  });
}

TEST_F(KelControlDlgTest, KnobsTurnClockwiseUp) {
  struct Case {
    const char* name;
    double x;
    int amount;
    int effect;  // 0: the knob has no switch of its own
  };
  const Case cases[] = {{"Bass", 58, 232, 0},
                        {"Treble", 157, 250, 0},
                        {"Widener", 256, 6, 5},
                        {"Loudness", 355, 223, 221}};
  dialog_.Run(kTwoLayers, [&](OpenDialog& dialog) {
    for (const Case& test : cases) {
      SCOPED_TRACE(test.name);
      const float before = Stored(test.amount);
      dialog.Drag(dialog.At(test.x + 15, 71), dialog.At(test.x + 42, 35));
      EXPECT_TRUE(Eventually([&] { return Stored(test.amount) > before; }));
      if (test.effect != 0) {
        EXPECT_EQ(Stored(test.effect), 1.0F);
      }
    }
  });
}

TEST_F(KelControlDlgTest, SwitchesAndTypesWriteTheSelectedBand) {
  struct Case {
    const char* name;
    double x;
    double y;
    int parameter;
    float value;
  };
  const Case cases[] = {
      {"equalizer off", 480, 143, 117, 0.0F}, {"equalizer on", 480, 143, 117, 1.0F},
      {"band off", 80, 334, 118, 0.0F},       {"band on", 80, 334, 118, 1.0F},
      {"high shelving", 480, 310, 119, 5.0F}, {"low shelving", 480, 332, 119, 4.0F},
      {"high pass", 480, 354, 119, 3.0F},     {"low pass", 480, 376, 119, 2.0F},
  };
  dialog_.Run(kThreeLayers, [&](OpenDialog& dialog) {
    dialog.Expand();
    for (const Case& test : cases) {
      SCOPED_TRACE(test.name);
      dialog.Click(test.x, test.y);
      EXPECT_TRUE(WaitFor(test.parameter, test.value));
      ExpectSignals(1);
    }
    // A low pass takes neither gain nor bandwidth; the edit after shows that both were asked.
    dialog.Click(kGain.x, kGain.y + 20, 0);
    dialog.Click(kBandwidth.x, kBandwidth.y + 20, 0);
    dialog.Click(480, 288);
    EXPECT_TRUE(WaitFor(119, 1.0F));
    ExpectSignals(1);
    EXPECT_EQ(Stored(121), std::pow(10.0F, -0.15F));
  });
}

TEST_F(KelControlDlgTest, AMarkerIsSelectedByAPressAndDraggedToTheAreasCorners) {
  dialog_.Run(kThreeLayers, [&](OpenDialog& dialog) {
    dialog.Expand();
    const PlotOnScreen plot(dialog);
    ScreenRect marker = plot.At(500.0F, 0.0F);
    struct Corner {
      int x;
      int y;
      float frequency;
      float gain;
    };
    const int left = plot.mapping.plotLeft;
    const int right = plot.mapping.width - plot.mapping.plotRight - 1;
    const int bottom = plot.mapping.height - 21;
    const Corner corners[] = {{left, 10, 20.0F, 12.0F},
                              {left, bottom, 20.0F, -12.0F},
                              {right, bottom, 0.0F, -12.0F},
                              {right, 10, 0.0F, 12.0F}};
    for (const Corner& corner : corners) {
      dialog.Drag(marker, {plot.origin.x + corner.x, plot.origin.y + corner.y});
      const float gain = std::pow(10.0F, corner.gain / 20.0F);
      EXPECT_TRUE(WaitFor(141, gain));
      EXPECT_TRUE(Eventually([&] {
        const float frequency = Stored(140);
        return corner.frequency > 0 ? frequency == corner.frequency
                                    : frequency > 18000.0F && frequency <= 20000.0F;
      })) << Stored(140);
      marker = plot.At(Stored(140), corner.gain);
    }
    EXPECT_EQ(Stored(120), 31.0F) << "the other bands stay";
  });
}

TEST_F(KelControlDlgTest, WhatTheHandDidMeanwhileIsHandledInItsOrder) {
  dialog_.Run(kThreeLayers, [&](OpenDialog& dialog) {
    dialog.Expand();
    const PlotOnScreen plot(dialog);
    dialog.ActWhileBusy([&] {
      // Press and move arrive together; the press selects band 5 first.
      dialog.Drag(plot.At(500.0F, 0.0F), plot.At(2500.0F, 6.0F));
      // The type edit shows the band anew, after the slider's edit.
      dialog.Click(kBandwidth.x + kBandwidth.width, kBandwidth.y + kBandwidth.height / 2, -1);
      dialog.Click(480, 332);
    });
    EXPECT_TRUE(WaitFor(139, 4.0F));
    EXPECT_EQ(Stored(120), 31.0F);
    EXPECT_EQ(Stored(121), 1.0F);
    EXPECT_GT(Stored(140), 2000.0F);
    EXPECT_GT(Stored(141), 1.5F);
  });
}

TEST_F(KelControlDlgTest, FollowsASettingThatIsChangedElsewhere) {
  Parameters set = EqMachine::InitialSet();
  set.insert_or_assign(117, 0.0F);
  machine_.Write(store::Tree::Parameters, kSpeakerPathKey, u"4", set);
  dialog_.Run(kThreeLayers, [this](OpenDialog& dialog) {
    dialog.Expand();
    const int dot = -static_cast<int>(18 * dialog.Scale());  // the middle of the box's dot
    const auto checked = [&] { return IsCyan(dialog.Pixel(496, 143, dot)); };
    EXPECT_TRUE(Eventually(checked));
    machine_.SetActive(kSpeakerPathKey, u"4");
    EXPECT_TRUE(Eventually([&] { return !checked(); }));
    EXPECT_EQ(dialog.TakeSignals(), 0);
    dialog.Click(480, 143);
    EXPECT_TRUE(Eventually([&] { return machine_.Read(kSpeakerPathKey, u"4", 117) == 1.0F; }));
    EXPECT_EQ(Stored(117), 1.0F);
  });
}

TEST_F(KelControlDlgTest, EndsAsTheKeysAndButtonsSay) {
  struct Case {
    const char* name;
    std::function<void(OpenDialog&)> act;
    std::int32_t result;
  };
  const Case cases[] = {
      {"Escape", [](OpenDialog& d) { d.Desktop().PressKey("Escape"); }, platform::kIdCancel},
      {"Enter", [](OpenDialog& d) { d.Desktop().PressKey("Return"); }, platform::kIdOk},
      {"Enter on the close button",
       [](OpenDialog& d) {
         d.Desktop().PressKey("Tab");
         d.Desktop().PressKey("Tab");
         d.Desktop().PressKey("Return");
       },
       platform::kIdOk},
      {"the close button", [](OpenDialog& d) { d.Click(483, 16); }, platform::kIdCancel},
      {"the menu's last entry",
       [](OpenDialog& d) {
         d.Click(458, 16);
         std::this_thread::sleep_for(std::chrono::milliseconds(300));
         d.Desktop().PressKey("Up");
         d.Desktop().PressKey("Return");
       },
       platform::kIdCancel},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    bool ended = false;
    const std::int32_t result = dialog_.Run(kThreeLayers, [&](OpenDialog& dialog) {
      EXPECT_TRUE(Eventually([&] { return dialog.Desktop().ActiveTitle() == "Velsona"; }));
      test.act(dialog);
      ended = dialog.Desktop().WaitUntilGone("Velsona", std::chrono::seconds(5));
    });
    EXPECT_TRUE(ended);
    EXPECT_EQ(result, test.result);
  }
}

TEST_F(KelControlDlgTest, TheSystemMenuLeadsToTheAboutBox) {
  dialog_.Run(kThreeLayers, [](OpenDialog& dialog) {
    dialog.Post(platform::message::kSystemCommand, 16 + 3, 0);
    EXPECT_TRUE(dialog.Desktop().WaitForWindow("About Tonalyx", std::chrono::seconds(5)));
    EXPECT_TRUE(Eventually([&] { return dialog.Desktop().ActiveTitle() == "About Tonalyx"; }));
    dialog.Desktop().PressKey("Return");
    EXPECT_TRUE(dialog.Desktop().WaitUntilGone("About Tonalyx", std::chrono::seconds(5)));
  });
}

TEST_F(KelControlDlgTest, SignalsOnRequest) {
  dialog_.Run(kTwoLayers, [this](OpenDialog& dialog) {
    dialog.Post(kSignalEngineMessage, 0, 0);
    ExpectSignals(1);
  });
}

}  // namespace
}  // namespace ui
