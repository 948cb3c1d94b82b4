#include "engine/active_set.h"

#include <array>
#include <bit>
#include <cstdint>
#include <string_view>
#include <utility>

#include "dsp/eq_model.h"
#include "endpoints/route_detection.h"
#include "platform/jack_state.h"
#include "store/active_mode.h"
#include "store/path_key.h"
#include "store/registry_layout.h"

namespace engine {
namespace {

using platform::Registry;
using platform::RegistryKey;
using platform::RegistryStatus;

std::unique_ptr<RegistryKey> OpenKey(Registry& registry, std::u16string_view path) {
  return registry.OpenKey(platform::RegistryRoot::LocalMachine, path, store::kReadAccess);
}

std::u16string CurrentPathKey(Registry& registry, const endpoints::DefaultEndpointInfo& endpoint) {
  return store::ResolvePathKey(endpoint.jackSubType,
                               endpoints::DetectOutputPath(registry, endpoint.endpointGuid));
}

std::u16string SettingOf(RegistryKey& settingsKey) {
  return store::QueryActiveSetting(settingsKey).value_or(std::u16string(store::kDefaultSetting));
}

std::unique_ptr<RegistryKey> OpenSet(Registry& registry, std::u16string_view pathKey,
                                     std::u16string_view setting) {
  return OpenKey(registry, store::SettingKeyPath(store::Tree::Parameters, pathKey, setting));
}

// A value of another length than a float's counts as missing.
void ReadParameter(RegistryKey& key, int number, float& value) {
  std::array<std::uint8_t, sizeof(float)> bytes{};
  auto size = static_cast<std::uint32_t>(bytes.size());
  if (key.QueryValue(store::ParameterName(static_cast<std::size_t>(number)), nullptr, bytes.data(),
                     &size) == RegistryStatus::Success &&
      size == bytes.size()) {
    value = std::bit_cast<float>(bytes);
  }
}

// Those that make the sound; the bands are read from the place that the panel shows.
SoundSettings ReadSound(RegistryKey& key) {
  constexpr std::array kNumbers = {
      dsp::kWidenerSwitch,  dsp::kWidenerAmount, dsp::kEqualizerEnable, dsp::kLoudnessSwitch,
      dsp::kLoudnessAmount, dsp::kBassAmount,    dsp::kTrebleAmount};
  constexpr int kBandParameters = dsp::kBandCount * dsp::kFieldsPerBand;
  auto values = dsp::InitialParameters();
  const auto read = [&](int number) {
    ReadParameter(key, number, values[dsp::ParameterIndex(number)]);
  };
  for (const int number : kNumbers) read(number);
  for (int i = 0; i < kBandParameters; ++i) read(dsp::kFirstBandParameter + i);
  return DecodeSettings(values);
}

}  // namespace

std::optional<ActiveSet> ReadActiveSet(Registry& registry,
                                       const endpoints::DefaultEndpointInfo& endpoint) {
  const auto scope = registry.BeginRead();
  ActiveSet set;
  set.pathKey = CurrentPathKey(registry, endpoint);
  const auto settingsKey = OpenKey(registry, store::SettingsKeyPath(set.pathKey));
  if (!settingsKey) return std::nullopt;
  set.setting = SettingOf(*settingsKey);
  const auto setKey = OpenSet(registry, set.pathKey, set.setting);
  if (!setKey) return std::nullopt;
  set.sound = ReadSound(*setKey);
  return set;
}

ActiveSetWatch::ActiveSetWatch(Registry& registry, std::function<void()> onChange)
    : registry_(registry),
      thread_([this, onChange = std::move(onChange)](const std::stop_token& stop) {
        while (true) {
          wake_.Wait();
          if (stop.stop_requested()) return;
          onChange();
        }
      }) {}

ActiveSetWatch::~ActiveSetWatch() {
  keys_.clear();
  thread_.request_stop();
  wake_.Set();
}

// Each key is watched before it is read: what is written meanwhile is told of, or read.
void ActiveSetWatch::Follow(const endpoints::DefaultEndpointInfo& endpoint) {
  keys_.clear();
  Watch(OpenKey(registry_, store::kProductKey));
  Watch(OpenKey(registry_, platform::JackKeyPath(endpoint.endpointGuid)));
  Watch(endpoints::FindSstHeadsetKey(registry_));
  const std::u16string pathKey = CurrentPathKey(registry_, endpoint);
  RegistryKey* settingsKey = Watch(OpenKey(registry_, store::SettingsKeyPath(pathKey)));
  if (settingsKey != nullptr) Watch(OpenSet(registry_, pathKey, SettingOf(*settingsKey)));
}

RegistryKey* ActiveSetWatch::Watch(std::unique_ptr<RegistryKey> key) {
  if (!key) return nullptr;
  static_cast<void>(key->NotifyChange(wake_));
  keys_.push_back(std::move(key));
  return keys_.back().get();
}

}  // namespace engine
