// A laptop of fakes: one speaker whose driver publishes its jack state, and a store to go with it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/fake_machine.h"
#include "tests/support/registry_tree.h"

namespace ui {

inline constexpr std::u16string_view kSpeakerId = u"speaker";
inline constexpr std::u16string_view kSpeakerGuid = u"{11111111-2222-3333-4444-555555555555}";
inline constexpr std::u16string_view kSpeakerKey = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
inline constexpr std::u16string_view kHeadphonesKey = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
inline constexpr std::u16string_view kSubwooferKey = u"{765D256B-701A-44F8-BA7A-4A95AFA7C762}";

class ModeFixture : public testing::Test {
 protected:
  enum class Jack { Speaker, Headphones, Subwoofer };

  void SetUp() override {
    AddEndpoint(kSpeakerId, kSpeakerGuid, u"Realtek High Definition Audio");
    machine_.audioDevices.SetDefault(kSpeakerId);
    Plug(Jack::Speaker);
    for (const std::u16string& event : ModeChangeEvents()) machine_.events.Add(event);
  }

  void AddEndpoint(std::u16string_view id, std::u16string_view guid, std::u16string_view adapter) {
    machine_.audioDevices.Add({.id = std::u16string(id),
                               .guid = std::u16string(guid),
                               .jackSubType = std::u16string(kSpeakerKey),
                               .adapter = std::u16string(adapter)});
  }
  // An endpoint that the product does not support becomes the default.
  void PlayElsewhere() {
    AddEndpoint(u"unsupported", u"{99999999-2222-3333-4444-555555555555}", u"Some USB Audio");
    machine_.audioDevices.SetDefault(u"unsupported");
  }

  void Plug(Jack jack) {
    const auto put = [this](std::u16string_view number, bool value) {
      support::PutDword(
          machine_.registry,
          u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\MMDevices\\Audio\\Render\\" +
              std::u16string(kSpeakerGuid) + u"\\FxProperties",
          u"{1496451E-75E5-484F-9914-A9F246BC960F}," + std::u16string(number), value ? 1 : 0);
    };
    put(u"20", jack == Jack::Subwoofer);
    put(u"6", jack != Jack::Headphones);
    put(u"4", jack == Jack::Headphones);
  }

  void WriteSetting(std::u16string_view pathKey, std::u16string_view setting) {
    support::PutText(machine_.registry, SettingsPath(pathKey), u"ActiveSetting",
                     std::u16string(setting));
  }
  // Empty when the route has no setting.
  std::u16string ReadSetting(std::u16string_view pathKey) {
    const auto value =
        support::GetValue(machine_.registry, SettingsPath(pathKey), u"ActiveSetting");
    return value ? std::u16string(reinterpret_cast<const char16_t*>(value->bytes.data()))
                 : std::u16string();
  }

  std::vector<std::u16string> ModeChangeEvents() const {
    std::vector<std::u16string> events;
    for (const std::u16string_view kind : {u"GFX", u"MFX", u"EFX", u"SFX"}) {
      events.push_back(u"Global\\Velsona" + std::u16string(kind) + u"PropEvent" +
                       std::u16string(kSpeakerGuid));
    }
    events.emplace_back(u"Global\\VelsonaServiceParameterUpdateEvent");
    return events;
  }

  support::FakeMachine machine_;

 private:
  static std::u16string SettingsPath(std::u16string_view pathKey) {
    return u"SOFTWARE\\Norvane\\Velsona\\Parameters\\" + std::u16string(pathKey) + u"\\Settings";
  }
};

}  // namespace ui
