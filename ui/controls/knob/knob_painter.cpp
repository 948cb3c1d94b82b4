#include "ui/controls/knob/knob_painter.h"

#include <cmath>

#include "platform/text.h"
#include "ui/controls/knob/knob_geometry.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/shared/pixel_math.h"

namespace ui {
namespace {

using platform::Argb;
using platform::Graphics;
using platform::PointF;
using platform::RectF;

constexpr Argb kFaceBottom = 0xFF3C3C3C;
constexpr Argb kFaceTop = 0xFF565656;
constexpr Argb kFaceShadow = 0x28000000;
constexpr Argb kDotTop = 0x50000000;
constexpr Argb kDotBottom = 0x507E7E7E;
constexpr Argb kFirstTick = 0xFFFFFFFF;
constexpr Argb kLitTick = 0xFF20BFD5;
constexpr Argb kDarkTick = 0x89000000;
constexpr Argb kHighlight = 0x00FFFFFF;
constexpr double kHighlightAlpha = 96.0;
constexpr std::size_t kCaptionCapacity = 100;  // a NUL included

void DrawFace(Graphics& graphics, const KnobGeometry& geometry, double scale) {
  const auto centre = static_cast<float>(geometry.DiscCentre());
  const auto radius = static_cast<float>(geometry.FaceRadius());
  const RectF box{centre - radius, centre - radius, 2.0F * radius, 2.0F * radius};
  graphics.FillEllipse(
      {{centre, centre + radius + 1.0F}, {centre, centre - radius - 1.0F}, kFaceBottom, kFaceTop},
      box);
  graphics.DrawArc({kFaceShadow, static_cast<float>(scale)}, box, 0.0F, 180.0F);
}

void DrawIndicator(Graphics& graphics, const KnobGeometry& geometry, std::int32_t knobPos) {
  const std::int32_t diameter = geometry.DotDiameter();
  if (diameter <= 0) return;
  const platform::Point origin = geometry.DotOrigin(knobPos);
  const auto size = static_cast<float>(diameter);
  const auto x = static_cast<float>(origin.x);
  const auto y = static_cast<float>(origin.y);
  const std::int32_t half = diameter / 2;
  const float middle = x + static_cast<float>(half);
  graphics.FillEllipse({{middle, y - 1.0F}, {middle, y + 1.0F + size}, kDotTop, kDotBottom},
                       {x, y, size, size});
}

// A touch of light at the lower side of a tick, brightest where the tick lies flat.
void DrawTickHighlight(Graphics& graphics, int degrees, PointF inner, PointF outer, double scale) {
  const auto alpha = static_cast<Argb>(std::abs(std::cos(TickAngle(degrees))) * kHighlightAlpha);
  float aside = 0.0F;
  if (degrees < kScaleDegrees / 2) aside = -1.0F;
  if (degrees > kScaleDegrees / 2) aside = 1.0F;
  graphics.DrawLine({kHighlight | (alpha << 24U), static_cast<float>(scale)},
                    {inner.x + aside, inner.y + 1.0F}, {outer.x + aside, outer.y + 1.0F});
}

Argb TickColor(int degrees, const KnobState& state) {
  if (degrees == 0) return kFirstTick;
  if (degrees > LitDegrees(state.knobPos)) return kDarkTick;
  return state.redAccent ? kRedAccent : kLitTick;
}

void DrawScale(Graphics& graphics, const KnobGeometry& geometry, double scale,
               const KnobState& state) {
  for (int degrees = 0; degrees <= kScaleDegrees; degrees += kTickDegrees) {
    const double angle = TickAngle(degrees);
    const PointF inner = geometry.PointAt(angle, geometry.TickInnerRadius());
    const PointF outer = geometry.PointAt(angle, geometry.TickOuterRadius());
    DrawTickHighlight(graphics, degrees, inner, outer, scale);
    graphics.DrawLine({TickColor(degrees, state), static_cast<float>(2.0 * scale)}, inner, outer);
  }
}

void DrawCaption(Graphics& graphics, platform::Size client, const platform::Font& font,
                 std::u16string_view text) {
  constexpr auto kFormat = platform::StringFormat::GenericDefault;
  const std::u16string_view caption = platform::CutToBuffer(text, kCaptionCapacity);
  graphics.SetTextRenderingHint(platform::TextRenderingHint::AntiAlias);
  const platform::SizeF size = graphics.MeasureString(caption, font, kFormat);
  graphics.SetTextRenderingHint(platform::TextRenderingHint::AntiAliasGridFit);
  const PointF origin{(static_cast<float>(client.width) - size.width) * 0.5F,
                      static_cast<float>(client.height) - size.height};
  graphics.DrawString(caption, font, origin, kFormat, kWhiteText);
}

}  // namespace

void PaintKnob(platform::Bitmap& target, double scale, const KnobLook& look,
               const KnobState& state) {
  const platform::Size client = SizeOf(target);
  const KnobGeometry geometry(client, scale);
  Graphics graphics(target);
  look.background.Draw(graphics);
  graphics.SetSmoothingMode(platform::SmoothingMode::AntiAlias);
  DrawFace(graphics, geometry, scale);
  if (state.enabled) DrawIndicator(graphics, geometry, state.knobPos);
  DrawScale(graphics, geometry, scale, state);
  DrawCaption(graphics, client, look.font, state.caption);
}

}  // namespace ui
