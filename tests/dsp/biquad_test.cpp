#include "dsp/biquad.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdio>
#include <string>

#include "tests/dsp/analog_filters.h"
#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

constexpr FilterType kAllTypes[] = {FilterType::Peaking, FilterType::LowPass, FilterType::HighPass,
                                    FilterType::LowShelving, FilterType::HighShelving};
constexpr FilterType kTypesWithGain[] = {FilterType::Peaking, FilterType::LowShelving,
                                         FilterType::HighShelving};

BiquadCoefficients Design(FilterType type, float frequency, float gain, float q) {
  return DesignBiquad(static_cast<std::int32_t>(type), frequency, gain, q, kSampleRate).value();
}

std::complex<double> DigitalResponse(const BiquadCoefficients& c, double frequency) {
  const auto z1 = std::polar(1.0, -2.0 * std::acos(-1.0) * frequency / 48000.0);
  const auto at = [z1](double c0, double c1, double c2) { return c0 + z1 * (c1 + z1 * c2); };
  return at(c.b0, c.b1, c.b2) / at(1.0, c.a1, c.a2);
}

std::string SevenDigits(const BiquadCoefficients& c) {
  char text[128];
  std::snprintf(text, sizeof text, "%.7g %.7g %.7g %.7g %.7g", static_cast<double>(c.a1),
                static_cast<double>(c.a2), static_cast<double>(c.b0), static_cast<double>(c.b1),
                static_cast<double>(c.b2));
  return text;
}

TEST(Biquad, ReferenceRowsAtOneKilohertz) {
  const struct {
    FilterType type;
    float gain, q;
    const char* expected;
  } rows[] = {
      {FilterType::Peaking, 2.0F, 1.0F, "-1.861082 0.8771414 1.061429 -1.861082 0.8157121"},
      {FilterType::Peaking, 0.5F, 1.0F, "-1.753374 0.7685034 0.9421259 -1.753374 0.8263776"},
      {FilterType::LowPass, 1.0F, 1.0F, "-1.815341 0.8310056 0.003916127 0.007832253 0.003916127"},
      {FilterType::LowPass, kNan, 0.0F, "-1.815341 0.8310056 0.003916127 0.007832253 0.003916127"},
      {FilterType::HighPass, 1.0F, 1.0F, "-1.815341 0.8310056 0.9115866 -1.823173 0.9115866"},
      {FilterType::HighPass, 0.0F, kNan, "-1.815341 0.8310056 0.9115866 -1.823173 0.9115866"},
      {FilterType::LowShelving, 2.0F, 0.7F, "-1.813785 0.8294362 1.039238 -1.80596 0.7980241"},
      {FilterType::LowShelving, 0.5F, 0.7F, "-1.737773 0.7678937 0.9622438 -1.745303 0.7981198"},
      {FilterType::HighShelving, 2.0F, 0.7F, "-1.813785 0.8294362 1.94613 -3.635396 1.704917"},
      {FilterType::HighShelving, 0.5F, 0.7F, "-1.868013 0.8760547 0.5138402 -0.9319957 0.4261977"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SevenDigits(Design(row.type, 1000.0F, row.gain, row.q)), row.expected);
  }
}

// A shelf that cuts inverts its gain in single precision; in double, one bit of each row differs.
TEST(Biquad, CuttingShelvesInvertTheGainInSinglePrecision) {
  const struct {
    FilterType type;
    float frequency, gain;
    BiquadCoefficients expected;
  } rows[] = {
      {FilterType::LowShelving,
       8000.0F,
       0.3F,
       {0.061438974F, 0.1673408F, 0.596667051F, -0.368633956F, 0.14060083F}},
      {FilterType::LowShelving,
       1000.0F,
       0.3F,
       {-1.66321564F, 0.711541533F, 0.926311314F, -1.68012977F, 0.76831615F}},
      {FilterType::HighShelving,
       1000.0F,
       0.1F,
       {-1.94083965F, 0.942507982F, 0.106591046F, -0.193333253F, 0.0884104669F}},
      {FilterType::HighShelving,
       8000.0F,
       0.7F,
       {-0.797199845F, 0.282451957F, 0.785423934F, -0.485252082F, 0.1850802F}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Design(row.type, row.frequency, row.gain, 0.7F), row.expected) << row.frequency;
  }
}

TEST(Biquad, IdentityAtExactlyUnityGainOnly) {
  for (const FilterType type : kTypesWithGain) {
    EXPECT_EQ(Design(type, 1000.0F, 1.0F, 0.7F), BiquadCoefficients{});
    for (const float toward : {0.0F, 2.0F}) {
      const auto neighbour = Design(type, 1000.0F, std::nextafter(1.0F, toward), 0.7F);
      EXPECT_LT(neighbour.a1, -1.0F);
    }
  }
}

// The ends of the frequency axis, the filter's own frequency and its surroundings.
TEST(Biquad, AgreesWithTheAnalogPrototype) {
  for (const FilterType type : kAllTypes) {
    for (const float corner : {500.0F, 1000.0F, 7654.3F, 20000.0F}) {
      for (const float gain : {0.25F, 0.9F, 1.1F, 3.98F}) {
        for (const float q : {0.1F, 0.7F, 5.0F}) {
          const auto designed = Design(type, corner, gain, q);
          for (const double relative : {0.0, 0.5, 1.0, 1.1}) {
            const double frequency = corner * relative;
            const auto expected = AnalogResponse(type, corner, gain, q, frequency);
            // Rounded to single precision, the poles of low corners move a little.
            EXPECT_NEAR(std::abs(DigitalResponse(designed, frequency) - expected), 0.0, 1e-3)
                << static_cast<int>(type) << ' ' << corner << ' ' << gain << ' ' << q;
          }
        }
      }
    }
  }
}

TEST(Biquad, NyquistSeesTheHighSideOfEachType) {
  const struct {
    FilterType type;
    double expected;
  } cases[] = {{FilterType::Peaking, 1.0},
               {FilterType::LowPass, 0.0},
               {FilterType::HighPass, 1.0},
               {FilterType::LowShelving, 1.0},
               {FilterType::HighShelving, 2.0}};
  for (const auto& c : cases) {
    const auto designed = Design(c.type, 1000.0F, 2.0F, 0.7F);
    EXPECT_NEAR(std::abs(DigitalResponse(designed, 24000.0)), c.expected, 1e-6);
  }
}

TEST(Biquad, BoostTimesCutIsOne) {
  for (const FilterType type : kTypesWithGain) {
    const auto boost = Design(type, 3000.0F, 4.0F, 0.7F);
    const auto cut = Design(type, 3000.0F, 0.25F, 0.7F);
    for (const double frequency : {0.0, 20.0, 1500.0, 3000.0, 12000.0, 24000.0}) {
      const auto product = DigitalResponse(boost, frequency) * DigitalResponse(cut, frequency);
      EXPECT_NEAR(std::abs(product - 1.0), 0.0, 2e-5);
    }
  }
}

TEST(Biquad, UnknownTypesKeepTheRecord) {
  for (const std::int32_t code : {0, 6, -1, kIntMin, kIntMax}) {
    EXPECT_FALSE(DesignBiquad(code, 1000.0F, 2.0F, 1.0F, kSampleRate));
  }
  auto values = InitialParameters();
  for (int band = 1; band <= kBandCount; ++band) {
    EqBand fields = GetBand(values, band);
    fields.enabled = 0.0F;  // designed all the same
    fields.gain = 2.0F;
    SetBand(values, band, fields);
  }
  CoefficientTable table;
  UpdateBandCoefficients(values, table);
  EXPECT_EQ(table[9], Design(FilterType::Peaking, 16000.0F, 2.0F, 1.0F));

  const CoefficientTable before = table;
  SetBand(values, 4, {.type = 5.0F, .frequency = 300.0F, .gain = 0.5F, .q = 0.7F});
  SetBand(values, 5, {.type = 6.0F, .frequency = 300.0F, .gain = 0.5F, .q = 0.7F});
  UpdateBandCoefficients(values, 4, table);
  UpdateBandCoefficients(values, 5, table);
  EXPECT_EQ(table[3], Design(FilterType::HighShelving, 300.0F, 0.5F, 0.7F));
  table[3] = before[3];
  EXPECT_EQ(table, before);
}

// The sanitizers watch; what can be said of the result is that a bad value never looks like a
// filter: either the formula ignores it or it shows.
TEST(Biquad, HostileValuesDesignSomething) {
  for (const FilterType type : kAllTypes) {
    for (const float hostile : kHostileValues) {
      Design(type, hostile, 2.0F, 1.0F);
      Design(type, 1000.0F, hostile, 1.0F);
      Design(type, 1000.0F, 2.0F, hostile);
      Design(type, hostile, hostile, hostile);
    }
    EXPECT_TRUE(std::isnan(Design(type, kNan, 2.0F, 1.0F).a1));
    EXPECT_TRUE(std::isnan(Design(type, kInfinity, 2.0F, 1.0F).a1));
  }
}

}  // namespace
}  // namespace dsp
