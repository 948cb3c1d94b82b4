#include "ui/eq/dialog_frame.h"

namespace ui {
namespace {

using platform::Graphics;
using platform::Point;

// From the dark edge towards the light that falls on what lies beside it.
constexpr platform::Argb kShadow = 0xDC000000;
constexpr platform::Argb kBrightLight = 0x1EFFFFFF;
constexpr platform::Argb kFaintLight = 0x14FFFFFF;

constexpr std::int32_t kHeaderInset = 10;
constexpr std::int32_t kSliderEdgeDistance = 20;
constexpr std::int32_t kCaptionStrip = 35;  // pixels at every resolution
constexpr std::int32_t kMenuSpotFirst = 20;
constexpr std::int32_t kMenuSpotLast = 35;

std::int32_t Scaled(std::int32_t units, float scale) {
  return static_cast<std::int32_t>(static_cast<float>(units) * scale);
}

platform::PointF ToPointF(std::int32_t x, std::int32_t y) {
  return {static_cast<float>(x), static_cast<float>(y)};
}

platform::InterpolationMode HeaderInterpolation(float scale) {
  return scale == 1.0F || scale == 2.0F ? platform::InterpolationMode::NearestNeighbor
                                        : platform::InterpolationMode::HighQualityBicubic;
}

}  // namespace

void PaintHeader(Graphics& graphics, const platform::Bitmap& header, float scale) {
  graphics.SetInterpolationMode(HeaderInterpolation(scale));
  const std::int32_t inset = Scaled(kHeaderInset, scale);
  graphics.DrawImage(header, inset, inset);
}

void PaintExpandedEdge(Graphics& graphics, std::int32_t collapsedHeight, std::int32_t width,
                       float scale) {
  std::int32_t distance = 0;
  for (const platform::Argb color : {kShadow, kBrightLight, kFaintLight}) {
    const std::int32_t y = collapsedHeight + Scaled(++distance, scale);
    graphics.DrawLine({color, scale}, ToPointF(0, y), ToPointF(width, y));
  }
}

void PaintSliderEdge(Graphics& graphics, const platform::Rect& sliders, float scale) {
  const std::int32_t first = sliders.left - Scaled(kSliderEdgeDistance, scale);
  std::int32_t distance = 0;
  for (const platform::Argb color : {kFaintLight, kBrightLight, kShadow}) {
    const std::int32_t x = first + Scaled(distance++, scale);
    graphics.DrawLine({color, scale}, ToPointF(x, sliders.top), ToPointF(x, sliders.bottom));
  }
}

std::optional<platform::HitTest> HitTestTopEdge(Point screen, const platform::Rect& window,
                                                platform::Size header) {
  using platform::HitTest;
  if (screen.x < window.left + kHeaderInset + header.width &&
      screen.y < window.top + kHeaderInset + header.height) {
    return HitTest::SystemMenu;
  }
  if (screen.y > window.top + kCaptionStrip) return std::nullopt;
  if (screen.x <= window.left + kCaptionStrip) return HitTest::Client;
  if (screen.x < window.right - kCaptionStrip) return HitTest::Caption;
  return std::nullopt;
}

bool IsSystemMenuSpot(Point client) {
  return client.x >= kMenuSpotFirst && client.x <= kMenuSpotLast && client.y >= kMenuSpotFirst &&
         client.y <= kMenuSpotLast;
}

}  // namespace ui
