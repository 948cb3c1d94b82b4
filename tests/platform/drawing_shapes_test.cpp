// Which pixels lines, outlines and filled shapes reach.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "tests/platform/pixels.h"

namespace platform {
namespace {

constexpr Argb kRed = 0xFFFF0000;

class BothSmoothings : public testing::TestWithParam<SmoothingMode> {
 protected:
  Bitmap bitmap_ = EmptyBitmap(60, 60);
  Graphics graphics_{bitmap_};
  void SetUp() override { graphics_.SetSmoothingMode(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(Smoothing, BothSmoothings,
                         testing::Values(SmoothingMode::None, SmoothingMode::AntiAlias));

struct LineCase {
  PointF from;
  PointF to;
  float width;
  Rect pixels;
};

TEST_P(BothSmoothings, StraightLinesPaintBothEndPixelsSharply) {
  const auto cases = std::to_array<LineCase>({
      {{10, 20}, {30, 20}, 1, {10, 20, 31, 21}},
      {{30, 20}, {10, 20}, 1, {10, 20, 31, 21}},
      {{12, 5}, {12, 9}, 1, {12, 5, 13, 10}},
      {{7, 7}, {7, 7}, 1, {7, 7, 8, 8}},
      {{10, 20}, {30, 20}, 3, {10, 19, 31, 22}},
  });
  for (const LineCase& line : cases) {
    graphics_.Clear(0);
    graphics_.DrawLine({kRed, line.width}, line.from, line.to);
    EXPECT_EQ(PaintedBounds(bitmap_), line.pixels);
    EXPECT_DOUBLE_EQ(PaintedArea(bitmap_), line.pixels.Width() * line.pixels.Height());
  }
}

TEST_P(BothSmoothings, OutlineOfARectangleReachesOnePixelFurther) {
  graphics_.DrawRectangle({kRed, 1}, {5, 6, 20, 10});
  EXPECT_EQ(PaintedBounds(bitmap_), (Rect{5, 6, 26, 17}));
  EXPECT_DOUBLE_EQ(PaintedArea(bitmap_), 2 * (21 + 11) - 4);
  EXPECT_EQ(bitmap_.GetPixel(25, 16), kRed);
  EXPECT_EQ(bitmap_.GetPixel(6, 7), 0U);
}

TEST_P(BothSmoothings, TransparentOutlineCoversEachPixelOnce) {
  graphics_.DrawRectangle({0x80FF0000, 2}, {10, 10, 20, 20});
  for (const Point point : {Point{10, 10}, Point{30, 10}, Point{20, 30}, Point{10, 20}}) {
    EXPECT_NEAR(AlphaAt(bitmap_, point.x, point.y), 0x80, 1) << point.x << "," << point.y;
  }
}

TEST_P(BothSmoothings, FilledRectanglesHaveTheirSize) {
  graphics_.FillRectangle(kRed, {5, 6, 20, 10});
  EXPECT_EQ(PaintedBounds(bitmap_), (Rect{5, 6, 25, 16}));
  EXPECT_DOUBLE_EQ(PaintedArea(bitmap_), 200);
}

TEST(DrawingShapes, PixelOffsetHalfMovesPixelCentres) {
  Bitmap bitmap = EmptyBitmap(20, 20);
  Graphics graphics(bitmap);
  graphics.SetSmoothingMode(SmoothingMode::AntiAlias);
  graphics.SetPixelOffsetMode(PixelOffsetMode::Half);
  graphics.DrawLine({kRed, 1}, {5, 10}, {15, 10});
  EXPECT_NEAR(AlphaAt(bitmap, 10, 9), 128, 2);
  EXPECT_NEAR(AlphaAt(bitmap, 10, 10), 128, 2);
}

TEST(DrawingShapes, ArcsRunClockwiseInTrueAngles) {
  Bitmap bitmap = EmptyBitmap(100, 100);
  Graphics graphics(bitmap);
  graphics.SetSmoothingMode(SmoothingMode::AntiAlias);
  graphics.DrawArc({kRed, 2}, {20, 20, 60, 60}, 0, 180);
  EXPECT_EQ(PaintedBounds(bitmap).top, 50);  // the lower half alone
  EXPECT_GT(AlphaAt(bitmap, 50, 80), 200U);

  graphics.Clear(0);
  // To the diagonal of a flat ellipse: seen from the centre that is 45 degrees.
  graphics.DrawArc({kRed, 1}, {10, 40, 80, 20}, 0, 45);
  const double radius = 1.0 / std::sqrt(0.5 / (40.0 * 40.0) + 0.5 / (10.0 * 10.0));
  const double end = 50 + radius * std::numbers::sqrt2 / 2;
  EXPECT_NEAR(PaintedBounds(bitmap).left, end, 1.5);
}

TEST(DrawingShapes, GradientRepeatsOutsideItsPoints) {
  Bitmap bitmap = EmptyBitmap(60, 60);
  Graphics graphics(bitmap);
  graphics.FillEllipse({{30, 20}, {30, 30}, 0xFF000000, 0xFFFFFFFF}, {0, 0, 59, 59});
  const auto grey = [&](std::int32_t y) { return bitmap.GetPixel(30, y) & 0xFFU; };
  EXPECT_NEAR(grey(25), 128, 16);
  EXPECT_LT(grey(21), grey(29));
  for (const std::int32_t y : {22, 25, 28}) {
    EXPECT_NEAR(grey(y), grey(y + 10), 2) << y;
    EXPECT_NEAR(grey(y), grey(y - 10), 2) << y;
  }
}

TEST(DrawingShapes, CurvePassesThroughItsPointsWithGivenTension) {
  Bitmap bitmap = EmptyBitmap(100, 100);
  Graphics graphics(bitmap);
  graphics.SetSmoothingMode(SmoothingMode::AntiAlias);
  const auto points = std::to_array<PointF>({{10, 50}, {40, 20}, {60, 80}, {90, 50}});
  graphics.DrawCurve({kRed, 2}, points, 0.5F);
  for (const PointF& point : points) {
    const Point at{static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y)};
    EXPECT_GT(AlphaAt(bitmap, at.x, at.y), 80U) << at.x;
  }
  // The middle of the first piece by the cubic's own formula: the missing neighbour is the end.
  const auto middle = [](double start, double end, double after) {
    const double first = start + 0.5 / 3 * (end - start);
    const double second = end - 0.5 / 3 * (after - start);
    return (start + 3 * first + 3 * second + end) / 8;
  };
  const auto x = static_cast<std::int32_t>(std::lround(middle(10, 40, 60)));
  const auto y = static_cast<std::int32_t>(std::lround(middle(50, 20, 80)));
  EXPECT_GT(AlphaAt(bitmap, x, y), 200U);
  EXPECT_EQ(AlphaAt(bitmap, x, y + 4), 0U);
}

TEST(DrawingShapes, ImpossibleCoordinatesAreLeftOut) {
  Bitmap bitmap = EmptyBitmap(20, 20);
  Graphics graphics(bitmap);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  graphics.DrawLine({kRed, 1}, {nan, 1}, {5, 5});
  graphics.DrawLine({kRed, 1}, {-1.0e30F, 10}, {1.0e30F, 10});
  const auto points =
      std::to_array<PointF>({{0, 5}, {nan, nan}, {10, -infinity}, {15, 1.0e30F}, {19, 5}});
  graphics.DrawCurve({kRed, 1}, points, 0.5F);
  EXPECT_EQ(bitmap.GetPixel(10, 10), kRed);
}

TEST(DrawingShapes, SourceCopyStoresAndClipsCutWholePixels) {
  Bitmap bitmap = EmptyBitmap(20, 20);
  Graphics graphics(bitmap);
  graphics.Clear(kRed);
  graphics.SetClip({5, 5, 10, 10});
  graphics.SetCompositingMode(CompositingMode::SourceCopy);
  graphics.FillRectangle(0x40204060, {0, 0, 20, 20});
  EXPECT_EQ(bitmap.GetPixel(4, 5), kRed);
  EXPECT_EQ(bitmap.GetPixel(10, 9), kRed);
  EXPECT_NEAR(AlphaAt(bitmap, 5, 5), 0x40, 0);
  graphics.ResetClip();
  graphics.SetCompositingMode(CompositingMode::SourceOver);
  graphics.FillRectangle(0x80FFFFFF, {0, 0, 1, 1});
  EXPECT_NEAR(bitmap.GetPixel(0, 0) & 0xFFU, 0x80, 1);
}

}  // namespace
}  // namespace platform
