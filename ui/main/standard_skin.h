#pragma once

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "ui/main/main_scene.h"

namespace ui {

// Composes the whole window into `target`, a bitmap of the background's size, whatever it held.
// Returns the size of the Advanced entry's hit box, 0 x 0 when the entry is not drawn.
platform::Size PaintStandardSkin(const MainArt& art, const MainScene& scene,
                                 platform::Bitmap& target);

}  // namespace ui
