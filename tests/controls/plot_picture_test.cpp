#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "dsp/eq_model.h"
#include "tests/controls/picture.h"
#include "ui/controls/plot/plot_geometry.h"
#include "ui/controls/plot/plot_painter.h"
#include "ui/controls/shared/control_window.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Point;
using platform::Rect;
using platform::Size;

constexpr Argb kCurveColor = 0xFF22DFFF;
constexpr Argb kRedColor = 0xFFBE0000;
constexpr Argb kSelected = 0xFFFF0000;
constexpr Argb kActive = 0xFF00FF00;
constexpr Argb kInactive = 0xFF0000FF;

class PlotPictureTest : public testing::TestWithParam<float> {
 protected:
  PlotPictureTest() {
    dsp::BuildResponseGrid(data_.evalFreqs);
    values_ = dsp::InitialParameters();
    Evaluate();
  }

  void Evaluate() {
    dsp::CoefficientTable coefficients;
    dsp::UpdateBandCoefficients(values_, coefficients);
    dsp::EvaluateResponse(values_, coefficients, data_);
    dsp::MapResponseToPlot(mapping_, data_);
  }

  void ChangeBand(int band, float frequency, float gain, float enabled = 1.0F) {
    dsp::EqBand fields = dsp::GetBand(values_, band);
    fields.frequency = frequency;
    fields.gain = gain;
    fields.enabled = enabled;
    dsp::SetBand(values_, band, fields);
  }

  Bitmap Grid(bool redAccent) const {
    Bitmap layer = MakeCanvas(size_, platform::PixelFormat::PremultipliedArgb32);
    PaintPlotGrid(layer, mapping_, font_, redAccent);
    return layer;
  }

  Bitmap Paint(const MarkerImages& images, std::int32_t selectedBand = 1,
               bool redAccent = false) const {
    Bitmap picture = MakeCanvas(size_, platform::PixelFormat::PremultipliedArgb32);
    PaintPlot(picture, Grid(redAccent), mapping_, images, {data_, selectedBand, redAccent});
    return picture;
  }

  const float scale_ = GetParam();
  const Size size_{static_cast<std::int32_t>(734 * scale_),
                   static_cast<std::int32_t>(197 * scale_)};
  const Size marker_{static_cast<std::int32_t>(19 * scale_),
                     static_cast<std::int32_t>(19 * scale_)};
  const dsp::PlotMapping mapping_ = MakePlotMapping(size_, scale_);
  const platform::Font font_{u"Verdana", 8.0F, platform::FontStyle::Regular};
  const std::optional<Bitmap> none_;
  const std::optional<Bitmap> selected_ = Solid(marker_, kSelected);
  const std::optional<Bitmap> active_ = Solid(marker_, kActive);
  const std::optional<Bitmap> inactive_ = Solid(marker_, kInactive);
  const MarkerImages noImages_{none_, none_, none_};
  const MarkerImages images_{selected_, active_, inactive_};
  std::array<float, dsp::kParameterCount> values_{};
  dsp::ResponsePlotData data_;
};

INSTANTIATE_TEST_SUITE_P(Scales, PlotPictureTest, testing::Values(1.0F, 1.25F, 1.5F, 2.0F));

TEST_P(PlotPictureTest, AFlatCurveLiesOnTheRowOfZeroDecibels) {
  for (const bool redAccent : {false, true}) {
    const Rect changed = BoxOfDifference(Grid(redAccent), Paint(noImages_, 1, redAccent));
    const float row = mapping_.Y(0.0F);
    EXPECT_NEAR((changed.top + changed.bottom - 1) / 2.0, row, 0.75);
    EXPECT_NEAR(changed.Height(), 2.0 * scale_, 1.5);
    EXPECT_NEAR(changed.left, mapping_.plotLeft, 1.0);
    EXPECT_NEAR(changed.right, size_.width - mapping_.plotRight, 1.5);
    const Bitmap picture = Paint(noImages_, 1, redAccent);
    EXPECT_LT(Distance(picture.GetPixel(size_.width / 3, static_cast<std::int32_t>(row)),
                       redAccent ? kRedColor : kCurveColor),
              100);
  }
}

TEST_P(PlotPictureTest, ABoostBendsTheCurveUpToItsGain) {
  ChangeBand(6, 1000.0F, 2.0F);  // 6 dB
  Evaluate();
  const Rect changed = BoxOfDifference(Grid(false), Paint(noImages_));
  EXPECT_NEAR(changed.top, mapping_.Y(6.02F) - scale_, 2.0);
  EXPECT_NEAR(changed.bottom - 1, mapping_.Y(0.0F) + scale_, 1.5);
}

TEST_P(PlotPictureTest, CurveAndMarkersStayInTheirClip) {
  for (int band = 1; band <= dsp::kBandCount; ++band) ChangeBand(band, 1000.0F, 3.98F);
  ChangeBand(1, 20.0F, 1000.0F);
  Evaluate();
  const Rect changed = BoxOfDifference(Grid(false), Paint(images_));
  const Rect clip = CurveClip(mapping_);
  EXPECT_GE(changed.left, clip.left);
  EXPECT_EQ(changed.top, clip.top);
  EXPECT_LE(changed.right, clip.right);
  EXPECT_LE(changed.bottom, clip.bottom);
  EXPECT_EQ(clip.top, static_cast<std::int32_t>(12.0F * scale_));
}

TEST_P(PlotPictureTest, MarkersShowTheirBandsStateAndLaterOnesLieOnTop) {
  ChangeBand(2, 100.0F, 1.0F, 0.0F);
  ChangeBand(4, 700.0F, 1.0F);
  ChangeBand(5, 700.0F, 1.0F, 0.0F);
  Evaluate();
  const auto colorOf = [&](const Bitmap& picture, std::size_t band) {
    const Point origin = MarkerOrigin(mapping_, data_.bandMarkers[band - 1], marker_);
    return picture.GetPixel(origin.x + marker_.width / 2, origin.y + marker_.height / 2);
  };
  const Bitmap first = Paint(images_, 1);
  EXPECT_EQ(colorOf(first, 1), kSelected);
  EXPECT_EQ(colorOf(first, 2), kInactive);
  EXPECT_EQ(colorOf(first, 3), kActive);
  EXPECT_EQ(colorOf(first, 5), kInactive) << "band 4 lies below";
  EXPECT_EQ(colorOf(Paint(images_, 2), 2), kSelected) << "selected counts more than off";
  EXPECT_EQ(colorOf(Paint(images_, 99), 1), kActive);
}

TEST_P(PlotPictureTest, ValuesThatAreNoNumbersLeaveTheRestOfThePicture) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  data_.bandMarkers[1] = {kNan, kNan};
  data_.bandMarkers[2] = {-1.0F, kInfinity};
  data_.bandMarkers[3] = {3.0e38F, -3.0e38F};
  data_.curvePoints[40].y = kNan;
  data_.curvePoints[80].y = -kInfinity;
  data_.curvePoints[100].y = 3.0e38F;
  const Bitmap picture = Paint(images_);
  const Point origin = MarkerOrigin(mapping_, data_.bandMarkers[9], marker_);
  EXPECT_EQ(picture.GetPixel(origin.x + 2, origin.y + 2), kActive);
}

TEST_P(PlotPictureTest, GridAndBackground) {
  const Bitmap standard = Grid(false);
  const Bitmap red = Grid(true);
  const auto s = static_cast<std::int32_t>(scale_);
  const auto at = [&](float frequency, float gain) {
    return Point{static_cast<std::int32_t>(std::lround(mapping_.X(frequency))),
                 static_cast<std::int32_t>(std::lround(mapping_.Y(gain)))};
  };
  // Between all lines, on the left plain, on the right darker.
  const Point plain = at(25.0F, 12.5F);
  const Point dark = at(14000.0F, -12.5F);
  EXPECT_EQ(standard.GetPixel(plain.x, plain.y), 0xFF272727U);
  EXPECT_EQ(red.GetPixel(plain.x, plain.y), 0xFF000000U);
  for (const Bitmap* picture : {&standard, &red}) {
    EXPECT_EQ(picture->GetPixel(dark.x, dark.y), 0xFF1A1A1AU);
    EXPECT_EQ(picture->GetPixel(0, size_.height / 2), 0xFF1C1C1CU);
    EXPECT_EQ(picture->GetPixel(size_.width / 3, 0), 0xFF1C1C1CU);
    EXPECT_LT(Distance(picture->GetPixel(s, size_.height / 2), 0xFF4A4A4AU), 0x30);
  }
  for (const float gain : {-20.0F, -15.0F, -10.0F, -5.0F, 0.0F, 5.0F, 10.0F, 15.0F, 20.0F}) {
    const Point onLine = at(25.0F, gain);
    EXPECT_GT(Channel(standard.GetPixel(onLine.x, onLine.y), 8), 0x60) << gain << " dB";
  }
  for (const float frequency : {100.0F, 1000.0F, 10000.0F}) {
    const Point onLine = at(frequency, 12.5F);
    EXPECT_GT(Channel(standard.GetPixel(onLine.x, onLine.y), 8), 0x60) << frequency << " Hz";
  }
  for (const float frequency : {20.0F, 30.0F, 90.0F, 300.0F, 7000.0F, 20000.0F}) {
    const Point onLine = at(frequency, 12.5F);
    const std::int32_t base = frequency > 1000.0F ? 0x1A : 0x27;
    EXPECT_GT(Channel(standard.GetPixel(onLine.x, onLine.y), 8), base + 0x14) << frequency;
    EXPECT_LT(Channel(standard.GetPixel(onLine.x, onLine.y), 8), 0x70) << frequency;
  }
}

TEST_P(PlotPictureTest, EveryLabelHasItsPlace) {
  const Bitmap picture = Grid(true);
  const auto hasInk = [&](const Rect& area) {
    for (std::int32_t y = area.top; y < area.bottom; ++y) {
      for (std::int32_t x = area.left; x < area.right; ++x) {
        if (Channel(picture.GetPixel(x, y), 8) > 0x40) return true;
      }
    }
    return false;
  };
  const auto units = [&](float count) { return static_cast<std::int32_t>(count * scale_); };
  for (const float gain : {-15.0F, -10.0F, -5.0F, 0.0F, 5.0F, 10.0F, 15.0F}) {
    const auto y = static_cast<std::int32_t>(mapping_.Y(gain));
    EXPECT_TRUE(hasInk({units(12), y - units(4), units(26), y + units(4)})) << gain;
    EXPECT_FALSE(hasInk({units(4), y - units(10), units(26), y - units(8)})) << gain;
  }
  const std::int32_t top = size_.height - units(16);
  for (const float frequency : {20.0F, 30.0F, 40.0F, 50.0F, 100.0F, 200.0F, 300.0F, 1000.0F,
                                2000.0F, 3000.0F, 5000.0F, 10000.0F}) {
    const auto x = static_cast<std::int32_t>(mapping_.X(frequency));
    EXPECT_TRUE(hasInk({x - units(5), top, x + units(5), size_.height - units(6)})) << frequency;
  }
  for (const float frequency : {70.0F, 150.0F, 7000.0F}) {
    const auto x = static_cast<std::int32_t>(mapping_.X(frequency));
    EXPECT_FALSE(hasInk({x - units(5), top, x + units(5), size_.height - units(6)})) << frequency;
  }
}

}  // namespace
}  // namespace ui
