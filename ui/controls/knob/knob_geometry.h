// Where the parts of a knob lie in its client area.
#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace ui {

// Lengths in pixels, angles in radians, counter-clockwise from the positive x axis.
class KnobGeometry {
 public:
  // `scale` is the resolution in dots per inch divided by 96.
  KnobGeometry(platform::Size client, double scale);

  // The disc is drawn in the upper part of the client area, as far from its top as from its sides.
  double DiscCentre() const { return discCentre_; }
  double FaceRadius() const { return faceRadius_; }
  double IndicatorRadius() const;
  double TickInnerRadius() const;
  double TickOuterRadius() const;
  std::int32_t DotDiameter() const;
  platform::Point DotOrigin(std::int32_t knobPos) const;

  // On the circle of this radius about the disc's centre.
  platform::PointF PointAt(double angle, double radius) const;

 private:
  double scale_;
  double discCentre_;
  double faceRadius_;
};

// Where a drag turns: about the middle of the client area, lower than the drawn disc's.
platform::Point TurningCentre(platform::Size client);

// The direction of the indicator, lower left at 0 to lower right at the other end of the travel.
double IndicatorAngle(std::int32_t knobPos);

// The scale runs over 240 degrees, a tick every ten.
inline constexpr int kScaleDegrees = 240;
inline constexpr int kTickDegrees = 10;
double TickAngle(int degrees);

// The last degree of the scale that is lit.
std::int32_t LitDegrees(std::int32_t knobPos);

}  // namespace ui
