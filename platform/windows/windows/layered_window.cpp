#include "platform/windows/windows/layered_window.h"

#include "platform/windows/drawing/device_surface.h"
#include "platform/windows/drawing/drawing_impl.h"

namespace platform {

// The picture of a window that nobody touches is the same every second. Leaving it with the system
// spares that the work, and a window manager that is still placing the window a wish that crosses.
void LayeredWindow::SetContent(const Bitmap& content) {
  const Bitmap::Impl& native = content.Native();
  if (size_.cx == native.width && size_.cy == native.height && pixels_ == native.pixels) return;
  const HBITMAP picture = MakeDeviceBitmap(content);
  if (picture == nullptr) return;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HGDIOBJ before = SelectObject(memory, picture);
  SIZE size{native.width, native.height};
  POINT origin{0, 0};
  BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  if (UpdateLayeredWindow(Handle(), screen, nullptr, &size, memory, &origin, 0, &blend,
                          ULW_ALPHA) != FALSE) {
    size_ = size;
    pixels_ = native.pixels;
  }
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
