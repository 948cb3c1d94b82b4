#include <QPaintDevice>
#include <utility>

#include "platform/linux/drawing/drawing_impl.h"
#include "platform/linux/drawing/image_scaling.h"
#include "platform/screen.h"

namespace platform {

Graphics::Graphics(Bitmap& target) : impl_(std::make_unique<Impl>(&target.Native().image)) {}
Graphics::Graphics(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Graphics::~Graphics() = default;

float Graphics::DpiX() const {
  return static_cast<float>(GetScreenDpi().x);
}
float Graphics::DpiY() const {
  return static_cast<float>(GetScreenDpi().y);
}

void Graphics::SetCompositingMode(CompositingMode mode) {
  if (!impl_->painter.isActive()) return;
  impl_->painter.setCompositionMode(mode == CompositingMode::SourceCopy
                                        ? QPainter::CompositionMode_Source
                                        : QPainter::CompositionMode_SourceOver);
}

// There is one quality here, the best.
void Graphics::SetCompositingQuality(CompositingQuality) {}

void Graphics::SetSmoothingMode(SmoothingMode mode) {
  if (!impl_->painter.isActive()) return;
  impl_->painter.setRenderHint(QPainter::Antialiasing, mode == SmoothingMode::AntiAlias);
}

// Neither mode moves pixel centres, and there is no quicker way to draw.
void Graphics::SetPixelOffsetMode(PixelOffsetMode) {}

void Graphics::SetInterpolationMode(InterpolationMode mode) {
  impl_->interpolation = mode;
  if (!impl_->painter.isActive()) return;
  impl_->painter.setRenderHint(QPainter::SmoothPixmapTransform,
                               mode != InterpolationMode::NearestNeighbor);
}

void Graphics::SetTextRenderingHint(TextRenderingHint hint) {
  impl_->textHint = hint;
}

void Graphics::SetClip(const Rect& clip) {
  if (!impl_->painter.isActive()) return;
  impl_->painter.setClipRect(QRect(clip.left, clip.top, clip.Width(), clip.Height()));
}

void Graphics::Clear(Argb color) {
  if (!impl_->painter.isActive()) return;
  QPainter& painter = impl_->painter;
  const QPainter::CompositionMode mode = painter.compositionMode();
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.fillRect(QRect(0, 0, painter.device()->width(), painter.device()->height()),
                   ToColor(color));
  painter.setCompositionMode(mode);
}

void Graphics::DrawImage(const Bitmap& image, std::int32_t x, std::int32_t y) {
  if (impl_->painter.isActive()) impl_->painter.drawImage(QPoint(x, y), image.Native().image);
}

void Graphics::DrawImage(const Bitmap& image, const Rect& target) {
  if (!impl_->painter.isActive() || target.Width() <= 0 || target.Height() <= 0) return;
  const QImage& source = image.Native().image;
  const QRect area(target.left, target.top, target.Width(), target.Height());
  if (source.size() == area.size()) {
    impl_->painter.drawImage(area.topLeft(), source);
  } else if (impl_->interpolation == InterpolationMode::HighQualityBicubic) {
    impl_->painter.drawImage(area.topLeft(), ScaleBicubic(source, area.width(), area.height()));
  } else {
    impl_->painter.drawImage(area, source);
  }
}

void Graphics::FillTiled(const Bitmap& tile, const Rect& area) {
  if (!impl_->painter.isActive()) return;
  impl_->painter.fillRect(QRect(area.left, area.top, area.Width(), area.Height()),
                          QBrush(tile.Native().image));
}

}  // namespace platform
