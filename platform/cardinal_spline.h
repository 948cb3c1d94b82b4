// Cardinal splines as Bézier curves: what draws the latter draws them alike everywhere.
#pragma once

#include <span>
#include <vector>

#include "platform/drawing.h"

namespace platform {

struct SplinePoint {
  double x;
  double y;
};

// The first point, then two controls and the end for each piece; empty when there are fewer than
// two points. Points that are no numbers are left out, others are drawn nearer when they are
// farther away than any surface reaches.
std::vector<SplinePoint> CardinalSpline(std::span<const PointF> points, float tension);

}  // namespace platform
