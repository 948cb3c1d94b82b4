#include "platform/linux/accessible/accessible_element.h"

#include <cmath>

#include "platform/linux/windows/application.h"
#include "platform/linux/windows/dialog_window.h"
#include "platform/linux/windows/native_window.h"
#include "platform/linux/windows/qt_text.h"
#include "platform/linux/windows/window_table.h"

namespace platform {
namespace {

using ActionInterface = QAccessibleActionInterface;

QAccessible::Role ToToolkit(AccessibleRole role) {
  switch (role) {
    case AccessibleRole::Client:
      return QAccessible::Client;
    case AccessibleRole::Dialog:
      return QAccessible::Dialog;
    case AccessibleRole::Alert:
      return QAccessible::AlertMessage;
    case AccessibleRole::Chart:
      return QAccessible::Chart;
    case AccessibleRole::PushButton:
      return QAccessible::Button;
    case AccessibleRole::ButtonMenu:
      return QAccessible::ButtonMenu;
    case AccessibleRole::CheckButton:
      return QAccessible::CheckBox;
    case AccessibleRole::RadioButton:
      return QAccessible::RadioButton;
    case AccessibleRole::Link:
      return QAccessible::Link;
    case AccessibleRole::Slider:
      return QAccessible::Slider;
    case AccessibleRole::Dial:
      return QAccessible::Dial;
  }
  return QAccessible::NoRole;
}

// A control may lie where its dialog does not reach.
bool LiesOutside(const NativeWindow& native) {
  const NativeWindow* dialog = native.OwningDialog();
  return dialog != nullptr && !dialog->rect().intersects(native.geometry());
}

// The window is not about to go, and nothing that is open in front of it takes the mouse from it.
bool GetsTheMouse(const NativeWindow& native) {
  const auto* dialog = dynamic_cast<const DialogWindow*>(native.window());
  if (dialog == nullptr || dialog->HasEnded()) return false;
  const QWidget* modal = QApplication::activeModalWidget();
  return (modal == nullptr || modal == dialog) && QApplication::activePopupWidget() == nullptr &&
         !dialog->isMinimized();
}

bool AcceptsInput(const NativeWindow& native) {
  const NativeWindow* dialog = native.OwningDialog();
  return native.AcceptsInput() && (dialog == nullptr || dialog->AcceptsInput());
}

}  // namespace

NativeWindow* AccessibleElement::Native() const {
  return WindowTable::Instance().Find(window_);
}

AccessibleInfo AccessibleElement::Info() const {
  const NativeWindow* native = Native();
  return native != nullptr ? native->Target().Accessible(part_) : AccessibleInfo{};
}

QAccessible::Role AccessibleElement::Role() const {
  return ToToolkit(Info().role);
}

QString AccessibleElement::Text(QAccessible::Text kind) const {
  const AccessibleInfo info = Info();
  switch (kind) {
    case QAccessible::Name:
      return ToQString(info.name);
    case QAccessible::Description:
      return ToQString(info.description);
    case QAccessible::Value:
      return ToQString(info.value);
    default:
      return {};
  }
}

void AccessibleElement::AddState(QAccessible::State& state) const {
  const NativeWindow* native = Native();
  if (native == nullptr) {
    state.invalid = true;
    return;
  }
  const AccessibleInfo info = Info();
  state.disabled = !AcceptsInput(*native);
  state.checkable = info.check != AccessibleCheck::None;
  state.checked = info.check == AccessibleCheck::Checked;
  state.expandable = info.expansion != AccessibleExpansion::None;
  state.expanded = info.expansion == AccessibleExpansion::Expanded;
  state.collapsed = info.expansion == AccessibleExpansion::Collapsed;
  state.hasPopup = info.role == AccessibleRole::ButtonMenu;
  state.linked = info.role == AccessibleRole::Link;
  state.offscreen = LiesOutside(*native);
  state.invisible = IsHidden(*native);
}

bool AccessibleElement::IsHidden(const NativeWindow& native) const {
  return !native.isVisible() || LiesOutside(native) ||
         native.Target().Accessible(part_).visibility == AccessibleVisibility::Hidden;
}

QStringList AccessibleElement::ActionNames() const {
  const AccessibleInfo info = Info();
  if (info.range) return {ActionInterface::increaseAction(), ActionInterface::decreaseAction()};
  if (info.role == AccessibleRole::CheckButton) return {ActionInterface::toggleAction()};
  if (CanBePressed(info.role)) return {ActionInterface::pressAction()};
  return {};
}

void AccessibleElement::DoAction(const QString& name) const {
  if (!ActionNames().contains(name)) return;
  if (name == ActionInterface::increaseAction()) {
    Move(1.0);
  } else if (name == ActionInterface::decreaseAction()) {
    Move(-1.0);
  } else {
    Application::Current()->CallLater([element = *this] { element.Press(); });
  }
}

bool AccessibleElement::CanBeClicked() const {
  const NativeWindow* native = Native();
  return native != nullptr && !IsHidden(*native) && AcceptsInput(*native) && GetsTheMouse(*native);
}

void AccessibleElement::Press() const {
  if (CanBeClicked()) Native()->Target().DoDefaultAction(part_);
}

void AccessibleElement::PutValue(double value) const {
  if (std::isfinite(value) && CanBeClicked()) Native()->Target().PutAccessibleValue(part_, value);
}

void AccessibleElement::Move(double steps) const {
  if (const auto range = Info().range) PutValue(range->current + steps * range->step);
}

}  // namespace platform
