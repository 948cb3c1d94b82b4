// The setting side against everything that may stand where a FIFO should.
#include "platform/linux/fifo_events.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>

#include "platform/linux/fifo_event_listener.h"
#include "platform/linux/fifo_name.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

class FifoEventsTest : public testing::Test {
 protected:
  FifoEventsTest() { fs::create_directories(folder_); }

  bool Set(std::u16string_view name) {
    const std::unique_ptr<NamedEvent> event = events_.Open(name);
    return event && event->Set();
  }

  fs::path File(const char* name) const { return folder_ / name; }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "events";
  FifoEvents events_{folder_};
};

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
  const fs::path outside = temporary_.Path() / "outside";
  ASSERT_EQ(mkfifo(outside.c_str(), 0666), 0);
  const FileDescriptor outsideReader(open(outside.c_str(), O_RDONLY | O_NONBLOCK));
  struct Case {
    const char* what;
    std::function<void(const fs::path&)> put;
  };
  const std::vector<Case> cases = {
      {"a folder", [](const fs::path& path) { fs::create_directory(path); }},
      {"a link to a FIFO that is read",
       [&](const fs::path& path) { fs::create_symlink(outside, path); }},
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
  char byte = 0;
  EXPECT_LE(read(outsideReader.Get(), &byte, 1), 0);
  EXPECT_FALSE(fs::exists(temporary_.Path() / "made"));
  std::ofstream(File("file")) << "text";
  EXPECT_FALSE(Set(u"file"));
  EXPECT_EQ(fs::file_size(File("file")), 4U);
}

TEST_F(FifoEventsTest, FollowsNoLinkInTheFoldersPlace) {
  FifoEventListener engine(folder_);
  ASSERT_TRUE(engine.Create(u"event"));
  fs::create_directory_symlink(folder_, temporary_.Path() / "link");
  FifoEvents events(temporary_.Path() / "link");
  EXPECT_EQ(events.Open(u"event"), nullptr);
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
  support::ForkedProcess engine([this](const support::Line& parent) {
    FifoEventListener listener(folder_);
    parent.Say(listener.Create(u"event") ? 'y' : 'n');
    parent.Hear();
  });
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

}  // namespace
}  // namespace platform
