// Whether Windows is really Wine, for tests of what only the real one can do.
#pragma once

#include <windows.h>

namespace support {

inline bool RunsUnderWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

}  // namespace support
