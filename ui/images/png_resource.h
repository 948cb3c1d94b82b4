// The program's artwork: PNG resources as bitmaps that fit the screen's resolution.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/drawing.h"

namespace ui {

// Loads the PNG resource `id`, drawn for `designDpi` dots per inch, scaled once to the screen, so
// that it can be drawn at one-to-one pixel size from then on. Nothing when there is no such
// resource or it does not decode. Any thread.
std::optional<platform::Bitmap> LoadPngResource(std::uint16_t id, float designDpi);

// Pixels that `stored` pixels drawn for `designDpi` take on a screen of `screenDpi`; 0 when that is
// no size a bitmap can have.
std::int32_t LoadedLength(std::uint32_t stored, std::uint32_t screenDpi, float designDpi);

}  // namespace ui
