#include "store/parameter_store.h"

#include <memory>
#include <span>

#include "store/active_mode.h"

namespace store {
namespace {

using platform::Registry;
using platform::RegistryAccess;
using platform::RegistryDisposition;
using platform::RegistryKey;
using platform::RegistryRoot;
using platform::RegistryScope;
using platform::RegistryStatus;
using platform::RegistryType;
using platform::RegistryWriteScope;

// Full access for users, authenticated users and administrators, inherited by what lies below.
constexpr std::u16string_view kVendorAccessList =
    u"D:(A;OICI;KA;;;BU)(A;OICI;KA;;;AU)(A;OICI;KA;;;BA)";

std::unique_ptr<RegistryKey> OpenKey(Registry& registry, std::u16string_view path,
                                     RegistryAccess access) {
  return registry.OpenKey(RegistryRoot::LocalMachine, path, access);
}

// Leaves `value`, or the bytes of it that a shorter value does not cover, as it was.
bool QueryParameter(RegistryKey& key, std::size_t number, float& value) {
  std::uint32_t size = sizeof(value);
  return key.QueryValue(ParameterName(number), nullptr, &value, &size) == RegistryStatus::Success;
}

void SetParameter(RegistryKey& key, std::size_t number, const float& value) {
  static_cast<void>(key.SetValue(ParameterName(number), RegistryType::Binary,
                                 std::as_bytes(std::span(&value, 1))));
}

// A NaN on either side differs, from itself too: it is written again at every commit.
bool Differs(float value, float committed) {
  return value != committed;
}

}  // namespace

void EnsureVendorKey(Registry& registry) {
  if (!platform::IsAccessList(kVendorAccessList)) return;
  auto disposition = RegistryDisposition::CreatedNew;
  const std::unique_ptr<RegistryWriteScope> scope = registry.BeginWrite();
  const std::unique_ptr<RegistryKey> key = registry.CreateKey(
      RegistryRoot::LocalMachine, kVendorKey, kWriteAccess, &disposition, kVendorAccessList);
  if (key && disposition == RegistryDisposition::OpenedExisting) {
    static_cast<void>(key->SetAccessList(kVendorAccessList));
  }
  static_cast<void>(scope->Commit());
}

bool LoadActiveSet(Registry& registry, std::u16string_view pathKey, ParameterStore& store) {
  store.pathKey = pathKey;
  const std::unique_ptr<RegistryScope> scope = registry.BeginRead();
  const std::unique_ptr<RegistryKey> settingsKey =
      OpenKey(registry, SettingsKeyPath(pathKey), kReadAccess);
  if (!settingsKey) return false;
  store.activeSetting = QueryActiveSetting(*settingsKey).value_or(std::u16string(kDefaultSetting));
  const std::unique_ptr<RegistryKey> setKey = OpenKey(
      registry, SettingKeyPath(Tree::Parameters, pathKey, store.activeSetting), kReadAccess);
  if (!setKey) return true;
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    static_cast<void>(QueryParameter(*setKey, i + 1, store.values[i]));
  }
  store.committed = store.values;
  return true;
}

bool CommitChanges(Registry& registry, ParameterStore& store) {
  const std::unique_ptr<RegistryWriteScope> scope = registry.BeginWrite();
  const std::unique_ptr<RegistryKey> key = registry.CreateKey(
      RegistryRoot::LocalMachine,
      SettingKeyPath(Tree::Parameters, store.pathKey, store.activeSetting), kWriteAccess);
  if (!key) return false;
  ParameterSet committed = store.committed;
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    if (!Differs(store.values[i], committed[i])) continue;
    SetParameter(*key, i + 1, store.values[i]);
    committed[i] = store.values[i];
  }
  if (scope->Commit() != RegistryStatus::Success) return false;
  store.committed = committed;
  return true;
}

bool CopyDefaultsToActive(Registry& registry, ParameterStore& store) {
  const std::unique_ptr<RegistryWriteScope> scope = registry.BeginWrite();
  const std::unique_ptr<RegistryKey> target = OpenKey(
      registry, SettingKeyPath(Tree::Parameters, store.pathKey, store.activeSetting), kWriteAccess);
  if (!target) return false;
  const std::unique_ptr<RegistryKey> defaults = OpenKey(
      registry, SettingKeyPath(Tree::Defaults, store.pathKey, store.activeSetting), kReadAccess);
  if (!defaults) return false;
  ParameterSet values = store.values;
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    float value = 0.0F;
    if (!QueryParameter(*defaults, i + 1, value)) continue;
    SetParameter(*target, i + 1, value);
    values[i] = value;
  }
  if (scope->Commit() != RegistryStatus::Success) return false;
  store.values = values;
  return true;
}

}  // namespace store
