#include "ui/controls/shared/control_window.h"

#include <algorithm>

namespace ui {

void NotifyParent(const platform::Window& control, std::uint16_t notification) {
  platform::PostToWindow(control.Parent(), platform::message::kCommand,
                         platform::MakeWParam(control.ControlId(), notification),
                         static_cast<platform::LParam>(control.Handle()));
}

platform::Size ClientSize(const platform::Window& window) {
  const platform::Rect client = window.ClientRect();
  return {client.Width(), client.Height()};
}

platform::Rect AreaInParent(const platform::Window& control) {
  const platform::Rect own = control.WindowRect();
  const platform::Rect parent = platform::WindowRectOf(control.Parent());
  return {own.left - parent.left, own.top - parent.top, own.right - parent.left,
          own.bottom - parent.top};
}

platform::Bitmap MakeCanvas(platform::Size size, platform::PixelFormat format) {
  return {std::max(size.width, 1), std::max(size.height, 1), format};
}

platform::Size SizeOf(const platform::Bitmap& image) {
  return {image.Width(), image.Height()};
}

void CopyToWindow(platform::Graphics& surface, const platform::Bitmap& picture) {
  surface.SetCompositingMode(platform::CompositingMode::SourceCopy);
  surface.SetCompositingQuality(platform::CompositingQuality::HighSpeed);
  surface.SetPixelOffsetMode(platform::PixelOffsetMode::None);
  surface.SetSmoothingMode(platform::SmoothingMode::None);
  surface.SetInterpolationMode(platform::InterpolationMode::Default);
  surface.DrawImage(picture, 0, 0);
}

}  // namespace ui
