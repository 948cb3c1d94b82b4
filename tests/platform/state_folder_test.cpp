#include "platform/linux/files/state_folder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <thread>

#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

namespace fs = std::filesystem;

// In a child, for the environment and the user belong to the whole process.
bool HoldsInChild(const std::function<bool()>& check) {
  support::ForkedProcess child([&](const support::Line&) {
    if (!check()) _exit(1);
  });
  return child.Join();
}

TEST(StateFolderTest, FollowsTheEnvironment) {
  EXPECT_TRUE(HoldsInChild([] {
    setenv("TONALYX_ROOT", "/somewhere/./else/", 1);
    return StateFolder() == "/somewhere/else";
  }));
  EXPECT_TRUE(HoldsInChild([] {
    setenv("TONALYX_ROOT", "relative", 1);
    return StateFolder() == fs::current_path() / "relative";
  }));
  const bool machineFolderIsOurs = access("/var/lib", W_OK) == 0;
  EXPECT_TRUE(HoldsInChild([=] {
    setenv("TONALYX_ROOT", "", 1);
    setenv("XDG_STATE_HOME", "/state", 1);
    return StateFolder() ==
           (machineFolderIsOurs ? "/var/lib/norvane/velsona" : "/state/norvane/velsona");
  }));
  EXPECT_FALSE(fs::exists("/somewhere"));
}

TEST(StateFolderTest, FallsBackToTheHomeOfAUserWithoutRights) {
  constexpr uid_t kNobody = 65534;
  if (geteuid() != 0) GTEST_SKIP() << "only root can become another user";
  if (access("/var/lib/norvane/velsona", F_OK) == 0) GTEST_SKIP() << "the machine has a store";
  const auto folderOfNobody = [](const char* stateHome) {
    setenv("TONALYX_ROOT", "", 1);
    setenv("XDG_STATE_HOME", stateHome, 1);
    setenv("HOME", "/home/someone", 1);
    return seteuid(kNobody) == 0 ? StateFolder() : fs::path();
  };
  for (const char* unusable : {"", "relative"}) {
    EXPECT_TRUE(HoldsInChild(
        [&] { return folderOfNobody(unusable) == "/home/someone/.local/state/norvane/velsona"; }));
  }
  EXPECT_TRUE(HoldsInChild([&] { return folderOfNobody("/state") == "/state/norvane/velsona"; }));
}

// In a folder where everyone may write, whoever waits for the new one can put a link in its place.
TEST(StateFolderTest, IsOpenedToEveryoneThroughNoLink) {
  const support::TemporaryFolder temporary;
  const fs::path folder = temporary.Path() / "events";
  const fs::path trap = temporary.Path() / "trap";
  const fs::path victim = temporary.Path() / "victim";
  fs::create_directory(victim);
  fs::permissions(victim, fs::perms::owner_all);

  std::atomic<bool> isEnding = false;
  std::atomic<int> swaps = 0;
  std::thread attacker([&] {
    while (!isEnding) {
      remove(trap.c_str());
      if (symlink(victim.c_str(), trap.c_str()) != 0) continue;
      while (!isEnding &&
             renameat2(AT_FDCWD, trap.c_str(), AT_FDCWD, folder.c_str(), RENAME_EXCHANGE) != 0) {
      }
      ++swaps;
    }
  });
  constexpr int kEnough = 300;
  const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (swaps < kEnough && std::chrono::steady_clock::now() < latest) {
    static_cast<void>(MakeStateFolder(folder));
    remove(folder.c_str());
  }
  isEnding = true;
  attacker.join();
  EXPECT_EQ(fs::status(victim).permissions(), fs::perms::owner_all);
}

}  // namespace
}  // namespace platform
