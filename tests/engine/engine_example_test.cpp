// The example against a store and events that this test plays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "dsp/eq_model.h"
#include "engine_link/event_names.h"
#include "platform/linux/events/fifo_events.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/registry_layout.h"
#include "tests/engine/engine_example.h"
#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

namespace engine {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::seconds;
using support::ChildProcess;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::u16string_view kRoute = u"{DFF21CE1-F70F-11D0-B917-00A0C9223196}";
constexpr std::u16string_view kEndpoint = u"{8E5A1c40-93B7-4B52-9F0B-35A5D6A3C6E1}";
constexpr milliseconds kQuiet(300);

class EngineExampleTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    build_ = std::make_unique<support::TemporaryFolder>();
    program_ = BuildExample(build_->Path());
  }
  static void TearDownTestSuite() { build_.reset(); }

  EngineExampleTest() { OpenRegistry(); }

  void OpenRegistry() { registry_ = std::make_unique<platform::SqliteRegistry>(root_); }

  void RemoveStore() {
    registry_.reset();
    for (const char* file : {"registry.db", "registry.db-wal", "registry.db-shm"}) {
      fs::remove(root_ / file);
    }
  }

  static std::vector<std::string> Call() {
    return {program_.native(), "{dff21ce1-f70f-11d0-b917-00a0c9223196}",
            platform::ToUtf8(kEndpoint)};
  }
  std::unique_ptr<ChildProcess> Start() {
    return std::make_unique<ChildProcess>(Call(), environment_);
  }

  std::unique_ptr<platform::RegistryKey> CreateKey(const std::u16string& path) {
    return registry_->CreateKey(platform::RegistryRoot::LocalMachine, path, store::kWriteAccess);
  }
  void SetBytes(std::u16string_view setting, std::uint32_t number,
                std::span<const std::byte> bytes) {
    CreateKey(store::SettingKeyPath(store::Tree::Parameters, kRoute, setting))
        ->SetValue(store::FormatParameterName(number), platform::RegistryType::Binary, bytes);
  }
  void SetParameter(std::u16string_view setting, std::uint32_t number, float value) {
    SetBytes(setting, number, std::as_bytes(std::span(&value, 1)));
  }
  void Activate(std::u16string_view setting) {
    CreateKey(store::SettingsKeyPath(kRoute))
        ->SetValue(store::kActiveSettingValue, platform::RegistryType::String,
                   std::as_bytes(std::span(setting)));
  }

  bool Wake(std::u16string_view baseName = engine_link::kSfxEvent) {
    const auto event = events_.Open(baseName == engine_link::kServiceEvent
                                        ? std::u16string(baseName)
                                        : engine_link::EndpointEventName(baseName, kEndpoint));
    return event && event->Set();
  }

  static inline std::unique_ptr<support::TemporaryFolder> build_;
  static inline fs::path program_;
  support::TemporaryFolder temporary_;
  fs::path root_ = temporary_.Path() / "parent" / "root";
  std::map<std::string, std::string> environment_ = {{"TONALYX_ROOT", root_.native() + "/"}};
  platform::FifoEvents events_{root_ / "events"};
  std::unique_ptr<platform::SqliteRegistry> registry_;
};

TEST_F(EngineExampleTest, FollowsTheActiveSetFromAnEmptyMachineOn) {
  const auto engine = Start();
  ASSERT_EQ(engine->ReadLine(seconds(5)), "nothing is stored for this route yet");
  EXPECT_FALSE(fs::exists(root_ / "registry.db"));
  struct stat status {};
  ASSERT_EQ(stat(root_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0777U);

  auto values = dsp::InitialParameters();
  const auto set = [&](std::u16string_view setting, int number, float value) {
    values[dsp::ParameterIndex(number)] = value;
    SetParameter(setting, static_cast<std::uint32_t>(number), value);
  };
  set(u"2", 118, 0.0F);
  set(u"2", 119, 3.0F);
  set(u"2", 165, 12345.5F);
  ASSERT_TRUE(Wake());
  EXPECT_EQ(engine->ReadLinesUntilQuiet(kQuiet), ExpectedLines("2", values))
      << "no setting is named";
  for (const std::u16string_view event : engine_link::kEndpointEvents) ASSERT_TRUE(Wake(event));
  EXPECT_THAT(engine->ReadLinesUntilQuiet(kQuiet), IsEmpty()) << "nothing differs";

  values = dsp::InitialParameters();
  set(u"10", 117, 0.0F);
  set(u"10", 119, 9.0F);
  set(u"10", 121, 0.0F);
  Activate(u"10");
  ASSERT_TRUE(Wake(engine_link::kServiceEvent));
  EXPECT_EQ(engine->ReadLinesUntilQuiet(kQuiet), ExpectedLines("10", values));

  // What cannot be used changes nothing.
  SetBytes(u"10", 118, std::as_bytes(std::span("ab", 2)));
  SetParameter(u"10", 1115, 1.0F);
  ASSERT_TRUE(Wake());
  EXPECT_THAT(engine->ReadLinesUntilQuiet(kQuiet), IsEmpty());
  Activate(u"77");
  ASSERT_TRUE(Wake());
  EXPECT_THAT(engine->ReadLinesUntilQuiet(kQuiet), IsEmpty());
  Activate(std::u16string(100, u'1'));  // too long, so the default counts
  ASSERT_TRUE(Wake());
  EXPECT_EQ(engine->ReadLine(seconds(5)), "setting 2, equalizer on");
}

TEST_F(EngineExampleTest, CatchesUpWhenItWasLate) {
  SetParameter(u"2", 121, 1.0F);
  const auto engine = Start();
  EXPECT_EQ(engine->ReadLinesUntilQuiet(kQuiet).size(), 11U);
  engine->Kill(SIGSTOP);
  auto values = dsp::InitialParameters();
  for (int i = 0; i < 10'000; ++i) ASSERT_TRUE(Wake()) << "a full FIFO must not trouble the setter";
  SetParameter(u"2", 121, 0.5F);
  ASSERT_TRUE(Wake());
  engine->Kill(SIGCONT);
  values[dsp::ParameterIndex(121)] = 0.5F;
  EXPECT_EQ(engine->ReadLinesUntilQuiet(kQuiet), ExpectedLines("2", values));
}

TEST_F(EngineExampleTest, OnlyOneHoldsTheEventsAndTheNextTakesOver) {
  const auto first = Start();
  ASSERT_TRUE(first->ReadLine(seconds(5)));
  const support::ProcessResult second = support::RunProcess(Call(), environment_);
  EXPECT_EQ(second.exitStatus, 1);
  EXPECT_THAT(second.errors, HasSubstr("GFXPropEvent"));
  EXPECT_TRUE(Wake()) << "the first one's events stay";

  first->Kill(SIGKILL);
  ASSERT_TRUE(first->WaitForExit(seconds(5)));
  EXPECT_FALSE(Wake());
  for (const int signal : {SIGINT, SIGTERM}) {
    const auto next = Start();
    ASSERT_TRUE(next->ReadLine(seconds(5)));
    EXPECT_TRUE(Wake());
    next->Kill(signal);
    EXPECT_EQ(next->WaitForExit(seconds(5)), 0);
    EXPECT_TRUE(fs::is_empty(root_ / "events"));
  }
}

TEST_F(EngineExampleTest, FindsAStoreThatWasMadeAnewAndLeavesAnUnknownOneAlone) {
  SetParameter(u"2", 120, 100.0F);
  const auto engine = Start();
  EXPECT_EQ(engine->ReadLinesUntilQuiet(kQuiet).size(), 11U);
  RemoveStore();
  OpenRegistry();
  SetParameter(u"2", 120, 200.0F);
  ASSERT_TRUE(Wake());
  auto values = dsp::InitialParameters();
  values[dsp::ParameterIndex(120)] = 200.0F;
  EXPECT_EQ(engine->ReadLinesUntilQuiet(kQuiet), ExpectedLines("2", values));

  RemoveStore();
  ASSERT_TRUE(Wake());
  EXPECT_THAT(engine->ReadLinesUntilQuiet(kQuiet), IsEmpty());
  OpenRegistry();
  SetParameter(u"2", 120, 300.0F);
  registry_.reset();
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open((root_ / "registry.db").c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, "PRAGMA user_version = 2", nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(database);
  ASSERT_TRUE(Wake());
  EXPECT_THAT(engine->ReadLinesUntilQuiet(kQuiet), IsEmpty());
}

TEST_F(EngineExampleTest, RefusesWrongCalls) {
  const std::string guid = platform::ToUtf8(kEndpoint);
  const std::vector<std::vector<std::string>> calls = {
      {},
      {guid},
      {guid, guid, guid},
      {guid, "{../../../../../../../../../../../../}"},
      {"x", guid}};
  for (std::vector<std::string> call : calls) {
    call.insert(call.begin(), program_.native());
    EXPECT_EQ(support::RunProcess(call, environment_).exitStatus, 2) << call.back();
  }
  EXPECT_FALSE(fs::exists(root_));
}

}  // namespace
}  // namespace engine
