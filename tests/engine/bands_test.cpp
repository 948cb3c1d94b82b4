// What the panel draws is what is heard: impulses sent through the engine, transformed, and
// compared with the panel's own curve.
#include <gtest/gtest.h>

#include <string>

#include "dsp/response.h"
#include "engine/filter_cascade.h"
#include "tests/engine/player.h"
#include "tests/engine/scalar_engine.h"

namespace engine {
namespace {

using Values = std::array<float, dsp::kParameterCount>;

struct Set {
  std::string name;
  Values values = dsp::InitialParameters();
};

// Each type low, in the middle and high, where rates differ most; ten bands at random; switches.
std::vector<Set> Sets() {
  std::vector<Set> sets;
  for (int type = 1; type <= 5; ++type) {
    for (const float gain : {0.2512F, 3.981F}) {
      Set& set = sets.emplace_back("type " + std::to_string(type));
      const float frequency = type == 2 ? 16000.0F : type == 3 ? 60.0F : 40.0F;
      dsp::SetBand(
          set.values, 1,
          {.type = static_cast<float>(type), .frequency = frequency, .gain = gain, .q = 0.7F});
      dsp::SetBand(set.values, 9,
                   {.type = static_cast<float>(type == 2 ? 1 : type),
                    .frequency = type == 3 ? 900.0F : 15000.0F,
                    .gain = gain,
                    .q = 2.0F});
    }
  }
  std::mt19937 random(7);
  for (int i = 0; i < 3; ++i) {
    Set& set = sets.emplace_back("random " + std::to_string(i));
    for (int band = 1; band <= dsp::kBandCount; ++band) {
      const BandSettings b = RandomBand(random);
      dsp::SetBand(set.values, band, {1.0F, static_cast<float>(b.type), b.frequency, b.gain, b.q});
    }
  }
  Set& switched = sets.emplace_back("band off");
  dsp::SetBand(switched.values, 6, {.enabled = 0.0F, .frequency = 1000.0F, .gain = 4.0F});
  dsp::SetBand(switched.values, 7, {.frequency = 3000.0F, .gain = 2.0F});
  return sets;
}

class BandsTest : public testing::TestWithParam<double> {};

TEST_P(BandsTest, SoundAsThePanelDrawsThem) {
  constexpr double kHeight = 1e-4;  // low enough for every boost
  const double rate = GetParam();
  dsp::EvalFreqs grid;
  dsp::BuildResponseGrid(grid);
  for (const Set& set : Sets()) {
    const Stereo heard = Player(rate, DecodeSettings(set.values))
                             .Play(Signal(
                                 40000, [](std::size_t i) { return i == 0 ? kHeight : 0.0; },
                                 [](std::size_t i) { return i == 5 ? -0.5 * kHeight : 0.0; }));
    double worst = 0.0;
    for (const double frequency : grid.f) {
      std::complex<double> left = 0.0;
      std::complex<double> right = 0.0;
      std::complex<double> turn = 1.0;
      const auto step = std::polar(1.0, -2.0 * std::numbers::pi * frequency / rate);
      for (std::size_t n = 0; n < heard.left.size(); ++n, turn *= step) {
        left += turn * static_cast<double>(heard.left[n]);
        right += turn * static_cast<double>(heard.right[n]);
      }
      const double exact = PanelDecibels(set.values, frequency);
      if (exact < -70.0) continue;
      worst = std::max({worst, std::abs(Decibels(std::abs(left) / kHeight) - exact),
                        std::abs(Decibels(2.0 * std::abs(right) / kHeight) - exact)});
    }
    EXPECT_LE(worst, 0.015) << set.name;
  }
}

// Lower and higher rates have a part of the curve only, or filters longer apart.
INSTANTIATE_TEST_SUITE_P(Rates, BandsTest, testing::Values(44100.0, 48000.0, 96000.0, 176400.0));

// Neither 48 kHz nor 44.1 fit into it: a filter of its own, whose curve does not come back.
TEST(BandsDesignTest, AnotherHighRateHasFiltersOfItsOwn) {
  SoundSettings settings;
  settings.bands[0] = BandSettings{dsp::FilterType::Peaking, 16000.0F, 3.0F, 1.0F};
  const auto gain = [&](double frequency) {
    const Stereo heard =
        Player(80000.0, settings).Play(Signal(20000, Sine(frequency, 0.1, 80000.0)));
    return 10.0 * Amplitude(heard.left, frequency, 80000.0, 10000);
  };
  EXPECT_NEAR(gain(16000.0), 3.0, 1e-4);
  EXPECT_LT(gain(24000.0), 2.5);
}

TEST(BandsDesignTest, EveryRateIsStable) {
  std::mt19937 random(3);
  for (const double rate : {1.0, 8000.0, 22050.0, 64000.0, 100000.0, 352800.0, 768000.0, 1e9}) {
    SoundSettings settings{.bass = 0.9F, .treble = 0.9F};
    for (int round = 0; round < 20; ++round) {
      for (auto& band : settings.bands) band = RandomBand(random);
      const SoundDesign design = DesignSound(settings, rate);
      ASSERT_LE(design.stride, kMaxStride);
      for (const Section& s : design.AllSections()) {
        ASSERT_TRUE(std::abs(s.a2) < 1.0 && std::abs(s.a1) < 1.0 + s.a2 && s.gain > 0.0) << rate;
      }
    }
  }
}

TEST(BandsDesignTest, LanesDoWhatScalarsDo) {
  constexpr std::array<std::size_t, 6> kPortions = {1, 2, 5, 256, 17, 256};
  std::mt19937 random(5);
  for (const double rate : {44100.0, 48000.0, 96000.0}) {
    SoundSettings settings;
    for (auto& band : settings.bands) {
      band = RandomBand(random);
      band->type = dsp::FilterType::Peaking;
    }
    const SoundDesign design = DesignSound(settings, rate);
    FilterCascade plain(RunPairsPlainly);
    FilterCascade best;
    plain.Start(design);
    best.Start(design);
    auto noise = Noise(0.5);
    ScalarBands left(design);
    ScalarBands right(design);
    double error = 0.0;
    double power = 0.0;
    for (int turn = 0; turn < 300; ++turn) {
      std::vector<Frame> in(kPortions[static_cast<std::size_t>(turn) % kPortions.size()]);
      for (Frame& frame : in) frame = MakeFrame(noise(0), noise(0));
      std::vector<Frame> out = in;
      std::vector<Frame> plainOut = in;
      best.Process(out.data(), out.size());
      plain.Process(plainOut.data(), out.size());
      for (std::size_t i = 0; i < in.size(); ++i) {
        const double l = left.Next(in[i].lanes[0]);
        const double r = right.Next(in[i].lanes[1]);
        error += std::pow(out[i].lanes[0] - l, 2) + std::pow(out[i].lanes[1] - r, 2);
        power += l * l + r * r;
        ASSERT_EQ(out[i].lanes[0], plainOut[i].lanes[0]) << rate;
        ASSERT_EQ(out[i].lanes[1], plainOut[i].lanes[1]) << rate;
      }
    }
    EXPECT_LE(10.0 * std::log10(error / power), -120.0) << rate;
  }
}

}  // namespace
}  // namespace engine
