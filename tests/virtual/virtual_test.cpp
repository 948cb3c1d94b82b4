// The virtual laptop's file, and its devices and endpoints while the file changes.
#include "platform/virtual/virtual_laptop.h"

#include <gmock/gmock.h>

#include <chrono>
#include <fstream>

#include "platform/virtual/laptop_file.h"
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
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = EndpointReportKind;

constexpr auto kNoticed = 200ms;

constexpr std::string_view kTwoEndpoints = R"({
  "endpoints": [ { "id": "a", "adapter": "Realtek High Definition Audio" },
                 { "id": "b", "state": "unplugged" } ],
  "defaultEndpoint": "a" })";

class VirtualLaptopTest : public testing::Test {
 protected:
  // As a tool does it.
  void Replace(std::string_view text) {
    const std::filesystem::path fresh = folder_.Path() / "fresh";
    std::ofstream(fresh) << text;
    std::filesystem::rename(fresh, path_);
  }

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
  VirtualAudioDevices audio_{laptop_, MakeFileWatcher(path_)};
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

  Replace(R"({"devices": [{"status": "broken"}, {"description": ""}]})");
  EXPECT_FALSE(setup_.PresentDevices()->QueryStatus(0));
  EXPECT_TRUE(setup_.PresentDevices()->QueryStatus(1));
  EXPECT_FALSE(laptop_.HasEndpoints()) << "the machine's own stand in";
  Replace(kTwoEndpoints);
  EXPECT_TRUE(HasDefault());
  EXPECT_FALSE(laptop_.HasDevices());
  std::filesystem::remove(path_);
  EXPECT_FALSE(HasDefault());
  EXPECT_EQ(audio_.CreateEnumerator()->EnumerateEndpoints(DataFlow::Render, 9)->Count(), 0U);
  EXPECT_THAT(lines_, ElementsAre(testing::_, EndsWith("laptop.json: cannot be read")));
}

LaptopFile Parsed(std::string_view text) {
  LaptopFileError error;
  const std::optional<LaptopFile> laptop = ParseLaptopFile(text, &error);
  if (laptop) return *laptop;
  ADD_FAILURE() << error.line << ":" << error.column << ": " << error.message;
  return {};
}

TEST(LaptopFileTest, ReadsEveryMember) {
  const LaptopFile laptop = Parsed(R"({
    "devices": [
      { "hardwareIds": ["HDAUDIO\\FUNC_01&VEN_10EC", "HDAUDIO\\FUNC_01"], "description": "Käfer",
        "class": "MEDIA", "classGuid": "{4D36E96C}", "status": "ok" },
      { "status": "problem" } ],
    "endpoints": [
      { "id": "b", "guid": "{B}", "jackSubType": "{J}", "adapter": "Realtek", "state": "unplugged",
        "peak": 0.25 },
      { "id": "a", "peak": 1 } ],
    "defaultEndpoint": "a" })");
  ASSERT_EQ(laptop.devices->size(), 2U);
  const DeviceRecord& codec = laptop.devices->at(0);
  EXPECT_THAT(codec.hardwareIds, ElementsAre(u"HDAUDIO\\FUNC_01&VEN_10EC", u"HDAUDIO\\FUNC_01"));
  EXPECT_EQ(codec.description, u"K\u00E4fer");
  EXPECT_EQ(codec.deviceClass, u"MEDIA");
  EXPECT_EQ(codec.classGuid, u"{4D36E96C}");
  EXPECT_EQ(codec.status, DeviceRecord::Status::Ok);
  EXPECT_EQ(laptop.devices->at(1).status, DeviceRecord::Status::QueryFails);
  EXPECT_THAT(
      *laptop.endpoints,
      ElementsAre(ListedEndpoint{u"b", u"{B}", u"{J}", u"Realtek", kDeviceStateUnplugged, 0.25F},
                  ListedEndpoint{u"a", u"", u"", u"", kDeviceStateActive, 1.0F}));
  EXPECT_EQ(laptop.defaultEndpoint, u"a");
}

TEST(LaptopFileTest, SkipsWhatItDoesNotKnowAndTakesNullForMissing) {
  const LaptopFile laptop = Parsed(R"({
    "comment": { "devices": 5, "endpoints": [ { "peak": "loud" } ] },
    "defaultEndpoint": null,
    "endpoints": [ { "state": null, "colour": [1, [2, true], null], "peak": null, "id": "a" } ] })");
  EXPECT_FALSE(laptop.devices);
  EXPECT_THAT(*laptop.endpoints, ElementsAre(ListedEndpoint{u"a"}));
  EXPECT_EQ(laptop.defaultEndpoint, u"");
  EXPECT_THAT(*Parsed(R"({"devices": []})").devices, IsEmpty());
  EXPECT_FALSE(Parsed("{}").endpoints);
}

TEST(LaptopFileTest, ErrorsNameTheirPlace) {
  const struct {
    std::string text;
    std::size_t line;
    std::size_t column;
    const char* message;
  } cases[] = {
      {"", 1, 1, "end of input"},
      {"{\n  \"devices\": [}\n}", 2, 15, "unexpected '}'"},
      {"[]", 1, 1, "one object"},
      {"{\n \"devices\": 5}", 2, 13, "\"devices\" must be a list"},
      {"{\"endpoints\": [\n\t7]}", 2, 2, "an endpoint must be an object"},
      {"{\"endpoints\": [{\"id\":\n true}]}", 2, 2, "\"id\" must be a text"},
      {"{\"endpoints\": [{\"state\": \"asleep \\\"\"}]}", 1, 26, "\"active\" or \"unplugged\""},
      {"{\"endpoints\": [{\"peak\": -0.5}]}", 1, 25, "from 0 to 1"},
      {"{\"endpoints\": [{\"peak\": 1e999}]}", 1, 29, "number overflow"},
      {"{\"endpoints\": [{\"peak\": 12 }]}", 1, 25, "from 0 to 1"},
      {"{\"devices\": [{\"hardwareIds\": [\"a\", 1]}]}", 1, 36, "a hardware ID must be a text"},
      {"{\"devices\": [{\"description\": \"ü\", \"class\": []}]}", 1, 44,
       "\"class\" must be a text"},
      {"{\"defaultEndpoint\": \"\x80\"}", 1, 22, "UTF-8"},
      {"{\"x\": " + std::string(1'000, '['), 1, 70, "deep"},
  };
  for (const auto& [text, line, column, message] : cases) {
    LaptopFileError error;
    EXPECT_FALSE(ParseLaptopFile(text, &error)) << text;
    EXPECT_EQ(error.line, line) << text;
    EXPECT_EQ(error.column, column) << text;
    EXPECT_THAT(error.message, HasSubstr(message)) << text;
  }
}

}  // namespace
}  // namespace platform
