#include <algorithm>
#include <utility>

#include "platform/windows/drawing/coordinates.h"
#include "platform/windows/drawing/drawing_impl.h"

namespace platform {
namespace {

// While it lives, images are laid pixel upon pixel, or over the whole of their target.
class ImagePlacement {
 public:
  ImagePlacement(Gdiplus::Graphics& surface, Gdiplus::InterpolationMode interpolation)
      : surface_(surface),
        interpolation_(surface.GetInterpolationMode()),
        offset_(surface.GetPixelOffsetMode()) {
    surface_.SetInterpolationMode(interpolation);
    surface_.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
  }
  ~ImagePlacement() {
    surface_.SetInterpolationMode(interpolation_);
    surface_.SetPixelOffsetMode(offset_);
  }
  ImagePlacement(const ImagePlacement&) = delete;
  ImagePlacement& operator=(const ImagePlacement&) = delete;

 private:
  Gdiplus::Graphics& surface_;
  Gdiplus::InterpolationMode interpolation_;
  Gdiplus::PixelOffsetMode offset_;
};

// Premultiplied colours, one upon the other.
std::uint32_t Over(std::uint32_t above, std::uint32_t below) {
  const std::uint32_t share = 255U - (above >> 24U);
  std::uint32_t result = above;
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    result += (((below >> shift) & 0xFFU) * share + 127U) / 255U << shift;
  }
  return result;
}

// Pixel upon pixel. The library itself may do that by way of colours that are not premultiplied,
// which loses some.
void PlacePixels(const Bitmap::Impl& source, std::int32_t x, std::int32_t y, Bitmap::Impl& target,
                 Gdiplus::Graphics& surface) {
  surface.Flush(Gdiplus::FlushIntentionSync);
  Gdiplus::Rect area;
  surface.GetVisibleClipBounds(&area);
  if (!area.Intersect({x, y, source.width, source.height})) return;
  const bool copies = surface.GetCompositingMode() == Gdiplus::CompositingModeSourceCopy;
  for (INT row = area.GetTop(); row < area.GetBottom(); ++row) {
    const std::uint32_t* from = source.At(area.X - x, row - y);
    std::uint32_t* to = target.At(area.X, row);
    if (copies) {
      std::copy_n(from, area.Width, to);
    } else {
      std::transform(from, from + area.Width, to, to, Over);
    }
  }
}

}  // namespace

Graphics::Graphics(Bitmap& target) : impl_(std::make_unique<Impl>(target.Native())) {}
Graphics::Graphics(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Graphics::~Graphics() = default;

float Graphics::DpiX() const {
  return impl_->surface.GetDpiX();
}
float Graphics::DpiY() const {
  return impl_->surface.GetDpiY();
}

void Graphics::SetCompositingMode(CompositingMode mode) {
  impl_->surface.SetCompositingMode(mode == CompositingMode::SourceCopy
                                        ? Gdiplus::CompositingModeSourceCopy
                                        : Gdiplus::CompositingModeSourceOver);
}

void Graphics::SetCompositingQuality(CompositingQuality quality) {
  impl_->surface.SetCompositingQuality(quality == CompositingQuality::HighSpeed
                                           ? Gdiplus::CompositingQualityHighSpeed
                                           : Gdiplus::CompositingQualityHighQuality);
}

void Graphics::SetSmoothingMode(SmoothingMode mode) {
  switch (mode) {
    case SmoothingMode::None:
      impl_->surface.SetSmoothingMode(Gdiplus::SmoothingModeNone);
      return;
    case SmoothingMode::HighSpeed:
      impl_->surface.SetSmoothingMode(Gdiplus::SmoothingModeHighSpeed);
      return;
    case SmoothingMode::AntiAlias:
      impl_->surface.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
      return;
  }
}

void Graphics::SetPixelOffsetMode(PixelOffsetMode mode) {
  impl_->surface.SetPixelOffsetMode(mode == PixelOffsetMode::HighSpeed
                                        ? Gdiplus::PixelOffsetModeHighSpeed
                                        : Gdiplus::PixelOffsetModeNone);
}

void Graphics::SetInterpolationMode(InterpolationMode mode) {
  switch (mode) {
    case InterpolationMode::Default:
      impl_->surface.SetInterpolationMode(Gdiplus::InterpolationModeDefault);
      return;
    case InterpolationMode::NearestNeighbor:
      impl_->surface.SetInterpolationMode(Gdiplus::InterpolationModeNearestNeighbor);
      return;
    case InterpolationMode::Bilinear:
      impl_->surface.SetInterpolationMode(Gdiplus::InterpolationModeBilinear);
      return;
    case InterpolationMode::HighQualityBicubic:
      impl_->surface.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
      return;
  }
}

void Graphics::SetTextRenderingHint(TextRenderingHint hint) {
  impl_->surface.SetTextRenderingHint(hint == TextRenderingHint::AntiAlias
                                          ? Gdiplus::TextRenderingHintAntiAlias
                                          : Gdiplus::TextRenderingHintAntiAliasGridFit);
}

void Graphics::SetClip(const Rect& clip) {
  impl_->surface.SetClip(ToNative(clip));
}

void Graphics::Clear(Argb color) {
  impl_->surface.Clear(Gdiplus::Color(color));
}

void Graphics::DrawImage(const Bitmap& image, std::int32_t x, std::int32_t y) {
  const Bitmap::Impl& source = image.Native();
  DrawImage(image, Rect{x, y, x + source.width, y + source.height});
}

void Graphics::DrawImage(const Bitmap& image, const Rect& target) {
  if (target.Width() <= 0 || target.Height() <= 0) return;
  const Bitmap::Impl& source = image.Native();
  if (impl_->target == nullptr) return;
  if (target.Width() == source.width && target.Height() == source.height) {
    return PlacePixels(source, target.left, target.top, *impl_->target, impl_->surface);
  }
  const ImagePlacement placement(impl_->surface, impl_->surface.GetInterpolationMode());
  // Edges are mirrored where they would else mix with the transparency around them.
  Gdiplus::ImageAttributes mirrored;
  mirrored.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
  impl_->surface.DrawImage(&source.image, ToNative(target), 0, 0, source.width, source.height,
                           Gdiplus::UnitPixel, &mirrored);
}

void Graphics::FillTiled(const Bitmap& tile, const Rect& area) {
  const ImagePlacement placement(impl_->surface, Gdiplus::InterpolationModeNearestNeighbor);
  const Gdiplus::TextureBrush brush(&tile.Native().image, Gdiplus::WrapModeTile);
  impl_->surface.FillRectangle(&brush, ToNative(area));
}

}  // namespace platform
