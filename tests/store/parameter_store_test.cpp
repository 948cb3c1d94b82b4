#include "store/parameter_store.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/fake/failing_registry.h"
#include "platform/fake/fake_registry.h"
#include "store/active_mode.h"
#include "store/path_key.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"

namespace store {
namespace {

using platform::RegistryRoot;
using platform::RegistryStep;
using platform::RegistryType;
using support::kHeadphones;

const std::u16string kSettings = support::Settings(kHeadphones);
const std::u16string kSet = kSettings + u"\\3";
const std::u16string kDefaults = support::Settings(kHeadphones, u"Defaults") + u"\\3";
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

using Masks = std::map<std::u16string, std::set<std::uint32_t>>;

TEST(PathKey, FollowsTheRouteForSpeakersAndTheJackForEverythingElse) {
  using enum OutputPath;
  const std::u16string speaker = support::kSpeaker;
  const std::u16string lower = u"{dff21ce1-f70f-11d0-b917-00a0c9223196}";
  const struct {
    std::u16string jackSubType;
    OutputPath route;
    std::u16string expected;
  } cases[] = {
      {speaker, LineOut, support::kLineConnector},
      {speaker, InternalSpeaker, speaker},
      {speaker, Headphone, kHeadphones},
      {speaker, SpeakerWithSubwoofer, support::kSubwoofer},
      {lower, Headphone, kHeadphones},
      {lower, InternalSpeaker, lower},
      {kHeadphones, SpeakerWithSubwoofer, kHeadphones},
      {u"", Headphone, u""},
      {u"speaker", Headphone, u"speaker"},
      {speaker + u" ", Headphone, speaker + u" "},
  };
  for (const auto& c : cases) EXPECT_EQ(ResolvePathKey(c.jackSubType, c.route), c.expected);
}

class ParameterStoreTest : public testing::Test {
 protected:
  // A store that has loaded setting 3, which holds nothing but Param1 = 1.
  void LoadSettingThree() {
    support::PutText(inner_, kSettings, u"ActiveSetting", u"3");
    support::PutFloat(inner_, kSet, u"Param1", 1.0F);
    ASSERT_TRUE(LoadActiveSet(registry_, kHeadphones, store_));
  }

  std::optional<float> Stored(std::u16string_view name) {
    return support::GetFloat(inner_, kSet, name);
  }

  platform::FakeRegistry inner_;
  platform::FailingRegistry registry_{inner_};
  ParameterStore store_;
};

TEST_F(ParameterStoreTest, VendorKeyGetsItsAccessListNewOrOld) {
  const std::u16string expected = u"D:(A;OICI;KA;;;BU)(A;OICI;KA;;;AU)(A;OICI;KA;;;BA)";
  for (const char16_t* existing : {u"SOFTWARE", u"SOFTWARE\\Norvane"}) {
    platform::FakeRegistry inner;
    platform::FailingRegistry registry(inner);
    support::MakeKey(inner, existing);
    EnsureVendorKey(registry);
    EXPECT_EQ(inner.AccessListOf(RegistryRoot::LocalMachine, u"SOFTWARE\\Norvane"), expected);
    EXPECT_EQ(inner.AccessListOf(RegistryRoot::LocalMachine, u"SOFTWARE"), u"");
    EXPECT_EQ(registry.Accesses(), (Masks{{u"SOFTWARE\\Norvane", {0xF013F}}}));
  }
}

TEST_F(ParameterStoreTest, LoadFindsTheActiveSetting) {
  const std::u16string longest(99, u'7');
  const struct {
    const char* what;
    std::optional<support::StoredValue> stored;
    std::u16string expected;
    std::int32_t modeIndex;
  } cases[] = {
      {"missing", std::nullopt, u"2", 1},
      {"usual", {{RegistryType::String, support::TextBytes(u"3")}}, u"3", 2},
      {"two digits", {{RegistryType::String, support::TextBytes(u"10")}}, u"10", 0},
      {"zero", {{RegistryType::String, support::TextBytes(u"0")}}, u"0", -1},
      {"without NUL", {{RegistryType::String, support::Bytes(u"45", 4)}}, u"45", 3},
      {"other type", {{RegistryType::Binary, support::TextBytes(u"6")}}, u"6", 5},
      {"fills buffer", {{RegistryType::String, support::TextBytes(longest)}}, longest, 6},
      {"too long", {{RegistryType::String, support::TextBytes(longest + u"7")}}, u"2", 1},
      {"no bytes", {{RegistryType::String, ""}}, u"", -0x31},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    platform::FakeRegistry registry;
    support::PutFloat(registry, kSettings + u"\\" + (c.expected.empty() ? u"1" : c.expected),
                      u"Param7", 7.0F);
    if (c.stored) {
      support::PutValue(registry, kSettings, u"ActiveSetting", c.stored->type, c.stored->bytes);
    }
    ParameterStore store;
    EXPECT_TRUE(LoadActiveSet(registry, kHeadphones, store));
    EXPECT_EQ(store.activeSetting, c.expected);
    EXPECT_EQ(store.values[6], c.expected.empty() ? 0.0F : 7.0F);
    EXPECT_EQ(ReadActiveModeIndex(registry, kHeadphones), c.modeIndex);
    EXPECT_EQ(ModeIndexFromSetting(store.activeSetting), c.modeIndex);
  }
}

TEST_F(ParameterStoreTest, LoadTakesFourBytesOfAnyTypeAndKeepsWhatItCannotRead) {
  store_.values[1] = 6.0F;
  store_.values[2] = 7.0F;
  EXPECT_FALSE(LoadActiveSet(registry_, u"", store_));
  EXPECT_FALSE(LoadActiveSet(registry_, kHeadphones, store_)) << "an unknown route";
  EXPECT_EQ(store_.pathKey, kHeadphones);
  EXPECT_EQ(store_.activeSetting, u"");
  EXPECT_EQ(ReadActiveModeIndex(registry_, kHeadphones), std::nullopt);

  support::PutText(inner_, kSettings, u"ActiveSetting", u"3");
  EXPECT_TRUE(LoadActiveSet(registry_, kHeadphones, store_)) << "a set that does not exist";
  EXPECT_EQ(store_.activeSetting, u"3");
  EXPECT_EQ(store_.values[1], 6.0F);
  EXPECT_EQ(store_.committed[1], 0.0F);

  support::PutDword(inner_, kSet, u"Param1", 0x40400000);  // 3.0
  support::PutFloat(inner_, kSet, u"param1114", 4.0F);
  support::PutFloat(inner_, kSet, u"Param1115", 9.0F);
  support::PutValue(inner_, kSet, u"Param2", RegistryType::Binary, "12345");
  EXPECT_TRUE(LoadActiveSet(registry_, kHeadphones, store_));
  EXPECT_EQ(store_.values[0], 3.0F);
  EXPECT_EQ(store_.values[1], 6.0F) << "too long for a parameter";
  EXPECT_EQ(store_.values[2], 7.0F) << "not in the registry";
  EXPECT_EQ(store_.values[1113], 4.0F);
  EXPECT_EQ(store_.committed, store_.values);
  Masks masks = registry_.Accesses();
  masks.erase(support::Settings(u""));
  EXPECT_EQ(masks, (Masks{{kSettings, {0x20119}}, {kSet, {0x20119}}}));
}

TEST_F(ParameterStoreTest, CommitWritesWhatDiffersAsFloatsInOneTransaction) {
  LoadSettingThree();
  support::RemoveValue(inner_, kSet, u"Param1");
  store_.values[1] = -0.0F;  // committed: 0.0
  store_.values[2] = 3.5F;
  store_.values[3] = kNan;
  store_.values[4] = 5.0F;
  store_.values[1113] = -1.0F;
  registry_.SetFault([](RegistryStep step, std::u16string_view, std::u16string_view name) {
    return step == RegistryStep::Set && name == u"Param5";
  });
  EXPECT_TRUE(CommitChanges(registry_, store_));
  EXPECT_EQ(registry_.WriteScopes(), 1);
  EXPECT_EQ(registry_.UnprotectedChanges(), 0);
  EXPECT_EQ(registry_.Accesses().at(kSet), (std::set{0x20119U, 0xF013FU}));
  EXPECT_EQ(support::ReadTree(inner_, kSet).size(), 4U) << "the key and three values";
  EXPECT_EQ(Stored(u"Param3"), 3.5F);
  EXPECT_EQ(Stored(u"Param1114"), -1.0F);
  EXPECT_EQ(store_.committed[4], 5.0F) << "a failed write is not tried again";

  // Nothing but the NaN is written again, and a number that replaces it.
  support::RemoveValue(inner_, kSet, u"Param3");
  support::RemoveValue(inner_, kSet, u"Param4");
  EXPECT_TRUE(CommitChanges(registry_, store_));
  EXPECT_EQ(Stored(u"Param3"), std::nullopt);
  EXPECT_TRUE(std::isnan(Stored(u"Param4").value_or(0.0F)));
  store_.values[3] = 1.0F;
  EXPECT_TRUE(CommitChanges(registry_, store_));
  EXPECT_EQ(Stored(u"Param4"), 1.0F);

  store_.activeSetting = u"8";
  store_.values[0] = 2.0F;
  EXPECT_TRUE(CommitChanges(registry_, store_)) << "a set that does not exist is made";
  EXPECT_EQ(support::GetFloat(inner_, kSettings + u"\\8", u"Param1"), 2.0F);
  store_.activeSetting = u"";
  store_.values[0] = 3.0F;
  EXPECT_FALSE(CommitChanges(registry_, store_));
  EXPECT_EQ(store_.committed[0], 2.0F);
}

TEST_F(ParameterStoreTest, ALostTransactionLeavesTheCopyAsItWas) {
  LoadSettingThree();
  support::PutFloat(inner_, kDefaults, u"Param1", 0.25F);
  registry_.SetFault([](RegistryStep step, auto, auto) { return step == RegistryStep::Commit; });
  store_.values[0] = 5.0F;
  EXPECT_FALSE(CommitChanges(registry_, store_));
  EXPECT_EQ(store_.committed[0], 1.0F) << "the next commit writes it";
  EXPECT_FALSE(CopyDefaultsToActive(registry_, store_));
  EXPECT_EQ(store_.values[0], 5.0F);
}

TEST_F(ParameterStoreTest, RestoreCopiesWhatTheFactoryHasWhereThereAreBothSets) {
  LoadSettingThree();
  EXPECT_FALSE(CopyDefaultsToActive(registry_, store_)) << "nothing from the factory";
  support::PutFloat(inner_, kDefaults, u"Param1", 0.25F);
  support::PutFloat(inner_, kDefaults, u"Param1114", 4.0F);
  support::PutValue(inner_, kDefaults, u"Param2", RegistryType::Binary, "12345");
  store_.values[1] = 6.0F;
  store_.values[2] = 7.0F;
  EXPECT_TRUE(CopyDefaultsToActive(registry_, store_));
  EXPECT_EQ(store_.values[0], 0.25F);
  EXPECT_EQ(store_.values[1], 6.0F) << "the factory's value cannot be read";
  EXPECT_EQ(store_.values[2], 7.0F) << "the factory has none";
  EXPECT_EQ(store_.values[1113], 4.0F);
  EXPECT_EQ(store_.committed[0], 1.0F) << "the next commit writes once more";
  EXPECT_EQ(Stored(u"Param1"), 0.25F);
  EXPECT_EQ(support::ReadTree(inner_, kSet).size(), 3U) << "the key and two values";
  EXPECT_EQ(registry_.UnprotectedChanges(), 0);
  EXPECT_EQ(registry_.Accesses(),
            (Masks{{kSettings, {0x20119}}, {kSet, {0x20119, 0xF013F}}, {kDefaults, {0x20119}}}));

  static_cast<void>(inner_.RemoveTree(RegistryRoot::LocalMachine, kSet));
  EXPECT_FALSE(CopyDefaultsToActive(registry_, store_));
  EXPECT_EQ(support::OpenToRead(inner_, kSet), nullptr) << "it is not made";
}

}  // namespace
}  // namespace store
