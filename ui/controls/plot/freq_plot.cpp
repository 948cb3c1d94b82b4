#include "ui/controls/plot/freq_plot.h"

#include <array>

#include "platform/message_map.h"
#include "platform/screen.h"
#include "resources/resource_ids.h"
#include "ui/controls/plot/plot_geometry.h"
#include "ui/controls/plot/plot_painter.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/images/png_resource.h"

namespace ui {

using platform::Erase;
using platform::LParam;
using platform::LResult;
using platform::WParam;

namespace {

constexpr float kLabelPoints = 8.0F;

float ScreenScale() {
  return static_cast<float>(platform::GetScreenDpi().x) / kDesignDpi;
}

}  // namespace

CFreqPlot::CFreqPlot()
    : dpiScale_(ScreenScale()),
      labelFont_(u"Verdana", kLabelPoints, platform::FontStyle::Regular),
      activeMarkerImage_(LoadPngResource(resources::kImageGreyDot, kDesignDpi)),
      inactiveMarkerImage_(LoadPngResource(resources::kImageDarkDot, kDesignDpi)) {
  selectedMarkerImage_.Load();
}

LResult CFreqPlot::WindowProc(std::uint32_t message, WParam wParam, LParam lParam) {
  static constexpr auto kMessageMap = std::to_array<platform::MessageMapEntry<CFreqPlot>>({
      platform::OnMessage(platform::message::kEraseBackground, &CFreqPlot::OnEraseBackground),
      platform::OnMessage(platform::message::kPaint, &CFreqPlot::OnPaint),
      platform::OnMessage(platform::message::kLeftButtonDown, &CFreqPlot::OnLeftButtonDown),
      platform::OnMessage(platform::message::kLeftButtonUp, &CFreqPlot::OnLeftButtonUp),
      platform::OnMessage(platform::message::kMouseMove, &CFreqPlot::OnMouseMove),
  });
  const auto result =
      platform::DispatchMessageMap<CFreqPlot>(*this, kMessageMap, message, wParam, lParam);
  return result ? *result : Window::WindowProc(message, wParam, lParam);
}

void CFreqPlot::BuildResponseGrid() {
  dsp::BuildResponseGrid(data_.evalFreqs);
}

void CFreqPlot::EvaluateResponse(dsp::ConstParameterValues values,
                                 const dsp::CoefficientTable& coefficients) {
  dsp::EvaluateResponse(values, coefficients, data_);
  dsp::MapResponseToPlot(Mapping(), data_);
  Invalidate(Erase::Yes);
  Update();
  spoken_.Announce(*this, State());
}

dsp::PlotMapping CFreqPlot::Mapping() const {
  return MakePlotMapping(ClientSize(*this), dpiScale_);
}

// The picture covers the whole window.
LResult CFreqPlot::OnEraseBackground(WParam /*wParam*/, LParam /*lParam*/) {
  return 1;
}

LResult CFreqPlot::OnPaint(WParam /*wParam*/, LParam /*lParam*/) {
  platform::PaintContext paint(*this);
  Render();
  CopyToWindow(paint.Surface(), *offscreen_);
  return 0;
}

LResult CFreqPlot::OnLeftButtonDown(WParam /*wParam*/, LParam lParam) {
  const auto band =
      BandAt(Mapping(), data_.bandMarkers, MarkerSize(), platform::PointFromLParam(lParam));
  if (!band) return 0;
  PressBand(*band);
  dragging_ = true;
  return 0;
}

void CFreqPlot::PressBand(std::int32_t band) {
  if (band != selectedBand_) {
    platform::PostToWindow(Parent(), kBandSelectedMessage, static_cast<WParam>(band), 0);
  }
  selectedBand_ = band;
  Invalidate(Erase::Yes);
  spoken_.Announce(*this, State());
}

platform::Size CFreqPlot::MarkerSize() const {
  const auto& image = selectedMarkerImage_.Image();
  return image ? SizeOf(*image) : platform::Size{};
}

LResult CFreqPlot::OnLeftButtonUp(WParam /*wParam*/, LParam /*lParam*/) {
  dragging_ = false;
  return 0;
}

LResult CFreqPlot::OnMouseMove(WParam /*wParam*/, LParam lParam) {
  // The parent may have selected any number meanwhile.
  if (!dragging_ || !dsp::IsBandNumber(selectedBand_)) return 0;
  const auto dragged = DraggedMarker(Mapping(), platform::PointFromLParam(lParam), ScreenScale());
  if (!dragged) return 0;
  dsp::BandMarker& marker = data_.bandMarkers[static_cast<std::size_t>(selectedBand_) - 1];
  marker = *dragged;
  platform::SendToWindow(Parent(), kBandDraggedMessage, static_cast<WParam>(selectedBand_),
                         reinterpret_cast<LParam>(&marker));
  return 0;
}

void CFreqPlot::Render() {
  if (redAccent) selectedMarkerImage_.TurnRed();
  const dsp::PlotMapping mapping = Mapping();
  if (!offscreen_) {
    offscreen_ = MakeCanvas(ClientSize(*this), platform::PixelFormat::PremultipliedArgb32);
  }
  if (!staticLayer_) {
    staticLayer_ = MakeCanvas(ClientSize(*this), platform::PixelFormat::PremultipliedArgb32);
    PaintPlotGrid(*staticLayer_, mapping, labelFont_, redAccent);
  }
  PaintPlot(*offscreen_, *staticLayer_, mapping,
            {selectedMarkerImage_.Image(), activeMarkerImage_, inactiveMarkerImage_}, State());
}

platform::AccessibleInfo CFreqPlot::DescribeAccessible(std::int32_t part) const {
  if (part == platform::kAccessibleSelf) {
    platform::AccessibleInfo info = Window::DescribeAccessible(part);
    info.role = platform::AccessibleRole::Chart;
    return info;
  }
  platform::AccessibleInfo info = DescribeBand(State(), part);
  info.area =
      MarkerHitBox(Mapping(), data_.bandMarkers[static_cast<std::size_t>(part) - 1], MarkerSize());
  return info;
}

void CFreqPlot::DoDefaultAction(std::int32_t part) {
  if (dsp::IsBandNumber(part)) PressBand(part);
}

}  // namespace ui
