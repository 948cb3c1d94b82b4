// FileWatcher on inotify.
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "platform/linux/files/file_descriptor.h"
#include "platform/virtual/file_watcher.h"

namespace platform {

// Watches the file's folder, because a file that is replaced by renaming is a new one each time.
// Writing in place counts once the writer closes the file. A folder that goes brings no changes.
// Where the system has no watch to give, or there is no folder yet, it looks at the file instead.
class InotifyFileWatcher : public FileWatcher {
 public:
  explicit InotifyFileWatcher(const std::filesystem::path& file);

  void Begin() override;
  bool WaitForChange() override;
  void Interrupt() override;

 private:
  // Tells apart two states of the file; all zero when there is none.
  struct Look {
    dev_t device;
    ino_t file;
    off_t size;
    decltype(timespec::tv_sec) seconds;
    decltype(timespec::tv_nsec) nanoseconds;
    bool operator==(const Look&) const = default;
  };

  Look TakeLook() const;
  bool DrainChanges();

  const std::filesystem::path file_;
  FileDescriptor interrupt_;
  FileDescriptor notify_;
  Look last_{};
};

}  // namespace platform
