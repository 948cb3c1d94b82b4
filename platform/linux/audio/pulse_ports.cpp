#include "platform/linux/audio/pulse_ports.h"

#include <pulse/def.h>

#include <string_view>

namespace platform {
namespace {

// Servers that do not tell the type of a port name it after what it is.
PulsePortKind KindByName(std::string_view name) {
  const auto contains = [name](std::string_view part) {
    return name.find(part) != std::string_view::npos;
  };
  if (contains("hdmi") || contains("HDMI")) return PulsePortKind::Display;
  if (contains("iec958") || contains("SPDIF")) return PulsePortKind::Spdif;
  if (contains("headphone") || contains("Headphone") || contains("Headset")) {
    return PulsePortKind::Headphones;
  }
  if (contains("lineout") || contains("Line")) return PulsePortKind::LineOut;
  if (contains("speaker") || contains("Speaker")) return PulsePortKind::Speaker;
  return PulsePortKind::Other;
}

PulsePortKind KindOf(const pa_sink_port_info& port) {
  switch (port.type) {
    case PA_DEVICE_PORT_TYPE_SPEAKER:
      return PulsePortKind::Speaker;
    case PA_DEVICE_PORT_TYPE_HEADPHONES:
    case PA_DEVICE_PORT_TYPE_HEADSET:
    case PA_DEVICE_PORT_TYPE_EARPIECE:
      return PulsePortKind::Headphones;
    case PA_DEVICE_PORT_TYPE_LINE:
      return PulsePortKind::LineOut;
    case PA_DEVICE_PORT_TYPE_SPDIF:
      return PulsePortKind::Spdif;
    case PA_DEVICE_PORT_TYPE_HDMI:
    case PA_DEVICE_PORT_TYPE_TV:
      return PulsePortKind::Display;
    default:
      return port.name == nullptr ? PulsePortKind::Other : KindByName(port.name);
  }
}

}  // namespace

PulsePort ReadPort(const pa_sink_port_info& info) {
  PulsePort port;
  port.kind = KindOf(info);
  if (info.available == PA_PORT_AVAILABLE_NO) port.plug = PulsePort::Plug::Pulled;
  if (info.available == PA_PORT_AVAILABLE_YES) port.plug = PulsePort::Plug::Plugged;
  return port;
}

}  // namespace platform
