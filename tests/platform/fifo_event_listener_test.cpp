// The engine's side with other processes as engines and as setters.
#include "platform/linux/fifo_event_listener.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/fifo_events.h"
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
using testing::ElementsAre;
using testing::IsEmpty;

mode_t ModeOf(const fs::path& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

class FifoEventListenerTest : public testing::Test {
 protected:
  std::vector<std::size_t> Indices(const std::vector<EventSet>& sets) {
    std::vector<std::size_t> indices;
    for (const EventSet& set : sets) indices.push_back(set.event);
    return indices;
  }

  void Set(std::u16string_view name) {
    const std::unique_ptr<NamedEvent> event = events_.Open(name);
    ASSERT_TRUE(event && event->Set());
  }

  // An engine in another process that holds "event" until it hears a letter.
  ForkedProcess StartEngine() {
    return ForkedProcess([this](const Line& parent) {
      FifoEventListener listener(folder_);
      parent.Say(listener.Create(u"event") ? 'y' : 'n');
      parent.Hear();
    });
  }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "a/root/events";
  FifoEvents events_{folder_};
};

TEST_F(FifoEventListenerTest, RefusesWhatALivingListenerHoldsAndTakesOverFromAKilledOne) {
  ForkedProcess engine = StartEngine();
  ASSERT_EQ(engine.Talk().Hear(), 'y');
  FifoEventListener listener(folder_);
  EXPECT_FALSE(listener.Create(u"event"));
  EXPECT_TRUE(listener.Create(u"another"));
  Set(u"event");

  engine.Kill();
  ASSERT_TRUE(fs::exists(folder_ / "event"));
  EXPECT_TRUE(listener.Create(u"event"));
  EXPECT_FALSE(listener.Create(u"event")) << "its own";
  EXPECT_THAT(listener.Wait(milliseconds(0)), IsEmpty()) << "sets meant for the killed engine";
  Set(u"event");
  EXPECT_THAT(Indices(listener.Wait(milliseconds(0))), ElementsAre(1U));
}

TEST_F(FifoEventListenerTest, GivesWayToAReaderWithoutTheLockAndToALockWithoutAReader) {
  fs::create_directories(folder_);
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
  EXPECT_EQ(ModeOf(folder_ / "file"), 0400U);
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
  Set(u"event");
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
  Set(u"event");
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
