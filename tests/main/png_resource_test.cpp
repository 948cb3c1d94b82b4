#include "ui/images/png_resource.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/resources.h"
#include "platform/screen.h"
#include "tests/controls/picture.h"

namespace ui {
namespace {

using platform::Bitmap;

TEST(PngResourceTest, LoadedLengthIsTruncated) {
  EXPECT_EQ(LoadedLength(109, 144, 96.0F), 163);
  EXPECT_EQ(LoadedLength(25, 120, 96.0F), 31);
  EXPECT_EQ(LoadedLength(1118, 192, 240.0F), 894);
  EXPECT_EQ(LoadedLength(1, 96, 240.0F), 0);
  // The product takes 32 bits and no more, and is then a float, which has 24.
  EXPECT_EQ(LoadedLength(65536, 65537, 1.0F), 65536);
  EXPECT_EQ(LoadedLength(4097, 4097, 1.0F), 16785408);
  EXPECT_EQ(LoadedLength(100, 96, -96.0F), 0);
  EXPECT_EQ(LoadedLength(100, 96, std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(PngResourceTest, AnUnknownResourceIsNoImage) {
  EXPECT_FALSE(LoadPngResource(1, 96.0F));
  EXPECT_FALSE(LoadPngResource(65535, 96.0F));
  EXPECT_FALSE(LoadPngResource(168, 0.0F));
  EXPECT_FALSE(LoadPngResource(132, 96.0F)) << "a bitmap, not a PNG";
}

TEST(PngResourceTest, AnImageIsScaledWellAndOnce) {
  const auto stored = Bitmap::FromPng(platform::FindResourceData(platform::ResourceType::Png, 201));
  ASSERT_TRUE(stored);
  Bitmap expected(204, 126, platform::PixelFormat::PremultipliedArgb32);
  {
    platform::Graphics graphics(expected);
    graphics.SetInterpolationMode(platform::InterpolationMode::HighQualityBicubic);
    graphics.DrawImage(*stored, platform::Rect{0, 0, 204, 126});
  }
  ASSERT_EQ(platform::GetScreenDpi().x, 96U);
  const auto loaded = LoadPngResource(201, 240.0F);
  ASSERT_TRUE(loaded);
  EXPECT_TRUE(SamePixels(*loaded, expected));
}

}  // namespace
}  // namespace ui
