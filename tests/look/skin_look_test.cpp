// Artwork and texts of both skins together: what neither shows alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

#include "platform/screen.h"
#include "tests/main/picture_ink.h"
#include "ui/main/skin_composer.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Point;
using platform::Rect;

constexpr Argb Alpha(Argb color) {
  return color >> 24U;
}

// Relative luminance of an opaque colour, as for contrast on the web.
double Luminance(Argb color) {
  const auto channel = [color](unsigned shift) {
    const double value = ((color >> shift) & 0xFFU) / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * channel(16) + 0.7152 * channel(8) + 0.0722 * channel(0);
}

double Contrast(double one, double other) {
  return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

class SkinLookTest : public testing::TestWithParam<Skin> {
 protected:
  const Bitmap& Compose(const MainScene& scene) {
    const Bitmap* picture = composer_.Compose(scene);
    if (picture == nullptr) throw std::runtime_error("no picture");
    return *picture;
  }

  std::int32_t Pixels(double units) const { return static_cast<std::int32_t>(units * scale_); }

  Rect FaceArea(std::int32_t mode) const {
    const Point corner = PixelPosition(GetParam(), ModeElement(mode), scale_);
    const platform::Size size = images_.Sizes().mode;
    return {corner.x, corner.y, corner.x + size.width, corner.y + size.height};
  }

  // The opaque part of a mode's image, in the window.
  Rect Face(std::int32_t mode) const {
    const Bitmap& image = *images_.modes[static_cast<std::size_t>(mode)].Look(ModeLook::Normal);
    const Rect box = InkBox(image, {0, 0, image.Width(), image.Height()},
                            [](Argb color) { return Alpha(color) == 0xFF; });
    const Rect area = FaceArea(mode);
    return {area.left + box.left, area.top + box.top, area.left + box.right, area.top + box.bottom};
  }

  // The modes on the background, without any text.
  Bitmap WithoutTexts(ModeLook look) const {
    Bitmap picture(images_.background->Width(), images_.background->Height(),
                   platform::PixelFormat::Argb32);
    platform::Graphics graphics(picture);
    graphics.DrawImage(*images_.background, 0, 0);
    for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
      const Point corner = PixelPosition(GetParam(), ModeElement(mode), scale_);
      const auto& image = images_.modes[static_cast<std::size_t>(mode)].Look(look);
      graphics.DrawImage(*image, corner.x, corner.y);
    }
    return picture;
  }

  // The least contrast of a text of this colour to the picture beneath it.
  static double LeastContrast(const Bitmap& beneath, const Rect& area, Argb text) {
    double least = 21.0;
    for (std::int32_t y = area.top; y < area.bottom; ++y) {
      for (std::int32_t x = area.left; x < area.right; ++x) {
        least = std::min(least, Contrast(Luminance(text), Luminance(beneath.GetPixel(x, y))));
      }
    }
    return least;
  }

  const double scale_ = platform::GetScreenDpi().x / 96.0;
  const MainImages images_ = MainImages::Load(GetParam());
  SkinComposer composer_{GetParam(), scale_, MainImages::Load(GetParam())};
  const Argb labelColor_ = GetParam() == Skin::Standard ? 0xFF000000 : 0xFFFFFFFF;
};

TEST_P(SkinLookTest, TheWindowHasItsShapeAndNoShadowIsCutOff) {
  const Bitmap& picture = Compose({});
  const std::int32_t right = picture.Width() - 1;
  const std::int32_t bottom = picture.Height() - 1;
  EXPECT_EQ(picture.Width(), Pixels(GetParam() == Skin::Standard ? 651 : 720.8));
  EXPECT_EQ(picture.Height(), Pixels(GetParam() == Skin::Standard ? 454 : 447.2));
  for (const Point corner :
       {Point{0, 0}, Point{right, 0}, Point{0, bottom}, Point{right, bottom}}) {
    EXPECT_EQ(picture.GetPixel(corner.x, corner.y), 0U) << corner.x << "," << corner.y;
  }
  // A shadow must have died away where the window ends.
  constexpr Argb kUnseen = 6;
  for (std::int32_t x = 0; x <= right; ++x) {
    EXPECT_LE(Alpha(picture.GetPixel(x, 0)), kUnseen) << x;
    EXPECT_LE(Alpha(picture.GetPixel(x, bottom)), kUnseen) << x;
  }
  for (std::int32_t y = 0; y <= bottom; ++y) {
    EXPECT_LE(Alpha(picture.GetPixel(0, y)), kUnseen) << y;
    EXPECT_LE(Alpha(picture.GetPixel(right, y)), kUnseen) << y;
  }
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    const Rect face = Face(mode);
    EXPECT_EQ(Alpha(picture.GetPixel(face.left + face.Width() / 2, face.top + 1)), 0xFFU);
  }
}

TEST_P(SkinLookTest, LabelsLieInsideTheirFacesAndStandOut) {
  struct Case {
    ModeLook look;
    MainScene scene;
  };
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    for (const Case& c :
         {Case{ModeLook::Normal, {}}, Case{ModeLook::Selected, {.selectedMode = mode}},
          Case{ModeLook::Highlighted, {.hoverItem = ModeElement(mode)}}}) {
      SCOPED_TRACE("mode " + std::to_string(mode) + ", look " +
                   std::to_string(static_cast<int>(c.look)));
      const Rect face = Face(mode);
      const Bitmap beneath = WithoutTexts(c.look);
      const Rect text = support::BoxOfDifference(Compose(c.scene), beneath, face);
      ASSERT_GT(text.Width(), Pixels(25));
      EXPECT_GE(text.left - face.left, Pixels(3));
      EXPECT_GE(face.right - text.right, Pixels(3));
      EXPECT_GE(text.top - face.top, Pixels(3));
      EXPECT_GE(face.bottom - text.bottom, Pixels(3));
      EXPECT_GE(LeastContrast(beneath, text, labelColor_), 4.5);
      if (GetParam() == Skin::Davrin) {
        EXPECT_NEAR(text.left + text.right, face.left + face.right, 2 * Pixels(4)) << "centred";
      }
    }
  }
}

TEST_P(SkinLookTest, TheWarningStaysInsideThePanelAndStandsOut) {
  const Bitmap quiet = WithoutTexts(ModeLook::Normal);
  const Rect strip{0, FaceArea(5).bottom, quiet.Width(), Pixels(410)};
  SkinComposer calm(GetParam(), scale_, MainImages::Load(GetParam()));
  const Bitmap* without = calm.Compose({});
  ASSERT_NE(without, nullptr);
  const Rect text = support::BoxOfDifference(Compose({.endpointWarning = true}), *without, strip);
  ASSERT_GT(text.Width(), Pixels(250));
  EXPECT_LE(text.right, quiet.Width() - Pixels(10));
  const Argb color = GetParam() == Skin::Standard ? 0xFFE3C69C : 0xFFFFFFFF;
  EXPECT_GE(LeastContrast(quiet, text, color), 4.5);
}

TEST_P(SkinLookTest, StatesOfAFaceDifferWithoutColour) {
  const auto lightness = [this](const Bitmap& picture, std::int32_t mode) {
    const Rect face = Face(mode);
    double sum = 0;
    for (std::int32_t y = face.top; y < face.bottom; ++y) {
      for (std::int32_t x = face.left; x < face.right; ++x)
        sum += Lightness(picture.GetPixel(x, y));
    }
    return sum / (face.Width() * face.Height());
  };
  const Bitmap normal = WithoutTexts(ModeLook::Normal);
  const Bitmap selected = WithoutTexts(ModeLook::Selected);
  const Bitmap hovered = WithoutTexts(ModeLook::Highlighted);
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    EXPECT_GT(lightness(selected, mode), lightness(normal, mode) + 8.0) << mode;
    EXPECT_GT(lightness(hovered, mode), lightness(normal, mode) + 4.0) << mode;
  }
}

INSTANTIATE_TEST_SUITE_P(Skins, SkinLookTest, testing::Values(Skin::Standard, Skin::Davrin),
                         [](const auto& skin) {
                           return skin.param == Skin::Standard ? "Standard" : "Davrin";
                         });

}  // namespace
}  // namespace ui
