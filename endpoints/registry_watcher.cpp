#include "endpoints/registry_watcher.h"

#include <array>
#include <utility>

#include "endpoints/enumeration.h"
#include "endpoints/route_detection.h"
#include "platform/com_apartment.h"
#include "platform/jack_state.h"
#include "platform/text.h"
#include "store/active_mode.h"
#include "store/path_key.h"
#include "store/registry_layout.h"

namespace endpoints {
namespace {

using platform::Registry;
using platform::RegistryKey;

std::unique_ptr<RegistryKey> OpenForReading(Registry& registry, std::u16string_view path) {
  return registry.OpenKey(platform::RegistryRoot::LocalMachine, path, store::kReadAccess);
}

// The body of a watcher thread. Its keys are closed before the context, whose event they set, can
// go.
class WatchLoop {
 public:
  WatchLoop(Registry& registry, platform::AudioDevices& audioDevices, WatchContext& context)
      : registry_(registry),
        audioDevices_(audioDevices),
        context_(context),
        hints_{OpenForReading(registry, store::kProductKey),
               OpenForReading(registry, platform::JackKeyPath(context.endpointGuid)),
               FindSstHeadsetKey(registry)},
        outputPath_(context.outputPath),
        settingIndex_(context.settingIndex) {}

  void Run() {
    OpenSettings();
    while (context_.run) {
      for (const std::unique_ptr<RegistryKey>& key : hints_) Arm(key);
      context_.event.Wait();
      LookAgain();
    }
  }

 private:
  void Arm(const std::unique_ptr<RegistryKey>& key) {
    if (key) static_cast<void>(key->NotifyChange(context_.event));
  }

  // Watches the "Settings" key of the current default endpoint and route, if there is one.
  void OpenSettings() {
    DefaultEndpointInfo endpoint{std::move(jackSubType_), std::move(context_.endpointGuid)};
    static_cast<void>(GetDefaultEndpointInfo(audioDevices_, endpoint, kWatcherGuidCapacity));
    jackSubType_ = std::move(endpoint.jackSubType);
    context_.endpointGuid = std::move(endpoint.endpointGuid);
    settings_.reset();
    settings_ = OpenForReading(
        registry_, store::SettingsKeyPath(store::ResolvePathKey(jackSubType_, outputPath_)));
    Arm(settings_);
  }

  void LookAgain() {
    const OutputPath previousPath = outputPath_;
    const std::int32_t previousIndex = settingIndex_;
    outputPath_ = DetectOutputPath(registry_, context_.endpointGuid);
    OpenSettings();
    // Armed before it is read: a setting that is written now is read, or wakes the thread again.
    if (settings_) settingIndex_ = store::QueryModeIndex(*settings_);
    if (outputPath_ != previousPath || settingIndex_ != previousIndex) context_.post(outputPath_);
  }

  Registry& registry_;
  platform::AudioDevices& audioDevices_;
  WatchContext& context_;
  // Stay those of the endpoint that was the default one at the start.
  std::array<std::unique_ptr<RegistryKey>, 3> hints_;
  std::unique_ptr<RegistryKey> settings_;
  std::u16string jackSubType_;
  OutputPath outputPath_;
  std::int32_t settingIndex_;
};

}  // namespace

WatchContext::WatchContext(const WatchStart& start, SettingChangedPoster poster)
    : post(std::move(poster)),
      outputPath(start.outputPath),
      settingIndex(start.settingIndex),
      endpointGuid(platform::CutToBuffer(start.endpointGuid, kWatcherGuidCapacity)) {}

RegistryWatcher::RegistryWatcher(Registry& registry, platform::AudioDevices& audioDevices,
                                 std::shared_ptr<const void> owner)
    : registry_(registry), audioDevices_(audioDevices), owner_(std::move(owner)) {}

RegistryWatcher::~RegistryWatcher() {
  static_cast<void>(Stop());
}

void RegistryWatcher::Start(const WatchStart& start, SettingChangedPoster poster) {
  if (context_) return;
  context_ = std::make_shared<WatchContext>(start, std::move(poster));
  thread_ = std::make_unique<platform::WorkerThread>(
      [owner = owner_, context = context_, &registry = registry_, &audioDevices = audioDevices_] {
        const platform::ComApartment apartment;
        WatchLoop(registry, audioDevices, *context).Run();
      });
}

void RegistryWatcher::Wake() {
  if (context_) context_->event.Set();
}

bool RegistryWatcher::Stop() {
  if (!thread_) return true;
  context_->run = false;
  context_->event.Set();
  const bool ended = thread_->WaitForEnd(kStopTimeout);
  thread_.reset();
  return ended;
}

}  // namespace endpoints
