#include "dsp/response.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <complex>

#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

using Complex = std::complex<double>;

auto Bits(const ResponsePlotData& plot) {
  return std::bit_cast<std::array<std::uint32_t, sizeof plot / sizeof(std::uint32_t)>>(plot);
}

// The second opinion: the transfer function in double precision.
Complex Transfer(const BiquadCoefficients& c, double frequency) {
  const Complex z1 = std::polar(1.0, -2.0 * std::acos(-1.0) * frequency / 48000.0);
  const auto at = [z1](double c0, double c1, double c2) { return c0 + z1 * (c1 + z1 * c2); };
  return at(c.b0, c.b1, c.b2) / at(1.0, c.a1, c.a2);
}

class ResponseTest : public testing::Test {
 protected:
  ResponseTest() { BuildResponseGrid(plot_.evalFreqs); }

  void Evaluate() {
    UpdateBandCoefficients(values_, table_);
    EvaluateResponse(values_, table_, plot_);
    MapResponseToPlot(mapping_, plot_);
  }

  static Complex At(const ComplexRow& row, std::size_t i) { return {row.re[i], row.im[i]}; }
  Complex Response(std::size_t i) const { return At(plot_.evalFreqs.response, i); }

  std::array<float, kParameterCount> values_ = InitialParameters();
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
  ASSERT_EQ(grid.f.size(), 150U);
  EXPECT_FLOAT_EQ(grid.f.front(), 20.0F);
  EXPECT_FLOAT_EQ(grid.f.back(), 20000.0F);
  for (std::size_t i = 0; i < 150; ++i) {
    EXPECT_FLOAT_EQ(grid.f[i],
                    static_cast<float>(20.0 * std::pow(1000.0, static_cast<double>(i) / 149.0)));
    const Complex exact = std::polar(1.0, 2.0 * std::acos(-1.0) * grid.f[i] / 48000.0);
    EXPECT_NEAR(std::abs(At(grid.z, i) - exact), 0.0, 1e-7);
    EXPECT_NEAR(std::abs(At(grid.zInv1, i) - std::conj(exact)), 0.0, 3e-7);
    EXPECT_NEAR(std::abs(At(grid.zInv2, i) - std::conj(exact * exact)), 0.0, 3e-7);
  }
}

// At these frequencies a logarithm in double precision gives another bit, and so does the C
// library's own in single precision.
TEST_F(ResponseTest, PointsLieOnALogarithmicAxisAtAnyScale) {
  const PlotMapping mapping{.width = 1101,
                            .height = 297,
                            .dpiScale = 1.5F,
                            .plotLeft = 45,
                            .plotRight = 22,
                            .logFreqMin = std::log10(20.0),
                            .logFreqMax = std::log10(20000.0)};
  EXPECT_EQ(mapping.X(26.414072F), 86.6375656F);
  EXPECT_EQ(mapping.X(48.2592239F), 176.852325F);
  EXPECT_FLOAT_EQ(mapping.X(20.0F), 45.0F);
  EXPECT_EQ(mapping.X(20000.0F), 1079.0F);
  EXPECT_EQ(mapping.Y(20.0F), 15.0F);
  EXPECT_EQ(mapping.Y(0.0F), 141.0F);
  EXPECT_EQ(mapping.Y(-20.0F), 267.0F);
  EXPECT_EQ(mapping.Y(100.0F), -489.0F) << "nothing is clamped";
}

TEST_F(ResponseTest, EnabledBandsMultiplyWhateverTheirType) {
  for (int band = 1; band <= kBandCount; ++band) {
    const float n = static_cast<float>(band);
    SetBand(values_, band,
            {.enabled = band == 7   ? 0.0F
                        : band == 8 ? kNan
                                    : 0.5F,
             .type = static_cast<float>(1 + band % 5),
             .frequency = 400.0F * n,
             .gain = 0.4F * n + 0.1F,
             .q = 0.5F + 0.1F * n});
  }
  Evaluate();
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    Complex expected = 1.0;
    for (std::size_t k = 0; k < kBandCount; ++k) {
      if (k != 6 && k != 7) expected *= Transfer(table_[k], plot_.evalFreqs.f[i]);
    }
    EXPECT_NEAR(std::abs(Response(i) - expected), 0.0, 1e-3 * std::abs(expected) + 1e-4) << i;
    EXPECT_NEAR(plot_.curvePoints[i].x, 30.0 + 689.0 * static_cast<double>(i) / 149.0, 1e-3);
    EXPECT_NEAR(plot_.curvePoints[i].y, 93.5 - 83.5 * std::log10(std::abs(Response(i))), 1e-3) << i;
  }
}

TEST_F(ResponseTest, TenBandsOnOneSpotReachUnclampedHeights) {
  for (int band = 1; band <= kBandCount; ++band) {
    SetBand(values_, band, {.frequency = plot_.evalFreqs.f[100], .gain = 3.98107195F});
  }
  Evaluate();
  EXPECT_NEAR(std::abs(Response(100)), 1e6, 100.0);
  EXPECT_NEAR(plot_.curvePoints[100].y, (1.0 - 6.0) * 83.5 + 10.0, 1e-2);
}

// In single precision half of these gains, 2 and 0.3 and 0.7, give another bit.
TEST_F(ResponseTest, MarkersFollowEveryBandOnOrOff) {
  const std::pair<float, float> gains[] = {
      {10.0F, 20.0F},       {0.1F, -20.0F},       {2.0F, 6.02059984F}, {3.0F, 9.54242516F},
      {0.3F, -10.4575748F}, {0.7F, -3.09803939F}, {1.0F, 0.0F},        {0.0F, -kInfinity}};
  for (int k = 0; k < 8; ++k) {
    SetBand(values_, k + 1,
            {.enabled = static_cast<float>(k % 2), .frequency = 70.5F, .gain = gains[k].first});
  }
  Evaluate();
  for (std::size_t k = 0; k < std::size(gains); ++k) {
    EXPECT_EQ(plot_.bandMarkers[k].frequency, 70.5F);
    EXPECT_EQ(plot_.bandMarkers[k].gainDb, gains[k].second) << gains[k].first;
    EXPECT_EQ(plot_.bandState[k], static_cast<float>(k % 2));
  }
  EXPECT_EQ(plot_.bandMarkers[9].frequency, 16000.0F);
  const ResponsePlotData on = plot_;
  values_[116] = 0.0F;
  SetKnob(values_, Knob::Bass, 100);
  Evaluate();
  EXPECT_EQ(Bits(plot_), Bits(on)) << "the curve shows what the equalizer would do";
}

TEST_F(ResponseTest, HugeCoefficientsDivideWithoutOverflowAndHostileOnesLeaveNothingBehind) {
  table_[0] = {.a1 = 3.0e37F, .a2 = 1.0e37F, .b0 = 0.0F, .b1 = 6.0e37F, .b2 = 2.0e37F};
  EvaluateResponse(values_, table_, plot_);
  for (std::size_t i = 0; i < kGridPoints; ++i) {
    EXPECT_NEAR(std::abs(Response(i) - 2.0), 0.0, 1e-6);
  }
  Evaluate();
  const ResponsePlotData fresh = plot_;
  for (const float hostile : kHostileValues) {
    for (const float type : {1.0F, 2.0F, 3.0F, 4.0F, 5.0F}) {
      SetBand(values_, 1, {.type = type, .frequency = hostile, .gain = hostile, .q = hostile});
      Evaluate();
    }
  }
  values_ = InitialParameters();
  Evaluate();
  EXPECT_EQ(Bits(plot_), Bits(fresh));
}

}  // namespace
}  // namespace dsp
