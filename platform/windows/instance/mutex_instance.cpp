#include "platform/windows/instance/mutex_instance.h"

#include <windows.h>

#include "platform/windows/wide_text.h"

namespace platform {

// The handle stays open, so that the mutex is owned until the process ends. One whose owner died
// counts as taken.
bool MutexInstance::Acquire(std::u16string_view name) {
  const HANDLE mutex = CreateMutexW(nullptr, FALSE, ToWide(name).c_str());
  return mutex != nullptr && WaitForSingleObject(mutex, 0) == WAIT_OBJECT_0;
}

bool MutexInstance::BringRunningCopyForward(std::span<const std::u16string_view> titles) {
  for (const std::u16string_view title : titles) {
    const HWND window = FindWindowW(nullptr, ToWide(title).c_str());
    if (window == nullptr) continue;
    if (IsIconic(window) != FALSE) ShowWindowAsync(window, SW_RESTORE);
    SetForegroundWindow(window);
    return true;
  }
  return false;
}

}  // namespace platform
