// The registry's contract as a suite: whoever links it says on which backends it runs.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/registry.h"
#include "tests/support/registry_tree.h"

namespace support {

struct RegistryBackend {
  std::string name;
  // One registry, empty at first, with what it lives on.
  std::function<std::shared_ptr<platform::Registry>()> make;
  // What cannot be kept there: tests, or single promises, by name, with the reason.
  std::map<std::string, std::string> lacks = {};
};

std::vector<RegistryBackend> RegistryBackends();

inline platform::RegistryStatus SetBytes(platform::RegistryKey& key, std::u16string_view name,
                                         std::string_view bytes) {
  return key.SetValue(name, platform::RegistryType::Binary, std::as_bytes(std::span(bytes)));
}

// The value's bytes; nothing when it cannot be read.
inline std::optional<std::string> GetBytes(platform::RegistryKey& key, std::u16string_view name) {
  const auto value = GetValue(key, name);
  return value ? std::optional(value->bytes) : std::nullopt;
}

// All names that `enumerate` gives until there are no more items.
inline std::vector<std::u16string> NamesOf(
    platform::RegistryKey& key,
    platform::RegistryStatus (platform::RegistryKey::*enumerate)(std::uint32_t, std::u16string*)) {
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
