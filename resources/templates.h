// Dialog templates, the menu and the string table.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/dialog_template.h"
#include "resources/resource_ids.h"

namespace resources {

using platform::ControlKind;
using platform::DialogControl;
using platform::DialogFrame;
using platform::DialogTemplate;
using platform::MenuItem;
using platform::PopupMenu;

// The main window; its size is replaced by its background image's.
inline constexpr DialogTemplate kMainTemplate{kMainDialog, DialogFrame::Layered, 320, 200,
                                              u"",         u"MS Shell Dlg",      8,   {}};

inline constexpr auto kAdvancedControls = std::to_array<DialogControl>({
    {kKnobBass, ControlKind::Custom, u"", 58, 24, 85, 95, u"POTENTIOMETER"},
    {kKnobTreble, ControlKind::Custom, u"", 157, 24, 85, 95, u"POTENTIOMETER"},
    {kKnobWidener, ControlKind::Custom, u"", 256, 24, 85, 95, u"POTENTIOMETER"},
    {kKnobLoudness, ControlKind::Custom, u"", 355, 24, 85, 95, u"POTENTIOMETER"},
    {kExpandButton, ControlKind::PushButton, u"V", 441, 107, 55, 21},
    {kEqualizerEnable, ControlKind::CheckBox, u"Equalizer Enable", 389, 136, 107, 14},
    {kPlot, ControlKind::Custom, u"", 7, 153, 489, 121, u"FREQPLOT"},
    {kGainSlider, ControlKind::Custom, u"", 112, 280, 259, 36, u"PNGSLIDER"},
    {kFrequencySlider, ControlKind::Custom, u"", 112, 318, 259, 36, u"PNGSLIDER"},
    {kBandwidthSlider, ControlKind::Custom, u"", 112, 356, 259, 36, u"PNGSLIDER"},
    {kTypePeaking, ControlKind::CheckBox, u"", 389, 282, 107, 12},
    {kTypeHighShelving, ControlKind::CheckBox, u"", 389, 304, 107, 12},
    {kTypeLowShelving, ControlKind::CheckBox, u"", 389, 326, 107, 12},
    {kTypeHighPass, ControlKind::CheckBox, u"", 389, 348, 107, 12},
    {kTypeLowPass, ControlKind::CheckBox, u"", 389, 370, 107, 12},
    {kBandEnable, ControlKind::CheckBox, u"", 7, 328, 86, 12},
    {kMenuButton, ControlKind::PushButton, u"Menu", 446, 7, 25, 19},
    {kCloseButton, ControlKind::PushButton, u"X", 471, 7, 25, 19},
});

inline constexpr DialogTemplate kAdvancedTemplate{
    kAdvancedDialog,  DialogFrame::Skinned, 503, 396, u"", u"Microsoft Sans Serif", 8,
    kAdvancedControls};

inline constexpr auto kAboutControls = std::to_array<DialogControl>({
    {0, ControlKind::Icon, u"", 14, 14, 21, 20, {}, kApplicationIcon},
    {0, ControlKind::Text, u"Tonalyx, Version 1.0", 46, 20, 137, 10},
    {1, ControlKind::DefaultPushButton, u"OK", 140, 54, 50, 14},
});

inline constexpr DialogTemplate kAboutTemplate{
    kAboutDialog,     DialogFrame::Captioned, 197, 76,
    u"About Tonalyx", u"MS Shell Dlg",        8,   kAboutControls};

inline constexpr auto kAdvancedMenuItems = std::to_array<MenuItem>({
    {kCommandLoad, u"&Load settings..."},
    {kCommandSave, u"&Save setting..."},
    {0, u""},
    {kCommandRestore, u"&Restore defaults..."},
    {0, u""},
    {kCommandClose, u"&Close"},
});

inline constexpr PopupMenu kAdvancedPopup{kAdvancedMenu, kAdvancedMenuItems};

struct StringEntry {
  std::uint16_t id;
  std::u16string_view text;
};

inline constexpr auto kStringTable = std::to_array<StringEntry>({
    {kTextAboutMenu, u"&About Tonalyx..."},
    {kTextPeaking, u"Peaking"},
    {kTextLowPass, u"Low Pass"},
    {kTextHighPass, u"High Pass"},
    {kTextLowShelving, u"Low Shelving"},
    {kTextHighShelving, u"High Shelving"},
    {kTextBass, u"Bass"},
    {kTextTreble, u"Treble"},
    {kTextWidener, u"Widener"},
    {kTextLoudness, u"Loudness"},
    {kTextBandEnable, u"Band Enable"},
    {kTextFrequency, u"Frequency"},
    {kTextGain, u"Gain"},
    {kTextBandwidth, u"Bandwidth"},
    {kTextWriteError, u"Error writing file."},
    {kTextError, u"Error"},
    {kTextCreateError, u"File creation error."},
    {kTextOpenError, u"Cannot open file."},
    {kTextReadError, u"Error reading from file."},
    {kTextInvalidFile, u"File is not a valid settings file."},
    {kTextRestoreQuestion,
     u"Restoring settings will overwrite your changes.\n\nAre you sure you want to restore to "
     u"factory settings?"},
    {kTextConfirm, u"Confirm"},
});

}  // namespace resources
