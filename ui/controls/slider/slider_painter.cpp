#include "ui/controls/slider/slider_painter.h"

#include <algorithm>
#include <array>

#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/shared/pixel_math.h"
#include "ui/controls/slider/slider_geometry.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Graphics;
using platform::Point;
using platform::PointF;
using platform::RectF;

constexpr Argb kGrooveEdge = 0xFF505050;
constexpr Argb kGrooveRim = 0xFF3C3C3C;
constexpr Argb kGrooveInside = 0xFF191919;
constexpr Argb kBoxFill = 0xFF1A1A1A;
constexpr Argb kBoxOutline = 0xFF6F6F6F;
constexpr Argb kDisabledText = 0xFF808080;

PointF ToPointF(std::int32_t x, std::int32_t y) {
  return {static_cast<float>(x), static_cast<float>(y)};
}

// One pixel wide, both ends painted.
void DrawPixelLine(Graphics& graphics, Argb color, Point from, Point to) {
  graphics.DrawLine({color, 1.0F}, ToPointF(from.x, from.y), ToPointF(to.x, to.y));
}

// Along the groove, `below` the groove's centre and as far above it.
void DrawGroovePair(Graphics& graphics, Argb color, std::int32_t below,
                    const SliderGeometry& geometry, std::int32_t overhang) {
  const std::int32_t left = geometry.GrooveLeft() - overhang;
  const std::int32_t right = geometry.GrooveRight() + overhang;
  const std::int32_t centre = geometry.GrooveCentre();
  DrawPixelLine(graphics, color, {left, centre - below}, {right, centre - below});
  DrawPixelLine(graphics, color, {left, centre + below}, {right, centre + below});
}

void DrawZeroTicks(Graphics& graphics, const SliderGeometry& geometry, std::int32_t zeroPos) {
  if (zeroPos <= 0) return;
  const std::int32_t x = geometry.GrooveLeft() + PixelPosition(zeroPos);
  const std::int32_t centre = geometry.GrooveCentre();
  const std::int32_t near = geometry.Units(4);
  const std::int32_t far = geometry.Margin();
  DrawPixelLine(graphics, kGrooveEdge, {x, centre + near}, {x, centre + far});
  DrawPixelLine(graphics, kGrooveEdge, {x, centre - near}, {x, centre - far});
}

void DrawGroove(Graphics& graphics, const SliderGeometry& geometry, std::int32_t zeroPos) {
  DrawGroovePair(graphics, kGrooveEdge, geometry.Units(4), geometry, 0);
  DrawZeroTicks(graphics, geometry, zeroPos);
  DrawGroovePair(graphics, kGrooveRim, geometry.Units(3), geometry, 0);
  DrawGroovePair(graphics, kGrooveInside, geometry.Units(2), geometry, geometry.Units(1));
  DrawGroovePair(graphics, kGrooveInside, geometry.Units(1), geometry, geometry.Units(2));
  DrawGroovePair(graphics, kGrooveInside, 0, geometry, geometry.Units(2));
}

// Pixels that round off the ends of the groove: units beyond the end, units above and below the
// centre, colour.
struct EndPixel {
  int outward;
  int fromCentre;
  Argb color;
};

constexpr auto kEndPixels = std::to_array<EndPixel>({
    {1, 3, 0xFF535353},
    {2, 3, 0xFF636363},
    {2, 2, 0xFF373737},
    {3, 2, 0xFF636363},
    {3, 1, 0xFF424242},
    {3, 0, 0xFF3F3F3F},
    {4, 1, 0xFF2F2F2F},
    {4, 0, 0xFF4C4C4C},
});

void ShadeGrooveEnds(platform::Bitmap& target, const SliderGeometry& geometry) {
  const std::int32_t centre = geometry.GrooveCentre();
  for (const EndPixel& pixel : kEndPixels) {
    const std::int32_t outward = geometry.Units(pixel.outward);
    const std::int32_t fromCentre = geometry.Units(pixel.fromCentre);
    for (const std::int32_t x :
         {geometry.GrooveLeft() - outward, geometry.GrooveRight() + outward}) {
      target.SetPixel(x, centre - fromCentre, pixel.color);
      target.SetPixel(x, centre + fromCentre, pixel.color);
    }
  }
}

struct FillColors {
  Argb centre;
  Argb sides;
};

FillColors ChooseFill(const SliderState& state, std::int32_t zero) {
  if (state.redAccent) return {kRedAccent, kRedAccent};
  if (state.thumbPos > zero) return {0xFF22DFFF, 0xFF225157};
  return {0xFFDC2A8A, 0xFF812E5C};
}

void DrawFill(Graphics& graphics, const SliderGeometry& geometry, const SliderState& state) {
  const std::int32_t zero = std::max(PixelPosition(state.zeroPos), 0);
  const FillColors colors = ChooseFill(state, zero);
  const std::int32_t from = geometry.GrooveLeft() + zero;
  const std::int32_t to = geometry.GrooveLeft() + state.thumbPos;
  const std::int32_t centre = geometry.GrooveCentre();
  const std::int32_t side = geometry.Units(1);
  DrawPixelLine(graphics, colors.centre, {from, centre}, {to, centre});
  DrawPixelLine(graphics, colors.sides, {from, centre - side}, {to, centre - side});
  DrawPixelLine(graphics, colors.sides, {from, centre + side}, {to, centre + side});
}

void DrawThumb(Graphics& graphics, const SliderGeometry& geometry, const SliderLook& look,
               const SliderState& state) {
  const auto& image = state.enabled ? look.thumbImage : look.thumbDisabledImage;
  if (!image) return;
  const Point origin = geometry.ThumbOrigin(state.thumbPos, SizeOf(*image));
  graphics.DrawImage(*image, origin.x, origin.y);
}

// A rectangle whose corners are rounded by one unit; its outline covers the right and bottom too.
void AddRoundedBox(platform::Path& path, const platform::Rect& box, std::int32_t unit) {
  const auto corner = [unit](std::int32_t x, std::int32_t y) {
    const auto size = static_cast<float>(unit);
    return RectF{static_cast<float>(x), static_cast<float>(y), size, size};
  };
  path.AddLine(ToPointF(box.left + unit, box.top), ToPointF(box.right - unit, box.top));
  path.AddArc(corner(box.right - unit, box.top), -90.0F, 90.0F);
  path.AddLine(ToPointF(box.right, box.top + unit), ToPointF(box.right, box.bottom - unit));
  path.AddArc(corner(box.right - unit, box.bottom - unit), 0.0F, 90.0F);
  path.AddLine(ToPointF(box.right - unit, box.bottom), ToPointF(box.left + unit, box.bottom));
  path.AddArc(corner(box.left, box.bottom - unit), 90.0F, 90.0F);
  path.AddLine(ToPointF(box.left, box.bottom - unit), ToPointF(box.left, box.top + unit));
  path.AddArc(corner(box.left, box.top), 180.0F, 90.0F);
  path.CloseFigure();
}

void DrawValueBox(Graphics& graphics, const SliderGeometry& geometry) {
  platform::Path path;
  AddRoundedBox(path, geometry.ValueBox(), geometry.Units(1));
  graphics.FillPath(kBoxFill, path);
  graphics.DrawPath({kBoxOutline, 1.0F}, path);
}

void DrawTexts(Graphics& graphics, const SliderGeometry& geometry, const SliderLook& look,
               const SliderState& state) {
  constexpr auto kFormat = platform::StringFormat::GenericDefault;
  const Argb color = state.enabled ? kWhiteText : kDisabledText;
  if (!state.valueText.empty()) {
    const platform::SizeF size = graphics.MeasureString(state.valueText, look.font, kFormat);
    graphics.DrawString(state.valueText, look.font, geometry.ValueTextOrigin(size), kFormat, color);
  }
  graphics.DrawString(state.caption, look.font, ToPointF(geometry.Margin(), geometry.Margin()),
                      kFormat, color);
}

void PrepareSurface(Graphics& graphics) {
  graphics.SetInterpolationMode(platform::InterpolationMode::Bilinear);
  graphics.SetCompositingQuality(platform::CompositingQuality::HighSpeed);
  graphics.SetTextRenderingHint(platform::TextRenderingHint::AntiAliasGridFit);
}

}  // namespace

void PaintSlider(platform::Bitmap& target, double scale, const SliderLook& look,
                 const SliderState& state) {
  const SliderGeometry geometry(SizeOf(target), scale);
  {
    Graphics graphics(target);
    PrepareSurface(graphics);
    look.background.Draw(graphics);
    DrawGroove(graphics, geometry, state.zeroPos);
  }
  // Pixels are written between two surfaces: nothing drawn may be pending then.
  ShadeGrooveEnds(target, geometry);
  Graphics graphics(target);
  PrepareSurface(graphics);
  if (state.enabled) DrawFill(graphics, geometry, state);
  DrawThumb(graphics, geometry, look, state);
  DrawValueBox(graphics, geometry);
  DrawTexts(graphics, geometry, look, state);
}

}  // namespace ui
