// What is asked of the audio service: the endpoints, the default one, and whether it is supported.
#include <gtest/gtest.h>

#include "endpoints/endpoint_support.h"
#include "endpoints/enumeration.h"
#include "platform/fake/fake_audio_devices.h"

namespace endpoints {
namespace {

using platform::AudioStep;
using enum EndpointWarning;

const std::u16string kRealtek = u"Realtek High Definition Audio";

TEST(Enumeration, EveryActiveOrUnpluggedEndpointHasItsRecord) {
  platform::FakeAudioDevices devices;
  EXPECT_TRUE(EnumerateRenderEndpoints(devices).empty());
  devices.Add({.id = u"a", .guid = u"{A}"});
  devices.Add({.id = u"b", .state = 8, .guid = u"{B}"});
  devices.Add({.id = u"disabled", .state = 2, .guid = u"{OFF}"});
  devices.Add({.id = u"absent", .state = 4, .guid = u"{GONE}"});
  devices.Add({.id = u"lost", .guid = u"{LOST}", .failures = {AudioStep::Item}});
  devices.Add({.id = u"stateless", .guid = u"{S}", .failures = {AudioStep::State}});
  devices.Add({.id = u"closed", .guid = u"{C}", .failures = {AudioStep::OpenPropertyStore}});
  devices.Add({.id = u"nameless"});
  devices.Add({.id = u"long", .guid = std::u16string(150, u'x')});
  std::u16string told;
  for (const EndpointRecord& record : EnumerateRenderEndpoints(devices)) {
    told += (record.active == 1 ? u" on " : u" off ") + record.endpointGuid;
  }
  EXPECT_EQ(told, u" on {A} off {B} off  off {S} on  on  on " + std::u16string(99, u'x'));
  for (const AudioStep step : {AudioStep::CreateEnumerator, AudioStep::EnumerateEndpoints}) {
    devices.Fail(step);
    EXPECT_TRUE(EnumerateRenderEndpoints(devices).empty());
    devices.Heal(step);
  }
  EXPECT_EQ(devices.LiveObjects(), 0);
}

TEST(DefaultEndpoint, StringsThatAreNotObtainedStayAsTheyWere) {
  const std::set<AudioStep> kClosed = {AudioStep::OpenPropertyStore};
  const std::u16string longText(150, u'x');
  const struct {
    const char* what;
    platform::FakeEndpoint endpoint;
    bool expected;
    std::u16string jack, guid;
  } cases[] = {
      {"both", {.guid = u"{G}", .jackSubType = u"{J}"}, true, u"{J}", u"{G}"},
      {"no GUID", {.jackSubType = u"{J}"}, true, u"{J}", u"old"},
      {"no jack", {.guid = u"{G}"}, true, u"old", u"{G}"},
      {"none", {}, false, u"old", u"old"},
      {"empty", {.guid = u"", .jackSubType = u""}, true, u"", u""},
      {"closed", {.guid = u"{G}", .failures = kClosed}, false, u"old", u"old"},
      {"not active", {.state = 8, .guid = u"{G}"}, false, u"old", u"old"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    platform::FakeAudioDevices devices;
    devices.Add(c.endpoint);
    DefaultEndpointInfo info{u"old", u"old"};
    EXPECT_EQ(GetDefaultEndpointInfo(devices, info), c.expected);
    EXPECT_EQ(info.jackSubType, c.jack);
    EXPECT_EQ(info.endpointGuid, c.guid);
    devices.Fail(AudioStep::CreateEnumerator);
    EXPECT_FALSE(GetDefaultEndpointInfo(devices, info));
  }
  platform::FakeAudioDevices devices;
  devices.Add({.guid = longText, .jackSubType = longText});
  DefaultEndpointInfo info;
  EXPECT_TRUE(GetDefaultEndpointInfo(devices, info));
  EXPECT_EQ(info.jackSubType, longText.substr(0, 99));
  EXPECT_EQ(info.endpointGuid, longText.substr(0, 99));
  EXPECT_TRUE(GetDefaultEndpointInfo(devices, info, kWatcherGuidCapacity));
  EXPECT_EQ(info.endpointGuid, longText.substr(0, 49));
}

TEST(EndpointSupport, NeedsSupportedDefaultAndSilenceElsewhere) {
  const struct {
    const char* what;
    std::u16string defaultAdapter;
    platform::FakeEndpoint other;
    EndpointWarning expected;
  } cases[] = {
      {"quiet", kRealtek, {.adapter = u"HDMI"}, Hidden},
      {"name in the middle", u"2 - Conexant SmartAudio HD (1)", {}, Hidden},
      {"SST", u"Intel SST Audio Device", {}, Hidden},
      {"shorter", u"Conexant SmartAudio", {}, Shown},
      {"shorter SST", u"Intel SST Audio", {}, Shown},
      {"letter case", u"realtek high definition audio", {}, Shown},
      {"other plays", kRealtek, {.adapter = u"HDMI", .peak = 0.01F}, Shown},
      {"nameless plays", kRealtek, {.peak = 0.01F}, Shown},
      {"second supported plays", kRealtek, {.adapter = kRealtek, .peak = 1.0F}, Hidden},
      {"unplugged plays", kRealtek, {.state = 8, .peak = 1.0F}, Hidden},
      {"default elsewhere", u"USB headset", {.adapter = kRealtek}, Shown},
      {"no meter", kRealtek, {.peak = 1.0F, .failures = {AudioStep::ActivateMeter}}, Hidden},
      {"no peak", kRealtek, {.peak = 1.0F, .failures = {AudioStep::PeakValue}}, Hidden},
      {"closed", kRealtek, {.peak = 1.0F, .failures = {AudioStep::OpenPropertyStore}}, Hidden},
      {"no ID", kRealtek, {.peak = 1.0F, .failures = {AudioStep::Id}}, Hidden},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    platform::FakeAudioDevices devices;
    devices.Add(c.other);
    devices.Add({.id = u"d", .adapter = c.defaultAdapter});
    devices.SetDefault(u"d");
    EXPECT_EQ(EvaluateEndpointSupport(devices), c.expected);
    EXPECT_EQ(devices.LiveObjects(), 0);
  }
}

TEST(EndpointSupport, EveryFailureOfTheServiceShowsTheWarning) {
  platform::FakeAudioDevices devices;
  EXPECT_EQ(EvaluateEndpointSupport(devices), Shown) << "no endpoint at all";
  devices.Add({.id = u"d", .adapter = kRealtek, .peak = 0.5F});
  devices.SetDefault(u"d");
  for (const AudioStep step :
       {AudioStep::CreateEnumerator, AudioStep::EnumerateEndpoints, AudioStep::DefaultEndpoint,
        AudioStep::Item, AudioStep::Id, AudioStep::OpenPropertyStore, AudioStep::GetString}) {
    EXPECT_EQ(EvaluateEndpointSupport(devices), Hidden);
    devices.Fail(step);
    EXPECT_EQ(EvaluateEndpointSupport(devices), Shown);
    devices.Heal(step);
  }
}

}  // namespace
}  // namespace endpoints
