// The whole picture of the window in both skins, put together once more from tables.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <stdexcept>
#include <utility>

#include "platform/screen.h"
#include "tests/controls/picture.h"
#include "tests/main/artwork.h"
#include "tests/support/lacks.h"
#include "ui/images/png_resource.h"
#include "ui/main/skin_composer.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Bitmap;
using platform::PointF;
using platform::Rect;
using platform::Size;
using platform::StringFormat;

constexpr Argb kBlackText = 0xFF000000;
constexpr Argb kWhiteLabel = 0xFFFFFFFF;
constexpr Argb kSand = 0xFFE3C69C;
constexpr float kThird = 1.0F / 3.0F;

// At 96 dots per inch.
struct PlacedImage {
  Element element;
  double x;
  double y;
  std::string role;
};
struct PlacedText {
  std::u16string_view text;
  double x;
  double y;
  float share = 0.0F;  // of what a line of text leaves of the image's height
};

const std::vector<PlacedImage> kStandardImages{
    {ModeElement(0), 28, 145, "studio mode off"},
    {ModeElement(1), 227, 145, "studio mode music"},
    {ModeElement(2), 426, 145, "studio mode movie"},
    {ModeElement(3), 28, 249, "studio mode recording"},
    {ModeElement(4), 227, 249, "studio mode gaming"},
    {ModeElement(5), 426, 249, "studio mode speech"},
    {Element::Minimize, 570, 12, "studio minimise button"},
    {Element::Close, 596, 12, "studio close button"},
    {Element::Done, 528, 404, "done button"},
    {Element::Advanced, 39, 406, "studio advanced icon"},
    {Element::MakerLogo, 290, 404, "maker logo"}};
const std::vector<PlacedText> kStandardLabels{
    {u"OFF", 118, 140, 0.5F},        {u"Music", 307, 140, kThird},
    {u"Mode", 307, 140, 2 * kThird}, {u"Movie", 506, 140, kThird},
    {u"Mode", 506, 140, 2 * kThird}, {u"Recording", 108, 244, kThird},
    {u"Mode", 108, 244, 2 * kThird}, {u"Gaming", 307, 244, kThird},
    {u"Mode", 307, 244, 2 * kThird}, {u"Speech", 506, 244, kThird},
    {u"Mode", 506, 244, 2 * kThird}};

const std::vector<PlacedImage> kDavrinImages{{ModeElement(0), 45, 105, "davrin mode war_room"},
                                             {ModeElement(1), 257, 105, "davrin mode battlefield"},
                                             {ModeElement(2), 469, 105, "davrin mode multimedia"},
                                             {ModeElement(3), 45, 239, "davrin mode action"},
                                             {ModeElement(4), 257, 239, "davrin mode soundscape"},
                                             {ModeElement(5), 469, 239, "davrin mode off"},
                                             {Element::Minimize, 635, 12, "davrin minimise button"},
                                             {Element::Close, 670, 12, "davrin close button"},
                                             {Element::Advanced, 600, 12, "davrin advanced button"},
                                             {Element::MakerLogo, 620, 394, "maker logo"}};
const std::vector<PlacedText> kDavrinLabels{{u"War Room", 87, 185},    {u"Battlefield", 302, 185},
                                            {u"Multimedia", 510, 185}, {u"Action", 110, 319},
                                            {u"Soundscape", 296, 319}, {u"Off", 549, 319}};

class ScaledMainPictureTest : public support::SkipsWhatLacks,
                              public testing::WithParamInterface<Skin> {
 protected:
  std::int32_t Pixels(double units) const { return static_cast<std::int32_t>(units * scale_); }
  PointF Place(double x, double y) const {
    return {static_cast<float>(x * scale_), static_cast<float>(y * scale_)};
  }

  const Bitmap& Load(const std::string& role) const {
    static std::map<std::pair<Skin, std::string>, Image> loaded;
    Image& image = loaded[{GetParam(), role}];
    const float dpi = standard_ || role.starts_with("maker") ? 96.0F : 240.0F;
    if (!image) image = LoadPngResource(roles_.at(role), dpi);
    return image.value();
  }

  const Bitmap& Look(const PlacedImage& placed, const MainScene& scene) const {
    std::string state = ", normal";
    if (placed.element == scene.hoverItem) state = ", hover";
    if (placed.element == ModeElement(scene.selectedMode)) state = ", selected";
    if (placed.role == "studio advanced icon") state.clear();
    return Load(placed.role + state);
  }

  // Twice, which gives it an edge at the lower right.
  static void WriteEdged(Bitmap& picture, std::u16string_view text, const platform::Font& font,
                         PointF place, Argb color, Argb edge, StringFormat format) {
    constexpr auto kHint = platform::TextRenderingHint::AntiAlias;
    Write(picture, text, font, {place.x + 1, place.y + 1}, edge, kHint, format);
    Write(picture, text, font, place, color, kHint, format);
  }

  double LineTop(double imageHeight, double points, float share, double y) const {
    // A line of the font is 2500 units of 2048 high.
    const double line = points * scale_ * 96.0 / 72.0 * 2500.0 / 2048.0;
    return (Pixels(imageHeight) - line) / scale_ * share + y;
  }

  Bitmap Expected(const MainScene& scene, const std::set<Element>& missing = {}) const {
    constexpr auto kHint = platform::TextRenderingHint::AntiAlias;
    const platform::Font label(u"Calibri", 18, platform::FontStyle::Regular);
    const platform::Font small(u"Calibri", 14, platform::FontStyle::Regular);
    const platform::Font warning(standard_ ? u"Segoe WP" : u"Segoe UI Semilight",
                                 standard_ ? 12 : 10, platform::FontStyle::Regular);
    Bitmap picture = Copy(Load(standard_ ? "studio background" : "davrin background"));
    const auto draw = [&](bool modes) {
      for (const PlacedImage& placed : standard_ ? kStandardImages : kDavrinImages) {
        if (IsMode(placed.element) != modes || missing.contains(placed.element)) continue;
        if (placed.element == Element::Advanced && !scene.threeGuiLayers) continue;
        platform::Graphics(picture).DrawImage(Look(placed, scene), Pixels(placed.x),
                                              Pixels(placed.y));
      }
    };
    draw(true);
    for (const PlacedText& text : standard_ ? kStandardLabels : kDavrinLabels) {
      if (standard_) {
        WriteEdged(picture, text.text, label, Place(text.x, LineTop(109, 18, text.share, text.y)),
                   kBlackText, kWhiteLabel, StringFormat::GenericDefault);
      } else {
        Write(picture, text.text, label, Place(text.x, text.y), kWhiteLabel, kHint);
      }
    }
    if (scene.endpointWarning && standard_) {
      Write(picture, u"Warning: This tool can only be used with supported endpoints.", warning,
            Place(156, 362), kSand, kHint);
    } else if (scene.endpointWarning) {
      Write(picture, u"Warning:", warning, Place(48, 381), kWhiteLabel, kHint);
      Write(picture, u"This tool can only be used with supported endpoints.", warning,
            Place(48, 395), kWhiteLabel, kHint);
    }
    draw(false);
    if (standard_) {
      WriteEdged(picture, u"Done", small, Place(558, LineTop(31, 14, 0.5F, 401)), kBlackText,
                 kWhiteLabel, StringFormat::GenericTypographic);
    }
    if (standard_ && scene.threeGuiLayers) {
      WriteEdged(picture, u"Advanced", small, Place(64, LineTop(20, 14, 0.5F, 405)), kWhiteLabel,
                 kBlackText, StringFormat::GenericTypographic);
    }
    return picture;
  }

  const bool standard_ = GetParam() == Skin::Standard;
  const double scale_ = platform::GetScreenDpi().x / 96.0;
  const std::map<std::string, std::uint16_t> roles_ = ArtworkRoles();
};

TEST_P(ScaledMainPictureTest, EveryElementLooksAsItsStateSays) {
  SkinComposer composer(GetParam(), scale_, MainImages::Load(GetParam()));
  // One mode is selected and another hovered, then an element, at last the selected mode itself.
  for (std::int32_t step = -1; step <= 11; ++step) {
    const MainScene scene{
        .selectedMode = step < 6 ? step : 7 - step,
        .hoverItem = step < 6 ? ModeElement(step + 1) : static_cast<Element>(step),
        .threeGuiLayers = step % 2 == 0,
        .endpointWarning = step % 4 < 2};
    const MainScene last{.selectedMode = 3, .hoverItem = ModeElement(3), .threeGuiLayers = true};
    const MainScene& shown = step == 11 ? last : scene;
    const Bitmap* picture = composer.Compose(shown);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(BoxOfDifference(*picture, Expected(shown)), Rect{}) << "step " << step;
    const Rect warning = composer.WarningArea();
    EXPECT_EQ(warning.left, shown.endpointWarning ? Pixels(standard_ ? 156 : 48) : 0);
    EXPECT_EQ(warning.top, shown.endpointWarning ? Pixels(standard_ ? 362 : 381) : 0);
    EXPECT_EQ(warning.Width() > Pixels(250), shown.endpointWarning);
    if (scale_ > 1) return;
  }
}

TEST_P(ScaledMainPictureTest, TheAdvancedEntryIsAsWideAsWhatItShows) {
  SkinComposer composer(GetParam(), scale_, MainImages::Load(GetParam()));
  composer.Compose({});
  EXPECT_EQ(composer.AdvancedBox(), Size{});
  composer.Compose({.threeGuiLayers = true});
  // 1.03 times the letters' widths and a third of the font's size.
  const Size text{static_cast<std::int32_t>(83.24 * scale_ + 10.0) + Pixels(20), Pixels(20)};
  EXPECT_EQ(composer.AdvancedBox(), standard_ ? text : (Size{Pixels(30.8), Pixels(30.8)}));
}

TEST_P(ScaledMainPictureTest, AMissingImageIsLeftOut) {
  MainImages artwork = MainImages::Load(GetParam());
  artwork.modes[1] = {};
  artwork.close = {};
  artwork.makerLogo = {};
  SkinComposer composer(GetParam(), scale_, std::move(artwork));
  const Bitmap* picture = composer.Compose({.selectedMode = 1});
  ASSERT_NE(picture, nullptr);
  EXPECT_TRUE(SamePixels(*picture, Expected({.selectedMode = 1},
                                            {ModeElement(1), Element::Close, Element::MakerLogo})));
  SkinComposer empty(GetParam(), scale_, MainImages());
  EXPECT_EQ(empty.Compose({.threeGuiLayers = true}), nullptr);
  EXPECT_EQ(empty.Size(), Size{});
}

INSTANTIATE_TEST_SUITE_P(Skins, ScaledMainPictureTest,
                         testing::Values(Skin::Standard, Skin::Davrin));

}  // namespace
}  // namespace ui
