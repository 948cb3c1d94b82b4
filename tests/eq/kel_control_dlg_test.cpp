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

// A point of the plot, by what it stands for, on the screen.
ScreenRect PlotPoint(OpenDialog& dialog, float frequency, float gainDb) {
  const ScreenRect origin = dialog.At(7, 153);
  const ScreenRect end = dialog.At(7 + 489, 153 + 121);
  const dsp::PlotMapping mapping =
      MakePlotMapping({end.x - origin.x, end.y - origin.y}, static_cast<float>(dialog.Scale()));
  return {origin.x + static_cast<int>(mapping.X(frequency)),
          origin.y + static_cast<int>(mapping.Y(gainDb))};
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

  EqMachine machine_;
  OpenDialog dialog_{machine_};
};

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

TEST_F(KelControlDlgTest, WhatTheHandDidMeanwhileIsHandledInItsOrder) {
  dialog_.Run(kThreeLayers, [&](OpenDialog& dialog) {
    dialog.Expand();
    dialog.ActWhileBusy([&] {
      // Press and move arrive together; the press selects band 5 first.
      dialog.Drag(PlotPoint(dialog, 500.0F, 0.0F), PlotPoint(dialog, 2500.0F, 6.0F));
      // The type edit shows the band anew, after the slider's edit.
      dialog.Click(112 + 259, 356 + 36 / 2, -1);
      dialog.Click(480, 332);
    });
    EXPECT_TRUE(WaitFor(139, 4.0F));
    EXPECT_EQ(Stored(120), 31.0F);
    EXPECT_EQ(Stored(121), 1.0F);
    EXPECT_GT(Stored(140), 2000.0F);
    EXPECT_GT(Stored(141), 1.5F);
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

TEST_F(KelControlDlgTest, WithTwoLayersNothingExpandsAndRequestsAreSignalled) {
  dialog_.Run(kTwoLayers, [](OpenDialog& dialog) {
    dialog.Click(468, 117);
    // The signals show that the click has been dealt with.
    dialog.Post(kSignalEngineMessage, 0, 0);
    EXPECT_TRUE(Eventually([&] { return dialog.TakeSignals() == kSignalsOfAnEdit; }));
    EXPECT_EQ(dialog.Place().height, dialog.Size().collapsed);
    EXPECT_EQ(dialog.Pixel(468, 117), dialog.TilePixel(468, 117));
  });
}

}  // namespace
}  // namespace ui
