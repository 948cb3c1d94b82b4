#include <algorithm>
#include <utility>

#include "platform/linux/drawing/drawing_impl.h"

namespace platform {

Bitmap::Bitmap(std::int32_t width, std::int32_t height, PixelFormat)
    : impl_(std::make_unique<Impl>(Impl{
          QImage(std::max(width, 1), std::max(height, 1), QImage::Format_ARGB32_Premultiplied)})) {
  impl_->image.fill(Qt::transparent);
}

Bitmap::Bitmap(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Bitmap::~Bitmap() = default;
Bitmap::Bitmap(Bitmap&&) noexcept = default;
Bitmap& Bitmap::operator=(Bitmap&&) noexcept = default;

std::optional<Bitmap> Bitmap::FromPng(std::span<const std::byte> bytes) {
  QImage image;
  if (!image.loadFromData(reinterpret_cast<const uchar*>(bytes.data()),
                          static_cast<int>(bytes.size()), "PNG")) {
    return std::nullopt;
  }
  image.convertTo(QImage::Format_ARGB32_Premultiplied);
  return Bitmap(std::make_unique<Impl>(Impl{std::move(image)}));
}

std::int32_t Bitmap::Width() const {
  return impl_->image.width();
}
std::int32_t Bitmap::Height() const {
  return impl_->image.height();
}

Argb Bitmap::GetPixel(std::int32_t x, std::int32_t y) const {
  if (!impl_->image.valid(x, y)) return 0;
  return qUnpremultiply(reinterpret_cast<const QRgb*>(impl_->image.constScanLine(y))[x]);
}

void Bitmap::SetPixel(std::int32_t x, std::int32_t y, Argb color) {
  if (!impl_->image.valid(x, y)) return;
  reinterpret_cast<QRgb*>(impl_->image.scanLine(y))[x] = qPremultiply(color);
}

}  // namespace platform
