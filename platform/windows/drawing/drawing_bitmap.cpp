#include <shlwapi.h>

#include <algorithm>
#include <utility>

#include "platform/screen.h"
#include "platform/windows/com_pointer.h"
#include "platform/windows/drawing/drawing_impl.h"

namespace platform {
namespace {

constexpr INT kBytesOfPixel = 4;

std::uint32_t AlphaOf(std::uint32_t pixel) {
  return pixel >> 24U;
}

// Applies `change` to the three colour channels.
template <class Change>
std::uint32_t WithColor(std::uint32_t pixel, Change change) {
  std::uint32_t result = pixel & 0xFF000000U;
  for (const unsigned shift : {16U, 8U, 0U}) result |= change((pixel >> shift) & 0xFFU) << shift;
  return result;
}

std::uint32_t Premultiplied(Argb color) {
  const std::uint32_t alpha = AlphaOf(color);
  return WithColor(color, [alpha](std::uint32_t value) { return (value * alpha + 127U) / 255U; });
}

Argb Unpremultiplied(std::uint32_t pixel) {
  const std::uint32_t alpha = AlphaOf(pixel);
  if (alpha == 0) return 0;
  return WithColor(pixel, [alpha](std::uint32_t value) {
    return std::min((value * 255U + alpha / 2U) / alpha, 255U);
  });
}

}  // namespace

Bitmap::Impl::Impl(std::int32_t givenWidth, std::int32_t givenHeight)
    : width(std::max(givenWidth, 1)),
      height(std::max(givenHeight, 1)),
      pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
      image(width, height, width * kBytesOfPixel, PixelFormat32bppPARGB,
            reinterpret_cast<BYTE*>(pixels.data())) {
  const ScreenDpi dpi = GetScreenDpi();
  image.SetResolution(static_cast<float>(dpi.x), static_cast<float>(dpi.y));
}

Bitmap::Bitmap(std::int32_t width, std::int32_t height, PixelFormat)
    : impl_(std::make_unique<Impl>(width, height)) {}

Bitmap::Bitmap(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Bitmap::~Bitmap() = default;
Bitmap::Bitmap(Bitmap&&) noexcept = default;
Bitmap& Bitmap::operator=(Bitmap&&) noexcept = default;

std::optional<Bitmap> Bitmap::FromPng(std::span<const std::byte> bytes) {
  const ComPointer<IStream> stream(SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()),
                                                     static_cast<UINT>(bytes.size())));
  if (!stream) return std::nullopt;
  Gdiplus::Bitmap stored(stream.Get());
  GUID format{};
  if (stored.GetLastStatus() != Gdiplus::Ok || stored.GetRawFormat(&format) != Gdiplus::Ok ||
      format != Gdiplus::ImageFormatPNG) {
    return std::nullopt;
  }
  const auto width = static_cast<std::int32_t>(stored.GetWidth());
  const auto height = static_cast<std::int32_t>(stored.GetHeight());
  auto impl = std::make_unique<Impl>(width, height);
  Gdiplus::BitmapData target{};
  target.Width = stored.GetWidth();
  target.Height = stored.GetHeight();
  target.Stride = width * kBytesOfPixel;
  target.PixelFormat = PixelFormat32bppARGB;
  target.Scan0 = impl->pixels.data();
  if (stored.LockBits(nullptr, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf,
                      PixelFormat32bppARGB, &target) != Gdiplus::Ok) {
    return std::nullopt;
  }
  stored.UnlockBits(&target);
  std::transform(impl->pixels.begin(), impl->pixels.end(), impl->pixels.begin(), Premultiplied);
  return Bitmap(std::move(impl));
}

std::int32_t Bitmap::Width() const {
  return impl_->width;
}
std::int32_t Bitmap::Height() const {
  return impl_->height;
}

Argb Bitmap::GetPixel(std::int32_t x, std::int32_t y) const {
  return impl_->Contains(x, y) ? Unpremultiplied(*impl_->At(x, y)) : 0;
}

void Bitmap::SetPixel(std::int32_t x, std::int32_t y, Argb color) {
  if (impl_->Contains(x, y)) *impl_->At(x, y) = Premultiplied(color);
}

}  // namespace platform
