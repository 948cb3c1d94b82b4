// An unnamed, auto-reset event: the one thing a watcher thread waits for.
#pragma once

#include <chrono>
#include <memory>

namespace platform {

// Created non-signalled. A wait that returns because of the event resets it; sets that come before
// a wait are one set. Every operation may be called from any thread. The object must outlive every
// registry key that it was armed on, or those keys must be closed first.
class WakeEvent {
 public:
  struct Impl;

  WakeEvent();
  ~WakeEvent();
  WakeEvent(const WakeEvent&) = delete;
  WakeEvent& operator=(const WakeEvent&) = delete;

  void Set();
  void Wait();
  // True when the event was set within `timeout`, which may be zero.
  bool WaitFor(std::chrono::milliseconds timeout);

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace platform
