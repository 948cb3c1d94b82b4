// What the custom controls do alike with their window, its parent and their pictures.
#pragma once

#include <cstdint>

#include "platform/drawing.h"
#include "platform/window.h"

namespace ui {

// Notification codes of kCommand that a control posts when the user has changed its value; lParam
// is the control's window.
inline constexpr std::uint16_t PSN_VALUECHANGED = 10;   // slider
inline constexpr std::uint16_t POTN_VALUECHANGED = 11;  // knob

void NotifyParent(const platform::Window& control, std::uint16_t notification);

platform::Size ClientSize(const platform::Window& window);
// The control's rectangle, seen from the top left corner of its parent's window.
platform::Rect AreaInParent(const platform::Window& control);

// A transparent bitmap for a control's picture. A control without room gets the smallest one.
platform::Bitmap MakeCanvas(platform::Size size, platform::PixelFormat format);
platform::Size SizeOf(const platform::Bitmap& image);

// Replaces what the window shows by the finished picture.
void CopyToWindow(platform::Graphics& surface, const platform::Bitmap& picture);

}  // namespace ui
