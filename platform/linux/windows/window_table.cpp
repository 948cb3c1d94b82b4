#include "platform/linux/windows/window_table.h"

#include <QCoreApplication>

#include "platform/linux/windows/native_window.h"

namespace platform {

MessageEvent::MessageEvent(std::uint32_t id, WParam first, LParam second)
    : QEvent(EventType()), message(id), wParam(first), lParam(second) {}

QEvent::Type MessageEvent::EventType() {
  static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
  return type;
}

WindowTable& WindowTable::Instance() {
  // Never destroyed: a thread that outlasts `main` may still post.
  static auto& table = *new WindowTable;
  return table;
}

WindowHandle WindowTable::Add(NativeWindow& window) {
  const std::lock_guard lock(mutex_);
  windows_.emplace(++last_, &window);
  return last_;
}

void WindowTable::Remove(WindowHandle handle) {
  const std::lock_guard lock(mutex_);
  windows_.erase(handle);
}

NativeWindow* WindowTable::Find(WindowHandle handle) {
  const std::lock_guard lock(mutex_);
  const auto found = windows_.find(handle);
  return found == windows_.end() ? nullptr : found->second;
}

bool WindowTable::Post(WindowHandle handle, std::uint32_t message, WParam wParam, LParam lParam) {
  // Under the lock, so that the window cannot go meanwhile; with it go its posted events.
  const std::lock_guard lock(mutex_);
  const auto found = windows_.find(handle);
  if (found == windows_.end()) return false;
  QCoreApplication::postEvent(found->second, new MessageEvent(message, wParam, lParam));
  return true;
}

bool PostToWindow(WindowHandle window, std::uint32_t message, WParam wParam, LParam lParam) {
  return WindowTable::Instance().Post(window, message, wParam, lParam);
}

LResult SendToWindow(WindowHandle window, std::uint32_t message, WParam wParam, LParam lParam) {
  NativeWindow* native = WindowTable::Instance().Find(window);
  return native ? native->Deliver(message, wParam, lParam) : 0;
}

Rect WindowRectOf(WindowHandle window) {
  NativeWindow* native = WindowTable::Instance().Find(window);
  return native ? native->Target().WindowRect() : Rect{};
}

}  // namespace platform
