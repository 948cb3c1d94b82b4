#include <gtest/gtest.h>

#include "platform/fake/fake_registry.h"
#include "platform/linux/sqlite_registry.h"
#include "tests/platform/registry_contract.h"
#include "tests/support/temporary_folder.h"

namespace support {
namespace {

class FakeBackend : public RegistryBackend {
 public:
  platform::Registry& Registry() override { return registry_; }

 private:
  platform::FakeRegistry registry_;
};

class SqliteBackend : public RegistryBackend {
 public:
  platform::Registry& Registry() override { return registry_; }

 private:
  TemporaryFolder folder_;
  platform::SqliteRegistry registry_{folder_.Path() / "store"};
};

const RegistryBackendKind kKinds[] = {{"Fake", [] { return std::make_unique<FakeBackend>(); }},
                                      {"Sqlite", [] { return std::make_unique<SqliteBackend>(); }}};

INSTANTIATE_TEST_SUITE_P(Backends, RegistryContract, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace support
