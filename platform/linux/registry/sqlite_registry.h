// The registry in an SQLite database.
#pragma once

#include <filesystem>
#include <memory>
#include <string_view>

#include "platform/registry.h"

namespace platform {

struct RegistryStore;

// Reads never make the folder or the database; the first write does. What goes wrong with
// the database is told once on standard error; reads then find nothing and writes fail. Waiting for
// another process's write is bounded. Opened keys and scopes keep what they need alive.
class SqliteRegistry : public Registry {
 public:
  // The folder that holds the database and its companions.
  explicit SqliteRegistry(std::filesystem::path folder);
  ~SqliteRegistry() override;

  std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, std::u16string_view path,
                                       RegistryAccess access) override;
  std::unique_ptr<RegistryKey> OpenRoot(RegistryRoot root) override;
  std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, std::u16string_view path,
                                         RegistryAccess access,
                                         RegistryDisposition* disposition = nullptr,
                                         std::u16string_view sddl = {}) override;
  RegistryStatus RemoveTree(RegistryRoot root, std::u16string_view path) override;
  void SetDamagedAside() override;
  std::unique_ptr<RegistryScope> BeginRead() override;
  std::unique_ptr<RegistryWriteScope> BeginWrite() override;

 private:
  std::shared_ptr<RegistryStore> store_;
};

}  // namespace platform
