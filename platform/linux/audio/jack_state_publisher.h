// Publishes the jack state of real sinks in the registry, in the stead of a driver.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/jack_state.h"
#include "platform/linux/audio/pulse_state.h"
#include "platform/registry.h"

namespace platform {

// What a sink's active port says about its jacks; nothing when it says nothing.
std::optional<std::vector<JackValue>> JackValuesOf(const PulseSink& sink);

// Any thread.
class JackStatePublisher {
 public:
  explicit JackStatePublisher(Registry& registry) : registry_(registry) {}

  // Writes the values of every sink whose registry says something else. When another sink has
  // become the default, one value of the former one is written again as it was, so that whoever
  // watches there looks anew.
  void Publish(const PulseState& state);

 private:
  void PublishSink(const PulseSink& sink);
  void TouchFormerDefault(const std::string& defaultSink);

  Registry& registry_;
  std::mutex mutex_;
  std::map<std::string, std::vector<JackValue>> published_;
  std::string defaultSink_;
};

}  // namespace platform
