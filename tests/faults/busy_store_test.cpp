// Two users' panels, an engine and a tool on one store at once: nothing is lost, nobody is turned
// away, and everybody knows the last state in the end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/parameter_store.h"
#include "store/registry_layout.h"
#include "tests/engine/engine_example.h"
#include "tests/faults/busy_panel.h"
#include "tests/faults/machine.h"
#include "tests/faults/rounds.h"

namespace faults {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using support::ChildProcess;

constexpr milliseconds kForEachRound(200);
constexpr int kFirstGain = 121;
constexpr int kSecondGain = 126;

class BusyStoreTest : public testing::Test {
 protected:
  BusyStoreTest() {
    fs::permissions(machine_.Folder(), fs::perms(0777));
    machine_.PutTuning();
    EXPECT_EQ(machine_.Install().exitStatus, 0);
  }

  // Into a file: as much as these print no pipe holds.
  std::unique_ptr<ChildProcess> StartInto(const char* output, const std::string& command) {
    return std::make_unique<ChildProcess>(
        std::vector<std::string>{
            "sh", "-c", "exec " + command + " >'" + (machine_.Folder() / output).native() + "'"},
        machine_.Environment());
  }

  // The lines that the engine printed last.
  std::vector<std::string> LastPrinted() const {
    std::ifstream file(machine_.Folder() / "engine.out");
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("setting ")) lines.clear();
      lines.push_back(line);
    }
    return lines;
  }

  std::vector<std::string> StoredLines() const {
    platform::SqliteRegistry registry(machine_.State());
    store::ParameterStore set;
    EXPECT_TRUE(store::LoadActiveSet(registry, kSpeakerRoute, set));
    return engine::ExpectedLines(platform::ToUtf8(set.activeSetting), set.values);
  }

  std::uint32_t Counter(const std::u16string& name) const {
    platform::SqliteRegistry registry(machine_.State());
    const auto value = support::GetValue(registry, kCounterKey, name);
    std::uint32_t number = 0;
    if (value) std::memcpy(&number, value->bytes.data(), sizeof(number));
    return number;
  }

  // A value for each call; how many.
  int WriteWithTheTool(milliseconds duration) {
    const auto end = steady_clock::now() + duration;
    int number = 0;
    for (; steady_clock::now() < end; ++number) {
      const support::ProcessResult result =
          machine_.RunTool("regtool", {"add", "HKLM\\SOFTWARE\\Norvane\\Tool", "/v",
                                       std::to_string(number), "/d", std::to_string(number), "/f"});
      EXPECT_EQ(result.exitStatus, 0);
      EXPECT_EQ(result.errors, "");
    }
    return number;
  }

  void ExpectToolsValues(int count) {
    platform::SqliteRegistry registry(machine_.State());
    for (int number = 0; number < count; ++number) {
      const std::u16string text = platform::FromUtf8(std::to_string(number));
      const auto value = support::GetValue(registry, u"SOFTWARE\\Norvane\\Tool", text);
      ASSERT_TRUE(value) << number;
      EXPECT_EQ(value->bytes, support::TextBytes(text));
    }
  }

  Machine machine_{Tuning::Whole};
};

TEST_F(BusyStoreTest, NothingIsLostAndEverybodyKnowsTheLastState) {
  constexpr uid_t kNobody = 65534;
  const milliseconds duration = kForEachRound * Rounds();
  const auto engine =
      StartInto("engine.out", engine::BuildExample(machine_.Folder()).native() + " '" +
                                  platform::ToUtf8(kSpeakerRoute) + "' '" + kEndpoint + "'");
  std::mt19937 random = Random();
  std::vector<std::unique_ptr<support::ForkedProcess>> panels;
  std::vector<fs::path> errors;
  for (const int parameter : {kFirstGain, kSecondGain}) {
    errors.push_back(machine_.Folder() / ("errors" + std::to_string(parameter)));
    const bool isOther = geteuid() == 0 && parameter == kSecondGain;
    panels.push_back(StartPanel({machine_.State(), errors.back(), duration, parameter,
                                 static_cast<unsigned>(random()), isOther ? kNobody : geteuid()}));
  }
  for (const auto& panel : panels) panel->Talk().Say('g');
  const int calls = WriteWithTheTool(duration);
  for (const auto& panel : panels) ASSERT_EQ(panel->Talk().Hear(), 'd');
  for (const auto& panel : panels) panel->Talk().Say('g');
  for (const auto& panel : panels) {
    EXPECT_EQ(panel->Talk().Hear(), 'y') << "a watcher sees the last mode";
    EXPECT_EQ(panel->Talk().Hear(), 'y') << "the last edits are stored";
    EXPECT_TRUE(panel->Join());
  }
  for (const fs::path& file : errors) EXPECT_EQ(ReadFile(file), "");

  ExpectToolsValues(calls);
  const std::uint32_t changes = Counter(u"rounds121") + Counter(u"rounds126");
  EXPECT_EQ(Counter(u"count"), changes);
  EXPECT_GT(changes, 0U);
  RecordProperty("changes", static_cast<int>(changes));
  RecordProperty("calls", calls);

  const auto end = steady_clock::now() + std::chrono::seconds(10);
  while (LastPrinted() != StoredLines() && steady_clock::now() < end) {
    std::this_thread::sleep_for(milliseconds(20));
  }
  EXPECT_EQ(LastPrinted(), StoredLines()) << "the engine was woken for the last state";
  EXPECT_FALSE(engine->WaitForExit(milliseconds(0)));
}

}  // namespace
}  // namespace faults
