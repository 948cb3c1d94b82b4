// From the start of a process to its first window on the screen, and what it then weighs.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <thread>

#include "bench/sample_laptop.h"
#include "tests/audio/pulse_daemon.h"
#include "tests/support/child_process.h"
#include "tests/support/x11_desktop.h"

namespace {

using Clock = std::chrono::steady_clock;
using Environment = std::map<std::string, std::string>;

// Proportional set size in MiB.
double Pss(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("Pss:")) return std::stod(line.substr(4)) / 1024.0;
  }
  return 0.0;
}

// Processor time spent so far, in seconds.
double ProcessorTime(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/schedstat");
  double nanoseconds = 0.0;
  file >> nanoseconds;
  return nanoseconds / 1e9;
}

void Start(benchmark::State& state, const std::string& program, const std::string& title,
           const Environment& environment) {
  support::X11Desktop desktop;
  for ([[maybe_unused]] auto _ : state) {
    const Clock::time_point begin = Clock::now();
    support::ChildProcess process({program}, environment);
    while (!desktop.FindWindow(title)) {
      if (Clock::now() - begin > std::chrono::seconds(10)) {
        state.SkipWithError("no window");
        return;
      }
      std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    state.counters["PSS_MiB"] = Pss(process.Pid());
  }
}

void BM_StartEmptyWindow(benchmark::State& state) {
  Start(state, BENCH_DIR "/empty_window", "Empty", {});
}

void BM_StartStandardPanel(benchmark::State& state) {
  Start(state, TONALYX_BIN_DIR "/tonalyx", "Tonalyx", bench::PrepareLaptop("layers").environment);
}

void BM_StartDavrinPanel(benchmark::State& state) {
  Start(state, TONALYX_BIN_DIR "/tonalyx", "Tonalyx", bench::PrepareLaptop("davrin").environment);
}

// Another program for the same sound, of the same toolkit, for scale.
void BM_StartPeer(benchmark::State& state) {
  const support::PulseDaemon server({"speaker"});
  Start(state, "pavucontrol-qt", "Volume Control", {{"PULSE_SERVER", server.Server()}});
}

// How often the process's threads have been put on a processor because something woke them.
double WakeUps(pid_t process) {
  double sum = 0.0;
  const std::filesystem::path tasks = "/proc/" + std::to_string(process) + "/task";
  for (const auto& task : std::filesystem::directory_iterator(tasks)) {
    std::ifstream file(task.path() / "status");
    constexpr std::string_view kField = "voluntary_ctxt_switches:";
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with(kField)) sum += std::stod(line.substr(kField.size()));
    }
  }
  return sum;
}

// Processor time of the main thread, and wake-ups of all, during five seconds of which nothing
// happens in any.
void BM_IdlePanel(benchmark::State& state) {
  const Environment environment = bench::PrepareLaptop("layers").environment;
  support::X11Desktop desktop;
  for ([[maybe_unused]] auto _ : state) {
    support::ChildProcess process({TONALYX_BIN_DIR "/tonalyx"}, environment);
    desktop.WaitForWindow("Tonalyx", std::chrono::seconds(10));
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const double before = ProcessorTime(process.Pid());
    const double wakeUpsBefore = WakeUps(process.Pid());
    std::this_thread::sleep_for(std::chrono::seconds(5));
    const double spent = ProcessorTime(process.Pid()) - before;
    state.SetIterationTime(spent);
    state.counters["percent_of_core"] = 100.0 * spent / 5.0;
    state.counters["wake_ups_per_s"] = (WakeUps(process.Pid()) - wakeUpsBefore) / 5.0;
  }
}

// The whole install run: process, identification, import of a full file, log; and the making of
// that file, which takes a hundredth of it.
void BM_InstallRun(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    const bench::Laptop laptop = bench::PrepareLaptop("layers");
    const Clock::time_point begin = Clock::now();
    bench::ImportSample(laptop);
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
  }
}

BENCHMARK(BM_StartEmptyWindow)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartStandardPanel)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartDavrinPanel)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IdlePanel)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_InstallRun)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (std::getenv("TONALYX_BENCH_PEERS") != nullptr) {
    benchmark::RegisterBenchmark("BM_StartPeer", BM_StartPeer)
        ->UseManualTime()
        ->Iterations(10)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
