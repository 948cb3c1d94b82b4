// The window of a dialog: its modal loop, its place and its system menu. The kinds of frames derive
// from it.
#pragma once

#include "platform/windows/windows/native_window.h"

namespace platform {

class DialogWindow : public NativeWindow {
 public:
  using NativeWindow::NativeWindow;

  // Runs until `End`; at once over when it was called before.
  void RunModal();
  void End();
  bool HasEnded() const { return ended_; }

  // What the frame does with the window before its dialog initializes it, and before it is shown
  // for the first time.
  virtual void PlaceBeforeInit() {}
  virtual void PlaceBeforeShow() {}
  void Show(ShowCommand command) override;

  // What the dialog shows; null before its first paint, and where the system draws it.
  virtual const Bitmap* Picture() const { return nullptr; }

 protected:
  // In the middle of the owner, or of the screen when that is null or hidden.
  void Centre(HWND owner);
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  LRESULT OnSystemCommand(WPARAM wParam, LPARAM lParam);

  bool ended_ = false;
};

}  // namespace platform
