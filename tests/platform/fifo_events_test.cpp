// Events as FIFOs, from both sides: against everything that may stand where a FIFO should, and with
// other processes as engines and as setters.
#include "platform/linux/events/fifo_events.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <barrier>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/events/fifo_event_listener.h"
#include "platform/linux/events/fifo_name.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

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

  // An engine in another process that holds "event" until it hears a letter.
  ForkedProcess StartEngine() {
    return ForkedProcess([this](const Line& parent) {
      FifoEventListener listener(folder_);
      parent.Say(listener.Create(u"event") ? 'y' : 'n');
      parent.Hear();
    });
  }

  fs::path File(const char* name) const { return folder_ / name; }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "events";
  FifoEvents events_{folder_};
};

using FifoEventListenerTest = FifoEventsTest;

TEST(FifoNameTest, EscapesEveryByteThatIsNoPlainOne) {
  struct Case {
    std::u16string_view event;
    const char* file;
  };
  constexpr std::array<Case, 6> kCases = {{
      {u"Global\\VelsonaGFXPropEvent{0A-9f}", "Global%5CVelsonaGFXPropEvent{0A-9f}"},
      {u"AZaz09{}._-", "AZaz09{}._-"},
      {u"a/b%c d", "a%2Fb%25c%20d"},
      {u"\u00E9\u20AC", "%C3%A9%E2%82%AC"},
      {std::u16string_view(u"\0\n", 2), "%00%0A"},
      {u"[~@`|", "%5B%7E%40%60%7C"},
  }};
  for (const Case& testCase : kCases) EXPECT_EQ(FifoName(testCase.event), testCase.file);
}

TEST_F(FifoEventsTest, WritesTheTimeAsEightBytes) {
  ASSERT_EQ(mkfifo(File("event").c_str(), 0666), 0);
  const FileDescriptor reader(open(File("event").c_str(), O_RDONLY | O_NONBLOCK));
  const auto before = steady_clock::now().time_since_epoch();
  ASSERT_TRUE(Set(u"event"));
  const auto after = steady_clock::now().time_since_epoch();
  std::array<unsigned char, 64> bytes{};
  ASSERT_EQ(read(reader.Get(), bytes.data(), bytes.size()), 8);
  std::uint64_t time = 0;
  for (std::size_t i = 8; i-- > 0;) time = time << 8U | bytes[i];
  const std::chrono::nanoseconds stamp(time);
  EXPECT_GE(stamp, before);
  EXPECT_LE(stamp, after);
}

TEST_F(FifoEventsTest, LeavesAloneWhateverStandsInTheFifosPlace) {
  struct Case {
    const char* what;
    std::function<void(const fs::path&)> put;
  };
  const std::vector<Case> cases = {
      {"a folder", [](const fs::path& path) { fs::create_directory(path); }},
      {"a link to nothing",
       [&](const fs::path& path) { fs::create_symlink(temporary_.Path() / "made", path); }},
      {"a device",
       [](const fs::path& path) { mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 3)); }},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.what);
    testCase.put(File("event"));
    EXPECT_FALSE(Set(u"event"));
    fs::remove(File("event"));
  }
  EXPECT_FALSE(fs::exists(temporary_.Path() / "made"));
  std::ofstream(File("file")) << "text";
  EXPECT_FALSE(Set(u"file"));
  EXPECT_EQ(fs::file_size(File("file")), 4U);
}

TEST_F(FifoEventsTest, MakesNeitherFileNorFolder) {
  FifoEvents events(temporary_.Path() / "no/events");
  EXPECT_EQ(events.Open(u"event"), nullptr);
  EXPECT_FALSE(fs::exists(temporary_.Path() / "no"));
  EXPECT_FALSE(Set(u"event"));
  EXPECT_FALSE(Set(u".."));
  EXPECT_FALSE(Set(std::u16string(300, u'x')));
  EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(FifoEventsTest, CountsAFullPipeAsSetAndDoesNotWait) {
  FifoEventListener engine(folder_);
  ASSERT_TRUE(engine.Create(u"event"));
  constexpr std::size_t kMoreThanFits = 10'000;
  const auto begin = steady_clock::now();
  for (std::size_t i = 0; i < kMoreThanFits; ++i) ASSERT_TRUE(Set(u"event"));
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(5));
  const std::size_t received = engine.Wait(milliseconds(0)).size();
  EXPECT_GT(received, 1000U);
  EXPECT_LT(received, kMoreThanFits);
  EXPECT_TRUE(Set(u"event"));
  EXPECT_EQ(engine.Wait(milliseconds(0)).size(), 1U);
}

TEST_F(FifoEventsTest, SurvivesAnEngineThatIsKilledBetweenOpeningAndSetting) {
  ForkedProcess engine = StartEngine();
  ASSERT_EQ(engine.Talk().Hear(), 'y');
  const std::unique_ptr<NamedEvent> event = events_.Open(u"event");
  ASSERT_TRUE(event);
  engine.Kill();

  // The default action of the signal would end this process.
  signal(SIGPIPE, SIG_DFL);
  EXPECT_FALSE(event->Set());
  sigset_t pending;
  sigpending(&pending);
  EXPECT_FALSE(sigismember(&pending, SIGPIPE));
  EXPECT_TRUE(fs::exists(File("event"))) << "a killed engine leaves its FIFO behind";
  EXPECT_FALSE(Set(u"event"));
}

TEST_F(FifoEventListenerTest, RefusesWhatALivingListenerHoldsAndTakesOverFromAKilledOne) {
  ForkedProcess engine = StartEngine();
  ASSERT_EQ(engine.Talk().Hear(), 'y');
  FifoEventListener listener(folder_);
  EXPECT_FALSE(listener.Create(u"event"));
  EXPECT_TRUE(listener.Create(u"another"));
  EXPECT_TRUE(Set(u"event"));

  engine.Kill();
  ASSERT_TRUE(fs::exists(folder_ / "event"));
  EXPECT_TRUE(listener.Create(u"event"));
  EXPECT_FALSE(listener.Create(u"event")) << "its own";
  EXPECT_THAT(listener.Wait(milliseconds(0)), IsEmpty()) << "sets meant for the killed engine";
  EXPECT_TRUE(Set(u"event"));
  const std::vector<EventSet> sets = listener.Wait(milliseconds(0));
  ASSERT_EQ(sets.size(), 1U);
  EXPECT_EQ(sets[0].event, 1U);
}

TEST_F(FifoEventListenerTest, GivesWayToAReaderWithoutTheLockAndToALockWithoutAReader) {
  const std::string path = folder_ / "event";
  ASSERT_EQ(mkfifo(path.c_str(), 0666), 0);
  FileDescriptor reader(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  FileDescriptor locked(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
  FifoEventListener listener(folder_);
  EXPECT_FALSE(listener.Create(u"event")) << "a reader that knows nothing of locks";
  ASSERT_EQ(flock(locked.Get(), LOCK_EX | LOCK_NB), 0);
  reader = FileDescriptor();
  EXPECT_FALSE(listener.Create(u"event")) << "one that does not read yet";
  locked = FileDescriptor();
  EXPECT_TRUE(listener.Create(u"event"));
}

TEST_F(FifoEventListenerTest, LetsOneOfTwoWinThatStartAtOnce) {
  constexpr int kRounds = 500;
  std::atomic<int> winners = 0;
  std::barrier start(2);
  std::barrier end(2);
  const auto engine = [&] {
    for (int round = 0; round < kRounds; ++round) {
      FifoEventListener listener(folder_);
      start.arrive_and_wait();
      if (listener.Create(u"event")) ++winners;
      end.arrive_and_wait();
    }
  };
  std::thread other(engine);
  engine();
  other.join();
  EXPECT_EQ(winners, kRounds);
}

TEST_F(FifoEventListenerTest, RemovesItsFifosAndNobodyElses) {
  auto listener = std::make_unique<FifoEventListener>(folder_);
  ASSERT_TRUE(listener->Create(u"kept"));
  ASSERT_TRUE(listener->Create(u"replaced"));
  fs::remove(folder_ / "replaced");
  std::ofstream(folder_ / "replaced") << "somebody's";
  listener.reset();
  EXPECT_FALSE(fs::exists(folder_ / "kept"));
  EXPECT_TRUE(fs::exists(folder_ / "replaced"));
}

TEST_F(FifoEventListenerTest, MakesNoEventWhereSomethingElseStands) {
  FifoEventListener listener(folder_);
  ASSERT_TRUE(listener.Create(u"good"));
  std::ofstream(folder_ / "file") << "text";
  fs::permissions(folder_ / "file", fs::perms::owner_read);
  fs::create_symlink(folder_ / "good", folder_ / "link");
  EXPECT_FALSE(listener.Create(u"file"));
  EXPECT_EQ(fs::status(folder_ / "file").permissions(), fs::perms::owner_read);
  EXPECT_FALSE(listener.Create(u"link"));
  EXPECT_FALSE(listener.Create(u".."));
  EXPECT_FALSE(listener.Create(u""));
  FifoEventListener nowhere("/dev/null/events");
  EXPECT_FALSE(nowhere.Create(u"event"));
}

TEST_F(FifoEventListenerTest, ReturnsEverySetInTheOrderOfSettingWhileOthersKeepSetting) {
  constexpr std::size_t kEvents = 12;
  constexpr std::size_t kRounds = 300;
  FifoEventListener listener(folder_);
  std::vector<std::u16string> names;
  for (std::size_t i = 0; i < kEvents; ++i) {
    names.push_back(u"event" + std::u16string(1, static_cast<char16_t>(u'a' + i)));
    ASSERT_TRUE(listener.Create(names.back()));
  }
  ForkedProcess setter([&](const Line&) {
    for (std::size_t i = 0; i < kEvents * kRounds; ++i) {
      // A step of 7 makes the order of setting another than that of making.
      const auto event = events_.Open(names[i * 7 % kEvents]);
      if (!event || !event->Set()) _exit(1);
    }
  });
  std::vector<std::size_t> received;
  while (received.size() < kEvents * kRounds) {
    const std::vector<EventSet> sets = listener.Wait(seconds(10));
    ASSERT_FALSE(sets.empty()) << "after " << received.size();
    for (const EventSet& set : sets) received.push_back(set.event);
  }
  EXPECT_TRUE(setter.Join());
  for (std::size_t i = 0; i < received.size(); ++i) ASSERT_EQ(received[i], i * 7 % kEvents) << i;
}

TEST_F(FifoEventListenerTest, WaitsNoLongerThanAskedAndSleepsMeanwhile) {
  FifoEventListener listener(folder_);
  ASSERT_TRUE(listener.Create(u"event"));
  // A writer that came and went must leave no end of file behind that wakes every later wait.
  EXPECT_TRUE(Set(u"event"));
  EXPECT_EQ(listener.Wait(seconds(5)).size(), 1U);
  const auto begin = steady_clock::now();
  const std::clock_t processorBegin = std::clock();
  EXPECT_THAT(listener.Wait(milliseconds(200)), IsEmpty());
  EXPECT_GE(steady_clock::now() - begin, milliseconds(200));
  EXPECT_LT(std::clock() - processorBegin, CLOCKS_PER_SEC / 100);
}

TEST_F(FifoEventListenerTest, DropsPiecesThatAreNoWholeStamp) {
  FifoEventListener listener(folder_);
  ASSERT_TRUE(listener.Create(u"event"));
  std::ofstream(folder_ / "event") << "abc";
  EXPECT_THAT(listener.Wait(milliseconds(0)), IsEmpty());
  EXPECT_TRUE(Set(u"event"));
  const std::vector<EventSet> sets = listener.Wait(milliseconds(0));
  ASSERT_EQ(sets.size(), 1U);
  EXPECT_LE(sets[0].time,
            static_cast<std::uint64_t>(steady_clock::now().time_since_epoch().count()));
}

FifoEventListener* signalledListener = nullptr;

TEST_F(FifoEventListenerTest, CanBeInterruptedFromAnotherThreadAndFromASignalHandler) {
  FifoEventListener listener(folder_);
  ASSERT_TRUE(listener.Create(u"event"));
  const auto begin = steady_clock::now();
  listener.Interrupt();
  EXPECT_THAT(listener.Wait(seconds(10)), IsEmpty()) << "interrupted before";
  std::thread other([&] {
    std::this_thread::sleep_for(milliseconds(20));
    listener.Interrupt();
  });
  EXPECT_THAT(listener.Wait(seconds(10)), IsEmpty());
  other.join();

  signalledListener = &listener;
  signal(SIGALRM, [](int) { signalledListener->Interrupt(); });
  ualarm(20'000, 0);
  EXPECT_THAT(listener.Wait(seconds(10)), IsEmpty());
  signal(SIGALRM, SIG_DFL);
  EXPECT_LT(steady_clock::now() - begin, seconds(5));
}

}  // namespace
}  // namespace platform
