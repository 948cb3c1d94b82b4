// Numbers of the resources and of the controls in the dialog templates.
#pragma once

#include <cstdint>

namespace resources {

// Dialog templates, menu, icon and bitmap.
inline constexpr std::uint16_t kAboutDialog = 100;
inline constexpr std::uint16_t kAdvancedDialog = 102;
inline constexpr std::uint16_t kMainDialog = 148;
inline constexpr std::uint16_t kAdvancedMenu = 145;
inline constexpr std::uint16_t kApplicationIcon = 16;
inline constexpr std::uint16_t kDialogTileBitmap = 132;

// Texts.
inline constexpr std::uint16_t kTextAboutMenu = 101;
inline constexpr std::uint16_t kTextPeaking = 102;
inline constexpr std::uint16_t kTextLowPass = 103;
inline constexpr std::uint16_t kTextHighPass = 104;
inline constexpr std::uint16_t kTextLowShelving = 105;
inline constexpr std::uint16_t kTextHighShelving = 106;
inline constexpr std::uint16_t kTextBass = 107;
inline constexpr std::uint16_t kTextTreble = 108;
inline constexpr std::uint16_t kTextWidener = 109;
inline constexpr std::uint16_t kTextLoudness = 110;
inline constexpr std::uint16_t kTextBandEnable = 111;
inline constexpr std::uint16_t kTextFrequency = 112;
inline constexpr std::uint16_t kTextGain = 113;
inline constexpr std::uint16_t kTextBandwidth = 114;
inline constexpr std::uint16_t kTextWriteError = 115;
inline constexpr std::uint16_t kTextError = 116;
inline constexpr std::uint16_t kTextCreateError = 117;
inline constexpr std::uint16_t kTextOpenError = 118;
inline constexpr std::uint16_t kTextReadError = 119;
inline constexpr std::uint16_t kTextInvalidFile = 120;
inline constexpr std::uint16_t kTextRestoreQuestion = 121;
inline constexpr std::uint16_t kTextConfirm = 122;

// Images of the main window. A mode has three in a row (normal, selected, highlighted), the modes
// follow one another.
inline constexpr std::uint16_t kImageStandardBackground = 149;
inline constexpr std::uint16_t kImageStandardModes = 150;
inline constexpr std::uint16_t kImageDone = 168;
inline constexpr std::uint16_t kImageDoneHighlighted = 169;
inline constexpr std::uint16_t kImageStandardClose = 170;
inline constexpr std::uint16_t kImageStandardCloseHighlighted = 171;
inline constexpr std::uint16_t kImageStandardMinimize = 172;
inline constexpr std::uint16_t kImageStandardMinimizeHighlighted = 173;
inline constexpr std::uint16_t kImageStandardAdvanced = 174;
inline constexpr std::uint16_t kImageMakerLogo = 178;
inline constexpr std::uint16_t kImageMakerLogoHighlighted = 179;
inline constexpr std::uint16_t kImageDavrinBackground = 200;
inline constexpr std::uint16_t kImageDavrinModes = 201;
inline constexpr std::uint16_t kImageDavrinClose = 221;
inline constexpr std::uint16_t kImageDavrinCloseHighlighted = 222;
inline constexpr std::uint16_t kImageDavrinMinimize = 223;
inline constexpr std::uint16_t kImageDavrinMinimizeHighlighted = 224;
inline constexpr std::uint16_t kImageDavrinAdvanced = 225;
inline constexpr std::uint16_t kImageDavrinAdvancedHighlighted = 226;

// Images of the advanced dialog and its controls.
inline constexpr std::uint16_t kImageCloseButton = 138;
inline constexpr std::uint16_t kImageExpandButton = 139;
inline constexpr std::uint16_t kImageCollapseButton = 140;
inline constexpr std::uint16_t kImageGreyDot = 141;
inline constexpr std::uint16_t kImageCyanDot = 142;
inline constexpr std::uint16_t kImageHeader = 143;
inline constexpr std::uint16_t kImageMenuButton = 144;
inline constexpr std::uint16_t kImageDarkDot = 146;
inline constexpr std::uint16_t kImageRedDot = 190;

// Controls of the advanced dialog.
inline constexpr std::uint16_t kKnobBass = 1000;
inline constexpr std::uint16_t kKnobTreble = 1001;
inline constexpr std::uint16_t kKnobLoudness = 1002;
inline constexpr std::uint16_t kKnobWidener = 1003;
inline constexpr std::uint16_t kEqualizerEnable = 1010;
inline constexpr std::uint16_t kMenuButton = 1018;
inline constexpr std::uint16_t kPlot = 1019;
inline constexpr std::uint16_t kExpandButton = 1021;
inline constexpr std::uint16_t kTypeHighShelving = 1023;
inline constexpr std::uint16_t kTypeLowPass = 1024;
inline constexpr std::uint16_t kTypeHighPass = 1025;
inline constexpr std::uint16_t kTypeLowShelving = 1026;
inline constexpr std::uint16_t kTypePeaking = 1027;
inline constexpr std::uint16_t kBandEnable = 1028;
inline constexpr std::uint16_t kFrequencySlider = 1029;
inline constexpr std::uint16_t kBandwidthSlider = 1030;
inline constexpr std::uint16_t kGainSlider = 1031;
inline constexpr std::uint16_t kCloseButton = 2;

// Menu commands.
inline constexpr std::uint16_t kCommandAbout = 16;
inline constexpr std::uint16_t kCommandClose = 32774;
inline constexpr std::uint16_t kCommandLoad = 32775;
inline constexpr std::uint16_t kCommandSave = 32776;
inline constexpr std::uint16_t kCommandRestore = 32778;

}  // namespace resources
