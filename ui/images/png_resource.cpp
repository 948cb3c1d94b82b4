#include "ui/images/png_resource.h"

#include <cstddef>
#include <span>

#include "platform/resources.h"
#include "platform/screen.h"

namespace ui {

std::int32_t LoadedLength(std::uint32_t stored, std::uint32_t screenDpi, float designDpi) {
  const float length = static_cast<float>(stored * screenDpi) / designDpi;
  constexpr float kLimit = 2147483648.0F;
  if (!(length >= 1.0F && length < kLimit)) return 0;
  return static_cast<std::int32_t>(length);
}

std::optional<platform::Bitmap> LoadPngResource(std::uint16_t id, float designDpi) {
  const std::span<const std::byte> bytes =
      platform::FindResourceData(platform::ResourceType::Png, id);
  if (bytes.empty()) return std::nullopt;
  const std::optional<platform::Bitmap> stored = platform::Bitmap::FromPng(bytes);
  if (!stored) return std::nullopt;

  const platform::ScreenDpi screen = platform::GetScreenDpi();
  const std::int32_t width =
      LoadedLength(static_cast<std::uint32_t>(stored->Width()), screen.x, designDpi);
  const std::int32_t height =
      LoadedLength(static_cast<std::uint32_t>(stored->Height()), screen.y, designDpi);
  if (width == 0 || height == 0) return std::nullopt;

  platform::Bitmap loaded(width, height, platform::PixelFormat::PremultipliedArgb32);
  {
    platform::Graphics graphics(loaded);
    graphics.SetInterpolationMode(platform::InterpolationMode::HighQualityBicubic);
    graphics.DrawImage(*stored, platform::Rect{0, 0, width, height});
  }
  return loaded;
}

}  // namespace ui
