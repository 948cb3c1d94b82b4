// The backend on a real audio server that comes, goes, hangs and plays.
#include <gmock/gmock.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <ctime>
#include <thread>

#include "platform/linux/audio/pulse_audio_devices.h"
#include "platform/linux/audio/pulse_endpoints.h"
#include "tests/audio/audio_machines.h"
#include "tests/audio/pulse_daemon.h"
#include "tests/audio/recording_sink.h"
#include "tests/support/eventually.h"

namespace support {
namespace {

using namespace std::chrono_literals;
using platform::DataFlow;
using platform::HResult;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Kind = platform::EndpointReportKind;

constexpr milliseconds kBound{250};
constexpr milliseconds kAtOnce{50};

class PulseMachine : public AudioMachine {
 public:
  platform::AudioDevices& Devices() override { return devices_; }
  void MakeDefault(int index) override {
    daemon_.Control({"set-default-sink", index == 0 ? "first" : "second"});
  }
  void Remove(int index) override { daemon_.RemoveSink(static_cast<std::size_t>(index)); }

 private:
  PulseDaemon daemon_{{"first", "second"}};
  platform::PulseAudioDevices devices_{{}, daemon_.Server()};
};

std::u16string IdOf(const std::string& sink) {
  return u"{0.0.0.00000000}." + platform::SinkGuid(sink);
}

class PulseDevicesTest : public testing::Test {
 protected:
  std::u16string DefaultId() { return DefaultIdOf(devices_); }

  // Asks for the default once and tells how long that took.
  milliseconds TimeOfAnswer() {
    const auto start = steady_clock::now();
    DefaultId();
    return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
  }

  std::optional<float> PeakOf(const std::string& sink) {
    const auto endpoints = devices_.CreateEnumerator()->EnumerateEndpoints(DataFlow::Render, 1);
    for (std::uint32_t i = 0; endpoints != nullptr && i < endpoints->Count(); ++i) {
      const auto device = endpoints->Item(i);
      if (device->Id() == IdOf(sink)) return device->ActivateMeter()->PeakValue();
    }
    return std::nullopt;
  }

  bool FirstBecomesDefault(milliseconds timeout) {
    return Eventually([&] { return DefaultId() == IdOf("first"); }, timeout);
  }

  void Register() { ASSERT_EQ(devices_.CreateEnumerator()->RegisterCallback(sink_), HResult::Ok); }
  void TearDown() override { devices_.CreateEnumerator()->UnregisterCallback(sink_); }

  PulseDaemon daemon_{{"first", "second"}};
  std::atomic<std::size_t> published_ = 0;
  platform::PulseAudioDevices devices_{
      [this](const platform::PulseState& state) { published_ = state.sinks.size(); },
      daemon_.Server()};
  RecordingSink sink_;
};

TEST_F(PulseDevicesTest, FollowsAServerThatIsKilledAndStartedAgain) {
  Register();
  ASSERT_TRUE(FirstBecomesDefault(10s));
  daemon_.Kill();
  EXPECT_TRUE(sink_.WaitFor({Kind::DefaultChanged, u""}, 10s));
  EXPECT_TRUE(sink_.WaitFor({Kind::Removed, IdOf("second")}, 10s));
  EXPECT_EQ(devices_.CreateEnumerator()->EnumerateEndpoints(DataFlow::Render, 9), nullptr);
  EXPECT_LT(TimeOfAnswer(), kAtOnce);
  sink_.Forget();
  daemon_.Start();
  EXPECT_TRUE(sink_.WaitFor({Kind::DefaultChanged, IdOf("first")}, 10s))
      << "it connects again although nobody asks";
  EXPECT_EQ(DefaultId(), IdOf("first"));
}

TEST_F(PulseDevicesTest, ServerThatComesBackAnswersTheNextQuestion) {
  ASSERT_TRUE(FirstBecomesDefault(10s));
  daemon_.Kill();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(DefaultId(), u"none");
  daemon_.Start();
  EXPECT_TRUE(FirstBecomesDefault(100ms)) << "no need to wait for the next attempt";
}

TEST_F(PulseDevicesTest, HangingServerCostsOneShortWait) {
  for (const bool isKnown : {false, true}) {
    ASSERT_TRUE(!isKnown || FirstBecomesDefault(10s));
    daemon_.Send(SIGSTOP);
    const auto start = steady_clock::now();
    isKnown ? static_cast<void>(DefaultId()) : Register();
    EXPECT_LT(steady_clock::now() - start, kBound);
    for (int i = 0; i < 3; ++i) EXPECT_LT(TimeOfAnswer(), kAtOnce);
    EXPECT_EQ(DefaultId(), u"none");
    EXPECT_EQ(PeakOf("first"), std::nullopt);
    sink_.Forget();
    daemon_.Send(SIGCONT);
    EXPECT_TRUE(sink_.WaitFor({Kind::DefaultChanged, IdOf("first")}, 10s))
        << "whoever was turned away is told to look again";
    EXPECT_EQ(DefaultId(), IdOf("first"));
  }
}

TEST_F(PulseDevicesTest, LevelsAreThoseOfWhatPlaysAndOnlyPlayingIsReported) {
  Register();
  EXPECT_EQ(PeakOf("first"), 0.0F);
  auto player = daemon_.PlayTone("second", 0.5);
  const RecordingSink::Report playing = {Kind::PropertyChanged, IdOf("second"), 0,
                                         platform::kEndpointLevelProperty};
  EXPECT_TRUE(sink_.WaitFor(playing, 10s));
  // The player is connected, but its sound may not have reached the sink yet.
  float peak = 0.0F;
  EXPECT_TRUE(Eventually([&] {
    const auto start = steady_clock::now();
    peak = PeakOf("second").value_or(0.0F);
    EXPECT_LT(steady_clock::now() - start, 2 * kBound);
    return peak > 0.4F;
  }));
  EXPECT_NEAR(peak, 0.5F, 0.02F);
  std::this_thread::sleep_for(200ms);
  sink_.Forget();
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(PeakOf("first"), 0.0F);
    PeakOf("second");
  }
  EXPECT_FALSE(sink_.WaitForAny(300ms)) << "looking at the level is not reported";
  // Nor does a new volume matter to anyone.
  daemon_.Control({"set-sink-volume", "second", "50%"});
  EXPECT_FALSE(sink_.WaitForAny(300ms));
  player.reset();
  EXPECT_TRUE(sink_.WaitFor(playing, 10s)) << "and so is the end";
}

TEST_F(PulseDevicesTest, LevelThatComesTooLateIsAnnounced) {
  Register();
  // The sink hands on two seconds at a time, so that the recording has to wait.
  const auto player = daemon_.PlayTone("second", 0.5, 2000ms);
  std::this_thread::sleep_for(200ms);
  sink_.Forget();
  ASSERT_EQ(PeakOf("second"), std::nullopt);
  EXPECT_TRUE(sink_.WaitForAny(3s));
  const auto start = steady_clock::now();
  EXPECT_NEAR(PeakOf("second").value_or(0.0F), 0.5F, 0.02F);
  EXPECT_LT(steady_clock::now() - start, kAtOnce);
}

TEST_F(PulseDevicesTest, NewSinksAreReportedWithTheirProperties) {
  Register();
  daemon_.AddSink("third", "Third");
  EXPECT_TRUE(sink_.WaitFor({Kind::Added, IdOf("third")}, 10s));
  EXPECT_EQ(published_, 3U) << "before anybody is told";
  const auto endpoints = devices_.CreateEnumerator()->EnumerateEndpoints(DataFlow::Render, 1);
  ASSERT_EQ(endpoints->Count(), 3U);
  EXPECT_EQ(endpoints->Item(2)->OpenPropertyStore()->GetString(
                platform::kDeviceInterfaceFriendlyNameProperty),
            u"Third");
}

TEST(PulseDevicesWithoutServerTest, RegistersAndWaitsWithoutTurningRound) {
  TemporaryFolder folder;
  platform::PulseAudioDevices devices({}, "unix:" + (folder.Path() / "native").string());
  RecordingSink sink;
  EXPECT_EQ(devices.CreateEnumerator()->RegisterCallback(sink), HResult::Ok);
  const std::clock_t before = std::clock();
  std::this_thread::sleep_for(2s);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 25);
  EXPECT_FALSE(sink.WaitForAny(0ms));
  EXPECT_EQ(DefaultIdOf(devices), u"none");
  EXPECT_EQ(devices.CreateEnumerator()->UnregisterCallback(sink), HResult::Ok);
}

}  // namespace

std::vector<AudioMachineMaker> AudioMachines() {
  return {&MakeAudioMachine<PulseMachine>};
}

}  // namespace support
