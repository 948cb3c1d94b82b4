// A control with an object: it draws itself, and the object gets its messages.
#pragma once

#include <string>

#include "platform/dialog_template.h"
#include "platform/linux/windows/native_window.h"

namespace platform {

class ControlWindow : public NativeWindow {
 public:
  ControlWindow(Window& window, NativeWindow& parent, const DialogControl& control);

  void SetText(std::u16string_view text) override;
  std::u16string Text() const override { return text_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  bool isKeyDown_ = false;  // the key that clicks
  std::u16string text_;
};

// Tells the parent of a button that it was clicked.
void NotifyClicked(Window& button);

}  // namespace platform
