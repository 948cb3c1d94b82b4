// The active setting of a route as the index of its mode button.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace store {

// The text of "ActiveSetting" in an open "Settings" key, whatever its type, cut to its buffer;
// nothing when it is missing or too long.
std::optional<std::u16string> QueryActiveSetting(platform::RegistryKey& settingsKey);

// Sets "ActiveSetting" in an open "Settings" key; a failure is not reported.
void SetActiveSetting(platform::RegistryKey& settingsKey, const std::u16string& activeSetting);

// 0-based index; only the first character of the setting's number counts. "0" gives -1, and a text
// that is no number gives an index that no mode has.
std::int32_t ModeIndexFromSetting(std::u16string_view activeSetting);

// The index in an open "Settings" key; 1 when "ActiveSetting" cannot be read.
std::int32_t QueryModeIndex(platform::RegistryKey& settingsKey);

// Nothing when the route has no "Settings" key.
std::optional<std::int32_t> ReadActiveModeIndex(platform::Registry& registry,
                                                std::u16string_view pathKey);

}  // namespace store
