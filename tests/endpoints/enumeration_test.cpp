#include "endpoints/enumeration.h"

#include <gtest/gtest.h>

#include "platform/fake/fake_audio_devices.h"

namespace endpoints {
namespace {

using platform::AudioStep;

constexpr std::uint32_t kDisabled = 2;

TEST(Enumeration, EveryActiveOrUnpluggedEndpointHasItsRecord) {
  platform::FakeAudioDevices devices;
  devices.Add({.id = u"a", .guid = u"{A}"});
  devices.Add({.id = u"b", .state = platform::kDeviceStateUnplugged, .guid = u"{B}"});
  devices.Add({.id = u"off", .state = kDisabled, .guid = u"{OFF}"});
  devices.Add({.id = u"lost", .guid = u"{LOST}", .failures = {AudioStep::Item}});
  devices.Add({.id = u"stateless", .guid = u"{S}", .failures = {AudioStep::State}});
  devices.Add({.id = u"closed", .guid = u"{C}", .failures = {AudioStep::OpenPropertyStore}});
  devices.Add({.id = u"nameless"});
  devices.Add({.id = u"long", .guid = std::u16string(150, u'x')});
  const struct {
    std::uint32_t active;
    std::u16string guid;
  } expected[] = {{1, u"{A}"},
                  {0, u"{B}"},
                  {0, u""},
                  {0, u"{S}"},
                  {1, u""},
                  {1, u""},
                  {1, std::u16string(99, u'x')}};
  const std::vector<EndpointRecord> records = EnumerateRenderEndpoints(devices);
  ASSERT_EQ(records.size(), std::size(expected));
  for (std::size_t i = 0; i < records.size(); ++i) {
    EXPECT_EQ(records[i].active, expected[i].active) << i;
    EXPECT_EQ(records[i].endpointGuid, expected[i].guid) << i;
  }
  EXPECT_EQ(devices.LiveObjects(), 0);
}

TEST(Enumeration, FailuresAndNoEndpointsGiveNothing) {
  platform::FakeAudioDevices devices;
  EXPECT_TRUE(EnumerateRenderEndpoints(devices).empty());
  devices.Add({.id = u"a", .guid = u"{A}"});
  for (const AudioStep step : {AudioStep::CreateEnumerator, AudioStep::EnumerateEndpoints}) {
    devices.Fail(step);
    EXPECT_TRUE(EnumerateRenderEndpoints(devices).empty());
    devices.Heal(step);
  }
  EXPECT_EQ(EnumerateRenderEndpoints(devices).size(), 1U);
}

TEST(DefaultEndpoint, StringsThatAreNotObtainedStayAsTheyWere) {
  const std::u16string longText(150, u'x');
  const struct {
    const char* what;
    platform::FakeEndpoint endpoint;
    std::size_t guidCapacity;
    bool expected;
    std::u16string jack;
    std::u16string guid;
  } cases[] = {
      {"both", {.id = u"a", .guid = u"{G}", .jackSubType = u"{J}"}, 100, true, u"{J}", u"{G}"},
      {"no GUID", {.id = u"a", .jackSubType = u"{J}"}, 100, true, u"{J}", u"old guid"},
      {"no jack", {.id = u"a", .guid = u"{G}"}, 100, true, u"old jack", u"{G}"},
      {"none", {.id = u"a"}, 100, false, u"old jack", u"old guid"},
      {"empty", {.id = u"a", .guid = u"", .jackSubType = u""}, 100, true, u"", u""},
      {"long",
       {.id = u"a", .guid = longText, .jackSubType = longText},
       100,
       true,
       longText.substr(0, 99),
       longText.substr(0, 99)},
      {"long for a watcher",
       {.id = u"a", .guid = longText, .jackSubType = longText},
       kWatcherGuidCapacity,
       true,
       longText.substr(0, 99),
       longText.substr(0, 49)},
      {"no properties",
       {.id = u"a", .guid = u"{G}", .failures = {AudioStep::OpenPropertyStore}},
       100,
       false,
       u"old jack",
       u"old guid"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    platform::FakeAudioDevices devices;
    devices.Add(c.endpoint);
    devices.SetDefault(u"a");
    DefaultEndpointInfo info{u"old jack", u"old guid"};
    EXPECT_EQ(GetDefaultEndpointInfo(devices, info, c.guidCapacity), c.expected);
    EXPECT_EQ(info.jackSubType, c.jack);
    EXPECT_EQ(info.endpointGuid, c.guid);
    EXPECT_EQ(devices.LiveObjects(), 0);
  }
}

TEST(DefaultEndpoint, NoneOrNoServiceGivesFalse) {
  platform::FakeAudioDevices devices;
  devices.Add({.id = u"a", .guid = u"{G}"});
  DefaultEndpointInfo info;
  EXPECT_FALSE(GetDefaultEndpointInfo(devices, info));
  devices.SetDefault(u"a");
  devices.Fail(AudioStep::CreateEnumerator);
  EXPECT_FALSE(GetDefaultEndpointInfo(devices, info));
  EXPECT_EQ(info.endpointGuid, u"");
}

}  // namespace
}  // namespace endpoints
