#include "platform/windows/registry/windows_registry_key.h"

#include <aclapi.h>

#include <algorithm>
#include <array>

#include "platform/registry_rules.h"
#include "platform/text.h"
#include "platform/windows/registry/access_list.h"
#include "platform/windows/registry/registry_status.h"
#include "platform/windows/wide_text.h"

namespace platform {

RegistryStatus WindowsRegistryKey::QueryValue(std::u16string_view name, RegistryType* type,
                                              void* data, std::uint32_t* size) {
  const auto wideName = ToWideName(name);
  if (!wideName) return RegistryStatus::FileNotFound;
  DWORD valueType = 0;
  DWORD valueSize = size == nullptr ? 0 : *size;
  const RegistryStatus status = ToRegistryStatus(
      RegQueryValueExW(key_.Get(), wideName->c_str(), nullptr, &valueType, static_cast<BYTE*>(data),
                       size == nullptr ? nullptr : &valueSize));
  if (status != RegistryStatus::Success && status != RegistryStatus::MoreData) return status;
  if (type != nullptr) *type = static_cast<RegistryType>(valueType);
  if (size != nullptr) *size = valueSize;
  return status;
}

RegistryStatus WindowsRegistryKey::SetValue(std::u16string_view name, RegistryType type,
                                            std::span<const std::byte> data) {
  const auto wideName = ToWideName(name);
  if (!wideName || wideName->size() > kRegistryValueNameLimit) {
    return RegistryStatus::InvalidParameter;
  }
  return ToRegistryStatus(RegSetValueExW(key_.Get(), wideName->c_str(), 0, static_cast<DWORD>(type),
                                         reinterpret_cast<const BYTE*>(data.data()),
                                         static_cast<DWORD>(data.size())));
}

RegistryStatus WindowsRegistryKey::RemoveValue(std::u16string_view name) {
  const auto wideName = ToWideName(name);
  if (!wideName) return RegistryStatus::FileNotFound;
  return ToRegistryStatus(RegDeleteValueW(key_.Get(), wideName->c_str()));
}

RegistryStatus WindowsRegistryKey::EnumerateSubKey(std::uint32_t index, std::u16string* name) {
  std::array<wchar_t, kRegistryKeyNameLimit + 1> buffer;
  auto size = static_cast<DWORD>(buffer.size());
  const LSTATUS status =
      RegEnumKeyExW(key_.Get(), index, buffer.data(), &size, nullptr, nullptr, nullptr, nullptr);
  if (status == ERROR_SUCCESS) *name = FromWide({buffer.data(), size});
  return ToRegistryStatus(status);
}

RegistryStatus WindowsRegistryKey::EnumerateValue(std::uint32_t index, std::u16string* name) {
  Version version;
  RegistryStatus status = ReadVersion(&version);
  if (status == RegistryStatus::Success && (index == 0 || version != valueNamesVersion_)) {
    status = ReadValueNames();
    valueNamesVersion_ = version;
  }
  if (status != RegistryStatus::Success) return status;
  if (index >= valueNames_.size()) return RegistryStatus::NoMoreItems;
  *name = valueNames_[index];
  return status;
}

RegistryStatus WindowsRegistryKey::ReadVersion(Version* version) const {
  FILETIME time{};
  const LSTATUS status =
      RegQueryInfoKeyW(key_.Get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                       &version->valueCount, nullptr, nullptr, nullptr, &time);
  version->lastWrite = (std::uint64_t{time.dwHighDateTime} << 32U) | time.dwLowDateTime;
  return ToRegistryStatus(status);
}

RegistryStatus WindowsRegistryKey::ReadValueNames() {
  valueNames_.clear();
  std::vector<wchar_t> buffer(kRegistryValueNameLimit + 1);
  LSTATUS status = ERROR_SUCCESS;
  while (status == ERROR_SUCCESS) {
    auto size = static_cast<DWORD>(buffer.size());
    status = RegEnumValueW(key_.Get(), static_cast<DWORD>(valueNames_.size()), buffer.data(), &size,
                           nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_SUCCESS) valueNames_.push_back(FromWide({buffer.data(), size}));
  }
  std::ranges::sort(valueNames_, [](const std::u16string& left, const std::u16string& right) {
    return CompareIgnoreCase(left, right) < 0;
  });
  return status == ERROR_NO_MORE_ITEMS ? RegistryStatus::Success : ToRegistryStatus(status);
}

RegistryStatus WindowsRegistryKey::NotifyChange(WakeEvent& wake) {
  return notification_.Arm(key_.Get(), wake);
}

RegistryStatus WindowsRegistryKey::SetAccessList(std::u16string_view sddl) {
  const SecurityDescriptor descriptor = ParseSecurityDescriptor(sddl);
  const PACL list = AccessListOf(descriptor);
  if (list == nullptr) return RegistryStatus::InvalidParameter;
  return ToRegistryStatus(static_cast<LSTATUS>(SetSecurityInfo(
      key_.Get(), SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, list, nullptr)));
}

}  // namespace platform
