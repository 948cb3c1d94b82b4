// The pictures of the response plot: a layer that never changes, and curve and markers upon it.
#pragma once

#include <cstdint>
#include <optional>

#include "dsp/plot_mapping.h"
#include "dsp/response.h"
#include "platform/drawing.h"

namespace ui {

struct MarkerImages {
  const std::optional<platform::Bitmap>& selected;
  const std::optional<platform::Bitmap>& active;
  const std::optional<platform::Bitmap>& inactive;
};

struct PlotState {
  const dsp::ResponsePlotData& data;
  std::int32_t selectedBand = 1;
  bool redAccent = false;
};

// Background, frame, grid and labels, onto all of the transparent `layer`.
void PaintPlotGrid(platform::Bitmap& layer, const dsp::PlotMapping& mapping,
                   const platform::Font& labelFont, bool redAccent);

// The layer, curve and markers, onto all of `target`, which has the layer's size.
void PaintPlot(platform::Bitmap& target, const platform::Bitmap& layer,
               const dsp::PlotMapping& mapping, const MarkerImages& images, const PlotState& state);

}  // namespace ui
