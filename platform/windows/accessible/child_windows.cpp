#include "platform/windows/accessible/child_windows.h"

#include <oleacc.h>

namespace platform {

std::vector<HWND> ChildWindowsOf(HWND window) {
  std::vector<HWND> windows;
  for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    windows.push_back(child);
  }
  return windows;
}

HWND ChildWindowAt(HWND window, POINT screen) {
  ScreenToClient(window, &screen);
  const HWND child = ChildWindowFromPointEx(window, screen, CWP_SKIPINVISIBLE);
  return child != window ? child : nullptr;
}

HRESULT GiveObject(IDispatch** out, HWND window) {
  *out = nullptr;
  return AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_WINDOW), __uuidof(IDispatch),
                                    reinterpret_cast<void**>(out));
}

HRESULT GiveObject(VARIANT* out, HWND window) {
  IDispatch* object = nullptr;
  const HRESULT result = GiveObject(&object, window);
  if (result != S_OK) return result;
  V_VT(out) = VT_DISPATCH;
  V_DISPATCH(out) = object;
  return S_OK;
}

}  // namespace platform
