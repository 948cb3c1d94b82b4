// The dot that marks what is selected, in the accent colour of the skin.
#pragma once

#include <optional>

#include "platform/drawing.h"

namespace ui {

class AccentDot {
 public:
  // Loads the ordinary, cyan dot.
  void Load();
  // The skin with the red accent has a red dot; loads it and keeps it from then on.
  void TurnRed();

  const std::optional<platform::Bitmap>& Image() const { return image_; }

 private:
  std::optional<platform::Bitmap> image_;
  bool red_ = false;
};

}  // namespace ui
