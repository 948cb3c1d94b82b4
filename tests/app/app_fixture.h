// A machine of fakes for the tests of start-up.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/fake_machine.h"

namespace app {

class AppFixture : public testing::Test {
 protected:
  std::string Log() const { return machine_.files.Contents(u"/state/Velsona.txt").value_or(""); }

  support::FakeMachine machine_;
};

}  // namespace app
