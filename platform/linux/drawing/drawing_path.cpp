#include "platform/linux/drawing/drawing_path.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/linux/drawing/drawing_impl.h"

namespace platform {
namespace {

// The toolkit measures angles on the circle that is then squeezed into the ellipse; here they are
// true ones. Whole turns are kept.
double EllipseParameter(const RectF& box, double angle) {
  if (box.width == box.height) return angle;
  const double turns = std::floor(angle / 360.0);
  const double radians = (angle - turns * 360.0) * std::numbers::pi / 180.0;
  double parameter = std::atan2(std::sin(radians) * static_cast<double>(box.width),
                                std::cos(radians) * static_cast<double>(box.height)) *
                     180.0 / std::numbers::pi;
  if (parameter < 0.0) parameter += 360.0;
  return parameter + turns * 360.0;
}

}  // namespace

void AppendArc(QPainterPath& path, bool figureOpen, const RectF& box, float startAngle,
               float sweepAngle) {
  const QRectF rect(static_cast<qreal>(box.x), static_cast<qreal>(box.y),
                    static_cast<qreal>(box.width), static_cast<qreal>(box.height));
  const double start = static_cast<double>(startAngle);
  const double sweep = std::clamp(static_cast<double>(sweepAngle), -360.0, 360.0);
  const double from = EllipseParameter(box, start);
  const double to = EllipseParameter(box, start + sweep);
  if (!figureOpen) path.arcMoveTo(rect, -from);
  path.arcTo(rect, -from, from - to);
}

Path::Path() : impl_(std::make_unique<Impl>()) {}
Path::~Path() = default;

void Path::AddLine(PointF from, PointF to) {
  const QPointF start(static_cast<qreal>(from.x), static_cast<qreal>(from.y));
  if (impl_->figureOpen) {
    impl_->path.lineTo(start);
  } else {
    impl_->path.moveTo(start);
  }
  impl_->path.lineTo(static_cast<qreal>(to.x), static_cast<qreal>(to.y));
  impl_->figureOpen = true;
}

void Path::AddArc(const RectF& box, float startAngle, float sweepAngle) {
  AppendArc(impl_->path, impl_->figureOpen, box, startAngle, sweepAngle);
  impl_->figureOpen = true;
}

void Path::CloseFigure() {
  impl_->path.closeSubpath();
  impl_->figureOpen = false;
}

}  // namespace platform
