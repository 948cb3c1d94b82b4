// The windows in a window, as the accessibility interface counts and hands them out.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

namespace platform {

// In the order of the tab key.
std::vector<HWND> ChildWindowsOf(HWND window);
// The topmost one that shows at a point of the screen; null where there is none.
HWND ChildWindowAt(HWND window, POINT screen);

// The object of the whole window, which the system makes; the caller's to release.
HRESULT GiveObject(IDispatch** out, HWND window);
HRESULT GiveObject(VARIANT* out, HWND window);

}  // namespace platform
