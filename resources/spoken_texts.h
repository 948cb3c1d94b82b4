// What assistive technology is told of the controls in the dialog templates, beside what is written
// on them.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "resources/resource_ids.h"

namespace resources {

// An empty name stands for the text that is written on the control.
struct SpokenText {
  std::uint16_t control;
  std::u16string_view name;
  std::u16string_view description;
};

inline constexpr auto kSpokenTexts = std::to_array<SpokenText>({
    {kKnobBass, u"", u"Amount of bass in percent"},
    {kKnobTreble, u"", u"Amount of treble in percent"},
    {kKnobWidener, u"", u"Width of the stereo image in percent"},
    {kKnobLoudness, u"", u"Amount of loudness in percent"},
    {kExpandButton, u"Equalizer", u"Shows or hides the equalizer"},
    {kPlot, u"Frequency response", u"Ten bands from 20 Hz to 20 kHz"},
    {kGainSlider, u"", u"Gain of the selected band in dB"},
    {kFrequencySlider, u"", u"Frequency of the selected band in Hz"},
    {kBandwidthSlider, u"", u"Q of the selected band; the lower, the wider"},
    {kTypePeaking, u"", u"Filter type of the selected band"},
    {kTypeHighShelving, u"", u"Filter type of the selected band"},
    {kTypeLowShelving, u"", u"Filter type of the selected band"},
    {kTypeHighPass, u"", u"Filter type of the selected band"},
    {kTypeLowPass, u"", u"Filter type of the selected band"},
    {kBandEnable, u"", u"Turns the selected band on"},
    {kMenuButton, u"", u"Loads, saves and restores settings"},
    {kCloseButton, u"Close", u""},
});

}  // namespace resources
