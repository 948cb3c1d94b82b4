#include "platform/cardinal_spline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace platform {
namespace {

// Far outside of any surface, near enough for a rasteriser's fixed-point numbers.
constexpr double kFar = 1.0e5;

// From `point`, along the line from `start` to `end`.
SplinePoint Pulled(SplinePoint point, double pull, SplinePoint start, SplinePoint end) {
  return {point.x + pull * (end.x - start.x), point.y + pull * (end.y - start.y)};
}

}  // namespace

std::vector<SplinePoint> CardinalSpline(std::span<const PointF> points, float tension) {
  std::vector<SplinePoint> knots;
  knots.reserve(points.size());
  for (const PointF& point : points) {
    if (std::isnan(point.x) || std::isnan(point.y)) continue;
    knots.push_back({std::clamp(static_cast<double>(point.x), -kFar, kFar),
                     std::clamp(static_cast<double>(point.y), -kFar, kFar)});
  }
  if (knots.size() < 2) return {};
  const double pull = static_cast<double>(tension) / 3.0;
  std::vector<SplinePoint> curve;
  curve.reserve(3 * knots.size());
  curve.push_back(knots.front());
  for (std::size_t i = 0; i + 1 < knots.size(); ++i) {
    const SplinePoint& before = knots[i == 0 ? 0 : i - 1];
    const SplinePoint& after = knots[std::min(i + 2, knots.size() - 1)];
    curve.push_back(Pulled(knots[i], pull, before, knots[i + 1]));
    curve.push_back(Pulled(knots[i + 1], -pull, knots[i], after));
    curve.push_back(knots[i + 1]);
  }
  return curve;
}

}  // namespace platform
