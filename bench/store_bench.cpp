// What a change costs between the hand and the engine, with the real store and real events.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>

#include "endpoints/route_detection.h"
#include "engine_link/active_setting.h"
#include "engine_link/engine_signals.h"
#include "platform/fake/fake_audio_devices.h"
#include "platform/linux/events/fifo_event_listener.h"
#include "platform/linux/events/fifo_events.h"
#include "platform/linux/files/posix_files.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/active_mode.h"
#include "store/parameter_store.h"
#include "store/tuning_import.h"
#include "tests/support/temporary_folder.h"

namespace {

constexpr std::uint32_t kSsid = 0x1A9E100F;
constexpr std::uint32_t kRoutes = 4;
constexpr std::uint32_t kSettings = 6;
constexpr std::uint32_t kParameters = 1114;

const std::u16string kJack = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";

template <class Number>
void Append(std::string& bytes, Number number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof(number));
}

// The speaker's route and three more, every setting full.
std::string FullTuningFile() {
  std::string bytes = "Kel";
  Append<std::uint16_t>(bytes, 0x0100);
  Append(bytes, kSsid);
  Append(bytes, kRoutes);
  for (std::uint32_t route = 0; route < kRoutes; ++route) {
    Append<std::uint32_t>(bytes, 0xDFF21CE1U + route);
    bytes += "\x0F\xF7\xD0\x11\xB9\x17";
    bytes += std::string("\x00\xA0\xC9\x22\x31\x96", 6);
    Append(bytes, kSettings);
    for (std::uint32_t setting = 0; setting < kSettings; ++setting) {
      Append(bytes, kParameters);
      for (std::uint32_t i = 0; i < kParameters; ++i) Append(bytes, static_cast<float>(i) * 0.25F);
    }
  }
  return bytes;
}

// A machine with three active endpoints, whose engine has made its events.
class Machine {
 public:
  Machine()
      : registry_(folder_.Path()),
        files_(folder_.Path()),
        events_(folder_.Path() / "events"),
        engineSide_(folder_.Path() / "events") {
    for (const char16_t number : {u'1', u'2', u'3'}) AddEndpoint(number);
    audioDevices_.SetDefault(u"1");
    engineSide_.Create(u"Global\\VelsonaServiceParameterUpdateEvent");
  }

  bool Import() {
    const std::filesystem::path path = folder_.Path() / "full.vtd";
    std::ofstream(path, std::ios::binary) << FullTuningFile();
    store::TuningImport import(registry_, files_, {.threeGuiLayers = true, .davrinModel = false});
    return import.ImportTuningFile(platform::FromUtf8(path.string()), kSsid).has_value();
  }

  void TakeEvents() { engineSide_.Wait(std::chrono::milliseconds(0)); }

  platform::SqliteRegistry& Registry() { return registry_; }
  engine_link::EngineLink Engine() { return {registry_, events_, audioDevices_}; }

 private:
  void AddEndpoint(char16_t number) {
    platform::FakeEndpoint endpoint;
    endpoint.id = std::u16string(1, number);
    endpoint.guid = u"{" + std::u16string(36, number) + u"}";
    endpoint.jackSubType = kJack;
    for (const char16_t* kind : {u"GFX", u"MFX", u"EFX", u"SFX"}) {
      engineSide_.Create(u"Global\\Velsona" + std::u16string(kind) + u"PropEvent" + *endpoint.guid);
    }
    audioDevices_.Add(endpoint);
  }

  support::TemporaryFolder folder_;
  platform::SqliteRegistry registry_;
  platform::PosixFileSystem files_;
  platform::FifoEvents events_;
  platform::FifoEventListener engineSide_;
  platform::FakeAudioDevices audioDevices_;
};

// Every value into both trees and read back.
void ImportFullFile(benchmark::State& state) {
  while (state.KeepRunning()) {
    state.PauseTiming();
    auto machine = std::make_unique<Machine>();
    state.ResumeTiming();
    if (!machine->Import()) state.SkipWithError("the import failed");
    state.PauseTiming();
    machine.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(ImportFullFile)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

void LoadSet(benchmark::State& state) {
  Machine machine;
  if (!machine.Import()) state.SkipWithError("the import failed");
  store::ParameterStore set;
  while (state.KeepRunning()) {
    if (!store::LoadActiveSet(machine.Registry(), kJack, set)) state.SkipWithError("no set");
  }
}
BENCHMARK(LoadSet)->Unit(benchmark::kMicrosecond);

void RestoreDefaults(benchmark::State& state) {
  Machine machine;
  store::ParameterStore set;
  if (!machine.Import() || !store::LoadActiveSet(machine.Registry(), kJack, set)) {
    state.SkipWithError("no set");
  }
  while (state.KeepRunning()) {
    if (!store::CopyDefaultsToActive(machine.Registry(), set)) state.SkipWithError("no set");
  }
}
BENCHMARK(RestoreDefaults)->Unit(benchmark::kMicrosecond);

// One band, as a drag of its marker changes it, without and with mirror and events.
void ChangeBand(store::ParameterStore& set) {
  for (std::size_t i = 117; i < 122; ++i) set.values[i] += 1.0F;
}

void CommitFiveChanges(benchmark::State& state) {
  Machine machine;
  store::ParameterStore set;
  if (!machine.Import() || !store::LoadActiveSet(machine.Registry(), kJack, set)) {
    state.SkipWithError("no set");
  }
  while (state.KeepRunning()) {
    ChangeBand(set);
    store::CommitChanges(machine.Registry(), set);
  }
}
BENCHMARK(CommitFiveChanges)->Unit(benchmark::kMicrosecond);

void EditToLastEvent(benchmark::State& state) {
  Machine machine;
  store::ParameterStore set;
  if (!machine.Import() || !store::LoadActiveSet(machine.Registry(), kJack, set)) {
    state.SkipWithError("no set");
  }
  while (state.KeepRunning()) {
    ChangeBand(set);
    engine_link::SignalParameterChange(machine.Engine(), set);
    state.PauseTiming();
    machine.TakeEvents();
    state.ResumeTiming();
  }
}
BENCHMARK(EditToLastEvent)->Unit(benchmark::kMicrosecond);

void ClickToLastEvent(benchmark::State& state) {
  Machine machine;
  if (!machine.Import()) state.SkipWithError("the import failed");
  std::uint32_t mode = 0;
  while (state.KeepRunning()) {
    mode = (mode + 1) % static_cast<std::uint32_t>(store::kModeCount);
    if (!engine_link::WriteActiveSetting(machine.Engine(), mode, nullptr)) {
      state.SkipWithError("not written");
    }
    engine_link::SignalModeChange(machine.Engine());
    state.PauseTiming();
    machine.TakeEvents();
    state.ResumeTiming();
  }
}
BENCHMARK(ClickToLastEvent)->Unit(benchmark::kMicrosecond);

void DetectRoute(benchmark::State& state) {
  Machine machine;
  if (!machine.Import()) state.SkipWithError("the import failed");
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(endpoints::DetectOutputPath(machine.Registry(), u"{1}"));
  }
}
BENCHMARK(DetectRoute)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
