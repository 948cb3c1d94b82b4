// The single instance between real processes, and the second copy's wish.
#include "platform/linux/instance/user_instance.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

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

class UserInstanceTest : public testing::Test {
 protected:
  LockPlace Place() const { return {folder_, LockPlace::Missing::Make}; }

  // A copy in another process that holds the lock, and serves with `answer` if there is one, until
  // it hears a letter.
  ForkedProcess StartCopy(const RaiseServer::Handler& answer = {}) {
    return ForkedProcess([this, answer](const Line& parent) {
      UserInstance copy(Place());
      const bool isFirst = copy.Acquire(kName);
      if (answer) copy.ServeRequests(answer);
      parent.Say(isFirst ? 'y' : 'n');
      parent.Hear();
      copy.StopServing();
    });
  }

  bool Raise() {
    UserInstance second(Place());
    EXPECT_FALSE(second.Acquire(kName));
    return second.BringRunningCopyForward(kTitles);
  }

  // Its answer to the packet, or what happened to it: 'c' no connection, 'n' no answer.
  char Answer(std::string_view packet) const {
    const FileDescriptor client = Connect();
    if (!client.IsOpen()) return 'c';
    static_cast<void>(!send(client.Get(), packet.data(), packet.size(), MSG_NOSIGNAL));
    char answer = 'n';
    return recv(client.Get(), &answer, 1, 0) == 1 ? answer : 'n';
  }

  // Closed when nobody listens there, or not to us.
  FileDescriptor Connect() const {
    FileDescriptor client(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, File(".socket").c_str(), sizeof(address.sun_path) - 1);
    const auto* generic = reinterpret_cast<const sockaddr*>(&address);
    if (connect(client.Get(), generic, sizeof(address)) != 0) return {};
    return client;
  }

  fs::path File(const char* extension) const {
    return folder_ / ("Velsona-" + std::to_string(user_) + extension);
  }

  const uid_t user_ = geteuid();
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
  EXPECT_FALSE(UserInstance(Place()).Acquire(kName));
  EXPECT_TRUE(UserInstance(Place()).Acquire(u"another"));
  EXPECT_EQ(fs::status(File(".lock")).permissions(), fs::perms(01600));
  fs::remove(File(".lock"));
  EXPECT_TRUE(UserInstance(Place()).Acquire(kName)) << "somebody has taken the file away";
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

TEST_F(UserInstanceTest, TheLockLiesInTheRuntimeFolderUnlessARootIsNamed) {
  using Missing = LockPlace::Missing;
  const struct {
    const char* runtimeFolder;
    const char* root;
    LockPlace expected;
  } cases[] = {{"/run/user/7", "", {"/run/user/7", Missing::Fail}},
               {"/run/user/7", "/root", {"/state", Missing::Make}},
               {"", "", {"/state", Missing::Make}},
               {"relative", "", {"/state", Missing::Make}}};
  for (const auto& c : cases) {
    ForkedProcess child([&](const Line&) {
      setenv("XDG_RUNTIME_DIR", c.runtimeFolder, 1);
      setenv("TONALYX_ROOT", c.root, 1);
      const LockPlace place = InstanceLockPlace("/state");
      _exit(place.folder == c.expected.folder && place.missing == c.expected.missing ? 0 : 1);
    });
    EXPECT_TRUE(child.Join()) << c.runtimeFolder << ", " << c.root;
  }
}

TEST_F(UserInstanceTest, ARequestCarriesTitlesAndTokenAndTheAnswerBack) {
  const struct {
    const char* activationToken;
    const char* startupId;
    const char* expectedToken;
  } cases[] = {
      {"", "", ""}, {"token 1", "", "token 1"}, {"token", "id_TIME7", "token"}, {"", "id", "id"}};
  for (const auto& c : cases) {
    setenv("XDG_ACTIVATION_TOKEN", c.activationToken, 1);
    setenv("DESKTOP_STARTUP_ID", c.startupId, 1);
    ForkedProcess first = StartCopy([&](const RaiseRequest& request) {
      return request == RaiseRequest{{kTitles.begin(), kTitles.end()}, c.expectedToken};
    });
    ASSERT_EQ(first.Talk().Hear(), 'y');
    EXPECT_TRUE(Raise());
    EXPECT_TRUE(Raise()) << "the next one too";
  }
}

TEST_F(UserInstanceTest, ARequestIsBoundedInTimeWhateverTheFirstCopyDoes) {
  // Much longer than the program waits, and much shorter than the copies here stay silent.
  const auto expectBoundedRefusal = [this] {
    const auto begin = steady_clock::now();
    EXPECT_FALSE(Raise());
    EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(20));
  };
  const RaiseServer::Handler hang = [](const RaiseRequest&) {
    std::this_thread::sleep_for(std::chrono::seconds(60));
    return true;
  };
  for (const RaiseServer::Handler& answer : {RaiseServer::Handler(), hang}) {
    ForkedProcess silent = StartCopy(answer);
    ASSERT_EQ(silent.Talk().Hear(), 'y');
    expectBoundedRefusal();
  }
  ForkedProcess stopped = StartCopy([](const RaiseRequest&) { return true; });
  ASSERT_EQ(stopped.Talk().Hear(), 'y');
  stopped.Stop();
  expectBoundedRefusal();
}

TEST_F(UserInstanceTest, ServesAgainAfterAKilledCopyAndAlongPathsOfAnyLength) {
  folder_ /= std::string(150, 'x');
  for (const bool isKilled : {true, false}) {
    ForkedProcess copy = StartCopy([](const RaiseRequest&) { return true; });
    ASSERT_EQ(copy.Talk().Hear(), 'y');
    EXPECT_TRUE(Raise());
    EXPECT_EQ(fs::status(File(".socket")).permissions(), fs::perms(0600));
    isKilled ? copy.Kill() : copy.Talk().Say('e');
    EXPECT_TRUE(isKilled || copy.Join());
    EXPECT_EQ(fs::exists(File(".socket")), isKilled);
  }
}

// The socket's rights keep others out already; here they are gone, as on a file system without any.
TEST_F(UserInstanceTest, AnswersNoOtherUser) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become somebody else";
  ForkedProcess first = StartCopy([](const RaiseRequest&) { return true; });
  ASSERT_EQ(first.Talk().Hear(), 'y');
  for (fs::path path = File(".socket"); path != temporary_.Path().parent_path();
       path = path.parent_path()) {
    fs::permissions(path, fs::perms(0777));
  }
  for (const auto& [user, answer] : {std::pair(0U, '1'), std::pair(65534U, 'n')}) {
    ForkedProcess second([&, id = user](const Line& parent) {
      if (setresuid(id, id, id) != 0) _exit(1);
      parent.Say(Answer({"raise\0\0Velsona\0", 15}));
    });
    EXPECT_EQ(second.Talk().Hear(), answer) << user;
  }
}

TEST_F(UserInstanceTest, ServesOthersThanClientsThatSayNothingOrNonsense) {
  std::atomic<int> requests = 0;
  UserInstance first(Place());
  ASSERT_TRUE(first.Acquire(kName));
  first.ServeRequests([&](const RaiseRequest& request) {
    ++requests;
    return !request.titles.empty();
  });
  const FileDescriptor silent = Connect();
  EXPECT_TRUE(Connect().IsOpen()) << "one that is gone at once";
  const std::pair<std::string, char> packets[] = {
      {{"raise\0token\0Tonalyx\0", 20}, '1'},
      {{"raise\0\0Caf\xE9\0", 12}, '1'},
      {{"raise\0\0\0", 8}, '1'},
      {{"raise\0\0", 7}, '0'},
      {{"raise\0", 6}, '0'},
      {{"raise\0\0Tonalyx", 14}, '0'},
      {{"Raise\0\0Tonalyx\0", 15}, '0'},
      {std::string("raise\0\0", 7) + std::string(16376, 'x') + '\0', '1'},
      {std::string("raise\0\0", 7) + std::string(16377, 'x') + '\0', '0'},
      {std::string(100'000, 'x'), '0'},
  };
  for (const auto& [packet, answer] : packets) EXPECT_EQ(Answer(packet), answer) << packet.size();
  EXPECT_TRUE(Raise());
  EXPECT_EQ(requests, 6);
  first.StopServing();
  first.StopServing();
}

}  // namespace
}  // namespace platform
