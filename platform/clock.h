#pragma once

#include <chrono>

namespace platform {

class Clock {
 public:
  virtual ~Clock() = default;

  // Blocks the calling thread. May be called from any thread.
  virtual void Sleep(std::chrono::milliseconds duration) = 0;
};

}  // namespace platform
