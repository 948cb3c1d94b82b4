#include "platform/windows/accessible/window_call.h"

#include <cstdint>
#include <map>
#include <mutex>

namespace platform {
namespace {

constexpr UINT kCall = WM_APP + 1;

// Calls under way, so that nobody else's message makes the program run what is none.
class Calls {
 public:
  WPARAM Add(const std::function<void()>& call) {
    const std::scoped_lock lock(mutex_);
    calls_[++last_] = &call;
    return last_;
  }
  void Remove(WPARAM number) {
    const std::scoped_lock lock(mutex_);
    calls_.erase(number);
  }
  // Null when it is not under way.
  const std::function<void()>* Find(WPARAM number) {
    const std::scoped_lock lock(mutex_);
    const auto found = calls_.find(number);
    return found != calls_.end() ? found->second : nullptr;
  }

 private:
  std::mutex mutex_;
  std::map<WPARAM, const std::function<void()>*> calls_;
  WPARAM last_ = 0;
};

Calls& AllCalls() {
  static Calls calls;
  return calls;
}

}  // namespace

bool CallOnThreadOf(HWND window, const std::function<void()>& call) {
  const DWORD thread = GetWindowThreadProcessId(window, nullptr);
  if (thread == 0) return false;
  if (thread == GetCurrentThreadId()) {
    call();
    return true;
  }
  const WPARAM number = AllCalls().Add(call);
  const bool taken = SendMessageW(window, kCall, number, 0) != 0;
  AllCalls().Remove(number);
  return taken;
}

bool TookCall(UINT message, WPARAM wParam) {
  if (message != kCall) return false;
  const std::function<void()>* call = AllCalls().Find(wParam);
  if (call == nullptr) return false;
  (*call)();
  return true;
}

}  // namespace platform
