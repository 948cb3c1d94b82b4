// Templates of dialogs that only tests have.
#pragma once

#include <array>
#include <cstdint>

#include "platform/dialog_template.h"

namespace support {

using platform::ControlKind;
using platform::DialogControl;
using platform::DialogFrame;
using platform::DialogTemplate;

inline constexpr std::uint16_t kFirstControl = 501;
inline constexpr std::uint16_t kSecondControl = 502;
inline constexpr std::uint16_t kButtonControl = 503;

inline constexpr auto kSkinnedControls = std::to_array<DialogControl>({
    {kFirstControl, ControlKind::Custom, u"", 20, 40, 40, 40, u"POTENTIOMETER"},
    {kSecondControl, ControlKind::Custom, u"", 80, 40, 40, 40, u"POTENTIOMETER"},
    {kButtonControl, ControlKind::PushButton, u"Press", 140, 40, 40, 40},
});
inline constexpr DialogTemplate kSkinnedTemplate{
    1, DialogFrame::Skinned, 200, 120, u"", u"Microsoft Sans Serif", 8, kSkinnedControls};

inline constexpr auto kSizedControls = std::to_array<DialogControl>({
    {kFirstControl, ControlKind::Custom, u"", 7, 153, 489, 121, u"FREQPLOT"},
});
inline constexpr DialogTemplate kSizedTemplate{2,   DialogFrame::Skinned,    503, 396,
                                               u"", u"Microsoft Sans Serif", 8,   kSizedControls};

inline constexpr DialogTemplate kLayeredTemplate{3,   DialogFrame::Layered, 50, 50,
                                                 u"", u"MS Shell Dlg",      8,  {}};
inline constexpr DialogTemplate kBackdropTemplate{4,   DialogFrame::Skinned, 200, 120,
                                                  u"", u"MS Shell Dlg",      8,   {}};

// One of each kind, in the sizes that the advanced dialog gives them, but for a taller check box.
inline constexpr auto kEachControl = std::to_array<DialogControl>({
    {10, ControlKind::Custom, u"Gain", 10, 10, 259, 36, u"PNGSLIDER"},
    {11, ControlKind::Custom, u"Bass", 280, 10, 85, 95, u"POTENTIOMETER"},
    {12, ControlKind::Custom, u"", 7, 120, 489, 121, u"FREQPLOT"},
    {13, ControlKind::CheckBox, u"Peaking", 380, 10, 107, 24},
    {14, ControlKind::PushButton, u"V", 380, 40, 55, 21},
});
inline constexpr DialogTemplate kControlsTemplate{5,   DialogFrame::Skinned,    503, 250,
                                                  u"", u"Microsoft Sans Serif", 8,   kEachControl};

}  // namespace support
