#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/audio_devices.h"
#include "platform/registry.h"
#include "platform/wake_event.h"
#include "platform/window_messages.h"
#include "platform/worker_thread.h"
#include "store/output_path.h"

namespace endpoints {

// Posted by a watcher to its window; lParam is the route, 0 to 3.
inline constexpr std::uint32_t UM_SETTING_CHANGED = platform::message::kUser + 3;

// What a window knows when its watcher starts.
struct WatchStart {
  std::u16string endpointGuid;
  store::OutputPath outputPath;
  std::int32_t settingIndex;  // 0-based mode index
};

// Reports a changed route or setting to the window. Called on the watcher's thread, perhaps after
// the window is gone, so it may hold the window's handle but not the window.
using SettingChangedPoster = std::function<void(store::OutputPath)>;

// What a watcher thread and its window share; it lives until both have left it.
struct WatchContext {
  WatchContext(const WatchStart& start, SettingChangedPoster poster);

  const SettingChangedPoster post;
  const store::OutputPath outputPath;
  const std::int32_t settingIndex;
  std::u16string endpointGuid;  // at most 49 units; the thread's once it runs
  std::atomic<bool> run{true};
  platform::WakeEvent event;
};

// A thread that sleeps until the driver's jack state, the stored hint or the active setting of the
// current route changes, and then posts if the route or the setting differs from what it last saw.
// One for each open window, on the user-interface thread.
class RegistryWatcher {
 public:
  static constexpr std::chrono::milliseconds kStopTimeout{500};

  // The thread may outlive this object and its maker, so it keeps `owner`, with which the registry
  // and the audio devices live on.
  RegistryWatcher(platform::Registry& registry, platform::AudioDevices& audioDevices,
                  std::shared_ptr<const void> owner);
  ~RegistryWatcher();
  RegistryWatcher(const RegistryWatcher&) = delete;
  RegistryWatcher& operator=(const RegistryWatcher&) = delete;

  // Does nothing when the watcher was started before.
  void Start(const WatchStart& start, SettingChangedPoster poster);

  // Lets the thread look again, for a "Settings" key that has just been made.
  void Wake();

  // True when the thread has ended within kStopTimeout, or never ran. A thread that has not runs on
  // with its context and the owner and ends by itself. The destructor stops too.
  bool Stop();

 private:
  platform::Registry& registry_;
  platform::AudioDevices& audioDevices_;
  const std::shared_ptr<const void> owner_;
  std::shared_ptr<WatchContext> context_;
  std::unique_ptr<platform::WorkerThread> thread_;
};

}  // namespace endpoints
