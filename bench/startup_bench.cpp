// From the start of a process to its first window on the screen, and what it then weighs.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

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

// A virtual laptop of this kind with the sample tuning in a store of its own.
Environment PrepareLaptop(const std::string& kind) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("tonalyx-bench-" + kind);
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder / "program");
  std::filesystem::copy(TONALYX_BIN_DIR "/tonalyx", folder / "program" / "tonalyx");
  Environment environment = {{"TONALYX_ROOT", (folder / "state").string()},
                             {"TONALYX_LAPTOP", (folder / "laptop.json").string()}};
  support::RunProcess(
      {TONALYX_BIN_DIR "/laptopctl", (folder / "laptop.json").string(), "new", kind}, environment);
  support::RunProcess(
      {TONALYX_BIN_DIR "/vtdmake", TONALYX_SOURCE_DIR "/resources/samples/sample.json",
       (folder / "program" / "0.vtd").string()},
      environment);
  support::RunProcess({(folder / "program" / "tonalyx").string(), "/init"}, environment);
  return environment;
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
  Start(state, TONALYX_BIN_DIR "/tonalyx", "Tonalyx", PrepareLaptop("layers"));
}

void BM_StartDavrinPanel(benchmark::State& state) {
  Start(state, TONALYX_BIN_DIR "/tonalyx", "Tonalyx", PrepareLaptop("davrin"));
}

// Processor time of the main thread during five seconds of which nothing happens in any.
void BM_IdlePanel(benchmark::State& state) {
  const Environment environment = PrepareLaptop("layers");
  support::X11Desktop desktop;
  for ([[maybe_unused]] auto _ : state) {
    support::ChildProcess process({TONALYX_BIN_DIR "/tonalyx"}, environment);
    desktop.WaitForWindow("Tonalyx", std::chrono::seconds(10));
    std::this_thread::sleep_for(std::chrono::seconds(1));
    const double before = ProcessorTime(process.Pid());
    std::this_thread::sleep_for(std::chrono::seconds(5));
    const double spent = ProcessorTime(process.Pid()) - before;
    state.SetIterationTime(spent);
    state.counters["percent_of_core"] = 100.0 * spent / 5.0;
  }
}

// The whole install run: process, identification, import of a full file, log.
void BM_InstallRun(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    Environment environment = PrepareLaptop("layers");
    const std::filesystem::path folder =
        std::filesystem::path(environment["TONALYX_LAPTOP"]).parent_path();
    support::RunProcess({TONALYX_BIN_DIR "/vtdmake",
                         TONALYX_SOURCE_DIR "/resources/samples/sample.json",
                         (folder / "program" / "0.vtd").string()});
    const Clock::time_point begin = Clock::now();
    support::RunProcess({(folder / "program" / "tonalyx").string(), "/init"}, environment);
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
  }
}

BENCHMARK(BM_StartEmptyWindow)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartStandardPanel)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StartDavrinPanel)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IdlePanel)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_InstallRun)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
