// The folder that everything lies in.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/linux/files/state_folder.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

TEST(StateFolderTest, FollowsTheEnvironmentAndTheUsersRights) {
  constexpr uid_t kNobody = 65534;
  const bool isRoot = geteuid() == 0 && !fs::exists("/var/lib/norvane/velsona");
  const struct {
    const char* root;
    const char* stateHome;
    uid_t user;
    fs::path expected;
  } cases[] = {
      {"/somewhere/./else/", "", geteuid(), "/somewhere/else"},
      {"relative", "", geteuid(), fs::current_path() / "relative"},
      {"", "/state", 0, "/var/lib/norvane/velsona"},
      {"", "/state", kNobody, "/state/norvane/velsona"},
      {"", "", kNobody, "/home/someone/.local/state/norvane/velsona"},
      {"", "relative", kNobody, "/home/someone/.local/state/norvane/velsona"},
  };
  for (const auto& c : cases) {
    if (c.user != geteuid() && !isRoot) continue;
    // In a child, for the environment and the user belong to the whole process.
    support::ForkedProcess child([&](const support::Line&) {
      setenv("TONALYX_ROOT", c.root, 1);
      setenv("XDG_STATE_HOME", c.stateHome, 1);
      setenv("HOME", "/home/someone", 1);
      if (seteuid(c.user) != 0 || StateFolder() != c.expected) _exit(1);
    });
    EXPECT_TRUE(child.Join()) << c.expected;
  }
  EXPECT_FALSE(fs::exists("/somewhere"));
}

TEST(StateFolderTest, IsOpenToEveryoneAndItsParentsAreNot) {
  const support::TemporaryFolder temporary;
  const fs::path folder = temporary.Path() / "one/two/three";
  const mode_t before = umask(0077);
  EXPECT_TRUE(MakeStateFolder(folder));
  umask(before);
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0777));
  EXPECT_EQ(fs::status(folder.parent_path()).permissions(), fs::perms(0755));
  fs::permissions(folder, fs::perms(0700));
  EXPECT_TRUE(MakeStateFolder(folder)) << "it is there already";
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms(0700));
  EXPECT_FALSE(MakeStateFolder("/dev/null/folder"));
}

}  // namespace
}  // namespace platform
