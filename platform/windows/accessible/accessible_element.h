// What our windows and their parts say and do, in the system's terms.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string_view>

#include "platform/accessible.h"

namespace platform {

// A window or a part of it, for the length of one call. User-interface thread.
class AccessibleElement {
 public:
  // The window must have an object.
  AccessibleElement(Window& window, std::int32_t part) : window_(window), part_(part) {}

  AccessibleInfo Info() const;
  DWORD Role() const;
  // Flags of the system; those of the focus are the caller's to add.
  DWORD State() const;
  // What a press does, in a word; empty where it does nothing.
  std::u16string_view Action() const;
  bool IsHidden() const;
  // In screen coordinates.
  Rect Area() const;

  bool CanBeClicked() const;
  // Does nothing unless a click could reach it.
  void Press() const;
  void PutValue(double value) const;

 private:
  HWND Handle() const;

  Window& window_;
  std::int32_t part_;
};

}  // namespace platform
