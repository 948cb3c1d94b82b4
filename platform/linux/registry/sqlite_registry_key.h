// An open key of the registry in an SQLite database.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/linux/registry/registry_database.h"
#include "platform/linux/registry/registry_store.h"
#include "platform/registry.h"

namespace platform {

class SqliteRegistryKey : public RegistryKey {
 public:
  SqliteRegistryKey(std::shared_ptr<RegistryStore> store, const RegistryKeyIdentity& identity,
                    RegistryAccess access);
  ~SqliteRegistryKey() override;

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
  // Where an enumeration stands, so that the next name is one step away.
  struct Cursor {
    std::uint32_t next = 0;  // index of the name after `folded`; 0: nowhere
    std::string folded;
  };

  bool Grants(RegistryAccess needed) const { return (access_ & needed) != 0; }
  bool IsIn(const RegistryDatabase& database) const {
    return database.StoreId() == identity_.store;
  }
  RegistryStatus Enumerate(RegistryDatabase::Listing listing, Cursor* cursor, std::uint32_t index,
                           std::u16string* name);

  std::shared_ptr<RegistryStore> store_;
  RegistryKeyIdentity identity_;
  RegistryAccess access_;
  Cursor subKeys_;
  Cursor values_;
  bool isWatched_ = false;
};

}  // namespace platform
