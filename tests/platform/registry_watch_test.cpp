// A registry's watcher on a system that has nothing left to watch with.
#include <gtest/gtest.h>
#include <sched.h>

#include <chrono>
#include <fstream>
#include <string>

#include "platform/linux/registry/sqlite_registry.h"
#include "platform/wake_event.h"
#include "tests/platform/registry_contract.h"
#include "tests/support/forked_process.h"
#include "tests/support/temporary_folder.h"

namespace platform {
namespace {

// For this process alone; it must not have threads yet.
bool Limit(const std::string& what) {
  if (unshare(CLONE_NEWUSER) != 0) return false;
  std::ofstream limit("/proc/sys/user/" + what);
  limit << 0 << std::flush;
  return limit.good();
}

bool SeesChanges(const std::filesystem::path& folder) {
  SqliteRegistry watching(folder);
  SqliteRegistry writing(folder);
  WakeEvent wake;
  const auto written = writing.CreateKey(RegistryRoot::LocalMachine, u"k", kRegistryAllAccess);
  const auto watched = watching.OpenKey(RegistryRoot::LocalMachine, u"k", kRegistryRead);
  for (const char* value : {"1", "2"}) {
    if (watched->NotifyChange(wake) != RegistryStatus::Success) return false;
    if (support::SetBytes(*written, u"v", value) != RegistryStatus::Success) return false;
    if (!wake.WaitFor(std::chrono::seconds(5))) return false;
  }
  return true;
}

TEST(RegistryWatchTest, ChangesAreSeenWithoutFolderWatches) {
  for (const char* what : {"max_inotify_instances", "max_inotify_watches"}) {
    SCOPED_TRACE(what);
    const support::TemporaryFolder folder;
    support::ForkedProcess limited([&](const support::Line& parent) {
      parent.Say(Limit(what) ? 'l' : 's');
      parent.Say(SeesChanges(folder.Path()) ? 'y' : 'n');
    });
    if (limited.Talk().Hear() != 'l') GTEST_SKIP() << "this user cannot lower his own limits";
    EXPECT_EQ(limited.Talk().Hear(), 'y');
    EXPECT_TRUE(limited.Join());
  }
}

}  // namespace
}  // namespace platform
