// Everything that tests replace, as one object of references that `main` builds.
#pragma once

#include <memory>

#include "platform/audio_devices.h"
#include "platform/clock.h"
#include "platform/device_setup.h"
#include "platform/events.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "platform/single_instance.h"

namespace platform {

struct Platform {
  Registry& registry;
  NamedEvents& events;
  FileSystem& files;
  DeviceSetup& deviceSetup;
  AudioDevices& audioDevices;
  SingleInstance& singleInstance;
  Clock& clock;
  // Keeps all of it alive, for threads that may outlast `main`; null where nothing needs that.
  std::shared_ptr<const void> owner = nullptr;
};

}  // namespace platform
