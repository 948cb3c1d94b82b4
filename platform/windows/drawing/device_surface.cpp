#include "platform/windows/drawing/device_surface.h"

#include <cstring>

#include "platform/windows/drawing/drawing_impl.h"

namespace platform {

std::unique_ptr<Graphics> GraphicsForDeviceContext(HDC context) {
  return std::make_unique<Graphics>(std::make_unique<Graphics::Impl>(context));
}

HBITMAP MakeDeviceBitmap(const Bitmap& content) {
  const Bitmap::Impl& native = content.Native();
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = native.width;
  info.bmiHeader.biHeight = -native.height;  // from the top row on
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  const HBITMAP bitmap =
      CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, /*offset=*/0);
  if (bitmap == nullptr) return nullptr;
  std::memcpy(bits, native.pixels.data(), native.pixels.size() * sizeof(native.pixels[0]));
  return bitmap;
}

HICON MakeIcon(const Bitmap& image) {
  HICON icon = nullptr;
  return image.Native().image.GetHICON(&icon) == Gdiplus::Ok ? icon : nullptr;
}

}  // namespace platform
