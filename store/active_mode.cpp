#include "store/active_mode.h"

#include <array>
#include <memory>
#include <span>

#include "store/registry_layout.h"

namespace store {

std::optional<std::u16string> QueryActiveSetting(platform::RegistryKey& settingsKey) {
  std::array<char16_t, kActiveSettingCapacity> buffer{};
  auto size = static_cast<std::uint32_t>(sizeof(buffer));
  if (settingsKey.QueryValue(kActiveSettingValue, nullptr, buffer.data(), &size) !=
      platform::RegistryStatus::Success) {
    return std::nullopt;
  }
  buffer.back() = u'\0';  // what was stored without its NUL may fill the buffer
  return std::u16string(buffer.data());
}

bool SetActiveSetting(platform::RegistryKey& settingsKey, const std::u16string& activeSetting) {
  const std::span withNul(activeSetting.c_str(), activeSetting.size() + 1);
  return settingsKey.SetValue(kActiveSettingValue, platform::RegistryType::String,
                              std::as_bytes(withNul)) == platform::RegistryStatus::Success;
}

SoundMode ModeIndexFromSetting(std::u16string_view activeSetting) {
  const char16_t first = activeSetting.empty() ? u'\0' : activeSetting.front();
  return static_cast<SoundMode>(first) - static_cast<SoundMode>(u'1');
}

SoundMode QueryModeIndex(platform::RegistryKey& settingsKey) {
  constexpr SoundMode kDefaultIndex = 1;
  const std::optional<std::u16string> activeSetting = QueryActiveSetting(settingsKey);
  return activeSetting ? ModeIndexFromSetting(*activeSetting) : kDefaultIndex;
}

std::optional<SoundMode> ReadActiveModeIndex(platform::Registry& registry,
                                             std::u16string_view pathKey) {
  const std::unique_ptr<platform::RegistryScope> scope = registry.BeginRead();
  const std::unique_ptr<platform::RegistryKey> key =
      registry.OpenKey(platform::RegistryRoot::LocalMachine, SettingsKeyPath(pathKey), kReadAccess);
  if (!key) return std::nullopt;
  return QueryModeIndex(*key);
}

}  // namespace store
