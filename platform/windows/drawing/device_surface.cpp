#include "platform/windows/drawing/device_surface.h"

#include <cstring>

#include "platform/windows/drawing/drawing_impl.h"

namespace platform {
namespace {

// From the top row on.
BITMAPINFO DescribePixels(const Bitmap::Impl& native) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = native.width;
  info.bmiHeader.biHeight = -native.height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

}  // namespace

void CopyToDevice(const Bitmap& content, HDC context) {
  const Bitmap::Impl& native = content.Native();
  const BITMAPINFO info = DescribePixels(native);
  SetDIBitsToDevice(context, 0, 0, static_cast<DWORD>(native.width),
                    static_cast<DWORD>(native.height), 0, 0, 0, static_cast<UINT>(native.height),
                    native.pixels.data(), &info, DIB_RGB_COLORS);
}

HBITMAP MakeDeviceBitmap(const Bitmap& content) {
  const Bitmap::Impl& native = content.Native();
  const BITMAPINFO info = DescribePixels(native);
  void* bits = nullptr;
  const HBITMAP bitmap =
      CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, /*offset=*/0);
  if (bitmap == nullptr) return nullptr;
  std::memcpy(bits, native.pixels.data(), native.pixels.size() * sizeof(native.pixels[0]));
  return bitmap;
}

}  // namespace platform
