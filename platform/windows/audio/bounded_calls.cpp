#include "platform/windows/audio/bounded_calls.h"

#include <utility>

#include "platform/com_apartment.h"
#include "platform/worker_thread.h"

namespace platform {

BoundedCalls::BoundedCalls(std::chrono::milliseconds limit)
    : limit_(limit), late_(std::make_shared<std::atomic<int>>(0)) {}

bool BoundedCalls::Run(std::function<void()> call) const {
  if (*late_ > 0) return false;
  // Whichever comes second, the call's return or its limit, knows that the other has been.
  const auto first = std::make_shared<std::atomic<bool>>(true);
  WorkerThread worker([late = late_, first, call = std::move(call)]() mutable {
    {
      const ComApartment apartment;
      call();
      call = nullptr;
    }
    if (!first->exchange(false)) --*late;
  });
  if (worker.WaitForEnd(limit_)) return true;
  ++*late_;
  if (!first->exchange(false)) --*late_;
  return false;
}

}  // namespace platform
