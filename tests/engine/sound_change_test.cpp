// Changes while something plays.
#include <gtest/gtest.h>

#include "tests/engine/player.h"
#include "tests/engine/scalar_engine.h"

namespace engine {
namespace {

constexpr double kRate = 48000.0;
constexpr double kTone = 375.0;  // Hz
constexpr std::size_t kSecond = 48000;

SoundSettings AllBands(float gain) {
  SoundSettings settings;
  float frequency = 31.0F;
  for (auto& band : settings.bands) {
    band = BandSettings{dsp::FilterType::Peaking, frequency, gain, 1.0F};
    frequency = std::min(2.0F * frequency, 16000.0F);
  }
  return settings;
}

SoundSettings Filter(dsp::FilterType type, float frequency, float gain = 1.0F) {
  SoundSettings settings;
  settings.bands[2] = BandSettings{type, frequency, gain, 0.7F};
  return settings;
}

double Highest(const std::vector<float>& channel) {
  return std::abs(*std::ranges::max_element(channel, {}, [](float x) { return std::abs(x); }));
}

// The same once all below 4 kHz is taken away, by a filter of the eighth order.
double HighestOfHighPassed(std::vector<float> channel) {
  SoundSettings steep;
  for (std::size_t k = 0; k < 4; ++k) {
    steep.bands[k] = BandSettings{.type = dsp::FilterType::HighPass, .frequency = 4000.0F};
  }
  ScalarBands filter(DesignSound(steep, kRate));
  for (float& x : channel) x = static_cast<float>(filter.Next(x));
  channel.erase(channel.begin(), channel.begin() + kSecond / 2);
  return Highest(channel);
}

TEST(SoundChangeTest, FullRangeChangesDoNotClick) {
  using dsp::FilterType;
  const std::array<std::pair<SoundSettings, SoundSettings>, 6> changes = {{
      {AllBands(0.2512F), AllBands(3.981F)},
      {AllBands(3.981F), {}},
      {Filter(FilterType::LowPass, 200.0F), Filter(FilterType::HighPass, 200.0F)},
      {Filter(FilterType::LowShelving, 500.0F, 3.98F),
       Filter(FilterType::LowShelving, 500.0F, 0.2512F)},
      {{.bass = 0.0F, .loudness = 1.0F}, {.bass = 1.0F, .treble = 1.0F, .widener = 1.0F}},
      {{}, Filter(FilterType::HighPass, 20000.0F)},
  }};
  for (std::size_t i = 0; i < changes.size(); ++i) {
    for (const auto& [from, to] : {changes[i], std::pair(changes[i].second, changes[i].first)}) {
      Player player(kRate, from);
      const auto sine = Sine(kTone, 0.004, kRate);
      Stereo heard = player.Play(Signal(kSecond, sine));
      double loudest = Highest(heard.left);
      // Two more in the midst of a fade, after whole periods.
      for (const auto& [next, frames] : {std::pair(to, 256), {from, 256}, {to, 48000}}) {
        player.Set(next);
        const Stereo after = player.Play(Signal(static_cast<std::size_t>(frames), sine));
        loudest = std::max(loudest, Highest(after.left));
        heard.left.insert(heard.left.end(), after.left.begin(), after.left.end());
      }
      EXPECT_LE(Decibels(HighestOfHighPassed(heard.left) / loudest), -60.0) << i;
    }
  }
}

TEST(SoundChangeTest, FadesAlongARaisedCosineOfTwentyMilliseconds) {
  const auto constant = [](double value) { return [=](std::size_t) { return value; }; };
  const Stereo sides = Signal(4000, constant(0.1), constant(-0.1));
  for (const double rate : {kRate, 2.0 * kRate}) {
    Player player(rate);
    player.Play(sides);
    player.Set({.widener = 1.0F});
    const Stereo out = player.Play(sides);
    for (const double part : {0.0, 0.25, 0.5, 0.75, 1.0}) {
      const std::size_t at = LatencyFrames(rate) + static_cast<std::size_t>(0.02 * rate * part);
      EXPECT_NEAR(out.left[at], 0.15 - 0.05 * std::cos(std::numbers::pi * part), 0.0005) << part;
    }
  }
}

// A filter that rings for long goes on ringing, whatever another one before it did far away; what
// filters held when they were taken out of the sound does not come back with them.
TEST(SoundChangeTest, GoesOnFromWhatWasHeardAndBringsNoOldSoundBack) {
  constexpr double kDeep = 31.25;
  SoundSettings settings;
  settings.bands[1] = BandSettings{dsp::FilterType::Peaking, 31.25F, 3.9F, 5.0F};
  SoundSettings shelved = settings;
  shelved.bands[0] = BandSettings{dsp::FilterType::HighShelving, 10000.0F, 3.9F, 0.7F};
  for (const double rate : {kRate, 2.0 * kRate}) {
    const auto period = static_cast<std::size_t>(rate / kDeep);
    Player player(rate, shelved);
    player.Play(Signal(40 * period, Sine(kDeep, 0.05, rate)));
    player.Set(settings);
    const Stereo out = player.Play(Signal(2 * period, Sine(kDeep, 0.05, rate)));
    EXPECT_NEAR(Amplitude(out.left, kDeep, rate, period), 0.195, 0.005) << rate;

    const Stereo silence = Signal(100 * period, [](std::size_t) { return 0.0; });
    player.Set({});
    player.Play(silence);
    player.Set(shelved);
    EXPECT_EQ(Highest(player.Play(silence).left), 0.0) << rate;

    // Loud sound, which loudness leaves alone, it goes on leaving alone.
    player.Set({.loudness = 1.0F});
    player.Play(Signal(80 * period, Sine(kDeep, 0.5, rate)));
    player.Set({.treble = 0.6F, .loudness = 1.0F});
    EXPECT_LT(Highest(player.Play(Signal(4 * period, Sine(kDeep, 0.5, rate))).left), 0.75) << rate;
  }
}

// One that comes during a fade waits, and of several the last counts.
TEST(SoundChangeTest, TheLastOfManyCounts) {
  Player player(kRate);
  const auto sine = Sine(kTone, 0.004, kRate);
  for (int round = 0; round < 50; ++round) {
    player.Set(Filter(dsp::FilterType::Peaking, 375.0F, round % 2 == 0 ? 0.25F : 4.0F));
    player.Set(Filter(dsp::FilterType::Peaking, 375.0F, 2.0F + static_cast<float>(round % 3)));
    player.Play(Signal(128, sine));
  }
  player.Set({.loudness = 1.0F});
  player.Play(Signal(4 * kSecond, sine));
  EXPECT_GT(Amplitude(player.Play(Signal(kSecond, sine)).left, kTone, kRate), 0.0045);
  player.Set(Filter(dsp::FilterType::Peaking, 375.0F, 3.0F));
  player.Play(Signal(kSecond, sine));
  EXPECT_NEAR(Amplitude(player.Play(Signal(kSecond, sine)).left, kTone, kRate), 0.012, 1e-6);
}

TEST(SoundChangeTest, AnotherRateStartsFromSilence) {
  DesignExchange exchange;
  SoundProcessor processor(exchange);
  std::vector<float> left(4096, 0.5F);
  std::vector<float> right(4096, 0.5F);
  processor.Process(left.data(), right.data(), left.data(), right.data(), left.size());
  exchange.Publish(DesignSound({}, 96000.0));
  left.assign(4096, 0.0F);
  processor.Process(left.data(), left.data(), left.data(), right.data(), left.size());
  EXPECT_EQ(Highest(left), 0.0);
  left[0] = 0.25F;
  processor.Process(left.data(), left.data(), left.data(), right.data(), left.size());
  EXPECT_EQ(right[LatencyFrames(96000.0)], 0.25F);
}

TEST(SoundChangeTest, PortionsDoNotMatter) {
  SoundSettings settings = AllBands(2.0F);
  settings.bass = settings.widener = settings.loudness = 0.7F;
  // Long enough between what is loud for the limiter to rest.
  const Stereo in = Signal(7 * kSecond, [noise = Noise(1.0)](std::size_t i) mutable {
    return noise(i) * (i / 3000 % 100 == 0 ? 1.0 : 0.01);
  });
  DesignExchange exchange;
  SoundProcessor processor(exchange);
  exchange.Publish(DesignSound(settings, kRate));
  Stereo out = in;
  processor.Process(in.left.data(), in.right.data(), out.left.data(), out.right.data(), 64);
  processor.Reset();
  processor.Process(in.left.data(), in.right.data(), out.left.data(), out.right.data(),
                    in.left.size());
  EXPECT_EQ(Player(kRate, settings).Play(in).left, out.left);
}

}  // namespace
}  // namespace engine
