// A dialog in the system's own look, with its caption.
#pragma once

#include "platform/windows/windows/dialog_window.h"

namespace platform {

class CaptionedWindow : public DialogWindow {
 public:
  using DialogWindow::DialogWindow;

  void PlaceBeforeShow() override { Centre(GetWindow(Handle(), GW_OWNER)); }

 protected:
  // The system draws it, and its dialog manager has the first numbers of a dialog's own messages.
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    switch (message) {
      case WM_ERASEBKGND:
      case WM_PAINT:
      case DM_GETDEFID:
      case DM_SETDEFID:
      case DM_REPOSITION:
        return Default(message, wParam, lParam);
      default:
        return DialogWindow::OnMessage(message, wParam, lParam);
    }
  }
};

}  // namespace platform
