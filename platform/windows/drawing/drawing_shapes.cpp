#include <algorithm>
#include <vector>

#include "platform/cardinal_spline.h"
#include "platform/windows/drawing/coordinates.h"
#include "platform/windows/drawing/drawing_impl.h"

namespace platform {

void Graphics::DrawLine(const Pen& pen, PointF from, PointF to) {
  if (!IsDrawable(from) || !IsDrawable(to)) return;
  // Flat caps and miter joins with limit 10 are what the library starts with.
  const Gdiplus::Pen native(Gdiplus::Color(pen.color), pen.width);
  impl_->surface.DrawLine(&native, ToNative(from), ToNative(to));
}

void Graphics::DrawRectangle(const Pen& pen, const RectF& rect) {
  if (!IsDrawable(rect)) return;
  const Gdiplus::Pen native(Gdiplus::Color(pen.color), pen.width);
  impl_->surface.DrawRectangle(&native, ToNative(rect));
}

void Graphics::FillRectangle(Argb color, const RectF& rect) {
  if (!IsDrawable(rect)) return;
  const Gdiplus::SolidBrush brush{Gdiplus::Color(color)};
  impl_->surface.FillRectangle(&brush, ToNative(rect));
}

void Graphics::FillPolygon(Argb color, std::span<const PointF> points) {
  const auto drawable = [](PointF point) { return IsDrawable(point); };
  if (!std::all_of(points.begin(), points.end(), drawable)) return;
  std::vector<Gdiplus::PointF> corners;
  for (const PointF& point : points) corners.push_back(ToNative(point));
  const Gdiplus::SolidBrush brush{Gdiplus::Color(color)};
  impl_->surface.FillPolygon(&brush, corners.data(), static_cast<INT>(corners.size()),
                             Gdiplus::FillModeAlternate);
}

void Graphics::FillEllipse(const LinearGradient& gradient, const RectF& box) {
  if (!IsDrawable(box) || !IsDrawable(gradient.from) || !IsDrawable(gradient.to)) return;
  const Gdiplus::LinearGradientBrush brush(ToNative(gradient.from), ToNative(gradient.to),
                                           Gdiplus::Color(gradient.fromColor),
                                           Gdiplus::Color(gradient.toColor));
  impl_->surface.FillEllipse(&brush, ToNative(box));
}

void Graphics::DrawArc(const Pen& pen, const RectF& box, float startAngle, float sweepAngle) {
  if (!IsDrawable(box) || !IsDrawable(PointF{startAngle, sweepAngle})) return;
  const Gdiplus::Pen native(Gdiplus::Color(pen.color), pen.width);
  impl_->surface.DrawArc(&native, ToNative(box), startAngle, sweepAngle);
}

void Graphics::FillPath(Argb color, const Path& path) {
  const Gdiplus::SolidBrush brush{Gdiplus::Color(color)};
  impl_->surface.FillPath(&brush, &path.Native().path);
}

void Graphics::DrawPath(const Pen& pen, const Path& path) {
  const Gdiplus::Pen native(Gdiplus::Color(pen.color), pen.width);
  impl_->surface.DrawPath(&native, &path.Native().path);
}

void Graphics::DrawCurve(const Pen& pen, std::span<const PointF> points, float tension) {
  std::vector<Gdiplus::PointF> curve;
  for (const SplinePoint& point : CardinalSpline(points, tension)) {
    curve.emplace_back(static_cast<float>(point.x), static_cast<float>(point.y));
  }
  if (curve.empty()) return;
  const Gdiplus::Pen native(Gdiplus::Color(pen.color), pen.width);
  impl_->surface.DrawBeziers(&native, curve.data(), static_cast<INT>(curve.size()));
}

}  // namespace platform
