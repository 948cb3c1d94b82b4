#pragma once

#include <cstdint>

#include "engine_link/engine_signals.h"
#include "store/output_path.h"

namespace engine_link {

// Makes the mode with this 0-based index the active one of the default endpoint's route, and of
// its twin for a speaker with and without subwoofer. True when written: the caller then signals the
// mode change. `route`, when not null, receives the route that was found, also when writing then
// fails. User-interface thread.
bool WriteActiveSetting(const EngineLink& engine, std::uint32_t modeIndex,
                        store::OutputPath* route);

}  // namespace engine_link
