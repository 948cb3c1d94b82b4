// Two-dimensional drawing into bitmaps and windows, in the original platform's vocabulary: images,
// pens, brushes, paths and text, with its rules for pixel positions and string margins.
//
// Everything here belongs to the user-interface thread, except that another thread may decode a
// bitmap, and draw images onto it, before it hands it over. Drawing never fails loudly: what cannot
// be drawn is left out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "platform/geometry.h"

namespace platform {

// 0xAARRGGBB, not premultiplied.
using Argb = std::uint32_t;

enum class PixelFormat { Argb32, PremultipliedArgb32 };
enum class CompositingMode { SourceOver, SourceCopy };
enum class CompositingQuality { HighSpeed, HighQuality };
enum class SmoothingMode { None, HighSpeed, AntiAlias };
enum class PixelOffsetMode { None, HighSpeed };
enum class InterpolationMode { Default, NearestNeighbor, Bilinear, HighQualityBicubic };
enum class TextRenderingHint { AntiAlias, AntiAliasGridFit };
enum class StringFormat { None, GenericDefault, GenericTypographic };
enum class FontStyle { Regular, Bold };

// An image in memory. Movable; a moved-from bitmap may only be assigned to or destroyed.
class Bitmap {
 public:
  struct Impl;

  // All pixels start transparent. Width and height are at least 1.
  Bitmap(std::int32_t width, std::int32_t height, PixelFormat format);
  ~Bitmap();
  Bitmap(Bitmap&&) noexcept;
  Bitmap& operator=(Bitmap&&) noexcept;

  // Decodes a PNG; nothing when the bytes are none.
  static std::optional<Bitmap> FromPng(std::span<const std::byte> bytes);

  std::int32_t Width() const;
  std::int32_t Height() const;

  // Colours go in and come out not premultiplied, whatever the format. Positions outside the
  // bitmap read as 0 and are not written.
  Argb GetPixel(std::int32_t x, std::int32_t y) const;
  void SetPixel(std::int32_t x, std::int32_t y, Argb color);

  Impl& Native() { return *impl_; }
  const Impl& Native() const { return *impl_; }

 private:
  explicit Bitmap(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

class Font {
 public:
  struct Impl;

  // Size in points. A family that is not installed gives its metric-compatible stand-in, else the
  // generic sans-serif family.
  Font(std::u16string_view family, float points, FontStyle style);
  ~Font();
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;

  // Line height in pixels at a resolution in dots per inch.
  float Height(float dpi) const;

  const Impl& Native() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

// Flat cap, miter join with limit 10; the width is in pixels.
struct Pen {
  Argb color = 0xFF000000;
  float width = 1.0F;
};

// A two-point linear gradient that repeats outside its points.
struct LinearGradient {
  PointF from;
  PointF to;
  Argb fromColor = 0;
  Argb toColor = 0;
};

// Filled even-odd.
class Path {
 public:
  struct Impl;

  Path();
  ~Path();
  Path(const Path&) = delete;
  Path& operator=(const Path&) = delete;

  // Each piece is joined to the end of the one before it by a straight line.
  void AddLine(PointF from, PointF to);
  // Part of the ellipse in `box`; angles in degrees, clockwise from the positive x axis.
  void AddArc(const RectF& box, float startAngle, float sweepAngle);
  void CloseFigure();

  const Impl& Native() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

// Draws onto one target while it lives. Pixel centres lie at integer coordinates in both pixel
// offset modes; the ends of a line are painted; the outline of a rectangle of w x h covers w + 1 by
// h + 1 pixels.
class Graphics {
 public:
  struct Impl;

  explicit Graphics(Bitmap& target);
  explicit Graphics(std::unique_ptr<Impl> impl);
  ~Graphics();
  Graphics(const Graphics&) = delete;
  Graphics& operator=(const Graphics&) = delete;

  // Dots per inch of the target: the screen's.
  float DpiX() const;
  float DpiY() const;

  void SetCompositingMode(CompositingMode mode);
  void SetCompositingQuality(CompositingQuality quality);
  void SetSmoothingMode(SmoothingMode mode);
  void SetPixelOffsetMode(PixelOffsetMode mode);
  void SetInterpolationMode(InterpolationMode mode);
  void SetTextRenderingHint(TextRenderingHint hint);

  // Replaces the clip; clips are not anti-aliased.
  void SetClip(const Rect& clip);

  void Clear(Argb color);
  void DrawLine(const Pen& pen, PointF from, PointF to);
  void DrawRectangle(const Pen& pen, const RectF& rect);
  void FillRectangle(Argb color, const RectF& rect);
  void FillPolygon(Argb color, std::span<const PointF> points);
  void FillEllipse(const LinearGradient& gradient, const RectF& box);
  // Angles in degrees, clockwise from the positive x axis.
  void DrawArc(const Pen& pen, const RectF& box, float startAngle, float sweepAngle);
  void FillPath(Argb color, const Path& path);
  void DrawPath(const Pen& pen, const Path& path);
  // A cardinal spline through all points.
  void DrawCurve(const Pen& pen, std::span<const PointF> points, float tension);

  // At its own size, top-left corner at (x, y).
  void DrawImage(const Bitmap& image, std::int32_t x, std::int32_t y);
  // The whole image scaled into `target` with the interpolation mode.
  void DrawImage(const Bitmap& image, const Rect& target);
  // Fills `area` with copies of the image laid from (0, 0) on.
  void FillTiled(const Bitmap& tile, const Rect& area);

  // Unwrapped, one line, from the given layout point on.
  void DrawString(std::u16string_view text, const Font& font, PointF origin, StringFormat format,
                  Argb color);
  SizeF MeasureString(std::u16string_view text, const Font& font, StringFormat format);

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace platform
