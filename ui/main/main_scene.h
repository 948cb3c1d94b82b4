// What a picture of the main window depends on: its artwork, which stays, and its state.
#pragma once

#include <cstdint>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "ui/main/main_images.h"
#include "ui/main/main_layout.h"

namespace ui {

struct MainFonts {
  explicit MainFonts(Skin skin);

  platform::Font label;
  platform::Font small;
  platform::Font warning;
};

struct MainArt {
  Skin skin;
  double dpiScale;
  const MainImages& images;
  const MainFonts& fonts;
};

// Where a picture has what depends on its text.
struct TextPlaces {
  platform::Size advancedBox;  // the Advanced entry's hit box, 0 x 0 when it is not drawn
  platform::Rect warning;      // in pixels, empty when it is not drawn
};

struct MainScene {
  bool operator==(const MainScene&) const = default;

  std::int32_t selectedMode = -1;  // any other value than 0 to 5 selects no button
  Element hoverItem = Element::None;
  bool threeGuiLayers = false;
  bool endpointWarning = false;
};

}  // namespace ui
