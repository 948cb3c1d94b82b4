#include "platform/end_signals.h"

#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <thread>
#include <utility>

namespace platform {

struct EndSignals::Impl {
  explicit Impl(std::function<void()> onEnd) {
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    thread = std::thread([this, call = std::move(onEnd)] {
      int received = 0;
      sigwait(&signals, &received);
      wasReceived = true;
      call();
    });
  }
  ~Impl() {
    pthread_kill(thread.native_handle(), SIGINT);
    thread.join();
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  sigset_t signals{};
  std::atomic<bool> wasReceived = false;
  std::thread thread;
};

EndSignals::EndSignals(std::function<void()> onEnd)
    : impl_(std::make_unique<Impl>(std::move(onEnd))) {}

EndSignals::~EndSignals() = default;

bool EndSignals::WasReceived() const {
  return impl_->wasReceived;
}

}  // namespace platform
