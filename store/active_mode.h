// The active setting of a route as the index of its mode button.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace store {

// Index of a mode's button, 0 to 5; the mode's setting has the next number. A stored setting can
// give an index that no mode has.
using SoundMode = std::int32_t;

inline constexpr SoundMode kModeCount = 6;

// The text of "ActiveSetting" in an open "Settings" key, whatever its type, cut to its buffer;
// nothing when it is missing or too long.
std::optional<std::u16string> QueryActiveSetting(platform::RegistryKey& settingsKey);

// Sets "ActiveSetting" in an open "Settings" key. False when it was not written.
bool SetActiveSetting(platform::RegistryKey& settingsKey, const std::u16string& activeSetting);

// 0-based index; only the first character of the setting's number counts. "0" gives -1, and a text
// that is no number gives an index that no mode has.
SoundMode ModeIndexFromSetting(std::u16string_view activeSetting);

// The index in an open "Settings" key; 1 when "ActiveSetting" cannot be read.
SoundMode QueryModeIndex(platform::RegistryKey& settingsKey);

// Nothing when the route has no "Settings" key.
std::optional<SoundMode> ReadActiveModeIndex(platform::Registry& registry,
                                             std::u16string_view pathKey);

}  // namespace store
