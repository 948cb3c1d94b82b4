// What an engine tells about itself, on its way to people and programs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace engine {

// Of the way that sound takes. Numbers are 0 and the name is empty while nothing is known.
struct AudioStatus {
  bool isPlaying = false;
  std::string sink;           // name of the node that is fed
  std::uint32_t rate = 0;     // Hz
  std::uint32_t quantum = 0;  // frames in a cycle of the graph
  std::uint32_t latency = 0;  // frames that the engine adds
  double load = 0.0;          // share of a cycle's time, the average of about a second
  std::uint64_t xruns = 0;    // cycles that the graph went through without the engine
};

// Of the set that is heard; all empty while sound passes through.
struct SetStatus {
  std::string route;    // its name
  std::string pathKey;  // its folder in the store
  std::string setting;
};

// One object of JSON with a line's end. What is not known is null.
std::string StatusJson(const AudioStatus& audio, const SetStatus& set);

// The same for reading, from the JSON; empty when that is none.
std::string StatusText(std::string_view json);

}  // namespace engine
