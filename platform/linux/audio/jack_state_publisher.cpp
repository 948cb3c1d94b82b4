#include "platform/linux/audio/jack_state_publisher.h"

#include <algorithm>

#include "platform/linux/audio/pulse_endpoints.h"

namespace platform {
namespace {

std::vector<JackValue> Values(std::uint32_t speaker, std::uint32_t subwoofer,
                              std::uint32_t headphone) {
  return {{JackProperty::Speaker, speaker},
          {JackProperty::Subwoofer, subwoofer},
          {JackProperty::Headphone, headphone}};
}

}  // namespace

std::optional<std::vector<JackValue>> JackValuesOf(const PulseSink& sink) {
  if (!sink.activePort) return std::nullopt;
  switch (sink.activePort->kind) {
    case PulsePortKind::Speaker:
      return Values(1, sink.subwoofer == PulseSink::Subwoofer::Present ? 1 : 0, 0);
    case PulsePortKind::Headphones:
      return Values(0, 0, 1);
    case PulsePortKind::LineOut:
      return Values(0, 0, 0);
    case PulsePortKind::Spdif:
    case PulsePortKind::Display:
    case PulsePortKind::Other:
      break;
  }
  return std::nullopt;
}

void JackStatePublisher::Publish(const PulseState& state) {
  const std::lock_guard lock(mutex_);
  for (const PulseSink& sink : state.sinks) PublishSink(sink);
  TouchFormerDefault(state.defaultSink);
}

void JackStatePublisher::PublishSink(const PulseSink& sink) {
  const std::optional<std::vector<JackValue>> values = JackValuesOf(sink);
  if (!values) return;
  std::vector<JackValue>& published = published_[sink.name];
  if (published == *values) return;
  const std::u16string guid = SinkGuid(sink.name);
  const bool stored = std::ranges::all_of(*values, [&](const JackValue& value) {
    return ReadJackValue(registry_, guid, value.property) == value.value;
  });
  if (stored || WriteJackValues(registry_, guid, *values)) published = *values;
}

void JackStatePublisher::TouchFormerDefault(const std::string& defaultSink) {
  if (defaultSink.empty() || defaultSink == defaultSink_) return;
  const std::u16string former = SinkGuid(defaultSink_);
  const std::optional<std::uint32_t> value =
      ReadJackValue(registry_, former, JackProperty::Speaker);
  if (value) {
    const JackValue same{JackProperty::Speaker, *value};
    WriteJackValues(registry_, former, {&same, 1});
  }
  defaultSink_ = defaultSink;
}

}  // namespace platform
