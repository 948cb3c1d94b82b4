// Our windows as the toolkit asks for them: the controls in them, after these the parts that they
// draw, and last the menu that is open, which the toolkit by itself puts nowhere.
#pragma once

#include <QAccessible>
#include <QAccessibleWidget>
#include <map>

#include "platform/linux/accessible/accessible_element.h"
#include "platform/linux/accessible/accessible_value.h"

namespace platform {

// The toolkit keeps it for as long as the window's object.
class AccessibleWindow : public QAccessibleWidget {
 public:
  explicit AccessibleWindow(NativeWindow& window);

  // Null for a number that is no part's.
  QAccessibleInterface* Part(std::int32_t number) const;

  bool isValid() const override;
  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  QAccessibleInterface* childAt(int x, int y) const override;
  int indexOfChild(const QAccessibleInterface* child) const override;

  QString text(QAccessible::Text kind) const override;
  QAccessible::Role role() const override { return element_.Role(); }
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  QStringList actionNames() const override;
  void doAction(const QString& name) override;

 protected:
  ~AccessibleWindow() override;

 private:
  std::int32_t PartCount() const;
  // Null when none of the window's is open.
  QWidget* OpenMenu() const;

  AccessibleElement element_;
  AccessibleValue value_;
  mutable std::map<std::int32_t, QAccessible::Id> parts_;  // those that were asked for
};

// For QAccessible::installFactory; null for what is none of our windows.
QAccessibleInterface* MakeAccessibleInterface(const QString& className, QObject* object);

}  // namespace platform
