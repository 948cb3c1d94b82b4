// The picture of a slider.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/drawing.h"
#include "ui/controls/shared/background_copy.h"

namespace ui {

// What stays the same from one picture to the next.
struct SliderLook {
  const BackgroundCopy& background;
  const std::optional<platform::Bitmap>& thumbImage;
  const std::optional<platform::Bitmap>& thumbDisabledImage;
  const platform::Font& font;
};

struct SliderState {
  std::int32_t thumbPos = 0;
  std::int32_t zeroPos = 0;  // where the fill starts; not above 0: the left end, without ticks
  bool enabled = true;
  bool redAccent = false;
  std::u16string_view valueText{};
  std::u16string_view caption{};
};

// Paints all of `target`, the control's client area; `scale` is the resolution divided by 96.
void PaintSlider(platform::Bitmap& target, double scale, const SliderLook& look,
                 const SliderState& state);

}  // namespace ui
