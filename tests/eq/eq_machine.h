// A laptop of fakes for the equalizer: a speaker that is the default, a second active endpoint, an
// unplugged one, an engine that listens on all three, and a store with a set for each route.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dsp/eq_model.h"
#include "store/parameter_store.h"
#include "store/registry_layout.h"
#include "tests/support/fake_machine.h"

namespace ui {

inline constexpr std::u16string_view kSpeakerPathKey = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
inline constexpr std::u16string_view kHeadphonesPathKey = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";

using Parameters = std::map<int, float>;

class EqMachine : public support::FakeMachine {
 public:
  EqMachine() {
    AddEndpoint(u"speaker", platform::kDeviceStateActive);
    AddEndpoint(u"monitor", platform::kDeviceStateActive);
    AddEndpoint(u"absent", platform::kDeviceStateUnplugged);
    audioDevices.SetDefault(u"speaker");
    SetRoute(1);
  }

  // The route of the driverless machine is the stored hint's.
  void SetRoute(std::uint32_t route) {
    Key(std::u16string(store::kProductKey))
        ->SetValue(store::kHardwareOutputPathValue, platform::RegistryType::Dword,
                   std::as_bytes(std::span(&route, 1)));
  }

  void SetActive(std::u16string_view pathKey, const std::u16string& setting) {
    const std::u16string text = setting + u'\0';
    Key(store::SettingsKeyPath(pathKey))
        ->SetValue(store::kActiveSettingValue, platform::RegistryType::String,
                   std::as_bytes(std::span(text)));
  }

  void Write(store::Tree tree, std::u16string_view pathKey, std::u16string_view setting,
             const Parameters& parameters) {
    const auto key = Key(store::SettingKeyPath(tree, pathKey, setting));
    for (const auto& [number, value] : parameters) {
      key->SetValue(store::ParameterName(static_cast<std::size_t>(number)),
                    platform::RegistryType::Binary, std::as_bytes(std::span(&value, 1)));
    }
  }

  std::optional<float> Read(std::u16string_view pathKey, std::u16string_view setting, int number) {
    const auto key = registry.OpenKey(
        platform::RegistryRoot::LocalMachine,
        store::SettingKeyPath(store::Tree::Parameters, pathKey, setting), store::kReadAccess);
    float value = 0.0F;
    std::uint32_t size = sizeof(value);
    if (!key || key->QueryValue(store::ParameterName(static_cast<std::size_t>(number)), nullptr,
                                &value, &size) != platform::RegistryStatus::Success) {
      return std::nullopt;
    }
    return value;
  }

  // Every parameter of a set that is in the store.
  Parameters ReadAll(std::u16string_view pathKey, std::u16string_view setting) {
    Parameters found;
    for (int number = 1; number <= static_cast<int>(store::kParameterCount); ++number) {
      if (const auto value = Read(pathKey, setting, number)) found[number] = *value;
    }
    return found;
  }

  // The initial set as the factory would have stored it.
  static Parameters InitialSet() {
    Parameters set;
    const auto values = dsp::InitialParameters();
    for (std::size_t i = 0; i < values.size(); ++i) set[static_cast<int>(i) + 1] = values[i];
    return set;
  }

 private:
  std::unique_ptr<platform::RegistryKey> Key(const std::u16string& path) {
    return registry.CreateKey(platform::RegistryRoot::LocalMachine, path, store::kWriteAccess);
  }

  void AddEndpoint(const std::u16string& name, std::uint32_t state) {
    audioDevices.Add({.id = name,
                      .state = state,
                      .guid = name,
                      .jackSubType = std::u16string(kSpeakerPathKey),
                      .adapter = u"Realtek High Definition Audio"});
    for (const std::u16string_view kind : {u"GFX", u"MFX", u"EFX", u"SFX"}) {
      std::u16string event = u"Global\\Velsona";
      event.append(kind).append(u"PropEvent").append(name);
      events.Add(event);
    }
  }
};

}  // namespace ui
