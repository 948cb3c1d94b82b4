// The sink by which an engine takes the sound in, as clients of the audio server see it.
#pragma once

#include "platform/linux/audio/pulse_state.h"

namespace platform {

// The property that tells it from others. Its value names the sink that the engine plays to; empty
// while there is none.
inline constexpr const char* kEngineSinkProperty = "tonalyx.plays-to";

// Leaves the sinks that sound is heard from. Where the engine's is the default, the one that it
// plays to stands in.
void SeeThroughEngine(PulseState& state);

}  // namespace platform
