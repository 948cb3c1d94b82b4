#include "platform/linux/registry/sqlite_registry_key.h"

#include <optional>
#include <utility>

#include "platform/linux/registry/folded_name.h"
#include "platform/registry_rules.h"
#include "platform/text.h"

namespace platform {

SqliteRegistryKey::SqliteRegistryKey(std::shared_ptr<RegistryStore> store,
                                     const RegistryKeyIdentity& identity, RegistryAccess access)
    : store_(std::move(store)), identity_(identity), access_(access) {}

SqliteRegistryKey::~SqliteRegistryKey() {
  if (isWatched_) store_->watch.Close(this);
}

RegistryStatus SqliteRegistryKey::QueryValue(std::u16string_view name, RegistryType* type,
                                             void* data, std::uint32_t* size) {
  if (!Grants(kRegistryQueryValue)) return RegistryStatus::AccessDenied;
  const FoldedName folded(name);
  const RegistrySessions::Lease session(store_->sessions);
  return session->Read(RegistryStatus::FileNotFound, [&](RegistryDatabase& database) {
    if (!IsIn(database)) return RegistryStatus::FileNotFound;
    return database.ReadValue(identity_.key, folded.Utf8(), type, data, size);
  });
}

RegistryStatus SqliteRegistryKey::SetValue(std::u16string_view name, RegistryType type,
                                           std::span<const std::byte> data) {
  if (!Grants(kRegistrySetValue)) return RegistryStatus::AccessDenied;
  if (name.size() > kRegistryValueNameLimit) return RegistryStatus::InvalidParameter;
  const FoldedName folded(name);
  const std::string spelled = ToUtf8(name);
  values_ = {};
  const RegistrySessions::Lease session(store_->sessions);
  return session->Write([&](RegistryDatabase& database) {
    if (!IsIn(database)) return RegistryStatus::FileNotFound;
    const RegistryStatus counted = session->CountChange(identity_.key);
    if (counted != RegistryStatus::Success) return counted;
    return database.WriteValue(identity_.key, folded.Utf8(), spelled, type, data);
  });
}

RegistryStatus SqliteRegistryKey::RemoveValue(std::u16string_view name) {
  if (!Grants(kRegistrySetValue)) return RegistryStatus::AccessDenied;
  const FoldedName folded(name);
  values_ = {};
  const RegistrySessions::Lease session(store_->sessions);
  return session->Write([&](RegistryDatabase& database) {
    if (!IsIn(database)) return RegistryStatus::FileNotFound;
    const RegistryStatus deleted = database.DeleteValue(identity_.key, folded.Utf8());
    if (deleted != RegistryStatus::Success) return deleted;
    return session->CountChange(identity_.key);
  });
}

RegistryStatus SqliteRegistryKey::EnumerateSubKey(std::uint32_t index, std::u16string* name) {
  if (!Grants(kRegistryEnumerateSubKeys)) return RegistryStatus::AccessDenied;
  return Enumerate(RegistryDatabase::Listing::SubKeys, &subKeys_, index, name);
}

RegistryStatus SqliteRegistryKey::EnumerateValue(std::uint32_t index, std::u16string* name) {
  if (!Grants(kRegistryQueryValue)) return RegistryStatus::AccessDenied;
  return Enumerate(RegistryDatabase::Listing::Values, &values_, index, name);
}

RegistryStatus SqliteRegistryKey::Enumerate(RegistryDatabase::Listing listing, Cursor* cursor,
                                            std::uint32_t index, std::u16string* name) {
  const RegistrySessions::Lease session(store_->sessions);
  return session->Read(RegistryStatus::FileNotFound, [&](RegistryDatabase& database) {
    if (!IsIn(database)) return RegistryStatus::FileNotFound;
    const bool isNext = index > 0 && cursor->next == index;
    std::optional<RegistryDatabase::Name> found =
        isNext ? database.NameAfter(identity_.key, listing, cursor->folded)
               : database.NameAt(identity_.key, listing, index);
    if (!found) {
      return database.HasKey(identity_.key) ? RegistryStatus::NoMoreItems
                                            : RegistryStatus::FileNotFound;
    }
    *name = FromUtf8(found->spelled);
    *cursor = {index + 1, std::move(found->folded)};
    return RegistryStatus::Success;
  });
}

RegistryStatus SqliteRegistryKey::NotifyChange(WakeEvent& wake) {
  if (!Grants(kRegistryNotify)) return RegistryStatus::AccessDenied;
  const RegistrySessions::Lease session(store_->sessions);
  return session->Read(RegistryStatus::FileNotFound, [&](RegistryDatabase& database) {
    if (!IsIn(database)) return RegistryStatus::FileNotFound;
    const RegistryDatabase::Changes changes = database.ReadChanges(identity_.key);
    if (changes.result != SqliteStep::Row) return RegistryStatus::FileNotFound;
    session->ForgetCounted();
    isWatched_ = true;
    if (!store_->watch.IsArmed(this)) store_->watch.Arm(this, identity_, changes.count, wake);
    return RegistryStatus::Success;
  });
}

RegistryStatus SqliteRegistryKey::SetAccessList(std::u16string_view sddl) {
  if (!Grants(kRegistryWriteAccessList)) return RegistryStatus::AccessDenied;
  if (!IsAccessList(sddl)) return RegistryStatus::InvalidParameter;
  const RegistrySessions::Lease session(store_->sessions);
  const RegistryStatus status = session->Write([&](RegistryDatabase& database) {
    if (!IsIn(database)) return RegistryStatus::FileNotFound;
    return database.SetAccessList(identity_.key, ToUtf8(sddl));
  });
  if (status == RegistryStatus::Success) store_->files.OpenToEveryone();
  return status;
}

}  // namespace platform
