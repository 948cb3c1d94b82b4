#pragma once

#include <cstdint>
#include <string>

// Conversions between stored equalizer values, the integers that sliders and knobs report, and the
// texts beside the sliders. Arithmetic is single precision and truncates toward zero except where a
// function says that it rounds. Every function accepts every argument: values no control can show
// come out as the nearest 32-bit integer, a NaN as 0.
namespace dsp {

// Frequency slider: whole Hz, 20 to 20000.
float FrequencyFromSlider(std::int32_t slider);
std::int32_t FrequencyToSlider(float frequency);
std::u16string FrequencyText(std::int32_t slider);  // "1000 Hz"

// Gain slider: tenths of a dB, -120 to +120. Stored gains are linear factors.
float GainFromSlider(std::int32_t slider);
float GainFromDecibels(float decibels);
float DecibelsFromSlider(std::int32_t slider);
std::int32_t DecibelsToSlider(float decibels);  // rounds to the nearest tenth
// Truncation may show a stored gain one step nearer to 0 dB.
std::int32_t GainToSlider(float gain);
std::u16string GainText(std::int32_t slider);  // "+0.1 dB", "0.0 dB", "-3.0 dB"

// Bandwidth slider: 1 (narrowest, q 5.0) to 50 (widest, q 0.1).
float QFromSlider(std::int32_t slider);
std::int32_t QToSlider(float q);  // rounds q to the nearest tenth
// The bandwidth in Hz that both sliders stand for.
std::u16string BandwidthText(std::int32_t frequencySlider, std::int32_t bandwidthSlider);

// Knobs: 0 to 100 for amounts of 0.00 to 1.00.
float AmountFromKnob(std::int32_t knob);
// Truncation may show a stored amount one step lower.
std::int32_t AmountToKnob(float amount);
std::u16string AmountText(std::int32_t knob);  // "50%"

}  // namespace dsp
