#include "platform/wake_event.h"

#include <condition_variable>
#include <mutex>

namespace platform {

struct WakeEvent::Impl {
  std::mutex mutex;
  std::condition_variable changed;
  bool signalled = false;
};

WakeEvent::WakeEvent() : impl_(std::make_unique<Impl>()) {}
WakeEvent::~WakeEvent() = default;

void WakeEvent::Set() {
  // Notified under the lock: a waiter may destroy the event as soon as its wait returns.
  const std::lock_guard lock(impl_->mutex);
  impl_->signalled = true;
  impl_->changed.notify_one();
}

void WakeEvent::Wait() {
  std::unique_lock lock(impl_->mutex);
  impl_->changed.wait(lock, [this] { return impl_->signalled; });
  impl_->signalled = false;
}

bool WakeEvent::WaitFor(std::chrono::milliseconds timeout) {
  std::unique_lock lock(impl_->mutex);
  if (!impl_->changed.wait_for(lock, timeout, [this] { return impl_->signalled; })) return false;
  impl_->signalled = false;
  return true;
}

}  // namespace platform
