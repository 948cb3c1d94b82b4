#include <windows.h>

#include "platform/shell.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows/native_window.h"

namespace platform {
namespace {

UINT StyleOf(MessageBoxKind kind) {
  switch (kind) {
    case MessageBoxKind::SystemError:
      return MB_OK | MB_ICONERROR | MB_SYSTEMMODAL | MB_SETFOREGROUND;
    case MessageBoxKind::Exclamation:
      return MB_OK | MB_ICONEXCLAMATION;
    case MessageBoxKind::YesNoDefaultNo:
      break;
  }
  return MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2;
}

}  // namespace

// Some systems let a box be dismissed that has nothing to cancel, and say so.
std::int32_t ShowMessageBox(WindowHandle owner, std::u16string_view text,
                            std::u16string_view caption, MessageBoxKind kind) {
  const int answer =
      MessageBoxW(ToNative(owner), ToWide(text).c_str(), ToWide(caption).c_str(), StyleOf(kind));
  if (kind != MessageBoxKind::YesNoDefaultNo) return kIdOk;
  return answer == IDYES ? kIdYes : kIdNo;
}

namespace {

BOOL CALLBACK TakeFirstShown(HWND window, LPARAM found) {
  if (IsWindowVisible(window) == FALSE || NativeWindow::Find(window) == nullptr) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

}  // namespace

// While another program is in front, no window of this one is active. The one that was made last is
// then the topmost, since each is modal to those before it.
WindowHandle ActiveWindow() {
  HWND active = GetActiveWindow();
  if (active == nullptr) {
    EnumThreadWindows(GetCurrentThreadId(), &TakeFirstShown, reinterpret_cast<LPARAM>(&active));
  }
  return reinterpret_cast<WindowHandle>(active);
}

}  // namespace platform
