#include "ui/controls/plot/plot_geometry.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <tuple>

namespace ui {
namespace {

using dsp::BandMarker;
using dsp::PlotMapping;
using platform::Point;
using platform::Rect;
using platform::Size;

constexpr Size kMarker{19, 19};

// As large as the dialog makes it at 96 dpi.
PlotMapping Mapping96() {
  return MakePlotMapping({734, 197}, 1.0F);
}

TEST(PlotMapping, AxesReachFromMarginToMargin) {
  for (const auto& [size, scale] :
       {std::pair{Size{734, 197}, 1.0F}, std::pair{Size{978, 242}, 1.25F},
        std::pair{Size{1100, 303}, 1.5F}, std::pair{Size{1467, 378}, 2.0F}}) {
    const PlotMapping mapping = MakePlotMapping(size, scale);
    const auto height = static_cast<float>(size.height);
    EXPECT_EQ(mapping.plotLeft, static_cast<std::int32_t>(30.0F * scale));
    EXPECT_EQ(mapping.plotRight, static_cast<std::int32_t>(15.0F * scale));
    EXPECT_NEAR(mapping.X(20.0F), mapping.plotLeft, 0.001);
    EXPECT_NEAR(mapping.X(20000.0F), size.width - mapping.plotRight, 0.001);
    const float span = mapping.X(20000.0F) - mapping.X(20.0F);
    EXPECT_NEAR((mapping.X(1000.0F) - mapping.X(20.0F)) / span, 0.566323, 1e-5);
    EXPECT_FLOAT_EQ(mapping.Y(20.0F), 10.0F * scale);
    EXPECT_FLOAT_EQ(mapping.Y(-20.0F), height - 20.0F * scale);
    EXPECT_FLOAT_EQ(mapping.Y(0.0F), (10.0F * scale + height - 20.0F * scale) / 2.0F);
  }
}

TEST(PlotGeometry, HitBoxLiesBesideTheDrawnMarker) {
  const PlotMapping mapping = Mapping96();
  const BandMarker marker{1000.0F, 0.0F};
  const auto x = static_cast<std::int32_t>(mapping.X(1000.0F));
  const auto y = static_cast<std::int32_t>(mapping.Y(0.0F));
  EXPECT_EQ(MarkerHitBox(mapping, marker, kMarker), (Rect{x - 11, y - 7, x + 8, y + 12}));
  EXPECT_EQ(MarkerOrigin(mapping, marker, kMarker), (Point{x - 8, y - 8}));
}

TEST(PlotGeometry, ThePressFindsTheFirstBandWhoseBoxHasThePoint) {
  const PlotMapping mapping = Mapping96();
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const std::array<BandMarker, 10> markers{{{100.0F, 6.0F},
                                            {1000.0F, 0.0F},
                                            {1000.0F, 0.0F},
                                            {1050.0F, 0.0F},
                                            {kNan, 0.0F},
                                            {500.0F, kNan},
                                            {0.0F, 0.0F},
                                            {-5.0F, kInfinity},
                                            {3.0e38F, -kInfinity},
                                            {9000.0F, -300.0F}}};
  const Rect box = MarkerHitBox(mapping, markers[1], kMarker);
  const Rect next = MarkerHitBox(mapping, markers[3], kMarker);
  for (const auto& [point, expected] : {
           std::pair{Point{box.left, box.top}, std::optional<std::int32_t>(2)},
           std::pair{Point{box.right - 1, box.bottom - 1}, std::optional<std::int32_t>(2)},
           std::pair{Point{box.left - 1, box.top}, std::optional<std::int32_t>()},
           std::pair{Point{box.left, box.bottom}, std::optional<std::int32_t>()},
           std::pair{Point{box.right, box.top}, std::optional<std::int32_t>(4)},
           std::pair{Point{next.right, box.top}, std::optional<std::int32_t>()},
           std::pair{Point{0, 0}, std::optional<std::int32_t>()},
       }) {
    EXPECT_EQ(BandAt(mapping, markers, kMarker, point), expected) << point.x << ", " << point.y;
  }
}

TEST(PlotDrag, GainRunsFromTwentyOneDown) {
  const std::int32_t height = 231;  // (231 - 30) / 2 and / 4 are no whole numbers
  const PlotMapping mapping = MakePlotMapping({734, height}, 1.0F);
  const auto gain = [&](std::int32_t y) { return DraggedMarker(mapping, {300, y}, 1.0)->gainDb; };
  const PlotMapping even = MakePlotMapping({734, 230}, 1.0F);
  EXPECT_FLOAT_EQ(DraggedMarker(even, {300, 111}, 1.0)->gainDb, 0.0F);
  EXPECT_FLOAT_EQ(DraggedMarker(even, {300, 61}, 1.0)->gainDb, 10.5F);
  EXPECT_FLOAT_EQ(DraggedMarker(even, {300, 161}, 1.0)->gainDb, -10.5F);
  EXPECT_EQ(gain(10), 12.0F);
  EXPECT_EQ(gain(height - 21), -12.0F);
  EXPECT_FLOAT_EQ(gain(100), static_cast<float>(21.0 - 89.0 / 100.5 * 21.0));
}

TEST(PlotDrag, MarginsOfTheAreaDoNotGrowWithTheResolution) {
  for (const auto& [size, scale] :
       {std::pair{Size{734, 197}, 1.0}, std::pair{Size{1467, 378}, 2.0}}) {
    const PlotMapping mapping = MakePlotMapping(size, static_cast<float>(scale));
    const auto inside = [&](std::int32_t x, std::int32_t y) {
      return DraggedMarker(mapping, {x, y}, static_cast<double>(mapping.dpiScale)).has_value();
    };
    const std::int32_t left = mapping.plotLeft;
    const std::int32_t right = size.width - mapping.plotRight;
    const std::int32_t bottom = size.height - 20;
    EXPECT_TRUE(inside(left, 10));
    EXPECT_TRUE(inside(right - 1, bottom - 1));
    EXPECT_FALSE(inside(left - 1, 50));
    EXPECT_FALSE(inside(right, 50));
    EXPECT_FALSE(inside(300, 9));
    EXPECT_FALSE(inside(300, bottom));
  }
}

TEST(PlotDrag, FrequencyFollowsThePointerMinusItsOffset) {
  for (const auto& [scale, offset] :
       {std::pair{1.0, 1}, std::pair{1.25, 1}, std::pair{1.5, 2}, std::pair{2.0, 3}}) {
    const PlotMapping mapping = MakePlotMapping({1100, 303}, static_cast<float>(scale));
    const auto frequency = [&](std::int32_t x) {
      return DraggedMarker(mapping, {x, 100}, static_cast<double>(mapping.dpiScale))->frequency;
    };
    EXPECT_EQ(frequency(mapping.plotLeft), 20.0F) << "clamped: left of the axis";
    EXPECT_NEAR(frequency(mapping.plotLeft + offset), 20.0F, 1e-4);
    EXPECT_NEAR(mapping.X(frequency(640)), 640 - offset, 0.01);
    EXPECT_LE(frequency(1100 - mapping.plotRight - 1), 20000.0F);
  }
}

TEST(PlotDrag, NoRoomNoDrag) {
  for (const Size size : {Size{0, 0}, Size{45, 30}, Size{40, 300}, Size{734, 30}}) {
    const PlotMapping mapping = MakePlotMapping(size, 1.0F);
    for (std::int32_t x = 0; x < 60; ++x) {
      EXPECT_FALSE(DraggedMarker(mapping, {x, 15}, 1.0));
    }
  }
}

}  // namespace
}  // namespace ui
