// What an audio server of the PulseAudio protocol says about its sinks at one moment.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace platform {

enum class PulsePortKind { Other, Speaker, Headphones, LineOut, Spdif, Display };

struct PulsePort {
  PulsePortKind kind = PulsePortKind::Other;
  enum class Plug { Unknown, Pulled, Plugged } plug = Plug::Unknown;
};

// `properties` holds those of the sink, and of its card what the sink lacks.
struct PulseSink {
  std::string name;
  std::string description;
  std::string monitor;  // name of the source that hears what the sink plays
  std::string cardDescription;
  std::map<std::string, std::string> properties;
  std::optional<PulsePort> activePort;
  enum class Activity { Silent, Running } activity = Activity::Silent;
  enum class Subwoofer { Absent, Present } subwoofer = Subwoofer::Absent;
};

// Sinks in the server's order.
struct PulseState {
  std::vector<PulseSink> sinks;
  std::string defaultSink;
};

}  // namespace platform
