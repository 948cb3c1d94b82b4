#include "ui/controls/plot/plot_geometry.h"

#include <algorithm>
#include <cmath>

#include "ui/controls/shared/pixel_math.h"

namespace ui {
namespace {

constexpr double kLeftMargin = 30.0;
constexpr double kRightMargin = 15.0;

constexpr std::int32_t kDragTop = 10;     // unscaled
constexpr std::int32_t kDragBottom = 20;  // unscaled
constexpr double kDragHalfRange = 21.0;   // dB
constexpr double kMaxBandGain = 12.0;     // dB
constexpr double kPointerOffset = 1.5;

bool Contains(const platform::Rect& box, platform::Point point) {
  return point.x >= box.left && point.x < box.right && point.y >= box.top && point.y < box.bottom;
}

double DraggedFrequency(const dsp::PlotMapping& mapping, std::int32_t x, double windowScale) {
  const double fromLeft = x - ScaledPixels(kPointerOffset, windowScale) - mapping.plotLeft;
  const double span = mapping.width - mapping.plotRight - mapping.plotLeft;
  const double decades = mapping.logFreqMax - mapping.logFreqMin;
  return std::pow(10.0, fromLeft * decades / span + mapping.logFreqMin);
}

double DraggedGain(const dsp::PlotMapping& mapping, std::int32_t y, double windowScale) {
  const double fromTop = y - ScaledPixels(1.0, windowScale) - kDragTop;
  const double halfHeight = (mapping.height - kDragBottom - kDragTop) * 0.5;
  return kDragHalfRange - fromTop / halfHeight * kDragHalfRange;
}

}  // namespace

dsp::PlotMapping MakePlotMapping(platform::Size client, float scale) {
  return {.width = client.width,
          .height = client.height,
          .dpiScale = scale,
          .plotLeft = ScaledPixels(kLeftMargin, scale),
          .plotRight = ScaledPixels(kRightMargin, scale),
          .logFreqMin = std::log10(double{dsp::kPlotFreqMin}),
          .logFreqMax = std::log10(double{dsp::kPlotFreqMax})};
}

platform::Rect CurveClip(const dsp::PlotMapping& mapping) {
  const double scale = mapping.dpiScale;
  const std::int32_t left = mapping.plotLeft - ScaledPixels(10.0, scale);
  const std::int32_t top = ScaledPixels(12.0, scale);
  return {left, top, left + mapping.width - mapping.plotRight,
          top + mapping.height - ScaledPixels(34.0, scale)};
}

platform::Point MarkerOrigin(const dsp::PlotMapping& mapping, const dsp::BandMarker& marker,
                             platform::Size image) {
  const std::int32_t offset = ScaledPixels(kPointerOffset, mapping.dpiScale);
  const std::int32_t toLeft = offset - image.width / 2;
  const std::int32_t toTop = offset - image.height / 2;
  return {PixelPosition(mapping.X(marker.frequency) + static_cast<float>(toLeft)),
          PixelPosition(mapping.Y(marker.gainDb) + static_cast<float>(toTop))};
}

platform::Rect MarkerHitBox(const dsp::PlotMapping& mapping, const dsp::BandMarker& marker,
                            platform::Size image) {
  const std::int32_t left = PixelPosition(mapping.X(marker.frequency)) - image.width / 2 - 2;
  const std::int32_t top = PixelPosition(mapping.Y(marker.gainDb)) - image.height / 2 + 2;
  return {left, top, left + image.width, top + image.height};
}

std::optional<std::int32_t> BandAt(const dsp::PlotMapping& mapping,
                                   std::span<const dsp::BandMarker> markers, platform::Size image,
                                   platform::Point pointer) {
  const auto hit = std::find_if(markers.begin(), markers.end(), [&](const dsp::BandMarker& marker) {
    return Contains(MarkerHitBox(mapping, marker, image), pointer);
  });
  if (hit == markers.end()) return std::nullopt;
  return static_cast<std::int32_t>(hit - markers.begin()) + 1;
}

std::optional<dsp::BandMarker> DraggedMarker(const dsp::PlotMapping& mapping,
                                             platform::Point pointer, double windowScale) {
  const platform::Rect area{mapping.plotLeft, kDragTop, mapping.width - mapping.plotRight,
                            mapping.height - kDragBottom};
  if (!Contains(area, pointer)) return std::nullopt;
  const double frequency = DraggedFrequency(mapping, pointer.x, windowScale);
  const double gain = DraggedGain(mapping, pointer.y, windowScale);
  return dsp::BandMarker{
      .frequency = static_cast<float>(
          std::clamp(frequency, double{dsp::kPlotFreqMin}, double{dsp::kPlotFreqMax})),
      .gainDb = static_cast<float>(std::clamp(gain, -kMaxBandGain, kMaxBandGain))};
}

}  // namespace ui
