#pragma once

#include "platform/clock.h"

namespace platform {

class SystemClock : public Clock {
 public:
  void Sleep(std::chrono::milliseconds duration) override;
};

}  // namespace platform
