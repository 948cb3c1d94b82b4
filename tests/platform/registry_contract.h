// The backends that keep the registry's contract, as parameters of one suite.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/registry.h"

namespace support {

// One registry, empty at first, with what it lives on.
class RegistryBackend {
 public:
  virtual ~RegistryBackend() = default;
  virtual platform::Registry& Registry() = 0;
};

struct RegistryBackendKind {
  std::string name;
  std::function<std::unique_ptr<RegistryBackend>()> make;
};

inline void PrintTo(const RegistryBackendKind& kind, std::ostream* out) {
  *out << kind.name;
}

class RegistryContract : public testing::TestWithParam<RegistryBackendKind> {
 protected:
  platform::Registry& registry() { return backend_->Registry(); }

  std::unique_ptr<platform::RegistryKey> Open(std::u16string_view path,
                                              platform::RegistryAccess access) {
    return registry().OpenKey(platform::RegistryRoot::LocalMachine, path, access);
  }
  std::unique_ptr<platform::RegistryKey> Create(std::u16string_view path) {
    return registry().CreateKey(platform::RegistryRoot::LocalMachine, path,
                                platform::kRegistryAllAccess);
  }

 private:
  std::unique_ptr<RegistryBackend> backend_ = GetParam().make();
};

}  // namespace support
