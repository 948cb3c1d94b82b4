// A clock whose time passes at once.
#pragma once

#include <chrono>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/clock.h"

namespace platform {

// May be used from any thread.
class FakeClock : public Clock {
 public:
  // Notes the duration and returns, after `onSleep` has run on the calling thread.
  void Sleep(std::chrono::milliseconds duration) override {
    std::function<void()> onSleep;
    {
      const std::lock_guard lock(mutex_);
      sleeps_.push_back(duration);
      onSleep = onSleep_;
    }
    if (onSleep) onSleep();
  }

  void SetOnSleep(std::function<void()> onSleep) {
    const std::lock_guard lock(mutex_);
    onSleep_ = std::move(onSleep);
  }

  std::vector<std::chrono::milliseconds> Sleeps() const {
    const std::lock_guard lock(mutex_);
    return sleeps_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::chrono::milliseconds> sleeps_;
  std::function<void()> onSleep_;
};

}  // namespace platform
