// What the knobs do, measured, and that nothing else happens.
#include <gtest/gtest.h>

#include "tests/engine/player.h"

namespace engine {
namespace {

constexpr double kRate = 48000.0;

// How much louder a sine is at the end, in dB, than it went in.
double Gain(const SoundSettings& settings, double frequency, double height = 0.05,
            double rate = kRate) {
  const auto frames = static_cast<std::size_t>(4.0 * rate);
  const Stereo out = Player(rate, settings).Play(Signal(frames, Sine(frequency, height, rate)));
  return Decibels(Amplitude(out.left, frequency, rate, frames * 3 / 4) / height);
}

TEST(EffectsTest, BassAndTrebleAreShelves) {
  for (const double rate : {44100.0, kRate, 96000.0}) {
    for (const auto& [amount, atCorner] : {std::pair(0.0F, -9.256), std::pair(0.25F, -3.963),
                                           std::pair(0.5F, 0.0), std::pair(1.0F, 9.256)}) {
      const double height = 24.0 * (static_cast<double>(amount) - 0.5);
      const SoundSettings bass{.bass = amount};
      const SoundSettings treble{.treble = amount};
      EXPECT_NEAR(Gain(bass, 20.0, 0.05, rate), height, 0.2) << amount;
      EXPECT_NEAR(Gain(bass, 120.0, 0.05, rate), atCorner, 0.05) << amount;
      EXPECT_NEAR(Gain(bass, 2000.0, 0.05, rate), 0.0, 0.1) << amount;
      EXPECT_NEAR(Gain(treble, 18000.0, 0.05, rate), height, 0.4) << amount;
      EXPECT_NEAR(Gain(treble, 6000.0, 0.05, rate), atCorner, 0.05) << amount;
      EXPECT_NEAR(Gain(treble, 300.0, 0.05, rate), 0.0, 0.1) << amount;
    }
  }
}

// From full scale, where there is none, to 40 dB under it; a sine's level is 3 dB under its height.
TEST(EffectsTest, LoudnessGivesQuietPassagesMoreBassAndTreble) {
  const SoundSettings full{.loudness = 1.0F};
  const SoundSettings half{.loudness = 0.5F};
  EXPECT_NEAR(Gain(full, 30.0, 0.001), 12.0, 0.8);
  EXPECT_NEAR(Gain(full, 30.0, 0.1), 6.9, 1.5) << "by its own boost, too";
  EXPECT_NEAR(Gain(half, 30.0, 0.001), 6.0, 0.5);
  EXPECT_NEAR(Gain(full, 15000.0, 0.001), 3.0, 0.5);
  EXPECT_NEAR(Gain(full, 120.0, 0.001, 2.0 * kRate), 9.2, 0.3);
  EXPECT_NEAR(Gain(full, 6000.0, 0.001), 1.8, 0.1);
  EXPECT_NEAR(Gain(full, 900.0, 0.001), 0.6, 0.6);
  EXPECT_LT(Gain(full, 30.0, 0.8), 1.5);
  SoundSettings cut = full;
  cut.bands[5] = BandSettings{dsp::FilterType::Peaking, 900.0F, 0.2512F, 1.0F};
  const Stereo uneven =
      Player(kRate, cut).Play(Signal(192000, Sine(30.0, 0.001, kRate), Sine(900.0, 0.8, kRate)));
  EXPECT_NEAR(Decibels(Amplitude(uneven.left, 30.0, kRate, 144000) / 0.001), 5.8, 0.3)
      << "the level of both channels counts, and after the bands";
}

// Loud sound takes the boost away at once, a pause does not bring it at once.
TEST(EffectsTest, LoudnessFollowsTheLevelUpFastAndDownSlowly) {
  const auto half = static_cast<std::size_t>(4.0 * kRate);
  const auto gainAfterStep = [&](double before, double after, double from, double to) {
    const auto sine = Sine(60.0, 1.0, kRate);
    const Stereo out = Player(kRate, {.loudness = 1.0F}).Play(Signal(2 * half, [&](std::size_t i) {
      return (i < half ? before : after) * sine(i);
    }));
    const auto at = [&](double time) {
      return out.left.begin() + static_cast<std::ptrdiff_t>(half + time * kRate);
    };
    return Decibels(Amplitude({at(from), at(to)}, 60.0, kRate) / after);
  };
  EXPECT_NEAR(gainAfterStep(0.002, 0.1, 0.02, 0.12), 6.6, 0.3);
  EXPECT_NEAR(gainAfterStep(0.1, 0.002, 2.8, 3.2), 8.3, 0.4);
}

// The middle is as it was to the last bit, the sides are up to twice as loud.
TEST(EffectsTest, WidenerWidensTheSidesAlone) {
  const std::size_t latency = LatencyFrames(kRate);
  Player wide(kRate, {.widener = 1.0F});
  const Stereo mono = Signal(5000, Noise(0.3));
  const Stereo same = wide.Play(mono);
  for (std::size_t i = latency; i < 5000; ++i) {
    ASSERT_EQ(same.left[i], mono.left[i - latency]);
    ASSERT_EQ(same.right[i], mono.right[i - latency]);
  }
  for (const float amount : {0.0F, 0.5F, 1.0F}) {
    const Stereo in = Signal(5000, Noise(0.1, 1), Noise(0.1, 2));
    const Stereo out = Player(kRate, {.widener = amount}).Play(in);
    for (std::size_t i = latency; i < 5000; ++i) {
      const float side = in.left[i - latency] - in.right[i - latency];
      ASSERT_NEAR(out.left[i] - out.right[i], (1.0F + amount) * side, 1e-6F);
      ASSERT_NEAR(out.left[i] + out.right[i], in.left[i - latency] + in.right[i - latency], 1e-6F);
    }
  }
}

}  // namespace
}  // namespace engine
