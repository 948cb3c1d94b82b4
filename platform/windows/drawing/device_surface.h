// What windows need from drawing beyond the contract. User-interface thread only.
#pragma once

#include <windows.h>

#include <memory>

#include "platform/drawing.h"

namespace platform {

// Draws onto a device context while it lives; the context must outlive it. Draws nothing for a null
// context.
std::unique_ptr<Graphics> GraphicsForDeviceContext(HDC context);

// A top-down 32-bit premultiplied copy for UpdateLayeredWindow; the caller deletes it. Null when
// there is no memory.
HBITMAP MakeDeviceBitmap(const Bitmap& content);

// An icon of the image's size; the caller destroys it. Null when there is none.
HICON MakeIcon(const Bitmap& image);

}  // namespace platform
