#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "engine/filter_cascade.h"
#include "engine/sound_processor.h"
#include "tests/engine/scalar_engine.h"

namespace engine {
namespace {

constexpr std::size_t kFrames = 1024;

// Ten bands of all types, all of them filtering.
SoundSettings TenBands() {
  SoundSettings settings;
  for (std::size_t k = 0; k < settings.bands.size(); ++k) {
    settings.bands[k] = BandSettings{.type = static_cast<dsp::FilterType>(1 + k % 5),
                                     .frequency = 31.0F * std::pow(2.0F, static_cast<float>(k)),
                                     .gain = k % 2 == 0 ? 1.5F : 0.7F,
                                     .q = 0.7F};
  }
  // Their products would leave little of a signal.
  settings.bands[1]->frequency = 18000.0F;
  settings.bands[6]->frequency = 17000.0F;
  settings.bands[2]->frequency = 25.0F;
  settings.bands[7]->frequency = 30.0F;
  return settings;
}

SoundSettings AllEffects() {
  SoundSettings settings = TenBands();
  settings.bass = 0.7F;
  settings.treble = 0.6F;
  settings.widener = 0.5F;
  settings.loudness = 0.5F;
  return settings;
}

std::vector<float> Noise(float height, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> sample(-height, height);
  std::vector<float> noise(kFrames);
  for (float& x : noise) x = sample(random);
  return noise;
}

void CountFrames(benchmark::State& state) {
  state.counters["per_frame"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kFrames,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_TenBandsScalar(benchmark::State& state) {
  const SoundDesign design = DesignSound(TenBands(), static_cast<double>(state.range(0)));
  ScalarBands left(design);
  ScalarBands right(design);
  std::vector<float> l = Noise(0.1F, 1);
  std::vector<float> r = Noise(0.1F, 2);
  while (state.KeepRunning()) {
    for (std::size_t i = 0; i < kFrames; ++i) {
      benchmark::DoNotOptimize(left.Next(l[i]));
      benchmark::DoNotOptimize(right.Next(r[i]));
    }
  }
  CountFrames(state);
}
BENCHMARK(BM_TenBandsScalar)->ArgName("rate")->Arg(48000);

void FilterTenBands(benchmark::State& state, PairRunner runPairs) {
  FilterCascade cascade(runPairs);
  cascade.Start(DesignSound(TenBands(), static_cast<double>(state.range(0))));
  const std::vector<float> left = Noise(0.1F, 1);
  const std::vector<float> right = Noise(0.1F, 2);
  std::vector<Frame> block(kBlockFrames);
  while (state.KeepRunning()) {
    for (std::size_t at = 0; at < kFrames; at += kBlockFrames) {
      for (std::size_t i = 0; i < kBlockFrames; ++i) {
        block[i] = MakeFrame(left[at + i], right[at + i]);
      }
      cascade.Process(block.data(), block.size());
      benchmark::DoNotOptimize(block.data());
      benchmark::ClobberMemory();
    }
  }
  CountFrames(state);
}

void BM_TenBands(benchmark::State& state) {
  FilterTenBands(state, BestPairRunner());
}
BENCHMARK(BM_TenBands)->ArgName("rate")->Arg(44100)->Arg(48000)->Arg(96000);

void BM_TenBandsPlainly(benchmark::State& state) {
  FilterTenBands(state, RunPairsPlainly);
}
BENCHMARK(BM_TenBandsPlainly)->ArgName("rate")->Arg(44100)->Arg(48000)->Arg(96000);

void Play(benchmark::State& state, const SoundSettings& settings, float height) {
  DesignExchange exchange;
  exchange.Publish(DesignSound(settings, static_cast<double>(state.range(0))));
  SoundProcessor processor(exchange);
  const std::vector<float> left = Noise(height, 1);
  const std::vector<float> right = Noise(height, 2);
  std::vector<float> outLeft(kFrames);
  std::vector<float> outRight(kFrames);
  for (int i = 0; i < 100; ++i) {  // past the fade
    processor.Process(left.data(), right.data(), outLeft.data(), outRight.data(), kFrames);
  }
  while (state.KeepRunning()) {
    processor.Process(left.data(), right.data(), outLeft.data(), outRight.data(), kFrames);
    benchmark::DoNotOptimize(outLeft.data());
    benchmark::ClobberMemory();
  }
  CountFrames(state);
}

void BM_NeutralSound(benchmark::State& state) {
  Play(state, {}, 0.1F);
}
BENCHMARK(BM_NeutralSound)->ArgName("rate")->Arg(48000);

// So low that the limiter rests.
void BM_AllEffects(benchmark::State& state) {
  Play(state, AllEffects(), 0.01F);
}
BENCHMARK(BM_AllEffects)->ArgName("rate")->Arg(44100)->Arg(48000)->Arg(96000);

// Twice full scale, so that the limiter never rests.
void BM_AllEffectsLimited(benchmark::State& state) {
  Play(state, AllEffects(), 2.0F);
}
BENCHMARK(BM_AllEffectsLimited)->ArgName("rate")->Arg(48000);

void BM_DesignSound(benchmark::State& state) {
  const SoundSettings settings = AllEffects();
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(DesignSound(settings, static_cast<double>(state.range(0))));
  }
}
BENCHMARK(BM_DesignSound)->ArgName("rate")->Arg(44100)->Arg(48000);

}  // namespace
}  // namespace engine

BENCHMARK_MAIN();
