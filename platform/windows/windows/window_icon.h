// The icons of windows.
#pragma once

#include <windows.h>

#include <cstdint>

namespace platform {

enum class WindowIconSize { Small, Big };

// The system's to keep; null when there is no such resource.
HICON LoadWindowIcon(std::uint16_t iconResource, WindowIconSize size);

}  // namespace platform
