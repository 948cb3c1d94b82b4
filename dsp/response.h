#pragma once

#include <array>
#include <cstddef>

#include "dsp/biquad.h"
#include "dsp/eq_model.h"
#include "dsp/plot_mapping.h"

// The combined magnitude response of the enabled bands, for a plot to draw.
namespace dsp {

inline constexpr std::size_t kGridPoints = 150;

// Real and imaginary parts lie in arrays of their own, so that several grid points are worked on
// at once.
struct ComplexRow {
  std::array<float, kGridPoints> re{};
  std::array<float, kGridPoints> im{};
};

// The frequencies at which the response is evaluated, with what the evaluation needs of each.
struct EvalFreqs {
  std::array<float, kGridPoints> f{};  // Hz
  ComplexRow z;                        // e^(j omega)
  ComplexRow zInv1;                    // e^(-j omega)
  ComplexRow zInv2;                    // e^(-2j omega)
  ComplexRow response;
};

struct BandMarker {
  float frequency = 0.0F;  // Hz
  float gainDb = 0.0F;
};

struct CurvePoint {
  float x = 0.0F;  // client pixels
  float y = 0.0F;
};

// What a response plot keeps between paints.
struct ResponsePlotData {
  EvalFreqs evalFreqs;
  std::array<float, kBandCount> bandState{};  // above 0: the band is active
  std::array<BandMarker, kBandCount> bandMarkers{};
  std::array<CurvePoint, kGridPoints> curvePoints{};
};

// Fills everything but the response; once, before the first evaluation.
void BuildResponseGrid(EvalFreqs& grid);

// Takes the bands' states and markers from `values` and the response of the active bands from
// `coefficients`. The equalizer's own switch does not count: the curve shows what it would do.
void EvaluateResponse(ConstParameterValues values, const CoefficientTable& coefficients,
                      ResponsePlotData& plot);

// Turns the response into curve points.
void MapResponseToPlot(const PlotMapping& mapping, ResponsePlotData& plot);

}  // namespace dsp
