#include "platform/windows/drawing/coordinates.h"
#include "platform/windows/drawing/drawing_impl.h"

namespace platform {

Path::Path() : impl_(std::make_unique<Impl>()) {}
Path::~Path() = default;

void Path::AddLine(PointF from, PointF to) {
  if (IsDrawable(from) && IsDrawable(to)) impl_->path.AddLine(ToNative(from), ToNative(to));
}

void Path::AddArc(const RectF& box, float startAngle, float sweepAngle) {
  if (IsDrawable(box) && IsDrawable(PointF{startAngle, sweepAngle})) {
    impl_->path.AddArc(ToNative(box), startAngle, sweepAngle);
  }
}

void Path::CloseFigure() {
  impl_->path.CloseFigure();
}

}  // namespace platform
