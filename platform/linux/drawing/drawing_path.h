// Shapes in the original platform's terms, as painter paths of the toolkit.
#pragma once

#include <QPainterPath>

#include "platform/drawing.h"

namespace platform {

// Angles in degrees, clockwise, measured at the centre of the ellipse in `box`. With `figureOpen`
// the arc is joined to the path's end by a straight line.
void AppendArc(QPainterPath& path, bool figureOpen, const RectF& box, float startAngle,
               float sweepAngle);

}  // namespace platform
