// What reaches the engine: the active setting of the route, and the events that wake it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "engine_link/active_setting.h"
#include "engine_link/engine_signals.h"
#include "engine_link/event_names.h"
#include "platform/fake/failing_registry.h"
#include "tests/support/fake_machine.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"

namespace engine_link {
namespace {

using platform::RegistryStep;
using support::Settings;
using testing::ElementsAre;
using enum store::OutputPath;

const std::u16string kService = u"Global\\VelsonaServiceParameterUpdateEvent";

// A machine with three endpoints; "1" and "3" are the active ones' GUIDs in the names of events.
class EngineLinkTest : public testing::Test {
 protected:
  EngineLinkTest() {
    Add({.id = u"speaker", .guid = u"1", .jackSubType = support::kSpeaker});
    Add({.id = u"gone", .state = 8, .guid = u"2"});
    Add({.id = u"screen", .guid = u"3"});
    machine_.audioDevices.SetDefault(u"speaker");
    machine_.events.Add(kService);
    store_.pathKey = support::kSpeaker;
    store_.activeSetting = u"2";
  }

  void Add(const platform::FakeEndpoint& endpoint) {
    machine_.audioDevices.Add(endpoint);
    for (const char16_t* kind : {u"G", u"M", u"E", u"S"}) {
      machine_.events.Add(Event(kind, endpoint.guid.value_or(u"")));
    }
  }

  static std::u16string Event(const std::u16string& kind, const std::u16string& guid) {
    return u"Global\\Velsona" + kind + u"FXPropEvent" + guid;
  }

  // The routes' active settings, as their writer stores them.
  std::map<std::u16string, std::u16string> Written() {
    std::map<std::u16string, std::u16string> settings;
    for (const auto& [name, value] : support::ReadTree(machine_.registry, support::kProduct)) {
      if (!name.ends_with(u"\\Settings : ActiveSetting")) continue;
      EXPECT_EQ(value.type, platform::RegistryType::String);
      EXPECT_EQ(value.bytes.size(), 4U);
      settings[name.substr(name.find(u'{'), 38)] = std::u16string(1, char16_t(value.bytes[0]));
    }
    return settings;
  }

  void SetHint(store::OutputPath route) {
    support::PutDword(machine_.registry, support::kProduct, u"HardwareOutputPath",
                      static_cast<std::uint32_t>(route));
  }

  support::FakeMachine machine_;
  EngineLink engine_{machine_.registry, machine_.events, machine_.audioDevices};
  store::ParameterStore store_;
};

TEST_F(EngineLinkTest, ActiveSettingIsWrittenForTheRouteAndItsTwin) {
  const std::u16string lower = u"{dff21ce1-f70f-11d0-b917-00a0c9223196}";
  const struct {
    std::u16string jackSubType;
    store::OutputPath route;
    std::map<std::u16string, std::u16string> written;
  } cases[] = {
      {support::kSpeaker, LineOut, {{support::kLineConnector, u"3"}}},
      {support::kSpeaker, Headphone, {{support::kHeadphones, u"3"}}},
      {support::kSpeaker,
       InternalSpeaker,
       {{support::kSpeaker, u"3"}, {support::kSubwoofer, u"3"}}},
      {lower, SpeakerWithSubwoofer, {{lower, u"3"}, {support::kSubwoofer, u"3"}}},
      {lower, InternalSpeaker, {{lower, u"3"}, {support::kSubwoofer, u"3"}}},
      {support::kHeadphones, SpeakerWithSubwoofer, {{support::kHeadphones, u"3"}}},
  };
  for (const auto& c : cases) {
    static_cast<void>(
        machine_.registry.RemoveTree(platform::RegistryRoot::LocalMachine, u"SOFTWARE"));
    SetHint(c.route);
    machine_.audioDevices.Remove(u"speaker");
    Add({.id = u"speaker", .guid = u"1", .jackSubType = c.jackSubType});
    auto route = LineOut;
    EXPECT_TRUE(WriteActiveSetting(engine_, 2, &route));
    EXPECT_EQ(route, c.route);
    EXPECT_EQ(Written(), c.written);
  }
}

TEST_F(EngineLinkTest, ActiveSettingNeedsAModeAnEndpointAndAJack) {
  auto route = Headphone;
  EXPECT_FALSE(WriteActiveSetting(engine_, 6, &route));
  EXPECT_FALSE(WriteActiveSetting(engine_, 0xFFFFFFFF, nullptr));
  machine_.audioDevices.SetDefault(u"");
  EXPECT_FALSE(WriteActiveSetting(engine_, 1, &route));
  EXPECT_EQ(route, Headphone);

  SetHint(InternalSpeaker);
  machine_.audioDevices.SetDefault(u"screen");  // has a GUID, but no jack subtype
  EXPECT_FALSE(WriteActiveSetting(engine_, 1, &route));
  EXPECT_EQ(route, InternalSpeaker) << "the route is handed back all the same";
  EXPECT_TRUE(Written().empty());
  machine_.audioDevices.SetDefault(u"speaker");
  SetHint(LineOut);
  EXPECT_TRUE(WriteActiveSetting(engine_, 5, nullptr));
  EXPECT_EQ(Written().at(support::kLineConnector), u"6");
}

TEST_F(EngineLinkTest, TwinsChangeTogetherAndAFailingTwinIsIgnored) {
  platform::FailingRegistry registry(machine_.registry);
  const EngineLink engine{registry, machine_.events, machine_.audioDevices};
  SetHint(InternalSpeaker);
  EXPECT_TRUE(WriteActiveSetting(engine, 0, nullptr));
  EXPECT_EQ(registry.WriteScopes(), 1);
  EXPECT_EQ(registry.UnprotectedChanges(), 0);
  for (const std::u16string& route : {support::kSpeaker, support::kSubwoofer}) {
    EXPECT_EQ(registry.Accesses().at(Settings(route)), std::set{0xF013FU});
  }
  std::u16string broken = Settings(support::kSubwoofer);
  registry.SetFault([&](RegistryStep step, std::u16string_view path, std::u16string_view) {
    return step == RegistryStep::Create && path == broken;
  });
  EXPECT_TRUE(WriteActiveSetting(engine, 3, nullptr));
  broken = Settings(support::kSpeaker);
  EXPECT_FALSE(WriteActiveSetting(engine, 4, nullptr));
  EXPECT_EQ(Written().at(support::kSpeaker), u"4");
  EXPECT_EQ(Written().at(support::kSubwoofer), u"5");
  registry.SetFault([](RegistryStep step, auto, auto) { return step == RegistryStep::Commit; });
  EXPECT_FALSE(WriteActiveSetting(engine, 2, nullptr));
}

TEST_F(EngineLinkTest, EditIsMirroredAndWrittenBeforeTheFirstOfThreeEvents) {
  const std::u16string set = Settings(support::kSpeaker) + u"\\2";
  store_.values[117] = 1.5F;  // Param118
  store_.values[166] = 2.5F;  // Param167
  store_.values[167] = 9.0F;  // Param168, the mirror of Param118
  int checked = 0;
  machine_.events.SetOnSet([&](const std::u16string&) {
    EXPECT_EQ(support::GetFloat(machine_.registry, set, u"Param118"), 1.5F);
    EXPECT_EQ(support::GetFloat(machine_.registry, set, u"Param168"), 1.5F);
    EXPECT_EQ(support::GetFloat(machine_.registry, set, u"Param217"), 2.5F);
    ++checked;
  });
  SignalParameterChange(engine_, store_);
  EXPECT_EQ(checked, 6);
  EXPECT_THAT(machine_.events.Sets(),
              ElementsAre(Event(u"G", u"1"), Event(u"M", u"1"), Event(u"E", u"1"),
                          Event(u"G", u"3"), Event(u"M", u"3"), Event(u"E", u"3")));
  store_.activeSetting = u"";  // cannot be committed
  SignalParameterChange(engine_, store_);
  EXPECT_EQ(machine_.events.Sets().size(), 12U);
}

TEST_F(EngineLinkTest, ModeChangeSetsFourEventsOfEachActiveEndpointThenTheService) {
  machine_.events.Remove(Event(u"M", u"1"));
  SignalModeChange(engine_);
  const std::vector<std::u16string> sets = {Event(u"G", u"1"), Event(u"E", u"1"), Event(u"S", u"1"),
                                            Event(u"G", u"3"), Event(u"M", u"3"), Event(u"E", u"3"),
                                            Event(u"S", u"3"), kService};
  using enum platform::FakeNamedEvents::Action;
  std::vector<platform::FakeNamedEvents::Call> calls;
  for (const std::u16string& name : sets) {
    calls.insert(calls.end(), {{Open, name}, {Set, name}, {Close, name}});
    if (name == sets[0]) calls.push_back({FailedOpen, Event(u"M", u"1")});
  }
  EXPECT_EQ(machine_.events.Calls(), calls) << "each is closed before the next is opened";

  machine_.events.ClearCalls();
  machine_.audioDevices.Fail(platform::AudioStep::EnumerateEndpoints);
  SignalParameterChange(engine_, store_);
  SignalModeChange(engine_);
  EXPECT_THAT(machine_.events.Sets(), ElementsAre(kService));
}

TEST_F(EngineLinkTest, NamesAreBuiltFromAnyGuidAndCut) {
  machine_.audioDevices.Remove(u"speaker");
  machine_.audioDevices.Remove(u"screen");
  Add({.id = u"nameless"});
  Add({.id = u"long", .guid = std::u16string(99, u'g')});
  const std::u16string full = Event(u"G", std::u16string(99, u'g'));
  SignalParameterChange(engine_, store_);
  EXPECT_EQ(machine_.events.Sets().at(0), Event(u"G", u""));
  EXPECT_EQ(machine_.events.Sets().at(3), full);
  EXPECT_EQ(EndpointEventName(u"1234567890", std::u16string(300, u'x')),
            u"1234567890" + std::u16string(139, u'x'));
}

}  // namespace
}  // namespace engine_link
