// The response plot of the advanced dialog: gain from -20 to +20 dB over 20 Hz to 20 kHz, with one
// marker per equalizer band that can be selected and dragged. It is opaque.
//
// User-interface thread only.
#pragma once

#include <cstdint>
#include <optional>

#include "dsp/plot_mapping.h"
#include "dsp/response.h"
#include "platform/drawing.h"
#include "platform/window.h"
#include "ui/controls/plot/plot_painter.h"
#include "ui/controls/plot/spoken_bands.h"
#include "ui/controls/shared/accent_dot.h"

namespace ui {

// Posted to the parent when a press selects another band; wParam is the band, 1 to 10.
inline constexpr std::uint32_t kBandSelectedMessage = platform::message::kUser + 1;
// Sent to the parent with each move that drags the selected band's marker; wParam is the band,
// lParam points to the marker (const dsp::BandMarker*) with the new frequency and gain. The plot
// does not repaint by itself then: the parent applies them and evaluates the response.
inline constexpr std::uint32_t kBandDraggedMessage = platform::message::kUser + 2;

class CFreqPlot : public platform::Window {
 public:
  CFreqPlot();

  // The red accent of the skin; to be set before the first paint.
  bool redAccent = false;

  // Once, before the first evaluation.
  void BuildResponseGrid();
  // Shows the bands and their combined response; repaints at once.
  void EvaluateResponse(dsp::ConstParameterValues values,
                        const dsp::CoefficientTable& coefficients);

  // The next repaint shows it. A number outside 1 to 10 selects no marker.
  void SetSelectedBand(std::int32_t band) { selectedBand_ = band; }

  // The markers are parts, each with its band's number.
  std::int32_t AccessiblePartCount() const override { return dsp::kBandCount; }
  void DoDefaultAction(std::int32_t part) override;

 protected:
  platform::LResult WindowProc(std::uint32_t message, platform::WParam wParam,
                               platform::LParam lParam) override;
  platform::AccessibleInfo DescribeAccessible(std::int32_t part) const override;

 private:
  platform::LResult OnEraseBackground(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnPaint(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnLeftButtonDown(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnLeftButtonUp(platform::WParam wParam, platform::LParam lParam);
  platform::LResult OnMouseMove(platform::WParam wParam, platform::LParam lParam);

  dsp::PlotMapping Mapping() const;
  PlotState State() const { return {data_, selectedBand_, redAccent}; }
  platform::Size MarkerSize() const;
  void PressBand(std::int32_t band);
  void Render();

  float dpiScale_;
  platform::Font labelFont_;
  AccentDot selectedMarkerImage_;
  std::optional<platform::Bitmap> activeMarkerImage_;
  std::optional<platform::Bitmap> inactiveMarkerImage_;
  std::optional<platform::Bitmap> staticLayer_;
  std::optional<platform::Bitmap> offscreen_;

  dsp::ResponsePlotData data_;
  std::int32_t selectedBand_ = 1;
  bool dragging_ = false;
  SpokenBands spoken_;
};

}  // namespace ui
