#include "ui/controls/shared/accent_dot.h"

#include "resources/resource_ids.h"
#include "ui/controls/shared/control_style.h"
#include "ui/images/png_resource.h"

namespace ui {

void AccentDot::Load() {
  image_ = LoadPngResource(resources::kImageCyanDot, kDesignDpi);
}

void AccentDot::TurnRed() {
  if (red_) return;
  red_ = true;
  image_ = LoadPngResource(resources::kImageRedDot, kDesignDpi);
}

}  // namespace ui
