// The main window's laptop: the equalizer's machine, its modes and the events that tell of them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "tests/eq/eq_machine.h"

namespace ui {

class ModeFixture : public testing::Test {
 protected:
  // An endpoint that the product does not support becomes the default.
  void PlayElsewhere() {
    machine_.AddEndpoint(u"unsupported", platform::kDeviceStateActive, u"Some USB Audio");
    machine_.audioDevices.SetDefault(u"unsupported");
  }

  void WriteSetting(std::u16string_view pathKey, const std::u16string& setting) {
    machine_.SetActive(pathKey, setting);
  }
  // Empty when the route has no setting.
  std::u16string ReadSetting(std::u16string_view pathKey) {
    const auto value = support::GetValue(machine_.registry, store::SettingsKeyPath(pathKey),
                                         store::kActiveSettingValue);
    return value ? std::u16string(reinterpret_cast<const char16_t*>(value->bytes.data()))
                 : std::u16string();
  }

  static std::vector<std::u16string> ModeChangeEvents() {
    std::vector<std::u16string> events;
    for (const std::u16string endpoint : {u"speaker", u"monitor"}) {
      for (const std::u16string kind : {u"GFX", u"MFX", u"EFX", u"SFX"}) {
        events.push_back(u"Global\\Velsona" + kind + u"PropEvent" + endpoint);
      }
    }
    events.emplace_back(u"Global\\VelsonaServiceParameterUpdateEvent");
    return events;
  }

  EqMachine machine_;
};

}  // namespace ui
