// Decides which window gets a mouse message, as the original platform does: the one that captured
// the mouse, else the one under the pointer, and of its dialogs only the client area.
#pragma once

#include <QMouseEvent>

#include "platform/window_messages.h"

namespace platform {

class NativeWindow;

class MouseRouter {
 public:
  // `source` is where the toolkit delivered the event: the window that got the press, until all
  // buttons are up.
  void Press(NativeWindow& source, const QMouseEvent& event);
  void Move(NativeWindow& source, const QMouseEvent& event);
  void Release(NativeWindow& source, const QMouseEvent& event);

  void Capture(WindowHandle window) { captured_ = window; }
  void ReleaseCapture() { captured_ = 0; }
  WindowHandle Captured() const { return captured_; }

 private:
  NativeWindow* Target(const NativeWindow& source, const QPoint& screen) const;
  HitTest HitTestOf(NativeWindow& target, const QPoint& screen) const;
  void Deliver(NativeWindow& target, std::uint32_t message, const QMouseEvent& event);

  WindowHandle captured_ = 0;
  // The release after a press outside the client area belongs to what that press began.
  bool releaseBelongsToFrame_ = false;
};

}  // namespace platform
