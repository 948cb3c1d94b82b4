#include "platform/linux/audio/pulse_endpoints.h"

#include "platform/guid.h"
#include "platform/linux/audio/adapter_name.h"
#include "platform/linux/audio/uuid5.h"
#include "platform/text.h"

namespace platform {
namespace {

constexpr Guid kSinkNames{
    0x9C1B7A52, 0x4E3D, 0x4F6A, {0xB8, 0x0D, 0x21, 0x5E, 0x93, 0xA7, 0x4C, 0x10}};

// Kernel-streaming node types in registry form.
constexpr std::u16string_view kSpeakerNode = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
constexpr std::u16string_view kSpdifNode = u"{DFF21FE5-F70F-11D0-B917-00A0C9223196}";
constexpr std::u16string_view kHdmiNode = u"{D1B9CC2A-F519-417F-91C9-55FA65481001}";

std::u16string IdOf(std::u16string_view guid) {
  std::u16string id = u"{0.0.0.00000000}.";
  return id.append(guid);
}

std::string Property(const PulseSink& sink, const char* key) {
  const auto found = sink.properties.find(key);
  return found == sink.properties.end() ? std::string() : found->second;
}

// A sink without ports tells by its profile what it drives.
AdapterFacts::Output OutputOf(const PulseSink& sink) {
  const PulsePortKind port = sink.activePort ? sink.activePort->kind : PulsePortKind::Other;
  const std::string profile = Property(sink, "device.profile.name");
  if (port == PulsePortKind::Display || profile.starts_with("hdmi")) {
    return AdapterFacts::Output::Display;
  }
  if (port == PulsePortKind::Spdif || profile.starts_with("iec958")) {
    return AdapterFacts::Output::Spdif;
  }
  return AdapterFacts::Output::Analog;
}

std::u16string_view NodeOf(AdapterFacts::Output output) {
  switch (output) {
    case AdapterFacts::Output::Display:
      return kHdmiNode;
    case AdapterFacts::Output::Spdif:
      return kSpdifNode;
    case AdapterFacts::Output::Analog:
      break;
  }
  return kSpeakerNode;
}

const std::string& OwnName(const PulseSink& sink) {
  if (!sink.cardDescription.empty()) return sink.cardDescription;
  return sink.description.empty() ? sink.name : sink.description;
}

}  // namespace

std::u16string SinkGuid(std::string_view sinkName) {
  return GuidToString(NameToGuid(kSinkNames, sinkName));
}

ListedEndpoint SinkToEndpoint(const PulseSink& sink) {
  const AdapterFacts facts{Property(sink, "device.bus"),
                           Property(sink, "device.api"),
                           Property(sink, "alsa.components"),
                           Property(sink, "alsa.mixer_name"),
                           Property(sink, "alsa.card_name"),
                           OutputOf(sink),
                           OwnName(sink)};
  ListedEndpoint endpoint;
  endpoint.guid = SinkGuid(sink.name);
  endpoint.id = IdOf(endpoint.guid);
  endpoint.jackSubType = NodeOf(facts.output);
  endpoint.adapter = FromUtf8(AdapterName(facts));
  const bool pulled = sink.activePort && sink.activePort->plug == PulsePort::Plug::Pulled;
  endpoint.state = pulled ? kDeviceStateUnplugged : kDeviceStateActive;
  endpoint.level = sink.activity == PulseSink::Activity::Running ? 1.0F : 0.0F;
  return endpoint;
}

EndpointList SinksToEndpoints(const PulseState& state) {
  EndpointList list;
  for (const PulseSink& sink : state.sinks) list.endpoints.push_back(SinkToEndpoint(sink));
  if (!state.defaultSink.empty()) list.defaultId = IdOf(SinkGuid(state.defaultSink));
  return list;
}

}  // namespace platform
