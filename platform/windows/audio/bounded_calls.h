// Calls into a service that may hang, on threads that nobody has to wait for.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>

namespace platform {

// Any thread. A call that hangs costs its caller the limit, and until it returns no other is begun:
// a service that hangs holds nobody up again and again.
class BoundedCalls {
 public:
  explicit BoundedCalls(std::chrono::milliseconds limit);

  // True when `call`, in the multithreaded apartment, has returned within the limit. What it uses
  // has to be its own, for it may go on afterwards.
  bool Run(std::function<void()> call) const;

 private:
  const std::chrono::milliseconds limit_;
  // How many calls are over their limit and have not returned.
  const std::shared_ptr<std::atomic<int>> late_;
};

}  // namespace platform
