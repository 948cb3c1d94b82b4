#include "dsp/biquad.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>

#include "tests/dsp/hostile_values.h"

namespace dsp {
namespace {

using enum FilterType;

BiquadCoefficients Design(FilterType type, float frequency, float gain, float q) {
  return DesignBiquad(static_cast<std::int32_t>(type), frequency, gain, q, 48000.0F).value();
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
      {Peaking, 2.0F, 1.0F, "-1.861082 0.8771414 1.061429 -1.861082 0.8157121"},
      {Peaking, 0.5F, 1.0F, "-1.753374 0.7685034 0.9421259 -1.753374 0.8263776"},
      {LowPass, 1.0F, 1.0F, "-1.815341 0.8310056 0.003916127 0.007832253 0.003916127"},
      {LowPass, kNan, 0.0F, "-1.815341 0.8310056 0.003916127 0.007832253 0.003916127"},
      {HighPass, 1.0F, 1.0F, "-1.815341 0.8310056 0.9115866 -1.823173 0.9115866"},
      {HighPass, 0.0F, kNan, "-1.815341 0.8310056 0.9115866 -1.823173 0.9115866"},
      {LowShelving, 2.0F, 0.7F, "-1.813785 0.8294362 1.039238 -1.80596 0.7980241"},
      {LowShelving, 0.5F, 0.7F, "-1.737773 0.7678937 0.9622438 -1.745303 0.7981198"},
      {HighShelving, 2.0F, 0.7F, "-1.813785 0.8294362 1.94613 -3.635396 1.704917"},
      {HighShelving, 0.5F, 0.7F, "-1.868013 0.8760547 0.5138402 -0.9319957 0.4261977"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(SevenDigits(Design(row.type, 1000.0F, row.gain, row.q)), row.expected);
  }
  EXPECT_EQ(DesignBiquad(1, 2000.0F, 2.0F, 1.0F, 96000.0F), Design(Peaking, 1000.0F, 2.0F, 1.0F));
  EXPECT_EQ(DesignBiquad(5, 2000.0F, 0.5F, 0.7F, 96000.0F),
            Design(HighShelving, 1000.0F, 0.5F, 0.7F));
}

// In double, one bit of each row differs.
TEST(Biquad, CuttingShelvesInvertTheGainInSinglePrecision) {
  EXPECT_EQ(
      Design(LowShelving, 8000.0F, 0.3F, 0.7F),
      (BiquadCoefficients{0.061438974F, 0.1673408F, 0.596667051F, -0.368633956F, 0.14060083F}));
  EXPECT_EQ(
      Design(HighShelving, 1000.0F, 0.1F, 0.7F),
      (BiquadCoefficients{-1.94083965F, 0.942507982F, 0.106591046F, -0.193333253F, 0.0884104669F}));
}

TEST(Biquad, IdentityAtExactlyUnityGainOnly) {
  for (const FilterType type : {Peaking, LowShelving, HighShelving}) {
    EXPECT_EQ(Design(type, 1000.0F, 1.0F, 0.7F), BiquadCoefficients{});
    for (const float toward : {0.0F, 2.0F}) {
      EXPECT_LT(Design(type, 1000.0F, std::nextafter(1.0F, toward), 0.7F).a1, -1.0F);
    }
  }
  for (const FilterType type : {LowShelving, HighShelving}) {
    EXPECT_EQ(Design(type, 1000.0F, kNan, 0.7F), BiquadCoefficients{}) << "compares with nothing";
  }
}

TEST(Biquad, EveryBandHasItsRecordAndUnknownTypesKeepIt) {
  for (const std::int32_t code : {0, 6, -1, kIntMin, kIntMax}) {
    EXPECT_FALSE(DesignBiquad(code, 1000.0F, 2.0F, 1.0F, 48000.0F));
  }
  auto values = InitialParameters();
  for (int band = 1; band <= 10; ++band) {
    SetBand(values, band,
            {.enabled = 0.0F, .frequency = 100.0F * static_cast<float>(band), .gain = 2.0F});
  }
  CoefficientTable table;
  UpdateBandCoefficients(values, table);
  for (std::size_t k = 0; k < 10; ++k) {
    EXPECT_EQ(table[k], Design(Peaking, 100.0F * static_cast<float>(k + 1), 2.0F, 1.0F))
        << "designed though it is off";
  }
  const CoefficientTable before = table;
  SetBand(values, 4, {.type = 5.9F, .frequency = 300.0F, .gain = 0.5F, .q = 0.7F});
  SetBand(values, 5, {.type = 6.0F, .frequency = 300.0F, .gain = 0.5F, .q = 0.7F});
  SetBand(values, 6, {.frequency = 300.0F});
  UpdateBandCoefficients(values, 4, table);
  UpdateBandCoefficients(values, 5, table);
  EXPECT_EQ(table[3], Design(HighShelving, 300.0F, 0.5F, 0.7F));
  table[3] = before[3];
  EXPECT_EQ(table, before);
}

}  // namespace
}  // namespace dsp
