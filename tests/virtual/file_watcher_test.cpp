// The watch on the laptop's file where the system has no more watches to give.
#include "platform/linux/files/inotify_file_watcher.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>

#include <cerrno>
#include <fstream>
#include <future>

#include "tests/support/temporary_folder.h"

namespace {

// What the next calls fail with; 0 lets them through.
int initFailure = 0;
int watchFailure = 0;

template <class Function>
Function Original(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// These take the place of the library's own in this program.
int inotify_init1(int flags) noexcept {
  errno = initFailure;
  return initFailure != 0 ? -1 : Original<int (*)(int)>("inotify_init1")(flags);
}

int inotify_add_watch(int descriptor, const char* name, std::uint32_t mask) noexcept {
  using Function = int (*)(int, const char*, std::uint32_t);
  errno = watchFailure;
  return watchFailure != 0 ? -1 : Original<Function>("inotify_add_watch")(descriptor, name, mask);
}

namespace platform {
namespace {

using namespace std::chrono_literals;

TEST(FileWatcher, NoticesChangesWhateverTheSystemHasRunOutOf) {
  for (const auto& [noInstance, noWatch] : {std::pair(EMFILE, 0), {0, ENOSPC}, {0, 0}}) {
    const support::TemporaryFolder folder;
    const std::filesystem::path file = folder.Path() / "laptop.json";
    InotifyFileWatcher watcher(file);
    initFailure = noInstance;
    watchFailure = noWatch;
    watcher.Begin();
    initFailure = watchFailure = 0;
    for (const char* content : {"made", "kept"}) {
      std::future<bool> change = std::async([&] { return watcher.WaitForChange(); });
      EXPECT_EQ(change.wait_for(250ms), std::future_status::timeout) << "nothing has happened";
      std::ofstream(file) << content;
      EXPECT_EQ(change.wait_for(5s), std::future_status::ready);
      if (change.wait_for(0s) != std::future_status::ready) watcher.Interrupt();
    }
    std::future<bool> change = std::async([&] { return watcher.WaitForChange(); });
    std::filesystem::remove(file);
    EXPECT_TRUE(change.get());
    watcher.Interrupt();
    EXPECT_FALSE(watcher.WaitForChange());
  }
}

}  // namespace
}  // namespace platform
