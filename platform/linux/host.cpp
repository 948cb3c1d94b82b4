#include "platform/host.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/audio/jack_state_publisher.h"
#include "platform/linux/audio/pulse_audio_devices.h"
#include "platform/linux/devices/sysfs_devices.h"
#include "platform/linux/events/fifo_events.h"
#include "platform/linux/files/inotify_file_watcher.h"
#include "platform/linux/files/posix_files.h"
#include "platform/linux/files/state_folder.h"
#include "platform/linux/instance/user_instance.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/system_clock.h"
#include "platform/virtual/virtual_audio_devices.h"
#include "platform/virtual/virtual_device_setup.h"
#include "platform/virtual/virtual_laptop.h"

namespace platform {
namespace {

void ReportOnStandardError(std::string_view line) {
  std::fprintf(stderr, "tonalyx: %.*s\n", static_cast<int>(line.size()), line.data());
}

}  // namespace

struct Host::Impl {
  Impl() {
    if (const std::optional<std::string> file = EnvironmentValue("TONALYX_LAPTOP")) {
      laptop.emplace(*file, ReportOnStandardError);
    }
    if (laptop && laptop->HasDevices()) {
      deviceSetup = std::make_unique<VirtualDeviceSetup>(*laptop);
    } else {
      deviceSetup = std::make_unique<SysfsDeviceSetup>();
    }
    if (laptop && laptop->HasEndpoints()) {
      audioDevices = std::make_unique<VirtualAudioDevices>(
          *laptop, std::make_unique<InotifyFileWatcher>(*EnvironmentValue("TONALYX_LAPTOP")));
    } else {
      audioDevices = std::make_unique<PulseAudioDevices>(
          [this](const PulseState& state) { jackStates.Publish(state); });
    }
  }

  std::filesystem::path stateFolder = StateFolder();
  SqliteRegistry registry{stateFolder};
  FifoEvents events{stateFolder / "events"};
  PosixFileSystem files{stateFolder};
  UserInstance singleInstance{InstanceLockPlace(stateFolder)};
  SystemClock clock;
  JackStatePublisher jackStates{registry};
  std::optional<VirtualLaptop> laptop;
  std::unique_ptr<DeviceSetup> deviceSetup;
  std::unique_ptr<AudioDevices> audioDevices;
};

Host::Host()
    : impl_(std::make_shared<Impl>()), platform_{impl_->registry,      impl_->events,
                                                 impl_->files,         *impl_->deviceSetup,
                                                 *impl_->audioDevices, impl_->singleInstance,
                                                 impl_->clock,         impl_} {}

Host::~Host() = default;

Platform& Host::Get() {
  return platform_;
}

}  // namespace platform
