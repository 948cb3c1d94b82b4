#include "dsp/response.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <complex>
#include <vector>

#include "tests/dsp/analog_filters.h"
#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

using Values = std::array<float, kParameterCount>;

auto Bits(const ResponsePlotData& plot) {
  return std::bit_cast<std::array<std::uint32_t, sizeof plot / sizeof(std::uint32_t)>>(plot);
}

class ResponseTest : public testing::Test {
 protected:
  ResponseTest() { BuildResponseGrid(plot_.evalFreqs); }

  void Evaluate() {
    UpdateBandCoefficients(values_, table_);
    EvaluateResponse(values_, table_, plot_);
    MapResponseToPlot(mapping_, plot_);
  }

  std::complex<double> Response(std::size_t i) const { return At(plot_.evalFreqs.response, i); }

  static std::complex<double> At(const ComplexRow& row, std::size_t i) {
    return {row.re[i], row.im[i]};
  }

  Values values_ = InitialParameters();
  CoefficientTable table_;
  ResponsePlotData plot_;
  PlotMapping mapping_{.width = 734,
                       .height = 197,
                       .dpiScale = 1.0F,
                       .plotLeft = 30,
                       .plotRight = 15,
                       .logFreqMin = std::log10(20.0),
                       .logFreqMax = std::log10(20000.0)};
};

TEST_F(ResponseTest, GridRunsLogarithmicallyOverTheUnitCircle) {
  const EvalFreqs& grid = plot_.evalFreqs;
  EXPECT_FLOAT_EQ(grid.f.front(), 20.0F);
  EXPECT_FLOAT_EQ(grid.f.back(), 20000.0F);
  const double ratio = std::pow(1000.0, 1.0 / 149.0);
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    if (i > 0) {
      EXPECT_NEAR(grid.f[i] / grid.f[i - 1], ratio, 1e-6);
    }
    const auto exact = std::polar(1.0, 2.0 * std::acos(-1.0) * grid.f[i] / 48000.0);
    EXPECT_NEAR(std::abs(At(grid.z, i) - exact), 0.0, 1e-7);
    EXPECT_NEAR(std::abs(At(grid.zInv1, i) - std::conj(exact)), 0.0, 3e-7);
    EXPECT_NEAR(std::abs(At(grid.zInv2, i) - std::conj(exact * exact)), 0.0, 3e-7);
  }
}

TEST_F(ResponseTest, FreshSetIsTheFlatLineThroughTheMiddle) {
  Evaluate();
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    EXPECT_EQ(Response(i), 1.0);
    EXPECT_EQ(plot_.curvePoints[i].y, 10.0F + (197.0F - 30.0F) / 2.0F);
  }
  EXPECT_NEAR(plot_.curvePoints.front().x, 30.0F, 1e-3F);
  EXPECT_NEAR(plot_.curvePoints.back().x, 734.0F - 15.0F, 1e-3F);
}

TEST_F(ResponseTest, SixDecibelPeakAtOneKilohertz) {
  SetBand(values_, 6, {.frequency = 1000.0F, .gain = std::pow(10.0F, 0.3F)});
  Evaluate();
  double highest = 0.0;
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    highest = std::max(highest, 20.0 * std::log10(std::abs(Response(i))));
  }
  EXPECT_NEAR(highest, 5.996, 1e-3);
}

// All types at once, against the product of their analog prototypes.
TEST_F(ResponseTest, EnabledBandsMultiply) {
  for (int band = 1; band <= kBandCount; ++band) {
    const float n = static_cast<float>(band);
    SetBand(values_, band,
            {.enabled = band == 7 ? 0.0F : 0.5F,
             .type = static_cast<float>(1 + band % 5),
             .frequency = 400.0F * n,
             .gain = 0.4F * n + 0.1F,
             .q = 0.5F + 0.1F * n});
  }
  Evaluate();
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    std::complex<double> expected = 1.0;
    for (int k = 1; k <= kBandCount; ++k) {
      const EqBand band = GetBand(values_, k);
      if (k != 7) {
        expected *= AnalogResponse(FilterTypeFromCode(TypeCode(band)).value(), band.frequency,
                                   band.gain, band.q, plot_.evalFreqs.f[i]);
      }
    }
    EXPECT_NEAR(std::abs(Response(i) - expected), 0.0, 1e-3 * std::abs(expected) + 1e-4) << i;
  }
}

// The section run as the recursion that it stands for, and its impulse response transformed.
TEST_F(ResponseTest, IsTheTransformOfTheImpulseResponse) {
  values_.fill(0.0F);
  SetBand(values_, 8, {.type = 4.0F, .frequency = 900.0F, .gain = 0.3F, .q = 0.7F});
  Evaluate();
  const BiquadCoefficients& c = table_[7];
  std::vector<double> y(4000);
  for (std::size_t n = 0; n < y.size(); ++n) {
    const double forward = n == 0 ? c.b0 : n == 1 ? c.b1 : n == 2 ? c.b2 : 0.0F;
    const double back1 = n >= 1 ? c.a1 * y[n - 1] : 0.0;
    const double back2 = n >= 2 ? c.a2 * y[n - 2] : 0.0;
    y[n] = forward - back1 - back2;
  }
  for (std::size_t i = 0; i < kGridPoints; i += 10) {
    const double omega = 2.0 * std::acos(-1.0) * plot_.evalFreqs.f[i] / 48000.0;
    std::complex<double> transform = 0.0;
    for (std::size_t n = 0; n < y.size(); ++n) {
      transform += y[n] * std::polar(1.0, -omega * static_cast<double>(n));
    }
    EXPECT_NEAR(std::abs(Response(i) - transform), 0.0, 1e-4) << i;
  }
}

TEST_F(ResponseTest, TenBandsOnOneSpotReachUnclampedHeights) {
  for (int band = 1; band <= kBandCount; ++band) {
    SetBand(values_, band,
            {.frequency = plot_.evalFreqs.f[100], .gain = std::pow(10.0F, 12.0F / 20.0F)});
  }
  Evaluate();
  EXPECT_NEAR(20.0 * std::log10(std::abs(Response(100))), 120.0, 1e-3);
  EXPECT_NEAR(plot_.curvePoints[100].y, (1.0 - 6.0) * 83.5 + 10.0, 1e-2);
}

TEST_F(ResponseTest, SwitchesAndMarkersFollowTheBands) {
  SetBand(values_, 2, {.enabled = 0.0F, .frequency = 70.5F, .gain = 10.0F});
  SetBand(values_, 3, {.enabled = kNan, .frequency = 100.0F, .gain = 0.1F});
  Evaluate();
  EXPECT_EQ(Response(0), 1.0);
  EXPECT_EQ(plot_.bandState[0], 1.0F);
  EXPECT_EQ(plot_.bandState[1], 0.0F);
  EXPECT_EQ(plot_.bandMarkers[1].frequency, 70.5F);
  EXPECT_EQ(plot_.bandMarkers[1].gainDb, 20.0F);
  EXPECT_FLOAT_EQ(plot_.bandMarkers[2].gainDb, -20.0F);

  SetBand(values_, 4, {.frequency = 250.0F, .gain = 2.0F});
  Evaluate();
  const ResponsePlotData on = plot_;
  values_[ParameterIndex(kEqualizerEnable)] = SwitchValue(false);
  SetKnob(values_, Knob::Bass, 100);
  Evaluate();
  EXPECT_EQ(Bits(plot_), Bits(on));
}

TEST_F(ResponseTest, HugeCoefficientsDivideWithoutOverflow) {
  table_[0] = {.a1 = 3.0e37F, .a2 = 1.0e37F, .b0 = 0.0F, .b1 = 6.0e37F, .b2 = 2.0e37F};
  EvaluateResponse(values_, table_, plot_);
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    EXPECT_NEAR(std::abs(Response(i) - 2.0), 0.0, 1e-6);
  }
}

TEST_F(ResponseTest, HostileSetsLeaveNothingBehind) {
  Evaluate();
  const ResponsePlotData fresh = plot_;
  const CoefficientTable designed = table_;
  for (const float hostile : kHostileValues) {
    values_.fill(hostile);
    Evaluate();
    for (const float type : {1.0F, 2.0F, 3.0F, 4.0F, 5.0F}) {
      SetBand(values_, 1, {.type = type, .frequency = hostile, .gain = hostile, .q = hostile});
      Evaluate();
    }
    values_ = InitialParameters();
    table_ = designed;
    Evaluate();
    EXPECT_EQ(Bits(plot_), Bits(fresh));
  }
}

}  // namespace
}  // namespace dsp
