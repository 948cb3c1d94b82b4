#include "platform/dialog_units.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace platform {
namespace {

struct Measured {
  double dpi;
  DialogBaseUnits base;
};
// The usual resolutions; at others the base units lie in proportion between these.
constexpr auto kMeasured =
    std::to_array<Measured>({{96, {6, 13}}, {120, {8, 16}}, {144, {9, 20}}, {192, {12, 25}}});

int ToPixels(int units, int base, int divisor) {
  return static_cast<int>(std::lround(static_cast<double>(units * base) / divisor));
}

}  // namespace

DialogBaseUnits BaseUnitsAt(std::uint32_t dpi) {
  const auto scaled = [dpi](const Measured& entry) {
    const double factor = dpi / entry.dpi;
    return DialogBaseUnits{std::max(1, static_cast<int>(std::lround(entry.base.width * factor))),
                           std::max(1, static_cast<int>(std::lround(entry.base.height * factor)))};
  };
  if (dpi <= kMeasured.front().dpi) return scaled(kMeasured.front());
  if (dpi >= kMeasured.back().dpi) return scaled(kMeasured.back());
  const auto* above = std::find_if(kMeasured.begin(), kMeasured.end(),
                                   [dpi](const Measured& entry) { return entry.dpi >= dpi; });
  const Measured& below = *(above - 1);
  const double part = (dpi - below.dpi) / (above->dpi - below.dpi);
  return {static_cast<int>(std::lround(std::lerp(below.base.width, above->base.width, part))),
          static_cast<int>(std::lround(std::lerp(below.base.height, above->base.height, part)))};
}

Rect FromDialogUnits(const DialogControl& control, DialogBaseUnits base) {
  const Point corner{ToPixels(control.x, base.width, 4), ToPixels(control.y, base.height, 8)};
  return {corner.x, corner.y, corner.x + ToPixels(control.width, base.width, 4),
          corner.y + ToPixels(control.height, base.height, 8)};
}

Size FromDialogUnits(const DialogTemplate& dialog, DialogBaseUnits base) {
  return {ToPixels(dialog.width, base.width, 4), ToPixels(dialog.height, base.height, 8)};
}

}  // namespace platform
