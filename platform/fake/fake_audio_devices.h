// Audio endpoints made up in memory, with failures on demand and counts of what was asked.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/audio_devices.h"

namespace platform {

// The steps of the service that can fail and are counted.
enum class AudioStep {
  CreateEnumerator,
  EnumerateEndpoints,
  DefaultEndpoint,
  RegisterCallback,
  UnregisterCallback,
  Item,
  Id,
  State,
  OpenPropertyStore,
  GetString,
  ActivateMeter,
  PeakValue
};
inline constexpr std::size_t kAudioStepCount = static_cast<std::size_t>(AudioStep::PeakValue) + 1;

struct FakeEndpoint {
  std::u16string id = {};
  std::uint32_t state = kDeviceStateActive;
  // Nothing: the property is missing or not a string.
  std::optional<std::u16string> guid = {};
  std::optional<std::u16string> jackSubType = {};
  std::optional<std::u16string> adapter = {};
  float peak = 0.0F;
  // Steps from Item to PeakValue that fail on this endpoint alone.
  std::set<AudioStep> failures = {};
};

// Any thread may call any operation. A changed peak is reported as kEndpointLevelProperty of
// "platform/endpoint_list.h". Changes that concern an existing endpoint, or none, are
// reported to the sinks on a thread of the object's own; WaitUntilDelivered makes tests
// deterministic. Enumerators and what they gave may outlive the object.
class FakeAudioDevices : public AudioDevices {
 public:
  struct State;

  FakeAudioDevices();
  ~FakeAudioDevices() override;

  std::unique_ptr<AudioDeviceEnumerator> CreateEnumerator() override;

  // Adds an endpoint at the end of the enumeration order.
  void Add(FakeEndpoint endpoint);
  void Remove(std::u16string_view id);
  void SetState(std::u16string_view id, std::uint32_t state);
  void SetPeak(std::u16string_view id, float peak);
  // Of the console role; the others have none. An empty ID: no default. An ID that is unknown or
  // not active counts as none.
  void SetDefault(std::u16string_view id);

  // From now on the step fails, or works again, for every endpoint.
  void Fail(AudioStep step);
  void Heal(AudioStep step);

  // How often a step was asked for, failures included.
  int Calls(AudioStep step) const;
  // Enumerators, collections, devices, property stores and meters that nobody has released yet.
  int LiveObjects() const;
  bool HasSinks() const;
  void WaitUntilDelivered();

 private:
  std::shared_ptr<State> state_;
};

}  // namespace platform
