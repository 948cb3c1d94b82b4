// A control with an object: it draws itself, and the object gets its messages.
#pragma once

#include "platform/dialog_template.h"
#include "platform/windows/windows/dialog_window.h"

namespace platform {

class ControlWindow : public NativeWindow {
 public:
  ControlWindow(Window& window, HWND handle, DialogWindow& dialog, ControlKind kind);

 protected:
  void DrawBeneath(Graphics& graphics) override;

 private:
  DialogWindow& dialog_;
  ControlKind kind_;
};

}  // namespace platform
