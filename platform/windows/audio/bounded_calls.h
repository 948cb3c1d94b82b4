// Calls into a service that may hang, on threads that nobody has to wait for.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

// Any thread. Threads of calls that hang are left behind, but only so many of them.
class BoundedCalls {
 public:
  explicit BoundedCalls(std::chrono::milliseconds limit);

  // True when `call`, in the multithreaded apartment, has returned within the limit. What it uses
  // has to be its own, for it may go on afterwards.
  bool Run(std::function<void()> call) const;

 private:
  struct Count;

  const std::chrono::milliseconds limit_;
  const std::shared_ptr<Count> count_;
};

}  // namespace platform
