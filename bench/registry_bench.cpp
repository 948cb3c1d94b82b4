// What the store costs: a set loaded, an edit committed, an import, the way of a change to a
// watcher.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <array>
#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"

namespace {

using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryType;

constexpr int kParameters = 1114;
constexpr int kSets = 48;  // four routes of six settings, and their defaults

// A store in a folder of its own.
class TemporaryStore {
 public:
  TemporaryStore() : registry_(MakeFolder()) {}
  ~TemporaryStore() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }
  TemporaryStore(const TemporaryStore&) = delete;
  TemporaryStore& operator=(const TemporaryStore&) = delete;

  platform::SqliteRegistry& Registry() { return registry_; }
  const std::filesystem::path& Folder() const { return folder_; }

  static std::u16string SetPath(int number) {
    return u"SOFTWARE\\Norvane\\Velsona\\Parameters\\Route\\Settings\\" +
           platform::FromUtf8(std::to_string(number));
  }

  std::unique_ptr<RegistryKey> Set(int number) {
    return registry_.CreateKey(RegistryRoot::LocalMachine, SetPath(number),
                               platform::kRegistryAllAccess);
  }

 private:
  std::filesystem::path MakeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "registry-bench-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    return folder_;
  }

  std::filesystem::path folder_;
  platform::SqliteRegistry registry_;
};

std::vector<std::u16string> ParameterNames() {
  std::vector<std::u16string> names;
  for (int i = 1; i <= kParameters; ++i) {
    names.push_back(u"Param" + platform::FromUtf8(std::to_string(i)));
  }
  return names;
}

bool WriteFloat(RegistryKey& key, const std::u16string& name, float value) {
  const auto bytes = std::bit_cast<std::array<std::byte, sizeof(float)>>(value);
  return key.SetValue(name, RegistryType::Binary, bytes) == platform::RegistryStatus::Success;
}

bool ReadFloat(RegistryKey& key, const std::u16string& name, float* value) {
  std::uint32_t size = sizeof *value;
  return key.QueryValue(name, nullptr, value, &size) == platform::RegistryStatus::Success;
}

void FillSet(TemporaryStore& store, RegistryKey& key, const std::vector<std::u16string>& names) {
  const auto scope = store.Registry().BeginWrite();
  for (const std::u16string& name : names) WriteFloat(key, name, 1.0F);
  static_cast<void>(scope->Commit());
}

void LoadOneSet(benchmark::State& state) {
  TemporaryStore store;
  const auto names = ParameterNames();
  const auto key = store.Set(1);
  FillSet(store, *key, names);
  for (auto _ : state) {
    const auto scope = store.Registry().BeginRead();
    float value = 0.0F;
    for (const std::u16string& name : names) {
      if (!ReadFloat(*key, name, &value)) state.SkipWithError("a value is missing");
    }
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(LoadOneSet)->Unit(benchmark::kMicrosecond);

void CommitFiveValues(benchmark::State& state) {
  TemporaryStore store;
  const auto names = ParameterNames();
  const auto key = store.Set(1);
  FillSet(store, *key, names);
  float value = 0.0F;
  for (auto _ : state) {
    value += 1.0F;
    const auto scope = store.Registry().BeginWrite();
    for (std::size_t i = 117; i < 122; ++i) {
      if (!WriteFloat(*key, names[i], value)) state.SkipWithError("a write failed");
    }
    if (scope->Commit() != platform::RegistryStatus::Success) state.SkipWithError("a write failed");
  }
}
BENCHMARK(CommitFiveValues)->Unit(benchmark::kMicrosecond);

void ImportAndReadBack(benchmark::State& state) {
  const auto names = ParameterNames();
  for (auto _ : state) {
    state.PauseTiming();
    auto store = std::make_unique<TemporaryStore>();
    state.ResumeTiming();
    for (int set = 0; set < kSets; ++set) {
      const auto scope = store->Registry().BeginWrite();
      const auto key = store->Set(set);
      for (const std::u16string& name : names) {
        float value = 0.0F;
        if (!WriteFloat(*key, name, 1.0F) || !ReadFloat(*key, name, &value)) {
          state.SkipWithError("a value was lost");
        }
      }
      static_cast<void>(scope->Commit());
    }
    state.PauseTiming();
    store.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(ImportAndReadBack)->Unit(benchmark::kMillisecond);

// From a write in one registry to the wake of a watcher in another.
void WakeAWatcher(benchmark::State& state) {
  platform::WakeEvent wake;
  TemporaryStore store;
  const auto written = store.Set(1);
  platform::SqliteRegistry other(store.Folder());
  const auto watched = other.OpenKey(RegistryRoot::LocalMachine, TemporaryStore::SetPath(1),
                                     platform::kRegistryRead);
  float value = 0.0F;
  for (auto _ : state) {
    watched->NotifyChange(wake);
    value += 1.0F;
    const auto start = std::chrono::steady_clock::now();
    WriteFloat(*written, u"Param1", value);
    if (!wake.WaitFor(std::chrono::seconds(1))) state.SkipWithError("a change was lost");
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(taken.count());
  }
}
BENCHMARK(WakeAWatcher)->Unit(benchmark::kMicrosecond)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
