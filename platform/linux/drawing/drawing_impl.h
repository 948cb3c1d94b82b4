// What stands behind the drawing classes: images, painters and painter paths of the toolkit.
#pragma once

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <memory>

#include "platform/drawing.h"
#include "platform/linux/drawing/font_face.h"

namespace platform {

struct Bitmap::Impl {
  // Always premultiplied: the painter is fastest there.
  QImage image;
};

struct Font::Impl {
  FontFace face;
  float points;
};

struct Path::Impl {
  QPainterPath path;
  bool figureOpen = false;
};

struct Graphics::Impl {
  Impl() = default;
  explicit Impl(QPaintDevice* device) : painter(device) {}

  // Inactive when there is nothing to draw on; drawing then does nothing.
  QPainter painter;
  InterpolationMode interpolation = InterpolationMode::Default;
  TextRenderingHint textHint = TextRenderingHint::AntiAliasGridFit;
};

// From drawing coordinates to the painter's, whose pixel centres lie at halves.
inline constexpr qreal kPixelCentre = 0.5;

inline QColor ToColor(Argb color) {
  return QColor::fromRgba(color);
}
QPen ToPen(const Pen& pen);

}  // namespace platform
