#include "dsp/response.h"

#include <cmath>

#include "dsp/rounded_math.h"

namespace dsp {
namespace {

constexpr double kRadiansPerHertz = 0.0001308996938995747;  // at the filters' sample rate

struct Complex {
  float re;
  float im;
};

// Widened, neither the divisor's square nor the products can overflow or vanish, and there is no
// branch to keep the compiler from dividing several pairs at once.
inline Complex Divide(Complex numerator, Complex denominator) {
  const double a = numerator.re;
  const double b = numerator.im;
  const double c = denominator.re;
  const double d = denominator.im;
  const double square = c * c + d * d;
  return {static_cast<float>((a * c + b * d) / square),
          static_cast<float>((b * c - a * d) / square)};
}

// c0 + c1 z^-1 + c2 z^-2 at grid point i.
inline Complex Polynomial(float c0, float c1, float c2, const EvalFreqs& grid, std::size_t i) {
  return {c0 + c1 * grid.zInv1.re[i] + c2 * grid.zInv2.re[i],
          c1 * grid.zInv1.im[i] + c2 * grid.zInv2.im[i]};
}

void MultiplySection(const BiquadCoefficients& section, EvalFreqs& grid) {
  ComplexRow& response = grid.response;
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    const Complex n = Polynomial(section.b0, section.b1, section.b2, grid, i);
    const Complex d = Polynomial(1.0F, section.a1, section.a2, grid, i);
    const Complex factor = Divide(n, d);
    const Complex h{response.re[i], response.im[i]};
    response.re[i] = h.re * factor.re - h.im * factor.im;
    response.im[i] = h.re * factor.im + h.im * factor.re;
  }
}

void Store(Complex value, ComplexRow& row, std::size_t i) {
  row.re[i] = value.re;
  row.im[i] = value.im;
}

}  // namespace

void BuildResponseGrid(EvalFreqs& grid) {
  const double logFirst = std::log10(double{kPlotFreqMin});
  const double logLast = std::log10(double{kPlotFreqMax});
  const double step = (logLast - logFirst) / static_cast<double>(kGridPoints - 1);
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    grid.f[i] = static_cast<float>(std::pow(10.0, logFirst + static_cast<double>(i) * step));
    const double omega = static_cast<double>(grid.f[i]) * kRadiansPerHertz;
    const Complex z{static_cast<float>(std::cos(omega)), static_cast<float>(std::sin(omega))};
    const Complex square{z.re * z.re - z.im * z.im, 2.0F * z.re * z.im};
    Store(z, grid.z, i);
    Store(Divide({1.0F, 0.0F}, z), grid.zInv1, i);
    Store(Divide({1.0F, 0.0F}, square), grid.zInv2, i);
  }
}

void EvaluateResponse(ConstParameterValues values, const CoefficientTable& coefficients,
                      ResponsePlotData& plot) {
  plot.evalFreqs.response.re.fill(1.0F);
  plot.evalFreqs.response.im.fill(0.0F);
  for (std::size_t k = 0; k < kBandCount; ++k) {
    const EqBand band = GetBand(values, static_cast<int>(k) + 1);
    plot.bandState[k] = band.enabled;
    plot.bandMarkers[k] = {band.frequency,
                           static_cast<float>(20.0 * std::log10(static_cast<double>(band.gain)))};
    if (IsOn(band.enabled)) {
      MultiplySection(coefficients[k], plot.evalFreqs);
    }
  }
}

void MapResponseToPlot(const PlotMapping& mapping, ResponsePlotData& plot) {
  const EvalFreqs& grid = plot.evalFreqs;
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    const float magnitude = std::hypot(grid.response.re[i], grid.response.im[i]);
    plot.curvePoints[i] = {mapping.X(grid.f[i]), mapping.Y(20.0F * RoundedLog10(magnitude))};
  }
}

}  // namespace dsp
