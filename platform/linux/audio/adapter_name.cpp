#include "platform/linux/audio/adapter_name.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace platform {
namespace {

using Rule = std::pair<std::string_view, std::string_view>;

constexpr std::string_view kRealtek = "Realtek High Definition Audio";
constexpr std::string_view kConexant = "SmartAudio HD";
constexpr std::string_view kIntelSst = "Intel SST Audio Device";

// Codec chips by vendor, in ALSA's list of a card's components.
constexpr std::array<Rule, 2> kChips = {{{"HDA:10ec", kRealtek}, {"HDA:14f1", kConexant}}};

// Older kernels name only the mixer, after the chip.
constexpr std::array<Rule, 2> kMixers = {{{"Realtek", kRealtek}, {"Conexant", kConexant}}};

// I2S codecs behind the Intel audio DSP, by the part of the card's name that names the chip.
constexpr std::array<std::string_view, 5> kI2sCodecs = {"rt5640", "rt5645", "rt5648", "rt3270",
                                                        "cx2072x"};

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool IsExternal(const AdapterFacts& facts) {
  return facts.bus == "usb" || facts.bus == "bluetooth" || facts.api.starts_with("bluez") ||
         facts.output == AdapterFacts::Output::Display;
}

}  // namespace

std::string AdapterName(const AdapterFacts& facts) {
  if (IsExternal(facts)) return facts.ownName;
  for (const auto& [chip, name] : kChips) {
    if (Contains(facts.components, chip)) return std::string(name);
  }
  for (const auto& [mixer, name] : kMixers) {
    if (facts.mixerName.starts_with(mixer)) return std::string(name);
  }
  const bool behindDsp = std::ranges::any_of(
      kI2sCodecs, [&](std::string_view codec) { return Contains(facts.cardName, codec); });
  return behindDsp ? std::string(kIntelSst) : facts.ownName;
}

}  // namespace platform
