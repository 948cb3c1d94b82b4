#include "platform/windows/windows/dialog_window.h"

#include <algorithm>

#include "platform/windows/windows/window_icon.h"

namespace platform {
namespace {

// Commands from here on are the system's own.
constexpr WPARAM kFirstSystemCommand = 0xF000;
// The system keeps the place of the press in the lowest bits.
constexpr WPARAM kSystemCommandMask = 0xFFF0;

}  // namespace

void DialogWindow::RunModal() {
  MSG next;
  while (!ended_) {
    if (GetMessageW(&next, nullptr, 0, 0) <= 0) {
      PostQuitMessage(static_cast<int>(next.wParam));
      return;
    }
    if (IsDialogMessageW(Handle(), &next) != FALSE) continue;
    TranslateMessage(&next);
    DispatchMessageW(&next);
  }
}

// What was sent from outside, as by assistive technology, does not wake the loop.
void DialogWindow::End() {
  ended_ = true;
  PostMessageW(Handle(), WM_NULL, 0, 0);
}

void DialogWindow::Show(ShowCommand command) {
  switch (command) {
    case ShowCommand::Hide:
      ShowWindow(Handle(), SW_HIDE);
      break;
    case ShowCommand::Minimize:
      ShowWindow(Handle(), SW_MINIMIZE);
      break;
    case ShowCommand::Normal:
      ShowWindow(Handle(), SW_SHOWNORMAL);
      SetForegroundWindow(Handle());
      break;
  }
}

void DialogWindow::Centre(HWND owner) {
  RECT available{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &available, 0);
  RECT around = available;
  if (owner != nullptr && IsWindowVisible(owner) != FALSE) GetWindowRect(owner, &around);
  RECT own{};
  GetWindowRect(Handle(), &own);
  const LONG width = own.right - own.left;
  const LONG height = own.bottom - own.top;
  const LONG left = (around.left + around.right - width) / 2;
  const LONG top = (around.top + around.bottom - height) / 2;
  // A window larger than the screen still shows its top with the buttons that close it.
  SetWindowPos(Handle(), nullptr, std::max(available.left, std::min(left, available.right - width)),
               std::max(available.top, std::min(top, available.bottom - height)), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT DialogWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
    case WM_CLOSE:
    case WM_DESTROY:
      return Deliver(message, wParam, lParam);
    case WM_SYSCOMMAND:
      return OnSystemCommand(wParam, lParam);
    case WM_QUERYDRAGICON: {
      const auto resource = static_cast<std::uint16_t>(Deliver(message, wParam, lParam));
      if (resource == 0) return Default(message, wParam, lParam);
      return reinterpret_cast<LRESULT>(LoadWindowIcon(resource, WindowIconSize::Big));
    }
    default:
      return NativeWindow::OnMessage(message, wParam, lParam);
  }
}

LRESULT DialogWindow::OnSystemCommand(WPARAM wParam, LPARAM lParam) {
  const WPARAM command = wParam & kSystemCommandMask;
  if (command == kSystemClose || command == kSystemMinimize) {
    return Deliver(message::kSystemCommand, command, lParam);
  }
  if (command < kFirstSystemCommand) return Deliver(message::kSystemCommand, wParam, lParam);
  return Default(WM_SYSCOMMAND, wParam, lParam);
}

}  // namespace platform
