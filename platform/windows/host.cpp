#include "platform/host.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/system_clock.h"
#include "platform/virtual/virtual_audio_devices.h"
#include "platform/virtual/virtual_device_setup.h"
#include "platform/virtual/virtual_laptop.h"
#include "platform/windows/audio/multimedia_devices.h"
#include "platform/windows/devices/setup_devices.h"
#include "platform/windows/events/kernel_events.h"
#include "platform/windows/files/windows_files.h"
#include "platform/windows/instance/mutex_instance.h"
#include "platform/windows/registry/windows_registry.h"

namespace platform {
namespace {

void ReportOnStandardError(std::string_view line) {
  std::fprintf(stderr, "tonalyx: %.*s\n", static_cast<int>(line.size()), line.data());
}

// A program with windows gets no console, but whoever started it may have one.
void JoinConsoleOfParent() {
  const HANDLE errors = GetStdHandle(STD_ERROR_HANDLE);
  if (errors != nullptr && errors != INVALID_HANDLE_VALUE) return;
  if (AttachConsole(ATTACH_PARENT_PROCESS) == FALSE) return;
  static_cast<void>(std::freopen("CONOUT$", "w", stderr));
}

}  // namespace

struct Host::Impl {
  Impl() {
    JoinConsoleOfParent();
    const wchar_t* const file = _wgetenv(L"TONALYX_LAPTOP");
    if (file != nullptr && *file != L'\0') laptop.emplace(file, ReportOnStandardError);
    if (laptop && laptop->HasDevices()) {
      deviceSetup = std::make_unique<VirtualDeviceSetup>(*laptop);
    } else {
      deviceSetup = std::make_unique<SetupDevices>();
    }
    if (laptop && laptop->HasEndpoints()) {
      audioDevices = std::make_unique<VirtualAudioDevices>(*laptop, MakeFileWatcher(file));
    } else {
      audioDevices = std::make_unique<MultimediaDevices>();
    }
  }

  WindowsRegistry registry;
  KernelEvents events;
  WindowsFileSystem files;
  MutexInstance singleInstance;
  SystemClock clock;
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
