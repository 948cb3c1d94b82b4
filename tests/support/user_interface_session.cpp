// Compiled into a test program, gives all its tests one user-interface session; without a display
// unless the program was started with one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "platform/shell.h"
#include "tests/support/no_instance.h"

namespace {

class UserInterface : public testing::Environment {
 public:
  void SetUp() override {
    constexpr int kKeepWhatIsSet = 0;
    setenv("QT_QPA_PLATFORM", "offscreen", kKeepWhatIsSet);
    session_ = std::make_unique<platform::UserInterfaceSession>(instance_);
  }
  void TearDown() override { session_.reset(); }

 private:
  support::NoInstance instance_;
  std::unique_ptr<platform::UserInterfaceSession> session_;
};

[[maybe_unused]] const auto* const kRegistered =
    testing::AddGlobalTestEnvironment(new UserInterface);

}  // namespace
