// The single instance between real processes, and the second copy's wish.
#include "platform/linux/instance/user_instance.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;
using support::ForkedProcess;
using support::Line;

constexpr std::u16string_view kName = u"Velsona";
constexpr std::array<std::u16string_view, 2> kTitles = {u"Velsona", u"Tonalyx"};

// Sets environment variables, an empty value unsets, and puts back what was there.
class Environment {
 public:
  Environment(const char* name, const std::string& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    Put(value);
  }
  ~Environment() { Put(before_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  void Put(const std::string& value) const {
    if (value.empty()) {
      unsetenv(name_);
    } else {
      setenv(name_, value.c_str(), 1);
    }
  }

  const char* name_;
  std::string before_;
};

// Closed when nobody listens there, or not to us.
FileDescriptor ConnectTo(const fs::path& path) {
  FileDescriptor client(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  if (connect(client.Get(), generic, sizeof(address)) != 0) return {};
  return client;
}

class UserInstanceTest : public testing::Test {
 protected:
  LockPlace Place() const { return {folder_, LockPlace::Missing::Make}; }

  // A copy in another process that holds the lock until it hears a letter.
  ForkedProcess StartCopy() {
    return ForkedProcess([this](const Line& parent) {
      UserInstance copy(Place());
      parent.Say(copy.Acquire(kName) ? 'y' : 'n');
      parent.Hear();
    });
  }

  fs::path File(const char* extension) const {
    return folder_ / ("Velsona-" + std::to_string(geteuid()) + extension);
  }

  support::TemporaryFolder temporary_;
  fs::path folder_ = temporary_.Path() / "a/root";
};

TEST_F(UserInstanceTest, LetsTheNextInOnlyOnceTheHolderIsGoneAlsoWhenItWasKilled) {
  ForkedProcess first = StartCopy();
  ASSERT_EQ(first.Talk().Hear(), 'y');
  UserInstance second(Place());
  EXPECT_FALSE(second.Acquire(kName));
  first.Kill();
  EXPECT_TRUE(second.Acquire(kName));
  EXPECT_TRUE(second.Acquire(kName)) << "it holds it already";
  UserInstance third(Place());
  EXPECT_FALSE(third.Acquire(kName));
}

TEST_F(UserInstanceTest, LetsOneOfManyWinThatStartAtOnce) {
  constexpr int kRounds = 10;
  constexpr int kCopies = 6;
  for (int round = 0; round < kRounds; ++round) {
    std::vector<std::unique_ptr<ForkedProcess>> copies;
    for (int i = 0; i < kCopies; ++i) {
      copies.push_back(std::make_unique<ForkedProcess>([this](const Line& parent) {
        UserInstance copy(Place());
        parent.Hear();
        parent.Say(copy.Acquire(kName) ? 'y' : 'n');
        parent.Hear();
      }));
    }
    for (const auto& copy : copies) copy->Talk().Say('g');
    int winners = 0;
    for (const auto& copy : copies) winners += copy->Talk().Hear() == 'y' ? 1 : 0;
    EXPECT_EQ(winners, 1);
  }
}

TEST_F(UserInstanceTest, SurvivesThatSomebodyTakesTheLockFileAway) {
  UserInstance first(Place());
  ASSERT_TRUE(first.Acquire(kName));
  struct stat status {};
  ASSERT_EQ(stat(File(".lock").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 01600U);
  fs::remove(File(".lock"));
  UserInstance second(Place());
  EXPECT_TRUE(second.Acquire(kName));
}

TEST_F(UserInstanceTest, CountsALockThatCannotBeMadeAsTaken) {
  const auto fails = [](const LockPlace& place) {
    testing::internal::CaptureStderr();
    UserInstance copy(place);
    const bool acquired = copy.Acquire(kName);
    const bool raised = copy.BringRunningCopyForward(kTitles);
    EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
    return !acquired && !raised;
  };
  EXPECT_TRUE(fails({"/dev/null/folder", LockPlace::Missing::Make}));
  EXPECT_TRUE(fails({temporary_.Path() / "missing", LockPlace::Missing::Fail}));
  EXPECT_FALSE(fs::exists(temporary_.Path() / "missing"));
  fs::create_directories(File(".lock"));
  EXPECT_TRUE(fails(Place())) << "a folder in the lock's place";
  fs::remove(File(".lock"));
  std::ofstream(temporary_.Path() / "outside") << "text";
  fs::create_symlink(temporary_.Path() / "outside", File(".lock"));
  EXPECT_TRUE(fails(Place())) << "a link in the lock's place";
}

TEST(LockPlaceTest, IsTheRuntimeFolderUnlessARootIsNamed) {
  struct Case {
    const char* runtimeFolder;
    const char* root;
    LockPlace expected;
  };
  const std::vector<Case> cases = {
      {"/run/user/7", "", {"/run/user/7", LockPlace::Missing::Fail}},
      {"/run/user/7", "/root", {"/state", LockPlace::Missing::Make}},
      {"", "", {"/state", LockPlace::Missing::Make}},
      {"relative", "", {"/state", LockPlace::Missing::Make}},
  };
  for (const Case& testCase : cases) {
    const Environment runtime("XDG_RUNTIME_DIR", testCase.runtimeFolder);
    const Environment root("TONALYX_ROOT", testCase.root);
    const LockPlace place = InstanceLockPlace("/state");
    EXPECT_EQ(place.folder, testCase.expected.folder);
    EXPECT_EQ(place.missing, testCase.expected.missing);
  }
}

// What the second copy's wish meets, with the first copy in a process of its own.
class RaiseTest : public UserInstanceTest {
 protected:
  // Serves requests with `answer` until it hears a letter, then reports the request by a letter.
  ForkedProcess StartServingCopy(RaiseServer::Handler answer) {
    return ForkedProcess([this, answer = std::move(answer)](const Line& parent) {
      UserInstance copy(Place());
      if (!copy.Acquire(kName)) _exit(1);
      copy.ServeRequests(answer);
      parent.Say('y');
      parent.Hear();
      copy.StopServing();
    });
  }

  bool Raise() {
    UserInstance second(Place());
    EXPECT_FALSE(second.Acquire(kName));
    return second.BringRunningCopyForward(kTitles);
  }
};

TEST_F(RaiseTest, CarriesTitlesAndTokenAndTheAnswerBack) {
  struct Case {
    const char* activationToken;
    const char* startupId;
    const char* expectedToken;
  };
  const std::vector<Case> cases = {
      {"", "", ""}, {"token 1", "", "token 1"}, {"token", "id_TIME7", "token"}, {"", "id", "id"}};
  for (const Case& testCase : cases) {
    const Environment token("XDG_ACTIVATION_TOKEN", testCase.activationToken);
    const Environment startup("DESKTOP_STARTUP_ID", testCase.startupId);
    ForkedProcess first = StartServingCopy([&](const RaiseRequest& request) {
      return request == RaiseRequest{{kTitles.begin(), kTitles.end()}, testCase.expectedToken};
    });
    ASSERT_EQ(first.Talk().Hear(), 'y');
    EXPECT_TRUE(Raise());
    EXPECT_TRUE(Raise()) << "the next one too";
  }
}

TEST_F(RaiseTest, TellsThatNoWindowWasRaised) {
  ForkedProcess refusing = StartServingCopy([](const RaiseRequest&) { return false; });
  ASSERT_EQ(refusing.Talk().Hear(), 'y');
  EXPECT_FALSE(Raise());
}

TEST_F(RaiseTest, IsBoundedInTimeWhateverTheFirstCopyDoes) {
  // Much longer than the program waits, and much shorter than the copies here stay silent.
  const auto expectBoundedRefusal = [this] {
    const auto begin = steady_clock::now();
    EXPECT_FALSE(Raise());
    EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(20));
  };
  {
    ForkedProcess notServing = StartCopy();
    ASSERT_EQ(notServing.Talk().Hear(), 'y');
    expectBoundedRefusal();
  }
  {
    ForkedProcess hanging = StartServingCopy([](const RaiseRequest&) {
      std::this_thread::sleep_for(std::chrono::seconds(60));
      return true;
    });
    ASSERT_EQ(hanging.Talk().Hear(), 'y');
    expectBoundedRefusal();
  }
  {
    ForkedProcess stopped = StartServingCopy([](const RaiseRequest&) { return true; });
    ASSERT_EQ(stopped.Talk().Hear(), 'y');
    stopped.Stop();
    // Enough copies to fill the queue of connections.
    std::vector<std::thread> copies;
    for (int i = 0; i < 20; ++i) copies.emplace_back(expectBoundedRefusal);
    for (std::thread& copy : copies) copy.join();
  }
}

TEST_F(RaiseTest, ServesAgainAfterAKilledCopyAndAlongPathsOfAnyLength) {
  folder_ /= std::string(150, 'x');
  ForkedProcess first = StartServingCopy([](const RaiseRequest&) { return true; });
  ASSERT_EQ(first.Talk().Hear(), 'y');
  EXPECT_TRUE(Raise());
  first.Kill();
  ASSERT_TRUE(fs::exists(File(".socket")));
  ForkedProcess second = StartServingCopy([](const RaiseRequest&) { return true; });
  ASSERT_EQ(second.Talk().Hear(), 'y');
  EXPECT_TRUE(Raise());
  second.Talk().Say('e');
  EXPECT_TRUE(second.Join());
  EXPECT_FALSE(fs::exists(File(".socket")));
}

// The socket's rights keep others out already; here they are gone, as on a file system without any.
TEST_F(RaiseTest, AnswersNoOtherUser) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become somebody else";
  ForkedProcess first = StartServingCopy([](const RaiseRequest&) { return true; });
  ASSERT_EQ(first.Talk().Hear(), 'y');
  const fs::path socketPath = File(".socket");
  for (fs::path path = socketPath; path != temporary_.Path().parent_path();
       path = path.parent_path()) {
    ASSERT_EQ(chmod(path.c_str(), 0777), 0);
  }
  const auto raiseAs = [&](uid_t user) {
    ForkedProcess second([&](const Line& parent) {
      if (setresuid(user, user, user) != 0) _exit(1);
      const FileDescriptor client(ConnectTo(socketPath));
      if (!client.IsOpen()) {
        parent.Say('c');
        return;
      }
      const std::string packet("raise\0\0Velsona\0", 15);
      static_cast<void>(send(client.Get(), packet.data(), packet.size(), MSG_NOSIGNAL));
      char answer = 'n';
      parent.Say(recv(client.Get(), &answer, 1, 0) == 1 ? answer : 'n');
    });
    return second.Talk().Hear();
  };
  EXPECT_EQ(raiseAs(0), '1');
  EXPECT_EQ(raiseAs(65534), 'n');
}

TEST_F(RaiseTest, ServesOthersThanClientsThatSayNothingOrNonsense) {
  std::atomic<int> requests = 0;
  UserInstance first(Place());
  ASSERT_TRUE(first.Acquire(kName));
  first.ServeRequests([&](const RaiseRequest&) {
    ++requests;
    return true;
  });
  const auto connectClient = [this] {
    FileDescriptor client = ConnectTo(File(".socket"));
    EXPECT_TRUE(client.IsOpen());
    return client;
  };
  const FileDescriptor silent = connectClient();
  { const FileDescriptor gone = connectClient(); }
  const FileDescriptor talking = connectClient();
  const std::string nonsense(100'000, 'x');
  EXPECT_GT(send(talking.Get(), nonsense.data(), nonsense.size(), MSG_NOSIGNAL), 0);
  EXPECT_TRUE(Raise());
  EXPECT_EQ(requests, 1);
  first.StopServing();
  first.StopServing();
}

}  // namespace
}  // namespace platform
