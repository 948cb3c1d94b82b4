// Calls that reach windows from other threads: assistive technology may call on any.
#pragma once

#include <windows.h>

#include <functional>

namespace platform {

// Runs `call` on the window's thread, which must be handling messages, and returns after it. False,
// and nothing happens, when the window is gone.
bool CallOnThreadOf(HWND window, const std::function<void()>& call);

// What a window does with each message before anything else: true when it was such a call.
bool TookCall(UINT message, WPARAM wParam);

}  // namespace platform
