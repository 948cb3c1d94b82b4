// Types and data of values as regtool reads and prints them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace regtool {

// By its name, such as REG_SZ, in any case.
std::optional<platform::RegistryType> TypeNamed(std::u16string_view name);

// The name, or the number of a type that has none.
std::string TypeName(platform::RegistryType type);

// Text for one line. What does not have the size of its type prints as binary does.
std::string PrintData(platform::RegistryType type, std::span<const std::byte> data);

// The bytes to store; nothing when the text is none for the type. "\0" divides the strings of a
// REG_MULTI_SZ; types without a form of their own take hexadecimal digits, as REG_BINARY does.
std::optional<std::vector<std::byte>> ParseData(platform::RegistryType type,
                                                std::u16string_view text);

}  // namespace regtool
