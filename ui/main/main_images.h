// The pictures of the main window's skins.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "ui/main/main_layout.h"

namespace ui {

using Image = std::optional<platform::Bitmap>;

enum class ModeLook : std::size_t { Normal, Selected, Highlighted };

// The size of an image in pixels, 0 x 0 when it is missing.
platform::Size ImageSize(const Image& image);

struct ImagePair {
  Image normal;
  Image highlighted;
};

struct ModeImages {
  const Image& Look(ModeLook look) const { return looks[static_cast<std::size_t>(look)]; }

  std::array<Image, 3> looks;
};

// Each image may be missing; it is then not drawn.
struct MainImages {
  // All images of `skin`, scaled to the screen. Any thread.
  static MainImages Load(Skin skin);

  ElementSizes Sizes() const;

  Image background;
  std::array<ModeImages, kModeCount> modes;
  ImagePair minimize;
  ImagePair close;
  ImagePair done;
  ImagePair advanced;
  ImagePair makerLogo;
};

}  // namespace ui
