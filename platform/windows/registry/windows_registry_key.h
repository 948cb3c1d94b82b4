// An open key of the system's registry.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry.h"
#include "platform/windows/handle.h"
#include "platform/windows/registry/key_notification.h"

namespace platform {

using KeyHandle = OwnedHandle<HKEY, &RegCloseKey>;

class WindowsRegistryKey : public RegistryKey {
 public:
  explicit WindowsRegistryKey(KeyHandle key) : key_(std::move(key)) {}

  RegistryStatus QueryValue(std::u16string_view name, RegistryType* type, void* data,
                            std::uint32_t* size) override;
  RegistryStatus SetValue(std::u16string_view name, RegistryType type,
                          std::span<const std::byte> data) override;
  RegistryStatus RemoveValue(std::u16string_view name) override;
  RegistryStatus EnumerateSubKey(std::uint32_t index, std::u16string* name) override;
  RegistryStatus EnumerateValue(std::uint32_t index, std::u16string* name) override;
  RegistryStatus NotifyChange(WakeEvent& wake) override;
  RegistryStatus SetAccessList(std::u16string_view sddl) override;

 private:
  struct Version {
    DWORD valueCount = 0;
    std::uint64_t lastWrite = 0;
    bool operator==(const Version&) const = default;
  };

  RegistryStatus ReadVersion(Version* version) const;
  RegistryStatus ReadValueNames();

  KeyHandle key_;
  // The system keeps values in the order in which they were made.
  std::vector<std::u16string> valueNames_;
  Version valueNamesVersion_;
  KeyNotification notification_;  // last, to go before the key
};

}  // namespace platform
