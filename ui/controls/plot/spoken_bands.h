// What assistive technology is told of the bands in the response plot.
#pragma once

#include <array>
#include <cstdint>

#include "dsp/response.h"
#include "platform/accessible.h"
#include "ui/controls/plot/plot_painter.h"

namespace ui {

// Everything but the marker's place; `band` must be a band number.
platform::AccessibleInfo DescribeBand(const PlotState& state, std::int32_t band);

// Remembers what was told last.
class SpokenBands {
 public:
  // Tells what is not the same any more; `plot` has a part for each band.
  void Announce(const platform::Window& plot, const PlotState& state);

 private:
  struct Band {
    bool operator==(const Band&) const = default;

    float frequency = 0.0F;
    float gainDb = 0.0F;
    bool active = false;
  };

  std::array<Band, dsp::kBandCount> bands_{};
  std::int32_t selectedBand_ = 1;
};

}  // namespace ui
