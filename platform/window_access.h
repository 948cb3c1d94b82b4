// What every backend's windows share with the contract's `Window`.
#pragma once

#include "platform/window.h"

namespace platform {

struct Window::Impl {
  class NativeWindow* native = nullptr;
};

// Reaches what `Window` keeps from everybody else.
struct WindowAccess {
  static LResult Deliver(Window& window, std::uint32_t message, WParam wParam, LParam lParam) {
    return window.WindowProc(message, wParam, lParam);
  }
  static void PreSubclass(Window& window) { window.PreSubclassWindow(); }
};

}  // namespace platform
