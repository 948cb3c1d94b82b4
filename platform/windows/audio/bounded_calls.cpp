#include "platform/windows/audio/bounded_calls.h"

#include <atomic>
#include <utility>

#include "platform/com_apartment.h"
#include "platform/worker_thread.h"

namespace platform {

struct BoundedCalls::Count {
  std::atomic<int> running = 0;
};

namespace {

constexpr int kMostCalls = 16;

}  // namespace

BoundedCalls::BoundedCalls(std::chrono::milliseconds limit)
    : limit_(limit), count_(std::make_shared<Count>()) {}

bool BoundedCalls::Run(std::function<void()> call) const {
  if (++count_->running > kMostCalls) {
    --count_->running;
    return false;
  }
  WorkerThread worker([count = count_, call = std::move(call)] {
    {
      const ComApartment apartment;
      call();
    }
    --count->running;
  });
  return worker.WaitForEnd(limit_);
}

}  // namespace platform
