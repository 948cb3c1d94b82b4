// Tests of what the system under them cannot do, although the system that it stands for can.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace support {

// By test name, with the reason; filled in before the first test.
inline std::map<std::string, std::string>& Lacks() {
  static std::map<std::string, std::string> lacks;
  return lacks;
}

// A base of fixtures; its tests are skipped where the system lacks what they test.
class SkipsWhatLacks : public testing::Test {
 protected:
  void SetUp() override {
    const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
    const auto lack = Lacks().find(name.substr(0, name.find('/')));
    if (lack != Lacks().end()) GTEST_SKIP() << lack->second;
  }
};

}  // namespace support
