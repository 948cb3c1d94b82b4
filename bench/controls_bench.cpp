// Painting of the controls into bitmaps as large as the advanced dialog has them. The argument is
// the resolution in dots per inch.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <optional>

#include "dsp/response.h"
#include "platform/drawing.h"
#include "platform/fake/fake_single_instance.h"
#include "platform/shell.h"
#include "resources/resource_ids.h"
#include "ui/controls/knob/knob_painter.h"
#include "ui/controls/plot/plot_geometry.h"
#include "ui/controls/plot/plot_painter.h"
#include "ui/controls/shared/control_style.h"
#include "ui/controls/shared/control_window.h"
#include "ui/controls/slider/slider_painter.h"
#include "ui/images/png_resource.h"

namespace {

using platform::Bitmap;
using platform::PixelFormat;
using platform::Size;

struct Machine {
  explicit Machine(const benchmark::State& state)
      : scale(static_cast<double>(state.range(0)) / 96.0) {}

  Size Scaled(Size size) const {
    return {static_cast<std::int32_t>(size.width * scale),
            static_cast<std::int32_t>(size.height * scale)};
  }
  // An image as the loader makes it for a screen of this resolution.
  std::optional<Bitmap> Image(std::uint16_t id) const {
    return ui::LoadPngResource(id, static_cast<float>(ui::kDesignDpi / scale));
  }
  void CaptureInto(ui::BackgroundCopy& background, Size size) const {
    const Bitmap parent = ui::MakeCanvas(size, PixelFormat::PremultipliedArgb32);
    background.Capture(parent, {0, 0, size.width, size.height}, size);
  }

  const double scale;
};

struct Plot {
  explicit Plot(const Machine& machine)
      : size(machine.Scaled({734, 197})),
        mapping(ui::MakePlotMapping(size, static_cast<float>(machine.scale))),
        selected(machine.Image(resources::kImageCyanDot)),
        active(machine.Image(resources::kImageGreyDot)),
        inactive(machine.Image(resources::kImageDarkDot)),
        layer(ui::MakeCanvas(size, PixelFormat::PremultipliedArgb32)),
        target(ui::MakeCanvas(size, PixelFormat::PremultipliedArgb32)) {
    auto values = dsp::InitialParameters();
    dsp::EqBand band = dsp::GetBand(values, 6);
    band.gain = 2.0F;
    dsp::SetBand(values, 6, band);
    dsp::CoefficientTable coefficients;
    dsp::UpdateBandCoefficients(values, coefficients);
    dsp::BuildResponseGrid(data.evalFreqs);
    dsp::EvaluateResponse(values, coefficients, data);
    dsp::MapResponseToPlot(mapping, data);
    PaintGrid();
  }

  void PaintGrid() { ui::PaintPlotGrid(layer, mapping, font, false); }
  void Paint() {
    ui::PaintPlot(target, layer, mapping, {selected, active, inactive}, {data, 6, false});
  }

  const Size size;
  const dsp::PlotMapping mapping;
  const platform::Font font{u"Verdana", 8.0F, platform::FontStyle::Regular};
  const std::optional<Bitmap> selected;
  const std::optional<Bitmap> active;
  const std::optional<Bitmap> inactive;
  Bitmap layer;
  Bitmap target;
  dsp::ResponsePlotData data;
};

void PaintPlot(benchmark::State& state) {
  Plot plot{Machine(state)};
  for (auto _ : state) plot.Paint();
}

void PaintPlotGrid(benchmark::State& state) {
  Plot plot{Machine(state)};
  for (auto _ : state) plot.PaintGrid();
}

void PaintSlider(benchmark::State& state) {
  const Machine machine(state);
  const Size size = machine.Scaled({389, 59});
  const platform::Font font(ui::kCaptionFamily, ui::kCaptionPoints, platform::FontStyle::Bold);
  const std::optional<Bitmap> thumb = machine.Image(resources::kImageGreyDot);
  ui::BackgroundCopy background;
  machine.CaptureInto(background, size);
  Bitmap target = ui::MakeCanvas(size, PixelFormat::PremultipliedArgb32);
  for (auto _ : state) {
    ui::PaintSlider(target, machine.scale, {background, thumb, thumb, font},
                    {.thumbPos = 200, .zeroPos = 100, .valueText = u"+6.3 dB", .caption = u"Gain"});
  }
}

void PaintKnob(benchmark::State& state) {
  const Machine machine(state);
  const Size size = machine.Scaled({128, 154});
  const platform::Font font(ui::kCaptionFamily, ui::kKnobCaptionPoints, platform::FontStyle::Bold);
  ui::BackgroundCopy background;
  machine.CaptureInto(background, size);
  for (auto _ : state) {
    Bitmap target = ui::MakeCanvas(size, PixelFormat::Argb32);
    ui::PaintKnob(target, machine.scale, {background, font},
                  {.knobPos = 200, .caption = u"Loudness"});
  }
}

constexpr std::int64_t kLowDpi = 96;
constexpr std::int64_t kHighDpi = 192;

BENCHMARK(PaintPlot)->Arg(kLowDpi)->Arg(kHighDpi)->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintPlotGrid)->Arg(kLowDpi)->Arg(kHighDpi)->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintSlider)->Arg(kLowDpi)->Arg(kHighDpi)->Unit(benchmark::kMicrosecond);
BENCHMARK(PaintKnob)->Arg(kLowDpi)->Arg(kHighDpi)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  constexpr int kKeepWhatIsSet = 0;
  setenv("QT_QPA_PLATFORM", "offscreen", kKeepWhatIsSet);
  platform::FakeSingleInstance instance;
  const platform::UserInterfaceSession session(instance);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
