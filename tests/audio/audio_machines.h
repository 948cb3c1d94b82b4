// Backends of the audio devices as parameters of their contract's suite: whoever links the suite
// says on which it runs.
#pragma once

#include <memory>
#include <string>
#include <vector>

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
  virtual bool HasMeters() const { return true; }
};

using AudioMachineMaker = std::unique_ptr<AudioMachine> (*)();

template <class Machine>
std::unique_ptr<AudioMachine> MakeAudioMachine() {
  return std::make_unique<Machine>();
}

std::vector<AudioMachineMaker> AudioMachines();

// The ID of the default endpoint, "none" when there is none.
inline std::u16string DefaultIdOf(platform::AudioDevices& devices) {
  const auto endpoint = devices.CreateEnumerator()->DefaultEndpoint(platform::DataFlow::Render,
                                                                    platform::DeviceRole::Console);
  return endpoint == nullptr ? u"none" : endpoint->Id().value_or(u"");
}

}  // namespace support
