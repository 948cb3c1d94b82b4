#include "ui/images/png_resource.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "platform/screen.h"
#include "resources/resource_ids.h"
#include "ui/main/main_images.h"

namespace ui {
namespace {

TEST(PngResourceTest, LoadedLengthIsTruncated) {
  struct Case {
    std::uint32_t stored;
    std::uint32_t screenDpi;
    float designDpi;
    std::int32_t loaded;
  };
  const std::vector<Case> cases{
      {196, 96, 96.0F, 196},
      {109, 144, 96.0F, 163},
      {25, 120, 96.0F, 31},
      {77, 96, 240.0F, 30},
      {511, 96, 240.0F, 204},
      {315, 96, 240.0F, 126},
      {1802, 96, 240.0F, 720},
      {1118, 192, 240.0F, 894},
      {1, 96, 240.0F, 0},
      // The product takes 32 bits and no more, and is then a float, which has 24.
      {65536, 65537, 1.0F, 65536},
      {4097, 4097, 1.0F, 16785408},
      {100, 96, 0.0F, 0},
      {100, 96, -96.0F, 0},
      {100, 96, std::numeric_limits<float>::quiet_NaN(), 0},
      {0, 96, 96.0F, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(LoadedLength(c.stored, c.screenDpi, c.designDpi), c.loaded)
        << c.stored << " at " << c.screenDpi << " / " << c.designDpi;
  }
}

TEST(PngResourceTest, AnUnknownResourceIsNoImage) {
  EXPECT_FALSE(LoadPngResource(1, 96.0F));
  EXPECT_FALSE(LoadPngResource(65535, 96.0F));
  EXPECT_FALSE(LoadPngResource(resources::kImageDone, 0.0F));
}

platform::Size Expected(std::uint32_t width, std::uint32_t height, float designDpi) {
  const platform::ScreenDpi screen = platform::GetScreenDpi();
  return {LoadedLength(width, screen.x, designDpi), LoadedLength(height, screen.y, designDpi)};
}

TEST(PngResourceTest, EverySkinHasAllItsArtworkInItsSizes) {
  struct Case {
    Skin skin;
    float designDpi;
    platform::Size background;
    platform::Size mode;
    platform::Size button;
    platform::Size advanced;
  };
  for (const Case& c : {Case{Skin::Standard, 96.0F, {651, 454}, {196, 109}, {25, 25}, {20, 20}},
                        Case{Skin::Davrin, 240.0F, {1802, 1118}, {511, 315}, {77, 77}, {77, 77}}}) {
    SCOPED_TRACE(c.designDpi);
    const auto expected = [&c](platform::Size stored) {
      return Expected(static_cast<std::uint32_t>(stored.width),
                      static_cast<std::uint32_t>(stored.height), c.designDpi);
    };
    const MainImages images = MainImages::Load(c.skin);
    EXPECT_EQ(ImageSize(images.background), expected(c.background));
    for (const ModeImages& mode : images.modes) {
      for (const Image& look : mode.looks) EXPECT_EQ(ImageSize(look), expected(c.mode));
    }
    for (const ImagePair* pair : {&images.minimize, &images.close}) {
      EXPECT_EQ(ImageSize(pair->normal), expected(c.button));
      EXPECT_EQ(ImageSize(pair->highlighted), expected(c.button));
    }
    EXPECT_EQ(ImageSize(images.advanced.normal), expected(c.advanced));
    EXPECT_EQ(ImageSize(images.advanced.highlighted), expected(c.advanced));
    EXPECT_EQ(ImageSize(images.done.normal), expected({89, 31}));
    EXPECT_EQ(ImageSize(images.done.highlighted), expected({89, 31}));
    EXPECT_EQ(ImageSize(images.makerLogo.normal), Expected(55, 28, 96.0F));
    EXPECT_EQ(ImageSize(images.makerLogo.highlighted), Expected(55, 28, 96.0F));
    // The window has a shape: its corner lets the desktop through.
    EXPECT_LT(images.background->GetPixel(0, 0) >> 24U, 0xFFU);
    EXPECT_EQ(images.background->GetPixel(images.background->Width() / 2,
                                          images.background->Height() / 2) >>
                  24U,
              0xFFU);
  }
}

}  // namespace
}  // namespace ui
