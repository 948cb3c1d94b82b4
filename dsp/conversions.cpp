#include "dsp/conversions.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "dsp/rounded_math.h"
#include "dsp/truncation.h"

namespace dsp {
namespace {

constexpr std::int64_t kBandwidthTurn = 51;  // slider 50 is q 0.1, slider 1 is q 5.0

std::u16string FromAscii(std::string_view text) {
  return {text.begin(), text.end()};
}

std::u16string HertzText(std::int32_t hertz) {
  return FromAscii(std::to_string(hertz)) + u" Hz";
}

}  // namespace

float FrequencyFromSlider(std::int32_t slider) {
  return static_cast<float>(slider);
}

std::int32_t FrequencyToSlider(float frequency) {
  return TruncateToInt32(frequency);
}

std::u16string FrequencyText(std::int32_t slider) {
  return HertzText(slider);
}

float GainFromSlider(std::int32_t slider) {
  return GainFromDecibels(DecibelsFromSlider(slider));
}

float GainFromDecibels(float decibels) {
  return RoundedPowerOf10(decibels / 20.0F);
}

float DecibelsFromSlider(std::int32_t slider) {
  return static_cast<float>(slider) / 10.0F;
}

std::int32_t DecibelsToSlider(float decibels) {
  return TruncateToInt32(std::floor(decibels * 10.0F + 0.5F));
}

std::int32_t GainToSlider(float gain) {
  return TruncateToInt32(RoundedLog10(gain) * 200.0F);
}

std::u16string GainText(std::int32_t slider) {
  const float decibels = DecibelsFromSlider(slider);
  // Not printf: the toolkit sets the user's locale, which would turn the point into a comma.
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                 static_cast<double>(decibels), std::chars_format::fixed, 1);
  const std::u16string_view sign = decibels > 0.0F ? u"+" : u"";
  return std::u16string(sign) + FromAscii({digits.data(), end.ptr}) + u" dB";
}

float QFromSlider(std::int32_t slider) {
  return static_cast<float>(kBandwidthTurn - slider) / 10.0F;
}

std::int32_t QToSlider(float q) {
  const std::int64_t tenths = TruncateToInt32(std::floor(q * 10.0F + 0.5F));
  return TruncateToInt32(static_cast<double>(kBandwidthTurn - tenths));
}

std::u16string BandwidthText(std::int32_t frequencySlider, std::int32_t bandwidthSlider) {
  return HertzText(
      TruncateToInt32(static_cast<float>(frequencySlider) / QFromSlider(bandwidthSlider)));
}

float AmountFromKnob(std::int32_t knob) {
  return static_cast<float>(knob) / 100.0F;
}

std::int32_t AmountToKnob(float amount) {
  return TruncateToInt32(amount * 100.0F);
}

std::u16string AmountText(std::int32_t knob) {
  return FromAscii(std::to_string(knob)) + u"%";
}

}  // namespace dsp
