#include "dsp/plot_mapping.h"

#include "dsp/rounded_math.h"

namespace dsp {

float PlotMapping::X(float frequency) const {
  const double logFreq = RoundedLog10(frequency);  // single precision, the rest is double
  const double span = static_cast<double>(width) - plotRight - plotLeft;
  return static_cast<float>(plotLeft + (logFreq - logFreqMin) / (logFreqMax - logFreqMin) * span);
}

float PlotMapping::Y(float gainDb) const {
  const float span = static_cast<float>(height) - 20.0F * dpiScale - 10.0F * dpiScale;
  return (1.0F - gainDb / kPlotGainMax) * (span * 0.5F) + 10.0F * dpiScale;
}

}  // namespace dsp
