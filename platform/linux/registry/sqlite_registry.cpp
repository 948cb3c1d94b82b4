#include "platform/linux/registry/sqlite_registry.h"

#include <optional>
#include <utility>
#include <vector>

#include "platform/linux/registry/folded_name.h"
#include "platform/linux/registry/registry_store.h"
#include "platform/linux/registry/sqlite_registry_key.h"
#include "platform/registry_rules.h"
#include "platform/text.h"

namespace platform {
namespace {

using Path = std::vector<std::u16string_view>;

RegistryKeyId RootId(RegistryRoot root) {
  return root == RegistryRoot::LocalMachine ? kLocalMachineId : kClassesRootId;
}

std::optional<RegistryKeyId> FindKey(RegistryDatabase& database, RegistryRoot root,
                                     const Path& path) {
  std::optional<RegistryKeyId> key = RootId(root);
  for (const std::u16string_view part : path) {
    key = database.FindSubKey(*key, FoldedName(part).Utf8());
    if (!key) break;
  }
  return key;
}

// `created` tells whether the last part was made; nothing on failure.
std::optional<RegistryKeyId> MakeKey(RegistryDatabase& database, RegistryRoot root,
                                     const Path& path, bool* created) {
  RegistryKeyId key = RootId(root);
  for (const std::u16string_view part : path) {
    const FoldedName folded(part);
    std::optional<RegistryKeyId> subKey = database.FindSubKey(key, folded.Utf8());
    *created = !subKey;
    if (!subKey) subKey = database.InsertKey(key, folded.Utf8(), ToUtf8(part));
    if (!subKey) return std::nullopt;
    key = *subKey;
  }
  return key;
}

class SqliteReadScope : public RegistryScope {
 public:
  explicit SqliteReadScope(std::shared_ptr<RegistryStore> store) : store_(std::move(store)) {
    RegistrySessions::Lease(store_->sessions)->EnterReadScope();
  }
  ~SqliteReadScope() override { RegistrySessions::Lease(store_->sessions)->LeaveReadScope(); }
  SqliteReadScope(const SqliteReadScope&) = delete;
  SqliteReadScope& operator=(const SqliteReadScope&) = delete;

 private:
  std::shared_ptr<RegistryStore> store_;
};

class SqliteWriteScope : public RegistryWriteScope {
 public:
  explicit SqliteWriteScope(std::shared_ptr<RegistryStore> store) : store_(std::move(store)) {
    RegistrySessions::Lease(store_->sessions)->EnterWriteScope();
  }
  ~SqliteWriteScope() override {
    if (isOpen_) RegistrySessions::Lease(store_->sessions)->AbandonWriteScope();
  }
  SqliteWriteScope(const SqliteWriteScope&) = delete;
  SqliteWriteScope& operator=(const SqliteWriteScope&) = delete;

  RegistryStatus Commit() override {
    if (!std::exchange(isOpen_, false)) return RegistryStatus::InvalidParameter;
    return RegistrySessions::Lease(store_->sessions)->CommitWriteScope();
  }

 private:
  std::shared_ptr<RegistryStore> store_;
  bool isOpen_ = true;
};

}  // namespace

SqliteRegistry::SqliteRegistry(std::filesystem::path folder)
    : store_(std::make_shared<RegistryStore>(std::move(folder))) {}

SqliteRegistry::~SqliteRegistry() = default;

std::unique_ptr<RegistryKey> SqliteRegistry::OpenKey(RegistryRoot root, std::u16string_view path,
                                                     RegistryAccess access) {
  using Result = std::unique_ptr<RegistryKey>;
  const std::optional<Path> parts = SplitRegistryPath(path);
  if (!parts) return nullptr;
  const RegistrySessions::Lease session(store_->sessions);
  return session->Read(Result(), [&](RegistryDatabase& database) -> Result {
    const std::optional<RegistryKeyId> key = FindKey(database, root, *parts);
    if (!key) return nullptr;
    return std::make_unique<SqliteRegistryKey>(
        store_, RegistryKeyIdentity{database.StoreId(), *key}, access);
  });
}

std::unique_ptr<RegistryKey> SqliteRegistry::OpenRoot(RegistryRoot root) {
  using Result = std::unique_ptr<RegistryKey>;
  const RegistrySessions::Lease session(store_->sessions);
  return session->Read(Result(), [&](RegistryDatabase& database) -> Result {
    return std::make_unique<SqliteRegistryKey>(
        store_, RegistryKeyIdentity{database.StoreId(), RootId(root)}, kRegistryEnumerateSubKeys);
  });
}

std::unique_ptr<RegistryKey> SqliteRegistry::CreateKey(RegistryRoot root, std::u16string_view path,
                                                       RegistryAccess access,
                                                       RegistryDisposition* disposition,
                                                       std::u16string_view sddl) {
  const std::optional<Path> parts = SplitRegistryPath(path);
  if (!parts || (!sddl.empty() && !IsAccessList(sddl))) return nullptr;
  const auto answer = [disposition](RegistryDisposition value) {
    if (disposition != nullptr) *disposition = value;
  };
  // Most often the key is there, and nobody need wait for a writer.
  if (std::unique_ptr<RegistryKey> existing = OpenKey(root, path, access)) {
    answer(RegistryDisposition::OpenedExisting);
    return existing;
  }
  RegistryKeyIdentity identity{};
  bool created = false;
  const RegistrySessions::Lease session(store_->sessions);
  const RegistryStatus status = session->Write([&](RegistryDatabase& database) {
    const std::optional<RegistryKeyId> key = MakeKey(database, root, *parts, &created);
    if (!key) return database.WriteFailure();
    identity = {database.StoreId(), *key};
    if (!created || sddl.empty()) return RegistryStatus::Success;
    return database.SetAccessList(*key, ToUtf8(sddl));
  });
  if (status != RegistryStatus::Success) return nullptr;
  if (created && !sddl.empty()) store_->files.OpenToEveryone();
  answer(created ? RegistryDisposition::CreatedNew : RegistryDisposition::OpenedExisting);
  return std::make_unique<SqliteRegistryKey>(store_, identity, access);
}

RegistryStatus SqliteRegistry::RemoveTree(RegistryRoot root, std::u16string_view path) {
  const std::optional<Path> parts = SplitRegistryPath(path);
  if (!parts || OpenKey(root, path, kRegistryRead) == nullptr) return RegistryStatus::FileNotFound;
  const RegistrySessions::Lease session(store_->sessions);
  return session->Write([&](RegistryDatabase& database) {
    const std::optional<RegistryKeyId> key = FindKey(database, root, *parts);
    if (!key) return RegistryStatus::FileNotFound;
    session->ForgetCounted();
    return database.DeleteTree(*key);
  });
}

void SqliteRegistry::SetDamagedAside() {
  store_->files.SetDamagedAside();
}

std::unique_ptr<RegistryScope> SqliteRegistry::BeginRead() {
  return std::make_unique<SqliteReadScope>(store_);
}

std::unique_ptr<RegistryWriteScope> SqliteRegistry::BeginWrite() {
  return std::make_unique<SqliteWriteScope>(store_);
}

}  // namespace platform
