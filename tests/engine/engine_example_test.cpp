// The example against a store and events that this test plays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "dsp/eq_model.h"
#include "engine_link/event_names.h"
#include "platform/linux/events/fifo_events.h"
#include "platform/linux/registry/sqlite_registry.h"
#include "platform/text.h"
#include "store/registry_layout.h"
#include "tests/engine/engine_example.h"
#include "tests/support/child_process.h"
#include "tests/support/registry_tree.h"
#include "tests/support/routes.h"
#include "tests/support/temporary_folder.h"

namespace engine {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::seconds;
using support::ChildProcess;
using testing::IsEmpty;

constexpr std::u16string_view kEndpoint = u"{8E5A1c40-93B7-4B52-9F0B-35A5D6A3C6E1}";
constexpr milliseconds kQuiet(300);

class EngineExampleTest : public testing::Test {
 protected:
  std::unique_ptr<ChildProcess> Start() {
    return std::make_unique<ChildProcess>(
        std::vector<std::string>{BuildExample(temporary_.Path()).native(),
                                 "{dff21ce1-f70f-11d0-b917-00a0c9223196}",
                                 platform::ToUtf8(kEndpoint)},
        environment_);
  }

  void SetParameter(const std::u16string& setting, std::uint32_t number, float value) {
    support::PutFloat(registry_, support::Settings(support::kSpeaker) + u"\\" + setting,
                      store::FormatParameterName(number), value);
  }
  void Activate(const std::u16string& setting) {
    support::PutText(registry_, support::Settings(support::kSpeaker), u"ActiveSetting", setting);
  }

  bool Wake(std::u16string_view baseName = engine_link::kSfxEvent) {
    const auto event = events_.Open(baseName == engine_link::kServiceEvent
                                        ? std::u16string(baseName)
                                        : engine_link::EndpointEventName(baseName, kEndpoint));
    return event && event->Set();
  }

  support::TemporaryFolder temporary_;
  fs::path root_ = temporary_.Path() / "parent" / "root";
  std::map<std::string, std::string> environment_ = {{"TONALYX_ROOT", root_.native() + "/"}};
  platform::FifoEvents events_{root_ / "events"};
  platform::SqliteRegistry registry_{root_};
};

TEST_F(EngineExampleTest, FollowsTheActiveSetFromAnEmptyMachineOn) {
  const auto engine = Start();
  ASSERT_EQ(engine->ReadLine(seconds(5)), "nothing is stored for this route yet");
  EXPECT_FALSE(fs::exists(root_ / "registry.db"));
  struct stat status {};
  ASSERT_EQ(stat(root_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0777U);

  auto values = dsp::InitialParameters();
  const auto set = [&](const std::u16string& setting, int number, float value) {
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
  support::PutValue(registry_, support::Settings(support::kSpeaker) + u"\\10", u"Param118",
                    platform::RegistryType::Binary, "ab");
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

}  // namespace
}  // namespace engine
