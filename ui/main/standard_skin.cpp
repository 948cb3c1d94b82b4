#include "ui/main/standard_skin.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "ui/main/skin_canvas.h"

namespace ui {
namespace {

using platform::Point;
using platform::StringFormat;

constexpr platform::Argb kSand = 0xFFE3C69C;
constexpr float kAdvancedHitMargin = 10.0F;

// Shares of the space that a line of text leaves on a button, in single precision.
constexpr float kOneThird = 1.0F / 3.0F;
constexpr float kHalf = 0.5F;
constexpr float kTwoThirds = 2.0F / 3.0F;

struct Label {
  std::int32_t mode;
  std::u16string_view text;
  std::int32_t indent;  // from the button's left edge, 96-DPI units
  float shareAbove;
};

constexpr auto kLabels = std::to_array<Label>({
    {0, u"OFF", 10 + 80, kHalf},
    {1, u"Music", 80, kOneThird},
    {1, u"Mode", 80, kTwoThirds},
    {2, u"Movie", 80, kOneThird},
    {2, u"Mode", 80, kTwoThirds},
    {3, u"Recording", 80, kOneThird},
    {3, u"Mode", 80, kTwoThirds},
    {4, u"Gaming", 80, kOneThird},
    {4, u"Mode", 80, kTwoThirds},
    {5, u"Speech", 80, kOneThird},
    {5, u"Mode", 80, kTwoThirds},
});

// Vertical place of a line of text on an image, in 96-DPI units.
double LineTop(std::int32_t imageHeight, float lineHeight, double dpiScale, float shareAbove,
               std::int32_t imageTop, std::int32_t lift) {
  return (static_cast<float>(imageHeight) - lineHeight) / dpiScale * shareAbove + imageTop - lift;
}

void DrawLabels(SkinCanvas& canvas, const MainArt& art) {
  constexpr std::int32_t kLift = 5;
  const std::int32_t buttonHeight = art.images.Sizes().mode.height;
  const float lineHeight = canvas.LineHeight(art.fonts.label);
  for (const Label& label : kLabels) {
    const Point button = DesignPosition(art.skin, ModeElement(label.mode));
    const double top =
        LineTop(buttonHeight, lineHeight, art.dpiScale, label.shareAbove, button.y, kLift);
    canvas.DrawEdgedText(label.text, art.fonts.label,
                         canvas.TextPoint(button.x + label.indent, top),
                         StringFormat::GenericDefault, kBlack, kWhite);
  }
}

platform::Rect DrawWarning(SkinCanvas& canvas, const MainArt& art) {
  const platform::PointF place = canvas.TextPoint(66 + 10 + 80, 367 - 5);
  canvas.Surface().DrawString(kWarningText, art.fonts.warning, place, StringFormat::GenericDefault,
                              kSand);
  return canvas.TextArea(kWarningText, art.fonts.warning, place);
}

void DrawDone(SkinCanvas& canvas, const MainArt& art) {
  constexpr std::int32_t kIndent = 30;
  constexpr std::int32_t kLift = 3;
  canvas.DrawElement(Element::Done, art.images.done);
  const Point button = DesignPosition(art.skin, Element::Done);
  const double top =
      LineTop(ImageSize(art.images.done.normal).height, canvas.LineHeight(art.fonts.small),
              art.dpiScale, kHalf, button.y, kLift);
  canvas.DrawEdgedText(u"Done", art.fonts.small, canvas.TextPoint(button.x + kIndent, top),
                       StringFormat::GenericTypographic, kBlack, kWhite);
}

platform::Size DrawAdvanced(SkinCanvas& canvas, const MainArt& art) {
  constexpr std::u16string_view kText = u"Advanced";
  constexpr std::int32_t kIndent = 25;
  constexpr std::int32_t kLift = 1;
  canvas.DrawElement(Element::Advanced, art.images.advanced);
  const platform::Size icon = ImageSize(art.images.advanced.normal);
  const Point place = DesignPosition(art.skin, Element::Advanced);
  const double top =
      LineTop(icon.height, canvas.LineHeight(art.fonts.small), art.dpiScale, kHalf, place.y, kLift);
  canvas.DrawEdgedText(kText, art.fonts.small, canvas.TextPoint(place.x + kIndent, top),
                       StringFormat::GenericTypographic, kWhite, kBlack);

  const float textWidth =
      canvas.Surface().MeasureString(kText, art.fonts.small, StringFormat::None).width;
  return {static_cast<std::int32_t>(textWidth + kAdvancedHitMargin) + icon.width, icon.height};
}

}  // namespace

std::u16string StandardModeName(std::int32_t mode) {
  std::u16string name;
  for (const Label& label : kLabels) {
    if (label.mode != mode) continue;
    if (!name.empty()) name += u' ';
    name += label.text;
  }
  return name;
}

TextPlaces PaintStandardSkin(const MainArt& art, const MainScene& scene, platform::Bitmap& target) {
  SkinCanvas canvas(art, scene, target);
  canvas.DrawModes();
  DrawLabels(canvas, art);
  TextPlaces places;
  if (scene.endpointWarning) places.warning = DrawWarning(canvas, art);
  canvas.DrawWindowButtons();
  DrawDone(canvas, art);
  if (scene.threeGuiLayers) places.advancedBox = DrawAdvanced(canvas, art);
  canvas.DrawMakerLogo();
  return places;
}

}  // namespace ui
