// Compiled into a test program, gives all its tests one user-interface session; without a display
// unless the program was started with one.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "platform/shell.h"
#include "platform/startup.h"
#include "tests/support/no_instance.h"

namespace {

class UserInterface : public testing::Environment {
 public:
  void SetUp() override {
    static char withoutDisplay[] = "QT_QPA_PLATFORM=offscreen";
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) putenv(withoutDisplay);
    drawing_ = std::make_unique<platform::DrawingSession>();
    session_ = std::make_unique<platform::UserInterfaceSession>(instance_);
  }
  void TearDown() override {
    session_.reset();
    drawing_.reset();
  }

 private:
  support::NoInstance instance_;
  std::unique_ptr<platform::DrawingSession> drawing_;
  std::unique_ptr<platform::UserInterfaceSession> session_;
};

[[maybe_unused]] const auto* const kRegistered =
    testing::AddGlobalTestEnvironment(new UserInterface);

}  // namespace
