#include <benchmark/benchmark.h>

#include <cmath>

#include "dsp/biquad.h"
#include "dsp/response.h"

namespace dsp {
namespace {

// Ten bands of all types, all of them filtering.
std::array<float, kParameterCount> BusySet() {
  auto values = InitialParameters();
  for (int band = 1; band <= kBandCount; ++band) {
    EqBand fields = GetBand(values, band);
    fields.type = static_cast<float>(1 + band % 5);
    fields.gain = 0.3F * static_cast<float>(band);
    SetBand(values, band, fields);
  }
  return values;
}

struct Fixture {
  Fixture() {
    UpdateBandCoefficients(values, table);
    BuildResponseGrid(plot.evalFreqs);
  }

  std::array<float, kParameterCount> values = BusySet();
  CoefficientTable table;
  ResponsePlotData plot;
  PlotMapping mapping{.width = 734,
                      .height = 197,
                      .dpiScale = 1.0F,
                      .plotLeft = 30,
                      .plotRight = 15,
                      .logFreqMin = std::log10(20.0),
                      .logFreqMax = std::log10(20000.0)};
};

void BM_DesignBand(benchmark::State& state) {
  float gain = 2.0F;
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(gain);
    benchmark::DoNotOptimize(
        DesignBiquad(static_cast<std::int32_t>(state.range(0)), 1000.0F, gain, 0.7F, kSampleRate));
  }
}
BENCHMARK(BM_DesignBand)->ArgName("type")->DenseRange(1, 5);

void BM_EvaluateTenBands(benchmark::State& state) {
  Fixture fixture;
  while (state.KeepRunning()) {
    EvaluateResponse(fixture.values, fixture.table, fixture.plot);
    benchmark::DoNotOptimize(fixture.plot);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_EvaluateTenBands);

void BM_EvaluateAndMap(benchmark::State& state) {
  Fixture fixture;
  while (state.KeepRunning()) {
    EvaluateResponse(fixture.values, fixture.table, fixture.plot);
    MapResponseToPlot(fixture.mapping, fixture.plot);
    benchmark::DoNotOptimize(fixture.plot);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_EvaluateAndMap);

}  // namespace
}  // namespace dsp

BENCHMARK_MAIN();
