// Where the elements of the main window lie, and which one a point belongs to.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/geometry.h"
#include "platform/window_messages.h"
#include "store/active_mode.h"

namespace ui {

enum class Skin { Standard, Davrin };

using store::kModeCount;

// Modes have their index as number.
enum class Element : std::int32_t {
  None = -1,
  Minimize = 6,
  Close = 7,
  Done = 8,
  MakerLogo = 9,
  Advanced = 10,
};
inline constexpr std::size_t kElementCount = 11;

constexpr Element ModeElement(std::int32_t mode) {
  return static_cast<Element>(mode);
}
constexpr bool IsMode(Element element) {
  const auto number = static_cast<std::int32_t>(element);
  return number >= 0 && number < kModeCount;
}

// Top-left corner in 96-DPI units. `element` is not None, and not Done in the Davrin skin, which
// has none.
platform::Point DesignPosition(Skin skin, Element element);

// The same in pixels.
platform::Point PixelPosition(Skin skin, Element element, double dpiScale);

// Pixel sizes of the elements' images as loaded; 0 x 0 for an image that is missing.
struct ElementSizes {
  platform::Size mode;
  platform::Size minimize;
  platform::Size close;
  platform::Size done;
  platform::Size makerLogo;
};

class MainLayout {
 public:
  // `dpiScale` is the screen's resolution divided by 96.
  MainLayout(Skin skin, double dpiScale, const ElementSizes& sizes);

  // The element at a client point, edges on both sides included; where elements overlap, the one
  // that hovering takes. `advancedBox` is the Advanced entry's size as last drawn, 0 x 0 without
  // one.
  Element HitTest(platform::Point client, platform::Size advancedBox) const;

  // Where an element is drawn; empty for what is not.
  platform::Rect Area(Element element, platform::Size advancedBox) const;

  // Caption inside the strip by which the window is dragged, else client area; `window` is the
  // window's rectangle on the screen.
  platform::HitTest HitTestCaption(platform::Point screen, const platform::Rect& window) const;

 private:
  struct Box {
    platform::Point position;
    platform::Size size;
  };

  Box BoxOf(Element element, platform::Size advancedBox) const;
  static bool Contains(const Box& box, platform::Point point);

  std::array<Box, kElementCount> boxes_{};
  std::int32_t captionBottom_;
  std::int32_t captionRight_;
};

}  // namespace ui
