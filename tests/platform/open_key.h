// Short ways to work on a key that is open.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace support {

inline std::span<const std::byte> BytesOf(std::string_view text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

inline platform::RegistryStatus SetBytes(platform::RegistryKey& key, std::u16string_view name,
                                         std::string_view bytes) {
  return key.SetValue(name, platform::RegistryType::Binary, BytesOf(bytes));
}

// The value's bytes; nothing when it cannot be read.
inline std::optional<std::string> GetBytes(platform::RegistryKey& key, std::u16string_view name) {
  std::uint32_t size = 0;
  if (key.QueryValue(name, nullptr, nullptr, &size) != platform::RegistryStatus::Success) {
    return std::nullopt;
  }
  std::string bytes(size, '\0');
  if (key.QueryValue(name, nullptr, bytes.data(), &size) != platform::RegistryStatus::Success) {
    return std::nullopt;
  }
  return bytes;
}

using EnumerateCall = platform::RegistryStatus (platform::RegistryKey::*)(std::uint32_t,
                                                                          std::u16string*);

// All names that `enumerate` gives until there are no more items.
inline std::vector<std::u16string> NamesOf(platform::RegistryKey& key, EnumerateCall enumerate) {
  std::vector<std::u16string> names;
  std::u16string name;
  while ((key.*enumerate)(static_cast<std::uint32_t>(names.size()), &name) ==
         platform::RegistryStatus::Success) {
    names.push_back(name);
  }
  return names;
}

inline std::vector<std::u16string> SubKeysOf(platform::RegistryKey& key) {
  return NamesOf(key, &platform::RegistryKey::EnumerateSubKey);
}

inline std::vector<std::u16string> ValuesOf(platform::RegistryKey& key) {
  return NamesOf(key, &platform::RegistryKey::EnumerateValue);
}

}  // namespace support
