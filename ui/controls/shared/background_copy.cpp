#include "ui/controls/shared/background_copy.h"

#include "ui/controls/shared/control_window.h"

namespace ui {

void BackgroundCopy::Capture(const platform::Bitmap& parentBackground, const platform::Rect& area,
                             platform::Size client) {
  if (!copy_) copy_ = MakeCanvas(client, platform::PixelFormat::PremultipliedArgb32);
  platform::Graphics graphics(*copy_);
  graphics.SetCompositingMode(platform::CompositingMode::SourceCopy);
  graphics.SetClip({0, 0, area.Width(), area.Height()});
  graphics.DrawImage(parentBackground, -area.left, -area.top);
}

void BackgroundCopy::Draw(platform::Graphics& graphics) const {
  if (copy_) graphics.DrawImage(*copy_, 0, 0);
}

}  // namespace ui
