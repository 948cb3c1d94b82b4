#include "endpoints/endpoint_support.h"

#include <gtest/gtest.h>

#include "tests/endpoints/endpoint_builder.h"

namespace endpoints {
namespace {

using platform::AudioStep;

const std::u16string kRealtek = u"Realtek High Definition Audio";

TEST(EndpointSupport, NeedsSupportedDefaultAndSilenceElsewhere) {
  const struct {
    const char* what;
    platform::FakeEndpoint byDefault;
    platform::FakeEndpoint other;
    EndpointWarning expected;
  } cases[] = {
      {"quiet", EndpointBuilder(u"d").Adapter(kRealtek).Peak(0.5F),
       EndpointBuilder(u"o").Adapter(u"HDMI"), EndpointWarning::Hidden},
      {"name in the middle", EndpointBuilder(u"d").Adapter(u"2 - Conexant SmartAudio HD (1)"),
       EndpointBuilder(u"o").Adapter(u"HDMI"), EndpointWarning::Hidden},
      {"SST", EndpointBuilder(u"d").Adapter(u"Intel SST Audio Device"),
       EndpointBuilder(u"o").Adapter(u"HDMI"), EndpointWarning::Hidden},
      {"letter case", EndpointBuilder(u"d").Adapter(u"realtek high definition audio"),
       EndpointBuilder(u"o").Adapter(u"HDMI"), EndpointWarning::Shown},
      {"other plays", EndpointBuilder(u"d").Adapter(kRealtek),
       EndpointBuilder(u"o").Adapter(u"HDMI").Peak(0.01F), EndpointWarning::Shown},
      {"nameless plays", EndpointBuilder(u"d").Adapter(kRealtek), EndpointBuilder(u"o").Peak(0.01F),
       EndpointWarning::Shown},
      {"second supported plays", EndpointBuilder(u"d").Adapter(kRealtek),
       EndpointBuilder(u"o").Adapter(kRealtek).Peak(1.0F), EndpointWarning::Hidden},
      {"unplugged one plays", EndpointBuilder(u"d").Adapter(kRealtek),
       EndpointBuilder(u"o").Adapter(u"HDMI").Peak(1.0F).State(platform::kDeviceStateUnplugged),
       EndpointWarning::Hidden},
      {"default elsewhere", EndpointBuilder(u"d").Adapter(u"USB headset"),
       EndpointBuilder(u"o").Adapter(kRealtek), EndpointWarning::Shown},
      {"meter fails", EndpointBuilder(u"d").Adapter(kRealtek),
       EndpointBuilder(u"o").Adapter(u"HDMI").Peak(1.0F).Fails(AudioStep::ActivateMeter),
       EndpointWarning::Hidden},
      {"peak fails", EndpointBuilder(u"d").Adapter(kRealtek),
       EndpointBuilder(u"o").Adapter(u"HDMI").Peak(1.0F).Fails(AudioStep::PeakValue),
       EndpointWarning::Hidden},
      {"other has no properties", EndpointBuilder(u"d").Adapter(kRealtek),
       EndpointBuilder(u"o").Peak(1.0F).Fails(AudioStep::OpenPropertyStore),
       EndpointWarning::Hidden},
      {"other has no ID", EndpointBuilder(u"d").Adapter(kRealtek),
       EndpointBuilder(u"o").Peak(1.0F).Fails(AudioStep::Id), EndpointWarning::Hidden},
      {"default has no ID", EndpointBuilder(u"d").Adapter(kRealtek).Fails(AudioStep::Id),
       EndpointBuilder(u"o"), EndpointWarning::Shown},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    platform::FakeAudioDevices devices;
    devices.Add(c.other);
    devices.Add(c.byDefault);
    devices.SetDefault(u"d");
    EXPECT_EQ(EvaluateEndpointSupport(devices), c.expected);
    EXPECT_EQ(devices.LiveObjects(), 0);
  }
}

TEST(EndpointSupport, EveryFailureOfTheServiceShowsTheWarning) {
  platform::FakeAudioDevices devices;
  EXPECT_EQ(EvaluateEndpointSupport(devices), EndpointWarning::Shown) << "no endpoint at all";
  devices.Add(EndpointBuilder(u"d").Adapter(kRealtek));
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
