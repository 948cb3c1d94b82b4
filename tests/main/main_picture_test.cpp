// Whole pictures of the window, made from plain artwork at the screen's resolution.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/screen.h"
#include "tests/main/picture_ink.h"
#include "tests/main/solid_artwork.h"
#include "ui/main/skin_composer.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::Point;
using platform::Rect;
using platform::Size;

class MainPictureTest : public testing::Test {
 protected:
  std::int32_t Pixels(double units) const { return static_cast<std::int32_t>(units * scale_); }

  Rect Area(double left, double top, double right, double bottom) const {
    return {Pixels(left), Pixels(top), Pixels(right), Pixels(bottom)};
  }

  const Bitmap& Compose(SkinComposer& composer, const MainScene& scene) const {
    const Bitmap* picture = composer.Compose(scene);
    if (picture == nullptr) throw std::runtime_error("no picture");
    return *picture;
  }

  // The colour just inside the element's corner, where no text reaches.
  Argb ColorOf(const Bitmap& picture, Skin skin, Element element) const {
    const Point corner = PixelPosition(skin, element, scale_);
    return picture.GetPixel(corner.x + 1, corner.y + 1);
  }

  const double scale_ = platform::GetScreenDpi().x / 96.0;
  SkinComposer standard_{Skin::Standard, scale_, SolidArtwork(Skin::Standard, scale_)};
  SkinComposer davrin_{Skin::Davrin, scale_, SolidArtwork(Skin::Davrin, scale_)};
};

TEST_F(MainPictureTest, SelectedWinsOverHighlighted) {
  for (const auto& [skin, composer] :
       {std::pair{Skin::Standard, &standard_}, std::pair{Skin::Davrin, &davrin_}}) {
    for (const std::int32_t selected : {-1, 0, 3, 5, 6}) {
      for (const Element hover : {Element::None, ModeElement(3), ModeElement(5), Element::Close}) {
        const Bitmap& picture = Compose(*composer, {.selectedMode = selected, .hoverItem = hover});
        for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
          ModeLook look = ModeLook::Normal;
          if (hover == ModeElement(mode)) look = ModeLook::Highlighted;
          if (selected == mode) look = ModeLook::Selected;
          EXPECT_EQ(ColorOf(picture, skin, ModeElement(mode)), ModeColor(mode, look))
              << "mode " << mode << ", selected " << selected << ", hover "
              << static_cast<int>(hover);
        }
      }
    }
  }
}

TEST_F(MainPictureTest, ElementsAreHighlightedWhileHovered) {
  struct Case {
    Skin skin;
    Element element;
    Argb color;
  };
  for (const Case& c : {Case{Skin::Standard, Element::Minimize, kMinimizeColor},
                        Case{Skin::Standard, Element::Close, kCloseColor},
                        Case{Skin::Standard, Element::Done, kDoneColor},
                        Case{Skin::Standard, Element::MakerLogo, kMakerLogoColor},
                        Case{Skin::Davrin, Element::Minimize, kMinimizeColor},
                        Case{Skin::Davrin, Element::Close, kCloseColor},
                        Case{Skin::Davrin, Element::Advanced, kAdvancedColor},
                        Case{Skin::Davrin, Element::MakerLogo, kMakerLogoColor}}) {
    SkinComposer& composer = c.skin == Skin::Standard ? standard_ : davrin_;
    SCOPED_TRACE(std::to_string(static_cast<int>(c.element)));
    const Bitmap& resting = Compose(composer, {.threeGuiLayers = true});
    EXPECT_EQ(ColorOf(resting, c.skin, c.element), c.color);
    const Bitmap& hovered = Compose(composer, {.hoverItem = c.element, .threeGuiLayers = true});
    EXPECT_EQ(ColorOf(hovered, c.skin, c.element), Highlighted(c.color));
  }
}

TEST_F(MainPictureTest, ImagesCoverTheirPixelsOneToOne) {
  const Bitmap& picture = Compose(standard_, {});
  const Size size = ScaledSize({25, 25}, scale_);
  const Point corner{Pixels(570), Pixels(12)};
  for (const Point inside :
       {corner, Point{corner.x + size.width - 1, corner.y + size.height - 1}}) {
    EXPECT_EQ(picture.GetPixel(inside.x, inside.y), kMinimizeColor);
  }
  for (const Point outside : {Point{corner.x - 1, corner.y}, Point{corner.x, corner.y - 1},
                              Point{corner.x, corner.y + size.height}}) {
    EXPECT_EQ(picture.GetPixel(outside.x, outside.y), kBackgroundColor);
  }
  EXPECT_EQ(picture.Width(), Pixels(651));
  EXPECT_EQ(picture.Height(), Pixels(454));
}

TEST_F(MainPictureTest, TheLowerRowOfModesLiesOnTop) {
  const Bitmap& picture = Compose(standard_, {});
  EXPECT_EQ(picture.GetPixel(Pixels(40), Pixels(252)), ModeColor(3, ModeLook::Normal));
}

// Edges of the letters in 96-DPI units, worked out from the outlines in Carlito.
struct InkCase {
  std::string text;
  Skin skin;
  Rect area;  // where to look, in 96-DPI units
  bool (*isInk)(Argb);
  double left;
  double top;
  double bottom;
};

TEST_F(MainPictureTest, LabelsStandWhereTheirFormulasPutThem) {
  const std::vector<InkCase> cases{
      {"OFF", Skin::Standard, {100, 150, 220, 240}, IsDark, 122.84, 187.13, 202.87},
      {"Music", Skin::Standard, {300, 160, 420, 195}, IsDark, 312.96, 172.91, 189.59},
      {"Mode", Skin::Standard, {300, 195, 420, 240}, IsDark, 312.96, 199.32, 216.15},
      {"Mode, lower row", Skin::Standard, {500, 300, 620, 340}, IsDark, 511.96, 303.32, 320.15},
      {"Done", Skin::Standard, {550, 402, 600, 434}, IsDark, 559.27, 410.90, 423.01},
      {"Advanced", Skin::Standard, {62, 400, 140, 430}, IsLight, 64.07, 408.42, 421.52},
      {"War Room", Skin::Davrin, {50, 180, 245, 225}, IsLight, 91.14, 192.45, 208.03},
      {"Off", Skin::Davrin, {480, 300, 660, 355}, IsLight, 553.84, 325.40, 342.02},
  };
  const MainScene scene{.threeGuiLayers = true};
  for (const InkCase& c : cases) {
    SCOPED_TRACE(c.text);
    const Bitmap& picture = Compose(c.skin == Skin::Standard ? standard_ : davrin_, scene);
    const Rect ink =
        InkBox(picture, Area(c.area.left, c.area.top, c.area.right, c.area.bottom), c.isInk);
    // Whole pixels, baselines on pixel rows and soft edges: up to a pixel and a bit.
    const double tolerance = 1.2;
    EXPECT_NEAR(ink.left, c.left * scale_, tolerance);
    EXPECT_NEAR(ink.top, c.top * scale_, tolerance);
    EXPECT_NEAR(ink.bottom, c.bottom * scale_, tolerance);
  }
}

TEST_F(MainPictureTest, EdgedTextHasItsEdgeOnePixelRightAndBelow) {
  const Bitmap& picture = Compose(standard_, {});
  const Rect area = Area(100, 180, 220, 215);
  const Rect dark = InkBox(picture, area, IsDark);
  const Rect light = InkBox(picture, area, IsLight);
  EXPECT_EQ(light.right, dark.right + 1);
  EXPECT_EQ(light.bottom, dark.bottom + 1);
  EXPECT_GT(light.left, dark.left) << "what lies left of a letter is covered by it";
}

TEST_F(MainPictureTest, TheStandardWarningIsOneSandLine) {
  const auto isSand = [](Argb color) {
    return ((color >> 16U) & 0xFFU) > 0xC0 && ((color >> 8U) & 0xFFU) > 0xA8 &&
           (color & 0xFFU) < 0xB0;
  };
  const Rect strip = Area(0, 359, 651, 395);
  EXPECT_EQ(InkBox(Compose(standard_, {}), strip, isSand), Rect{});
  const Rect ink = InkBox(Compose(standard_, {.endpointWarning = true}), strip, isSand);
  EXPECT_NEAR(ink.left, 159.0 * scale_, 2.0 * scale_);
  EXPECT_GT(ink.Width(), Pixels(350));
  EXPECT_LT(ink.Height(), Pixels(20));
}

TEST_F(MainPictureTest, TheDavrinWarningIsTwoWhiteLines) {
  const Rect strip = Area(0, 381, 600, 420);
  EXPECT_EQ(InkBox(Compose(davrin_, {}), strip, IsLight), Rect{});
  const Bitmap& picture = Compose(davrin_, {.endpointWarning = true});
  const Rect first = InkBox(picture, Area(0, 381, 600, 398), IsLight);
  const Rect second = InkBox(picture, Area(0, 400, 600, 420), IsLight);
  EXPECT_NEAR(first.left, 51.0 * scale_, 3.0 * scale_);
  EXPECT_NEAR(second.left, 51.0 * scale_, 3.0 * scale_);
  EXPECT_GT(first.Width(), Pixels(35));
  EXPECT_LT(first.Width(), Pixels(75)) << "the word and its colon alone";
  EXPECT_GT(second.Width(), Pixels(250));
}

TEST_F(MainPictureTest, TheAdvancedEntryIsThereOnlyWithThreeLayers) {
  // 1.03 times the letters' widths and a third of the font's size, at 96 DPI.
  constexpr double kTextWidth = 83.24;
  struct Case {
    Skin skin;
    Size box;
  };
  for (const Case& c :
       {Case{Skin::Standard,
             {static_cast<std::int32_t>(kTextWidth * scale_ + 10.0) + Pixels(20), Pixels(20)}},
        Case{Skin::Davrin, {Pixels(30), Pixels(30)}}}) {
    SkinComposer& composer = c.skin == Skin::Standard ? standard_ : davrin_;
    const Bitmap& without = Compose(composer, {.threeGuiLayers = false});
    EXPECT_EQ(ColorOf(without, c.skin, Element::Advanced), kBackgroundColor);
    EXPECT_EQ(composer.AdvancedBox(), Size{});
    EXPECT_EQ(InkBox(without, Area(62, 400, 140, 430), IsLight), Rect{});

    const Bitmap& with = Compose(composer, {.threeGuiLayers = true});
    EXPECT_EQ(ColorOf(with, c.skin, Element::Advanced), kAdvancedColor);
    EXPECT_EQ(composer.AdvancedBox(), c.box);
  }
}

TEST_F(MainPictureTest, AMissingImageIsLeftOut) {
  MainImages artwork = SolidArtwork(Skin::Standard, scale_);
  artwork.modes[1] = {};
  artwork.close = {};
  artwork.done = {};
  artwork.advanced = {};
  SkinComposer composer(Skin::Standard, scale_, std::move(artwork));
  const Bitmap& picture = Compose(composer, {.selectedMode = 1, .threeGuiLayers = true});
  for (const Element missing : {ModeElement(1), Element::Close, Element::Done}) {
    EXPECT_EQ(ColorOf(picture, Skin::Standard, missing), kBackgroundColor);
  }
  EXPECT_EQ(ColorOf(picture, Skin::Standard, ModeElement(2)), ModeColor(2, ModeLook::Normal));
  EXPECT_EQ(ColorOf(picture, Skin::Standard, Element::MakerLogo), kMakerLogoColor)
      << "drawing goes on behind a gap";

  MainImages nothing;
  SkinComposer empty(Skin::Davrin, scale_, std::move(nothing));
  EXPECT_EQ(empty.Compose({.threeGuiLayers = true}), nullptr);
  EXPECT_EQ(empty.Size(), Size{});
}

TEST_F(MainPictureTest, NothingOfAnEarlierPictureRemains) {
  for (const Skin skin : {Skin::Standard, Skin::Davrin}) {
    const auto artwork = [this, skin] {
      MainImages images = SolidArtwork(skin, scale_);
      // A window with a shape: what lies beside the buttons is half or wholly transparent.
      for (std::int32_t y = 0; y < images.background->Height(); ++y) {
        for (std::int32_t x = 0; x < images.background->Width(); ++x) {
          images.background->SetPixel(x, y, (x + y) % 2 == 0 ? 0x00000000U : 0x40FFFFFFU);
        }
      }
      return images;
    };
    SkinComposer used(skin, scale_, artwork());
    used.Compose({3, Element::Close, true, true});
    used.Compose({1, Element::Advanced, true, true});
    const MainScene scene{.selectedMode = 2, .hoverItem = Element::MakerLogo};
    SkinComposer fresh(skin, scale_, artwork());
    EXPECT_TRUE(SamePixels(Compose(used, scene), Compose(fresh, scene)));
    EXPECT_EQ(used.AdvancedBox(), fresh.AdvancedBox());
    const Bitmap& picture = Compose(used, scene);
    EXPECT_EQ(picture.GetPixel(0, 0), 0U);
    EXPECT_EQ(picture.GetPixel(1, 0) >> 24U, 0x40U);
  }
}

}  // namespace
}  // namespace ui
