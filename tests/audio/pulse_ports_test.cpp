#include "platform/linux/audio/pulse_ports.h"

#include <gtest/gtest.h>
#include <pulse/def.h>

namespace platform {
namespace {

using Kind = PulsePortKind;
using Plug = PulsePort::Plug;

pa_sink_port_info Port(const char* name, std::uint32_t type, int available) {
  pa_sink_port_info info{};
  info.name = name;
  info.type = type;
  info.available = available;
  return info;
}

// The names are those of PulseAudio's ALSA profiles and of PipeWire's cards.
TEST(PulsePorts, TypeDecidesAndElseTheName) {
  const struct {
    const char* name;
    std::uint32_t type;
    Kind expected;
  } ports[] = {
      {"analog-output-headphones", PA_DEVICE_PORT_TYPE_SPEAKER, Kind::Speaker},
      {"[Out] Speaker", PA_DEVICE_PORT_TYPE_HEADPHONES, Kind::Headphones},
      {"headset-output", PA_DEVICE_PORT_TYPE_HEADSET, Kind::Headphones},
      {"handset", PA_DEVICE_PORT_TYPE_EARPIECE, Kind::Headphones},
      {"analog-output", PA_DEVICE_PORT_TYPE_LINE, Kind::LineOut},
      {"analog-output", PA_DEVICE_PORT_TYPE_SPDIF, Kind::Spdif},
      {"analog-output", PA_DEVICE_PORT_TYPE_HDMI, Kind::Display},
      {"analog-output", PA_DEVICE_PORT_TYPE_TV, Kind::Display},
      {"analog-output-speaker", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Speaker},
      {"[Out] Speaker", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Speaker},
      {"analog-output-headphones", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Headphones},
      {"analog-output-headphones-2", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Headphones},
      {"[Out] Headphones", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Headphones},
      {"[Out] Headset", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Headphones},
      {"analog-output-lineout", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::LineOut},
      {"[Out] Line", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::LineOut},
      {"iec958-stereo-output", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Spdif},
      {"[Out] SPDIF", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Spdif},
      {"hdmi-output-0", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Display},
      {"[Out] HDMI1", PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Display},
      {"analog-output", PA_DEVICE_PORT_TYPE_ANALOG, Kind::Other},
      {nullptr, PA_DEVICE_PORT_TYPE_UNKNOWN, Kind::Other},
  };
  for (const auto& port : ports) {
    EXPECT_EQ(ReadPort(Port(port.name, port.type, PA_PORT_AVAILABLE_UNKNOWN)).kind, port.expected)
        << (port.name == nullptr ? "no name" : port.name) << ", type " << port.type;
  }
}

TEST(PulsePorts, AvailabilityIsThePlug) {
  const auto plug = [](int available) {
    return ReadPort(Port("[Out] Headphones", PA_DEVICE_PORT_TYPE_HEADPHONES, available)).plug;
  };
  EXPECT_EQ(plug(PA_PORT_AVAILABLE_NO), Plug::Pulled);
  EXPECT_EQ(plug(PA_PORT_AVAILABLE_YES), Plug::Plugged);
  EXPECT_EQ(plug(PA_PORT_AVAILABLE_UNKNOWN), PulsePort{}.plug);
}

}  // namespace
}  // namespace platform
