// A laptop of fakes for the equalizer: a speaker that is the default, a second active endpoint, an
// unplugged one, an engine that listens on all three, and a store with a set for each route.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "dsp/eq_model.h"
#include "store/parameter_store.h"
#include "store/registry_layout.h"
#include "tests/support/fake_machine.h"
#include "tests/support/registry_tree.h"

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
    support::PutDword(registry, store::kProductKey, store::kHardwareOutputPathValue, route);
  }

  void SetActive(std::u16string_view pathKey, const std::u16string& setting) {
    support::PutText(registry, store::SettingsKeyPath(pathKey), store::kActiveSettingValue,
                     setting);
  }

  void Write(store::Tree tree, std::u16string_view pathKey, std::u16string_view setting,
             const Parameters& parameters) {
    const auto key =
        registry.CreateKey(platform::RegistryRoot::LocalMachine,
                           store::SettingKeyPath(tree, pathKey, setting), store::kWriteAccess);
    for (const auto& [number, value] : parameters) {
      key->SetValue(store::ParameterName(static_cast<std::size_t>(number)),
                    platform::RegistryType::Binary, std::as_bytes(std::span(&value, 1)));
    }
  }

  std::optional<float> Read(std::u16string_view pathKey, std::u16string_view setting, int number) {
    return support::GetFloat(registry,
                             store::SettingKeyPath(store::Tree::Parameters, pathKey, setting),
                             store::ParameterName(static_cast<std::size_t>(number)));
  }

  // Every parameter of a set that is in the store.
  Parameters ReadAll(std::u16string_view pathKey, std::u16string_view setting) {
    Parameters found;
    const auto key = support::OpenToRead(
        registry, store::SettingKeyPath(store::Tree::Parameters, pathKey, setting));
    for (int number = 1; key && number <= 1114; ++number) {
      float value = 0.0F;
      std::uint32_t size = sizeof(value);
      const auto name = store::ParameterName(static_cast<std::size_t>(number));
      const auto status = key->QueryValue(name, nullptr, &value, &size);
      if (status == platform::RegistryStatus::Success) found[number] = value;
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
