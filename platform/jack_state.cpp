#include "platform/jack_state.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>

#include "platform/little_endian.h"

namespace platform {

std::u16string JackKeyPath(std::u16string_view endpointGuid) {
  std::u16string path = u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\MMDevices\\Audio\\Render\\";
  path.append(endpointGuid).append(u"\\FxProperties");
  return path;
}

std::u16string JackValueName(JackProperty property) {
  std::u16string name = u"{1496451E-75E5-484F-9914-A9F246BC960F},";
  for (const char digit : std::to_string(static_cast<std::uint32_t>(property))) {
    name.push_back(static_cast<char16_t>(digit));
  }
  return name;
}

std::optional<std::uint32_t> ReadJackValue(Registry& registry, std::u16string_view endpointGuid,
                                           JackProperty property) {
  const std::unique_ptr<RegistryKey> key =
      registry.OpenKey(RegistryRoot::LocalMachine, JackKeyPath(endpointGuid), kRegistryQueryValue);
  if (key == nullptr) return std::nullopt;
  RegistryType type = RegistryType::None;
  std::array<std::byte, 4> bytes{};
  auto size = static_cast<std::uint32_t>(bytes.size());
  const RegistryStatus status =
      key->QueryValue(JackValueName(property), &type, bytes.data(), &size);
  if (status != RegistryStatus::Success || type != RegistryType::Dword || size != bytes.size()) {
    return std::nullopt;
  }
  return FromLittleEndian<std::uint32_t>(bytes);
}

bool WriteJackValues(Registry& registry, std::u16string_view endpointGuid,
                     std::span<const JackValue> values) {
  const std::unique_ptr<RegistryWriteScope> scope = registry.BeginWrite();
  const std::unique_ptr<RegistryKey> key =
      registry.CreateKey(RegistryRoot::LocalMachine, JackKeyPath(endpointGuid), kRegistrySetValue);
  const bool isWritten = key != nullptr && std::ranges::all_of(values, [&](const JackValue& value) {
                           std::array<std::byte, 4> bytes{};
                           ToLittleEndian(value.value, std::span(bytes));
                           return key->SetValue(JackValueName(value.property), RegistryType::Dword,
                                                bytes) == RegistryStatus::Success;
                         });
  return isWritten && scope->Commit() == RegistryStatus::Success;
}

}  // namespace platform
