#include "platform/windows/accessible/posted_press.h"

#include "platform/windows/accessible/accessible_element.h"
#include "platform/windows/windows/native_window.h"

namespace platform {
namespace {

constexpr UINT kPress = WM_APP + 2;  // wParam the part

}  // namespace

void PostPress(HWND window, std::int32_t part) {
  PostMessageW(window, kPress, static_cast<WPARAM>(part), 0);
}

bool TookPress(HWND window, UINT message, WPARAM wParam) {
  if (message != kPress) return false;
  const NativeWindow* native = NativeWindow::Find(window);
  if (native != nullptr && wParam <= static_cast<WPARAM>(native->Target().AccessiblePartCount())) {
    AccessibleElement(native->Target(), static_cast<std::int32_t>(wParam)).Press();
  }
  return true;
}

}  // namespace platform
