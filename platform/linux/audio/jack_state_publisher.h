// Publishes the jack state of real sinks in the registry, in the stead of a driver.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
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

  // Writes the values of every sink whose registry says something else. A state without sinks
  // stands for a server that does not answer.
  //
  // Whoever watches the jacks goes on watching the key of the endpoint that was the default one at
  // the start. So every default endpoint gets such a key, and when the default or its jack state
  // changes, all that were the default before are written to as well.
  void Publish(const PulseState& state);

 private:
  // Whether the sink's values are other ones than at the last look.
  bool PublishSink(const PulseSink& sink);
  void Inform(std::thread::id caller);
  bool HasKey(const std::string& sink);
  bool WakeWatchers();

  Registry& registry_;
  std::mutex mutex_;
  std::map<std::string, std::vector<JackValue>> published_;
  std::string defaultSink_;
  std::set<std::string> defaults_;  // all there were
  // Threads that know the present default and had a wake after they learnt of it: a watcher takes
  // another endpoint over at the end of one look and decides the route by it in the next.
  std::set<std::thread::id> informed_;
};

}  // namespace platform
