#include "engine_link/engine_signals.h"

#include <gmock/gmock.h>

#include "tests/store/engine_fixture.h"
#include "tests/support/registry_tree.h"

namespace store {
using engine_link::SignalModeChange;
using engine_link::SignalParameterChange;
namespace {

using platform::FakeNamedEvents;
using testing::ElementsAre;
using testing::IsEmpty;

class EngineSignalsTest : public EngineFixture {
 protected:
  EngineSignalsTest() {
    store_.pathKey = kSpeakerJack;
    store_.activeSetting = u"2";
  }

  ParameterStore store_;
};

TEST_F(EngineSignalsTest, EditIsMirroredAndWrittenBeforeTheFirstOfThreeEvents) {
  const std::u16string set =
      u"SOFTWARE\\Norvane\\Velsona\\Parameters\\" + kSpeakerJack + u"\\Settings\\2";
  store_.values[117] = 1.5F;  // Param118
  store_.values[166] = 2.5F;  // Param167
  store_.values[167] = 9.0F;  // Param168, the mirror of Param118
  int checked = 0;
  events_.SetOnSet([&](const std::u16string&) {
    EXPECT_EQ(support::GetFloat(registry_, set, u"Param118"), 1.5F);
    EXPECT_EQ(support::GetFloat(registry_, set, u"Param168"), 1.5F);
    EXPECT_EQ(support::GetFloat(registry_, set, u"Param217"), 2.5F);
    ++checked;
  });
  SignalParameterChange(engine_, store_);
  EXPECT_THAT(events_.Sets(),
              ElementsAre(EventName(u"GFX", kSpeakerGuid), EventName(u"MFX", kSpeakerGuid),
                          EventName(u"EFX", kSpeakerGuid), EventName(u"GFX", kScreenGuid),
                          EventName(u"MFX", kScreenGuid), EventName(u"EFX", kScreenGuid)));
  EXPECT_EQ(checked, 6);
  EXPECT_FALSE(support::GetValue(registry_, set, u"Param218").has_value());
}

TEST_F(EngineSignalsTest, ModeChangeSetsFourEventsOfEachActiveEndpointThenTheService) {
  events_.Remove(EventName(u"MFX", kSpeakerGuid));
  SignalModeChange(engine_);
  EXPECT_THAT(events_.Sets(),
              ElementsAre(EventName(u"GFX", kSpeakerGuid), EventName(u"EFX", kSpeakerGuid),
                          EventName(u"SFX", kSpeakerGuid), EventName(u"GFX", kScreenGuid),
                          EventName(u"MFX", kScreenGuid), EventName(u"EFX", kScreenGuid),
                          EventName(u"SFX", kScreenGuid), kServiceEventName));
}

TEST_F(EngineSignalsTest, EachEventIsClosedBeforeTheNextIsOpened) {
  using Action = FakeNamedEvents::Action;
  SignalModeChange(engine_);
  const auto& calls = events_.Calls();
  ASSERT_EQ(calls.size(), 27U);
  for (std::size_t i = 0; i < calls.size(); i += 3) {
    EXPECT_EQ(calls[i], (FakeNamedEvents::Call{Action::Open, calls[i].name}));
    EXPECT_EQ(calls[i + 1], (FakeNamedEvents::Call{Action::Set, calls[i].name}));
    EXPECT_EQ(calls[i + 2], (FakeNamedEvents::Call{Action::Close, calls[i].name}));
  }
}

TEST_F(EngineSignalsTest, WithoutEndpointsOnlyTheServiceHears) {
  audioDevices_.Fail(platform::AudioStep::EnumerateEndpoints);
  SignalParameterChange(engine_, store_);
  EXPECT_THAT(events_.Sets(), IsEmpty());
  SignalModeChange(engine_);
  EXPECT_THAT(events_.Sets(), ElementsAre(kServiceEventName));
}

TEST_F(EngineSignalsTest, NamesAreBuiltFromAnyGuidAndCut) {
  platform::FakeAudioDevices audioDevices;
  platform::FakeEndpoint endpoint;
  audioDevices.Add(endpoint);
  endpoint.id = u"long";
  endpoint.guid = std::u16string(300, u'g');
  audioDevices.Add(endpoint);
  platform::FakeNamedEvents events;
  const std::u16string cut = u"Global\\VelsonaGFXPropEvent" + std::u16string(99, u'g');
  events.Add(u"Global\\VelsonaGFXPropEvent");
  events.Add(cut);
  SignalParameterChange({registry_, events, audioDevices}, store_);
  EXPECT_THAT(events.Sets(), ElementsAre(u"Global\\VelsonaGFXPropEvent", cut));
}

TEST_F(EngineSignalsTest, FailedCommitStillSignals) {
  store_.activeSetting = u"";
  SignalParameterChange(engine_, store_);
  EXPECT_EQ(events_.Sets().size(), 6U);
}

}  // namespace
}  // namespace store
