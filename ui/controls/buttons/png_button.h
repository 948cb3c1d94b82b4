// A button that shows one image over the parent's background, alike in every state.
//
// User-interface thread only. Clicks reach the parent as kNotifyClicked.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/drawing.h"
#include "platform/window.h"
#include "ui/controls/shared/background_copy.h"

namespace ui {

class CPngButton : public platform::Button {
 public:
  // Without it the button shows the background alone.
  bool showImage = true;

  // Replaces the image; with none the button shows the background alone.
  void SetImage(std::optional<platform::Bitmap> image);

  // Takes over what the parent shows under the button; for each new background of the parent.
  // Without it the image is drawn onto the parent itself.
  void CaptureBackground(const platform::Bitmap& parentBackground);

 protected:
  void DrawItem(platform::Graphics& graphics, const platform::Rect& item) override;
  platform::AccessibleInfo DescribeAccessible(std::int32_t part) const override;

 private:
  std::optional<platform::Bitmap> image_;
  BackgroundCopy background_;
};

// The picture of such a button, onto the transparent `target`: the image centred, an image too
// large cut off alike on both sides.
void PaintImageButton(platform::Bitmap& target, const BackgroundCopy& background,
                      const platform::Bitmap* image);

}  // namespace ui
