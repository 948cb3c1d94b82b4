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

// Each picture's own place and size in the window are other tests' matter; here all of them load.
TEST(PngResourceTest, EverySkinHasAllItsArtwork) {
  const auto loaded = [](platform::Size stored, float designDpi) {
    const platform::ScreenDpi screen = platform::GetScreenDpi();
    return platform::Size{
        LoadedLength(static_cast<std::uint32_t>(stored.width), screen.x, designDpi),
        LoadedLength(static_cast<std::uint32_t>(stored.height), screen.y, designDpi)};
  };
  for (const Skin skin : {Skin::Standard, Skin::Davrin}) {
    const bool standard = skin == Skin::Standard;
    const platform::Size button = standard ? loaded({25, 25}, 96.0F) : loaded({77, 77}, 240.0F);
    const MainImages images = MainImages::Load(skin);
    for (const ModeImages& mode : images.modes) {
      for (const Image& look : mode.looks) {
        EXPECT_EQ(ImageSize(look),
                  standard ? loaded({196, 109}, 96.0F) : loaded({511, 315}, 240.0F));
      }
    }
    for (const auto& [pair, size] :
         {std::pair(&images.minimize, button), std::pair(&images.close, button),
          std::pair(&images.advanced, standard ? loaded({20, 20}, 96.0F) : button),
          std::pair(&images.done, standard ? loaded({89, 31}, 96.0F) : loaded({89, 31}, 240.0F)),
          std::pair(&images.makerLogo, loaded({55, 28}, 96.0F))}) {
      EXPECT_EQ(ImageSize(pair->normal), size);
      EXPECT_EQ(ImageSize(pair->highlighted), size);
    }
  }
}

}  // namespace
}  // namespace ui
