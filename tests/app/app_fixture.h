// A whole platform of fakes for the tests of start-up.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/fake/fake_audio_devices.h"
#include "platform/fake/fake_clock.h"
#include "platform/fake/fake_device_setup.h"
#include "platform/fake/fake_events.h"
#include "platform/fake/fake_files.h"
#include "platform/fake/fake_registry.h"
#include "platform/fake/fake_single_instance.h"
#include "platform/platform.h"

namespace app {

class AppFixture : public testing::Test {
 protected:
  std::string Log() const { return files_.Contents(u"/state/Velsona.txt").value_or(""); }

  platform::FakeRegistry registry_;
  platform::FakeNamedEvents events_;
  platform::FakeFileSystem files_;
  platform::FakeDeviceSetup deviceSetup_;
  platform::FakeAudioDevices audioDevices_;
  platform::FakeSingleInstance singleInstance_;
  platform::FakeClock clock_;
  platform::Platform platform_{registry_,     events_,         files_, deviceSetup_,
                               audioDevices_, singleInstance_, clock_};
};

}  // namespace app
