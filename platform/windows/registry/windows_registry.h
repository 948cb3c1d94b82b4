// The system's own registry.
#pragma once

#include <memory>
#include <string_view>

#include "platform/registry.h"

namespace platform {

// There are no transactions: a scope does nothing, and each write counts when it is made.
class WindowsRegistry : public Registry {
 public:
  std::unique_ptr<RegistryKey> OpenKey(RegistryRoot root, std::u16string_view path,
                                       RegistryAccess access) override;
  std::unique_ptr<RegistryKey> OpenRoot(RegistryRoot root) override;
  std::unique_ptr<RegistryKey> CreateKey(RegistryRoot root, std::u16string_view path,
                                         RegistryAccess access, RegistryDisposition* disposition,
                                         std::u16string_view sddl) override;
  RegistryStatus RemoveTree(RegistryRoot root, std::u16string_view path) override;
  std::unique_ptr<RegistryScope> BeginRead() override;
  std::unique_ptr<RegistryWriteScope> BeginWrite() override;
};

}  // namespace platform
