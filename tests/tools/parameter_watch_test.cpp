#include "tools/enginemon/parameter_watch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "platform/fake/fake_registry.h"
#include "platform/text.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"

namespace tools {
namespace {

using support::kHeadphones;
using support::kSpeaker;
using support::Settings;
using testing::ElementsAre;
using testing::IsEmpty;

class ParameterWatchTest : public testing::Test {
 protected:
  void Set(const std::u16string& route, const std::u16string& setting, const std::u16string& number,
           float value) {
    support::PutFloat(registry_, Settings(route) + u"\\" + setting, u"Param" + number, value);
  }

  // Settings as "last digit of the first group, setting".
  static std::vector<std::string> Texts(const std::vector<ActiveSetting>& settings) {
    std::vector<std::string> lines;
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
  ParameterWatch watch(registry_);
  EXPECT_THAT(Look(watch), IsEmpty()) << "there is no store yet";
  Set(kSpeaker, u"2", u"10", 1.0F);
  Set(kSpeaker, u"2", u"117", 1.0F);
  Set(kHeadphones, u"3", u"9", 2.0F);
  EXPECT_THAT(Look(watch), ElementsAre("1 2 10 1.000000", "1 2 117 1.000000", "2 3 9 2.000000"));

  Set(kHeadphones, u"3", u"9", 3.0F);
  Set(kSpeaker, u"2", u"117", 0.0F);
  Set(kSpeaker, u"2", u"10", 1.0F);  // the same value again
  Set(kSpeaker, u"2", u"9", 5.0F);   // new
  Set(kSpeaker, u"10", u"1", 6.0F);  // a new setting
  Set(kSpeaker, u"2", u"1115", 7.0F);
  EXPECT_THAT(Look(watch), ElementsAre("1 10 1 6.000000", "1 2 9 5.000000", "1 2 117 0.000000",
                                       "1 2 1115 7.000000", "2 3 9 3.000000"));
  EXPECT_THAT(Look(watch), IsEmpty());
}

TEST_F(ParameterWatchTest, ComparesBitsAndSkipsWhatIsNoFloat) {
  Set(kSpeaker, u"1", u"1", std::numeric_limits<float>::quiet_NaN());
  Set(kSpeaker, u"1", u"2", 0.0F);
  ParameterWatch watch(registry_);
  EXPECT_THAT(Look(watch), IsEmpty()) << "a NaN equals itself here";
  Set(kSpeaker, u"1", u"2", -0.0F);
  for (const auto& [name, bytes] : {std::pair(u"Param3", "ab"), std::pair(u"Param4", "abcdef")}) {
    support::PutValue(registry_, Settings(kSpeaker) + u"\\1", name, platform::RegistryType::Binary,
                      bytes);
  }
  EXPECT_THAT(Look(watch), ElementsAre("1 1 2 -0.000000"));
}

TEST_F(ParameterWatchTest, TellsActiveSettingsAndWhichParametersAreTheirs) {
  Set(kSpeaker, u"2", u"1", 1.0F);
  Set(kHeadphones, u"3", u"1", 1.0F);
  support::PutText(registry_, Settings(kHeadphones), u"ActiveSetting", u"3");
  ParameterWatch watch(registry_);
  EXPECT_THAT(Texts(watch.ActiveSettings()), ElementsAre("1 2", "2 3")) << "2 when none is named";
  EXPECT_THAT(watch.Look().activeSettings, IsEmpty());

  support::PutText(registry_, Settings(kHeadphones), u"ActiveSetting", u"4");
  Set(kHeadphones, u"3", u"1", 2.0F);
  Set(kHeadphones, u"4", u"1", 2.0F);
  const StoreChanges changes = watch.Look();
  EXPECT_THAT(Texts(changes.activeSettings), ElementsAre("2 4"));
  ASSERT_EQ(changes.parameters.size(), 2U);
  EXPECT_EQ(changes.parameters[0].state, ChangedParameter::State::Idle);
  EXPECT_EQ(changes.parameters[1].state, ChangedParameter::State::Active);
  EXPECT_THAT(Texts(watch.ActiveSettings()), ElementsAre("1 2", "2 4"));
}

}  // namespace
}  // namespace tools
