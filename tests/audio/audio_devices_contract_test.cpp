// What every backend of the audio devices promises, whatever stands behind it.
#include <gmock/gmock.h>

#include <chrono>
#include <future>

#include "tests/audio/audio_machines.h"
#include "tests/audio/recording_sink.h"
#include "tests/support/lacks.h"

namespace support {
namespace {

using namespace std::chrono_literals;
using platform::DataFlow;
using platform::DeviceRole;
using platform::HResult;
using Kind = platform::EndpointReportKind;

class AudioDevicesContract : public SkipsWhatLacks,
                             public testing::WithParamInterface<AudioMachineMaker> {
 protected:
  std::vector<std::u16string> Ids() {
    std::vector<std::u16string> ids;
    const auto endpoints = machine_->Devices().CreateEnumerator()->EnumerateEndpoints(
        DataFlow::Render, platform::kDeviceStateActive);
    for (std::uint32_t i = 0; endpoints != nullptr && i < endpoints->Count(); ++i) {
      ids.push_back(endpoints->Item(i)->Id().value_or(u""));
    }
    return ids;
  }
  std::u16string DefaultId() { return DefaultIdOf(machine_->Devices()); }

  const std::unique_ptr<AudioMachine> machine_ = GetParam()();
};

INSTANTIATE_TEST_SUITE_P(Machines, AudioDevicesContract, testing::ValuesIn(AudioMachines()));

TEST_P(AudioDevicesContract, TellsEveryEndpointAndItsProperties) {
  const auto enumerator = machine_->Devices().CreateEnumerator();
  const auto endpoints =
      enumerator->EnumerateEndpoints(DataFlow::Render, platform::kDeviceStateActive);
  ASSERT_NE(endpoints, nullptr);
  ASSERT_EQ(endpoints->Count(), 2U);
  EXPECT_EQ(endpoints->Item(2), nullptr);
  EXPECT_NE(endpoints->Item(0)->Id(), endpoints->Item(1)->Id());
  for (std::uint32_t i = 0; i < 2; ++i) {
    const auto device = endpoints->Item(i);
    EXPECT_EQ(device->State(), platform::kDeviceStateActive);
    const auto properties = device->OpenPropertyStore();
    ASSERT_NE(properties, nullptr);
    const auto guid = properties->GetString(platform::kEndpointGuidProperty);
    EXPECT_TRUE(platform::GuidFromString(guid.value_or(u"")));
    EXPECT_TRUE(platform::GuidFromString(
        properties->GetString(platform::kEndpointJackSubTypeProperty).value_or(u"")));
    EXPECT_TRUE(properties->GetString(platform::kDeviceInterfaceFriendlyNameProperty));
    EXPECT_FALSE(properties->GetString({platform::kEndpointGuidProperty.format, 77}));
    EXPECT_EQ(device->ActivateMeter()->PeakValue(),
              machine_->HasMeters() ? std::optional(0.0F) : std::nullopt);
  }
  EXPECT_EQ(DefaultId(), Ids()[0]);

  const auto unplugged =
      enumerator->EnumerateEndpoints(DataFlow::Render, platform::kDeviceStateUnplugged);
  ASSERT_NE(unplugged, nullptr);
  EXPECT_EQ(unplugged->Count(), 0U);
  const auto capture =
      enumerator->EnumerateEndpoints(DataFlow::Capture, platform::kDeviceStateActive);
  EXPECT_TRUE(capture == nullptr || capture->Count() == 0);
  EXPECT_EQ(enumerator->DefaultEndpoint(DataFlow::Capture, DeviceRole::Console), nullptr);
}

TEST_P(AudioDevicesContract, ReportsChangesOnAThreadOfItsOwn) {
  const std::vector<std::u16string> ids = Ids();
  ASSERT_EQ(ids.size(), 2U);
  std::u16string seenInside;
  RecordingSink sink([&] { seenInside = DefaultId(); });
  ASSERT_EQ(machine_->Devices().CreateEnumerator()->RegisterCallback(sink), HResult::Ok);
  machine_->MakeDefault(1);
  EXPECT_TRUE(sink.WaitFor({Kind::DefaultChanged, ids[1]}, 10s));
  EXPECT_NE(sink.CallingThread(), std::this_thread::get_id());
  EXPECT_EQ(DefaultId(), ids[1]);
  EXPECT_EQ(machine_->Devices().CreateEnumerator()->UnregisterCallback(sink), HResult::Ok);
  EXPECT_EQ(seenInside, ids[1]) << "the service answers inside a report";
}

TEST_P(AudioDevicesContract, ReportsAnEndpointThatGoes) {
  const std::vector<std::u16string> ids = Ids();
  RecordingSink sink;
  ASSERT_EQ(machine_->Devices().CreateEnumerator()->RegisterCallback(sink), HResult::Ok);
  machine_->Remove(0);
  EXPECT_TRUE(sink.WaitFor({Kind::Removed, ids[0]}, 10s));
  EXPECT_THAT(Ids(), testing::ElementsAre(ids[1]));
  EXPECT_EQ(machine_->Devices().CreateEnumerator()->UnregisterCallback(sink), HResult::Ok);
}

TEST_P(AudioDevicesContract, NoReportRunsOnceUnregisteringHasReturned) {
  std::promise<void> entered;
  std::atomic<int> running = 0;
  std::once_flag once;
  RecordingSink sink([&] {
    ++running;
    std::call_once(once, [&] { entered.set_value(); });
    std::this_thread::sleep_for(100ms);
    --running;
  });
  const auto enumerator = machine_->Devices().CreateEnumerator();
  // A change is one to a default that was seen.
  ASSERT_EQ(DefaultId(), Ids()[0]);
  ASSERT_EQ(enumerator->RegisterCallback(sink), HResult::Ok);
  EXPECT_GT(sink.References(), 1U);
  machine_->MakeDefault(1);
  EXPECT_EQ(entered.get_future().wait_for(10s), std::future_status::ready);

  EXPECT_EQ(enumerator->UnregisterCallback(sink), HResult::Ok);
  EXPECT_EQ(running, 0);
  EXPECT_EQ(sink.References(), 1U);
  sink.Forget();
  machine_->MakeDefault(0);
  EXPECT_FALSE(sink.WaitForAny(300ms));
  EXPECT_NE(enumerator->UnregisterCallback(sink), HResult::Ok) << "it is no longer registered";
}

}  // namespace
}  // namespace support
