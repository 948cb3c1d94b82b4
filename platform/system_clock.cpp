#include "platform/system_clock.h"

#include <thread>

namespace platform {

void SystemClock::Sleep(std::chrono::milliseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace platform
