// Our windows as the system's accessibility interface shows them.
#pragma once

#include <windows.h>

#include "platform/window_messages.h"

namespace platform {

// What a window with an object answers to WM_GETOBJECT; 0 leaves the answer to the system.
LResult AnswerGetObject(HWND window, WPARAM wParam, LPARAM lParam);

}  // namespace platform
