// The part of the parent's background that lies under a control, on which the control paints so
// that it looks transparent.
#pragma once

#include <optional>

#include "platform/drawing.h"
#include "platform/geometry.h"

namespace ui {

class BackgroundCopy {
 public:
  // Copies `area` (seen from the parent's top left corner) of the parent's background. The first
  // call fixes the size of the copy; where the parent's background does not reach, the copy stays
  // as it was.
  void Capture(const platform::Bitmap& parentBackground, const platform::Rect& area,
               platform::Size client);

  // Draws the copy at (0, 0); nothing before the first capture.
  void Draw(platform::Graphics& graphics) const;

 private:
  std::optional<platform::Bitmap> copy_;
};

}  // namespace ui
