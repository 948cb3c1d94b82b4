#include "platform/linux/windows/paint_queue.h"

#include <QTimerEvent>
#include <algorithm>
#include <utility>

#include "platform/linux/windows/native_window.h"
#include "platform/linux/windows/window_table.h"

namespace platform {

void PaintQueue::Add(WindowHandle window) {
  if (std::find(windows_.begin(), windows_.end(), window) == windows_.end()) {
    windows_.push_back(window);
  }
  // A timer of no time fires when the event loop has nothing else to do.
  if (!idle_.isActive()) idle_.start(0, this);
}

void PaintQueue::timerEvent(QTimerEvent* event) {
  if (event->timerId() != idle_.timerId()) return QObject::timerEvent(event);
  idle_.stop();
  for (const WindowHandle handle : std::exchange(windows_, {})) {
    // A paint may end other windows.
    if (NativeWindow* window = WindowTable::Instance().Find(handle)) window->PaintIfInvalid();
  }
}

}  // namespace platform
