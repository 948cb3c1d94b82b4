#pragma once

#include <cstdint>

namespace store {

// The output route that an endpoint plays through.
enum class OutputPath : std::uint32_t {
  LineOut = 0,  // also when nothing tells otherwise
  InternalSpeaker = 1,
  Headphone = 2,
  SpeakerWithSubwoofer = 3,
};

}  // namespace store
