#include "platform/linux/accessible/accessible_window.h"

#include <QApplication>
#include <memory>

#include "platform/linux/accessible/accessible_part.h"
#include "platform/linux/windows/dialog_window.h"
#include "platform/linux/windows/native_window.h"

namespace platform {
namespace {

// The window manager's own windows have menus of their own.
DialogWindow* WithSystemMenu(NativeWindow* native) {
  auto* dialog = dynamic_cast<DialogWindow*>(native);
  return dialog != nullptr && dialog->windowFlags().testFlag(Qt::FramelessWindowHint) ? dialog
                                                                                      : nullptr;
}

QAccessible::State StateOf(AccessibleChange change) {
  QAccessible::State state;
  state.checked = change == AccessibleChange::Check;
  state.disabled = change == AccessibleChange::Enabling;
  state.expanded = change == AccessibleChange::Expansion;
  state.collapsed = change == AccessibleChange::Expansion;
  return state;
}

void Send(QAccessibleInterface& sender, AccessibleChange change) {
  switch (change) {
    case AccessibleChange::Name: {
      QAccessibleEvent event(&sender, QAccessible::NameChanged);
      return QAccessible::updateAccessibility(&event);
    }
    case AccessibleChange::Description: {
      QAccessibleEvent event(&sender, QAccessible::DescriptionChanged);
      return QAccessible::updateAccessibility(&event);
    }
    case AccessibleChange::Value: {
      // The toolkit passes on numbers only.
      QAccessibleValueInterface* value = sender.valueInterface();
      if (value == nullptr) return;
      QAccessibleValueChangeEvent event(&sender, value->currentValue());
      return QAccessible::updateAccessibility(&event);
    }
    case AccessibleChange::Visibility: {
      const bool hidden = sender.state().invisible;
      QAccessibleEvent event(&sender, hidden ? QAccessible::ObjectHide : QAccessible::ObjectShow);
      return QAccessible::updateAccessibility(&event);
    }
    case AccessibleChange::Check:
    case AccessibleChange::Expansion:
    case AccessibleChange::Enabling: {
      QAccessibleStateChangeEvent event(&sender, StateOf(change));
      return QAccessible::updateAccessibility(&event);
    }
  }
}

}  // namespace

AccessibleWindow::AccessibleWindow(NativeWindow& window)
    : QAccessibleWidget(&window), element_(window.Handle(), kAccessibleSelf), value_(element_) {}

AccessibleWindow::~AccessibleWindow() {
  for (const auto& [number, id] : parts_) QAccessible::deleteAccessibleInterface(id);
}

QAccessibleInterface* AccessibleWindow::Part(std::int32_t number) const {
  if (number < 1 || number > PartCount()) return nullptr;
  auto known = parts_.find(number);
  if (known == parts_.end()) {
    auto part =
        std::make_unique<AccessiblePart>(AccessibleElement(element_.Native()->Handle(), number));
    // The toolkit owns it from here on. NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    known = parts_.emplace(number, QAccessible::registerAccessibleInterface(part.release())).first;
  }
  return QAccessible::accessibleInterface(known->second);
}

std::int32_t AccessibleWindow::PartCount() const {
  const NativeWindow* native = element_.Native();
  return native != nullptr ? native->Target().AccessiblePartCount() : 0;
}

bool AccessibleWindow::isValid() const {
  return element_.Native() != nullptr && QAccessibleWidget::isValid();
}

int AccessibleWindow::childCount() const {
  if (!isValid()) return 0;
  return QAccessibleWidget::childCount() + PartCount() + (OpenMenu() != nullptr ? 1 : 0);
}

QWidget* AccessibleWindow::OpenMenu() const {
  QWidget* popup = QApplication::activePopupWidget();
  return popup != nullptr && popup->parentWidget() == widget() ? popup : nullptr;
}

QAccessibleInterface* AccessibleWindow::child(int index) const {
  if (!isValid()) return nullptr;
  const int controls = QAccessibleWidget::childCount();
  if (index < controls) return QAccessibleWidget::child(index);
  if (index < controls + PartCount()) return Part(index - controls + 1);
  return QAccessible::queryAccessibleInterface(OpenMenu());
}

// Where parts overlap, the later one is meant.
QAccessibleInterface* AccessibleWindow::childAt(int x, int y) const {
  for (int index = childCount() - 1; index >= 0; --index) {
    QAccessibleInterface* each = child(index);
    if (each != nullptr && !each->state().invisible && each->rect().contains(x, y)) return each;
  }
  return nullptr;
}

int AccessibleWindow::indexOfChild(const QAccessibleInterface* child) const {
  if (!isValid() || child == nullptr) return -1;
  const int controls = QAccessibleWidget::childCount();
  if (const auto* part = dynamic_cast<const AccessiblePart*>(child)) {
    return part->parent() == this ? controls + part->Number() - 1 : -1;
  }
  const QWidget* menu = OpenMenu();
  if (menu != nullptr && child->object() == menu) return controls + PartCount();
  return QAccessibleWidget::indexOfChild(child);
}

QString AccessibleWindow::text(QAccessible::Text kind) const {
  return isValid() ? element_.Text(kind) : QString();
}

QAccessible::State AccessibleWindow::state() const {
  QAccessible::State state;
  if (isValid()) state = QAccessibleWidget::state();
  element_.AddState(state);
  return state;
}

void* AccessibleWindow::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::ValueInterface && element_.Info().range) {
    return static_cast<QAccessibleValueInterface*>(&value_);
  }
  return QAccessibleWidget::interface_cast(type);
}

QStringList AccessibleWindow::actionNames() const {
  if (!isValid()) return {};
  QStringList names = element_.ActionNames() + QAccessibleWidget::actionNames();
  if (WithSystemMenu(element_.Native()) != nullptr) names << showMenuAction();
  return names;
}

void AccessibleWindow::doAction(const QString& name) {
  DialogWindow* dialog = WithSystemMenu(element_.Native());
  if (dialog != nullptr && name == showMenuAction()) {
    dialog->OpenSystemMenuLater(dialog->mapToGlobal(QPoint(0, 0)));
  } else if (element_.ActionNames().contains(name)) {
    element_.DoAction(name);
  } else if (isValid()) {
    QAccessibleWidget::doAction(name);
  }
}

QAccessibleInterface* MakeAccessibleInterface(const QString& /*className*/, QObject* object) {
  auto* native = dynamic_cast<NativeWindow*>(object);
  return native != nullptr ? new AccessibleWindow(*native) : nullptr;
}

void NotifyAccessible(const Window& window, AccessibleChange change, std::int32_t part) {
  NativeWindow* native = window.Native().native;
  if (native == nullptr || !QAccessible::isActive()) return;
  auto* sender = dynamic_cast<AccessibleWindow*>(QAccessible::queryAccessibleInterface(native));
  if (sender == nullptr) return;
  QAccessibleInterface* changed = part == kAccessibleSelf ? sender : sender->Part(part);
  if (changed != nullptr) Send(*changed, change);
}

}  // namespace platform
