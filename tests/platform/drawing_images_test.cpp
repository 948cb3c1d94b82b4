// Bitmaps, and images drawn at their own and at other sizes.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "tests/platform/pixels.h"

namespace platform {
namespace {

Bitmap Noise(std::int32_t width, std::int32_t height) {
  Bitmap bitmap = EmptyBitmap(width, height);
  std::uint32_t state = 12345;
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      state = state * 1664525U + 1013904223U;
      bitmap.SetPixel(x, y, state);
    }
  }
  return bitmap;
}

Bitmap Scaled(const Bitmap& source, std::int32_t width, std::int32_t height) {
  Bitmap target = EmptyBitmap(width, height);
  Graphics graphics(target);
  graphics.SetInterpolationMode(InterpolationMode::HighQualityBicubic);
  graphics.DrawImage(source, Rect{0, 0, width, height});
  return target;
}

TEST(DrawingImages, PixelsAreNotPremultipliedOutside) {
  Bitmap bitmap = EmptyBitmap(4, 4);
  EXPECT_EQ(bitmap.GetPixel(1, 1), 0U);
  bitmap.SetPixel(1, 1, 0x80FF0000);
  EXPECT_EQ(bitmap.GetPixel(1, 1), 0x80FF0000);
  for (const Point outside : {Point{-1, 0}, Point{0, 4}, Point{4, 0}, Point{0, -1}}) {
    bitmap.SetPixel(outside.x, outside.y, 0xFFFFFFFF);
    EXPECT_EQ(bitmap.GetPixel(outside.x, outside.y), 0U);
  }
}

TEST(DrawingImages, OneToOneIsExact) {
  const Bitmap source = Noise(37, 23);
  const Bitmap copy = Scaled(source, 37, 23);
  for (std::int32_t y = 0; y < 23; ++y) {
    for (std::int32_t x = 0; x < 37; ++x) {
      ASSERT_EQ(copy.GetPixel(x, y), source.GetPixel(x, y)) << x << "," << y;
    }
  }
}

TEST(DrawingImages, ConstantStaysConstantUpToTheBorder) {
  const Argb color = 0x66446688;
  Bitmap source = EmptyBitmap(50, 40);
  Graphics(source).Clear(color);
  const Argb stored = source.GetPixel(0, 0);
  for (const Size size : {Size{20, 16}, Size{49, 41}, Size{75, 60}, Size{200, 3}, Size{1, 1}}) {
    const Bitmap scaled = Scaled(source, size.width, size.height);
    for (std::int32_t y = 0; y < size.height; ++y) {
      for (std::int32_t x = 0; x < size.width; ++x) {
        ASSERT_EQ(scaled.GetPixel(x, y), stored) << size.width << ": " << x << "," << y;
      }
    }
  }
}

TEST(DrawingImages, TransparentNeighboursLendNoColour) {
  // A green field beside transparent pixels that would be red.
  Bitmap source = EmptyBitmap(40, 40);
  Graphics graphics(source);
  graphics.SetCompositingMode(CompositingMode::SourceCopy);
  graphics.FillRectangle(0x00FF0000, {0, 0, 20, 40});
  graphics.FillRectangle(0xFF00FF00, {20, 0, 20, 40});
  for (const std::int32_t size : {16, 100}) {
    const Bitmap scaled = Scaled(source, size, size);
    for (std::int32_t x = 0; x < size; ++x) {
      EXPECT_EQ(scaled.GetPixel(x, size / 2) & 0x00FF0000U, 0U) << x;
    }
  }
}

// Shrinking takes all pixels into account: stripes that are too fine become even grey.
TEST(DrawingImages, ShrinkingFiltersFirst) {
  Bitmap stripes = EmptyBitmap(120, 10);
  for (std::int32_t y = 0; y < 10; ++y) {
    for (std::int32_t x = 0; x < 120; ++x) {
      stripes.SetPixel(x, y, x % 2 == 0 ? 0xFF000000 : 0xFFFFFFFF);
    }
  }
  const Bitmap scaled = Scaled(stripes, 40, 10);
  for (std::int32_t x = 0; x < 40; ++x) EXPECT_NEAR(scaled.GetPixel(x, 5) & 0xFFU, 128, 30) << x;
}

// An edge stays in its place and gets steeper than linear blending would make it.
TEST(DrawingImages, EnlargingStaysCrispAndInPlace) {
  Bitmap source = EmptyBitmap(10, 1);
  for (std::int32_t x = 0; x < 10; ++x) source.SetPixel(x, 0, x < 5 ? 0xFF404040 : 0xFFC0C0C0);
  const Bitmap scaled = Scaled(source, 40, 1);
  const auto grey = [&](std::int32_t x) { return scaled.GetPixel(x, 0) & 0xFFU; };
  EXPECT_LT(grey(19), 0x80U);
  EXPECT_GT(grey(20), 0x80U);
  EXPECT_LT(grey(16), 0x40U);  // the kernel's overshoot
  for (std::int32_t x = 0; x < 20; ++x) EXPECT_NEAR(grey(x) + grey(39 - x), 0x100, 1) << x;
}

}  // namespace
}  // namespace platform
