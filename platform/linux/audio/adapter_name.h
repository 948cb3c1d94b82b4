// The name of the audio adapter that carries a sink.
#pragma once

#include <string>

namespace platform {

// What the audio server tells about a sink and its card; a text that it does not tell is empty.
struct AdapterFacts {
  std::string bus;         // "pci", "usb", "bluetooth"
  std::string api;         // "alsa", "bluez"
  std::string components;  // ALSA's list of chips: "HDA:10ec0257,17aa3138,00100001 HDA:…"
  std::string mixerName;   // "Realtek ALC257"
  std::string cardName;    // "HDA Intel PCH", "bytcr-rt5640"
  enum class Output { Analog, Spdif, Display } output = Output::Analog;
  std::string ownName;  // what a person calls the adapter
};

// Cards with a codec that the product knows carry the name that their driver gives them on the
// product's home system; HDMI, USB, Bluetooth and everything else keep their own.
std::string AdapterName(const AdapterFacts& facts);

}  // namespace platform
