// What every backend of the audio devices promises, whatever stands behind it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/audio_devices.h"

namespace support {

// A backend with two active endpoints, each with an ID, a GUID, a jack subtype and an adapter; the
// first is the default.
class AudioMachine {
 public:
  virtual ~AudioMachine() = default;

  virtual platform::AudioDevices& Devices() = 0;
  // Changes that take effect soon; `index` counts the endpoints as they were at first.
  virtual void MakeDefault(int index) = 0;
  virtual void Remove(int index) = 0;
};

struct AudioMachineMaker {
  std::string name;
  std::function<std::unique_ptr<AudioMachine>()> make;
};

class AudioDevicesContract : public testing::TestWithParam<AudioMachineMaker> {
 protected:
  // What an enumerator tells about the endpoints in a state, and about the default.
  std::vector<std::u16string> Ids(std::uint32_t stateMask = platform::kDeviceStateActive);
  std::u16string DefaultId();

  std::unique_ptr<AudioMachine> machine_ = GetParam().make();
};

inline std::string NameOf(const testing::TestParamInfo<AudioMachineMaker>& info) {
  return info.param.name;
}

}  // namespace support
