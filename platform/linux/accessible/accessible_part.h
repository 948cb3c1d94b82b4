// What a window draws as if it were a control, as the toolkit asks for it.
#pragma once

#include <QAccessible>

#include "platform/linux/accessible/accessible_element.h"
#include "platform/linux/accessible/accessible_value.h"

namespace platform {

// Made by the interface of its window, which also ends it.
class AccessiblePart : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  explicit AccessiblePart(AccessibleElement element) : element_(element), value_(element) {}

  std::int32_t Number() const { return element_.Part(); }

  bool isValid() const override { return element_.Native() != nullptr; }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override;
  QAccessibleInterface* parent() const override;
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QString text(QAccessible::Text kind) const override { return element_.Text(kind); }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::Role role() const override { return element_.Role(); }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override { return element_.ActionNames(); }
  void doAction(const QString& name) override { element_.DoAction(name); }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  AccessibleElement element_;
  AccessibleValue value_;
};

}  // namespace platform
