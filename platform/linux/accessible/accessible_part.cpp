#include "platform/linux/accessible/accessible_part.h"

#include "platform/linux/windows/native_window.h"

namespace platform {

QWindow* AccessiblePart::window() const {
  const NativeWindow* native = element_.Native();
  return native != nullptr ? native->window()->windowHandle() : nullptr;
}

QAccessibleInterface* AccessiblePart::parent() const {
  return QAccessible::queryAccessibleInterface(element_.Native());
}

QRect AccessiblePart::rect() const {
  const NativeWindow* native = element_.Native();
  if (native == nullptr) return {};
  const Rect area = element_.Info().area;
  return {native->mapToGlobal(QPoint(area.left, area.top)), QSize(area.Width(), area.Height())};
}

QAccessible::State AccessiblePart::state() const {
  QAccessible::State state;
  element_.AddState(state);
  return state;
}

void* AccessiblePart::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  if (type == QAccessible::ValueInterface && element_.Info().range) {
    return static_cast<QAccessibleValueInterface*>(&value_);
  }
  return nullptr;
}

}  // namespace platform
