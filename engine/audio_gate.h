#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace engine {

// Keeps the audio thread out while another thread changes what both use. The audio thread never
// waits; it goes on without.
class AudioGate {
 public:
  // Audio thread: whether it may use what is behind the gate, until it leaves.
  bool Enter() noexcept {
    // In this order, and the other thread's in the opposite one: one of them sees the other.
    isInside_ = true;
    if (!isClosed_) return true;
    isInside_ = false;
    return false;
  }
  void Leave() noexcept { isInside_ = false; }

  // The other thread. Waits for the audio thread to leave, which takes a part of a cycle at most.
  void Close() {
    isClosed_ = true;
    while (isInside_) std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  void Open() noexcept { isClosed_ = false; }

 private:
  std::atomic<bool> isInside_ = false;
  std::atomic<bool> isClosed_ = false;
};

}  // namespace engine
