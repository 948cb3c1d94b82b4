#include "platform/screen.h"

#include <windows.h>

namespace platform {

// The system answers for the process, which it took to be aware of one resolution at its start.
ScreenDpi GetScreenDpi() {
  const HDC screen = GetDC(nullptr);
  const ScreenDpi dpi{static_cast<std::uint32_t>(GetDeviceCaps(screen, LOGPIXELSX)),
                      static_cast<std::uint32_t>(GetDeviceCaps(screen, LOGPIXELSY))};
  ReleaseDC(nullptr, screen);
  return dpi;
}

}  // namespace platform
