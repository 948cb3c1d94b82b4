#include "platform/linux/windows/mouse_router.h"

#include <QWindow>

#include "platform/linux/windows/dialog_window.h"
#include "platform/linux/windows/native_window.h"
#include "platform/linux/windows/window_table.h"

namespace platform {
namespace {

constexpr WParam kLeftButtonKey = 0x0001;

Point ToPoint(const QPoint& point) {
  return {point.x(), point.y()};
}

}  // namespace

NativeWindow* MouseRouter::Target(const NativeWindow& source, const QPoint& screen) const {
  if (NativeWindow* captured = WindowTable::Instance().Find(captured_)) return captured;
  QWidget* top = source.window();
  const QPoint inside = top->mapFromGlobal(screen);
  if (!top->rect().contains(inside)) return nullptr;
  QWidget* widget = top->childAt(inside);
  if (widget == nullptr) widget = top;
  // What a disabled control does not take goes to its parent.
  for (; widget != nullptr; widget = widget->parentWidget()) {
    auto* window = dynamic_cast<NativeWindow*>(widget);
    if (window != nullptr && window->AcceptsInput()) return window;
    if (widget->isWindow()) break;
  }
  return nullptr;
}

HitTest MouseRouter::HitTestOf(NativeWindow& target, const QPoint& screen) const {
  if (captured_ != 0 || !target.isWindow()) return HitTest::Client;
  return static_cast<HitTest>(
      target.Deliver(message::kNonClientHitTest, 0, PointToLParam(ToPoint(screen))));
}

void MouseRouter::Deliver(NativeWindow& target, std::uint32_t message, const QMouseEvent& event) {
  const QPoint client = target.mapFromGlobal(event.globalPosition().toPoint());
  const WParam keys = event.buttons().testFlag(Qt::LeftButton) ? kLeftButtonKey : 0;
  target.Deliver(message, keys, PointToLParam(ToPoint(client)));
}

void MouseRouter::Press(NativeWindow& source, const QMouseEvent& event) {
  const QPoint screen = event.globalPosition().toPoint();
  NativeWindow* target = Target(source, screen);
  if (event.button() != Qt::LeftButton || target == nullptr) return;
  const HitTest hit = HitTestOf(*target, screen);
  releaseBelongsToFrame_ = hit != HitTest::Client;
  if (hit == HitTest::Client) {
    if ((target->focusPolicy() & Qt::ClickFocus) != 0) target->setFocus(Qt::MouseFocusReason);
    Deliver(*target, message::kLeftButtonDown, event);
    return;
  }
  target->activateWindow();
  if (hit == HitTest::Caption) {
    if (QWindow* window = target->windowHandle()) window->startSystemMove();
  } else if (auto* dialog = dynamic_cast<DialogWindow*>(target)) {
    dialog->OpenSystemMenuLater(screen);
  }
}

void MouseRouter::Move(NativeWindow& source, const QMouseEvent& event) {
  const QPoint screen = event.globalPosition().toPoint();
  NativeWindow* target = Target(source, screen);
  if (target == nullptr || HitTestOf(*target, screen) != HitTest::Client) return;
  Deliver(*target, message::kMouseMove, event);
}

void MouseRouter::Release(NativeWindow& source, const QMouseEvent& event) {
  const QPoint screen = event.globalPosition().toPoint();
  NativeWindow* target = Target(source, screen);
  if (event.button() == Qt::LeftButton) {
    const bool frame = releaseBelongsToFrame_;
    releaseBelongsToFrame_ = false;
    if (target == nullptr || frame || HitTestOf(*target, screen) != HitTest::Client) return;
    Deliver(*target, message::kLeftButtonUp, event);
  } else if (event.button() == Qt::RightButton && target != nullptr) {
    auto* dialog = dynamic_cast<DialogWindow*>(target);
    if (dialog != nullptr && HitTestOf(*target, screen) != HitTest::Client) {
      dialog->OpenSystemMenuLater(screen);
    }
  }
}

}  // namespace platform
