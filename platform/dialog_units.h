// Dialog units in pixels.
#pragma once

#include <cstdint>

#include "platform/dialog_template.h"
#include "platform/geometry.h"

namespace platform {

// A quarter of its width and an eighth of its height are the dialog unit.
struct DialogBaseUnits {
  int width;
  int height;
  bool operator==(const DialogBaseUnits&) const = default;
};

DialogBaseUnits BaseUnitsAt(std::uint32_t dpi);

// Each coordinate is rounded by itself, halves away from zero.
Rect FromDialogUnits(const DialogControl& control, DialogBaseUnits base);
Size FromDialogUnits(const DialogTemplate& dialog, DialogBaseUnits base);

}  // namespace platform
