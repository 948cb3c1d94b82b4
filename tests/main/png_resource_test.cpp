#include "ui/images/png_resource.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/resources.h"
#include "platform/screen.h"
#include "resources/resource_ids.h"
#include "tests/controls/picture.h"
#include "tests/main/artwork.h"

namespace ui {
namespace {

using platform::Bitmap;

TEST(PngResourceTest, LoadedLengthIsTruncated) {
  struct Case {
    std::uint32_t stored;
    std::uint32_t screenDpi;
    float designDpi;
    std::int32_t loaded;
  };
  for (const Case& c : {
           Case{196, 96, 96.0F, 196},
           Case{109, 144, 96.0F, 163},
           Case{25, 120, 96.0F, 31},
           Case{77, 96, 240.0F, 30},
           Case{1118, 192, 240.0F, 894},
           Case{1, 96, 240.0F, 0},
           // The product takes 32 bits and no more, and is then a float, which has 24.
           Case{65536, 65537, 1.0F, 65536},
           Case{4097, 4097, 1.0F, 16785408},
           Case{100, 96, 0.0F, 0},
           Case{100, 96, -96.0F, 0},
           Case{100, 96, std::numeric_limits<float>::quiet_NaN(), 0},
       }) {
    EXPECT_EQ(LoadedLength(c.stored, c.screenDpi, c.designDpi), c.loaded)
        << c.stored << " at " << c.screenDpi << " / " << c.designDpi;
  }
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

TEST(ResourceIds, TheDialogsPicturesAreThoseOfTheArtworksList) {
  const auto roles = ArtworkRoles();
  struct Case {
    std::uint16_t id;
    const char* role;
  };
  for (const Case& c :
       {Case{resources::kImageCloseButton, "dialog close button"},
        Case{resources::kImageExpandButton, "dialog button, expand"},
        Case{resources::kImageCollapseButton, "dialog button, collapse"},
        Case{resources::kImageGreyDot, "dot, grey"}, Case{resources::kImageCyanDot, "dot, cyan"},
        Case{resources::kImageHeader, "dialog header"},
        Case{resources::kImageMenuButton, "dialog menu button"},
        Case{resources::kImageDarkDot, "dot, small and dark"},
        Case{resources::kImageRedDot, "dot, red"},
        Case{resources::kDialogTileBitmap, "dialog background tile"}}) {
    EXPECT_EQ(c.id, roles.at(c.role)) << c.role;
  }
}

}  // namespace
}  // namespace ui
