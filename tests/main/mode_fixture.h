// A laptop of fakes: one speaker whose driver publishes its jack state, and a store to go with it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/fake_machine.h"

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
    machine_.audioDevices.Add({.id = std::u16string(kSpeakerId),
                               .guid = std::u16string(kSpeakerGuid),
                               .jackSubType = std::u16string(kSpeakerKey),
                               .adapter = u"Realtek High Definition Audio"});
    machine_.audioDevices.SetDefault(kSpeakerId);
    Plug(Jack::Speaker);
    for (const std::u16string_view kind : {u"GFX", u"MFX", u"EFX", u"SFX"}) {
      machine_.events.Add(EndpointEvent(kind));
    }
    machine_.events.Add(kServiceEvent);
  }

  void Plug(Jack jack) {
    const auto key = Create(
        u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\MMDevices\\Audio\\"
        u"Render\\" +
        std::u16string(kSpeakerGuid) + u"\\FxProperties");
    SetJackValue(*key, u"20", jack == Jack::Subwoofer ? 1 : 0);
    SetJackValue(*key, u"6", jack == Jack::Headphones ? 0 : 1);
    SetJackValue(*key, u"4", jack == Jack::Headphones ? 1 : 0);
  }

  void WriteSetting(std::u16string_view pathKey, std::u16string_view setting) {
    std::u16string text(setting);
    text.push_back(u'\0');
    Create(SettingsPath(pathKey))
        ->SetValue(u"ActiveSetting", platform::RegistryType::String,
                   std::as_bytes(std::span<const char16_t>(text)));
  }

  // Nothing when the route has no "Settings" key or no setting.
  std::optional<std::u16string> ReadSetting(std::u16string_view pathKey) {
    const auto key = machine_.registry.OpenKey(platform::RegistryRoot::LocalMachine,
                                               SettingsPath(pathKey), platform::kRegistryRead);
    if (key == nullptr) return std::nullopt;
    std::u16string text(16, u'\0');
    std::uint32_t size = 32;
    if (key->QueryValue(u"ActiveSetting", nullptr, text.data(), &size) !=
        platform::RegistryStatus::Success) {
      return std::nullopt;
    }
    return std::u16string(text.c_str());
  }

  static std::u16string EndpointEvent(std::u16string_view kind) {
    return u"Global\\Velsona" + std::u16string(kind) + u"PropEvent" + std::u16string(kSpeakerGuid);
  }

  std::vector<std::u16string> ModeChangeEvents() const {
    return {EndpointEvent(u"GFX"), EndpointEvent(u"MFX"), EndpointEvent(u"EFX"),
            EndpointEvent(u"SFX"), std::u16string(kServiceEvent)};
  }

  static constexpr std::u16string_view kServiceEvent =
      u"Global\\VelsonaServiceParameterUpdateEvent";

  support::FakeMachine machine_;

 private:
  static std::u16string SettingsPath(std::u16string_view pathKey) {
    return u"SOFTWARE\\Norvane\\Velsona\\Parameters\\" + std::u16string(pathKey) + u"\\Settings";
  }

  std::unique_ptr<platform::RegistryKey> Create(std::u16string_view path) {
    return machine_.registry.CreateKey(platform::RegistryRoot::LocalMachine, path,
                                       platform::kRegistryAllAccess);
  }

  static void SetJackValue(platform::RegistryKey& key, std::u16string_view number,
                           std::uint32_t value) {
    key.SetValue(u"{1496451E-75E5-484F-9914-A9F246BC960F}," + std::u16string(number),
                 platform::RegistryType::Dword,
                 std::as_bytes(std::span<const std::uint32_t>(&value, 1)));
  }
};

}  // namespace ui
