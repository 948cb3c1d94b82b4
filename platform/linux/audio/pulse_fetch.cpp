#include "platform/linux/audio/pulse_fetch.h"

#include <utility>

#include "platform/linux/audio/engine_sink.h"
#include "platform/linux/audio/pulse_ports.h"

namespace platform {
namespace {

// What the endpoints are made from.
constexpr std::array<const char*, 8> kProperties = {
    kEngineSinkProperty,        PA_PROP_DEVICE_BUS, PA_PROP_DEVICE_API, PA_PROP_DEVICE_PROFILE_NAME,
    PA_PROP_DEVICE_DESCRIPTION, "alsa.components",  "alsa.mixer_name",  "alsa.card_name"};

std::string TextOf(const char* text) {
  return text == nullptr ? std::string() : text;
}

std::map<std::string, std::string> ReadProperties(const pa_proplist* list) {
  std::map<std::string, std::string> properties;
  for (const char* key : kProperties) {
    const char* text = pa_proplist_gets(list, key);
    if (text != nullptr) properties.emplace(key, text);
  }
  return properties;
}

PulseSink ReadSink(const pa_sink_info& info) {
  PulseSink sink;
  sink.name = TextOf(info.name);
  sink.description = TextOf(info.description);
  sink.monitor = TextOf(info.monitor_source_name);
  sink.properties = ReadProperties(info.proplist);
  if (info.active_port != nullptr) sink.activePort = ReadPort(*info.active_port);
  if (info.state == PA_SINK_RUNNING) sink.activity = PulseSink::Activity::Running;
  if (pa_channel_map_has_position(&info.channel_map, PA_CHANNEL_POSITION_LFE) != 0) {
    sink.subwoofer = PulseSink::Subwoofer::Present;
  }
  return sink;
}

}  // namespace

PulseFetch::PulseFetch(pa_context* context, Done done)
    : done_(std::move(done)),
      operations_{pa_context_get_server_info(context, OnServer, this),
                  pa_context_get_sink_info_list(context, OnSink, this),
                  pa_context_get_card_info_list(context, OnCard, this)} {}

PulseFetch::~PulseFetch() {
  for (pa_operation* operation : operations_) {
    if (operation == nullptr) continue;
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
  }
}

void PulseFetch::OnServer(pa_context* /*context*/, const pa_server_info* info, void* fetch) {
  auto& self = *static_cast<PulseFetch*>(fetch);
  if (info == nullptr) {
    self.outcome_ = Outcome::Refused;
  } else {
    self.state_.defaultSink = TextOf(info->default_sink_name);
  }
  self.Answered();
}

void PulseFetch::OnSink(pa_context* /*context*/, const pa_sink_info* info, int end, void* fetch) {
  auto& self = *static_cast<PulseFetch*>(fetch);
  if (end != 0) {
    if (end < 0) self.outcome_ = Outcome::Refused;
    self.Answered();
    return;
  }
  self.state_.sinks.push_back(ReadSink(*info));
  self.cardOfSink_.push_back(info->card);
}

void PulseFetch::OnCard(pa_context* /*context*/, const pa_card_info* info, int end, void* fetch) {
  auto& self = *static_cast<PulseFetch*>(fetch);
  // Sinks without their cards still make endpoints.
  if (end != 0) {
    self.Answered();
    return;
  }
  self.cards_.emplace(info->index, ReadProperties(info->proplist));
}

void PulseFetch::Answered() {
  if (--waiting_ > 0) return;
  JoinCards();
  SeeThroughEngine(state_);
  if (outcome_ == Outcome::Refused) {
    done_(std::nullopt);
  } else {
    done_(std::move(state_));
  }
}

void PulseFetch::JoinCards() {
  for (std::size_t i = 0; i < state_.sinks.size(); ++i) {
    const auto card = cards_.find(cardOfSink_[i]);
    if (card == cards_.end()) continue;
    PulseSink& sink = state_.sinks[i];
    const auto description = card->second.find(PA_PROP_DEVICE_DESCRIPTION);
    if (description != card->second.end()) sink.cardDescription = description->second;
    sink.properties.insert(card->second.begin(), card->second.end());
  }
}

}  // namespace platform
