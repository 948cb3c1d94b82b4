#include "endpoints/endpoint_support.h"

#include <gtest/gtest.h>

#include "platform/fake/fake_audio_devices.h"

namespace endpoints {
namespace {

using platform::AudioStep;

const std::u16string kRealtek = u"Realtek High Definition Audio";

TEST(EndpointSupport, NeedsSupportedDefaultAndSilenceElsewhere) {
  using enum EndpointWarning;
  const struct {
    const char* what;
    std::u16string defaultAdapter;
    platform::FakeEndpoint other;
    EndpointWarning expected;
  } cases[] = {
      {"quiet", kRealtek, {.id = u"o", .adapter = u"HDMI"}, Hidden},
      {"name in the middle", u"2 - Conexant SmartAudio HD (1)", {.id = u"o"}, Hidden},
      {"SST", u"Intel SST Audio Device", {.id = u"o"}, Hidden},
      {"letter case", u"realtek high definition audio", {.id = u"o"}, Shown},
      {"other plays", kRealtek, {.id = u"o", .adapter = u"HDMI", .peak = 0.01F}, Shown},
      {"nameless plays", kRealtek, {.id = u"o", .peak = 0.01F}, Shown},
      {"second supported plays", kRealtek, {.id = u"o", .adapter = kRealtek, .peak = 1.0F}, Hidden},
      {"unplugged one plays",
       kRealtek,
       {.id = u"o", .state = platform::kDeviceStateUnplugged, .peak = 1.0F},
       Hidden},
      {"default elsewhere", u"USB headset", {.id = u"o", .adapter = kRealtek}, Shown},
      {"meter fails",
       kRealtek,
       {.id = u"o", .peak = 1.0F, .failures = {AudioStep::ActivateMeter}},
       Hidden},
      {"peak fails",
       kRealtek,
       {.id = u"o", .peak = 1.0F, .failures = {AudioStep::PeakValue}},
       Hidden},
      {"no properties",
       kRealtek,
       {.id = u"o", .peak = 1.0F, .failures = {AudioStep::OpenPropertyStore}},
       Hidden},
      {"no ID", kRealtek, {.id = u"o", .peak = 1.0F, .failures = {AudioStep::Id}}, Hidden},
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
  EXPECT_EQ(EvaluateEndpointSupport(devices), EndpointWarning::Shown) << "no endpoint at all";
  devices.Add({.id = u"d", .adapter = kRealtek, .peak = 0.5F});
  devices.SetDefault(u"d");
  for (const AudioStep step :
       {AudioStep::CreateEnumerator, AudioStep::EnumerateEndpoints, AudioStep::DefaultEndpoint,
        AudioStep::Item, AudioStep::Id, AudioStep::OpenPropertyStore, AudioStep::GetString}) {
    EXPECT_EQ(EvaluateEndpointSupport(devices), EndpointWarning::Hidden);
    devices.Fail(step);
    EXPECT_EQ(EvaluateEndpointSupport(devices), EndpointWarning::Shown);
    devices.Heal(step);
  }
}

}  // namespace
}  // namespace endpoints
