// The virtual laptop's devices and endpoints while its file changes.
#include "platform/virtual/virtual_laptop.h"

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>

#include "platform/linux/files/inotify_file_watcher.h"
#include "platform/virtual/virtual_audio_devices.h"
#include "platform/virtual/virtual_device_setup.h"
#include "tests/audio/recording_sink.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

using namespace std::chrono_literals;
using support::RecordingSink;
using testing::ElementsAre;
using testing::EndsWith;
using Kind = EndpointReportKind;

constexpr auto kNoticed = 200ms;

constexpr std::string_view kTwoEndpoints = R"({
  "endpoints": [ { "id": "a", "adapter": "Realtek High Definition Audio" },
                 { "id": "b", "state": "unplugged" } ],
  "defaultEndpoint": "a" })";

class VirtualLaptopTest : public testing::Test {
 protected:
  // As a tool replaces it, and as a person writes it.
  void Replace(std::string_view text) {
    const std::filesystem::path fresh = folder_.Path() / "fresh";
    std::ofstream(fresh) << text;
    std::filesystem::rename(fresh, path_);
  }
  void WriteInPlace(std::string_view text) { std::ofstream(path_) << text; }

  void Register() { ASSERT_EQ(audio_.CreateEnumerator()->RegisterCallback(sink_), HResult::Ok); }
  void TearDown() override { audio_.CreateEnumerator()->UnregisterCallback(sink_); }

  bool HasDefault() {
    return audio_.CreateEnumerator()->DefaultEndpoint(DataFlow::Render, DeviceRole::Console) !=
           nullptr;
  }

  support::TemporaryFolder folder_;
  const std::filesystem::path path_ = folder_.Path() / "laptop.json";
  std::vector<std::string> lines_;
  VirtualLaptop laptop_{path_, [this](std::string_view line) { lines_.emplace_back(line); }};
  VirtualAudioDevices audio_{laptop_, std::make_unique<InotifyFileWatcher>(path_)};
  VirtualDeviceSetup setup_{laptop_};
  RecordingSink sink_;
};

TEST_F(VirtualLaptopTest, EveryChangeIsReportedForWhatItIs) {
  const struct {
    std::string_view text;
    std::vector<EndpointReport> reports;
  } steps[] = {
      {R"({"endpoints": [{"id": "a", "adapter": "Realtek High Definition Audio", "peak": 0.5},
                         {"id": "b", "state": "unplugged"}], "defaultEndpoint": "a"})",
       {{Kind::PropertyChanged, u"a", 0, kEndpointLevelProperty}}},
      {R"({"endpoints": [{"id": "a", "adapter": "USB", "guid": "{G}", "jackSubType": "{J}",
                          "peak": 0.5},
                         {"id": "b"}], "defaultEndpoint": "a"})",
       {{Kind::PropertyChanged, u"a", 0, kEndpointGuidProperty},
        {Kind::PropertyChanged, u"a", 0, kEndpointJackSubTypeProperty},
        {Kind::PropertyChanged, u"a", 0, kDeviceInterfaceFriendlyNameProperty},
        {Kind::StateChanged, u"b", kDeviceStateActive}}},
      {R"({"endpoints": [{"id": "c"}, {"id": "b"}], "defaultEndpoint": "b"})",
       {{Kind::Removed, u"a"}, {Kind::Added, u"c"}, {Kind::DefaultChanged, u"b"}}},
      {R"({"endpoints": [{"id": "c"}, {"id": "b", "state": "unplugged"}], "defaultEndpoint": "b"})",
       {{Kind::StateChanged, u"b", kDeviceStateUnplugged}, {Kind::DefaultChanged, u""}}},
      {R"({"endpoints": [{"id": "c"}, {"id": "b", "state": "unplugged"}], "defaultEndpoint": "x"})",
       {}},
  };
  Replace(kTwoEndpoints);
  Register();
  for (const auto& [text, reports] : steps) {
    sink_.Forget();
    Replace(text);
    if (reports.empty()) {
      EXPECT_FALSE(sink_.WaitForAny(kNoticed)) << text;
    } else {
      EXPECT_TRUE(sink_.WaitFor(reports.back(), kNoticed)) << text;
    }
    EXPECT_EQ(sink_.Reports(), reports) << text;
  }
  EXPECT_FALSE(HasDefault());
}

TEST_F(VirtualLaptopTest, AnyWayOfChangingTheFileIsNoticed) {
  Register();
  // The last reports of the endpoints' coming and going.
  const EndpointReport added = {Kind::DefaultChanged, u"a"};
  const EndpointReport removed = {Kind::DefaultChanged, u""};
  WriteInPlace(kTwoEndpoints);
  EXPECT_TRUE(sink_.WaitFor(added, kNoticed)) << "a file that was not there";
  std::filesystem::remove(path_);
  EXPECT_TRUE(sink_.WaitFor(removed, kNoticed));
  sink_.Forget();
  Replace(kTwoEndpoints);
  EXPECT_TRUE(sink_.WaitFor(added, kNoticed));
  WriteInPlace("{}");
  EXPECT_TRUE(sink_.WaitFor(removed, kNoticed));
  sink_.Forget();
  std::ofstream(folder_.Path() / "another.json") << kTwoEndpoints;
  EXPECT_FALSE(sink_.WaitForAny(kNoticed));
}

TEST_F(VirtualLaptopTest, BadFileIsABareMachineAndSaysSoOnce) {
  Replace("{\n  \"endpoints\": 1\n}");
  EXPECT_TRUE(laptop_.HasDevices());
  EXPECT_TRUE(laptop_.HasEndpoints());
  EXPECT_FALSE(HasDefault());
  EXPECT_FALSE(setup_.PresentDevices()->HasDevice(0));
  EXPECT_THAT(lines_, ElementsAre(path_.string() + ":2:16: \"endpoints\" must be a list"));

  Replace(kTwoEndpoints);
  EXPECT_TRUE(HasDefault());
  EXPECT_FALSE(laptop_.HasDevices()) << "the machine's own stand in";
  std::filesystem::remove(path_);
  EXPECT_FALSE(HasDefault());
  EXPECT_EQ(audio_.CreateEnumerator()->EnumerateEndpoints(DataFlow::Render, 9)->Count(), 0U);
  EXPECT_THAT(lines_, ElementsAre(testing::_, EndsWith("laptop.json: cannot be read")));
}

TEST_F(VirtualLaptopTest, DevicesKeepTheirOrderAndLackWhatTheFileLacks) {
  Replace(R"({"devices": [{"description": "One", "status": "broken"},
                          {"hardwareIds": ["A", "B"], "description": ""}]})");
  const auto devices = setup_.PresentDevices();
  EXPECT_FALSE(devices->QueryStatus(0));
  EXPECT_TRUE(devices->QueryStatus(1));
  EXPECT_FALSE(devices->HasDevice(2));
  std::array<char16_t, 8> text{};
  std::uint32_t needed = 0;
  EXPECT_EQ(devices->ReadProperty(0, DeviceProperty::HardwareId, text, &needed),
            DevicePropertyStatus::Failure);
  EXPECT_EQ(devices->ReadProperty(1, DeviceProperty::DeviceDescription, text, &needed),
            DevicePropertyStatus::Failure);
  EXPECT_EQ(devices->ReadProperty(1, DeviceProperty::HardwareId, text, &needed),
            DevicePropertyStatus::Success);
  EXPECT_EQ(std::u16string_view(text.data()), u"A");
}

}  // namespace
}  // namespace platform
