#include "platform/linux/windows/control_window.h"

#include <QKeyEvent>
#include <utility>

#include "platform/linux/windows/window_table.h"

namespace platform {
namespace {

bool IsButton(ControlKind kind) {
  return kind == ControlKind::PushButton || kind == ControlKind::DefaultPushButton ||
         kind == ControlKind::CheckBox;
}

bool IsClickKey(const QKeyEvent& event) {
  return event.key() == Qt::Key_Space && !event.isAutoRepeat();
}

}  // namespace

ControlWindow::ControlWindow(Window& window, NativeWindow& parent, const DialogControl& control)
    : NativeWindow(window, &parent, Qt::Widget, control.id), text_(control.text) {
  // Push buttons draw onto what the dialog shows under them; the others cover their whole area,
  // which spares painting the dialog for each of their changes.
  const bool covers = control.kind == ControlKind::Custom || control.kind == ControlKind::CheckBox;
  setAttribute(Qt::WA_OpaquePaintEvent, covers);
  setAttribute(Qt::WA_NoSystemBackground);
  setFocusPolicy(IsButton(control.kind) ? Qt::StrongFocus : Qt::NoFocus);
}

void ControlWindow::SetText(std::u16string_view text) {
  text_ = text;
  Invalidate(Erase::Yes);
  NotifyAccessible(Target(), AccessibleChange::Name);
}

void ControlWindow::keyPressEvent(QKeyEvent* event) {
  if (IsClickKey(*event)) {
    isKeyDown_ = true;
  } else {
    NativeWindow::keyPressEvent(event);
  }
}

void ControlWindow::keyReleaseEvent(QKeyEvent* event) {
  if (!IsClickKey(*event)) return NativeWindow::keyReleaseEvent(event);
  // A press that another window got is none of this button.
  const bool isPress = std::exchange(isKeyDown_, false);
  if (isPress && AcceptsInput() && dynamic_cast<Button*>(&Target()) != nullptr) {
    NotifyClicked(Target());
  }
}

void ControlWindow::focusOutEvent(QFocusEvent* event) {
  isKeyDown_ = false;
  NativeWindow::focusOutEvent(event);
}

void NotifyClicked(Window& button) {
  if (NativeWindow* parent = WindowTable::Instance().Find(button.Parent())) {
    parent->Deliver(message::kCommand, MakeWParam(button.ControlId(), kNotifyClicked),
                    static_cast<LParam>(button.Handle()));
  }
}

}  // namespace platform
