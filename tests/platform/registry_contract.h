// The backends that keep the registry's contract, as parameters of one suite.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/registry.h"

namespace support {

struct RegistryBackendKind {
  std::string name;
  // One registry, empty at first, with what it lives on.
  std::function<std::shared_ptr<platform::Registry>()> make;
};

inline void PrintTo(const RegistryBackendKind& kind, std::ostream* out) {
  *out << kind.name;
}

class RegistryContract : public testing::TestWithParam<RegistryBackendKind> {
 protected:
  platform::Registry& registry() { return *registry_; }

  std::unique_ptr<platform::RegistryKey> Open(std::u16string_view path,
                                              platform::RegistryAccess access) {
    return registry().OpenKey(platform::RegistryRoot::LocalMachine, path, access);
  }
  std::unique_ptr<platform::RegistryKey> Create(std::u16string_view path) {
    return registry().CreateKey(platform::RegistryRoot::LocalMachine, path,
                                platform::kRegistryAllAccess);
  }

 private:
  std::shared_ptr<platform::Registry> registry_ = GetParam().make();
};

}  // namespace support
