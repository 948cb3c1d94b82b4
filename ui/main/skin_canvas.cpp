#include "ui/main/skin_canvas.h"

#include <cstddef>
#include <cstdint>

namespace ui {

using platform::PointF;

SkinCanvas::SkinCanvas(const MainArt& art, const MainScene& scene, platform::Bitmap& target)
    : art_(art), scene_(scene), graphics_(target) {
  graphics_.SetCompositingMode(platform::CompositingMode::SourceCopy);
  DrawImage(art_.images.background, {0, 0});
  graphics_.SetCompositingMode(platform::CompositingMode::SourceOver);
  graphics_.SetTextRenderingHint(platform::TextRenderingHint::AntiAlias);
}

void SkinCanvas::DrawModes() {
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    ModeLook look = ModeLook::Normal;
    if (scene_.selectedMode == mode) {
      look = ModeLook::Selected;
    } else if (scene_.hoverItem == ModeElement(mode)) {
      look = ModeLook::Highlighted;
    }
    DrawImage(art_.images.modes[static_cast<std::size_t>(mode)].Look(look),
              PixelPosition(art_.skin, ModeElement(mode), art_.dpiScale));
  }
}

void SkinCanvas::DrawWindowButtons() {
  DrawElement(Element::Minimize, art_.images.minimize);
  DrawElement(Element::Close, art_.images.close);
}

void SkinCanvas::DrawMakerLogo() {
  DrawElement(Element::MakerLogo, art_.images.makerLogo);
}

void SkinCanvas::DrawElement(Element element, const ImagePair& images) {
  DrawImage(scene_.hoverItem == element ? images.highlighted : images.normal,
            PixelPosition(art_.skin, element, art_.dpiScale));
}

PointF SkinCanvas::TextPoint(double x, double y) const {
  return {static_cast<float>(x * art_.dpiScale), static_cast<float>(y * art_.dpiScale)};
}

platform::Rect SkinCanvas::TextArea(std::u16string_view text, const platform::Font& font,
                                    PointF origin) {
  const platform::SizeF size =
      graphics_.MeasureString(text, font, platform::StringFormat::GenericDefault);
  return {static_cast<std::int32_t>(origin.x), static_cast<std::int32_t>(origin.y),
          static_cast<std::int32_t>(origin.x + size.width),
          static_cast<std::int32_t>(origin.y + size.height)};
}

void SkinCanvas::DrawEdgedText(std::u16string_view text, const platform::Font& font, PointF origin,
                               platform::StringFormat format, platform::Argb color,
                               platform::Argb edge) {
  graphics_.DrawString(text, font, {origin.x + kTextEdge, origin.y + kTextEdge}, format, edge);
  graphics_.DrawString(text, font, origin, format, color);
}

void SkinCanvas::DrawImage(const Image& image, platform::Point position) {
  if (image) graphics_.DrawImage(*image, position.x, position.y);
}

}  // namespace ui
