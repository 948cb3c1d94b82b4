// A whole machine of fakes.
#pragma once

#include <utility>
#include <vector>

#include "platform/fake/fake_audio_devices.h"
#include "platform/fake/fake_clock.h"
#include "platform/fake/fake_device_setup.h"
#include "platform/fake/fake_events.h"
#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "platform/fake/fake_single_instance.h"
#include "platform/platform.h"

namespace support {

struct FakeMachine {
  explicit FakeMachine(std::vector<platform::DeviceRecord> devices = {})
      : deviceSetup(std::move(devices)) {}

  platform::FakeRegistry registry;
  platform::FakeNamedEvents events;
  platform::FakeFileSystem files;
  platform::FakeDeviceSetup deviceSetup;
  platform::FakeAudioDevices audioDevices;
  platform::FakeSingleInstance singleInstance;
  platform::FakeClock clock;
  platform::Platform platform{registry,     events,         files, deviceSetup,
                              audioDevices, singleInstance, clock};
};

}  // namespace support
