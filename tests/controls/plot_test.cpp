// The response plot as a window: grid, curve and markers, and what a hand does to them.
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <limits>
#include <set>

#include "tests/controls/control_dialog.h"
#include "ui/controls/plot/plot_geometry.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Graphics;
using platform::PointF;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr Argb kBase = 0xFF272727;
constexpr Argb kBand = 0xFF1A1A1A;
constexpr Argb kCurve = 0xFF22DFFF;
constexpr Argb kRed = 0xFFBE0000;
constexpr Argb kMajor = 0x64FFFFFF;
constexpr Argb kMinor = 0x3CFFFFFF;

class PlotTest : public ControlTest {
 protected:
  void SetBand(int band, float frequency, float gain, float type = 1.0F, float enabled = 1.0F) {
    const auto first = values_.begin() + 117 + 5 * (band - 1);
    const std::array fields{enabled, type, frequency, gain, 1.0F};
    std::copy(fields.begin(), fields.end(), first);
  }
  void Evaluate() {
    dsp::CoefficientTable coefficients;
    dsp::UpdateBandCoefficients(values_, coefficients);
    plot_.EvaluateResponse(values_, coefficients);
  }

  float X(float frequency) const {
    const float left = 30 * s_;
    const float right = width_ - std::trunc(15 * s_);
    const double share = (std::log10(static_cast<double>(frequency)) - std::log10(20.0)) / 3.0;
    return static_cast<float>(share * (right - std::trunc(left)) + std::trunc(left));
  }
  float Y(float gain) const { return (1 - gain / 20) * ((height_ - 30 * s_) / 2) + 10 * s_; }

  // The bare grid as it is described.
  Bitmap Grid(bool red) const {
    Bitmap page =
        Solid({static_cast<int>(width_), static_cast<int>(height_)}, red ? 0xFF000000 : kBase);
    {
      Graphics graphics(page);
      graphics.SetSmoothingMode(platform::SmoothingMode::AntiAlias);
      const std::array<PointF, 4> band{{{std::trunc(108 * s_), height_},
                                        {width_ - std::trunc(142 * s_), 0},
                                        {width_, 0},
                                        {width_, height_}}};
      graphics.FillPolygon(kBand, band);
      graphics.DrawRectangle({0xFF1C1C1C, 1}, {0, 0, width_, height_});
      graphics.DrawRectangle({0xFF4A4A4A, 1}, {s_, s_, width_ - 3 * s_, height_ - 3 * s_});
      graphics.DrawRectangle({0xFF212121, 1}, {2 * s_, 2 * s_, width_ - 5 * s_, height_ - 5 * s_});
      for (float gain = -20; gain <= 20; gain += 5) {
        graphics.DrawLine({kMajor, 2 * s_}, {X(20), Y(gain)}, {X(20000), Y(gain)});
      }
      for (const float decade : {10.0F, 100.0F, 1000.0F}) {
        for (float digit = decade == 10 ? 2 : 1; digit <= 9; ++digit) {
          const float x = X(decade * digit);
          graphics.DrawLine({digit == 1 ? kMajor : kMinor, digit == 1 ? 2 * s_ : s_}, {x, Y(-20)},
                            {x, Y(20)});
        }
      }
      graphics.DrawLine({kMajor, 2 * s_}, {X(10000), Y(-20)}, {X(10000), Y(20)});
      graphics.DrawLine({kMinor, s_}, {X(20000), Y(-20)}, {X(20000), Y(20)});
    }
    const platform::Font font(u"Verdana", 8.0F, platform::FontStyle::Regular);
    struct Label {
      float value;
      std::u16string_view text;
    };
    for (const Label& label :
         {Label{-20, u"-20"},  Label{-15, u"-15"}, Label{-10, u"-10"}, Label{-5, u"-5"},
          Label{0, u"0"},      Label{5, u"+5"},    Label{10, u"+10"},  Label{15, u"+15"},
          Label{20, u"+20"},   Label{20, u"20"},   Label{30, u"30"},   Label{40, u"40"},
          Label{50, u"50"},    Label{100, u"100"}, Label{200, u"200"}, Label{300, u"300"},
          Label{400, u"400"},  Label{500, u"500"}, Label{1000, u"1k"}, Label{2000, u"2k"},
          Label{3000, u"3k"},  Label{4000, u"4k"}, Label{5000, u"5k"}, Label{10000, u"10k"},
          Label{20000, u"20k"}}) {
      const bool isGain = label.value < 20 || label.text.front() == u'+';
      const auto [width, height] =
          Measure(label.text, font, platform::TextRenderingHint::AntiAliasGridFit);
      const PointF place =
          isGain ? PointF{X(20) - width - 2 * s_, Y(label.value) - std::trunc(height / 2)}
                 : PointF{X(label.value) - std::trunc(width / 2), Y(-20) + 3 * s_};
      Write(page, label.text, font, place, kMajor);
    }
    return page;
  }

  CFreqPlot& plot_ = dialog_.plot;
  const float s_ = static_cast<float>(dpi_) / 96;
  const float width_ = dpi_ == 96 ? 734 : dpi_ == 120 ? 978 : 1467;
  const float height_ = dpi_ == 96 ? 197 : dpi_ == 120 ? 242 : 378;
  std::array<float, 1114> values_ = dsp::InitialParameters();
};

// What holds at every resolution.
class ScaledPlotTest : public PlotTest {};

TEST_F(ScaledPlotTest, GridAndLabels) {
  Run([&] {
    const Bitmap picture = Picture(plot_);
    EXPECT_EQ(BoxOfDifference(picture, Grid(false)), Rect{});
    if (dpi_ == 96) {
      ExpectSpots(picture, {{0, 100, 0xFF1C1C1C},
                            {1, 100, 0xFF4A4A4A},
                            {2, 100, 0xFF212121},
                            {731, 100, 0xFF212121},
                            {732, 100, 0xFF4A4A4A},
                            {4, 60, kBase},
                            {570, 5, kBase},
                            {590, 5, kBand},
                            {150, 185, kBand},
                            {50, 62, kBase},
                            {50, 177, Mixed(kMajor, kBase)},
                            {50, 176, Mixed(kMajor, kBase, 0.5)}});
    }
    plot_.redAccent = true;
    plot_.Invalidate(platform::Erase::Yes);
    EXPECT_TRUE(SamePixels(Picture(plot_), picture)) << "the grid is drawn once";
  });
}

TEST_F(ScaledPlotTest, RedAccent) {
  plot_.redAccent = true;
  Run([&] {
    EXPECT_EQ(BoxOfDifference(Picture(plot_), Grid(true)), Rect{});
    plot_.BuildResponseGrid();
    Evaluate();
    const auto x = static_cast<std::int32_t>(190 * s_);
    ExpectSpots(Picture(plot_), {{x, static_cast<std::int32_t>(Y(0)), kRed}});
    if (dpi_ == 96) {
      EXPECT_TRUE(Shows(Picture(plot_), 190, 65, 85));
    }
  });
}

TEST_F(PlotTest, MarkersShowTheirBandsState) {
  Run([&] {
    plot_.BuildResponseGrid();
    SetBand(3, 125.0F, 1.0F, 1.0F, 0.0F);
    SetBand(10, 16000.0F, 2.0F);
    Evaluate();
    const Bitmap picture = Shown(plot_);
    constexpr std::int32_t kPlaces[] = {65, 136, 204, 273, 343, 412, 481, 550, 619};
    for (std::size_t i = 0; i < std::size(kPlaces); ++i) {
      const std::uint16_t id = i == 0 ? 142 : i == 2 ? 146 : 141;
      EXPECT_TRUE(Shows(picture, id, kPlaces[i], 85)) << i;
    }
    EXPECT_TRUE(Shows(picture, 141, 688, 60)) << "6.02 dB";
    // A selected band that is off shows as selected; of two at one place the later one is on top.
    plot_.SetSelectedBand(3);
    Evaluate();
    EXPECT_TRUE(Shows(Picture(plot_), 142, 204, 85));
    EXPECT_TRUE(Shows(Picture(plot_), 141, 65, 85));
    SetBand(6, 500.0F, 1.0F, 1.0F, 0.0F);
    Evaluate();
    EXPECT_TRUE(Shows(Picture(plot_), 146, 343, 85));
  });
}

TEST_F(PlotTest, CurveAndMarkersAreCutOffAtTheirClip) {
  Run([&] {
    const Bitmap bare = Picture(plot_);
    plot_.BuildResponseGrid();
    SetBand(1, 20000.0F, 1.0F);
    SetBand(2, 18.0F, 1.0F);
    SetBand(3, 125.0F, 10.0F, 5.0F);
    SetBand(4, 250.0F, 0.1F);
    Evaluate();
    const Bitmap picture = Picture(plot_);
    EXPECT_TRUE(Shows(picture, 142, 711, 85)) << "not at the right end of the axis";
    const Rect changed = BoxOfDifference(picture, bare);
    EXPECT_EQ(changed.left, 20);
    EXPECT_EQ(changed.top, 12);
    EXPECT_EQ(changed.bottom, 175);
  });
}

TEST_F(ScaledPlotTest, TheCurveGoesThroughTheBandsGains) {
  Run([&] {
    const Bitmap bare = Picture(plot_);
    plot_.BuildResponseGrid();
    SetBand(1, 31.0F, 1.0F);
    SetBand(6, 1000.0F, 2.0F, 4.0F);  // 6 dB below 1000 Hz
    Evaluate();
    const Bitmap picture = Shown(plot_);
    const auto centre = [&](double units) {
      const auto x = static_cast<std::int32_t>(units * s_);
      const Rect box = support::BoxOfDifference(bare, picture, {x, 0, x + 1, bare.Height()});
      return (box.top + box.bottom - 1) / 2.0;
    };
    EXPECT_NEAR(centre(46), Y(6.02F), 0.6);
    EXPECT_NEAR(centre(712), Y(0.0F), 0.6);
    const Rect changed = BoxOfDifference(picture, bare);
    EXPECT_GE(changed.left, 29 * static_cast<std::int32_t>(s_));
    if (dpi_ == 96)
      ExpectSpots(picture, {{712, 93, kCurve}, {712, 94, kCurve}, {712, 92, kBand}}, 4);

    // Thick lines need no smoothing.
    std::set<Argb> colors;
    for (std::int32_t x = static_cast<std::int32_t>(X(1100));
         x < static_cast<std::int32_t>(X(1800)); ++x) {
      for (std::int32_t y = 0; y < bare.Height(); ++y) {
        if (picture.GetPixel(x, y) != bare.GetPixel(x, y)) colors.insert(picture.GetPixel(x, y));
      }
    }
    EXPECT_EQ(colors == std::set<Argb>{kCurve}, dpi_ >= 192);
  });
}

// Control points are chosen so that the curve has to swing: it runs level, then up to the right.
TEST_F(PlotTest, TheCurveIsACardinalSpline) {
  dsp::ResponsePlotData data;
  data.curvePoints.fill({400.0F, 20.0F});
  data.curvePoints[0] = {100.0F, 150.0F};
  data.curvePoints[1] = {200.0F, 150.0F};
  data.curvePoints[2] = {300.0F, 20.0F};
  const std::optional<Bitmap> none;
  Bitmap picture = Solid({734, 197}, 0);
  PaintPlot(picture, Solid({734, 197}, 0xFF000000), MakePlotMapping({734, 197}, 1.0F),
            {none, none, none}, {data, 0, false});
  const Rect stroke = support::BoxOf({134, 0, 135, 197}, [&](std::int32_t x, std::int32_t y) {
    return Channel(picture.GetPixel(x, y), 0) > 0x40;
  });
  EXPECT_EQ(stroke, (Rect{134, 156, 135, 158})) << "6.5 pixels below the straight line";
}

TEST_F(PlotTest, APressOnAnotherBandsMarkerSelectsIt) {
  Run([&] {
    plot_.BuildResponseGrid();
    Evaluate();
    Press(plot_, {281, 93});
    EXPECT_THAT(dialog_.notices, IsEmpty()) << "posted, not sent";
    EXPECT_THAT(Notices(), ElementsAre(Notice{0x401, 4, 0}));
    EXPECT_TRUE(Shows(Picture(plot_), 142, 273, 85));
    EXPECT_TRUE(Shows(Picture(plot_), 141, 65, 85));
    Press(plot_, {281, 93});
    Press(plot_, {281, 15});
    EXPECT_THAT(Notices(), IsEmpty()) << "selected already, then beside all markers";
    plot_.SetSelectedBand(1);
    Press(plot_, {281, 93});
    EXPECT_THAT(Notices(), ElementsAre(Notice{0x401, 4, 0}));
  });
}

TEST_F(PlotTest, ADragSendsTheMarkerWithinTheMoveAndPaintsNothing) {
  dsp::BandMarker received;
  std::optional<Bitmap> shown;
  dialog_.onNotice = [&](const Notice& notice) {
    if (notice.message != 0x402) return;
    received = *reinterpret_cast<const dsp::BandMarker*>(notice.lParam);
    shown = Shown(plot_);
  };
  Run([&] {
    plot_.BuildResponseGrid();
    Evaluate();
    Move(plot_, {300, 50});
    Press(plot_, {74, 93});
    EXPECT_THAT(Notices(), IsEmpty());
    const Bitmap before = Picture(plot_);
    Move(plot_, {718, 176});
    EXPECT_NEAR(received.frequency, 19603.0F, 0.5F);
    EXPECT_EQ(received.gainDb, -12.0F);
    EXPECT_THAT(Notices(), ElementsAre(testing::AllOf(testing::Field(&Notice::message, 0x402U),
                                                      testing::Field(&Notice::wParam, 1U))));
    EXPECT_TRUE(SamePixels(shown.value(), before));
    EXPECT_TRUE(SamePixels(Picture(plot_), before)) << "that is the parent's matter";
    Move(plot_, {300, 9});
    Move(plot_, {29, 50});
    // The parent may select what is no band.
    for (const std::int32_t band : {0, 11, -1, std::numeric_limits<std::int32_t>::max()}) {
      plot_.SetSelectedBand(band);
      Move(plot_, {300, 50});
    }
    plot_.SetSelectedBand(2);
    Release(plot_, {300, 50});
    Move(plot_, {300, 50});
    EXPECT_THAT(Notices(), IsEmpty());
  });
}

}  // namespace
}  // namespace ui
