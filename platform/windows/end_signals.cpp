#include "platform/end_signals.h"

#include <windows.h>

#include <atomic>
#include <thread>
#include <utility>

#include "platform/windows/handle.h"

namespace platform {
namespace {

// The console's calls carry no context, so what they set is known to the whole process.
std::atomic<HANDLE> endWished = nullptr;

BOOL WINAPI OnConsoleControl(DWORD /*kind*/) {
  const HANDLE wished = endWished;
  return wished != nullptr && SetEvent(wished) != FALSE ? TRUE : FALSE;
}

}  // namespace

struct EndSignals::Impl {
  explicit Impl(std::function<void()> onEnd)
      : wished(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
        thread([this, call = std::move(onEnd)] {
          WaitForSingleObject(wished.Get(), INFINITE);
          wasReceived = true;
          call();
        }) {
    endWished = wished.Get();
    SetConsoleCtrlHandler(&OnConsoleControl, TRUE);
  }
  ~Impl() {
    SetConsoleCtrlHandler(&OnConsoleControl, FALSE);
    endWished = nullptr;
    SetEvent(wished.Get());
    thread.join();
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  std::atomic<bool> wasReceived = false;
  KernelHandle wished;
  std::thread thread;
};

EndSignals::EndSignals(std::function<void()> onEnd)
    : impl_(std::make_unique<Impl>(std::move(onEnd))) {}

EndSignals::~EndSignals() = default;

bool EndSignals::WasReceived() const {
  return impl_->wasReceived;
}

}  // namespace platform
