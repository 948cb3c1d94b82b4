// The equalizer dialog's skin beside its controls: header, dividing lines, and the areas by which
// the window without a caption is moved and its menu opened.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/drawing.h"
#include "platform/geometry.h"
#include "platform/window_messages.h"

namespace ui {

// `scale` is the screen's resolution in dots per inch divided by 96, lengths are in pixels.
void PaintHeader(platform::Graphics& graphics, const platform::Bitmap& header, float scale);
// Shades the upper edge of what shows when the dialog is expanded, just below `collapsedHeight`.
void PaintExpandedEdge(platform::Graphics& graphics, std::int32_t collapsedHeight,
                       std::int32_t width, float scale);
// Divides the sliders from what stands left of them.
void PaintSliderEdge(platform::Graphics& graphics, const platform::Rect& sliders, float scale);

// What lies at a screen point near the top edge of `window`; nothing elsewhere. The header opens
// the system menu, the rest moves the window, but for the corner with the buttons.
std::optional<platform::HitTest> HitTestTopEdge(platform::Point screen,
                                                const platform::Rect& window,
                                                platform::Size header);

// Where a click in the client area opens the system menu.
bool IsSystemMenuSpot(platform::Point client);

}  // namespace ui
