// Rules of names, sizes and rights that every registry of our own making keeps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace platform {

inline constexpr std::size_t kRegistryKeyNameLimit = 255;      // UTF-16 units
inline constexpr std::size_t kRegistryValueNameLimit = 16383;  // UTF-16 units

// The right to replace a key's access list; part of kRegistryAllAccess.
inline constexpr RegistryAccess kRegistryWriteAccessList = 0x40000;

// The parts of a path, as views into it; nothing when it is empty or a part is empty or too long.
std::optional<std::vector<std::u16string_view>> SplitRegistryPath(std::u16string_view path);

// Answers a query for a value of these bytes.
RegistryStatus CopyRegistryValue(std::span<const std::byte> value, void* data, std::uint32_t* size);

}  // namespace platform
