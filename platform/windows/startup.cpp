#include "platform/startup.h"

#include <windows.h>

#include <commctrl.h>

#include "platform/windows/drawing/gdiplus_interface.h"

namespace platform {

void RegisterCommonControls(std::uint32_t classes) {
  const INITCOMMONCONTROLSEX controls{sizeof(controls), classes};
  InitCommonControlsEx(&controls);
}

void RegisterForRestart() {
  RegisterApplicationRestart(nullptr, 0);
}

DrawingSession::DrawingSession() : token_(0) {
  const Gdiplus::GdiplusStartupInput input;
  ULONG_PTR token = 0;
  if (Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok) token_ = token;
}

DrawingSession::~DrawingSession() {
  if (token_ != 0) Gdiplus::GdiplusShutdown(token_);
}

}  // namespace platform
