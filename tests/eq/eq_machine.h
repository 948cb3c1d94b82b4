// A laptop of fakes for the windows: a speaker that is the default, a second active endpoint, an
// unplugged one, an engine that listens on all three, and a store with a set for each route.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
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
inline constexpr std::u16string_view kSubwooferPathKey = u"{765D256B-701A-44F8-BA7A-4A95AFA7C762}";

using Parameters = std::map<int, float>;

class EqMachine : public support::FakeMachine {
 public:
  EqMachine() {
    AddEndpoint(u"speaker", platform::kDeviceStateActive);
    AddEndpoint(u"monitor", platform::kDeviceStateActive);
    AddEndpoint(u"absent", platform::kDeviceStateUnplugged);
    audioDevices.SetDefault(u"speaker");
    events.Add(u"Global\\VelsonaServiceParameterUpdateEvent");
    SetRoute(1);
  }

  void AddEndpoint(const std::u16string& name, std::uint32_t state,
                   const std::u16string& adapter = u"Realtek High Definition Audio") {
    audioDevices.Add({.id = name,
                      .state = state,
                      .guid = name,
                      .jackSubType = std::u16string(kSpeakerPathKey),
                      .adapter = adapter});
    for (const std::u16string kind : {u"GFX", u"MFX", u"EFX", u"SFX"}) {
      events.Add(u"Global\\Velsona" + kind + u"PropEvent" + name);
    }
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
    for (const auto& [number, value] : parameters) {
      support::PutFloat(registry, store::SettingKeyPath(tree, pathKey, setting),
                        store::ParameterName(static_cast<std::size_t>(number)), value);
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
    for (int number = 1; number <= 1114; ++number) {
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
};

}  // namespace ui
