// Our windows as the system's accessibility interface shows them.
#pragma once

#include <windows.h>

#include <optional>

namespace platform {

// What a window with an object does with each message before anything else: handles what assistive
// technology asks, and what follows from that; nothing leaves the message to others.
std::optional<LRESULT> AnswerAssistiveTechnology(HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam);

}  // namespace platform
