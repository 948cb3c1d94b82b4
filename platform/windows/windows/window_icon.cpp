#include "platform/windows/windows/window_icon.h"

namespace platform {

HICON LoadWindowIcon(std::uint16_t iconResource, WindowIconSize size) {
  const bool small = size == WindowIconSize::Small;
  return static_cast<HICON>(
      LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(iconResource), IMAGE_ICON,
                 GetSystemMetrics(small ? SM_CXSMICON : SM_CXICON),
                 GetSystemMetrics(small ? SM_CYSMICON : SM_CYICON), LR_SHARED));
}

}  // namespace platform
