#include <QLinearGradient>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "platform/cardinal_spline.h"
#include "platform/linux/drawing/drawing_impl.h"
#include "platform/linux/drawing/drawing_path.h"

namespace platform {
namespace {

// Moves the painter's origin to the centre of the first pixel while it lives.
class PixelCentres {
 public:
  explicit PixelCentres(Graphics::Impl& graphics) : painter_(graphics.painter) {
    painter_.translate(kPixelCentre, kPixelCentre);
  }
  ~PixelCentres() { painter_.translate(-kPixelCentre, -kPixelCentre); }
  PixelCentres(const PixelCentres&) = delete;
  PixelCentres& operator=(const PixelCentres&) = delete;

 private:
  QPainter& painter_;
};

QRectF ToQRectF(const RectF& rect) {
  return {static_cast<qreal>(rect.x), static_cast<qreal>(rect.y), static_cast<qreal>(rect.width),
          static_cast<qreal>(rect.height)};
}

bool IsFinite(PointF point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

constexpr qreal kLimit = 1.0e6;

// Without anti-aliasing a pixel belongs to an area when its centre does, the upper and left edges
// included.
QRect CoveredPixels(const QRectF& area) {
  const auto first = [](qreal edge) {
    return static_cast<int>(std::ceil(std::clamp(edge, -kLimit, kLimit) - 0.5));
  };
  const int left = first(area.left());
  const int top = first(area.top());
  return {left, top, first(area.right()) - left, first(area.bottom()) - top};
}

void FillArea(QPainter& painter, const QRectF& area, const QColor& color) {
  if (painter.testRenderHint(QPainter::Antialiasing)) {
    painter.fillRect(area, color);
  } else {
    painter.fillRect(CoveredPixels(area), color);
  }
}

void FillShape(Graphics::Impl& graphics, const QPainterPath& path, const QBrush& brush) {
  const PixelCentres centres(graphics);
  graphics.painter.fillPath(path, brush);
}

void StrokeShape(Graphics::Impl& graphics, const QPainterPath& path, const Pen& pen) {
  const PixelCentres centres(graphics);
  if (pen.width > 1.0F || graphics.painter.testRenderHint(QPainter::Antialiasing)) {
    graphics.painter.strokePath(path, ToPen(pen));
    return;
  }
  // The painter would trace a thin line from pixel to pixel and leave out tight corners.
  graphics.painter.fillPath(QPainterPathStroker(ToPen(pen)).createStroke(path), ToColor(pen.color));
}

}  // namespace

QPen ToPen(const Pen& pen) {
  QPen result(ToColor(pen.color), static_cast<qreal>(pen.width), Qt::SolidLine, Qt::FlatCap,
              Qt::MiterJoin);
  result.setMiterLimit(10.0);
  return result;
}

void Graphics::DrawLine(const Pen& pen, PointF from, PointF to) {
  if (!impl_->painter.isActive() || !IsFinite(from) || !IsFinite(to)) return;
  const QPointF centre(kPixelCentre, kPixelCentre);
  const QPointF start = QPointF(static_cast<qreal>(from.x), static_cast<qreal>(from.y)) + centre;
  const QPointF end = QPointF(static_cast<qreal>(to.x), static_cast<qreal>(to.y)) + centre;
  const qreal half = std::max(static_cast<qreal>(pen.width), 1.0) / 2.0;
  // Both end pixels are painted, so a line reaches half a pixel beyond the centres of its ends.
  if (start.y() == end.y() || start.x() == end.x()) {
    const bool horizontal = start.y() == end.y();
    const QPointF reach(horizontal ? 0.5 : half, horizontal ? half : 0.5);
    const QPointF topLeft(std::min(start.x(), end.x()), std::min(start.y(), end.y()));
    const QPointF bottomRight(std::max(start.x(), end.x()), std::max(start.y(), end.y()));
    FillArea(impl_->painter, QRectF(topLeft - reach, bottomRight + reach), ToColor(pen.color));
    return;
  }
  const QPointF along = (end - start) / std::hypot(end.x() - start.x(), end.y() - start.y());
  const QPointF across(-along.y() * half, along.x() * half);
  const QPointF first = start - along * 0.5;
  const QPointF last = end + along * 0.5;
  QPainterPath quad;
  quad.addPolygon(QPolygonF({first + across, last + across, last - across, first - across}));
  quad.closeSubpath();
  impl_->painter.fillPath(quad, ToColor(pen.color));
}

void Graphics::DrawRectangle(const Pen& pen, const RectF& rect) {
  if (!impl_->painter.isActive()) return;
  const qreal half = std::max(static_cast<qreal>(pen.width), 1.0) / 2.0;
  const QRectF middle = ToQRectF(rect).translated(kPixelCentre, kPixelCentre);
  const QRectF outer = middle.adjusted(-half, -half, half, half);
  const QRectF inner = middle.adjusted(half, half, -half, -half);
  const QColor color = ToColor(pen.color);
  if (!inner.isValid()) return FillArea(impl_->painter, outer, color);
  // Four strips that meet without overlapping, so that a transparent pen covers each pixel once.
  FillArea(impl_->painter, {outer.topLeft(), QPointF(outer.right(), inner.top())}, color);
  FillArea(impl_->painter, {QPointF(outer.left(), inner.bottom()), outer.bottomRight()}, color);
  FillArea(impl_->painter, {QPointF(outer.left(), inner.top()), inner.bottomLeft()}, color);
  FillArea(impl_->painter, {inner.topRight(), QPointF(outer.right(), inner.bottom())}, color);
}

void Graphics::FillRectangle(Argb color, const RectF& rect) {
  if (!impl_->painter.isActive()) return;
  FillArea(impl_->painter, ToQRectF(rect), ToColor(color));
}

void Graphics::FillPolygon(Argb color, std::span<const PointF> points) {
  if (!impl_->painter.isActive() || !std::all_of(points.begin(), points.end(), IsFinite)) return;
  QPolygonF polygon;
  for (const PointF& point : points) {
    polygon.append(QPointF(static_cast<qreal>(point.x), static_cast<qreal>(point.y)));
  }
  QPainterPath path;
  path.addPolygon(polygon);
  path.closeSubpath();
  FillShape(*impl_, path, ToColor(color));
}

void Graphics::FillEllipse(const LinearGradient& gradient, const RectF& box) {
  if (!impl_->painter.isActive()) return;
  QLinearGradient fill(
      QPointF(static_cast<qreal>(gradient.from.x), static_cast<qreal>(gradient.from.y)),
      QPointF(static_cast<qreal>(gradient.to.x), static_cast<qreal>(gradient.to.y)));
  fill.setColorAt(0.0, ToColor(gradient.fromColor));
  fill.setColorAt(1.0, ToColor(gradient.toColor));
  fill.setSpread(QGradient::RepeatSpread);
  QPainterPath path;
  path.addEllipse(ToQRectF(box));
  FillShape(*impl_, path, fill);
}

void Graphics::DrawArc(const Pen& pen, const RectF& box, float startAngle, float sweepAngle) {
  if (!impl_->painter.isActive()) return;
  QPainterPath path;
  AppendArc(path, false, box, startAngle, sweepAngle);
  StrokeShape(*impl_, path, pen);
}

void Graphics::FillPath(Argb color, const Path& path) {
  if (impl_->painter.isActive()) FillShape(*impl_, path.Native().path, ToColor(color));
}

void Graphics::DrawPath(const Pen& pen, const Path& path) {
  if (impl_->painter.isActive()) StrokeShape(*impl_, path.Native().path, pen);
}

void Graphics::DrawCurve(const Pen& pen, std::span<const PointF> points, float tension) {
  if (!impl_->painter.isActive()) return;
  const std::vector<SplinePoint> spline = CardinalSpline(points, tension);
  if (spline.empty()) return;
  const auto at = [&spline](std::size_t i) { return QPointF(spline[i].x, spline[i].y); };
  QPainterPath path(at(0));
  for (std::size_t i = 1; i < spline.size(); i += 3) path.cubicTo(at(i), at(i + 1), at(i + 2));
  StrokeShape(*impl_, path, pen);
}

}  // namespace platform
