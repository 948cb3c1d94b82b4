// Presses that assistive technology asks for. What a press does may take its time, so it comes when
// the call that asked has returned, as a click does.
#pragma once

#include <windows.h>

#include <cstdint>

namespace platform {

// Any thread.
void PostPress(HWND window, std::int32_t part);

// What a window does with each message before anything else: true when it was such a press.
bool TookPress(HWND window, UINT message, WPARAM wParam);

}  // namespace platform
