// What the active port of a sink tells of where its sound goes.
#pragma once

#include <pulse/introspect.h>

#include "platform/linux/audio/pulse_state.h"

namespace platform {

// The port's type decides; a server that gives none names the port after what it is.
PulsePort ReadPort(const pa_sink_port_info& info);

}  // namespace platform
