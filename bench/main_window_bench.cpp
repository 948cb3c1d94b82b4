// What the main window costs: loading its artwork, and one picture of it at the screen's
// resolution.
#include <benchmark/benchmark.h>

#include <memory>

#include "platform/screen.h"
#include "platform/shell.h"
#include "tests/support/no_instance.h"
#include "ui/main/skin_composer.h"

namespace {

using ui::Element;
using ui::MainImages;
using ui::MainScene;
using ui::Skin;
using ui::SkinComposer;

Skin SkinOf(const benchmark::State& state) {
  return state.range(0) == 0 ? Skin::Standard : Skin::Davrin;
}

// Everything that can be drawn is drawn.
constexpr MainScene kScene{.selectedMode = 1, .threeGuiLayers = true, .endpointWarning = true};

void LoadImages(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(MainImages::Load(SkinOf(state)));
}
BENCHMARK(LoadImages)->ArgName("davrin")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The pointer moves from button to button; every picture is composed anew.
void ComposePicture(benchmark::State& state) {
  const double scale = platform::GetScreenDpi().x / 96.0;
  SkinComposer composer(SkinOf(state), scale, MainImages::Load(SkinOf(state)));
  MainScene scene = kScene;
  for ([[maybe_unused]] auto _ : state) {
    scene.hoverItem = scene.hoverItem == Element::Close ? Element::Minimize : Element::Close;
    benchmark::DoNotOptimize(composer.Compose(scene));
  }
}
BENCHMARK(ComposePicture)->ArgName("davrin")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  support::NoInstance instance;
  const platform::UserInterfaceSession session(instance);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
