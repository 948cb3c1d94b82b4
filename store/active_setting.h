#pragma once

#include <cstdint>

#include "endpoints/output_path.h"
#include "store/engine_signals.h"

namespace store {

inline constexpr std::uint32_t kModeCount = 6;

// Makes the mode with this 0-based index the active one of the default endpoint's route, and of
// its twin for a speaker with and without subwoofer. True when written: the caller then signals the
// mode change. `route`, when not null, receives the route that was found, also when writing then
// fails. User-interface thread.
bool WriteActiveSetting(const EngineLink& engine, std::uint32_t modeIndex,
                        endpoints::OutputPath* route);

}  // namespace store
