// Shorthand for what tests put into a registry and look up in it by path, below
// HKEY_LOCAL_MACHINE.
#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/registry.h"

namespace support {

inline std::string Bytes(const void* data, std::size_t size) {
  return {static_cast<const char*>(data), size};
}

// The text with its NUL, as the registry holds it.
inline std::string TextBytes(const std::u16string& text) {
  return Bytes(text.c_str(), (text.size() + 1) * sizeof(char16_t));
}

inline void MakeKey(platform::Registry& registry, std::u16string_view path) {
  static_cast<void>(
      registry.CreateKey(platform::RegistryRoot::LocalMachine, path, platform::kRegistryAllAccess));
}

inline void PutValue(platform::Registry& registry, std::u16string_view path,
                     std::u16string_view name, platform::RegistryType type,
                     std::string_view bytes) {
  const auto key =
      registry.CreateKey(platform::RegistryRoot::LocalMachine, path, platform::kRegistryAllAccess);
  static_cast<void>(key->SetValue(name, type, std::as_bytes(std::span(bytes))));
}

inline void PutText(platform::Registry& registry, std::u16string_view path,
                    std::u16string_view name, const std::u16string& text) {
  PutValue(registry, path, name, platform::RegistryType::String, TextBytes(text));
}

inline void PutDword(platform::Registry& registry, std::u16string_view path,
                     std::u16string_view name, std::uint32_t number) {
  PutValue(registry, path, name, platform::RegistryType::Dword, Bytes(&number, sizeof(number)));
}

inline void PutFloat(platform::Registry& registry, std::u16string_view path,
                     std::u16string_view name, float number) {
  PutValue(registry, path, name, platform::RegistryType::Binary, Bytes(&number, sizeof(number)));
}

inline void RemoveValue(platform::Registry& registry, std::u16string_view path,
                        std::u16string_view name) {
  const auto key =
      registry.OpenKey(platform::RegistryRoot::LocalMachine, path, platform::kRegistryAllAccess);
  static_cast<void>(key->RemoveValue(name));
}

inline std::unique_ptr<platform::RegistryKey> OpenToRead(platform::Registry& registry,
                                                         std::u16string_view path) {
  return registry.OpenKey(platform::RegistryRoot::LocalMachine, path, platform::kRegistryRead);
}

struct StoredValue {
  platform::RegistryType type;
  std::string bytes;
  bool operator==(const StoredValue&) const = default;
};

inline std::optional<StoredValue> GetValue(platform::RegistryKey& key, std::u16string_view name) {
  std::uint32_t size = 0;
  StoredValue value{};
  if (key.QueryValue(name, &value.type, nullptr, &size) != platform::RegistryStatus::Success) {
    return std::nullopt;
  }
  value.bytes.resize(size);
  static_cast<void>(key.QueryValue(name, &value.type, value.bytes.data(), &size));
  return value;
}

inline std::optional<StoredValue> GetValue(platform::Registry& registry, std::u16string_view path,
                                           std::u16string_view name) {
  const auto key = OpenToRead(registry, path);
  if (!key) return std::nullopt;
  return GetValue(*key, name);
}

inline std::optional<float> GetFloat(platform::Registry& registry, std::u16string_view path,
                                     std::u16string_view name) {
  const std::optional<StoredValue> value = GetValue(registry, path, name);
  float number = 0.0F;
  if (!value || value->type != platform::RegistryType::Binary ||
      value->bytes.size() != sizeof(number)) {
    return std::nullopt;
  }
  std::memcpy(&number, value->bytes.data(), sizeof(number));
  return number;
}

// A whole tree: every key under its path, and every value under "path : name".
using Tree = std::map<std::u16string, StoredValue>;

inline void AddToTree(platform::Registry& registry, const std::u16string& path, Tree& tree) {
  const auto key = OpenToRead(registry, path);
  if (!key) return;
  tree[path] = {};
  std::u16string name;
  for (std::uint32_t i = 0; key->EnumerateValue(i, &name) == platform::RegistryStatus::Success;
       ++i) {
    tree[path + u" : " + name] = GetValue(*key, name).value_or(StoredValue{});
  }
  for (std::uint32_t i = 0; key->EnumerateSubKey(i, &name) == platform::RegistryStatus::Success;
       ++i) {
    AddToTree(registry, path + u"\\" + name, tree);
  }
}

inline Tree ReadTree(platform::Registry& registry, const std::u16string& path) {
  Tree tree;
  AddToTree(registry, path, tree);
  return tree;
}

}  // namespace support
