#include "endpoints/notification_client.h"

#include <gmock/gmock.h>

#include <chrono>
#include <functional>

#include "platform/com_apartment.h"
#include "platform/fake/fake_audio_devices.h"
#include "platform/fake/fake_clock.h"
#include "tests/endpoints/apartment.h"

platform::ComApartment::ComApartment() : joined_(true) {
  ++endpoints::joinedApartments;
}
platform::ComApartment::~ComApartment() {
  --endpoints::joinedApartments;
}

namespace endpoints {
namespace {

using platform::AudioStep;
using platform::HResult;
using enum EndpointWarning;

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
  CMMNotificationClient client_{devices_, clock_};
};

TEST_F(NotificationClientTest, AnswersForItsTwoInterfaces) {
  void* const sink = static_cast<platform::EndpointNotificationSink*>(&client_);
  const struct {
    const char16_t* id;
    HResult result;
    void* object;
  } cases[] = {{u"{00000000-0000-0000-C000-000000000046}", HResult::Ok, sink},
               {u"{7991EEC9-7E89-4D85-8390-6C703CEC60C0}", HResult::Ok, sink},
               {u"{7991EEC9-7E89-4D85-8390-6C703CEC60C1}", HResult::NoInterface, nullptr}};
  for (const auto& c : cases) {
    void* object = this;
    EXPECT_EQ(client_.QueryInterface(*platform::GuidFromString(c.id), &object), c.result);
    EXPECT_EQ(object, c.object);
  }
  EXPECT_EQ(client_.AddRef(), 4U) << "two look-ups and the first reference";
  EXPECT_EQ(client_.Release(), 3U);
}

TEST_F(NotificationClientTest, LastReleaseDestroysAndDestructionUnregisters) {
  auto* const client = new CMMNotificationClient(devices_, clock_);
  EXPECT_EQ(client->Register(), HResult::Ok);
  EXPECT_TRUE(devices_.HasSinks());
  EXPECT_EQ(client->Release(), 1U) << "the service holds one";
  EXPECT_EQ(client->Release(), 0U);
  EXPECT_FALSE(devices_.HasSinks());
}

TEST_F(NotificationClientTest, RefusedRegistrationNeverWarns) {
  devices_.SetPeak(u"screen", 0.5F);
  for (const AudioStep step : {AudioStep::CreateEnumerator, AudioStep::RegisterCallback}) {
    devices_.Fail(step);
    EXPECT_EQ(client_.Register(), HResult::Fail);
    devices_.Heal(step);
    client_.Unregister();
  }
  EXPECT_EQ(client_.endpointWarning, Hidden);
  EXPECT_EQ(devices_.Calls(AudioStep::UnregisterCallback), 0);
  EXPECT_TRUE(clock_.Sleeps().empty());
}

TEST_F(NotificationClientTest, EveryKindOfReportEvaluatesWhatHoldsAfterThePause) {
  const std::function<HResult()> reports[] = {
      [&] { return client_.Register(); },
      [&] { return client_.OnDeviceStateChanged(u"x", 8); },
      [&] { return client_.OnDeviceAdded(u"x"); },
      [&] { return client_.OnDeviceRemoved(u"x"); },
      [&] {
        return client_.OnDefaultDeviceChanged(platform::DataFlow::Capture,
                                              platform::DeviceRole::Communications, u"x");
      },
      [&] { return client_.OnPropertyValueChanged(u"x", platform::kEndpointGuidProperty); },
  };
  for (const auto& report : reports) {
    for (const auto& [peak, warning] : {std::pair(0.5F, Shown), std::pair(0.0F, Hidden)}) {
      clock_.SetOnSleep([&, peak = peak] {
        EXPECT_EQ(joinedApartments, 1);
        clock_.SetOnSleep(nullptr);
        devices_.SetPeak(u"screen", peak);
      });
      EXPECT_EQ(report(), HResult::Ok);
      EXPECT_EQ(joinedApartments, 0);
      EXPECT_EQ(client_.endpointWarning, warning);
      client_.Unregister();
    }
  }
  // The service's own thread may report the changed peak of the two registrations, too.
  EXPECT_THAT(clock_.Sleeps(), testing::Each(std::chrono::milliseconds(100)));
  EXPECT_GE(clock_.Sleeps().size(), 12U);
  EXPECT_EQ(devices_.Calls(AudioStep::UnregisterCallback), 2) << "once for each registration";
}

}  // namespace
}  // namespace endpoints
