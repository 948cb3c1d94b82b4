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
  bool isNews = state.defaultSink != defaultSink_;
  defaultSink_ = state.defaultSink;
  for (const PulseSink& sink : state.sinks) {
    const bool changed = PublishSink(sink);
    if (changed && sink.name == defaultSink_) isNews = true;
  }
  if (isNews) informed_.clear();
  if (!defaultSink_.empty()) Inform(std::this_thread::get_id());
}

bool JackStatePublisher::PublishSink(const PulseSink& sink) {
  const std::optional<std::vector<JackValue>> values = JackValuesOf(sink);
  if (!values) return false;
  std::vector<JackValue>& published = published_[sink.name];
  if (published == *values) return false;
  const std::u16string guid = SinkGuid(sink.name);
  const bool stored = std::ranges::all_of(*values, [&](const JackValue& value) {
    return ReadJackValue(registry_, guid, value.property) == value.value;
  });
  if (!stored && !WriteJackValues(registry_, guid, *values)) return false;
  published = *values;
  return true;
}

void JackStatePublisher::Inform(std::thread::id caller) {
  if (informed_.contains(caller)) return;
  if (!defaults_.contains(defaultSink_)) {
    if (!HasKey(defaultSink_)) return;
    defaults_.insert(defaultSink_);
  }
  // Who watches the only default there ever was has seen its values change.
  if (defaults_.size() == 1 || WakeWatchers()) informed_.insert(caller);
}

bool JackStatePublisher::HasKey(const std::string& sink) {
  const std::u16string guid = SinkGuid(sink);
  return registry_.OpenKey(RegistryRoot::LocalMachine, JackKeyPath(guid), kRegistryQueryValue) !=
             nullptr ||
         WriteJackValues(registry_, guid, {});
}

bool JackStatePublisher::WakeWatchers() {
  const std::unique_ptr<RegistryWriteScope> scope = registry_.BeginWrite();
  const bool isWritten = std::ranges::all_of(defaults_, [this](const std::string& sink) {
    const std::unique_ptr<RegistryKey> key = registry_.OpenKey(
        RegistryRoot::LocalMachine, JackKeyPath(SinkGuid(sink)), kRegistrySetValue);
    // The key's default value, which says nothing about jacks. A key that is gone has no watchers.
    return key == nullptr || key->SetValue({}, RegistryType::String, {}) == RegistryStatus::Success;
  });
  return isWritten && scope->Commit() == RegistryStatus::Success;
}

}  // namespace platform
