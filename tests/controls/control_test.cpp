// The controls as windows: what they tell their parent, and when.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "platform/screen.h"
#include "tests/controls/control_dialog.h"
#include "ui/controls/knob/knob_geometry.h"
#include "ui/controls/plot/plot_geometry.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/slider/slider_geometry.h"

namespace ui {
namespace {

using platform::Point;
using platform::WParam;
using testing::ElementsAre;
using testing::IsEmpty;

class ControlTest : public testing::Test {
 protected:
  Notice Changed(const platform::Window& control, std::uint16_t code) {
    return {platform::message::kCommand, platform::MakeWParam(control.ControlId(), code),
            static_cast<platform::LParam>(control.Handle())};
  }
  Notice SliderChanged() { return Changed(dialog_.slider, PSN_VALUECHANGED); }
  Notice KnobChanged() { return Changed(dialog_.knob, POTN_VALUECHANGED); }

  // A step that looks at what the steps before have caused.
  template <class Matcher>
  void ThenExpect(Matcher matcher, const char* what) {
    dialog_.ThenDo([this, matcher, what] { EXPECT_THAT(dialog_.TakeNotices(), matcher) << what; });
  }

  ControlDialog dialog_;
};

TEST_F(ControlTest, SliderTellsOfJumpsAndOfChangedValues) {
  CPngSlider& slider = dialog_.slider;
  dialog_.ThenDo([&] {
    slider.SetRange(-120, 120);
    slider.SetValue(0);
    slider.SetValueText(u"0.0 dB");
  });
  ThenExpect(IsEmpty(), "what the program sets is no news");
  const std::int32_t travel = SliderGeometry({389, 59}, 1.0).Travel();
  dialog_.ThenDo([&] {
    ASSERT_EQ(platform::GetScreenDpi().x, 96U);
    dialog_.Press(slider, {travel / 2, 40});
    dialog_.Release(slider, {travel / 2, 40});
    EXPECT_EQ(slider.GetValue(), 0);
  });
  ThenExpect(IsEmpty(), "a press on the thumb");
  dialog_.ThenDo([&] {
    dialog_.Press(slider, {300, 5});
    EXPECT_EQ(slider.GetValue(), static_cast<std::int32_t>(240.0 * 291 / travel - 120));
    dialog_.Release(slider, {300, 5});
  });
  dialog_.ThenDo([&] { EXPECT_THAT(dialog_.TakeNotices(), ElementsAre(SliderChanged())); });
  dialog_.ThenDo([&] {
    dialog_.Press(slider, {2, 5});
    dialog_.Release(slider, {2, 5});
    EXPECT_EQ(slider.GetValue(), -120);
    dialog_.Press(slider, {389, 5});
    dialog_.Release(slider, {389, 5});
    EXPECT_EQ(slider.GetValue(), 120);
    dialog_.Press(slider, {travel + 12, 5});
    dialog_.Release(slider, {0, 5});
    EXPECT_EQ(slider.GetValue(), 120) << "jumped, though to the same place";
  });
  dialog_.ThenDo([&] {
    EXPECT_THAT(dialog_.TakeNotices(),
                ElementsAre(SliderChanged(), SliderChanged(), SliderChanged()));
  });
  dialog_.DoModal();
}

TEST_F(ControlTest, SliderDragTellsOnlyOfWholeSteps) {
  CPngSlider& slider = dialog_.slider;
  dialog_.ThenDo([&] {
    slider.SetRange(1, 3);
    slider.SetValue(1);
    dialog_.Move(slider, {200, 5});
    EXPECT_EQ(slider.GetValue(), 1) << "nobody holds it";
    dialog_.Press(slider, {0, 5});
    for (std::int32_t x = 1; x <= 100; ++x) dialog_.Move(slider, {x, 5});
  });
  ThenExpect(IsEmpty(), "all within the first step");
  dialog_.ThenDo([&] { dialog_.Move(slider, {200, -50}); });
  dialog_.ThenDo([&] {
    EXPECT_THAT(dialog_.TakeNotices(), ElementsAre(SliderChanged()));
    EXPECT_EQ(slider.GetValue(), 2);
    dialog_.Move(slider, {-1, 5});
    dialog_.Move(slider, {390, 5});
    EXPECT_EQ(slider.GetValue(), 2);
    dialog_.Release(slider, {390, 5});
    dialog_.Move(slider, {380, 5});
    EXPECT_EQ(slider.GetValue(), 2);
  });
  ThenExpect(IsEmpty(), "outside, and after the release");
  dialog_.DoModal();
}

TEST_F(ControlTest, ADisabledSliderIgnoresPresses) {
  CPngSlider& slider = dialog_.slider;
  dialog_.ThenDo([&] {
    slider.SetRange(0, 100);
    slider.SetValue(50);
    slider.Enable(false);
    dialog_.Press(slider, {10, 5});
    dialog_.Move(slider, {60, 5});
    EXPECT_EQ(slider.GetValue(), 50);
  });
  ThenExpect(IsEmpty(), "disabled");
  dialog_.DoModal();
}

TEST_F(ControlTest, SliderKeepsItsThumbWhenTheRangeChanges) {
  CPngSlider& slider = dialog_.slider;
  dialog_.ThenDo([&] {
    slider.SetRange(0, 100);
    slider.SetValue(100);
    slider.SetRange(20, 20000);
    EXPECT_EQ(slider.GetValue(), 20000);
    slider.SetLogScale(true);
    slider.SetValue(200);
    EXPECT_NEAR(slider.GetValue(), 200, 4);
    slider.SetValue(5);
    EXPECT_EQ(slider.GetValue(), 20);
    slider.SetValue(std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(slider.GetValue(), 20);
  });
  dialog_.DoModal();
}

TEST_F(ControlTest, KnobTellsOfEachMessageThatTurnedIt) {
  CPotentiometer& knob = dialog_.knob;
  const Point centre = TurningCentre({128, 154});
  dialog_.ThenDo([&] {
    knob.SetRange(0, 100);
    knob.SetValue(50);
    EXPECT_EQ(knob.GetValue(), 50);
    dialog_.Press(knob, {centre.x, centre.y - 50});
    EXPECT_EQ(knob.GetValue(), 50);
  });
  ThenExpect(IsEmpty(), "a press turns nothing");
  dialog_.ThenDo([&] {
    dialog_.Move(knob, {centre.x + 1, centre.y - 50});   // 0.02 radians
    dialog_.Move(knob, {centre.x + 1, centre.y - 50});   // nowhere
    dialog_.Move(knob, {centre.x + 50, centre.y - 50});  // clockwise
    EXPECT_EQ(knob.GetValue(), 69) << "278 quarters";
    dialog_.Move(knob, {centre.x, centre.y - 50});
  });
  dialog_.ThenDo([&] {
    EXPECT_THAT(dialog_.TakeNotices(), ElementsAre(KnobChanged(), KnobChanged(), KnobChanged()));
    dialog_.Release(knob, centre);
    dialog_.Move(knob, {centre.x + 50, centre.y - 50});
    knob.Enable(false);
    dialog_.Press(knob, {centre.x, centre.y - 50});
    dialog_.Move(knob, {centre.x + 50, centre.y - 50});
  });
  ThenExpect(IsEmpty(), "released, then disabled");
  dialog_.DoModal();
}

// Where the marker of a band lies in the plot before anything is dragged.
Point MarkerOf(const platform::Window& plot, const dsp::EqBand& band) {
  const dsp::PlotMapping mapping =
      MakePlotMapping(ClientSize(plot), static_cast<float>(platform::GetScreenDpi().x) / 96.0F);
  return {static_cast<std::int32_t>(mapping.X(band.frequency)),
          static_cast<std::int32_t>(mapping.Y(0.0F))};
}

class PlotControlTest : public ControlTest {
 protected:
  PlotControlTest() : values_(dsp::InitialParameters()) {
    dialog_.ThenDo([this] {
      dialog_.plot.BuildResponseGrid();
      dialog_.plot.EvaluateResponse(values_, coefficients_);
    });
  }

  Point Marker(int band) { return MarkerOf(dialog_.plot, dsp::GetBand(values_, band)); }

  std::array<float, dsp::kParameterCount> values_;
  dsp::CoefficientTable coefficients_;
};

TEST_F(PlotControlTest, APressOnAnotherBandsMarkerSelectsIt) {
  dialog_.ThenDo([&] {
    dialog_.Press(dialog_.plot, Marker(4));
    EXPECT_THAT(dialog_.TakeNotices(), IsEmpty()) << "posted, not sent";
  });
  dialog_.ThenDo([&] {
    EXPECT_THAT(dialog_.TakeNotices(), ElementsAre(Notice{kBandSelectedMessage, 4, 0}));
    dialog_.Release(dialog_.plot, Marker(4));
    dialog_.Press(dialog_.plot, Marker(4));
    dialog_.Release(dialog_.plot, Marker(4));
    dialog_.Press(dialog_.plot, {Marker(4).x, 15});
  });
  ThenExpect(IsEmpty(), "selected already, then beside all markers");
  dialog_.ThenDo([&] {
    dialog_.plot.SetSelectedBand(1);
    dialog_.Press(dialog_.plot, Marker(4));
  });
  ThenExpect(ElementsAre(Notice{kBandSelectedMessage, 4, 0}), "selected away and back");
  dialog_.DoModal();
}

TEST_F(PlotControlTest, ADragSendsTheMarkerWithinTheMove) {
  dsp::BandMarker received;
  dialog_.onNotice = [&](const Notice& notice) {
    if (notice.message != kBandDraggedMessage) return;
    received = *reinterpret_cast<const dsp::BandMarker*>(notice.lParam);
  };
  dialog_.ThenDo([&] {
    CFreqPlot& plot = dialog_.plot;
    const platform::Rect client = plot.ClientRect();
    dialog_.Move(plot, {300, 50});
    dialog_.Press(plot, Marker(1));
    EXPECT_THAT(dialog_.TakeNotices(), IsEmpty());
    dialog_.Move(plot, {client.right - 16, client.bottom - 21});
    const std::vector<Notice> notices = dialog_.TakeNotices();
    ASSERT_EQ(notices.size(), 1U);
    EXPECT_EQ(notices[0].message, kBandDraggedMessage);
    EXPECT_EQ(notices[0].wParam, WParam{1});
    EXPECT_NEAR(received.frequency, 19800.0F, 400.0F);
    EXPECT_EQ(received.gainDb, -12.0F);
    dialog_.Move(plot, {300, 9});
    dialog_.Move(plot, {29, 50});
    dialog_.Release(plot, {300, 50});
    dialog_.Move(plot, {300, 50});
    EXPECT_THAT(dialog_.TakeNotices(), IsEmpty());
  });
  dialog_.DoModal();
}

TEST_F(PlotControlTest, ABandThatIsNoneCannotBeDragged) {
  dialog_.ThenDo([&] {
    dialog_.Press(dialog_.plot, Marker(1));
    for (const std::int32_t band : {0, 11, -1, std::numeric_limits<std::int32_t>::max()}) {
      dialog_.plot.SetSelectedBand(band);
      dialog_.Move(dialog_.plot, {300, 50});
      dialog_.plot.EvaluateResponse(values_, coefficients_);
    }
  });
  ThenExpect(IsEmpty(), "no such band");
  dialog_.DoModal();
}

TEST_F(ControlTest, CheckboxChangesOnlyByMessage) {
  CPngCheckbox& box = dialog_.checkbox;
  const auto check = [&box](WParam state) {
    EXPECT_EQ(box.Send(platform::message::kSetCheck, state, 0), 0);
    return box.Send(platform::message::kGetCheck, 0, 0);
  };
  dialog_.ThenDo([&] {
    EXPECT_EQ(box.Send(platform::message::kGetCheck, 0, 0), 0);
    EXPECT_EQ(check(1), 1);
    EXPECT_EQ(check(2), 0) << "undecided is not checked";
    EXPECT_EQ(check(1), 1);
    EXPECT_EQ(check(0), 0);
    dialog_.Press(box, {20, 5});
    dialog_.Release(box, {20, 5});
    EXPECT_EQ(box.Send(platform::message::kGetCheck, 0, 0), 0);
    EXPECT_THAT(dialog_.TakeNotices(), ElementsAre(Changed(box, platform::kNotifyClicked)));
    dialog_.Press(dialog_.button, {5, 5});
    dialog_.Release(dialog_.button, {5, 5});
    EXPECT_THAT(dialog_.TakeNotices(),
                ElementsAre(Changed(dialog_.button, platform::kNotifyClicked)));
  });
  dialog_.DoModal();
}

}  // namespace
}  // namespace ui
