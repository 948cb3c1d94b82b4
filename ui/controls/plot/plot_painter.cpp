#include "ui/controls/plot/plot_painter.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "ui/controls/plot/plot_geometry.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"

namespace ui {
namespace {

using dsp::PlotMapping;
using platform::Argb;
using platform::Graphics;

constexpr Argb kCurve = 0xFF22DFFF;
constexpr float kCurveTension = 0.5F;

// From this scale on the curve is thick enough to be drawn without anti-aliasing.
constexpr float kFineScale = 2.0F;

void CopyLayer(Graphics& graphics, const platform::Bitmap& layer) {
  graphics.SetCompositingQuality(platform::CompositingQuality::HighSpeed);
  graphics.SetPixelOffsetMode(platform::PixelOffsetMode::None);
  graphics.SetCompositingMode(platform::CompositingMode::SourceCopy);
  graphics.SetSmoothingMode(platform::SmoothingMode::None);
  graphics.SetInterpolationMode(platform::InterpolationMode::Default);
  graphics.DrawImage(layer, 0, 0);
  graphics.SetCompositingMode(platform::CompositingMode::SourceOver);
  graphics.SetSmoothingMode(platform::SmoothingMode::AntiAlias);
}

void DrawResponse(Graphics& graphics, const PlotMapping& mapping, const PlotState& state) {
  std::array<platform::PointF, dsp::kGridPoints> points;
  std::transform(state.data.curvePoints.begin(), state.data.curvePoints.end(), points.begin(),
                 [](const dsp::CurvePoint& point) {
                   return platform::PointF{point.x, point.y};
                 });
  graphics.SetSmoothingMode(mapping.dpiScale >= kFineScale ? platform::SmoothingMode::HighSpeed
                                                           : platform::SmoothingMode::AntiAlias);
  graphics.DrawCurve({state.redAccent ? kRedAccent : kCurve, 2.0F * mapping.dpiScale}, points,
                     kCurveTension);
  graphics.SetSmoothingMode(platform::SmoothingMode::HighSpeed);
}

void DrawMarkers(Graphics& graphics, const PlotMapping& mapping, const MarkerImages& images,
                 const PlotState& state) {
  for (std::size_t k = 0; k < state.data.bandMarkers.size(); ++k) {
    const bool selected = static_cast<std::int32_t>(k) + 1 == state.selectedBand;
    const auto& unselected = dsp::IsOn(state.data.bandState[k]) ? images.active : images.inactive;
    const auto& image = selected ? images.selected : unselected;
    if (!image) continue;
    const platform::Point origin = MarkerOrigin(mapping, state.data.bandMarkers[k], SizeOf(*image));
    graphics.DrawImage(*image, origin.x, origin.y);
  }
}

}  // namespace

void PaintPlot(platform::Bitmap& target, const platform::Bitmap& layer, const PlotMapping& mapping,
               const MarkerImages& images, const PlotState& state) {
  Graphics graphics(target);
  CopyLayer(graphics, layer);
  graphics.SetClip(CurveClip(mapping));
  DrawResponse(graphics, mapping, state);
  DrawMarkers(graphics, mapping, images, state);
}

}  // namespace ui
