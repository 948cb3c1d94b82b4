#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace support {

// Looks again until `condition` holds or `timeout` has passed; whether it held.
inline bool Eventually(const std::function<bool()>& condition,
                       std::chrono::milliseconds timeout = std::chrono::seconds(5)) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

}  // namespace support
