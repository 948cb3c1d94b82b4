// All windows of the process by their handles.
#pragma once

#include <QEvent>
#include <map>
#include <mutex>

#include "platform/window_messages.h"

namespace platform {

class NativeWindow;

// A posted message on its way.
class MessageEvent : public QEvent {
 public:
  MessageEvent(std::uint32_t message, WParam wParam, LParam lParam);
  static QEvent::Type EventType();

  const std::uint32_t message;
  const WParam wParam;
  const LParam lParam;
};

// The one table is there before the first window and after the last, since any thread may post to
// a handle at any time.
class WindowTable {
 public:
  static WindowTable& Instance();

  // User-interface thread.
  WindowHandle Add(NativeWindow& window);
  void Remove(WindowHandle handle);
  NativeWindow* Find(WindowHandle handle);

  // Any thread; false when there is no such window.
  bool Post(WindowHandle handle, std::uint32_t message, WParam wParam, LParam lParam);

 private:
  std::mutex mutex_;
  WindowHandle last_ = 0;
  std::map<WindowHandle, NativeWindow*> windows_;
};

}  // namespace platform
