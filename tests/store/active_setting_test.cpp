#include "engine_link/active_setting.h"

#include <gtest/gtest.h>

#include <set>

#include "store/registry_layout.h"
#include "tests/store/engine_fixture.h"
#include "tests/support/failing_registry.h"
#include "tests/support/registry_tree.h"

namespace store {
using engine_link::WriteActiveSetting;
namespace {

using store::OutputPath;
using support::FailingRegistry;
using support::RegistryStep;

const std::u16string kHeadphones = u"{DFF21CE2-F70F-11D0-B917-00A0C9223196}";
const std::u16string kLineConnector = u"{DFF21FE3-F70F-11D0-B917-00A0C9223196}";
const std::u16string kSubwoofer = u"{765D256B-701A-44F8-BA7A-4A95AFA7C762}";

class ActiveSettingTest : public EngineFixture {
 protected:
  // The routes whose active setting is `text`, as its writer stores it.
  std::set<std::u16string> RoutesWith(const std::u16string& text) {
    std::set<std::u16string> routes;
    const auto key = support::OpenToRead(registry_, u"SOFTWARE\\Norvane\\Velsona\\Parameters");
    std::u16string name;
    for (std::uint32_t i = 0;
         key && key->EnumerateSubKey(i, &name) == platform::RegistryStatus::Success; ++i) {
      const auto value = support::GetValue(registry_, SettingsKeyPath(name), u"ActiveSetting");
      if (value == support::StoredValue{platform::RegistryType::String, support::TextBytes(text)}) {
        routes.insert(name);
      }
    }
    return routes;
  }

  void SetHint(OutputPath route) {
    support::PutDword(registry_, kProductKey, kHardwareOutputPathValue,
                      static_cast<std::uint32_t>(route));
  }
};

TEST_F(ActiveSettingTest, IsWrittenForTheRouteAndItsTwin) {
  const std::u16string lowerJack = u"{dff21ce1-f70f-11d0-b917-00a0c9223196}";
  const struct {
    std::u16string jackSubType;
    OutputPath route;
    std::set<std::u16string> written;
  } cases[] = {
      {kSpeakerJack, OutputPath::LineOut, {kLineConnector}},
      {kSpeakerJack, OutputPath::InternalSpeaker, {kSpeakerJack, kSubwoofer}},
      {kSpeakerJack, OutputPath::SpeakerWithSubwoofer, {kSpeakerJack, kSubwoofer}},
      {lowerJack, OutputPath::InternalSpeaker, {lowerJack, kSubwoofer}},
      {kHeadphones, OutputPath::SpeakerWithSubwoofer, {kHeadphones}},
  };
  for (const auto& c : cases) {
    static_cast<void>(registry_.RemoveTree(platform::RegistryRoot::LocalMachine, u"SOFTWARE"));
    SetHint(c.route);
    audioDevices_.Remove(u"speaker");
    AddEndpoint(u"speaker", platform::kDeviceStateActive, kSpeakerGuid, c.jackSubType);
    audioDevices_.SetDefault(u"speaker");
    auto route = OutputPath::LineOut;
    EXPECT_TRUE(WriteActiveSetting(engine_, 2, &route));
    EXPECT_EQ(route, c.route);
    EXPECT_EQ(RoutesWith(u"3"), c.written);
  }
}

TEST_F(ActiveSettingTest, RefusesWhatIsNoModeAndWorksForTheLast) {
  auto route = OutputPath::Headphone;
  EXPECT_FALSE(WriteActiveSetting(engine_, 6, &route));
  EXPECT_FALSE(WriteActiveSetting(engine_, 0xFFFFFFFF, nullptr));
  EXPECT_EQ(route, OutputPath::Headphone);
  EXPECT_TRUE(support::ReadTree(registry_, u"SOFTWARE").empty());
  EXPECT_TRUE(WriteActiveSetting(engine_, 5, nullptr));
  EXPECT_EQ(RoutesWith(u"6"), std::set<std::u16string>{kLineConnector});
}

TEST_F(ActiveSettingTest, WritesNothingWithoutDefaultEndpointOrJack) {
  audioDevices_.SetDefault(u"");
  auto route = OutputPath::InternalSpeaker;
  EXPECT_FALSE(WriteActiveSetting(engine_, 1, &route));
  EXPECT_EQ(route, OutputPath::InternalSpeaker);

  SetHint(OutputPath::Headphone);
  audioDevices_.SetDefault(u"screen");  // has a GUID, but no jack subtype
  EXPECT_FALSE(WriteActiveSetting(engine_, 1, &route));
  EXPECT_EQ(route, OutputPath::Headphone) << "the route is handed back all the same";
  EXPECT_TRUE(RoutesWith(u"2").empty());
}

TEST_F(ActiveSettingTest, TwinsChangeTogetherAndAFailingTwinIsIgnored) {
  FailingRegistry registry(registry_);
  SetHint(OutputPath::InternalSpeaker);
  EXPECT_TRUE(WriteActiveSetting({registry, events_, audioDevices_}, 0, nullptr));
  EXPECT_EQ(registry.WriteScopes(), 1);
  EXPECT_EQ(registry.UnprotectedChanges(), 0);

  std::u16string broken = SettingsKeyPath(kSubwoofer);
  registry.SetFault([&](RegistryStep step, std::u16string_view path, std::u16string_view) {
    return step == RegistryStep::Create && path == broken;
  });
  EXPECT_TRUE(WriteActiveSetting({registry, events_, audioDevices_}, 3, nullptr));
  EXPECT_EQ(RoutesWith(u"4"), std::set<std::u16string>{kSpeakerJack});

  broken = SettingsKeyPath(kSpeakerJack);
  EXPECT_FALSE(WriteActiveSetting({registry, events_, audioDevices_}, 4, nullptr));
  EXPECT_EQ(RoutesWith(u"5"), std::set<std::u16string>{kSubwoofer});

  registry.SetFault([](RegistryStep step, auto, auto) { return step == RegistryStep::Commit; });
  EXPECT_FALSE(WriteActiveSetting({registry, events_, audioDevices_}, 2, nullptr));
}

}  // namespace
}  // namespace store
