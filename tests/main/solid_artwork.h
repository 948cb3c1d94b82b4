// Artwork of plain colours, so that a picture tells which image lies where.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "ui/main/main_images.h"

namespace ui {

inline constexpr platform::Argb kBackgroundColor = 0xFF808080;
inline constexpr platform::Argb kMinimizeColor = 0xFF0000A0;
inline constexpr platform::Argb kCloseColor = 0xFF0000B0;
inline constexpr platform::Argb kDoneColor = 0xFF7080A0;
inline constexpr platform::Argb kAdvancedColor = 0xFF0000D0;
inline constexpr platform::Argb kMakerLogoColor = 0xFF0000E0;
// What a highlighted image has in place of a normal one.
inline constexpr platform::Argb kHighlight = 0xFF00FF00;

constexpr platform::Argb Highlighted(platform::Argb color) {
  return color | kHighlight;
}

// Greys of a middle lightness, on which both black and white text shows.
constexpr platform::Argb ModeColor(std::int32_t mode, ModeLook look) {
  const auto number = static_cast<platform::Argb>(mode);
  const auto state = static_cast<platform::Argb>(look);
  return 0xFF707070U + (number << 16U) + (state << 8U);
}

inline Image SolidImage(platform::Size size, platform::Argb color) {
  platform::Bitmap image(size.width, size.height, platform::PixelFormat::PremultipliedArgb32);
  platform::Graphics(image).Clear(color);
  return image;
}

inline platform::Size ScaledSize(platform::Size size, double scale) {
  return {static_cast<std::int32_t>(size.width * scale),
          static_cast<std::int32_t>(size.height * scale)};
}

inline MainImages SolidArtwork(Skin skin, double scale) {
  const bool standard = skin == Skin::Standard;
  const auto solid = [scale](platform::Size size, platform::Argb color) {
    return SolidImage(ScaledSize(size, scale), color);
  };
  const auto pair = [&solid](platform::Size size, platform::Argb color) {
    return ImagePair{solid(size, color), solid(size, Highlighted(color))};
  };
  const platform::Size modeSize = standard ? platform::Size{196, 109} : platform::Size{204, 126};
  const platform::Size buttonSize = standard ? platform::Size{25, 25} : platform::Size{30, 30};

  MainImages images;
  images.background =
      solid(standard ? platform::Size{651, 454} : platform::Size{720, 447}, kBackgroundColor);
  for (std::int32_t mode = 0; mode < kModeCount; ++mode) {
    ModeImages& looks = images.modes[static_cast<std::size_t>(mode)];
    for (const ModeLook look : {ModeLook::Normal, ModeLook::Selected, ModeLook::Highlighted}) {
      looks.looks[static_cast<std::size_t>(look)] = solid(modeSize, ModeColor(mode, look));
    }
  }
  images.minimize = pair(buttonSize, kMinimizeColor);
  images.close = pair(buttonSize, kCloseColor);
  images.done = pair({89, 31}, kDoneColor);
  images.advanced = pair(standard ? platform::Size{20, 20} : buttonSize, kAdvancedColor);
  images.makerLogo = pair({55, 28}, kMakerLogoColor);
  return images;
}

}  // namespace ui
