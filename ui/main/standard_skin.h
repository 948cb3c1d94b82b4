#pragma once

#include <cstdint>
#include <string>

#include "platform/drawing.h"
#include "ui/main/main_scene.h"

namespace ui {

// Composes the whole window into `target`, a bitmap of the background's size, whatever it held.
TextPlaces PaintStandardSkin(const MainArt& art, const MainScene& scene, platform::Bitmap& target);

// What is written on a mode's button, in one line.
std::u16string StandardModeName(std::int32_t mode);

}  // namespace ui
