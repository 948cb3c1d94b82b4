// The number of a slider or knob as the toolkit asks for it.
#pragma once

#include <QAccessible>
#include <QVariant>

#include "platform/linux/accessible/accessible_element.h"

namespace platform {

// `element` must have a range, or have lost its window.
class AccessibleValue : public QAccessibleValueInterface {
 public:
  explicit AccessibleValue(AccessibleElement element) : element_(element) {}

  QVariant currentValue() const override;
  void setCurrentValue(const QVariant& value) override;
  QVariant maximumValue() const override;
  QVariant minimumValue() const override;
  QVariant minimumStepSize() const override;

 private:
  AccessibleRange Range() const;

  AccessibleElement element_;
};

}  // namespace platform
