// FileWatcher on inotify.
#pragma once

#include <filesystem>
#include <string>

#include "platform/linux/files/file_descriptor.h"
#include "platform/virtual/file_watcher.h"

namespace platform {

// Watches the file's folder, because a file that is replaced by renaming is a new one each time.
// Writing in place counts once the writer closes the file. A folder that does not exist, or goes,
// brings no changes.
class InotifyFileWatcher : public FileWatcher {
 public:
  explicit InotifyFileWatcher(const std::filesystem::path& file);

  void Begin() override;
  bool WaitForChange() override;
  void Interrupt() override;

 private:
  bool DrainChanges();

  const std::filesystem::path folder_;
  const std::string name_;
  FileDescriptor interrupt_;
  FileDescriptor notify_;
};

}  // namespace platform
