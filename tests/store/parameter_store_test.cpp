#include "store/parameter_store.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "platform/fake/fake_registry.h"
#include "store/active_mode.h"
#include "tests/support/failing_registry.h"
#include "tests/support/registry_tree.h"

namespace store {
namespace {

using platform::RegistryRoot;
using platform::RegistryType;
using support::FailingRegistry;
using support::RegistryStep;

const std::u16string kRoute = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
const std::u16string kSettings =
    u"SOFTWARE\\Norvane\\Velsona\\Parameters\\{DFF21CE2-F70F-11D0-B917-00A0C9223196}\\Settings";
const std::u16string kDefaultsSettings =
    u"SOFTWARE\\Norvane\\Velsona\\Defaults\\{DFF21CE2-F70F-11D0-B917-00A0C9223196}\\Settings";
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

class ParameterStoreTest : public testing::Test {
 protected:
  // A store that has loaded setting 3, which holds nothing but Param1 = 1.
  void LoadSettingThree() {
    support::PutText(registry_, kSettings, u"ActiveSetting", u"3");
    support::PutFloat(registry_, kSettings + u"\\3", u"Param1", 1.0F);
    ASSERT_TRUE(LoadActiveSet(registry_, kRoute, store_));
  }

  platform::FakeRegistry registry_;
  ParameterStore store_;
};

TEST_F(ParameterStoreTest, VendorKeyGetsItsAccessListNewOrOld) {
  const std::u16string expected = u"D:(A;OICI;KA;;;BU)(A;OICI;KA;;;AU)(A;OICI;KA;;;BA)";
  EnsureVendorKey(registry_);
  EXPECT_EQ(registry_.AccessListOf(RegistryRoot::LocalMachine, u"SOFTWARE\\Norvane"), expected);
  EXPECT_EQ(registry_.AccessListOf(RegistryRoot::LocalMachine, u"SOFTWARE"), u"");

  platform::FakeRegistry old;
  support::MakeKey(old, u"SOFTWARE\\Norvane");
  EnsureVendorKey(old);
  EXPECT_EQ(old.AccessListOf(RegistryRoot::LocalMachine, u"SOFTWARE\\Norvane"), expected);
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
      {"empty", {{RegistryType::String, support::TextBytes(u"")}}, u"", -0x31},
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
    EXPECT_TRUE(LoadActiveSet(registry, kRoute, store));
    EXPECT_EQ(store.pathKey, kRoute);
    EXPECT_EQ(store.activeSetting, c.expected);
    EXPECT_EQ(store.values[6], c.expected.empty() ? 0.0F : 7.0F);
    EXPECT_EQ(store.committed, store.values);
    EXPECT_EQ(ReadActiveModeIndex(registry, kRoute), c.modeIndex);
    EXPECT_EQ(ModeIndexFromSetting(store.activeSetting), c.modeIndex);
  }
}

TEST_F(ParameterStoreTest, LoadOfUnknownRouteOnlyRemembersItsName) {
  store_.activeSetting = u"4";
  store_.values[0] = 5.0F;
  EXPECT_FALSE(LoadActiveSet(registry_, kRoute, store_));
  EXPECT_EQ(store_.pathKey, kRoute);
  EXPECT_EQ(store_.activeSetting, u"4");
  EXPECT_EQ(store_.values[0], 5.0F);
  EXPECT_FALSE(ReadActiveModeIndex(registry_, kRoute).has_value());
  EXPECT_FALSE(LoadActiveSet(registry_, u"", store_));
}

TEST_F(ParameterStoreTest, LoadOfMissingSetKeepsTheValues) {
  support::PutText(registry_, kSettings, u"ActiveSetting", u"9");
  store_.values[0] = 5.0F;
  EXPECT_TRUE(LoadActiveSet(registry_, kRoute, store_));
  EXPECT_EQ(store_.activeSetting, u"9");
  EXPECT_EQ(store_.values[0], 5.0F);
  EXPECT_EQ(store_.committed[0], 0.0F);
}

TEST_F(ParameterStoreTest, LoadTakesFourBytesOfAnyType) {
  const std::u16string set = kSettings + u"\\2";
  support::PutDword(registry_, set, u"Param1", 0x40400000);  // 3.0
  support::PutFloat(registry_, set, u"param1114", 4.0F);
  support::PutFloat(registry_, set, u"Param1115", 9.0F);
  support::PutValue(registry_, set, u"Param2", RegistryType::Binary, "12345");
  store_.values[1] = 6.0F;
  store_.values[2] = 7.0F;
  EXPECT_TRUE(LoadActiveSet(registry_, kRoute, store_));
  EXPECT_EQ(store_.values[0], 3.0F);
  EXPECT_EQ(store_.values[1], 6.0F) << "too long for a parameter";
  EXPECT_EQ(store_.values[2], 7.0F) << "not in the registry";
  EXPECT_EQ(store_.values[1113], 4.0F);
  EXPECT_EQ(store_.committed, store_.values);
}

TEST_F(ParameterStoreTest, CommitWritesWhatDiffersAsFloats) {
  LoadSettingThree();
  store_.values[1] = -0.0F;  // committed: 0.0
  store_.values[2] = 3.5F;
  store_.values[3] = kNan;
  store_.values[1113] = -1.0F;
  EXPECT_TRUE(CommitChanges(registry_, store_));
  const std::u16string set = kSettings + u"\\3";
  EXPECT_FALSE(support::GetValue(registry_, set, u"Param2").has_value());
  EXPECT_EQ(support::GetFloat(registry_, set, u"Param3"), 3.5F);
  EXPECT_TRUE(std::isnan(support::GetFloat(registry_, set, u"Param4").value_or(0.0F)));
  EXPECT_EQ(support::GetFloat(registry_, set, u"Param1114"), -1.0F);
  EXPECT_EQ(store_.committed[2], 3.5F);

  // Nothing but the NaN is written again, and a number that replaces it.
  for (const std::u16string_view name : {u"Param1", u"Param3", u"Param4"}) {
    support::RemoveValue(registry_, set, name);
  }
  EXPECT_TRUE(CommitChanges(registry_, store_));
  EXPECT_FALSE(support::GetValue(registry_, set, u"Param1").has_value());
  EXPECT_FALSE(support::GetValue(registry_, set, u"Param3").has_value());
  EXPECT_TRUE(support::GetValue(registry_, set, u"Param4").has_value());
  store_.values[3] = 1.0F;
  EXPECT_TRUE(CommitChanges(registry_, store_));
  EXPECT_EQ(support::GetFloat(registry_, set, u"Param4"), 1.0F);
}

TEST_F(ParameterStoreTest, CommitMakesTheSetInOneTransactionAndForgetsFailedWrites) {
  FailingRegistry registry(registry_);
  registry.SetFault([](RegistryStep step, std::u16string_view, std::u16string_view name) {
    return step == RegistryStep::Set && name == u"Param5";
  });
  store_.pathKey = kRoute;
  store_.activeSetting = u"6";
  store_.values[3] = store_.values[4] = store_.values[5] = 8.0F;
  EXPECT_TRUE(CommitChanges(registry, store_));
  EXPECT_EQ(registry.WriteScopes(), 1);
  EXPECT_EQ(registry.UnprotectedChanges(), 0);
  EXPECT_EQ(support::GetFloat(registry_, kSettings + u"\\6", u"Param4"), 8.0F);
  EXPECT_EQ(support::GetFloat(registry_, kSettings + u"\\6", u"Param6"), 8.0F);
  EXPECT_EQ(store_.committed[4], 8.0F) << "a failed write is not tried again";

  store_.activeSetting = u"";
  store_.values[0] = 2.0F;
  EXPECT_FALSE(CommitChanges(registry, store_));
  EXPECT_EQ(store_.committed[0], 0.0F);
}

TEST_F(ParameterStoreTest, RestoreCopiesWhatTheFactoryHas) {
  LoadSettingThree();
  support::PutFloat(registry_, kDefaultsSettings + u"\\3", u"Param1", 0.25F);
  support::PutFloat(registry_, kDefaultsSettings + u"\\3", u"Param1114", 4.0F);
  support::PutValue(registry_, kDefaultsSettings + u"\\3", u"Param2", RegistryType::Binary,
                    "12345");
  store_.values[1] = 6.0F;
  store_.values[2] = 7.0F;
  EXPECT_TRUE(CopyDefaultsToActive(registry_, store_));
  EXPECT_EQ(store_.values[0], 0.25F);
  EXPECT_EQ(store_.values[1], 6.0F) << "the factory's value cannot be read";
  EXPECT_EQ(store_.values[2], 7.0F) << "the factory has none";
  EXPECT_EQ(store_.values[1113], 4.0F);
  EXPECT_EQ(store_.committed[0], 1.0F) << "the next commit writes once more";
  const std::u16string set = kSettings + u"\\3";
  EXPECT_EQ(support::GetFloat(registry_, set, u"Param1"), 0.25F);
  EXPECT_FALSE(support::GetValue(registry_, set, u"Param2").has_value());
  EXPECT_FALSE(support::GetValue(registry_, set, u"Param3").has_value());
}

TEST_F(ParameterStoreTest, ALostTransactionLeavesTheCopyAsItWas) {
  LoadSettingThree();
  support::PutFloat(registry_, kDefaultsSettings + u"\\3", u"Param1", 0.25F);
  FailingRegistry registry(registry_);
  registry.SetFault([](RegistryStep step, auto, auto) { return step == RegistryStep::Commit; });
  store_.values[0] = 5.0F;
  EXPECT_FALSE(CommitChanges(registry, store_));
  EXPECT_EQ(store_.committed[0], 1.0F) << "the next commit writes it";
  EXPECT_FALSE(CopyDefaultsToActive(registry, store_));
  EXPECT_EQ(store_.values[0], 5.0F);
}

TEST_F(ParameterStoreTest, RestoreNeedsBothSets) {
  store_.pathKey = kRoute;
  store_.activeSetting = u"3";
  store_.values[0] = 5.0F;
  support::PutFloat(registry_, kDefaultsSettings + u"\\3", u"Param1", 0.25F);
  EXPECT_FALSE(CopyDefaultsToActive(registry_, store_));
  EXPECT_EQ(support::OpenToRead(registry_, kSettings), nullptr);

  support::PutFloat(registry_, kSettings + u"\\4", u"Param1", 1.0F);
  store_.activeSetting = u"4";
  EXPECT_FALSE(CopyDefaultsToActive(registry_, store_));
  EXPECT_EQ(store_.values[0], 5.0F);
  EXPECT_EQ(support::GetFloat(registry_, kSettings + u"\\4", u"Param1"), 1.0F);
}

}  // namespace
}  // namespace store
