#include "ui/controls/buttons/png_button.h"

#include <utility>

#include "ui/controls/shared/control_window.h"

namespace ui {

void CPngButton::SetImage(std::optional<platform::Bitmap> image) {
  image_ = std::move(image);
  Invalidate(platform::Erase::Yes);
}

void CPngButton::CaptureBackground(const platform::Bitmap& parentBackground) {
  background_.Capture(parentBackground, AreaInParent(*this), ClientSize(*this));
}

void CPngButton::DrawItem(platform::Graphics& graphics, const platform::Rect& /*item*/) {
  platform::Bitmap picture = MakeCanvas(ClientSize(*this), platform::PixelFormat::Argb32);
  PaintImageButton(picture, background_, image_ && showImage ? &*image_ : nullptr);
  graphics.DrawImage(picture, 0, 0);
}

platform::AccessibleInfo CPngButton::DescribeAccessible(std::int32_t part) const {
  platform::AccessibleInfo info = Button::DescribeAccessible(part);
  if (!showImage) info.visibility = platform::AccessibleVisibility::Hidden;
  return info;
}

void PaintImageButton(platform::Bitmap& target, const BackgroundCopy& background,
                      const platform::Bitmap* image) {
  platform::Graphics graphics(target);
  background.Draw(graphics);
  if (image == nullptr) return;
  graphics.DrawImage(*image, (target.Width() - image->Width()) / 2,
                     (target.Height() - image->Height()) / 2);
}

}  // namespace ui
