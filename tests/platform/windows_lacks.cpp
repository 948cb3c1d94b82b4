// What Wine cannot do of that which these tests ask of windows, boxes and the shell.
#include "tests/support/lacks.h"
#include "tests/support/wine.h"

namespace {

class WineLacks : public testing::Environment {
 public:
  void SetUp() override {
    if (!support::RunsUnderWine()) return;
    support::Lacks() = {{"AQuestionCannotBeDismissed", "every box can be closed"}};
  }
};

[[maybe_unused]] const auto* const kRegistered = testing::AddGlobalTestEnvironment(new WineLacks);

}  // namespace
