// The program itself, in a process of its own.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/events/fifo_events.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "tests/support/child_process.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"
#include "tests/support/temporary_folder.h"

namespace tools {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::seconds;
using support::ChildProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kActiveGuid = "{8E5A1C40-93B7-4B52-9F0B-35A5D6A3C6E1}";
constexpr const char* kUnpluggedGuid = "{0B0F5C1E-1F0E-4B60-A6C8-2C1D5A5C7711}";

class EnginemonTest : public testing::Test {
 protected:
  EnginemonTest() {
    std::ofstream(temporary_.Path() / "laptop.json")
        << R"({"devices": [], "endpoints": [{"id": "a", "guid": ")" << kActiveGuid
        << R"(", "state": "active"}, {"id": "b", "guid": ")" << kUnpluggedGuid
        << R"(", "state": "unplugged"}, {"id": "c"}]})";
  }

  // One that is at work.
  std::unique_ptr<ChildProcess> Start(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), TONALYX_BIN_DIR "/enginemon");
    auto monitor = std::make_unique<ChildProcess>(arguments, environment_);
    EXPECT_EQ(monitor->ReadLine(seconds(10)), "ready");
    return monitor;
  }

  support::ProcessResult Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), TONALYX_BIN_DIR "/enginemon");
    return support::RunProcess(arguments, environment_);
  }

  bool Set(const std::string& name) {
    const auto event = events_.Open(platform::FromUtf8(name));
    return event && event->Set();
  }

  void SetGain(float value) {
    support::PutFloat(registry_, support::Settings(support::kSpeaker) + u"\\2", u"Param121", value);
  }

  // The hint that decides the route where no driver tells it.
  void SetHint(std::uint32_t path) {
    support::PutDword(registry_, support::kProduct, u"HardwareOutputPath", path);
  }

  static std::vector<std::string> ReadLines(ChildProcess& process, std::size_t count) {
    std::vector<std::string> lines(count);
    for (std::string& line : lines) line = process.ReadLine(seconds(10)).value_or("nothing came");
    return lines;
  }

  std::size_t FifoCount() const {
    const auto entries = fs::directory_iterator(root_ / "events");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }

  support::TemporaryFolder temporary_;
  fs::path root_ = temporary_.Path() / "root";
  std::map<std::string, std::string> environment_ = {
      {"TONALYX_ROOT", root_.native()},
      {"TONALYX_LAPTOP", (temporary_.Path() / "laptop.json").native()}};
  platform::FifoEvents events_{root_ / "events"};
  platform::SqliteRegistry registry_{root_};
};

TEST_F(EnginemonTest, PrintsEverySetOfEveryEndpointInOrder) {
  const auto monitor = Start({});
  EXPECT_FALSE(fs::exists(root_ / "registry.db"));
  EXPECT_EQ(FifoCount(), 13U) << "four for each endpoint, also one without a GUID, and one more";
  const std::vector<std::string> names = {
      std::string("Global\\VelsonaSFXPropEvent") + kActiveGuid,
      std::string("Global\\VelsonaGFXPropEvent") + kActiveGuid,
      "Global\\VelsonaMFXPropEvent",
      std::string("Global\\VelsonaEFXPropEvent") + kUnpluggedGuid,
      "Global\\VelsonaServiceParameterUpdateEvent",
      std::string("Global\\VelsonaGFXPropEvent") + kActiveGuid,
  };
  for (const std::string& name : names) EXPECT_TRUE(Set(name)) << name;
  for (const std::string& name : names) EXPECT_EQ(monitor->ReadLine(seconds(10)), name);
  EXPECT_THAT(monitor->ReadLinesUntilQuiet(milliseconds(100)), IsEmpty());
}

TEST_F(EnginemonTest, EndsBySignalAndByTimeAndTakesItsFifosAway) {
  for (const int signal : {SIGINT, SIGTERM}) {
    const auto monitor = Start({"--endpoint", kUnpluggedGuid, "--endpoint", kUnpluggedGuid});
    EXPECT_EQ(FifoCount(), 5U) << "the named endpoints only";
    monitor->Kill(signal);
    EXPECT_EQ(monitor->WaitForExit(seconds(10)), 0);
    EXPECT_EQ(monitor->RestOfErrors(), "");
    EXPECT_EQ(FifoCount(), 0U);
  }
  const auto begin = std::chrono::steady_clock::now();
  const support::ProcessResult timed = Run({"--seconds", "1"});
  EXPECT_EQ(timed.exitStatus, 0);
  EXPECT_EQ(timed.output, "ready\n");
  EXPECT_GE(std::chrono::steady_clock::now() - begin, seconds(1));
  EXPECT_EQ(FifoCount(), 0U);
}

TEST_F(EnginemonTest, ShowsRouteSettingAndUnits) {
  std::ofstream(temporary_.Path() / "laptop.json")
      << R"({"devices": [], "defaultEndpoint": "a", "endpoints": [{"id": "a", "guid": ")"
      << kActiveGuid << R"(", "jackSubType": "{dff21ce1-f70f-11d0-b917-00a0c9223196}"}]})";
  SetHint(1);
  SetGain(1.0F);
  const auto people = Start({"--units"});
  EXPECT_THAT(ReadLines(*people, 2),
              ElementsAre("  route: speaker", "  speaker: active setting 2"));
  SetHint(2);
  SetGain(0.5F);
  const std::string event = std::string("Global\\VelsonaGFXPropEvent") + kActiveGuid;
  ASSERT_TRUE(Set(event));
  const std::vector<std::string> shown = {
      event, "  route: headphones", "  speaker, setting 2 (active): Param121 band 1 gain -6.02 dB"};
  EXPECT_EQ(ReadLines(*people, 3), shown);
  ASSERT_TRUE(Set(event));
  EXPECT_THAT(people->ReadLinesUntilQuiet(milliseconds(300)), ElementsAre(event));
  people->Kill(SIGTERM);
  EXPECT_EQ(people->WaitForExit(seconds(10)), 0);

  const support::ProcessResult programs = Run({"--json", "--seconds", "0"});
  EXPECT_EQ(programs.exitStatus, 0);
  EXPECT_EQ(programs.output, R"({"kind":"ready"}
{"kind":"route","route":"headphones","pathKey":"{DFF21CE2-F70F-11D0-B917-00A0C9223196}"}
{"kind":"setting","route":"speaker","pathKey":"{DFF21CE1-F70F-11D0-B917-00A0C9223196}","active":"2"}
)");
}

TEST_F(EnginemonTest, ExplainsItselfAndRefusesWrongCalls) {
  const support::ProcessResult help = Run({"--help"});
  EXPECT_EQ(help.exitStatus, 0);
  EXPECT_THAT(help.output, HasSubstr("--endpoint"));
  const std::vector<std::vector<std::string>> calls = {{"word"},
                                                       {"--seconds"},
                                                       {"--seconds", "nan"},
                                                       {"--endpoint", "{no guid}"},
                                                       {"--units", "--json"}};
  for (const std::vector<std::string>& call : calls) {
    const support::ProcessResult result = Run(call);
    EXPECT_EQ(result.exitStatus, 2) << call.back();
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("usage:"));
  }
  EXPECT_FALSE(fs::exists(root_));
}

}  // namespace
}  // namespace tools
