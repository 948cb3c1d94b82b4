#include "endpoints/notification_client.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>

#include "platform/fake/fake_audio_devices.h"
#include "platform/fake/fake_clock.h"

namespace endpoints {
namespace {

using platform::AudioStep;
using platform::HResult;

class NotificationClientTest : public testing::Test {
 protected:
  NotificationClientTest() {
    devices_.Add({.id = u"speaker", .adapter = u"Realtek High Definition Audio"});
    devices_.Add({.id = u"screen", .adapter = u"HDMI"});
    devices_.SetDefault(u"speaker");
    devices_.WaitUntilDelivered();
  }

  platform::FakeAudioDevices devices_;
  platform::FakeClock clock_;
};

TEST_F(NotificationClientTest, AnswersForItsTwoInterfaces) {
  CMMNotificationClient client(devices_, clock_);
  const auto unknown = platform::GuidFromString(u"{00000000-0000-0000-C000-000000000046}");
  const auto notification = platform::GuidFromString(u"{7991EEC9-7E89-4D85-8390-6C703CEC60C0}");
  const auto foreign = platform::GuidFromString(u"{7991EEC9-7E89-4D85-8390-6C703CEC60C1}");
  auto* const sink = static_cast<platform::EndpointNotificationSink*>(&client);
  void* object = nullptr;
  EXPECT_EQ(client.QueryInterface(*unknown, &object), HResult::Ok);
  EXPECT_EQ(object, sink);
  object = nullptr;
  EXPECT_EQ(client.QueryInterface(*notification, &object), HResult::Ok);
  EXPECT_EQ(object, sink);
  EXPECT_EQ(client.QueryInterface(*foreign, &object), HResult::NoInterface);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(client.AddRef(), 4U) << "two look-ups and the first reference";
  EXPECT_EQ(client.Release(), 3U);
}

TEST_F(NotificationClientTest, LastReleaseDestroys) {
  auto* const client = new CMMNotificationClient(devices_, clock_);
  EXPECT_EQ(client->Register(), HResult::Ok);
  client->Unregister();
  EXPECT_EQ(client->AddRef(), 2U) << "the service has given its reference back";
  EXPECT_EQ(client->Release(), 1U);
  EXPECT_EQ(client->Release(), 0U);  // else the leak check finds it
}

TEST_F(NotificationClientTest, DestructionUnregisters) {
  {
    CMMNotificationClient client(devices_, clock_);
    EXPECT_EQ(client.Register(), HResult::Ok);
    EXPECT_TRUE(devices_.HasSinks());
  }
  EXPECT_FALSE(devices_.HasSinks());
}

TEST_F(NotificationClientTest, RegisterEvaluatesOnceAfterItsPause) {
  devices_.SetPeak(u"screen", 0.5F);
  CMMNotificationClient client(devices_, clock_);
  EXPECT_EQ(client.endpointWarning, EndpointWarning::Hidden);
  EXPECT_EQ(client.Register(), HResult::Ok);
  EXPECT_EQ(client.endpointWarning, EndpointWarning::Shown);
  EXPECT_EQ(clock_.Sleeps(), std::vector{std::chrono::milliseconds(100)});
}

TEST_F(NotificationClientTest, RefusedRegistrationNeverWarns) {
  devices_.SetPeak(u"screen", 0.5F);
  for (const AudioStep step : {AudioStep::CreateEnumerator, AudioStep::RegisterCallback}) {
    CMMNotificationClient client(devices_, clock_);
    devices_.Fail(step);
    EXPECT_NE(client.Register(), HResult::Ok);
    EXPECT_EQ(client.endpointWarning, EndpointWarning::Hidden);
    devices_.Heal(step);
    const int calls = devices_.Calls(AudioStep::UnregisterCallback);
    client.Unregister();
    EXPECT_EQ(devices_.Calls(AudioStep::UnregisterCallback), calls);
  }
  EXPECT_TRUE(clock_.Sleeps().empty());
}

TEST_F(NotificationClientTest, EveryKindOfReportEvaluatesWhatHoldsAfterThePause) {
  CMMNotificationClient client(devices_, clock_);
  const std::function<HResult()> reports[] = {
      [&] { return client.OnDeviceStateChanged(u"x", 8); },
      [&] { return client.OnDeviceAdded(u"x"); },
      [&] { return client.OnDeviceRemoved(u"x"); },
      [&] {
        return client.OnDefaultDeviceChanged(platform::DataFlow::Capture,
                                             platform::DeviceRole::Communications, u"x");
      },
      [&] { return client.OnPropertyValueChanged(u"x", platform::kEndpointGuidProperty); },
  };
  for (const auto& report : reports) {
    clock_.SetOnSleep([&] { devices_.SetPeak(u"screen", 0.5F); });
    EXPECT_EQ(report(), HResult::Ok);
    EXPECT_EQ(client.endpointWarning, EndpointWarning::Shown);
    clock_.SetOnSleep([&] { devices_.SetPeak(u"screen", 0.0F); });
    EXPECT_EQ(report(), HResult::Ok);
    EXPECT_EQ(client.endpointWarning, EndpointWarning::Hidden);
  }
  EXPECT_EQ(clock_.Sleeps().size(), 10U);
}

TEST_F(NotificationClientTest, FollowsTheServiceUntilUnregistered) {
  CMMNotificationClient client(devices_, clock_);
  ASSERT_EQ(client.Register(), HResult::Ok);
  EXPECT_EQ(client.endpointWarning, EndpointWarning::Hidden);
  devices_.SetPeak(u"screen", 0.5F);
  devices_.WaitUntilDelivered();
  EXPECT_EQ(client.endpointWarning, EndpointWarning::Shown);

  client.Unregister();
  EXPECT_FALSE(devices_.HasSinks());
  devices_.Remove(u"screen");
  devices_.WaitUntilDelivered();
  EXPECT_EQ(client.endpointWarning, EndpointWarning::Shown);
}

}  // namespace
}  // namespace endpoints
