// Where the parts of a slider lie in its client area.
#pragma once

#include <cstdint>

#include "platform/geometry.h"

namespace ui {

// Lengths in pixels: each is scaled from 96-DPI units and truncated by itself.
class SliderGeometry {
 public:
  // `scale` is the resolution in dots per inch divided by 96.
  SliderGeometry(platform::Size client, double scale);

  std::int32_t Width() const { return client_.width; }
  std::int32_t Height() const { return client_.height; }
  // `count` is 1 to 4.
  std::int32_t Units(int count) const;

  // The inset of the groove, and of caption and value box, from the client edges.
  std::int32_t Margin() const;
  std::int32_t Travel() const;
  std::int32_t GrooveLeft() const { return Margin(); }
  std::int32_t GrooveRight() const { return Width() - Margin(); }
  std::int32_t GrooveCentre() const { return 3 * Height() / 4; }

  // Right and bottom are the box's last pixels.
  platform::Rect ValueBox() const;
  // Top left corner of text of this size, centred in the value box as if that were a unit higher.
  platform::PointF ValueTextOrigin(platform::SizeF text) const;
  // Top left corner of the thumb's image.
  platform::Point ThumbOrigin(std::int32_t thumbPos, platform::Size image) const;

 private:
  platform::Size client_;
  double scale_;
};

// Whether a press at `x` takes hold of the thumb. Unlike the drawn thumb the one for the test lies
// at `thumbPos` itself, left of what is seen by the margin and the image's offset.
bool IsThumbPress(std::int32_t x, std::int32_t thumbPos, std::int32_t thumbWidth);

}  // namespace ui
