// What both skins draw in the same way.
#pragma once

#include <string_view>

#include "platform/drawing.h"
#include "ui/main/main_scene.h"

namespace ui {

inline constexpr platform::Argb kWhite = 0xFFFFFFFF;
inline constexpr platform::Argb kBlack = 0xFF000000;

inline constexpr std::u16string_view kWarningText =
    u"Warning: This tool can only be used with supported endpoints.";

// Lies so many text pixels right of and below a text that is drawn twice.
inline constexpr float kTextEdge = 1.0F;

class SkinCanvas {
 public:
  // Replaces every pixel of `target`, which has the background's size, by the background.
  SkinCanvas(const MainArt& art, const MainScene& scene, platform::Bitmap& target);

  platform::Graphics& Surface() { return graphics_; }

  void DrawModes();
  void DrawWindowButtons();
  void DrawMakerLogo();

  // At the element's place; the highlighted image while the mouse is over the element.
  void DrawElement(Element element, const ImagePair& images);

  // Line height of a font on this surface, in pixels.
  float LineHeight(const platform::Font& font) const { return font.Height(graphics_.DpiY()); }

  // A point in pixels from one in 96-DPI units.
  platform::PointF TextPoint(double x, double y) const;

  // What text from this place on takes, in whole pixels.
  platform::Rect TextArea(std::u16string_view text, const platform::Font& font,
                          platform::PointF origin);

  // First in `edge` one pixel right of and below the place, then in `color` at it.
  void DrawEdgedText(std::u16string_view text, const platform::Font& font, platform::PointF origin,
                     platform::StringFormat format, platform::Argb color, platform::Argb edge);

 private:
  void DrawImage(const Image& image, platform::Point position);

  const MainArt& art_;
  const MainScene& scene_;
  platform::Graphics graphics_;
};

}  // namespace ui
