// A single-instance lock that answers what the test says.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/single_instance.h"

namespace platform {

class FakeSingleInstance : public SingleInstance {
 public:
  // Another copy runs and holds the lock; it shows a window with each of `windowTitles`.
  void SetRunningCopy(std::vector<std::u16string> windowTitles) {
    held_ = true;
    windowTitles_ = std::move(windowTitles);
  }

  bool Acquire(std::u16string_view name) override {
    acquired_.emplace_back(name);
    if (held_) return false;
    held_ = true;
    return true;
  }

  bool BringRunningCopyForward(std::span<const std::u16string_view> titles) override {
    for (const std::u16string_view title : titles) {
      for (const std::u16string& shown : windowTitles_) {
        if (shown != title) continue;
        raised_.push_back(shown);
        return true;
      }
    }
    return false;
  }

  // The lock names asked for and the windows brought forward, in order.
  const std::vector<std::u16string>& Acquired() const { return acquired_; }
  const std::vector<std::u16string>& Raised() const { return raised_; }

 private:
  bool held_ = false;
  std::vector<std::u16string> windowTitles_;
  std::vector<std::u16string> acquired_;
  std::vector<std::u16string> raised_;
};

}  // namespace platform
