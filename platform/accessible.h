// What windows tell assistive technology of themselves and of what they draw, in the terms of the
// original platform's accessibility interface. User-interface thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/geometry.h"

namespace platform {

class Window;

// A part is what a window draws as if it were a control, such as one of several buttons. Parts are
// counted from 1; this is the window itself.
inline constexpr std::int32_t kAccessibleSelf = 0;

enum class AccessibleRole {
  Client,
  Dialog,
  Alert,
  Chart,
  PushButton,
  ButtonMenu,
  CheckButton,
  RadioButton,
  Link,
  Slider,
  Dial
};

// Whether what has this role does something when it is pressed.
constexpr bool CanBePressed(AccessibleRole role) {
  switch (role) {
    case AccessibleRole::PushButton:
    case AccessibleRole::ButtonMenu:
    case AccessibleRole::CheckButton:
    case AccessibleRole::RadioButton:
    case AccessibleRole::Link:
      return true;
    default:
      return false;
  }
}

enum class AccessibleCheck { None, Unchecked, Checked };
enum class AccessibleExpansion { None, Collapsed, Expanded };
enum class AccessibleVisibility { Shown, Hidden };

// In the unit that a person reads. `step` is the smallest change that has an effect.
struct AccessibleRange {
  double minimum = 0.0;
  double maximum = 0.0;
  double current = 0.0;
  double step = 0.0;
};

struct AccessibleInfo {
  AccessibleRole role = AccessibleRole::Client;
  std::u16string name;
  std::u16string description;
  std::u16string value;                  // as a person reads it: "1000 Hz"
  std::optional<AccessibleRange> range;  // of what can be set to a number
  AccessibleCheck check = AccessibleCheck::None;
  AccessibleExpansion expansion = AccessibleExpansion::None;
  AccessibleVisibility visibility = AccessibleVisibility::Shown;
  Rect area;  // of a part, in the window's client coordinates
};

// What the user of a window knows better than the window does; an empty or missing field leaves
// what the window says.
struct AccessibleAnnotation {
  std::u16string name;
  std::u16string description;
  std::optional<AccessibleRole> role;
  AccessibleExpansion expansion = AccessibleExpansion::None;
};

enum class AccessibleChange { Name, Description, Value, Check, Expansion, Visibility, Enabling };

// Says that this has changed, after it has. Costs next to nothing when nobody listens.
void NotifyAccessible(const Window& window, AccessibleChange change,
                      std::int32_t part = kAccessibleSelf);

}  // namespace platform
