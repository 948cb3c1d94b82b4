// Colours, fonts and resolutions that the controls of the skinned dialog share.
#pragma once

#include <string_view>

#include "platform/drawing.h"

namespace ui {

// Resolution for which the controls' images are drawn and sizes are written.
inline constexpr float kDesignDpi = 96.0F;

inline constexpr platform::Argb kRedAccent = 0xFFBE0000;
inline constexpr platform::Argb kWhiteText = 0xFFFFFFFF;

inline constexpr std::u16string_view kCaptionFamily = u"Calibri";
inline constexpr float kCaptionPoints = 12.0F;
inline constexpr float kKnobCaptionPoints = 16.0F;

}  // namespace ui
