// The picture of a knob, drawn without images.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/drawing.h"
#include "ui/controls/shared/background_copy.h"

namespace ui {

struct KnobLook {
  const BackgroundCopy& background;
  const platform::Font& font;
};

struct KnobState {
  std::int32_t knobPos = 0;
  bool enabled = true;  // a disabled knob has no indicator
  bool redAccent = false;
  std::u16string_view caption{};
};

// Paints all of the transparent `target`, the control's client area; `scale` is the resolution
// divided by 96.
void PaintKnob(platform::Bitmap& target, double scale, const KnobLook& look,
               const KnobState& state);

}  // namespace ui
