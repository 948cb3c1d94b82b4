// Everything that a registry holds, for comparing.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/registry.h"

namespace fuzz {

// By key path and value name.
using RegistryValues = std::map<std::pair<std::u16string, std::u16string>, std::string>;

inline void CollectValues(platform::Registry& registry, const std::u16string& path,
                          RegistryValues* values) {
  constexpr auto kRoot = platform::RegistryRoot::LocalMachine;
  const auto key = path.empty() ? registry.OpenRoot(kRoot)
                                : registry.OpenKey(kRoot, path, platform::kRegistryRead);
  if (!key) return;
  std::u16string name;
  for (std::uint32_t i = 0; key->EnumerateValue(i, &name) == platform::RegistryStatus::Success;
       ++i) {
    std::uint32_t size = 0;
    key->QueryValue(name, nullptr, nullptr, &size);
    std::string bytes(size, '\0');
    key->QueryValue(name, nullptr, bytes.data(), &size);
    (*values)[{path, name}] = std::move(bytes);
  }
  for (std::uint32_t i = 0; key->EnumerateSubKey(i, &name) == platform::RegistryStatus::Success;
       ++i) {
    CollectValues(registry, path.empty() ? name : path + u"\\" + name, values);
  }
}

inline RegistryValues AllValues(platform::Registry& registry) {
  RegistryValues values;
  CollectValues(registry, u"", &values);
  return values;
}

}  // namespace fuzz
