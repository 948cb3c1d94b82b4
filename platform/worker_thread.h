// A thread whose end can be waited for with a bound.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

// The body owns (by shared pointers that it captured) whatever it may still touch after the object
// is gone: destruction does not wait, the thread then runs on by itself.
class WorkerThread {
 public:
  struct Impl;

  explicit WorkerThread(std::function<void()> body);
  ~WorkerThread();
  WorkerThread(const WorkerThread&) = delete;
  WorkerThread& operator=(const WorkerThread&) = delete;

  // True when the body has returned within `timeout`.
  bool WaitForEnd(std::chrono::milliseconds timeout);

 private:
  std::shared_ptr<Impl> impl_;
};

}  // namespace platform
