#include "platform/linux/accessible/accessible_value.h"

namespace platform {

AccessibleRange AccessibleValue::Range() const {
  return element_.Info().range.value_or(AccessibleRange{});
}

QVariant AccessibleValue::currentValue() const {
  return Range().current;
}

void AccessibleValue::setCurrentValue(const QVariant& value) {
  bool isNumber = false;
  const double number = value.toDouble(&isNumber);
  if (isNumber) element_.PutValue(number);
}

QVariant AccessibleValue::maximumValue() const {
  return Range().maximum;
}

QVariant AccessibleValue::minimumValue() const {
  return Range().minimum;
}

QVariant AccessibleValue::minimumStepSize() const {
  return Range().step;
}

}  // namespace platform
