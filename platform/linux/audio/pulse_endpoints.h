// How the sinks of an audio server look as render endpoints.
#pragma once

#include <string>
#include <string_view>

#include "platform/endpoint_list.h"
#include "platform/linux/audio/pulse_state.h"

namespace platform {

// The GUID string of the sink with this name; the same on every start.
std::u16string SinkGuid(std::string_view sinkName);

ListedEndpoint SinkToEndpoint(const PulseSink& sink);
EndpointList SinksToEndpoints(const PulseState& state);

}  // namespace platform
