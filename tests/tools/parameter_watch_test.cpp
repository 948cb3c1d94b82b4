#include "tools/enginemon/parameter_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/fake/fake_registry.h"
#include "platform/text.h"
#include "store/registry_layout.h"

namespace tools {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::u16string_view kSpeaker = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
constexpr std::u16string_view kHeadphones = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";

class ParameterWatchTest : public testing::Test {
 protected:
  void SetBytes(std::u16string_view pathKey, std::u16string_view setting, std::uint32_t number,
                std::span<const std::byte> bytes) {
    const std::unique_ptr<platform::RegistryKey> key = registry_.CreateKey(
        platform::RegistryRoot::LocalMachine,
        store::SettingKeyPath(store::Tree::Parameters, pathKey, setting), store::kWriteAccess);
    ASSERT_TRUE(key);
    key->SetValue(store::FormatParameterName(number), platform::RegistryType::Binary, bytes);
  }

  void Set(std::u16string_view pathKey, std::u16string_view setting, std::uint32_t number,
           float value) {
    SetBytes(pathKey, setting, number, std::as_bytes(std::span(&value, 1)));
  }

  void SetActive(std::u16string_view pathKey, std::u16string_view setting) {
    const std::unique_ptr<platform::RegistryKey> key = registry_.CreateKey(
        platform::RegistryRoot::LocalMachine, store::SettingsKeyPath(pathKey), store::kWriteAccess);
    ASSERT_TRUE(key);
    key->SetValue(u"ActiveSetting", platform::RegistryType::String,
                  std::as_bytes(std::span(setting)));
  }

  // Settings as "last digit of the first group, setting".
  static std::vector<std::string> Texts(const std::vector<ActiveSetting>& settings) {
    std::vector<std::string> lines;
    lines.reserve(settings.size());
    for (const ActiveSetting& setting : settings) {
      lines.push_back(platform::ToUtf8(setting.pathKey.substr(8, 1)) + " " +
                      platform::ToUtf8(setting.setting));
    }
    return lines;
  }

  // The changes as "last digit of the first group, setting, number, value".
  static std::vector<std::string> Look(ParameterWatch& watch) {
    std::vector<std::string> lines;
    for (const ChangedParameter& change : watch.Look().parameters) {
      lines.push_back(platform::ToUtf8(change.pathKey.substr(8, 1)) + " " +
                      platform::ToUtf8(change.setting) + " " + std::to_string(change.number) + " " +
                      std::to_string(change.value));
    }
    return lines;
  }

  platform::FakeRegistry registry_;
};

TEST_F(ParameterWatchTest, TellsWhatChangedSinceTheLastLookAndNothingElse) {
  Set(kSpeaker, u"2", 10, 1.0F);
  Set(kSpeaker, u"2", 117, 1.0F);
  Set(kHeadphones, u"3", 9, 2.0F);
  ParameterWatch watch(registry_);
  EXPECT_THAT(Look(watch), IsEmpty());

  Set(kHeadphones, u"3", 9, 3.0F);
  Set(kSpeaker, u"2", 117, 0.0F);
  Set(kSpeaker, u"2", 10, 1.0F);  // the same value again
  Set(kSpeaker, u"2", 9, 5.0F);   // new
  Set(kSpeaker, u"10", 1, 6.0F);  // a new setting
  Set(kSpeaker, u"2", 1115, 7.0F);
  EXPECT_THAT(Look(watch), ElementsAre("1 10 1 6.000000", "1 2 9 5.000000", "1 2 117 0.000000",
                                       "1 2 1115 7.000000", "2 3 9 3.000000"));
  EXPECT_THAT(Look(watch), IsEmpty());
}

TEST_F(ParameterWatchTest, ComparesBitsAndSkipsWhatIsNoFloat) {
  Set(kSpeaker, u"1", 1, std::numeric_limits<float>::quiet_NaN());
  Set(kSpeaker, u"1", 2, 0.0F);
  ParameterWatch watch(registry_);
  EXPECT_THAT(Look(watch), IsEmpty()) << "a NaN equals itself here";
  Set(kSpeaker, u"1", 2, -0.0F);
  SetBytes(kSpeaker, u"1", 3, std::as_bytes(std::span("ab", 2)));
  SetBytes(kSpeaker, u"1", 4, std::as_bytes(std::span("abcdef", 6)));
  EXPECT_THAT(Look(watch), ElementsAre("1 1 2 -0.000000"));
}

TEST_F(ParameterWatchTest, SeesAStoreThatIsMadeLater) {
  ParameterWatch watch(registry_);
  EXPECT_THAT(Look(watch), IsEmpty());
  Set(kSpeaker, u"1", 1, 1.0F);
  EXPECT_THAT(Look(watch), ElementsAre("1 1 1 1.000000"));
}

TEST_F(ParameterWatchTest, TellsActiveSettingsAndWhichParametersAreTheirs) {
  Set(kSpeaker, u"2", 1, 1.0F);
  Set(kHeadphones, u"3", 1, 1.0F);
  SetActive(kHeadphones, u"3");
  ParameterWatch watch(registry_);
  EXPECT_THAT(Texts(watch.ActiveSettings()), ElementsAre("1 2", "2 3")) << "2 when none is named";
  EXPECT_THAT(watch.Look().activeSettings, IsEmpty());

  SetActive(kHeadphones, u"4");
  Set(kHeadphones, u"3", 1, 2.0F);
  Set(kHeadphones, u"4", 1, 2.0F);
  const StoreChanges changes = watch.Look();
  EXPECT_THAT(Texts(changes.activeSettings), ElementsAre("2 4"));
  ASSERT_EQ(changes.parameters.size(), 2U);
  EXPECT_EQ(changes.parameters[0].state, ChangedParameter::State::Idle);
  EXPECT_EQ(changes.parameters[1].state, ChangedParameter::State::Active);
  EXPECT_THAT(Texts(watch.ActiveSettings()), ElementsAre("1 2", "2 4"));
}

}  // namespace
}  // namespace tools
