#include "platform/worker_thread.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace platform {

// Shared with the thread, which may outlive the object.
struct WorkerThread::Impl {
  std::mutex mutex;
  std::condition_variable ended;
  bool hasEnded = false;
};

WorkerThread::WorkerThread(std::function<void()> body) : impl_(std::make_shared<Impl>()) {
  std::thread([impl = impl_, body = std::move(body)]() mutable {
    body();
    // What the body owns is gone before anyone hears of the end.
    body = nullptr;
    const std::lock_guard lock(impl->mutex);
    impl->hasEnded = true;
    impl->ended.notify_all();
  }).detach();
}

WorkerThread::~WorkerThread() = default;

bool WorkerThread::WaitForEnd(std::chrono::milliseconds timeout) {
  std::unique_lock lock(impl_->mutex);
  return impl_->ended.wait_for(lock, timeout, [this] { return impl_->hasEnded; });
}

}  // namespace platform
