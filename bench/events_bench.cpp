// What it costs to wake the engine.
#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "platform/linux/events/fifo_event_listener.h"
#include "platform/linux/events/fifo_events.h"

namespace platform {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

class EventsFolder {
 public:
  EventsFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tonalyx-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~EventsFolder() { std::filesystem::remove_all(path_); }
  EventsFolder(const EventsFolder&) = delete;
  EventsFolder& operator=(const EventsFolder&) = delete;

  std::filesystem::path Path() const { return path_ / "events"; }

 private:
  std::filesystem::path path_;
};

void Set(FifoEvents& events, std::u16string_view name) {
  if (const std::unique_ptr<NamedEvent> event = events.Open(name)) event->Set();
}

// From before the setter opens the event to the return of the engine's wait on another thread.
void SetToWake(benchmark::State& state) {
  const EventsFolder folder;
  FifoEventListener listener(folder.Path());
  FifoEvents events(folder.Path());
  if (!listener.Create(u"event")) state.SkipWithError("the event cannot be made");
  std::atomic<bool> running = true;
  std::atomic<Clock::time_point::rep> wokenAt = 0;
  std::thread engine([&] {
    while (running) {
      if (listener.Wait(std::chrono::seconds(1)).empty()) continue;
      wokenAt = Clock::now().time_since_epoch().count();
      wokenAt.notify_one();
    }
  });
  for (auto iteration : state) {
    // The engine's thread has to sleep again.
    std::this_thread::sleep_for(std::chrono::microseconds(200));
    wokenAt = 0;
    const Clock::time_point begin = Clock::now();
    Set(events, u"event");
    wokenAt.wait(0);
    const Clock::time_point woken{Clock::duration(wokenAt.load())};
    state.SetIterationTime(std::chrono::duration<double>(woken - begin).count());
  }
  running = false;
  listener.Interrupt();
  engine.join();
}
BENCHMARK(SetToWake)->UseManualTime()->Unit(benchmark::kMicrosecond);

// The signals of one change of mode with three active endpoints and a living engine.
void TwelveSets(benchmark::State& state) {
  constexpr std::u16string_view kGuid = u"{8E5A1C40-93B7-4B52-9F0B-35A5D6A3C6E1}";
  const EventsFolder folder;
  FifoEventListener listener(folder.Path());
  FifoEvents events(folder.Path());
  std::array<std::u16string, 12> names;
  for (std::size_t i = 0; i < names.size(); ++i) {
    names[i] =
        u"Global\\VelsonaGFXPropEvent" + std::u16string(kGuid) + static_cast<char16_t>(u'a' + i);
    if (!listener.Create(names[i])) state.SkipWithError("the event cannot be made");
  }
  for (auto iteration : state) {
    for (const std::u16string& name : names) Set(events, name);
    state.PauseTiming();
    listener.Wait(milliseconds(0));
    state.ResumeTiming();
  }
}
BENCHMARK(TwelveSets)->Unit(benchmark::kMicrosecond);

// The same without an engine: every event has to be missed.
void TwelveMisses(benchmark::State& state) {
  const EventsFolder folder;
  std::filesystem::create_directories(folder.Path());
  FifoEvents events(folder.Path());
  for (auto iteration : state) {
    for (int i = 0; i < 12; ++i) Set(events, u"Global\\VelsonaGFXPropEvent");
  }
}
BENCHMARK(TwelveMisses)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace platform

BENCHMARK_MAIN();
