// Whatever comes in, nothing leaves above -1 dB of full scale, between the samples either.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "engine/limiter.h"
#include "tests/engine/player.h"

namespace engine {
namespace {

constexpr std::size_t kFrames = 24000;

std::map<std::string, std::function<double(std::size_t)>> HostileSignals() {
  std::map<std::string, std::function<double(std::size_t)>> signals = {
      {"noise", Noise(2.0)},
      {"impulses", [](std::size_t i) { return i % 1000 == 500 ? 30.0 : 0.0; }},
      // All energy at a frequency whose peaks hide between the samples.
      {"a quarter of the rate", [](std::size_t i) {
         return 1.15 * std::sin(std::numbers::pi * (0.5 * static_cast<double>(i) + 0.25));
       }}};
  for (const double part : {0.05, 0.3, 0.4, 0.4535, 0.49}) {
    signals["sine at " + std::to_string(part)] = Sine(part, 2.0, 1.0);
  }
  return signals;
}

// Of either channel, and with either kind of settings.
TEST(LimiterTest, NothingPassesOneDecibelUnderFullScale) {
  const SoundSettings loud{.bass = 1.0F, .treble = 1.0F, .widener = 1.0F, .loudness = 1.0F};
  const auto silence = [](std::size_t) { return 0.0; };
  for (const auto& [name, sample] : HostileSignals()) {
    const Stereo plain = Player(48000.0).Play(Signal(kFrames, sample, silence));
    const Stereo raised = Player(48000.0, loud).Play(Signal(kFrames, silence, sample));
    for (const auto& out : {plain.left, raised.right}) {
      EXPECT_LE(Decibels(TruePeak(out)), -1.0) << name;
      EXPECT_TRUE(std::ranges::all_of(out, [](float x) { return std::isfinite(x); }));
    }
  }
}

// What stays under the limit comes out as it went in, to the bit and so much later; what does not
// is as loud as may be.
TEST(LimiterTest, TakesNothingFromWhatIsLowEnough) {
  SoundSettings neutral;
  neutral.bands.fill(BandSettings{});
  for (const double rate : {8000.0, 44100.0, 48000.0, 96000.0, 768000.0}) {
    const std::size_t latency = LatencyFrames(rate);
    EXPECT_LE(static_cast<double>(latency), 0.00125 * rate + 32.0)
        << "1.25 ms and the estimate's taps";
    Stereo in = Signal(20000, Noise(0.1, 1), Sine(440.0, 0.78, rate));
    in.left[100] = 0.6F;
    const Stereo out = Player(rate, neutral).Play(in);
    for (std::size_t i = 0; i + latency < in.left.size(); ++i) {
      ASSERT_EQ(out.left[i + latency], in.left[i]) << rate << " " << i;
      ASSERT_EQ(out.right[i + latency], in.right[i]) << rate << " " << i;
    }
  }
  const Stereo loud = Player(48000.0).Play(Signal(48000, Sine(1000.0, 2.0, 48000.0)));
  EXPECT_NEAR(Decibels(Amplitude(loud.left, 1000.0, 48000.0, 24000)), -1.0, 0.6);
  EXPECT_LT(Amplitude(loud.left, 3000.0, 48000.0, 24000), 0.001) << "no distortion";
}

// By half of the way in some 100 ms, so that a beat does not pump what follows it.
TEST(LimiterTest, LetsGoSlowly) {
  EXPECT_EQ(LatencyFrames(48000.0), 81U);
  const Stereo out =
      Player(48000.0).Play(Signal(48000, [sine = Sine(1000.0, 1.0, 48000.0)](std::size_t i) {
        return (i < 24000 ? 2.0 : 0.4) * sine(i);
      }));
  const std::vector<float> after(out.left.begin() + 24000, out.left.begin() + 24000 + 14400);
  EXPECT_NEAR(Amplitude(after, 1000.0, 48000.0), 0.4 * (1.0 - 0.58 * std::exp(-1.0)), 0.02);
}

}  // namespace
}  // namespace engine
