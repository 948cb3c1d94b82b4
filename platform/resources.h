// Data that is part of the program file, found by type and number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace platform {

enum class ResourceType { Png, Bitmap, Icon };

// The bytes live as long as the program; empty when there is no such resource. Any thread. All
// three types hold a PNG in every build; the shell's own copy of the icon is the backend's.
std::span<const std::byte> FindResourceData(ResourceType type, std::uint16_t id);

// A text of the string table; empty when there is none.
std::u16string LoadStringResource(std::uint16_t id);

}  // namespace platform
