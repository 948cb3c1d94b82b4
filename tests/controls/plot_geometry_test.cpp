#include "ui/controls/plot/plot_geometry.h"

#include <gtest/gtest.h>

#include <array>
#include <tuple>
#include <utility>

namespace ui {
namespace {

using dsp::BandMarker;
using dsp::PlotMapping;
using platform::Point;
using platform::Rect;
using platform::Size;

// As large as the dialog makes it at 96 and 192 dpi.
const PlotMapping kUsual = MakePlotMapping({734, 197}, 1.0F);
const PlotMapping kFine = MakePlotMapping({1467, 378}, 2.0F);

TEST(PlotGeometry, HitBoxLiesBesideTheDrawnMarker) {
  // 1000 Hz and 0 dB lie at (420.2, 93.5), and at (839.8, 179).
  const BandMarker marker{1000.0F, 0.0F};
  EXPECT_EQ(MarkerHitBox(kUsual, marker, {19, 19}), (Rect{409, 86, 428, 105}));
  EXPECT_EQ(MarkerOrigin(kUsual, marker, {19, 19}), (Point{412, 85}));
  EXPECT_EQ(MarkerHitBox(kFine, marker, {38, 38}), (Rect{818, 162, 856, 200}));
  EXPECT_EQ(MarkerOrigin(kFine, marker, {38, 38}), (Point{823, 163}));
  EXPECT_EQ(CurveClip(kFine), (Rect{40, 24, 1477, 334}));
}

TEST(PlotGeometry, ThePressFindsTheFirstBandWhoseBoxHasThePoint) {
  const std::array<BandMarker, 4> markers{
      {{100.0F, 6.0F}, {1000.0F, 0.0F}, {1000.0F, 0.0F}, {1050.0F, 0.0F}}};
  const auto hit = [&](std::int32_t x, std::int32_t y) {
    return BandAt(kUsual, markers, {19, 19}, {x, y}).value_or(0);
  };
  EXPECT_EQ(hit(409, 86), 2);
  EXPECT_EQ(hit(427, 104), 2);
  EXPECT_EQ(hit(408, 86) + hit(409, 85) + hit(409, 105) + hit(433, 86) + hit(0, 0), 0);
  EXPECT_EQ(hit(428, 86), 4);
}

TEST(PlotDrag, GainRunsFromTwentyOneDown) {
  const PlotMapping even = MakePlotMapping({734, 230}, 1.0F);
  for (const auto& [y, scale, gainDb] :
       {std::tuple{111, 1.0, 0.0F}, std::tuple{61, 1.0, 10.5F}, std::tuple{161, 1.0, -10.5F},
        std::tuple{112, 2.0, 0.0F}, std::tuple{10, 1.0, 12.0F}, std::tuple{209, 1.0, -12.0F}}) {
    EXPECT_FLOAT_EQ(DraggedMarker(even, {300, y}, scale)->gainDb, gainDb) << y;
  }
}

TEST(PlotDrag, MarginsAboveAndBelowDoNotGrowWithTheResolution) {
  for (const auto& [mapping, area] :
       {std::pair{kUsual, Rect{30, 10, 719, 177}}, std::pair{kFine, Rect{60, 10, 1437, 358}}}) {
    const auto inside = [&mapping = mapping](std::int32_t x, std::int32_t y) {
      return DraggedMarker(mapping, {x, y}, 1.0).has_value();
    };
    EXPECT_TRUE(inside(area.left, area.top));
    EXPECT_TRUE(inside(area.right - 1, area.bottom - 1));
    EXPECT_FALSE(inside(area.left - 1, 50));
    EXPECT_FALSE(inside(area.right, 50));
    EXPECT_FALSE(inside(300, area.top - 1));
    EXPECT_FALSE(inside(300, area.bottom));
  }
  for (const Size size : {Size{0, 0}, Size{45, 30}, Size{40, 300}, Size{734, 30}}) {
    EXPECT_FALSE(DraggedMarker(MakePlotMapping(size, 1.0F), {35, 15}, 1.0)) << "no room";
  }
}

TEST(PlotDrag, FrequencyFollowsThePointerMinusItsOffset) {
  EXPECT_EQ(DraggedMarker(kUsual, {30, 100}, 1.0)->frequency, 20.0F) << "left of the axis";
  EXPECT_NEAR(DraggedMarker(kUsual, {31, 100}, 1.0)->frequency, 20.0F, 1e-4);
  EXPECT_NEAR(DraggedMarker(kUsual, {421, 100}, 1.0)->frequency, 998.0F, 0.5F);
  EXPECT_NEAR(DraggedMarker(kFine, {63, 100}, 2.0)->frequency, 20.0F, 1e-4);
}

}  // namespace
}  // namespace ui
