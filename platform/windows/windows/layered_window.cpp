#include "platform/windows/windows/layered_window.h"

#include "platform/windows/drawing/device_surface.h"

namespace platform {

void LayeredWindow::SetContent(const Bitmap& content) {
  const HBITMAP picture = MakeDeviceBitmap(content);
  if (picture == nullptr) return;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HGDIOBJ before = SelectObject(memory, picture);
  SIZE size{content.Width(), content.Height()};
  POINT origin{0, 0};
  BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  UpdateLayeredWindow(Handle(), screen, nullptr, &size, memory, &origin, 0, &blend, ULW_ALPHA);
  SelectObject(memory, before);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  DeleteObject(picture);
}

// Showing it makes nothing invalid, for the system has kept its picture; that may be an old one.
void LayeredWindow::Show(ShowCommand command) {
  DialogWindow::Show(command);
  if (command == ShowCommand::Normal) Target().Invalidate(Erase::Yes);
}

LRESULT LayeredWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCHITTEST) return Deliver(message, wParam, lParam);
  return DialogWindow::OnMessage(message, wParam, lParam);
}

void LayeredWindow::Paint(HDC /*context*/) {
  Deliver(message::kPaint, 0, 0);
}

}  // namespace platform
