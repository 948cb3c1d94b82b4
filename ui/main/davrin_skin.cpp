#include "ui/main/davrin_skin.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ui/main/skin_canvas.h"

namespace ui {
namespace {

using platform::Point;
using platform::StringFormat;

// The word and its colon stand on a line of their own.
constexpr std::size_t kWarningWordLength = 8;
constexpr std::u16string_view kWarningWord = kWarningText.substr(0, kWarningWordLength);
constexpr std::u16string_view kWarningSentence = kWarningText.substr(kWarningWordLength + 1);

struct Label {
  std::u16string_view text;
  std::int32_t indent;  // from the button's left edge, 96-DPI units
};

constexpr std::array<Label, kModeCount> kLabels{{{u"War Room", 12 + 30},
                                                 {u"Battlefield", 15 + 30},
                                                 {u"Multimedia", 11 + 30},
                                                 {u"Action", 35 + 30},
                                                 {u"Soundscape", 9 + 30},
                                                 {u"Off", 50 + 30}}};

void DrawLabels(SkinCanvas& canvas, const MainArt& art) {
  constexpr std::int32_t kDrop = 80;
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    const Label& label = kLabels[static_cast<std::size_t>(mode)];
    const Point button = DesignPosition(art.skin, ModeElement(mode));
    canvas.Surface().DrawString(label.text, art.fonts.label,
                                canvas.TextPoint(button.x + label.indent, button.y + kDrop),
                                StringFormat::GenericDefault, kWhite);
  }
}

platform::Rect DrawWarning(SkinCanvas& canvas, const MainArt& art) {
  constexpr std::int32_t kLeft = 48;
  constexpr std::int32_t kTop = 381;
  constexpr std::int32_t kLineStep = 14;
  const platform::PointF word = canvas.TextPoint(kLeft, kTop);
  const platform::PointF sentence = canvas.TextPoint(kLeft, kTop + kLineStep);
  canvas.Surface().DrawString(kWarningWord, art.fonts.warning, word, StringFormat::GenericDefault,
                              kWhite);
  canvas.Surface().DrawString(kWarningSentence, art.fonts.warning, sentence,
                              StringFormat::GenericDefault, kWhite);
  platform::Rect area = canvas.TextArea(kWarningSentence, art.fonts.warning, sentence);
  area.top = static_cast<std::int32_t>(word.y);
  return area;
}

}  // namespace

std::u16string_view DavrinModeName(std::int32_t mode) {
  return kLabels[static_cast<std::size_t>(mode)].text;
}

TextPlaces PaintDavrinSkin(const MainArt& art, const MainScene& scene, platform::Bitmap& target) {
  SkinCanvas canvas(art, scene, target);
  canvas.DrawModes();
  DrawLabels(canvas, art);
  TextPlaces places;
  if (scene.endpointWarning) places.warning = DrawWarning(canvas, art);
  canvas.DrawWindowButtons();
  if (scene.threeGuiLayers) {
    canvas.DrawElement(Element::Advanced, art.images.advanced);
    places.advancedBox = ImageSize(art.images.advanced.normal);
  }
  canvas.DrawMakerLogo();
  return places;
}

}  // namespace ui
