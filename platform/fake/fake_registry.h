// The registry in memory.
#pragma once

#include <memory>
#include <string_view>

#include "platform/registry.h"

namespace platform {

// Keeps the whole contract but for scopes, which do nothing: a write is seen, and wakes those who
// wait for it, before the call that makes it returns. Any thread.
class FakeRegistry : public Registry {
 public:
  struct Tree;

  FakeRegistry();
  ~FakeRegistry() override;

  std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, std::u16string_view path,
                                       RegistryAccess access) override;
  std::unique_ptr<RegistryKey> OpenRoot(RegistryRoot root) override;
  std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, std::u16string_view path,
                                         RegistryAccess access,
                                         RegistryDisposition* disposition = nullptr,
                                         std::u16string_view sddl = {}) override;
  RegistryStatus RemoveTree(RegistryRoot root, std::u16string_view path) override;
  std::unique_ptr<RegistryScope> BeginRead() override;
  std::unique_ptr<RegistryWriteScope> BeginWrite() override;

  // The access list that the key was given; empty when it has none or does not exist.
  std::u16string AccessListOf(RegistryRoot root, std::u16string_view path) const;

 private:
  std::shared_ptr<Tree> tree_;  // shared with the opened keys
};

}  // namespace platform
