// Data that is part of the program file, found by type and number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace platform {

enum class ResourceType { Png, Bitmap, Icon };

// The bytes live as long as the program; empty when there is no such resource. Any thread. All
// three types are stored as PNG on systems without a resource format of their own.
std::span<const std::byte> FindResourceData(ResourceType type, std::uint16_t id);

// A text of the string table; empty when there is none.
std::u16string LoadStringResource(std::uint16_t id);

}  // namespace platform
