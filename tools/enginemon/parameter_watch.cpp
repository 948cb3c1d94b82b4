#include "tools/enginemon/parameter_watch.h"

#include <array>
#include <bit>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/little_endian.h"
#include "platform/text.h"
#include "store/active_mode.h"
#include "store/registry_layout.h"

namespace tools {
namespace {

using platform::RegistryKey;
using platform::RegistryStatus;

std::unique_ptr<RegistryKey> OpenKey(platform::Registry& registry, std::u16string_view path) {
  return registry.OpenKey(platform::RegistryRoot::LocalMachine, path, store::kReadAccess);
}

std::vector<std::u16string> SubKeys(platform::Registry& registry, std::u16string_view path) {
  std::vector<std::u16string> names;
  const std::unique_ptr<RegistryKey> key = OpenKey(registry, path);
  if (!key) return names;
  std::u16string name;
  for (std::uint32_t i = 0; key->EnumerateSubKey(i, &name) == RegistryStatus::Success; ++i) {
    names.push_back(name);
  }
  return names;
}

// The bits of a parameter; nothing when the value is no float.
std::optional<std::uint32_t> ReadBits(RegistryKey& key, std::u16string_view name) {
  std::array<std::byte, sizeof(float)> bytes{};
  auto size = static_cast<std::uint32_t>(bytes.size());
  if (key.QueryValue(name, nullptr, bytes.data(), &size) != RegistryStatus::Success ||
      size != bytes.size()) {
    return std::nullopt;
  }
  return platform::FromLittleEndian<std::uint32_t>(bytes);
}

std::map<std::uint32_t, std::uint32_t> ReadParameters(RegistryKey& key) {
  std::map<std::uint32_t, std::uint32_t> parameters;
  for (std::uint32_t number = 1; number <= store::kParameterCount; ++number) {
    if (const auto bits = ReadBits(key, store::ParameterName(number))) {
      parameters.emplace_hint(parameters.end(), number, *bits);
    }
  }
  // A tuning file may bring more than the engine knows, without gaps.
  for (std::uint32_t number = store::kParameterCount + 1;; ++number) {
    const auto bits = ReadBits(key, store::FormatParameterName(number));
    if (!bits) return parameters;
    parameters.emplace_hint(parameters.end(), number, *bits);
  }
}

}  // namespace

ParameterWatch::ParameterWatch(platform::Registry& registry) : registry_(registry), last_(Read()) {}

ParameterWatch::State ParameterWatch::Read() const {
  const std::unique_ptr<platform::RegistryScope> scope = registry_.BeginRead();
  State state;
  const std::u16string parametersPath = std::u16string(store::kProductKey) + u"\\Parameters";
  for (const std::u16string& pathKey : SubKeys(registry_, parametersPath)) {
    const auto settingsKey = OpenKey(registry_, store::SettingsKeyPath(pathKey));
    if (!settingsKey) continue;
    state.active[pathKey] =
        store::QueryActiveSetting(*settingsKey).value_or(std::u16string(store::kDefaultSetting));
    for (const std::u16string& setting : SubKeys(registry_, store::SettingsKeyPath(pathKey))) {
      const std::unique_ptr<RegistryKey> key =
          OpenKey(registry_, store::SettingKeyPath(store::Tree::Parameters, pathKey, setting));
      if (key) state.parameters.emplace(Place{pathKey, setting}, ReadParameters(*key));
    }
  }
  return state;
}

StoreChanges ParameterWatch::Look() {
  State now = Read();
  StoreChanges changes;
  for (const auto& [pathKey, setting] : now.active) {
    const auto known = last_.active.find(pathKey);
    if (known != last_.active.end() && known->second == setting) continue;
    changes.activeSettings.push_back({pathKey, setting});
  }
  for (const auto& [place, parameters] : now.parameters) {
    const auto& [pathKey, setting] = place;
    const bool isActive = platform::CompareIgnoreCase(now.active[pathKey], setting) == 0;
    const Parameters& before = last_.parameters[place];
    for (const auto& [number, bits] : parameters) {
      const auto known = before.find(number);
      if (known != before.end() && known->second == bits) continue;
      changes.parameters.push_back(
          {pathKey, setting, number, std::bit_cast<float>(bits),
           isActive ? ChangedParameter::State::Active : ChangedParameter::State::Idle});
    }
  }
  last_ = std::move(now);
  return changes;
}

std::vector<ActiveSetting> ParameterWatch::ActiveSettings() const {
  std::vector<ActiveSetting> settings;
  for (const auto& [pathKey, setting] : last_.active) settings.push_back({pathKey, setting});
  return settings;
}

}  // namespace tools
