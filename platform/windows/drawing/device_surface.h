// How finished pictures reach the screen. User-interface thread only.
#pragma once

#include <windows.h>

#include "platform/drawing.h"

namespace platform {

// Replaces what a device context shows from its corner on; transparency is no part of it.
void CopyToDevice(const Bitmap& content, HDC context);

// A top-down 32-bit premultiplied copy for UpdateLayeredWindow; the caller deletes it. Null when
// there is no memory.
HBITMAP MakeDeviceBitmap(const Bitmap& content);

}  // namespace platform
