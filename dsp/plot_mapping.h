#pragma once

#include <cstdint>

namespace dsp {

// The ends of the axes.
inline constexpr float kPlotFreqMin = 20.0F;  // Hz
inline constexpr float kPlotFreqMax = 20000.0F;
inline constexpr float kPlotGainMax = 20.0F;  // dB, above and below 0

// Where frequencies and gains lie in a plot's client area: 20 Hz to 20 kHz between the side
// margins, +20 dB to -20 dB between a top margin of 10 and a bottom margin of 20 (at 96 DPI).
// Nothing is clamped.
struct PlotMapping {
  std::int32_t width = 0;  // of the client area, pixels
  std::int32_t height = 0;
  float dpiScale = 1.0F;      // dots per inch / 96
  std::int32_t plotLeft = 0;  // side margins, pixels
  std::int32_t plotRight = 0;
  double logFreqMin = 0.0;  // log10 of the frequencies at the ends of the axis
  double logFreqMax = 0.0;

  float X(float frequency) const;  // Hz to client pixels
  float Y(float gainDb) const;     // dB to client pixels
};

}  // namespace dsp
