#include "platform/windows/windows/control_window.h"

namespace platform {

ControlWindow::ControlWindow(Window& window, HWND handle, DialogWindow& dialog, ControlKind kind)
    : NativeWindow(window, handle), dialog_(dialog), kind_(kind) {
  if (kind != ControlKind::Custom) SendMessageW(handle, BM_SETSTYLE, BS_OWNERDRAW, FALSE);
}

// Push buttons draw onto what the dialog shows under them; the others cover their whole area.
void ControlWindow::DrawBeneath(Graphics& graphics) {
  if (kind_ != ControlKind::PushButton && kind_ != ControlKind::DefaultPushButton) return;
  const Bitmap* picture = dialog_.Picture();
  if (picture == nullptr) return;
  POINT corner{0, 0};
  MapWindowPoints(Handle(), dialog_.Handle(), &corner, 1);
  graphics.DrawImage(*picture, -corner.x, -corner.y);
}

}  // namespace platform
