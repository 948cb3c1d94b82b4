// A marker dragged by a thousand moves of a real pointer, as fast as the display takes them: how
// long after the last one the store still changes.
#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <thread>

#include "bench/sample_laptop.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/wake_event.h"
#include "store/registry_layout.h"
#include "tests/support/child_process.h"
#include "tests/support/x11_desktop.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kMoves = 1000;
constexpr const char16_t* kSpeaker = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";

// The advanced dialog, expanded, of a panel that runs.
support::ScreenRect OpenDialog(support::X11Desktop& desktop) {
  const auto panel = desktop.WaitForWindow("Tonalyx", seconds(10));
  std::this_thread::sleep_for(milliseconds(300));
  desktop.Click(panel->x + 80, panel->y + 416);
  const auto collapsed = desktop.WaitForWindow("Velsona", seconds(10));
  std::this_thread::sleep_for(milliseconds(300));
  desktop.Click(collapsed->x + 703, collapsed->y + 191);
  std::this_thread::sleep_for(milliseconds(500));
  return *desktop.FindWindow("Velsona");
}

void BM_ThousandMoves(benchmark::State& state) {
  const bench::Laptop laptop = bench::PrepareLaptop("layers");
  support::X11Desktop desktop;
  platform::SqliteRegistry registry(laptop.folder / "state");
  platform::WakeEvent written;
  const auto set = registry.OpenKey(platform::RegistryRoot::LocalMachine,
                                    store::SettingKeyPath(store::Tree::Parameters, kSpeaker, u"2"),
                                    store::kReadAccess);
  for ([[maybe_unused]] auto _ : state) {
    support::ChildProcess panel({TONALYX_BIN_DIR "/tonalyx"}, laptop.environment);
    const support::ScreenRect dialog = OpenDialog(desktop);
    // The marker of 1 kHz, at 0 dB in the sample tuning.
    const support::ScreenPoint marker{dialog.x + 432, dialog.y + 343};
    desktop.MovePointer(marker.x, marker.y);
    desktop.PressButton();
    std::this_thread::sleep_for(milliseconds(100));
    const Clock::time_point begin = Clock::now();
    for (int i = 0; i < kMoves; ++i) {
      desktop.MovePointer(marker.x - 100 + i % 200, marker.y - 40 + i % 80);
    }
    const Clock::time_point end = Clock::now();
    Clock::time_point lastWrite = end;
    set->NotifyChange(written);
    while (written.WaitFor(milliseconds(200))) {
      lastWrite = Clock::now();
      set->NotifyChange(written);
    }
    desktop.ReleaseButton();
    state.SetIterationTime(std::chrono::duration<double>(lastWrite - end).count());
    state.counters["moves_ms"] = std::chrono::duration<double, std::milli>(end - begin).count();
  }
}

BENCHMARK(BM_ThousandMoves)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
