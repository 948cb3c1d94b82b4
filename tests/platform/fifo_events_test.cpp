// Events as FIFOs, from both sides: against everything that may stand where a FIFO should, and with
// other processes as engines and as setters.
#include "platform/linux/events/fifo_events.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/fake/fake_events.h"
#include "platform/linux/events/fifo_event_listener.h"
#include "platform/linux/events/fifo_name.h"
#include "tests/platform/base_contracts.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace support {
namespace {

struct FakeEvents : EventsBackend {
  platform::NamedEvents& Events() override { return events; }
  void Make(std::u16string_view name) override {
    events.Add(name);
    made.emplace_back(name);
  }
  void EndEngine() override {
    for (const std::u16string& name : made) events.Remove(name);
  }
  std::vector<std::u16string> Received() override {
    std::vector<std::u16string> names = events.Sets();
    events.ClearCalls();
    return names;
  }

  platform::FakeNamedEvents events;
  std::vector<std::u16string> made;
};

struct FifoEvents : EventsBackend {
  platform::NamedEvents& Events() override { return events; }
  void Make(std::u16string_view name) override {
    ASSERT_TRUE(engine->Create(name));
    made.emplace_back(name);
  }
  void EndEngine() override { engine.reset(); }
  std::vector<std::u16string> Received() override {
    std::vector<std::u16string> names;
    if (!engine) return names;
    for (const auto& set : engine->Wait({})) names.push_back(made[set.event]);
    return names;
  }

  TemporaryFolder folder;
  platform::FifoEvents events{folder.Path() / "root/events"};
  std::unique_ptr<platform::EventListener> engine =
      std::make_unique<platform::FifoEventListener>(folder.Path() / "root/events");
  std::vector<std::u16string> made;
};

}  // namespace

std::vector<Maker<EventsBackend>> EventsBackends() {
  return {&Make<EventsBackend, FakeEvents>, &Make<EventsBackend, FifoEvents>};
}

}  // namespace support

namespace platform {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;
using support::ForkedProcess;
using support::Line;
using testing::IsEmpty;

class FifoEventsTest : public testing::Test {
 protected:
  FifoEventsTest() { fs::create_directories(folder_); }

  bool Set(std::u16string_view name) {
    const std::unique_ptr<NamedEvent> event = events_.Open(name);
    return event && event->Set();
  }
  // How many sets the engine has received by now.
  std::size_t Received() { return engine_.Wait(milliseconds(0)).size(); }

  // An engine in another process that holds "event" until it hears a letter.
  ForkedProcess StartEngine() {
    return ForkedProcess([this](const Line& parent) {
      FifoEventListener listener(folder_);
      parent.Say(listener.Create(u"event") ? 'y' : 'n');
      parent.Hear();
    });
  }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "events";
  FifoEvents events_{folder_};
  FifoEventListener engine_{folder_};
};

TEST(FifoNameTest, EscapesEveryByteThatIsNoPlainOne) {
  const std::pair<std::u16string_view, const char*> cases[] = {
      {u"Global\\VelsonaGFXPropEvent{0A-9f}", "Global%5CVelsonaGFXPropEvent{0A-9f}"},
      {u"AZaz09{}._-", "AZaz09{}._-"},
      {u"a/b%c d", "a%2Fb%25c%20d"},
      {u"\u00E9\u20AC", "%C3%A9%E2%82%AC"},
      {std::u16string_view(u"\0\n", 2), "%00%0A"},
      {u"[~@`|:", "%5B%7E%40%60%7C%3A"},
  };
  for (const auto& [event, file] : cases) EXPECT_EQ(FifoName(event), file);
}

TEST_F(FifoEventsTest, WritesTheTimeAsEightBytes) {
  ASSERT_EQ(mkfifo((folder_ / "event").c_str(), 0666), 0);
  const FileDescriptor reader(open((folder_ / "event").c_str(), O_RDONLY | O_NONBLOCK));
  const auto before = steady_clock::now().time_since_epoch();
  ASSERT_TRUE(Set(u"event"));
  const auto after = steady_clock::now().time_since_epoch();
  std::array<unsigned char, 64> bytes{};
  ASSERT_EQ(read(reader.Get(), bytes.data(), bytes.size()), 8);
  std::uint64_t time = 0;
  for (std::size_t i = 8; i-- > 0;) time = time << 8U | bytes[i];
  EXPECT_GE(std::chrono::nanoseconds(time), before);
  EXPECT_LE(std::chrono::nanoseconds(time), after);
}

TEST_F(FifoEventsTest, LeavesAloneWhateverStandsInTheFifosPlaceAndMakesNothing) {
  ASSERT_TRUE(engine_.Create(u"good"));
  EXPECT_EQ(fs::status(folder_ / "good").permissions(), fs::perms(0666));
  std::ofstream(folder_ / "file") << "text";
  fs::permissions(folder_ / "file", fs::perms::owner_read);
  fs::create_directory(folder_ / "folder");
  fs::create_symlink(folder_ / "good", folder_ / "link");
  fs::create_symlink(temporary_.Path() / "made", folder_ / "toNothing");
  const auto begin = steady_clock::now();
  for (const std::u16string& name :
       {std::u16string(u"file"), std::u16string(u"folder"), std::u16string(u"link"),
        std::u16string(u"toNothing"), std::u16string(u".."), std::u16string(u""),
        std::u16string(300, u'x')}) {
    EXPECT_FALSE(Set(name));
    EXPECT_FALSE(engine_.Create(name));
  }
  EXPECT_LT(steady_clock::now() - begin, seconds(2)) << "at once";
  EXPECT_FALSE(Set(u"missing"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 5);
  EXPECT_FALSE(fs::exists(temporary_.Path() / "made"));
  EXPECT_EQ(fs::file_size(folder_ / "file"), 4U);
  EXPECT_EQ(fs::status(folder_ / "file").permissions(), fs::perms::owner_read);
  EXPECT_EQ(Received(), 0U);

  FifoEvents events(temporary_.Path() / "no/events");
  EXPECT_EQ(events.Open(u"event"), nullptr);
  EXPECT_FALSE(fs::exists(temporary_.Path() / "no"));
  fs::create_directory_symlink(folder_, temporary_.Path() / "folderLink");
  EXPECT_EQ(FifoEvents(temporary_.Path() / "folderLink").Open(u"good"), nullptr);
  EXPECT_FALSE(FifoEventListener("/dev/null/events").Create(u"event"));
}

TEST_F(FifoEventsTest, CountsAFullPipeAsSetAndDoesNotWait) {
  ASSERT_TRUE(engine_.Create(u"event"));
  for (int i = 0; i < 10'000; ++i) ASSERT_TRUE(Set(u"event"));
  EXPECT_LT(Received(), 10'000U);
  EXPECT_TRUE(Set(u"event"));
  EXPECT_EQ(Received(), 1U);
}

TEST_F(FifoEventsTest, AKilledEngineIsNoticedAndItsEventTakenOver) {
  ForkedProcess other = StartEngine();
  ASSERT_EQ(other.Talk().Hear(), 'y');
  EXPECT_FALSE(engine_.Create(u"event")) << "a living one holds it";
  EXPECT_TRUE(engine_.Create(u"another"));
  EXPECT_TRUE(Set(u"event"));
  std::unique_ptr<NamedEvent> event = events_.Open(u"event");
  ASSERT_TRUE(event);
  other.Kill();
  // The default action of the signal would end this process.
  signal(SIGPIPE, SIG_DFL);
  EXPECT_FALSE(event->Set());
  event.reset();
  EXPECT_TRUE(fs::exists(folder_ / "event")) << "a killed engine leaves its FIFO behind";
  EXPECT_FALSE(Set(u"event"));

  EXPECT_TRUE(engine_.Create(u"event"));
  EXPECT_FALSE(engine_.Create(u"event")) << "its own";
  EXPECT_EQ(Received(), 0U) << "sets meant for the killed engine";
  EXPECT_TRUE(Set(u"event"));
  const std::vector<EventSet> sets = engine_.Wait(milliseconds(0));
  ASSERT_EQ(sets.size(), 1U);
  EXPECT_EQ(sets[0].event, 1U);
}

TEST_F(FifoEventsTest, TheListenerRemovesItsFifosAndNobodyElses) {
  auto listener = std::make_unique<FifoEventListener>(folder_);
  ASSERT_TRUE(listener->Create(u"own"));
  ASSERT_TRUE(listener->Create(u"replaced"));
  fs::remove(folder_ / "replaced");
  std::ofstream(folder_ / "replaced") << "somebody's";
  listener.reset();
  EXPECT_FALSE(fs::exists(folder_ / "own"));
  EXPECT_TRUE(fs::exists(folder_ / "replaced"));
}

TEST_F(FifoEventsTest, EverySetArrivesInTheOrderOfSettingWhileOthersKeepSetting) {
  constexpr std::size_t kEvents = 12;
  constexpr std::size_t kSets = kEvents * 300;
  std::vector<std::u16string> names;
  for (char16_t letter = u'a'; names.size() < kEvents; ++letter) {
    names.emplace_back(1, letter);
    ASSERT_TRUE(engine_.Create(names.back()));
  }
  ForkedProcess setter([&](const Line&) {
    // A step of 7 makes the order of setting another than that of making.
    for (std::size_t i = 0; i < kSets; ++i) {
      if (!Set(names[i * 7 % kEvents])) _exit(1);
    }
  });
  std::size_t received = 0;
  while (received < kSets) {
    const std::vector<EventSet> sets = engine_.Wait(seconds(10));
    ASSERT_FALSE(sets.empty()) << "after " << received;
    for (const EventSet& set : sets) ASSERT_EQ(set.event, received++ * 7 % kEvents);
  }
  EXPECT_TRUE(setter.Join());
}

TEST_F(FifoEventsTest, WaitsNoLongerThanAskedAndSleepsMeanwhileAndDropsPieces) {
  ASSERT_TRUE(engine_.Create(u"event"));
  std::ofstream(folder_ / "event") << "abc";
  EXPECT_EQ(Received(), 0U);
  // A writer that came and went must leave no end of file behind that wakes every later wait.
  EXPECT_TRUE(Set(u"event"));
  const std::vector<EventSet> sets = engine_.Wait(seconds(5));
  ASSERT_EQ(sets.size(), 1U);
  EXPECT_LE(std::chrono::nanoseconds(sets[0].time), steady_clock::now().time_since_epoch());
  const auto begin = steady_clock::now();
  const std::clock_t processorBegin = std::clock();
  EXPECT_THAT(engine_.Wait(milliseconds(200)), IsEmpty());
  EXPECT_GE(steady_clock::now() - begin, milliseconds(200));
  EXPECT_LT(std::clock() - processorBegin, CLOCKS_PER_SEC / 100);
}

TEST_F(FifoEventsTest, AWaitIsInterruptedFromAnotherThread) {
  const auto begin = steady_clock::now();
  engine_.Interrupt();
  EXPECT_THAT(engine_.Wait(seconds(10)), IsEmpty()) << "interrupted before";
  std::thread other([&] {
    std::this_thread::sleep_for(milliseconds(20));
    engine_.Interrupt();
  });
  EXPECT_THAT(engine_.Wait(seconds(10)), IsEmpty());
  other.join();
  EXPECT_LT(steady_clock::now() - begin, seconds(5));
}

}  // namespace
}  // namespace platform
