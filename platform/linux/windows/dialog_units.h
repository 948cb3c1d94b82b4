// Dialog units in pixels.
#pragma once

#include <QRect>
#include <cstdint>

#include "platform/dialog_template.h"
#include "platform/screen.h"

namespace platform {

// A quarter of its width and an eighth of its height are the dialog unit.
struct DialogBaseUnits {
  int width;
  int height;
  bool operator==(const DialogBaseUnits&) const = default;
};

DialogBaseUnits BaseUnitsAt(std::uint32_t dpi);

// Each coordinate is rounded by itself, halves away from zero.
QRect FromDialogUnits(const DialogControl& control, DialogBaseUnits base);
QSize FromDialogUnits(const DialogTemplate& dialog, DialogBaseUnits base);

}  // namespace platform
