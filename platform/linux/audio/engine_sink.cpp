#include "platform/linux/audio/engine_sink.h"

#include <vector>

namespace platform {

void SeeThroughEngine(PulseState& state) {
  std::erase_if(state.sinks, [&state](const PulseSink& sink) {
    const auto playsTo = sink.properties.find(kEngineSinkProperty);
    if (playsTo == sink.properties.end()) return false;
    if (state.defaultSink == sink.name) state.defaultSink = playsTo->second;
    return true;
  });
}

}  // namespace platform
